// Sits in front of the application while a script runs, and does what a person would do with a dialog that
// waits: closes message boxes, and answers file dialogs.
#ifndef ORLUNE_HOST_APP_DIALOGANSWERS_H
#define ORLUNE_HOST_APP_DIALOGANSWERS_H

#include <QObject>
#include <QQueue>
#include <QString>

#include "host/app/Transcript.h"

class QFileDialog;
class QMessageBox;

namespace host {

class DialogAnswers : public QObject
{
    Q_OBJECT

public:
    explicit DialogAnswers(Transcript& transcript);

    // The answer to the next file dialog that has none yet: shown as the transcript shows it, and the
    // absolute path, empty to cancel. A dialog without an answer is cancelled.
    void answerFile(const QString& shown, const QString& path);

    // Answers that no dialog has asked for, as they are shown.
    QStringList unusedAnswers() const;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Answer
    {
        QString shown;
        QString path;
    };

    void closeBox(QMessageBox& box);
    void closeFileDialog(QFileDialog& dialog);

    Transcript& m_transcript;
    QQueue<Answer> m_answers;
};

} // namespace host

#endif
