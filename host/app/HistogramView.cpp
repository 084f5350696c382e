#include "host/app/HistogramView.h"

#include <algorithm>
#include <cmath>

#include <QPainter>

namespace host {

namespace {

constexpr QPoint kTitlePlace(5, 14); // of the title's base line
constexpr int kPlateOpacity = 190;   // of 255

// Counts drawn in each of so many columns: the largest of the codes that share a column.
std::vector<std::uint32_t> columnPeaks(const std::vector<std::uint32_t>& counts, int columns)
{
    std::vector<std::uint32_t> peaks(std::size_t(columns), 0);
    for (std::size_t code = 0; code < counts.size(); ++code) {
        std::uint32_t& peak = peaks[code * peaks.size() / counts.size()];
        peak = std::max(peak, counts[code]);
    }
    return peaks;
}

// The count that fills the height: the largest between the two ends. Clipped pixels pile up there and would
// make all else look flat.
std::uint32_t fullHeight(const std::vector<std::uint32_t>& peaks)
{
    const bool hasMiddle = peaks.size() > 2;
    const std::uint32_t middle = hasMiddle ? *std::max_element(peaks.begin() + 1, peaks.end() - 1) : 0;
    return middle > 0 ? middle : *std::max_element(peaks.begin(), peaks.end());
}

} // namespace

void HistogramView::setHistogram(const Histogram& histogram, const QString& title)
{
    m_histogram = histogram;
    m_title = title;
    update();
}

void HistogramView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QRect frame = rect().adjusted(0, 0, -1, -1);
    painter.setPen(palette().color(QPalette::Mid));
    painter.setBrush(palette().color(QPalette::Base));
    painter.drawRect(frame);

    const QRect area = frame.adjusted(1, 1, 0, 0);
    const auto& counts = m_histogram.counts;
    if (!counts.empty() && area.width() > 0) {
        // Fewer codes than columns: a column each code, so that unused codes show as gaps and nothing else
        // does.
        const int columns = std::min<int>(area.width(), int(counts.size()));
        const std::vector<std::uint32_t> peaks = columnPeaks(counts, columns);
        const double full = std::sqrt(double(fullHeight(peaks)));
        const double width = double(area.width()) / columns;
        for (int column = 0; column < columns && full > 0; ++column) {
            const double share = std::min(1.0, std::sqrt(double(peaks[std::size_t(column)])) / full);
            const double height = share * (area.height() - 4);
            painter.fillRect(QRectF(area.left() + column * width, area.bottom() + 1 - height, width, height),
                             palette().color(QPalette::Highlight));
        }
    }
    const QRect title = painter.fontMetrics().boundingRect(m_title).translated(area.topLeft() + kTitlePlace);
    QColor plate = palette().color(QPalette::Base);
    plate.setAlpha(kPlateOpacity); // high bars run behind the title
    painter.fillRect(title.adjusted(-2, 0, 2, 0), plate);
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(area.topLeft() + kTitlePlace, m_title);
}

} // namespace host
