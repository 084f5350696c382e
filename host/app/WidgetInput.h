// Acts on widgets as a person does: with events that validators, focus rules and event filters see.
#ifndef ORLUNE_HOST_APP_WIDGETINPUT_H
#define ORLUNE_HOST_APP_WIDGETINPUT_H

#include <QPoint>
#include <QString>

class QAbstractSlider;
class QWidget;

namespace host {

// Gives the widget the focus if a click would.
void focusByClick(QWidget& widget);

// A press and a release of the left button.
void clickWidget(QWidget& widget, QPoint position);

// Drags the handle to a value inside the slider's range.
void dragSlider(QAbstractSlider& slider, int value);

// Keys, to whatever has the focus.
void pressKey(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier, const QString& text = QString());

// Replaces the text of a line edit, key by key, and presses Return.
void typeText(QWidget& widget, const QString& text);

// Turns the wheel over the widget, away from the user for steps above 0.
void turnWheel(QWidget& widget, int steps);

} // namespace host

#endif
