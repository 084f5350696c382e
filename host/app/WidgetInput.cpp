#include "host/app/WidgetInput.h"

#include <QAbstractSlider>
#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QWheelEvent>

namespace host {

namespace {

constexpr int kWheelStep = 120; // eighths of a degree

void sendMouse(QWidget& widget, QEvent::Type type, QPoint position)
{
    const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, position, widget.mapTo(widget.window(), position), widget.mapToGlobal(position),
                      Qt::LeftButton, held, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

} // namespace

void focusByClick(QWidget& widget)
{
    // Offscreen, and where no window manager runs, nobody else makes the window the active one.
    if (!widget.window()->isActiveWindow())
        QApplication::setActiveWindow(widget.window());
    for (QWidget* taker = &widget; taker; taker = taker->isWindow() ? nullptr : taker->parentWidget()) {
        if (taker->isEnabled() && (taker->focusPolicy() & Qt::ClickFocus) == Qt::ClickFocus) {
            taker->setFocus(Qt::MouseFocusReason);
            return;
        }
    }
}

void clickWidget(QWidget& widget, QPoint position)
{
    const QPointer<QWidget> alive(&widget);
    focusByClick(widget);
    if (alive)
        sendMouse(widget, QEvent::MouseButtonPress, position);
    if (alive)
        sendMouse(widget, QEvent::MouseButtonRelease, position);
}

void dragSlider(QAbstractSlider& slider, int value)
{
    focusByClick(slider);
    slider.setSliderDown(true);
    slider.setSliderPosition(value);
    slider.setSliderDown(false);
}

void pressKey(int key, Qt::KeyboardModifiers modifiers, const QString& text)
{
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QWidget* widget = QApplication::focusWidget();
        if (!widget)
            return;
        QKeyEvent event(type, key, modifiers, text);
        QApplication::sendEvent(widget, &event);
    }
}

void typeText(QWidget& widget, const QString& text)
{
    focusByClick(widget);
    pressKey(Qt::Key_A, Qt::ControlModifier);
    if (text.isEmpty())
        pressKey(Qt::Key_Delete);
    for (const QChar character : text)
        pressKey(character.toUpper().unicode(), Qt::NoModifier, character);
    pressKey(Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"));
}

void turnWheel(QWidget& widget, int steps)
{
    const QPoint middle = widget.rect().center();
    for (int step = 0; step < qAbs(steps); ++step) {
        QWheelEvent event(middle, widget.mapToGlobal(middle), QPoint(),
                          QPoint(0, steps > 0 ? kWheelStep : -kWheelStep), Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(&widget, &event);
    }
}

} // namespace host
