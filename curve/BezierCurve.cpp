#include "curve/BezierCurve.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <new>

namespace {

constexpr double kNeutralGamma = 1.0;
constexpr double kNeutralTolerance = 0.0001;
constexpr double kMaxSpreadExponent = 100.0; // a gamma of 0.01; 65535 to the power of 50 is still a double

// False for what is not a number.
template <typename T>
bool Within(T value, T low, T high)
{
    return value >= low && value <= high;
}

bool BitsWithin(std::int32_t bits)
{
    return Within(bits, CBezierCurve::kMinBits, CBezierCurve::kMaxBits);
}

bool ToneWithin(std::int32_t tone)
{
    return Within(tone, CBezierCurve::kMinTone, CBezierCurve::kMaxTone);
}

bool GammaWithin(double gamma)
{
    return Within(gamma, CBezierCurve::kMinGamma, CBezierCurve::kMaxGamma);
}

std::int32_t TableSize(std::int32_t bits)
{
    return std::int32_t(IntPow(2.0, bits));
}

// What scales a value of 8 bits to the depth.
double DepthScale(std::int32_t bits)
{
    return IntPow(2.0, bits - 8);
}

bool PointsWithin(const TablePoint* points, std::int32_t count, std::int32_t last)
{
    for (std::int32_t k = 1; k < count; ++k)
        if (points[k].x <= points[k - 1].x)
            return false;
    return points[0].x >= 0 && points[count - 1].x <= last;
}

// Compiles a loop for wider registers as well; the loader picks what the processor has. The results are the
// same: the wider code fuses nothing either. Under the sanitizers the loader's choice would come too early.
#if defined(__GNUC__) && !defined(__clang__) && defined(__x86_64__) && defined(__ELF__) &&                   \
    !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#define ORLUNE_WIDE_LOOP __attribute__((target_clones("default", "avx2")))
#else
#define ORLUNE_WIDE_LOOP
#endif

// The samples of one segment. Where they go is settled before, so that the loop has no branch and is
// vectorised.
ORLUNE_WIDE_LOOP void Sample(double y1, double c1, double c2, double y2, double dx, double m,
                             std::int32_t count, double* to)
{
    for (std::int32_t i = 0; i < count; ++i) {
        const double t = i / dx / m;
        const double u = 1.0 - t;
        double v = y1 * u * u * u + 3.0 * c1 * u * u * t + 3.0 * c2 * u * t * t + y2 * t * t * t;
        v = 0.0 < v ? v : 0.0;
        to[i] = v < 1.0 ? v : 1.0;
    }
}

// trunc(pow(i / last, exponent) * last) for each i, with a quarter of the calls of pow: the power of a
// product is the product of the powers, so only what is no multiple of 2, 3 or 5 needs a call, and its
// multiples by these follow. A product may be wrong in its last bits. It settles the integer where it is
// clear of the next one; elsewhere the formula itself does.
//
// The powers are those of i / centre, so that none leaves the range of a double: the smallest and the largest
// are last to the power of minus and plus exponent / 2.
void SpreadPowers(double exponent, std::int32_t n, std::int32_t* out)
{
    // Both ways together are off by fewer than 3 * exponent + 60 roundings: 3e-9 at 16 bits.
    constexpr double kDoubt = 1e-6;
    const double last = n - 1;
    const double centre = std::sqrt(last);
    const double unit = std::pow(centre / last, exponent) * last;
    const double power2 = std::pow(2.0, exponent);
    const double power3 = std::pow(3.0, exponent);
    const double power5 = std::pow(5.0, exponent);

    const auto settle = [&](std::int32_t i, double power) {
        const double value = power * unit;
        const std::int32_t low = std::int32_t(value - kDoubt);
        const std::int32_t high = std::int32_t(value + kDoubt);
        out[i] = low == high ? low : std::int32_t(std::pow(i / last, exponent) * last);
    };
    out[0] = 0;
    for (std::int32_t i = 1; i < n; i += 2) {
        if (i % 3 == 0 || i % 5 == 0)
            continue;
        double at5 = std::pow(i / centre, exponent);
        for (std::int32_t i5 = i; i5 < n; i5 *= 5, at5 *= power5) {
            double at3 = at5;
            for (std::int32_t i3 = i5; i3 < n; i3 *= 3, at3 *= power3) {
                double at2 = at3;
                for (std::int32_t i2 = i3; i2 < n; i2 *= 2, at2 *= power2)
                    settle(i2, at2);
            }
        }
    }
}

// value * numerator / denominator in integers, truncated. Integers are slow to divide, so it is a
// multiplication here: half a unit more in the numerator keeps the quotient 0.5 / denominator away from the
// integers on either side, which for the numbers of a 12-bit table is far more than the roundings can move
// it. value is 0 or more.
class Ratio
{
public:
    Ratio(std::int32_t numerator, std::int32_t denominator)
        : m_factor(double(numerator) / denominator), m_half(0.5 / denominator)
    {
    }
    std::int32_t Of(std::int32_t value) const { return std::int32_t(value * m_factor + m_half); }

private:
    double m_factor;
    double m_half;
};

// The drawn samples lie within 0.0 to 1.0, so the integers need no limit.
void ToIntegers(const CurveTarget& curve, std::int32_t* out)
{
    const double m = curve.size - 1;
    for (std::int32_t i = 0; i < curve.size; ++i)
        out[i] = std::int32_t(curve.table[i] * m + 0.5);
}

} // namespace

double IntPow(double base, std::int32_t exponent)
{
    std::uint32_t rest = exponent < 0 ? 0u - std::uint32_t(exponent) : std::uint32_t(exponent);
    double result = 1.0;
    for (;;) {
        if (rest & 1u)
            result *= base;
        rest >>= 1;
        if (rest == 0)
            break;
        base *= base;
    }
    return exponent < 0 ? 1.0 / result : result;
}

CBezierCurve::CBezierCurve()
    : m_pBrightnessCurve(nullptr), m_pContrastCurve(nullptr), m_pPointCurve(nullptr), m_pToneTable(nullptr),
      m_pStageTable(nullptr), m_size(0)
{
}

CBezierCurve::~CBezierCurve()
{
    ReleaseBuffers();
}

void CBezierCurve::ReleaseBuffers()
{
    const auto release = [](auto*& buffer) {
        delete[] buffer;
        buffer = nullptr;
    };
    release(m_pBrightnessCurve);
    release(m_pContrastCurve);
    release(m_pPointCurve);
    release(m_pToneTable);
    release(m_pStageTable);
}

// Has the buffer hold `size` zeros; false for want of memory.
template <typename T>
bool CBezierCurve::PrepareBuffer(T*& buffer, std::int32_t size)
{
    if (size != m_size) {
        ReleaseBuffers();
        m_size = size;
    }
    if (!buffer)
        buffer = new (std::nothrow) T[std::size_t(size)];
    if (!buffer)
        return false;
    std::fill_n(buffer, size, T(0));
    return true;
}

void CBezierCurve::BezierSegment(const CurveTarget& target, std::int32_t prev, std::int32_t start,
                                 std::int32_t end, std::int32_t next)
{
    const CurvePoint* const points = target.points;
    const double x1 = points[start].x;
    const double y1 = points[start].y;
    const double x2 = points[end].x;
    const double y2 = points[end].y;
    const double dx = x2 - x1;
    const double dy = y2 - y1;

    const auto tangentAtStart = [&] { return (y2 - points[prev].y) / (x2 - points[prev].x); };
    const auto tangentAtEnd = [&] { return (points[next].y - y1) / (points[next].x - x1); };
    double c1;
    double c2;
    if (prev == start && end == next) {
        c1 = y1 + dy / 3.0;
        c2 = y1 + dy * 2.0 / 3.0;
    } else if (prev == start) {
        c2 = y2 - tangentAtEnd() * dx / 3.0;
        c1 = y1 + (c2 - y1) / 2.0;
    } else if (end == next) {
        c1 = y1 + tangentAtStart() * dx / 3.0;
        c2 = y2 + (c1 - y2) / 2.0;
    } else {
        c1 = y1 + tangentAtStart() * dx / 3.0;
        c2 = y2 - tangentAtEnd() * dx / 3.0;
    }

    const double m = target.size - 1.0;
    const double first = std::trunc(x1 * m + 0.5);
    if (!(dx > 0.0 && Within(first, 0.0, m)))
        return;
    const double steps = std::min(std::trunc(dx * m + 0.5), m - first);
    Sample(y1, c1, c2, y2, dx, m, std::int32_t(steps) + 1, target.table + std::int32_t(first));
}

int CBezierCurve::CreatePointCurve(const TablePoint* points, std::int32_t count, std::int32_t bits,
                                   std::int32_t* out)
{
    if (!points || !out)
        return kNullPointer;
    if (!BitsWithin(bits) || !Within(count, kMinPoints, kMaxPoints))
        return kOutOfLimits;
    const std::int32_t n = TableSize(bits);
    const std::int32_t last = n - 1;
    if (!PointsWithin(points, count, last))
        return kOutOfLimits;
    if (!PrepareBuffer(m_pPointCurve, n))
        return kNoMemory;

    CurvePoint controls[kMaxPoints] = {};
    for (std::int32_t k = 0; k < count; ++k)
        controls[k] = {points[k].x / double(last), points[k].y / double(last)};
    const CurveTarget target{controls, m_pPointCurve, n};
    for (std::int32_t k = 0; k + 1 < count; ++k)
        BezierSegment(target, std::max(k - 1, 0), k, k + 1, std::min(k + 2, count - 1));
    ToIntegers(target, out);
    return kSuccess;
}

int CBezierCurve::CreateGammaLut(double gamma, std::int32_t bits, std::int32_t* out)
{
    if (!GammaWithin(gamma) || !BitsWithin(bits))
        return kOutOfLimits;
    if (!out)
        return kNullPointer;

    const std::int32_t n = TableSize(bits);
    const double last = n - 1;
    const double exponent = 1.0 / std::fabs(gamma); // a negative zero is a zero
    if (exponent == 1.0) {
        // What the formula gives too, as pow(x, 1.0) is x.
        for (std::int32_t i = 0; i < n; ++i)
            out[i] = std::int32_t(i / last * last);
    } else if (exponent <= kMaxSpreadExponent) {
        SpreadPowers(exponent, n, out);
    } else {
        // So steep a curve is 0 up to where it reaches 1, near its end.
        const std::int32_t flat = std::int32_t(std::pow(1.0 / last, 1.0 / exponent) * last * 0.999);
        std::fill_n(out, flat, 0);
        for (std::int32_t i = flat; i < n; ++i)
            out[i] = std::int32_t(std::pow(i / last, exponent) * last);
    }
    return kSuccess;
}

int CBezierCurve::CreateBrightnessLut(std::int32_t brightness, std::int32_t bits, std::int32_t* out)
{
    if (!out)
        return kNullPointer;
    if (!ToneWithin(brightness) || !BitsWithin(bits))
        return kOutOfLimits;
    const std::int32_t n = TableSize(bits);
    if (!PrepareBuffer(m_pBrightnessCurve, n))
        return kNoMemory;

    const double scale = DepthScale(bits);
    const std::int32_t span = std::int32_t(150.0 * scale);
    const std::int32_t low = std::int32_t(100.0 * scale);
    const std::int32_t high = std::int32_t(220.0 * scale);
    const std::int32_t b = std::int32_t(brightness * scale);
    const double mid = (high + low) / 2.0;
    const double shift = b / double(span) * (high - low) / 2.0;
    const std::int32_t px = std::int32_t(mid - shift);
    const std::int32_t py = std::int32_t(mid + shift);

    const double last = n - 1;
    // The last point ends no segment; it sets the tangent at the point before it.
    const CurvePoint points[] = {{0.0, 0.0}, {px / last, py / last}, {1.0, 1.0}, {1.1, 1.0}};
    const CurveTarget target{points, m_pBrightnessCurve, n};
    BezierSegment(target, 0, 0, 1, 2);
    BezierSegment(target, 0, 1, 2, 3);
    ToIntegers(target, out);
    return kSuccess;
}

int CBezierCurve::CreateContrastLut(std::int32_t contrast, std::int32_t bits, std::int32_t* out)
{
    if (!out)
        return kNullPointer;
    if (!ToneWithin(contrast) || !BitsWithin(bits))
        return kOutOfLimits;
    const std::int32_t n = TableSize(bits);
    if (!PrepareBuffer(m_pContrastCurve, n))
        return kNoMemory;

    const double scale = DepthScale(bits);
    const std::int32_t lo = std::int32_t(63.0 * scale);
    const std::int32_t hi = std::int32_t(191.0 * scale);
    const std::int32_t c = std::int32_t(contrast * scale);
    const std::int32_t ylo = lo - c / 2;
    const std::int32_t yhi = hi + c / 2;

    const double last = n - 1;
    const CurvePoint points[] = {
        {0.0, 0.0}, {lo / last, ylo / last}, {0.5, 0.5}, {hi / last, yhi / last}, {1.0, 1.0}};
    const CurveTarget target{points, m_pContrastCurve, n};
    BezierSegment(target, 0, 0, 1, 2);
    BezierSegment(target, 0, 1, 2, 3);
    BezierSegment(target, 1, 2, 3, 4);
    BezierSegment(target, 2, 3, 4, 4);
    ToIntegers(target, out);
    return kSuccess;
}

int CBezierCurve::CreateCompositeLut(std::int32_t brightness, std::int32_t contrast, double gamma,
                                     std::int32_t bits, std::int32_t* out)
{
    if (!ToneWithin(brightness) || !ToneWithin(contrast) || !GammaWithin(gamma) || !BitsWithin(bits))
        return kOutOfLimits;
    if (!out)
        return kNullPointer;
    const std::int32_t n = TableSize(bits);
    if (!PrepareBuffer(m_pToneTable, n) || !PrepareBuffer(m_pStageTable, n))
        return kNoMemory;

    // The arguments are tested, so only memory can fail from here on; out is written by the last step alone.
    int result = CreateGammaLut(gamma, bits, m_pToneTable);
    if (result != kSuccess)
        return result;
    result = CreateBrightnessLut(brightness, bits, m_pStageTable);
    if (result != kSuccess)
        return result;
    for (std::int32_t i = 0; i < n; ++i)
        m_pToneTable[i] = m_pStageTable[m_pToneTable[i]];
    result = CreateContrastLut(contrast, bits, m_pStageTable);
    if (result != kSuccess)
        return result;
    for (std::int32_t i = 0; i < n; ++i)
        out[i] = m_pStageTable[m_pToneTable[i]];
    return kSuccess;
}

int CBezierCurve::FindRangeExtremes(std::int32_t lo, std::int32_t hi, const std::int32_t* table,
                                    std::int32_t* max, std::int32_t* min)
{
    constexpr std::int32_t last = kRangeTableSize - 1;
    if (!Within(lo, 0, last) || !Within(hi, 0, last) || hi - lo + 1 < kMinRangeEntries)
        return kOutOfLimits;
    if (!table || !max || !min)
        return kNullPointer;
    std::int32_t largest = table[lo];
    std::int32_t smallest = table[lo];
    for (std::int32_t i = lo + 1; i <= hi; ++i) {
        largest = std::max(largest, table[i]);
        smallest = std::min(smallest, table[i]);
    }
    *max = largest;
    *min = smallest;
    return kSuccess;
}

int CBezierCurve::AdjustLutRange(std::int32_t brightness, std::int32_t contrast, double gamma,
                                 std::int32_t lo, std::int32_t hi, std::int32_t* table)
{
    if (!table)
        return kNullPointer;
    if (brightness == 0 && contrast == 0 && std::fabs(kNeutralGamma - gamma) < kNeutralTolerance)
        return kSuccess;

    constexpr std::int32_t last = kRangeTableSize - 1;
    const std::unique_ptr<std::int32_t[]> composite(new (std::nothrow) std::int32_t[kRangeTableSize]);
    if (!composite)
        return kNoMemory;
    int result = CreateCompositeLut(brightness, contrast, gamma, kRangeBits, composite.get());
    if (result != kSuccess)
        return result;
    std::int32_t max;
    std::int32_t min;
    result = FindRangeExtremes(lo, hi, table, &max, &min);
    if (result != kSuccess)
        return result;
    if (max > last || min < 0)
        return kOutOfLimits;

    const std::int32_t span = max - min;
    const Ratio squeeze(span, last);
    for (std::int32_t i = 0; i <= last; ++i)
        composite[i] = squeeze.Of(composite[i]) + min;
    const Ratio stretch(last, std::max(span, 1));
    for (std::int32_t i = lo; i <= hi; ++i)
        table[i] = stretch.Of(table[i] - min);
    for (std::int32_t i = lo; i <= hi; ++i)
        table[i] = composite[table[i]];
    return kSuccess;
}
