#include "host/app/FrameView.h"

#include <QEvent>
#include <QMouseEvent>
#include <QPainter>

#include "host/app/FrameImage.h"

namespace host {

namespace {

constexpr int kGap = 4;       // between two pictures
constexpr int kSplitGrip = 5; // how near the mouse has to be to the split to drag it
constexpr int kTitleMargin = 6;

} // namespace

FrameView::FrameView(QWidget* parent) : QWidget(parent)
{
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumSize(240, 180);
}

void FrameView::setFrame(std::shared_ptr<const ShownFrame> frame)
{
    m_frame = std::move(frame);
    updateImages();
}

void FrameView::clear(const QString& reason)
{
    m_frame.reset();
    m_reason = reason;
    updateImages();
}

void FrameView::setPictureLayout(Layout layout)
{
    m_layout = layout;
    updateImages();
}

// The pictures that the layout shows, and no other: large ones take their time.
void FrameView::updateImages()
{
    m_before = m_after = QImage();
    if (m_frame && !m_frame->format) {
        m_reason = tr("Frames of pixel format 0x%1 cannot be shown.")
                       .arg(m_frame->before.pixelFormat, 8, 16, QChar('0'));
    } else if (m_frame) {
        m_after = frameImage(m_frame->after, *m_frame->format);
        if (m_frame->mapped && m_layout != Layout::After)
            m_before = frameImage(m_frame->before, *m_frame->format);
        m_reason = m_after.isNull() ? tr("The camera delivers incomplete frames.") : QString();
    }
    probe();
    update();
}

void FrameView::setZoom(Zoom zoom)
{
    m_zoom = zoom;
    m_offset = {};
    update();
}

bool FrameView::showsSplit() const
{
    return m_layout == Layout::Split && !m_after.isNull() && m_frame->mapped;
}

bool FrameView::isAtSplit(QPoint position) const
{
    return showsSplit() && qAbs(position.x() - splitX()) <= kSplitGrip;
}

// The picture's place when area is what it has to fill.
QRectF FrameView::pictureRect(const QRectF& area) const
{
    QSizeF size = m_after.size();
    if (m_zoom == Zoom::Fit)
        size.scale(area.size(), Qt::KeepAspectRatio);
    else
        size /= devicePixelRatioF();
    QRectF rect(QPointF(), size);
    rect.moveCenter(area.center() + (m_zoom == Zoom::Fit ? QPointF() : m_offset));
    if (m_zoom == Zoom::FullScale)
        rect.moveTopLeft(rect.topLeft().toPoint()); // on whole pixels, or the picture blurs
    return rect;
}

QVector<FrameView::Pane> FrameView::panes() const
{
    if (m_after.isNull())
        return {};
    const QRectF whole = rect();
    if (!m_frame->mapped) // then there is nothing to compare
        return {{whole, pictureRect(whole), &m_after, tr("as the camera sends it")}};
    const QString before = tr("before");
    const QString after = tr("after");
    switch (m_layout) {
    case Layout::Before:
        return {{whole, pictureRect(whole), &m_before, before}};
    case Layout::SideBySide: {
        const QRectF left(0, 0, (whole.width() - kGap) / 2, whole.height());
        const QRectF right = left.translated(left.width() + kGap, 0);
        return {{left, pictureRect(left), &m_before, before}, {right, pictureRect(right), &m_after, after}};
    }
    case Layout::Split: {
        const QRectF picture = pictureRect(whole);
        return {{QRectF(0, 0, splitX(), height()), picture, &m_before, before},
                {QRectF(splitX(), 0, width() - splitX(), height()), picture, &m_after, after}};
    }
    case Layout::After:
        break;
    }
    return {{whole, pictureRect(whole), &m_after, after}};
}

void FrameView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Dark).darker(160));
    painter.setPen(Qt::white);
    if (!m_reason.isEmpty())
        painter.drawText(rect(), Qt::AlignCenter | Qt::TextWordWrap, m_reason);

    for (const Pane& pane : panes()) {
        painter.setClipRect(pane.clip);
        painter.setRenderHint(QPainter::SmoothPixmapTransform,
                              pane.picture.width() < pane.image->width() / devicePixelRatioF());
        painter.drawImage(pane.picture, *pane.image);

        QRectF title = painter.fontMetrics().boundingRect(pane.title);
        title.adjust(-kTitleMargin, -2, kTitleMargin, 2);
        title.moveTopLeft(pane.clip.topLeft() + QPointF(kTitleMargin, kTitleMargin));
        painter.fillRect(title, QColor(0, 0, 0, 150));
        painter.drawText(title, Qt::AlignCenter, pane.title);
    }
    painter.setClipping(false);
    if (showsSplit()) {
        const QLineF split(splitX(), 0, splitX(), height());
        painter.setPen(QPen(Qt::black, 3)); // seen on white
        painter.drawLine(split);
        painter.setPen(Qt::white);
        painter.drawLine(split);
    }
}

void FrameView::mousePressEvent(QMouseEvent* event)
{
    m_dragStart = event->pos();
    m_dragsSplit = isAtSplit(event->pos());
}

void FrameView::mouseMoveEvent(QMouseEvent* event)
{
    m_mouse = event->pos();
    if (event->buttons() == Qt::NoButton) {
        setCursor(isAtSplit(event->pos()) ? Qt::SplitHCursor : Qt::CrossCursor);
    } else if (m_dragsSplit) {
        m_split = qBound(0.0, qreal(event->pos().x()) / width(), 1.0);
        update();
    } else if (m_zoom == Zoom::FullScale) {
        m_offset += event->pos() - m_dragStart;
        m_dragStart = event->pos();
        keepPictureInSight();
        update();
    }
    probe();
}

void FrameView::keepPictureInSight()
{
    const qreal farX = m_after.width() / devicePixelRatioF() / 2;
    const qreal farY = m_after.height() / devicePixelRatioF() / 2;
    m_offset = {qBound(-farX, m_offset.x(), farX), qBound(-farY, m_offset.y(), farY)};
}

void FrameView::leaveEvent(QEvent*)
{
    m_mouse = {-1, -1};
    probe();
}

void FrameView::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        update();
}

void FrameView::probe()
{
    for (const Pane& pane : panes()) {
        if (!pane.clip.contains(m_mouse) || !pane.picture.contains(m_mouse))
            continue;
        const QPointF place = m_mouse - pane.picture.topLeft();
        const int x = int(place.x() * m_after.width() / pane.picture.width());
        const int y = int(place.y() * m_after.height() / pane.picture.height());
        const int bits = m_frame->format->bits;
        const int in = codeAt(m_frame->before, bits, x, y);
        const int out = codeAt(m_frame->after, bits, x, y);
        if (in < 0)
            continue;
        emit probed(m_frame->mapped ? tr("(%1, %2)  in %3  out %4").arg(x).arg(y).arg(in).arg(out)
                                    : tr("(%1, %2)  code %3").arg(x).arg(y).arg(in));
        return;
    }
    emit probed(QString());
}

} // namespace host
