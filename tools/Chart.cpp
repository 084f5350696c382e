#include "tools/Chart.h"

#include <QFontMetricsF>
#include <QPainter>

namespace tools {

namespace {

constexpr int kDivisions = 4;
constexpr double kLegendShare = 0.25; // of the width
const QColor kGridColour(220, 220, 220);
const QColor kTextColour(60, 60, 60);

void drawAxes(QPainter& painter, const QRectF& plot, double letters, const Chart& chart)
{
    for (int i = 0; i <= kDivisions; ++i) {
        const double x = plot.left() + plot.width() * i / kDivisions;
        const double y = plot.bottom() - plot.height() * i / kDivisions;
        painter.setPen(kGridColour);
        painter.drawLine(QPointF(x, plot.top()), QPointF(x, plot.bottom()));
        painter.drawLine(QPointF(plot.left(), y), QPointF(plot.right(), y));
        painter.setPen(kTextColour);
        const auto number = [i](int maximum) {
            return QString::number((qint64(maximum) * i + kDivisions / 2) / kDivisions);
        };
        if (chart.xMaximum > 0)
            painter.drawText(
                QRectF(x - 3 * letters, plot.bottom() + 0.3 * letters, 6 * letters, 1.5 * letters),
                Qt::AlignHCenter | Qt::AlignTop, number(chart.xMaximum));
        if (chart.yMaximum > 0)
            painter.drawText(QRectF(plot.left() - 6.4 * letters, y - letters, 6 * letters, 2 * letters),
                             Qt::AlignRight | Qt::AlignVCenter, number(chart.yMaximum));
    }
    painter.drawText(QRectF(plot.left(), plot.bottom() + 1.8 * letters, plot.width(), 1.5 * letters),
                     Qt::AlignHCenter | Qt::AlignTop, chart.xLabel);
    painter.drawText(QRectF(plot.left(), plot.top() - 2 * letters, plot.width(), 1.5 * letters),
                     Qt::AlignLeft | Qt::AlignVCenter, chart.yLabel);
}

void drawLine(QPainter& painter, const QRectF& plot, const ChartLine& line)
{
    QPolygonF points;
    for (int i = 0; i < line.values.size(); ++i)
        points << QPointF(plot.left() + plot.width() * i / (line.values.size() - 1),
                          plot.bottom() - plot.height() * line.values[i]);
    if (line.isFilled) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(line.pen.color());
        painter.drawPolygon(QPolygonF(points) << plot.bottomRight() << plot.bottomLeft());
    } else {
        painter.setPen(line.pen);
        painter.drawPolyline(points);
    }
}

void drawLegend(QPainter& painter, const QRectF& area, double letters, const QVector<ChartLine>& lines)
{
    const double row = 1.6 * letters;
    const QFontMetricsF metrics(painter.font());
    for (int i = 0; i < lines.size() && (i + 1) * row <= area.height(); ++i) {
        const double middle = area.top() + (i + 0.5) * row;
        QPen pen = lines[i].pen;
        if (lines[i].isFilled)
            pen.setWidthF(0.8 * letters);
        painter.setPen(pen);
        painter.drawLine(QPointF(area.left(), middle), QPointF(area.left() + 2 * letters, middle));
        painter.setPen(kTextColour);
        const QRectF text(area.left() + 2.5 * letters, middle - row / 2, area.width() - 2.5 * letters, row);
        painter.drawText(text, Qt::AlignLeft | Qt::AlignVCenter,
                         metrics.elidedText(lines[i].name, Qt::ElideMiddle, text.width()));
    }
}

} // namespace

void drawChart(QPainter& painter, const QRectF& area, int letters, const Chart& chart)
{
    QFont font("sans-serif");
    font.setPixelSize(letters);
    painter.setFont(font);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF inner = area.adjusted(7 * letters, 2.5 * letters, -letters, -3.5 * letters);
    const QRectF plot = inner.adjusted(0, 0, -kLegendShare * inner.width(), 0);
    drawAxes(painter, plot, letters, chart);
    for (const ChartLine& line : chart.lines)
        drawLine(painter, plot, line);
    drawLegend(painter, QRectF(QPointF(plot.right() + letters, plot.top()), inner.bottomRight()), letters,
               chart.lines);
}

} // namespace tools
