// A table's settings in words, in JSON and against the window's limits.
#ifndef ORLUNE_TOOLS_SETTINGS_H
#define ORLUNE_TOOLS_SETTINGS_H

#include <QJsonValue>
#include <QString>

#include "lut/LutImage.h"

namespace tools {

struct SettingRow
{
    const char* key; // in JSON
    const char* label;
    const char* option; // of make; null for the ends of the range, which share one
    qint32 orlune::LutSettings::*member;
    orlune::ControlLimits limits; // what the window accepts, besides the distance of the range's ends
};

constexpr SettingRow kSettingRows[] = {
    {"gamma", "gamma", "gamma", &orlune::LutSettings::Gamma, orlune::kGammaLimits},
    {"brightness", "brightness", "brightness", &orlune::LutSettings::Brightness, orlune::kToneLimits},
    {"contrast", "contrast", "contrast", &orlune::LutSettings::Contrast, orlune::kToneLimits},
    {"rangeMin",
     "range minimum",
     nullptr,
     &orlune::LutSettings::RangeMin,
     {orlune::kRangeLimits.low, orlune::kRangeLimits.high - orlune::kMinRangeDistance}},
    {"rangeMax",
     "range maximum",
     nullptr,
     &orlune::LutSettings::RangeMax,
     {orlune::kRangeLimits.low + orlune::kMinRangeDistance, orlune::kRangeLimits.high}},
};

bool sameSettings(const orlune::LutSettings& a, const orlune::LutSettings& b);

// Why the window would not accept the settings, in a sentence with its limits; empty if it would.
QString settingsProblem(const orlune::LutSettings& settings);

// The standard curve's name, without characters that a terminal would obey.
QString standardName(const orlune::LutTrailer& trailer);

// "standard curve srgb, gamma 150, brightness 0, contrast 0, range 0 to 4095"
QString settingsInWords(const orlune::LutTrailer& trailer);

// An object of the rows' keys and "standard", or null for an image without a trailer.
QJsonValue settingsAsJson(const orlune::LutImage& image);

} // namespace tools

#endif
