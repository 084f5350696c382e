#include "host/app/DialogAnswers.h"

#include <QAbstractButton>
#include <QApplication>
#include <QEvent>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QTimer>

namespace host {

DialogAnswers::DialogAnswers(Transcript& transcript) : m_transcript(transcript)
{
    qApp->installEventFilter(this);
}

void DialogAnswers::answerFile(const QString& shown, const QString& path)
{
    m_answers.enqueue({shown, path});
}

QStringList DialogAnswers::unusedAnswers() const
{
    QStringList shown;
    for (const Answer& answer : m_answers)
        shown += answer.shown;
    return shown;
}

bool DialogAnswers::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::Show)
        return false;
    // The answer comes from the dialog's own event loop, as a person's would.
    if (const QPointer<QMessageBox> box = qobject_cast<QMessageBox*>(watched)) {
        QTimer::singleShot(0, box, [this, box] { closeBox(*box); });
    } else if (const QPointer<QFileDialog> dialog = qobject_cast<QFileDialog*>(watched)) {
        QTimer::singleShot(0, dialog, [this, dialog] { closeFileDialog(*dialog); });
    }
    return false;
}

void DialogAnswers::closeBox(QMessageBox& box)
{
    m_transcript.event("box " + Transcript::quoted(box.windowTitle()) + ' ' + Transcript::quoted(box.text()));
    if (QAbstractButton* yes = box.button(QMessageBox::Yes))
        yes->click();
    else
        box.accept();
}

void DialogAnswers::closeFileDialog(QFileDialog& dialog)
{
    const Answer answer = m_answers.isEmpty() ? Answer() : m_answers.dequeue();
    m_transcript.event("file dialog " + Transcript::quoted(dialog.windowTitle()) + ' ' +
                       Transcript::quoted(dialog.nameFilters().join(";;")) +
                       (answer.path.isEmpty() ? QString(" cancelled") : " answered " + answer.shown));
    const QPointer<QFileDialog> alive(&dialog);
    QLineEdit* name = dialog.findChild<QLineEdit*>("fileNameEdit");
    if (!answer.path.isEmpty() && name) {
        name->setText(answer.path);
        QMetaObject::invokeMethod(&dialog, "accept");
    }
    if (alive && alive->isVisible()) // no answer, or one that the dialog refused
        alive->reject();
}

} // namespace host
