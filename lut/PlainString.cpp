#include "lut/PlainString.h"

#include <QTextCodec>

namespace orlune {

namespace {
QTextCodec* s_codec = nullptr;
}

void SetPlainStringCodec(QTextCodec* codec)
{
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

} // namespace orlune
