// What a script did and what happened, one event a line: the same for the same script and program, without
// times and places, so that two transcripts can be compared.
#ifndef ORLUNE_HOST_APP_TRANSCRIPT_H
#define ORLUNE_HOST_APP_TRANSCRIPT_H

#include <QDir>
#include <QIODevice>
#include <QString>

namespace host {

class Transcript
{
public:
    // Writes UTF-8 to out, which has to be open and to outlive this object. Paths below directory lose it.
    Transcript(QIODevice& out, const QDir& directory) : m_out(out), m_prefix(directory.absolutePath() + '/')
    {
    }

    void command(const QString& text); // "> text"
    void event(const QString& text);   // "  text"

    // In quotes, on one line: quotes, backslashes and line ends escaped.
    static QString quoted(const QString& text);

private:
    void line(const QString& text);

    QIODevice& m_out;
    QString m_prefix;
};

} // namespace host

#endif
