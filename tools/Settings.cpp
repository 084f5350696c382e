#include "tools/Settings.h"

#include <algorithm>
#include <iterator>

#include <QJsonObject>

#include "lut/PlainString.h"

namespace tools {

using orlune::LutImage;
using orlune::LutSettings;
using orlune::LutTrailer;

bool sameSettings(const LutSettings& a, const LutSettings& b)
{
    return std::all_of(std::begin(kSettingRows), std::end(kSettingRows),
                       [&](const SettingRow& row) { return a.*row.member == b.*row.member; });
}

QString settingsProblem(const LutSettings& settings)
{
    for (const SettingRow& row : kSettingRows) {
        const int value = settings.*row.member;
        if (!row.limits.Contains(value))
            return QString("The %1 goes from %2 to %3, and %4 is outside.")
                .arg(row.label)
                .arg(row.limits.low)
                .arg(row.limits.high)
                .arg(value);
    }
    if (settings.RangeMax - settings.RangeMin < orlune::kMinRangeDistance)
        return QString("The range %1:%2 is too narrow: the maximum has to be at least %3 above the minimum.")
            .arg(settings.RangeMin)
            .arg(settings.RangeMax)
            .arg(orlune::kMinRangeDistance);
    return {};
}

QString standardName(const LutTrailer& trailer)
{
    QString name = orlune::FromPlainString(trailer.StandardName);
    std::replace_if(
        name.begin(), name.end(), [](QChar c) { return !c.isPrint(); }, QChar('?'));
    return name;
}

QString settingsInWords(const LutTrailer& trailer)
{
    const LutSettings& settings = trailer.Settings;
    return "standard curve " + standardName(trailer) +
           QString(", gamma %1, brightness %2, contrast %3, range %4 to %5")
               .arg(settings.Gamma)
               .arg(settings.Brightness)
               .arg(settings.Contrast)
               .arg(settings.RangeMin)
               .arg(settings.RangeMax);
}

QJsonValue settingsAsJson(const LutImage& image)
{
    const auto trailer = orlune::ReadTrailer(image);
    if (!trailer)
        return QJsonValue::Null;
    QJsonObject object{{"standard", standardName(*trailer)}};
    for (const SettingRow& row : kSettingRows)
        object[row.key] = trailer->Settings.*row.member;
    return object;
}

} // namespace tools
