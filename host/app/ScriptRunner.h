// Runs a script on the viewer and writes its transcript.
#ifndef ORLUNE_HOST_APP_SCRIPTRUNNER_H
#define ORLUNE_HOST_APP_SCRIPTRUNNER_H

#include <QDir>
#include <QObject>
#include <QString>

#include "host/app/DialogAnswers.h"
#include "host/app/Script.h"
#include "host/app/Transcript.h"

class QAbstractButton;

namespace host {

class MainWindow;

class ScriptRunner : public QObject
{
    Q_OBJECT

public:
    // Relative paths of the script are taken as relative to directory. To be made before the window opens its
    // first camera: what happens then is part of the transcript.
    ScriptRunner(MainWindow& window, Transcript& transcript, const QDir& directory);

    // Runs the commands one after the other, each until all that it caused is over. False when one of them
    // cannot be done; error() then says which line, and why.
    bool run(const Script& script);
    QString error() const { return m_error; }

private:
    // Each gives what is wrong with the command, or an empty text. What goes wrong in the program under the
    // script's hands is an event of the transcript instead.
    QString execute(const ScriptCommand& command);
    QString useWidget(const ScriptCommand& command);
    QString set(QWidget& widget, const QString& value);
    QString setButton(QAbstractButton& button, const QString& value);
    QString click(QWidget& widget, const QStringList& words);
    QString choose(const QString& menu, const QString& entry);
    QString writeBytes(const QString& file, const QByteArray& bytes, const QString& error);
    QString writeFile(const QString& name, const QByteArray& bytes) const;
    QString poke(const QString& file);
    QString writeFrame(const QString& file);
    QString screenshot(const QString& file);
    void wait(int milliseconds);
    void activateWindow();

    QWidget* findWidget(const QString& name) const;
    QString absolute(const QString& path) const;

    MainWindow& m_window;
    Transcript& m_transcript;
    QDir m_directory;
    DialogAnswers m_answers;
    QString m_error;
};

} // namespace host

#endif
