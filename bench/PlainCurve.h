// The curve engine's formulas as they are written down, step by step and with no thought of speed: what the
// tests compare whole tables with, and the peer of the benchmark. It takes right arguments only.
#ifndef ORLUNE_TESTS_CURVE_PLAINCURVE_H
#define ORLUNE_TESTS_CURVE_PLAINCURVE_H

#include <cmath>
#include <cstdint>
#include <memory>
#include <vector>

#include "curve/BezierCurve.h"

class PlainCurve
{
public:
    void PointCurve(const TablePoint* points, int count, int bits, std::int32_t* out)
    {
        const int n = 1 << bits, last = n - 1;
        m_curve.assign(n, 0.0);
        std::vector<CurvePoint> p;
        for (int k = 0; k < count; ++k)
            p.push_back({double(points[k].x) / last, double(points[k].y) / last});
        if (count == 2) {
            Segment(p.data(), 0, 0, 1, 1);
        } else {
            Segment(p.data(), 0, 0, 1, 2);
            for (int k = 0; k <= count - 4; ++k)
                Segment(p.data(), k, k + 1, k + 2, k + 3);
            Segment(p.data(), count - 3, count - 2, count - 1, count - 1);
        }
        ToIntegers(out);
    }

    void GammaLut(double gamma, int bits, std::int32_t* out)
    {
        const int last = (1 << bits) - 1;
        const double e = 1.0 / gamma;
        for (int i = 0; i <= last; ++i)
            out[i] = int(std::pow(double(i) / last, e) * last);
    }

    void BrightnessLut(int brightness, int bits, std::int32_t* out)
    {
        const int n = 1 << bits, last = n - 1, s = 1 << (bits - 8);
        const int span = 150 * s, low = 100 * s, high = 220 * s, b = brightness * s;
        const double mid = (high + low) / 2.0;
        const double shift = double(b) / span * (high - low) / 2.0;
        const int px = int(mid - shift), py = int(mid + shift);
        m_curve.assign(n, 0.0);
        const CurvePoint p[] = {{0.0, 0.0}, {double(px) / last, double(py) / last}, {1.0, 1.0}, {1.1, 1.0}};
        Segment(p, 0, 0, 1, 2);
        Segment(p, 0, 1, 2, 3);
        ToIntegers(out);
    }

    void ContrastLut(int contrast, int bits, std::int32_t* out)
    {
        const int n = 1 << bits, last = n - 1, s = 1 << (bits - 8);
        const int lo = 63 * s, hi = 191 * s, c = contrast * s, ylo = lo - c / 2, yhi = hi + c / 2;
        m_curve.assign(n, 0.0);
        const CurvePoint p[] = {{0.0, 0.0},
                                {double(lo) / last, double(ylo) / last},
                                {0.5, 0.5},
                                {double(hi) / last, double(yhi) / last},
                                {1.0, 1.0}};
        Segment(p, 0, 0, 1, 2);
        Segment(p, 0, 1, 2, 3);
        Segment(p, 1, 2, 3, 4);
        Segment(p, 2, 3, 4, 4);
        ToIntegers(out);
    }

    void CompositeLut(int brightness, int contrast, double gamma, int bits, std::int32_t* out)
    {
        const int n = 1 << bits;
        m_tone.assign(n, 0);
        m_stage.assign(n, 0);
        GammaLut(gamma, bits, m_tone.data());
        BrightnessLut(brightness, bits, m_stage.data());
        for (int i = 0; i < n; ++i)
            m_tone[i] = m_stage[m_tone[i]];
        ContrastLut(contrast, bits, m_stage.data());
        for (int i = 0; i < n; ++i)
            out[i] = m_stage[m_tone[i]];
    }

    void AdjustRange(int brightness, int contrast, double gamma, int lo, int hi, std::int32_t* table)
    {
        if (brightness == 0 && contrast == 0 && std::fabs(1.0 - gamma) < 0.0001)
            return;
        const int last = 4095;
        const std::unique_ptr<std::int32_t[]> k(new std::int32_t[4096]);
        CompositeLut(brightness, contrast, gamma, 12, k.get());
        int max = table[lo], min = table[lo];
        for (int i = lo; i <= hi; ++i) {
            if (table[i] > max)
                max = table[i];
            if (table[i] < min)
                min = table[i];
        }
        const int d = max - min < 1 ? 1 : max - min;
        for (int i = 0; i <= last; ++i)
            k[i] = (max - min) * k[i] / last + min;
        for (int i = lo; i <= hi; ++i)
            table[i] = k[last * (table[i] - min) / d];
    }

private:
    void Segment(const CurvePoint* points, int prev, int start, int end, int next)
    {
        const double x1 = points[start].x, y1 = points[start].y, x2 = points[end].x, y2 = points[end].y;
        const double dx = x2 - x1, dy = y2 - y1;
        double c1, c2;
        if (prev == start && end == next) {
            c1 = y1 + dy / 3.0;
            c2 = y1 + dy * 2.0 / 3.0;
        } else if (prev == start) {
            const double s = (points[next].y - y1) / (points[next].x - x1);
            c2 = y2 - s * dx / 3.0;
            c1 = y1 + (c2 - y1) / 2.0;
        } else if (end == next) {
            const double s = (y2 - points[prev].y) / (x2 - points[prev].x);
            c1 = y1 + s * dx / 3.0;
            c2 = y2 + (c1 - y2) / 2.0;
        } else {
            double s = (y2 - points[prev].y) / (x2 - points[prev].x);
            c1 = y1 + s * dx / 3.0;
            s = (points[next].y - y1) / (points[next].x - x1);
            c2 = y2 - s * dx / 3.0;
        }
        const int size = int(m_curve.size());
        const double m = size - 1;
        for (int i = 0; i <= int(dx * m + 0.5); ++i) {
            const double t = i / dx / m;
            const double u = 1.0 - t;
            const double v = y1 * u * u * u + 3.0 * c1 * u * u * t + 3.0 * c2 * u * t * t + y2 * t * t * t;
            const int index = i + int(x1 * m + 0.5);
            if (index < size)
                m_curve[index] = v < 0.0 ? 0.0 : v > 1.0 ? 1.0 : v;
        }
    }

    void ToIntegers(std::int32_t* out) const
    {
        const int last = int(m_curve.size()) - 1;
        const double m = last;
        for (int i = 0; i <= last; ++i) {
            const int v = int(m_curve[i] * m + 0.5);
            out[i] = v < 0 ? 0 : v > last ? last : v;
        }
    }

    std::vector<double> m_curve;
    std::vector<std::int32_t> m_tone;
    std::vector<std::int32_t> m_stage;
};

#endif
