#include "lut/PlainString.h"

#include <QTextCodec>

namespace orlune {

namespace {
QTextCodec* s_codec = nullptr;
QTextCodec* s_fileNameCodec = nullptr; // the locale's before a language set it; null means the system's
} // namespace

void SetPlainStringCodec(QTextCodec* codec)
{
    if (QTextCodec::codecForLocale() != codec)
        s_fileNameCodec = QTextCodec::codecForLocale();
    s_codec = codec;
}

QString FromPlainString(const char* text)
{
    return FromPlainString(QByteArray(text));
}

QString FromPlainString(const QByteArray& text)
{
    return s_codec ? s_codec->toUnicode(text) : QString::fromLatin1(text);
}

std::string ToPlainString(const QString& text)
{
    return (s_codec ? s_codec->fromUnicode(text) : text.toLatin1()).toStdString();
}

FileNamesAsBefore::FileNamesAsBefore() : m_changed(s_codec && QTextCodec::codecForLocale() == s_codec)
{
    if (m_changed)
        QTextCodec::setCodecForLocale(s_fileNameCodec);
}

FileNamesAsBefore::~FileNamesAsBefore()
{
    if (m_changed)
        QTextCodec::setCodecForLocale(s_codec);
}

} // namespace orlune
