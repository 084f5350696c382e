// The slider of a tone control: a press beside the handle and a wheel step move it by 10, however far away
// the press is and whatever the step settings say.
#ifndef ORLUNE_EDITOR_INTSLIDER_H
#define ORLUNE_EDITOR_INTSLIDER_H

#include <QSlider>

class CIntSlider : public QSlider
{
    Q_OBJECT

public:
    explicit CIntSlider(QWidget* parent);

protected:
    // Any mouse button. A press on the handle leaves the value alone and starts Qt's own drag.
    void mousePressEvent(QMouseEvent* event) override;
    // Up by 10 for a turn away from the user or to the left, down by 10 for every other.
    void wheelEvent(QWheelEvent* event) override;
};

#endif
