#include "editor/IntSlider.h"

#include <cstdlib>

#include <QMouseEvent>
#include <QWheelEvent>

namespace {
constexpr int kStep = 10;
}

CIntSlider::CIntSlider(QWidget* parent) : QSlider(parent) {}

void CIntSlider::mousePressEvent(QMouseEvent* event)
{
    setPageStep(0); // Qt's own answer to a press on the groove; holding the button adds nothing
    QSlider::mousePressEvent(event);

    const double span = double(maximum()) - minimum();
    const int target = int(minimum() + span * (double(event->x()) / qMax(1, width())));
    int newValue = value();
    if (!isSliderDown())
        newValue += target - newValue > 0 ? kStep : -kStep;
    setSliderDown(false);
    setValue(newValue);
}

void CIntSlider::wheelEvent(QWheelEvent* event)
{
    const QPoint turn = event->angleDelta();
    const int delta = std::abs(turn.x()) > std::abs(turn.y()) ? turn.x() : turn.y();
    setValue(value() + (delta > 0 ? kStep : -kStep));
    event->accept();
}
