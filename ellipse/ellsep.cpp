// CEllipse::EllSep0..EllSep7: one octant of a conic's outline by the midpoint method.
//
// Each tracer moves one pixel per step along its octant's main direction, and also along
// the other axis (a diagonal step) when the conic's value at the midpoint between the two
// candidate pixels says the curve has turned: in octants 0, 2, 4, 6 a midpoint outside or on
// the ellipse (F >= 0), in octants 1, 3, 5, 7 a midpoint inside (F < 0). The value is taken
// at each midpoint directly from the six coefficients rather than carried by increments, so
// that long traces on large coordinates gather no drift. The octant ends when the outward
// gradient at the next midpoint leaves it (strict tests, so a gradient exactly on a border
// ends it), or when the new pixel passes the optional stop pixel.
#include <cmath>

#include <kxbase/ellipse/ellipse.h>

namespace {

struct Octant {
    int sx, sy;     // every step
    int dx, dy;     // added on a diagonal step
    double mx, my;  // midpoint offset from the current pixel
    bool diagWhenOutside;
    int n;  // octant number (selects the gradient and stop tests)
};

constexpr Octant kOctants[8] = {
    {-1, 0, 0, 1, -1.0, 0.5, true, 0},   {0, 1, -1, 0, -0.5, 1.0, false, 1},
    {0, 1, 1, 0, 0.5, 1.0, true, 2},     {1, 0, 0, 1, 1.0, 0.5, false, 3},
    {1, 0, 0, -1, 1.0, -0.5, true, 4},   {0, -1, 1, 0, 0.5, -1.0, false, 5},
    {0, -1, -1, 0, -0.5, -1.0, true, 6}, {-1, 0, 0, -1, -1.0, -0.5, false, 7},
};

inline bool InOctant(int n, double gx, double gy) {
    switch (n) {
        case 0:
            return gx > gy;
        case 1:
            return gy < 0.0;
        case 2:
            return -gx > gy;
        case 3:
            return gx < 0.0;
        case 4:
            return gy > gx;
        case 5:
            return gy > 0.0;
        case 6:
            return gx > std::fabs(gy);
        default:
            return gx > 0.0;
    }
}

inline bool Passed(int n, int x, int y, const POINT& s) {
    switch (n) {
        case 0:
        case 1:
            return x < s.x || y > s.y;
        case 2:
        case 3:
            return x > s.x || y > s.y;
        case 4:
        case 5:
            return x > s.x || y < s.y;
        default:
            return x < s.x || y < s.y;
    }
}

int Trace(const Octant& o, const ELLPARAM& p, int& x, int& y, int& count, int maxSteps, POINT* stop,
          CArray<POINT>& pts) {
    auto F = [&p](double u, double v) {
        return p.a * u * u + p.b * u * v + p.c * v * v + p.d * u + p.e * v + p.f;
    };
    auto inside = [&](double u, double v) {
        const double gx = 2.0 * p.a * u + p.b * v + p.d;
        const double gy = 2.0 * p.c * v + p.b * u + p.e;
        return InOctant(o.n, gx, gy);
    };
    const int start = count;
    double mu = x + o.mx, mv = y + o.my;
    double d = F(mu, mv);
    if (!inside(mu, mv)) return 1;
    int steps = 0;
    for (;;) {
        const bool diag = o.diagWhenOutside ? d >= 0.0 : d < 0.0;
        // Wrapping steps: a caller's coordinate at the int limit must not be undefined.
        x = static_cast<int>(static_cast<unsigned>(x) +
                             static_cast<unsigned>(o.sx + (diag ? o.dx : 0)));
        y = static_cast<int>(static_cast<unsigned>(y) +
                             static_cast<unsigned>(o.sy + (diag ? o.dy : 0)));
        mu = x + o.mx;
        mv = y + o.my;
        d = F(mu, mv);
        if (stop && Passed(o.n, x, y, *stop)) return 1;
        pts.SetAtGrow(count, POINT{x, y});  // entries between the size and count become (0, 0)
        ++count;
        ++steps;
        if (steps > maxSteps) break;
        if (!inside(mu, mv)) return 1;
    }
    // Overflow: withdraw what this call stored and rewind to the pixel before it.
    pts.RemoveAt(start, steps);
    count = start;
    const POINT last = pts.GetAt(start - 1);  // throws when nothing precedes the call
    x = last.x;
    y = last.y;
    return 0;
}

}  // namespace

int CEllipse::EllSep0(const ELLPARAM& p, int& x, int& y, int& count, const int& maxSteps,
                      POINT* stop, CArray<POINT>& pts) {
    return Trace(kOctants[0], p, x, y, count, maxSteps, stop, pts);
}
int CEllipse::EllSep1(const ELLPARAM& p, int& x, int& y, int& count, const int& maxSteps,
                      POINT* stop, CArray<POINT>& pts) {
    return Trace(kOctants[1], p, x, y, count, maxSteps, stop, pts);
}
int CEllipse::EllSep2(const ELLPARAM& p, int& x, int& y, int& count, const int& maxSteps,
                      POINT* stop, CArray<POINT>& pts) {
    return Trace(kOctants[2], p, x, y, count, maxSteps, stop, pts);
}
int CEllipse::EllSep3(const ELLPARAM& p, int& x, int& y, int& count, const int& maxSteps,
                      POINT* stop, CArray<POINT>& pts) {
    return Trace(kOctants[3], p, x, y, count, maxSteps, stop, pts);
}
int CEllipse::EllSep4(const ELLPARAM& p, int& x, int& y, int& count, const int& maxSteps,
                      POINT* stop, CArray<POINT>& pts) {
    return Trace(kOctants[4], p, x, y, count, maxSteps, stop, pts);
}
int CEllipse::EllSep5(const ELLPARAM& p, int& x, int& y, int& count, const int& maxSteps,
                      POINT* stop, CArray<POINT>& pts) {
    return Trace(kOctants[5], p, x, y, count, maxSteps, stop, pts);
}
int CEllipse::EllSep6(const ELLPARAM& p, int& x, int& y, int& count, const int& maxSteps,
                      POINT* stop, CArray<POINT>& pts) {
    return Trace(kOctants[6], p, x, y, count, maxSteps, stop, pts);
}
int CEllipse::EllSep7(const ELLPARAM& p, int& x, int& y, int& count, const int& maxSteps,
                      POINT* stop, CArray<POINT>& pts) {
    // Always 0, deliberately: hosts were written against a tracer whose result here carries
    // no information, and callers must not rely on it.
    Trace(kOctants[7], p, x, y, count, maxSteps, stop, pts);
    return 0;
}

const CEllipse::EllSepFn CEllipse::m_EllSep[8] = {
    &CEllipse::EllSep0, &CEllipse::EllSep1, &CEllipse::EllSep2, &CEllipse::EllSep3,
    &CEllipse::EllSep4, &CEllipse::EllSep5, &CEllipse::EllSep6, &CEllipse::EllSep7,
};
