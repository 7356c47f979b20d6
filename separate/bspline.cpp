// B-spline to Bezier conversion and the in-place span layouts of SEPARATE.
#include <kxbase/separate/separate.h>

#include <cmath>
#include <exception>
#include <vector>

namespace {

// The weights are these rounded literals on purpose: results must match, to the last bit of
// the integer form, what existing data was produced with.
constexpr double kA = 0.1666666666667;
constexpr double kB = 0.666666666667;
constexpr double kC = 0.333333333333;

struct Pt {
    double x, y;
};

inline Pt ToPt(const POINT& p) {
    return {static_cast<double>(p.x), static_cast<double>(p.y)};
}
inline Pt ToPt(const POINTD& p) {
    return {p.x, p.y};
}

// Half-away rounding of the integer form: +0.5 for a positive value, -0.5 for zero or a
// negative one, then truncation toward zero. Values outside LONG's range (and NaN, which the
// integer form cannot produce) saturate instead of invoking an undefined conversion.
inline LONG RoundHalfAway(double v) {
    const double r = v > 0.0 ? v + 0.5 : v - 0.5;
    if (!(r > -2147483649.0)) return r != r ? 0 : INT32_MIN;
    if (!(r < 2147483648.0)) return INT32_MAX;
    return static_cast<LONG>(r);
}

inline void Store(POINT& o, double x, double y) {
    o = {RoundHalfAway(x), RoundHalfAway(y)};
}
inline void Store(POINTD& o, double x, double y) {
    o.x = x;
    o.y = y;
}

// One window (A, B, C, D) to four Bezier points, the full weight matrix including its zero
// entries, each sum formed left to right.
template <class Out>
inline void Span(const Pt& A, const Pt& B, const Pt& C, const Pt& D, Out* o) {
    Store(o[0], kA * A.x + kB * B.x + kA * C.x + 0.0 * D.x,
          kA * A.y + kB * B.y + kA * C.y + 0.0 * D.y);
    Store(o[1], 0.0 * A.x + kB * B.x + kC * C.x + 0.0 * D.x,
          0.0 * A.y + kB * B.y + kC * C.y + 0.0 * D.y);
    Store(o[2], 0.0 * A.x + kC * B.x + kB * C.x + 0.0 * D.x,
          0.0 * A.y + kC * B.y + kB * C.y + 0.0 * D.y);
    Store(o[3], 0.0 * A.x + kA * B.x + kB * C.x + kA * D.x,
          0.0 * A.y + kA * B.y + kB * C.y + kA * D.y);
}

inline Pt Phantom(const Pt& end, const Pt& inner) {
    return {2.0 * end.x - inner.x, 2.0 * end.y - inner.y};
}

template <class In, class Out>
int Convert(const In* in, int n, Out* out, int& outCount, int mode) {
    if (!in || !out) return 0;
    if (mode == 0) {
        if (n != 4) return 0;
        const Pt b0 = ToPt(in[0]), b1 = ToPt(in[1]), b2 = ToPt(in[2]), b3 = ToPt(in[3]);
        Store(out[0], 6.0 * b0.x - 7.0 * b1.x + 2.0 * b2.x, 6.0 * b0.y - 7.0 * b1.y + 2.0 * b2.y);
        Store(out[1], 2.0 * b1.x - b2.x, 2.0 * b1.y - b2.y);
        Store(out[2], -b1.x + 2.0 * b2.x, -b1.y + 2.0 * b2.y);
        Store(out[3], 2.0 * b1.x - 7.0 * b2.x + 6.0 * b3.x, 2.0 * b1.y - 7.0 * b2.y + 6.0 * b3.y);
        outCount = 4;
        return 1;
    }
    if (n < 4 || n > SEPARATE::kMaxControlPoints) return 0;

    // First window (Q, P0, P1, P2), the windows wholly inside the polygon, last window
    // (Pn-3, Pn-2, Pn-1, R). The middle loop slides the window by one point per span.
    Pt p0 = ToPt(in[0]), p1 = ToPt(in[1]), p2 = ToPt(in[2]);
    Span(Phantom(p0, p1), p0, p1, p2, out);
    Out* o = out + 4;
    for (int k = 3; k < n; ++k, o += 4) {
        const Pt p3 = ToPt(in[k]);
        Span(p0, p1, p2, p3, o);
        p0 = p1;
        p1 = p2;
        p2 = p3;
    }
    Span(p0, p1, p2, Phantom(p2, p1), o);
    outCount = 4 * (n - 1);
    return 1;
}

// Copies the polygon with its phantom points: Q, P0, ..., Pn-1, R (n + 2 points), or an empty
// vector when the copy cannot be allocated.
std::vector<POINTD> WithPhantoms(const POINTD* p, int n) {
    std::vector<POINTD> s;
    try {
        s.resize(static_cast<std::size_t>(n) + 2);
    } catch (const std::exception&) {  // bad_alloc: report failure, never throw out
        return {};
    }
    const Pt q = Phantom(ToPt(p[0]), ToPt(p[1]));
    const Pt r = Phantom(ToPt(p[n - 1]), ToPt(p[n - 2]));
    s[0].x = q.x;
    s[0].y = q.y;
    for (int i = 0; i < n; ++i) s[static_cast<std::size_t>(i) + 1] = p[i];
    s[static_cast<std::size_t>(n) + 1].x = r.x;
    s[static_cast<std::size_t>(n) + 1].y = r.y;
    return s;
}

}  // namespace

int SEPARATE::BSplineToBezier(const POINT* in, int n, POINT* out, int& outCount, int mode) {
    return Convert(in, n, out, outCount, mode);
}

int SEPARATE::BSplineToBezier(const POINTD* in, int n, POINTD* out, int& outCount, int mode) {
    return Convert(in, n, out, outCount, mode);
}

int SEPARATE::GetMyBSCtrl(POINTD* points, int n) {
    if (!points || n < 2 || n > kMaxControlPoints) return 0;
    const std::vector<POINTD> s = WithPhantoms(points, n);
    if (s.empty()) return 0;
    // Window k is s[k..k+3]; n - 1 windows of four.
    POINTD* o = points;
    for (std::size_t k = 0; k + 1 < static_cast<std::size_t>(n); ++k)
        for (std::size_t j = 0; j < 4; ++j) *o++ = s[k + j];
    return 1;
}

int SEPARATE::GetMyEBSCtrl(POINTD* points, int n) {
    if (!points || n < 3 || n > kMaxControlPoints) return 0;
    std::vector<POINTD> s = WithPhantoms(points, n);
    if (s.empty()) return 0;
    // The quadratic windows run over Q, P1, ..., Pn-2, R: the phantoms replace P0 and Pn-1.
    s[1] = s[0];
    s[static_cast<std::size_t>(n)] = s[static_cast<std::size_t>(n) + 1];
    // Window k is s[k+1..k+3]; n - 2 windows of three.
    POINTD* o = points;
    for (std::size_t k = 0; k + 2 < static_cast<std::size_t>(n); ++k)
        for (std::size_t j = 1; j < 4; ++j) *o++ = s[k + j];
    return 1;
}
