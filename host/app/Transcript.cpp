#include "host/app/Transcript.h"

namespace host {

void Transcript::command(const QString& text)
{
    line("> " + text);
}

void Transcript::event(const QString& text)
{
    line("  " + text);
}

QString Transcript::quoted(const QString& text)
{
    QString escaped = text;
    escaped.replace('\\', "\\\\").replace('"', "\\\"").replace('\n', "\\n").replace('\r', "\\r");
    return '"' + escaped + '"';
}

void Transcript::line(const QString& text)
{
    m_out.write(QString(text).remove(m_prefix).toUtf8() + '\n');
}

} // namespace host
