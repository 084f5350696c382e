// The curve engine with any arguments, several calls on one object, against the plain formulas.
#include <cmath>
#include <limits>

#include "FuzzInput.h"
#include "PlainCurve.h"
#include "curve/BezierCurve.h"

using fuzz::Input;
using fuzz::require;

namespace {

constexpr std::int32_t kUntouched = -7;

int takeTone(Input& input)
{
    return input.takeNear(CBezierCurve::kMinTone, CBezierCurve::kMaxTone);
}

// Hundredths, as the dialog has them, or any double at all.
double takeGamma(Input& input)
{
    return input.takeBelow(2) ? input.takeNear(0, 400) / 100.0 : input.take<double>();
}

// A table of that depth with its length on the heap; null now and then. A depth outside the limits gets one
// entry.
struct Output
{
    Output(Input& input, int bits)
        : size(bits < CBezierCurve::kMinBits || bits > CBezierCurve::kMaxBits ? 1 : 1 << bits),
          entries(input.take<std::uint8_t>() == 0xff ? nullptr : new std::int32_t[std::size_t(size)])
    {
        if (entries)
            std::fill_n(entries.get(), size, kUntouched);
    }

    // Of a call with this result; plain() writes the formulas' table.
    template <class Plain>
    void check(int code, Plain plain) const
    {
        if (code != CBezierCurve::kSuccess) {
            require(!entries || std::all_of(entries.get(), entries.get() + size,
                                            [](int v) { return v == kUntouched; }),
                    "a failed call writes nothing");
            return;
        }
        require(entries != nullptr, "a null table is a failure");
        std::vector<std::int32_t> wanted(entries.get(), entries.get() + size);
        plain(wanted.data());
        require(std::equal(wanted.begin(), wanted.end(), entries.get()), "the table is the formulas' table");
    }

    int size;
    std::unique_ptr<std::int32_t[]> entries;
};

void points(Input& input, CBezierCurve& curve, PlainCurve& plain)
{
    const int bits = input.takeNear(CBezierCurve::kMinBits, CBezierCurve::kMaxBits);
    const int count = input.takeNear(CBezierCurve::kMinPoints, CBezierCurve::kMaxPoints);
    const bool sorted = input.takeBelow(2) != 0;
    // As many as the count says, when it says something possible.
    const std::size_t size = std::size_t(std::clamp(count, 1, 64));
    const std::unique_ptr<TablePoint[]> points(new TablePoint[size]);
    for (std::size_t k = 0; k < size; ++k)
        points[k] = {sorted ? input.takeBelow(1 << 16) : input.take<std::int32_t>(),
                     input.take<std::int32_t>()};
    if (sorted)
        std::sort(points.get(), points.get() + size, [](auto& a, auto& b) { return a.x < b.x; });
    const Output out(input, bits);
    const int code = curve.CreatePointCurve(points.get(), count, bits, out.entries.get());
    out.check(code, [&](std::int32_t* table) { plain.PointCurve(points.get(), count, bits, table); });
}

void segment(Input& input, CBezierCurve& curve)
{
    const int count = 1 + input.takeBelow(6);
    const std::unique_ptr<CurvePoint[]> points(new CurvePoint[std::size_t(count)]);
    for (int k = 0; k < count; ++k)
        points[std::size_t(k)] = {input.take<double>(), input.take<double>()};
    const int size = 2 + input.takeBelow(300);
    const std::unique_ptr<double[]> table(new double[std::size_t(size)]());
    const int prev = input.takeBelow(count), start = input.takeBelow(count), end = input.takeBelow(count);
    curve.BezierSegment({points.get(), table.get(), size}, prev, start, end, input.takeBelow(count));
    require(std::all_of(table.get(), table.get() + size, [](double v) { return v >= 0.0 && v <= 1.0; }),
            "samples lie within the table's values");
}

void tables(Input& input, CBezierCurve& curve, PlainCurve& plain)
{
    const int brightness = takeTone(input);
    const int contrast = takeTone(input);
    const double gamma = takeGamma(input);
    const int bits = input.takeNear(CBezierCurve::kMinBits, CBezierCurve::kMaxBits);
    const double magnitude = std::fabs(gamma); // a negative zero is a zero
    {
        const Output out(input, bits);
        out.check(curve.CreateGammaLut(gamma, bits, out.entries.get()),
                  [&](std::int32_t* table) { plain.GammaLut(magnitude, bits, table); });
    }
    {
        const Output out(input, bits);
        out.check(curve.CreateBrightnessLut(brightness, bits, out.entries.get()),
                  [&](std::int32_t* table) { plain.BrightnessLut(brightness, bits, table); });
    }
    {
        const Output out(input, bits);
        out.check(curve.CreateContrastLut(contrast, bits, out.entries.get()),
                  [&](std::int32_t* table) { plain.ContrastLut(contrast, bits, table); });
    }
    const Output out(input, bits);
    out.check(curve.CreateCompositeLut(brightness, contrast, gamma, bits, out.entries.get()),
              [&](std::int32_t* table) { plain.CompositeLut(brightness, contrast, magnitude, bits, table); });
}

void range(Input& input, CBezierCurve& curve, PlainCurve& plain)
{
    const int brightness = takeTone(input);
    const int contrast = takeTone(input);
    const double gamma = takeGamma(input);
    const int lo = input.takeNear(0, CBezierCurve::kRangeTableSize - 1);
    const int hi = input.takeNear(0, CBezierCurve::kRangeTableSize - 1);
    const bool inLimits = input.takeBelow(4) != 0;
    const auto table = fuzz::repeated<std::int32_t>(input.takeBytes(input.take<std::uint8_t>()),
                                                    CBezierCurve::kRangeTableSize);
    if (inLimits)
        std::for_each(table.get(), table.get() + CBezierCurve::kRangeTableSize, [](int& v) { v &= 4095; });
    std::vector<std::int32_t> wanted(table.get(), table.get() + CBezierCurve::kRangeTableSize);

    std::int32_t max = kUntouched, min = kUntouched;
    const int found = curve.FindRangeExtremes(lo, hi, table.get(), &max, &min);
    require(found == 0 ? min <= table[std::size_t(lo)] && max >= table[std::size_t(hi)]
                       : max == kUntouched && min == kUntouched,
            "the extremes enclose the range, or are not given");
    if (curve.AdjustLutRange(brightness, contrast, gamma, lo, hi, table.get()) == 0)
        plain.AdjustRange(brightness, contrast, std::fabs(gamma), lo, hi, wanted.data());
    require(std::equal(wanted.begin(), wanted.end(), table.get()),
            "the table is the formulas' table, or as it was");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    CBezierCurve curve;
    PlainCurve plain;
    for (int call = 0; call < 6 && !input.isEmpty(); ++call) {
        switch (input.take<std::uint8_t>() % 5) {
        case 0:
            points(input, curve, plain);
            break;
        case 1:
            segment(input, curve);
            break;
        case 2:
            tables(input, curve, plain);
            break;
        case 3:
            range(input, curve, plain);
            break;
        default:
            IntPow(input.take<double>(), input.take<std::int32_t>());
        }
    }
    return 0;
}
