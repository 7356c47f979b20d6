// CRect: the integer rectangle class with the member names a Windows host expects.
// All arithmetic is on the 32-bit fields; widths and heights may be negative for an
// unordered rectangle, exactly as the platform's rectangle helpers behave.
#pragma once

#include <algorithm>

#include <kxbase/platform/types.h>

class CRect : public RECT {
public:
    CRect() : RECT{0, 0, 0, 0} {}
    CRect(LONG l, LONG t, LONG r, LONG b) : RECT{l, t, r, b} {}
    CRect(const RECT& rc) : RECT(rc) {}  // NOLINT: implicit like the platform class
    CRect(POINT topLeft, POINT bottomRight)
        : RECT{topLeft.x, topLeft.y, bottomRight.x, bottomRight.y} {}

    LONG Width() const { return right - left; }
    LONG Height() const { return bottom - top; }
    SIZE Size() const { return SIZE{Width(), Height()}; }
    POINT TopLeft() const { return POINT{left, top}; }
    POINT BottomRight() const { return POINT{right, bottom}; }
    /// Centre with C integer division (truncation toward zero), as the platform does.
    POINT CenterPoint() const { return POINT{(left + right) / 2, (top + bottom) / 2}; }

    /// Empty: width or height not positive.
    bool IsRectEmpty() const { return right <= left || bottom <= top; }
    bool IsRectNull() const { return left == 0 && top == 0 && right == 0 && bottom == 0; }
    bool PtInRect(POINT pt) const {
        return pt.x >= left && pt.x < right && pt.y >= top && pt.y < bottom;
    }

    void SetRect(LONG l, LONG t, LONG r, LONG b) { left = l, top = t, right = r, bottom = b; }
    void SetRectEmpty() { SetRect(0, 0, 0, 0); }
    void NormalizeRect() {
        if (left > right) std::swap(left, right);
        if (top > bottom) std::swap(top, bottom);
    }
    void OffsetRect(LONG dx, LONG dy) { left += dx, right += dx, top += dy, bottom += dy; }
    void InflateRect(LONG dx, LONG dy) { left -= dx, right += dx, top -= dy, bottom += dy; }
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
    /// Union; empty inputs do not take part (platform semantics). Returns false when both are empty.
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

    bool operator==(const RECT& o) const {
        return left == o.left && top == o.top && right == o.right && bottom == o.bottom;
    }
    bool operator!=(const RECT& o) const { return !(*this == o); }
};

#if !defined(_WIN32)
/// The platform's free rectangle test: true when the width or the height is not positive (on
/// Windows the system's own function).
inline bool IsRectEmpty(const RECT* rc) { return !rc || rc->right <= rc->left || rc->bottom <= rc->top; }
#endif
