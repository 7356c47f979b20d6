/// \file
/// The records of the shape rasteriser: the implicit conic of an ellipse (ELLPARAM), its
/// bounds (ELLBOUND) and a packed set of scan-line runs (RSRLINE).
///
/// Thread-safety: plain value types; distinct objects may be used from any thread.
#pragma once

#include <kxbase/export.h>
#include <kxbase/geometry/pointd.h>
#include <kxbase/platform/carray.h>
#include <kxbase/platform/types.h>

/// An ellipse as the implicit conic a*x^2 + b*x*y + c*y^2 + d*x + e*y + f = 0 in device
/// coordinates (y grows downward). Points where the left side is negative lie inside.
/// Records built by CEllipse are normalised so that the smaller of a and c equals 1.
/// The default record is all zeros (not an ellipse: every operation refuses it).
struct KXBASE_API ELLPARAM {
    double a = 0.0;  ///< coefficient of x^2
    double b = 0.0;  ///< coefficient of x*y
    double c = 0.0;  ///< coefficient of y^2
    double d = 0.0;  ///< coefficient of x
    double e = 0.0;  ///< coefficient of y
    double f = 0.0;  ///< constant term

    /// All six coefficients 0 (not an ellipse).
    ELLPARAM() = default;
    /// The coefficients as given, in the order a, b, c, d, e, f.
    ELLPARAM(double pa, double pb, double pc, double pd, double pe, double pf)
        : a(pa), b(pb), c(pc), d(pd), e(pe), f(pf) {}
    ///@{
    /// Plain copies.
    ELLPARAM(const ELLPARAM&) = default;
    ELLPARAM& operator=(const ELLPARAM&) = default;
    ///@}

    /// Value of the conic at (x, y): negative inside, zero on the curve, positive outside.
    double Value(double x, double y) const {
        return a * x * x + b * x * y + c * y * y + d * x + e * y + f;
    }
};

/// The bounds of one ellipse as CEllipse::GetEllBoundary produces them.
struct KXBASE_API ELLBOUND {
    /// The four extreme points, in the order top, left, bottom, right.
    POINTD ptBound[4];
    /// Midpoint of the left and right extreme x and of the top and bottom extreme y.
    POINTD ptCenter;
    /// Integer bounding box (right and bottom exclusive), see CEllipse::GetEllBoundary.
    RECT rcBorder{0, 0, 0, 0};

    /// All points (0, 0), an empty border.
    ELLBOUND() = default;
    ///@{
    /// Plain copies and moves.
    ELLBOUND(const ELLBOUND&) = default;
    ELLBOUND& operator=(const ELLBOUND&) = default;
    ELLBOUND& operator=(ELLBOUND&&) = default;
    ///@}
};

/// Scan-line runs of a filled shape packed into one record.
struct KXBASE_API RSRLINE {
    /// One entry per row from the first row down: x = first pixel, y = last pixel (inclusive).
    CArray<POINT> spans;
    /// One entry per row: the number of runs on that row (the span operations write 1).
    CArray<int> counts;
    /// Bounding box of the runs with inclusive right and bottom edges.
    RECT rcBound{0, 0, 0, 0};
};
