#include "tools/Files.h"

#include <algorithm>
#include <cstdio>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include "tools/Failure.h"

namespace tools {

namespace {

constexpr int kChunk = 1 << 20;

Failure unreadable(const QString& path, const QString& reason)
{
    return {kTrouble, QString("%1 can't be read: %2.").arg(quoted(path), reason)};
}

Failure unwritable(const QString& path, const QString& reason)
{
    return {kTrouble, QString("%1 can't be written: %2.").arg(quoted(path), reason)};
}

} // namespace

bool isStream(const QString& path)
{
    return path == "-";
}

QString quoted(const QString& path)
{
    if (isStream(path))
        return "the standard input";
    QString shown = QDir::toNativeSeparators(path);
    std::replace_if(
        shown.begin(), shown.end(), [](QChar c) { return c.category() == QChar::Other_Control; }, QChar('?'));
    return '"' + shown + '"';
}

QByteArray readBytes(const QString& path, qint64 limit)
{
    QFile file(path);
    bool isOpen = false;
    if (isStream(path)) {
        isOpen = file.open(stdin, QIODevice::ReadOnly);
    } else {
        const QFileInfo info(path);
        if (info.exists() && !info.isFile())
            throw unreadable(path, "it is no regular file");
        isOpen = file.open(QIODevice::ReadOnly);
    }
    if (!isOpen)
        throw unreadable(path, file.errorString());
    QByteArray bytes;
    while (bytes.size() <= limit) {
        const QByteArray more = file.read(std::min<qint64>(kChunk, limit + 1 - bytes.size()));
        if (more.isEmpty())
            break;
        bytes += more;
    }
    if (file.error() != QFileDevice::NoError)
        throw unreadable(path, file.errorString());
    return bytes;
}

void refuseOverwriting(const QString& path, bool force)
{
    const QFileInfo old(path);
    if (isStream(path) || !old.exists())
        return;
    if (!old.isFile())
        throw unwritable(path, "it is no regular file");
    if (!force)
        throw Failure{kTrouble, QString("%1 exists; --force overwrites it.").arg(quoted(path))};
}

void writeBytes(const QString& path, const QByteArray& bytes, bool force)
{
    if (isStream(path)) {
        const std::size_t size = std::size_t(bytes.size());
        if (std::fwrite(bytes.constData(), 1, size, stdout) != size || std::fflush(stdout) != 0)
            throw Failure{kTrouble,
                          QString("The standard output can't be written: %1.").arg(qt_error_string())};
        return;
    }
    refuseOverwriting(path, force);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        throw unwritable(path, file.errorString());
}

void print(const QByteArray& text)
{
    writeBytes("-", text, false);
}

} // namespace tools
