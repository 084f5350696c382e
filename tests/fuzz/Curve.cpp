// The curve engine with any arguments, several calls on one object, against the plain formulas.
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
        if (gamma == 0)
            gamma = 0; // the formulas know no negative one
    }

    int brightness;
    int contrast;
    double gamma;
};

struct Engines
{
    // Calls with a copy of the table, its length on the heap, or with null now and then.
    template <class Call, class Formulas, class... Arguments>
    void compare(Table table, Call call, Formulas formulas, Arguments... arguments)
    {
        const bool isNull = input.take<std::uint8_t>() == 0xff;
        const std::unique_ptr<std::int32_t[]> out(isNull ? nullptr : new std::int32_t[table.size()]);
        if (out)
            std::copy(table.begin(), table.end(), out.get());
        if ((curve.*call)(arguments..., out.get()) == CBezierCurve::kSuccess) {
            require(out != nullptr, "a null table is a failure");
            (plain.*formulas)(arguments..., table.data());
        }
        require(!out || std::equal(table.begin(), table.end(), out.get()),
                "the table is the formulas' table, or as it was");
    }

    Input input;
    CBezierCurve curve;
    PlainCurve plain;
};

// A depth outside the limits gets one entry.
Table tableOf(int bits)
{
    const bool isDepth = bits >= CBezierCurve::kMinBits && bits <= CBezierCurve::kMaxBits;
    return Table(isDepth ? std::size_t(1) << bits : 1, -7);
}

void points(Engines& engines, Input& input)
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
    engines.compare(tableOf(bits), &CBezierCurve::CreatePointCurve, &PlainCurve::PointCurve, points.get(),
                    count, bits);
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

void tables(Engines& engines, Input& input)
{
    const auto [brightness, contrast, gamma] = Tones(input);
    const int bits = input.takeNear(CBezierCurve::kMinBits, CBezierCurve::kMaxBits);
    const Table table = tableOf(bits);
    engines.compare(table, &CBezierCurve::CreateGammaLut, &PlainCurve::GammaLut, gamma, bits);
    engines.compare(table, &CBezierCurve::CreateBrightnessLut, &PlainCurve::BrightnessLut, brightness, bits);
    engines.compare(table, &CBezierCurve::CreateContrastLut, &PlainCurve::ContrastLut, contrast, bits);
    engines.compare(table, &CBezierCurve::CreateCompositeLut, &PlainCurve::CompositeLut, brightness, contrast,
                    gamma, bits);
}

void range(Engines& engines, Input& input)
{
    constexpr int kEntries = CBezierCurve::kRangeTableSize;
    const auto [brightness, contrast, gamma] = Tones(input);
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
    const int found = engines.curve.FindRangeExtremes(lo, hi, table.data(), &max, &min);
    require(found == 0 ? min <= table[std::size_t(lo)] && max >= table[std::size_t(hi)]
                       : max == kUntouched && min == kUntouched,
            "the extremes enclose the range, or are not given");
    engines.compare(table, &CBezierCurve::AdjustLutRange, &PlainCurve::AdjustRange, brightness, contrast,
                    gamma, lo, hi);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Engines engines{Input(data, size), {}, {}};
    Input& input = engines.input;
    for (int call = 0; call < 6 && !input.isEmpty(); ++call) {
        switch (input.take<std::uint8_t>() % 5) {
        case 0:
            points(engines, input);
            break;
        case 1:
            segment(input, engines.curve);
            break;
        case 2:
            tables(engines, input);
            break;
        case 3:
            range(engines, input);
            break;
        default:
            IntPow(input.take<double>(), input.take<std::int32_t>());
        }
    }
    return 0;
}
