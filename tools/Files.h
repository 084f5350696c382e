// Bounded reading and careful writing, of files and of the standard streams, which both go by the name "-".
#ifndef ORLUNE_TOOLS_FILES_H
#define ORLUNE_TOOLS_FILES_H

#include <QByteArray>
#include <QString>

namespace tools {

bool isStream(const QString& path);

// The name in quotes for a sentence, without characters that a terminal would obey; the stream is the input.
QString quoted(const QString& path);

// The first `limit` bytes and, so that the caller sees that there are more, one behind them. Of files only
// regular ones are read, so that no call waits for a pipe's writer. Throws Failure.
QByteArray readBytes(const QString& path, qint64 limit);

// Throws Failure when something other than a regular file stands there, or a regular file and force isn't
// set. Streams pass.
void refuseOverwriting(const QString& path, bool force);

// Writes all of the bytes: a file appears, or replaces what it overwrites, when it is complete. Throws
// Failure, and then the file is as it was, and as refuseOverwriting does.
void writeBytes(const QString& path, const QByteArray& bytes, bool force);

// To the standard output. Throws Failure.
void print(const QByteArray& text);

} // namespace tools

#endif
