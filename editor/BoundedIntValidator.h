// Lets a person type a whole number within bounds: plain decimal digits, and a minus sign where the bounds
// reach below zero. A key press that would lead outside the bounds is refused at once; Qt's own validator
// lets a number above the maximum stand as unfinished while it has no more digits than the maximum, and takes
// other locales' digits and group separators, which the conversion behind it does not read.
#ifndef ORLUNE_EDITOR_BOUNDEDINTVALIDATOR_H
#define ORLUNE_EDITOR_BOUNDEDINTVALIDATOR_H

#include <QIntValidator>

class BoundedIntValidator : public QIntValidator
{
public:
    BoundedIntValidator(int bottom, int top, QObject* parent);
    State validate(QString& text, int& position) const override;
};

#endif
