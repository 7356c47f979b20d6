/// \file
/// CRect: the integer rectangle class with the member names a Windows host expects.
/// All arithmetic is on the 32-bit fields; widths and heights may be negative for an
/// unordered rectangle, exactly as the platform's rectangle helpers behave.
///
/// Thread-safety: a value type; distinct objects are independent.
#pragma once

#include <algorithm>

#include <kxbase/platform/types.h>

/// A RECT with the member functions of the platform's rectangle class; it adds no data, so a CRect
/// can be passed wherever a RECT is expected.
class CRect : public RECT {
public:
    /// All four edges 0.
    CRect() : RECT{0, 0, 0, 0} {}
    /// The edges as given, in the order left, top, right, bottom; no ordering.
    CRect(LONG l, LONG t, LONG r, LONG b) : RECT{l, t, r, b} {}
    /// A copy of a plain rectangle.
    CRect(const RECT& rc) : RECT(rc) {}  // NOLINT: implicit like the platform class
    /// From the top-left and bottom-right corners.
    CRect(POINT topLeft, POINT bottomRight)
        : RECT{topLeft.x, topLeft.y, bottomRight.x, bottomRight.y} {}

    ///@{
    /// right - left and bottom - top; negative for an unordered rectangle. The subtraction is
    /// on 32-bit values: edges more than 2^31 - 1 apart overflow.
    LONG Width() const { return right - left; }
    LONG Height() const { return bottom - top; }
    ///@}
    /// Width() and Height() as an extent.
    SIZE Size() const { return SIZE{Width(), Height()}; }
    ///@{
    /// The (left, top) and (right, bottom) corners.
    POINT TopLeft() const { return POINT{left, top}; }
    POINT BottomRight() const { return POINT{right, bottom}; }
    ///@}
    /// Centre with C integer division (truncation toward zero), as the platform does.
    POINT CenterPoint() const { return POINT{(left + right) / 2, (top + bottom) / 2}; }

    /// Empty: width or height not positive.
    bool IsRectEmpty() const { return right <= left || bottom <= top; }
    /// True only when all four edges are 0.
    bool IsRectNull() const { return left == 0 && top == 0 && right == 0 && bottom == 0; }
    /// True when left <= x < right and top <= y < bottom: near edges inside, far edges outside.
    bool PtInRect(POINT pt) const {
        return pt.x >= left && pt.x < right && pt.y >= top && pt.y < bottom;
    }

    /// Sets the edges as given; no ordering.
    void SetRect(LONG l, LONG t, LONG r, LONG b) { left = l, top = t, right = r, bottom = b; }
    /// All four edges 0.
    void SetRectEmpty() { SetRect(0, 0, 0, 0); }
    /// Swaps left and right, and top and bottom, where the near edge is greater.
    void NormalizeRect() {
        if (left > right) std::swap(left, right);
        if (top > bottom) std::swap(top, bottom);
    }
    /// Moves the rectangle: dx added to left and right, dy to top and bottom.
    void OffsetRect(LONG dx, LONG dy) { left += dx, right += dx, top += dy, bottom += dy; }
    /// Grows the rectangle by dx on the left and on the right, dy at the top and at the bottom
    /// (negative values shrink it).
    void InflateRect(LONG dx, LONG dy) { left -= dx, right += dx, top -= dy, bottom += dy; }
    /// Shrinks it the same way: InflateRect(-dx, -dy).
    void DeflateRect(LONG dx, LONG dy) { InflateRect(-dx, -dy); }

    /// Intersection; an empty result is set to all zeros and returns false.
    bool IntersectRect(const RECT& a, const RECT& b) {
        SetRect(std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
                std::min(a.bottom, b.bottom));
        if (IsRectEmpty()) {
            SetRectEmpty();
            return false;
        }
        return true;
    }
    /// Union; empty inputs do not take part (platform semantics). Returns false when both are
    /// empty.
    bool UnionRect(const RECT& a, const RECT& b) {
        const bool ea = CRect(a).IsRectEmpty(), eb = CRect(b).IsRectEmpty();
        if (ea && eb) {
            SetRectEmpty();
            return false;
        }
        if (ea) return *this = b, true;
        if (eb) return *this = a, true;
        SetRect(std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
                std::max(a.bottom, b.bottom));
        return true;
    }

    ///@{
    /// Exact comparison of the four edges.
    bool operator==(const RECT& o) const {
        return left == o.left && top == o.top && right == o.right && bottom == o.bottom;
    }
    bool operator!=(const RECT& o) const { return !(*this == o); }
    ///@}
};

#if !defined(_WIN32)
/// The platform's free rectangle test: true when the width or the height is not positive (on
/// Windows the system's own function). A null rc counts as empty.
inline bool IsRectEmpty(const RECT* rc) { return !rc || rc->right <= rc->left || rc->bottom <= rc->top; }
#endif
