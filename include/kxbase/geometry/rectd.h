/// \file
/// RECTD: a rectangle of four doubles.
///
/// The fields lie in the order left, top, right, bottom, so (left, top) is the top-left
/// POINTD and (right, bottom) the bottom-right one. Nothing keeps left <= right or
/// top <= bottom: a rectangle is ordered only after NormalizeRect or NormalizeBorder.
/// Conversions to RECT round each edge by the rules of <kxbase/geometry/pointd.h> and saturate
/// to the int32 range (NaN becomes 0).
///
/// Thread-safety: plain value type; distinct objects may be used from any thread.
#pragma once

#include <kxbase/export.h>
#include <kxbase/geometry/pointd.h>
#include <kxbase/platform/types.h>

/// A rectangle of four doubles; see the file description for ordering and rounding.
class KXBASE_API RECTD {
public:
    double left = 0.0;  ///< left (near x) edge
    double top = 0.0;  ///< top (near y) edge
    double right = 0.0;  ///< right (far x) edge
    double bottom = 0.0;  ///< bottom (far y) edge

    /// All four edges 0.0.
    RECTD() = default;
    /// Stored as given, no ordering.
    RECTD(double l, double t, double r, double b) : left(l), top(t), right(r), bottom(b) {}
    /// Each integer edge converted exactly.
    RECTD(const RECT& rc)
        : left(rc.left), top(rc.top), right(rc.right), bottom(rc.bottom) {}  // NOLINT
    /// The bounding box of count points (see GetBorderRect).
    RECTD(const POINTD* points, LONG count) { GetBorderRect(points, count); }
    ///@{
    /// Plain copies and moves.
    RECTD(const RECTD&) = default;
    RECTD(RECTD&&) = default;
    RECTD& operator=(const RECTD&) = default;
    RECTD& operator=(RECTD&&) = default;
    ///@}

    /// Stored as given, no ordering.
    void SetRect(double l, double t, double r, double b) {
        left = l;
        top = t;
        right = r;
        bottom = b;
    }

    /// Each edge by epsilon truncation (saturating).
    operator RECT() const;  // NOLINT: implicit like the platform's types
    /// Each edge by half-away rounding (saturating).
    RECT GRECT() const;

    ///@{
    /// 1 only when all four edges are exactly equal (no tolerance, unlike POINTD); the integer
    /// rectangle is converted to double first.
    int operator==(const RECTD& other) const;
    int operator==(const RECT& other) const;
    ///@}
    ///@{
    /// Exact negation of the matching operator==.
    int operator!=(const RECTD& other) const { return !(*this == other); }
    int operator!=(const RECT& other) const { return !(*this == other); }
    ///@}

    ///@{
    /// right - left and bottom - top; negative for an unordered rectangle.
    double Width() const { return right - left; }
    double Height() const { return bottom - top; }
    ///@}
    /// ((right + left) * 0.5, (bottom + top) * 0.5).
    POINTD CenterPoint() const { return POINTD((right + left) * 0.5, (bottom + top) * 0.5); }
    ///@{
    /// The (left, top) and (right, bottom) corners.
    POINTD TopLeft() const { return POINTD(left, top); }
    POINTD BottomRight() const { return POINTD(right, bottom); }
    ///@}

    /// Per axis, swaps the near and far edge when the near one is greater. Nothing else.
    void NormalizeRect();
    /// Deliberately more than an ordering: orders both axes, gives a zero-width (or height)
    /// axis an extent of 1.0, then makes the rectangle a square anchored at its top-left
    /// corner whose side is the larger of width and height.
    /// (10, 20, 4, 23) becomes (4, 20, 10, 26); (3, 3, 3, 3) becomes (3, 3, 4, 4).
    void NormalizeBorder();

    /// All four edges 0.0.
    void SetRectEmpty() { left = top = right = bottom = 0.0; }
    /// 1 when left == right or top == bottom (exactly), else 0.
    int IsRectEmpty() const { return (left == right || top == bottom) ? 1 : 0; }
    /// 1 only when all four edges are exactly 0.0.
    int IsRectNull() const {
        return (left == 0.0 && top == 0.0 && right == 0.0 && bottom == 0.0) ? 1 : 0;
    }

    /// This becomes the union box of a and b: near edges the smaller of the two, far edges the
    /// larger. Empty or all-zero inputs take part like any other; nothing is normalised.
    /// a or b may be this rectangle.
    void UnionRect(const RECTD& a, const RECTD& b);
    /// Adds dx to left and right, dy to top and bottom.
    void OffsetRect(double dx, double dy) {
        left += dx;
        right += dx;
        top += dy;
        bottom += dy;
    }
    /// The exact bounding box of count points (no rounding, no padding). A null array or
    /// count < 1 gives the all-zero rectangle (not an unchanged one); one point gives a
    /// rectangle of zero width and height. Reads exactly count points.
    void GetBorderRect(const POINTD* points, LONG count);

    /// 1 when left <= x < right and top <= y < bottom (half-open: near edges inside, far
    /// edges outside; an unordered rectangle contains nothing), else 0.
    int PtInRect(POINTD pt) const {
        return (pt.x >= left && pt.x < right && pt.y >= top && pt.y < bottom) ? 1 : 0;
    }
};
