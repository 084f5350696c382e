// Table files, byte by byte.
#ifndef ORLUNE_TESTS_TOOLS_TABLES_H
#define ORLUNE_TESTS_TOOLS_TABLES_H

#include <functional>

#include <QByteArray>
#include <QMap>
#include <QtEndian>

inline QByteArray littleEndian(qint32 value)
{
    QByteArray bytes(4, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

inline QByteArray tableOf(const std::function<int(int)>& entry)
{
    QByteArray bytes;
    for (int i = 0; i < 4096; ++i)
        bytes += littleEndian(entry(i));
    return bytes;
}

inline QByteArray identity()
{
    return tableOf([](int i) { return i; });
}

inline QByteArray trailerOf(int gamma, int brightness, int contrast, int low, int high,
                            const QByteArray& name)
{
    QByteArray bytes = "CBG0";
    for (int value : {gamma, brightness, contrast, low, high})
        bytes += littleEndian(value);
    return bytes + name.leftJustified(16, '\0');
}

inline int entryAt(const QByteArray& table, int i)
{
    return qFromLittleEndian<qint32>(table.constData() + 4 * i);
}

#endif
