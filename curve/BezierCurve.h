// The curve engine: control points and tone controls to integer tables.
#ifndef ORLUNE_CURVE_BEZIERCURVE_H
#define ORLUNE_CURVE_BEZIERCURVE_H

#include <cstdint>

struct CurvePoint
{
    double x;
    double y;
};

struct CurveTarget
{
    const CurvePoint* points;
    double* table;
    std::int32_t size;
};

struct TablePoint
{
    std::int32_t x;
    std::int32_t y;
};

double IntPow(double base, std::int32_t exponent);

class CBezierCurve
{
public:
    CBezierCurve();
    virtual ~CBezierCurve();
    CBezierCurve(const CBezierCurve&) = delete;
    CBezierCurve& operator=(const CBezierCurve&) = delete;

    void BezierSegment(const CurveTarget& target, std::int32_t prev, std::int32_t start, std::int32_t end,
                       std::int32_t next);
    int CreatePointCurve(const TablePoint* points, std::int32_t count, std::int32_t bits, std::int32_t* out);

    int CreateGammaLut(double gamma, std::int32_t bits, std::int32_t* out);
    int CreateBrightnessLut(std::int32_t brightness, std::int32_t bits, std::int32_t* out);
    int CreateContrastLut(std::int32_t contrast, std::int32_t bits, std::int32_t* out);
    int CreateCompositeLut(std::int32_t brightness, std::int32_t contrast, double gamma, std::int32_t bits,
                           std::int32_t* out);
    int FindRangeExtremes(std::int32_t lo, std::int32_t hi, const std::int32_t* table, std::int32_t* max,
                          std::int32_t* min);
    int AdjustLutRange(std::int32_t brightness, std::int32_t contrast, double gamma, std::int32_t lo,
                       std::int32_t hi, std::int32_t* table);

private:
    double* m_pBrightnessCurve;
    double* m_pContrastCurve;
    double* m_pPointCurve;
    std::int32_t* m_pToneTable;
    std::int32_t* m_pStageTable;
};

#endif
