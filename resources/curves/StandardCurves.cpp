#include "curves/StandardCurves.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace orlune {

namespace {

// Of the whole numbers that lift 18 % grey to half scale, the one whose curve and inverse lose the fewest
// codes.
constexpr double kLogStrength = 20;

constexpr double kSigmoidSlope = 6;

double Identity(double x)
{
    return x;
}

double Gamma045(double x)
{
    return std::pow(x, 0.45);
}

double Gamma07(double x)
{
    return std::pow(x, 0.7);
}

double Gamma22(double x)
{
    return std::pow(x, 2.2);
}

double Srgb(double x)
{
    return x <= 0.0031308 ? 12.92 * x : 1.055 * std::pow(x, 1 / 2.4) - 0.055;
}

double Rec709(double x)
{
    return x < 0.018 ? 4.5 * x : 1.099 * std::pow(x, 0.45) - 0.099;
}

double Bt1886Inverse(double x)
{
    return std::pow(x, 1 / 2.4);
}

double CieLightness(double x)
{
    return x <= 216.0 / 24389 ? 24389.0 / 2700 * x : 1.16 * std::cbrt(x) - 0.16;
}

double Log(double x)
{
    return std::log1p(kLogStrength * x) / std::log1p(kLogStrength);
}

double LogInverse(double x)
{
    return std::expm1(x * std::log1p(kLogStrength)) / kLogStrength;
}

double Sigmoid(double x)
{
    const auto logistic = [](double at) { return 1 / (1 + std::exp(-kSigmoidSlope * (at - 0.5))); };
    return (logistic(x) - logistic(0)) / (logistic(1) - logistic(0));
}

double Inverse(double x)
{
    return 1 - x;
}

double Threshold(double x)
{
    return x < 0.5 ? 0 : 1;
}

} // namespace

const std::vector<CurveSource>& StandardCurves()
{
    static const std::vector<CurveSource> curves = {
        {"lut4_11", "Identity", "y = x", "None needed.",
         "The curve that Orlune starts from and goes back to: the camera's values as they are.", Identity},
        {"gamma_0_45", "Gamma 0.45", "y = x^0.45", "The plain power law with the exponent of Rec. 709.",
         "Brightens for a display, as older cameras do with \"gamma on\". Very steep in the darkest codes, "
         "where it "
         "lifts noise too; sRGB and Rec. 709 avoid that.",
         Gamma045},
        {"gamma_0_7", "Gamma 0.7", "y = x^0.7", "A plain power law.",
         "Opens the shadows gently where 0.45 looks washed out, and costs less than half as many codes.",
         Gamma07},
        {"gamma_2_2", "Gamma 2.2", "y = x^2.2", "A plain power law; 2.2 is close to 1 / 0.45.",
         "Takes back a gamma of 0.45 that was applied before, or darkens to bring out structure in bright "
         "areas.",
         Gamma22},
        {"srgb", "sRGB", "y = 12.92 x for x <= 0.0031308, else 1.055 x^(1/2.4) - 0.055",
         "IEC 61966-2-1, from linear light to code.",
         "Images that a computer shows or stores: ordinary screens and image files expect this curve.", Srgb},
        {"rec709", "Rec. 709", "y = 4.5 x for x < 0.018, else 1.099 x^0.45 - 0.099",
         "Recommendation ITU-R BT.709, opto-electronic transfer, from linear light to code.",
         "Video: what a television camera does. Darker in the shadows than sRGB.", Rec709},
        {"bt1886_inverse", "BT.1886 inverse", "y = x^(1/2.4)",
         "Recommendation ITU-R BT.1886 with a black of 0, solved for the code of a given light.",
         "A reference video monitor shows the scene's light in true proportion.", Bt1886Inverse},
        {"cie_lightness", "CIE lightness", "y = 24389/2700 x for x <= 216/24389, else 1.16 x^(1/3) - 0.16",
         "CIE 1976 L\\*, divided by 100 (CIE 15).",
         "Equal steps of the output look equally large, so the codes are spent where the eye sees them: for "
         "measuring and comparing by perceived lightness.",
         CieLightness},
        {"log", "Logarithm", "y = ln(1 + 20 x) / ln 21",
         "The logarithm with an offset of 1/20. Of the whole numbers that lift 18 % grey to half scale, 20 "
         "is the "
         "one that loses the fewest codes: 1392, and as many in the inverse. 19 misses half scale, 21 loses "
         "more.",
         "Scenes with a large range of light: a ratio of two lights becomes nearly the same difference of "
         "codes, "
         "wherever it lies.",
         Log},
        {"log_inverse", "Logarithm, inverse", "y = (21^x - 1) / 20", "The logarithm above, solved for x.",
         "Brings an image that was stored through the logarithm back to linear light, or strengthens "
         "differences "
         "in bright areas.",
         LogInverse},
        {"sigmoid", "Sigmoid", "y = (s(x) - s(0)) / (s(1) - s(0)) with s(x) = 1 / (1 + e^(-6 (x - 1/2)))",
         "The logistic function, stretched to run from 0 to 1 exactly.",
         "More contrast in the middle without cutting off shadows and lights.", Sigmoid},
        {"inverse", "Inverse", "y = 1 - x", "None needed.",
         "A negative: dark marks on bright ground become bright marks, as for film or for light from behind.",
         Inverse},
        {"threshold", "Threshold", "y = 0 for x < 1/2, else 1", "None needed.",
         "Two values, for silhouettes. The controls can't move the step in a table of two values: set "
         "exposure "
         "and light so that half scale parts object and ground.",
         Threshold},
    };
    return curves;
}

const std::vector<ExampleSource>& Examples()
{
    static const std::vector<ExampleSource> examples = {
        {"open_shadows.lut", "lut4_11", {200, 0, 0, 0, kLutMaxOutput}, "Gamma alone, over the whole range."},
        {"srgb_contrast.lut",
         "srgb",
         {100, -20, 40, 0, kLutMaxOutput},
         "A standard curve with brightness taken back and contrast added."},
        {"lower_half.lut",
         "lut4_11",
         {150, 30, -40, 0, 2047},
         "All three controls, on the lower half of the inputs only."},
        {"open_shadows.csv",
         "lut4_11",
         {200, 0, 0, 0, kLutMaxOutput},
         "The first table as text, for a spreadsheet."},
    };
    return examples;
}

const CurveSource* FindStandardCurve(const char* name)
{
    for (const CurveSource& curve : StandardCurves()) {
        if (std::strcmp(curve.Name, name) == 0)
            return &curve;
    }
    return nullptr;
}

LutImage TableOf(const CurveSource& curve)
{
    LutImage image{};
    for (int i = 0; i < kLutEntries; ++i) {
        const double output = kLutMaxOutput * curve.Function(double(i) / kLutMaxOutput);
        image.Entries[i] = std::clamp(int(std::floor(output + 0.5)), 0, kLutMaxOutput);
    }
    return image;
}

} // namespace orlune
