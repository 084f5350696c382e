#include "tools/Cube.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include <QList>

#include "tools/Failure.h"
#include "tools/Files.h"
#include "tools/Settings.h"

namespace tools {

using orlune::kLutEntries;
using orlune::kLutMaxOutput;
using orlune::LutImage;

namespace {

constexpr int kMinSize = 2;
constexpr int kMaxSize = 65536;
constexpr double kMaxDomain = 1e6; // keeps the arithmetic finite

class CubeReader
{
public:
    explicit CubeReader(const QString& name) : m_name(name) {}

    LutImage read(const QByteArray& text)
    {
        QByteArray rest = text;
        if (rest.startsWith("\xef\xbb\xbf"))
            rest.remove(0, 3);
        for (const QByteArray& raw : rest.split('\n')) {
            ++m_line;
            const QByteArray line = raw.simplified();
            if (!line.isEmpty() && !line.startsWith('#'))
                takeLine(line.split(' '));
        }
        if (m_size == 0)
            throw Failure{kNoTable, QString("%1 has no LUT_1D_SIZE.").arg(quoted(m_name))};
        if (int(m_values.size()) < m_size)
            throw Failure{kNoTable,
                          quoted(m_name) +
                              QString(" ends after %1 of %2 values.").arg(m_values.size()).arg(m_size)};
        if (!(m_min < m_max))
            throw Failure{kNoTable,
                          QString("%1 has a domain that ends before it begins.").arg(quoted(m_name))};
        LutImage image{};
        for (int i = 0; i < kLutEntries; ++i)
            image.Entries[i] = int(std::floor(valueAt(i) * kLutMaxOutput + 0.5));
        return image;
    }

private:
    [[noreturn]] void fail(const QString& what) const
    {
        throw Failure{kNoTable, quoted(m_name) + QString(", line %1: ").arg(m_line) + what + '.'};
    }

    void takeLine(const QList<QByteArray>& words)
    {
        const char first = words[0][0];
        const bool isKeyword = (first >= 'A' && first <= 'Z') || (first >= 'a' && first <= 'z');
        if (!isKeyword)
            takeValue(words);
        else if (!m_values.empty())
            fail("keywords stand before the values");
        else
            takeKeyword(words);
    }

    void takeKeyword(const QList<QByteArray>& words)
    {
        const QByteArray& keyword = words[0];
        if (keyword == "TITLE")
            return;
        if (keyword == "LUT_1D_SIZE") {
            bool isNumber = false;
            const int size = words.value(1).toInt(&isNumber);
            if (m_size != 0 || words.size() != 2 || !isNumber || size < kMinSize || size > kMaxSize)
                fail(QString("LUT_1D_SIZE stands once, with a number from %1 to %2")
                         .arg(kMinSize)
                         .arg(kMaxSize));
            m_size = size;
        } else if (keyword == "DOMAIN_MIN") {
            m_min = equalNumbers(words.mid(1));
        } else if (keyword == "DOMAIN_MAX") {
            m_max = equalNumbers(words.mid(1));
        } else if (keyword == "LUT_1D_INPUT_RANGE" && words.size() == 3) {
            m_min = number(words[1]);
            m_max = number(words[2]);
        } else if (keyword == "LUT_3D_SIZE") {
            fail("a table of three dimensions is no camera table");
        } else {
            fail(QString("%1 is not understood").arg(quoted(QString::fromLatin1(keyword.left(40)))));
        }
        if (std::abs(m_min) > kMaxDomain || std::abs(m_max) > kMaxDomain)
            fail("the domain is too large");
    }

    void takeValue(const QList<QByteArray>& words)
    {
        if (m_size == 0)
            fail("LUT_1D_SIZE stands before the values");
        if (int(m_values.size()) == m_size)
            fail(QString("there are more than %1 values").arg(m_size));
        const double value = equalNumbers(words);
        const double entry = std::floor(value * kLutMaxOutput + 0.5);
        if (!(entry >= 0 && entry <= kLutMaxOutput))
            fail("a value goes from 0 to 1");
        m_values.push_back(value);
    }

    double number(const QByteArray& word) const
    {
        bool isNumber = false;
        const double value = word.toDouble(&isNumber);
        if (!isNumber || !std::isfinite(value))
            fail(QString("%1 is no number").arg(quoted(QString::fromLatin1(word.left(40)))));
        return value;
    }

    double equalNumbers(const QList<QByteArray>& words) const
    {
        if (words.size() != 3)
            fail("there are three numbers on a line");
        const double value = number(words[0]);
        if (number(words[1]) != value || number(words[2]) != value)
            fail("the three columns differ, and a camera has one table");
        return value;
    }

    // In this order of operations no rounding takes place between 4096 values in the plain domain.
    double valueAt(int input) const
    {
        const double scale = kLutMaxOutput;
        const double at = (input - scale * m_min) * (m_size - 1) / (scale * (m_max - m_min));
        const double within = std::clamp(at, 0.0, double(m_size - 1));
        const int left = std::min(int(within), m_size - 2);
        const double from = m_values[std::size_t(left)];
        const double to = m_values[std::size_t(left) + 1];
        const double value = from + (to - from) * (within - left);
        return std::clamp(value, 0.0, 1.0);
    }

    const QString m_name;
    int m_line = 0;
    int m_size = 0;
    double m_min = 0;
    double m_max = 1;
    std::vector<double> m_values;
};

} // namespace

LutImage parseCube(const QByteArray& text, const QString& name)
{
    return CubeReader(name).read(text);
}

QByteArray cubeText(const LutImage& image)
{
    QByteArray text = "TITLE \"Orlune camera table\"\n";
    if (const auto trailer = orlune::ReadTrailer(image))
        text += "# " + settingsInWords(*trailer).toUtf8() + '\n';
    text += "LUT_1D_SIZE " + QByteArray::number(kLutEntries) + "\nDOMAIN_MIN 0 0 0\nDOMAIN_MAX 1 1 1\n";
    for (qint32 entry : image.Entries) {
        const QByteArray value = QByteArray::number(entry / double(kLutMaxOutput), 'f', 6);
        text += value + ' ' + value + ' ' + value + '\n';
    }
    return text;
}

} // namespace tools
