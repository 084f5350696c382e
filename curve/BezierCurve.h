// The curve engine: control points and tone controls to integer tables.
//
// A table of `bits` bits has n = 2^bits entries, 0 to last = n - 1, and its values are 0 to last too. All
// arithmetic is IEEE double, rounded after each single operation and written out from left to right; trunc(v)
// is the conversion of v to a 32-bit integer, toward zero. Whoever changes a formula, or the compiler's
// freedom to fuse or reorder operations, changes tables that users have stored.
#ifndef ORLUNE_CURVE_BEZIERCURVE_H
#define ORLUNE_CURVE_BEZIERCURVE_H

#include <cstdint>

// A control point. 0.0 and 1.0 are the first and the last table entry (x), and the lowest and the highest
// value (y). A point may lie beyond them; only what is drawn is limited to 0.0 to 1.0.
struct CurvePoint
{
    double x;
    double y;
};

// What BezierSegment works on.
struct CurveTarget
{
    const CurvePoint* points; // not owned
    double* table;            // not owned; what is drawn
    std::int32_t size;        // entries of table, 2 or more
};

// A point in table units: 0 to last in x.
struct TablePoint
{
    std::int32_t x;
    std::int32_t y;
};

// base raised to exponent, by repeated squaring; 1.0 / (base to the magnitude) for a negative exponent. Any
// exponent is allowed, and 0 gives 1.0 for every base. Powers of two are exact.
double IntPow(double base, std::int32_t exponent);

// Results depend on the arguments of the call alone. The object only keeps scratch buffers, all of one table
// size: each is allocated by the first call that needs it, used again by later calls and released with the
// object, or when a call asks for another number of bits. No operation throws.
//
// Thread: the buffers make the operations non-reentrant, so one object is used by one thread at a time;
// objects do not know of each other. BezierSegment and FindRangeExtremes use no buffer.
//
// Every operation that returns an int returns kSuccess or one of the codes below it. The arguments are tested
// in the order that the operation gives, and the first failure is the result. After any failure the caller's
// tables and results are as they were, and the object is as good as before: a later call may succeed.
class CBezierCurve
{
public:
    static constexpr int kSuccess = 0;
    static constexpr int kNullPointer = -101; // a required pointer is null
    static constexpr int kOutOfLimits = -102; // an argument or a table value lies outside its limits
    static constexpr int kNoMemory = -103;    // a buffer could not be allocated

    // Limits of the arguments, all inclusive.
    static constexpr std::int32_t kMinBits = 8;
    static constexpr std::int32_t kMaxBits = 16;
    static constexpr std::int32_t kMinPoints = 2;
    static constexpr std::int32_t kMaxPoints = 16;
    static constexpr std::int32_t kMinTone = -150; // brightness and contrast; 0 is neutral
    static constexpr std::int32_t kMaxTone = 150;
    static constexpr double kMinGamma = 0.0; // 1.0 is neutral
    static constexpr double kMaxGamma = 4.0;

    // AdjustLutRange and FindRangeExtremes work at this depth.
    static constexpr std::int32_t kRangeBits = 12;
    static constexpr std::int32_t kRangeTableSize = 1 << kRangeBits;
    static constexpr std::int32_t kMinRangeEntries = 64;

    CBezierCurve(); // allocates nothing
    virtual ~CBezierCurve();
    CBezierCurve(const CBezierCurve&) = delete;
    CBezierCurve& operator=(const CBezierCurve&) = delete;

    // Draws the curve from points[start] to points[end] into target.table, one sample an entry, both ends
    // included. The four indices must be valid in target.points, and target.table must have target.size
    // entries.
    //
    // The segment is a cubic Bezier curve whose inner control points lie at one third and two thirds of the
    // way in x, so that x advances evenly with the parameter. A neighbour gives the tangent: at an end with a
    // neighbour it is parallel to the chord from that neighbour to the segment's far end. prev equal to
    // start, or next equal to end, says that there is no neighbour on that side; then the inner value there
    // lies half way between its end and the other inner value, and with no neighbour at all the segment is a
    // straight line.
    //
    // The first entry is trunc(x1 * (size - 1) + 0.5), and as many entries follow as the rounded width says.
    // Samples are limited to 0.0 to 1.0, and what is no number becomes 0.0; what would fall beyond the
    // table's end is left out. A segment that does not run to the right, or that begins outside the table,
    // draws nothing.
    void BezierSegment(const CurveTarget& target, std::int32_t prev, std::int32_t start, std::int32_t end,
                       std::int32_t next);

    // Writes the n entries of the curve through `count` points, rounded to the nearest integer. The curve is
    // not extended: entries left of the first and right of the last point are 0. y may be any number; the
    // curve is cut off at 0 and at last.
    //
    // Fails: kNullPointer: points or out. kOutOfLimits: bits; count; points whose x does not strictly
    // increase or lies outside 0 to last. kNoMemory.
    int CreatePointCurve(const TablePoint* points, std::int32_t count, std::int32_t bits, std::int32_t* out);

    // Writes trunc(pow(i / last, 1.0 / gamma) * last) to the n entries of out. A gamma of 0.0 gives 0 but for
    // the last entry, which is always last. A gamma of 1.0 gives i.
    //
    // Fails: kOutOfLimits: gamma (what is no number, too); bits. kNullPointer: out.
    int CreateGammaLut(double gamma, std::int32_t bits, std::int32_t* out);

    // Writes the n entries of the brightness curve: (0, 0), one control point, (last, last). At 8 bits the
    // control point moves along a falling diagonal, from (220, 100) at -150 through (160, 160) at 0 to
    // (100, 220) at 150. Neutral brightness is close to the identity, but is not the identity.
    //
    // Fails: kNullPointer: out. kOutOfLimits: brightness; bits. kNoMemory.
    int CreateBrightnessLut(std::int32_t brightness, std::int32_t bits, std::int32_t* out);

    // Writes the n entries of the contrast curve: (0, 0), two control points with the centre between them,
    // (last, last). At 8 bits the control points are (63, 63 - contrast / 2) and (191, 191 + contrast / 2).
    // Neutral contrast is close to the identity, but is not the identity.
    //
    // Fails: kNullPointer: out. kOutOfLimits: contrast; bits. kNoMemory.
    int CreateContrastLut(std::int32_t contrast, std::int32_t bits, std::int32_t* out);

    // Writes the n entries of the three tables one after another: contrast[brightness[gamma[i]]]. No table is
    // left out, neutral or not.
    //
    // Fails: kOutOfLimits: brightness; contrast; gamma; bits. kNullPointer: out. kNoMemory.
    int CreateCompositeLut(std::int32_t brightness, std::int32_t contrast, double gamma, std::int32_t bits,
                           std::int32_t* out);

    // The largest and the smallest of the entries lo to hi, both included, of a table of kRangeTableSize
    // entries.
    //
    // Fails: kOutOfLimits: lo below 0, hi beyond the table, or fewer than kMinRangeEntries entries.
    // kNullPointer: any pointer.
    int FindRangeExtremes(std::int32_t lo, std::int32_t hi, const std::int32_t* table, std::int32_t* max,
                          std::int32_t* min);

    // Applies the composite to the entries lo to hi, both included, of a table of kRangeTableSize entries, in
    // place: the values are stretched from the range's own extremes to the whole scale, looked up, and
    // squeezed back, so the extremes stay. Entries outside the range are neither read nor written. Neutral
    // controls (brightness 0, contrast 0, gamma less than 0.0001 from 1.0) return at once and leave the table
    // as it is, whatever the range.
    //
    // Fails: kNullPointer: table. kNoMemory: the temporary table. Then as CreateCompositeLut and
    // FindRangeExtremes, in this order. kOutOfLimits: an entry of the range outside 0 to 4095.
    int AdjustLutRange(std::int32_t brightness, std::int32_t contrast, double gamma, std::int32_t lo,
                       std::int32_t hi, std::int32_t* table);

private:
    template <typename T>
    bool PrepareBuffer(T*& buffer, std::int32_t size);
    void ReleaseBuffers();

    double* m_pBrightnessCurve;
    double* m_pContrastCurve;
    double* m_pPointCurve;
    std::int32_t* m_pToneTable;
    std::int32_t* m_pStageTable;
    std::int32_t m_size; // entries of each buffer that is not null
};

#endif
