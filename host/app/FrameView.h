// The live picture: after the mapping, before it, or both, fitted to the window or pixel by pixel.
#ifndef ORLUNE_HOST_APP_FRAMEVIEW_H
#define ORLUNE_HOST_APP_FRAMEVIEW_H

#include <memory>

#include <QImage>
#include <QString>
#include <QWidget>

#include "host/app/FrameMailbox.h"

namespace host {

class FrameView : public QWidget
{
    Q_OBJECT

public:
    enum class Layout { After, Before, SideBySide, Split };
    enum class Zoom { Fit, FullScale }; // full scale: a camera pixel is a screen pixel

    explicit FrameView(QWidget* parent = nullptr);

    void setFrame(std::shared_ptr<const ShownFrame> frame);
    void clear(const QString& reason); // shown in place of a picture
    const ShownFrame* frame() const { return m_frame.get(); }

    Layout pictureLayout() const { return m_layout; }
    void setPictureLayout(Layout layout);
    Zoom zoom() const { return m_zoom; }
    void setZoom(Zoom zoom);

    QSize sizeHint() const override { return {640, 480}; }

signals:
    // Position and codes of the pixel under the mouse; empty when there is none.
    void probed(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    // A part of the widget that shows a picture, and where the whole of the picture would lie.
    struct Pane
    {
        QRectF clip;
        QRectF picture;
        const QImage* image;
        QString title;
    };

    void updateImages();
    QVector<Pane> panes() const;
    QRectF pictureRect(const QRectF& area) const;
    bool showsSplit() const;
    bool isAtSplit(QPoint position) const;
    qreal splitX() const { return width() * m_split; }
    void keepPictureInSight();
    void probe();

    std::shared_ptr<const ShownFrame> m_frame;
    QString m_reason;
    QImage m_before;
    QImage m_after;
    Layout m_layout = Layout::After;
    Zoom m_zoom = Zoom::Fit;
    QPointF m_offset;    // of the picture from the middle, at full scale
    qreal m_split = 0.5; // share of the width that shows the frame before
    bool m_dragsSplit = false;
    QPoint m_dragStart;
    QPoint m_mouse{-1, -1};
};

} // namespace host

#endif
