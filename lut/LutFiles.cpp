#include "lut/LutFiles.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTextStream>

#include "lut/ResultCodes.h"

namespace orlune {

namespace {

// Asking before opening: to open a pipe without a writer blocks.
bool OpenToRead(QFile& file)
{
    return QFileInfo(file).isFile() && file.open(QIODevice::ReadOnly);
}

// Bytes read into the zeroed image, or a negative number.
qint64 ReadImage(QFile& file, LutImage& image)
{
    char bytes[kImageBytes];
    const qint64 count = file.read(bytes, kImageBytes);
    image = LutImage{};
    if (count > 0)
        FromBytes(image, bytes, std::size_t(count));
    return count;
}

bool WriteWhole(const QString& path, const char* bytes, qint64 size)
{
    const QFileInfo old(path);
    if (old.exists() && !old.isFile())
        return false;
    QSaveFile file(path);
    file.setDirectWriteFallback(true);
    // The flush reports what commit() would not in a file that is written in place.
    return file.open(QIODevice::WriteOnly) && file.write(bytes, size) == size && file.flush() &&
           file.commit();
}

} // namespace

int ReadLutFile(const QString& path, LutImage& current, LutImage& base)
{
    QFile file(path);
    if (!OpenToRead(file))
        return kOpenFailed;
    const qint64 count = ReadImage(file, current);
    base = current;
    return count > 0 ? kSuccess : kInvalidData;
}

int ReadBaseLutFile(const QString& path, LutImage& base)
{
    QFile file(path);
    if (!OpenToRead(file))
        return kOpenFailed;
    ReadImage(file, base);
    return kSuccess;
}

int ReadCsvFile(const QString& path, LutImage& current, LutImage& base)
{
    QFile file(path);
    if (!OpenToRead(file))
        return kOpenFailed;
    QTextStream text(&file);
    current = LutImage{};
    base = LutImage{};
    for (qint32& entry : current.Entries) {
        const QString line = text.readLine(kMaxCsvLine);
        if (line.isEmpty() || line.size() == kMaxCsvLine)
            return kInvalidData;
        bool isNumber = false;
        const int value = line.toInt(&isNumber, 10);
        if (!isNumber || value > kLutMaxOutput)
            return kInvalidData;
        entry = value;
    }
    base = current;
    return kSuccess;
}

int WriteLutFile(const QString& path, const LutImage& image, bool withTrailer)
{
    const auto bytes = ToBytes(image);
    const int size = withTrailer ? kImageBytes : kTableBytes;
    return WriteWhole(path, reinterpret_cast<const char*>(bytes.data()), size) ? kSuccess : kOpenFailed;
}

int WriteCsvFile(const QString& path, const LutImage& image)
{
    QByteArray text;
    for (qint32 entry : image.Entries)
        text += QByteArray::number(entry) + '\n';
    return WriteWhole(path, text.constData(), text.size()) ? kSuccess : kOpenFailed;
}

} // namespace orlune
