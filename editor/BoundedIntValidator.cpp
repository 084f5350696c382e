#include "editor/BoundedIntValidator.h"

BoundedIntValidator::BoundedIntValidator(int bottom, int top, QObject* parent)
    : QIntValidator(bottom, top, parent)
{
    QLocale plain = QLocale::c();
    plain.setNumberOptions(QLocale::RejectGroupSeparator);
    setLocale(plain);
}

QValidator::State BoundedIntValidator::validate(QString& text, int& position) const
{
    const State state = QIntValidator::validate(text, position);
    bool isNumber = false;
    text.toLongLong(&isNumber);
    // Both ranges that are used here hold zero, so more digits never lead a number back inside.
    return state == Intermediate && isNumber ? Invalid : state;
}
