#include "curves/CurveDocs.h"

#include <cstdlib>

#include <QStringList>

#include "curves/StandardCurves.h"

namespace orlune {

namespace {

constexpr int kPlotStep = 32;
constexpr int kPlotJump = 64; // a larger step between neighbours is drawn as it stands

constexpr char kPageHead[] =
    R"md(<!-- Made by the target orlune_curve_docs from resources/curves/StandardCurves.cpp. Edit that file. -->

# Standard curves

A standard curve is a table to start from. Each is a file of 16384 bytes, `NAME.bin`, in
`resource/lqplugins/LookUpTable/StandardLut` beside the module: in `build/release/bin` after a build, in
`/usr/lib/x86_64-linux-gnu/orlune` after the installation of the packages on a PC. A file that you add there is listed
too, as [formats.md](formats.md) tells. Applications other than the viewer may keep the folder elsewhere.

All are made from a formula for y of x, both from 0 to 1, where entry i is 4095 y(i / 4095), rounded to the nearest
whole number. The exponent in the name of a gamma curve is the one of the formula: output = input^gamma, so below 1
brightens. The Gamma control counts the other way round: a setting of 200 is the exponent 1 / 2.00.

*Lost codes* are the outputs that no input reaches; so many of the 4096 inputs can't be told apart any more. *18 % grey*
is the output for 18 % of the full light, the middle of a picture.

| Name | Curve | Lost codes | 18 % grey |
|---|---|---|---|
)md";

constexpr char kExamplesHead[] = R"md(
## Examples

In `resource/lqplugins/LookUpTable/Lut12`, where the file dialogs begin, lie tables that were made with the controls.

| File | Standard curve | Gamma | Brightness | Contrast | Range | What it shows |
|---|---|---|---|---|---|---|
)md";

// The drawing's units are the table's own, so that a point reads as an entry.
constexpr char kPlot[] =
    R"svg(<svg xmlns="http://www.w3.org/2000/svg" width="412" height="400" viewBox="-800 -250 5150 5000"
 font-family="sans-serif" font-size="170">
<title>%1</title>
<rect x="-800" y="-250" width="5150" height="5000" fill="white"/>
<g transform="matrix(1 0 0 -1 0 4095)" fill="none">
<path stroke="#bbb" stroke-width="12" d="%2"/>
<polyline stroke="#06c" stroke-width="40" stroke-linejoin="round" points="%3"/>
</g>
%4<text x="2048" y="4600" text-anchor="middle">input</text>
<text x="-620" y="2048" text-anchor="middle" transform="rotate(-90 -620 2048)">output</text>
</svg>
)svg";

constexpr char kCurve[] = R"md(
## %1

![%1](curves/%2.svg)

`%2`: `%3`

Source: %4

Use: %5
)md";

QByteArray Plot(const CurveSource& curve)
{
    const LutImage table = TableOf(curve);
    const auto jumps = [&table](int from) {
        return from >= 0 && from < kLutMaxOutput &&
               std::abs(table.Entries[from + 1] - table.Entries[from]) > kPlotJump;
    };
    QStringList points;
    for (int i = 0; i < kLutEntries; ++i) {
        if (i % kPlotStep == 0 || i == kLutMaxOutput || jumps(i) || jumps(i - 1))
            points += QString("%1,%2").arg(i).arg(table.Entries[i]);
    }
    QString grid, labels;
    for (int at : {0, 1024, 2048, 3072, kLutMaxOutput}) {
        grid += QString("M%1 0V4095M0 %1H4095").arg(at);
        labels += QString("<text x=\"%1\" y=\"4330\" text-anchor=\"middle\">%1</text>\n"
                          "<text x=\"-90\" y=\"%2\" text-anchor=\"end\">%1</text>\n")
                      .arg(at)
                      .arg(kLutMaxOutput + 60 - at);
    }
    return QString(kPlot).arg(curve.Title, grid, points.join(' '), labels).toUtf8();
}

QByteArray Page()
{
    constexpr int kGrey = 737; // 0.18 * 4095
    QString head = kPageHead, curves, examples = kExamplesHead;
    for (const CurveSource& curve : StandardCurves()) {
        const LutImage table = TableOf(curve);
        head += QString("| `%1` | %2 | %3 | %4 |\n")
                    .arg(curve.Name, curve.Title)
                    .arg(LostCodes(table))
                    .arg(table.Entries[kGrey]);
        curves += QString(kCurve).arg(curve.Title, curve.Name, curve.Formula, curve.Origin, curve.Use);
    }
    for (const ExampleSource& example : Examples()) {
        const LutSettings& settings = example.Settings;
        examples += QString("| `%1` | `%2` | %4 | %5 | %6 | %7 to %8 | %3 |\n")
                        .arg(example.File, example.Standard, example.Use)
                        .arg(settings.Gamma)
                        .arg(settings.Brightness)
                        .arg(settings.Contrast)
                        .arg(settings.RangeMin)
                        .arg(settings.RangeMax);
    }
    return (head + curves + examples).toUtf8();
}

} // namespace

QMap<QString, QByteArray> CurveDocs()
{
    QMap<QString, QByteArray> files{{"standard-curves.md", Page()}};
    for (const CurveSource& curve : StandardCurves())
        files.insert(QString("curves/%1.svg").arg(curve.Name), Plot(curve));
    return files;
}

} // namespace orlune
