// Plain 8-bit strings: what crosses the border to the host and what comes from the camera layer. One codec
// serves the process: Latin-1 until a language sets another.
//
// Thread: the GUI thread.
#ifndef ORLUNE_LUT_PLAINSTRING_H
#define ORLUNE_LUT_PLAINSTRING_H

#include <string>

#include <QByteArray>
#include <QString>

class QTextCodec;

namespace orlune {

// Null means Latin-1. The codec is Qt's and is not owned. Who sets the locale's codec to the same does so
// afterwards.
void SetPlainStringCodec(QTextCodec* codec);

// Null gives an empty string.
QString FromPlainString(const char* text);
QString FromPlainString(const QByteArray& text);
std::string ToPlainString(const QString& text);

// While one stands, file names are in the encoding that they had before the language. Qt encodes them with
// the locale's codec, and a language that sets that one too would lose files by it.
class FileNamesAsBefore
{
public:
    FileNamesAsBefore();
    ~FileNamesAsBefore();
    FileNamesAsBefore(const FileNamesAsBefore&) = delete;
    FileNamesAsBefore& operator=(const FileNamesAsBefore&) = delete;

private:
    bool m_changed;
};

} // namespace orlune

#endif
