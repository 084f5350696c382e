#include "lut/LutFiles.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTextStream>

#include "lut/PlainString.h"
#include "lut/ResultCodes.h"

namespace orlune {

namespace {

// Asking before opening: to open a pipe without a writer blocks.
bool OpenToRead(QFile& file)
{
    const FileNamesAsBefore encoding;
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
    const FileNamesAsBefore encoding;
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
    base = LutImage{};
    const int code = ReadCsv(file, current, nullptr);
    if (code == kSuccess)
        base = current;
    return code;
}

int ReadCsv(QIODevice& device, LutImage& image, int* badLine)
{
    QTextStream text(&device);
    image = LutImage{};
    for (int i = 0; i < kLutEntries; ++i) {
        const QString line = text.readLine(kMaxCsvLine);
        bool isNumber = false;
        const int value = line.size() < kMaxCsvLine ? line.toInt(&isNumber, 10) : 0;
        if (!isNumber || value > kLutMaxOutput) {
            if (badLine)
                *badLine = i + 1;
            return kInvalidData;
        }
        image.Entries[i] = value;
    }
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
    const QByteArray text = CsvText(image);
    return WriteWhole(path, text.constData(), text.size()) ? kSuccess : kOpenFailed;
}

QByteArray CsvText(const LutImage& image)
{
    QByteArray text;
    for (qint32 entry : image.Entries)
        text += QByteArray::number(entry) + '\n';
    return text;
}

} // namespace orlune
