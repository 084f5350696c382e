// The curve engine with any arguments, several calls on one object, against the plain formulas.
#include <cmath>

#include "FuzzInput.h"
#include "PlainCurve.h"
#include "curve/BezierCurve.h"

using fuzz::Input;
using fuzz::require;

namespace {

using Table = std::vector<std::int32_t>;

struct Tones
{
    explicit Tones(Input& input)
        : brightness(input.takeNear(CBezierCurve::kMinTone, CBezierCurve::kMaxTone)),
          contrast(input.takeNear(CBezierCurve::kMinTone, CBezierCurve::kMaxTone)),
          // Hundredths, as the dialog has them, or any double at all.
          gamma(input.takeBelow(2) ? input.takeNear(0, 400) / 100.0 : input.take<double>())
    {
    }

    int brightness;
    int contrast;
    double gamma;
    double magnitude = std::fabs(gamma); // a negative zero is a zero
};

// Calls with a copy of the table, its length on the heap, or with null now and then; plain() writes the
// formulas' table.
template <class Call, class Plain>
void compare(Input& input, Table table, Call call, Plain plain)
{
    const bool isNull = input.take<std::uint8_t>() == 0xff;
    const std::unique_ptr<std::int32_t[]> out(isNull ? nullptr : new std::int32_t[table.size()]);
    if (out)
        std::copy(table.begin(), table.end(), out.get());
    if (call(out.get()) == CBezierCurve::kSuccess) {
        require(out != nullptr, "a null table is a failure");
        plain(table.data());
    }
    require(!out || std::equal(table.begin(), table.end(), out.get()),
            "the table is the formulas' table, or as it was");
}

// A depth outside the limits gets one entry.
Table tableOf(int bits)
{
    const bool isDepth = bits >= CBezierCurve::kMinBits && bits <= CBezierCurve::kMaxBits;
    return Table(isDepth ? std::size_t(1) << bits : 1, -7);
}

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
    const auto call = [&](auto* out) { return curve.CreatePointCurve(points.get(), count, bits, out); };
    compare(input, tableOf(bits), call, [&](auto* out) { plain.PointCurve(points.get(), count, bits, out); });
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
    const Tones t(input);
    const int bits = input.takeNear(CBezierCurve::kMinBits, CBezierCurve::kMaxBits);
    const Table table = tableOf(bits);
    compare(
        input, table, [&](auto* out) { return curve.CreateGammaLut(t.gamma, bits, out); },
        [&](auto* out) { plain.GammaLut(t.magnitude, bits, out); });
    compare(
        input, table, [&](auto* out) { return curve.CreateBrightnessLut(t.brightness, bits, out); },
        [&](auto* out) { plain.BrightnessLut(t.brightness, bits, out); });
    compare(
        input, table, [&](auto* out) { return curve.CreateContrastLut(t.contrast, bits, out); },
        [&](auto* out) { plain.ContrastLut(t.contrast, bits, out); });
    compare(
        input, table,
        [&](auto* out) { return curve.CreateCompositeLut(t.brightness, t.contrast, t.gamma, bits, out); },
        [&](auto* out) { plain.CompositeLut(t.brightness, t.contrast, t.magnitude, bits, out); });
}

void range(Input& input, CBezierCurve& curve, PlainCurve& plain)
{
    constexpr int kEntries = CBezierCurve::kRangeTableSize;
    const Tones t(input);
    const int lo = input.takeNear(0, kEntries - 1);
    const int hi = input.takeNear(0, kEntries - 1);
    const bool inLimits = input.takeBelow(4) != 0;
    const auto pattern = input.takeBytes(input.take<std::uint8_t>());
    const auto entries = fuzz::repeated<std::int32_t>(pattern, kEntries);
    Table table(entries.get(), entries.get() + kEntries);
    for (auto& entry : table)
        entry &= inLimits ? kEntries - 1 : -1;

    constexpr std::int32_t kUntouched = -7;
    std::int32_t max = kUntouched, min = kUntouched;
    const int found = curve.FindRangeExtremes(lo, hi, table.data(), &max, &min);
    require(found == 0 ? min <= table[std::size_t(lo)] && max >= table[std::size_t(hi)]
                       : max == kUntouched && min == kUntouched,
            "the extremes enclose the range, or are not given");
    compare(
        input, table,
        [&](auto* out) { return curve.AdjustLutRange(t.brightness, t.contrast, t.gamma, lo, hi, out); },
        [&](auto* out) { plain.AdjustRange(t.brightness, t.contrast, t.magnitude, lo, hi, out); });
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
