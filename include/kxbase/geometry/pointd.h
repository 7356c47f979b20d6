/// \file
/// POINTD: a point of two doubles, with the library's two rounding rules to integer points.
///
/// Rounding rules used throughout the library (see also CPrecise):
///  - epsilon truncation: add 1e-10 to a value that is not negative (subtract it from a
///    negative one), then truncate toward zero; 2.9999999999 becomes 3, 2.5 becomes 2;
///  - half-away rounding: add 0.5 (or subtract it from a negative value), then apply epsilon
///    truncation; halves go away from zero. The sign test for each step is made on the value
///    the step is applied to, and 0.0 and -0.0 count as not negative.
/// Conversions into 32-bit integers saturate: a result beyond the int32 range becomes
/// INT32_MIN or INT32_MAX, and NaN becomes 0. Results for values in range are unaffected.
///
/// Thread-safety: plain value type; distinct objects may be used from any thread.
#pragma once

#include <kxbase/export.h>
#include <kxbase/platform/types.h>

/// A point of two doubles (page or device co-ordinates, whatever the caller's unit).
struct KXBASE_API POINTD {
    double x = 0.0;  ///< horizontal coordinate
    double y = 0.0;  ///< vertical coordinate

    /// (0.0, 0.0).
    POINTD() = default;
    /// The point (px, py).
    POINTD(double px, double py) : x(px), y(py) {}
    /// Each integer coordinate converted exactly.
    POINTD(const POINT& pt) : x(pt.x), y(pt.y) {}  // NOLINT: implicit like the platform's types
    /// Each float coordinate widened.
    POINTD(const POINTF& pt) : x(pt.x), y(pt.y) {}  // NOLINT
    ///@{
    /// Plain copies.
    POINTD(const POINTD&) = default;
    POINTD& operator=(const POINTD&) = default;
    ///@}

    /// Each coordinate by epsilon truncation (saturating).
    operator POINT() const;  // NOLINT: implicit like the platform's types
    /// Each coordinate by half-away rounding (saturating).
    POINT GPOINT() const;

    /// 1 when, on both axes, -1e-10 < this - other < 1e-10 (both bounds strict), else 0.
    /// Points compare with a tolerance, unlike RECTD, which compares exactly.
    int operator==(const POINTD& other) const;
    /// The same test against the integer point converted to double.
    int operator==(const POINT& other) const;
    ///@{
    /// Exact negation of the matching operator==.
    int operator!=(const POINTD& other) const { return !(*this == other); }
    int operator!=(const POINT& other) const { return !(*this == other); }
    ///@}

    ///@{
    /// Component-wise sum and difference (this - other).
    POINTD operator+(const POINTD& other) const { return POINTD(x + other.x, y + other.y); }
    POINTD operator-(const POINTD& other) const { return POINTD(x - other.x, y - other.y); }
    ///@}
    ///@{
    /// Modify this point component-wise; returns a copy of the new value (not a reference).
    POINTD operator+=(const POINTD& other) {
        x += other.x;
        y += other.y;
        return *this;
    }
    POINTD operator-=(const POINTD& other) {
        x -= other.x;
        y -= other.y;
        return *this;
    }
    ///@}
};
