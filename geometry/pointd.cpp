// POINTD and RECTD conversions, comparisons and bounding boxes.
#include <kxbase/geometry/pointd.h>
#include <kxbase/geometry/rectd.h>

#include <utility>

#include "base/saturate_p.h"

using kxbase::detail::EpsTrunc32;
using kxbase::detail::HalfAway32;

namespace {

bool WithinTolerance(double d) {
    return d > -kxbase::detail::kTolerance && d < kxbase::detail::kTolerance;
}

}  // namespace

POINTD::operator POINT() const {
    return POINT{EpsTrunc32(x), EpsTrunc32(y)};
}

POINT POINTD::GPOINT() const {
    return POINT{HalfAway32(x), HalfAway32(y)};
}

int POINTD::operator==(const POINTD& other) const {
    return (WithinTolerance(x - other.x) && WithinTolerance(y - other.y)) ? 1 : 0;
}

int POINTD::operator==(const POINT& other) const {
    return *this == POINTD(other);
}

RECTD::operator RECT() const {
    return RECT{EpsTrunc32(left), EpsTrunc32(top), EpsTrunc32(right), EpsTrunc32(bottom)};
}

RECT RECTD::GRECT() const {
    return RECT{HalfAway32(left), HalfAway32(top), HalfAway32(right), HalfAway32(bottom)};
}

int RECTD::operator==(const RECTD& other) const {
    return (left == other.left && top == other.top && right == other.right &&
            bottom == other.bottom)
               ? 1
               : 0;
}

int RECTD::operator==(const RECT& other) const {
    return *this == RECTD(other);
}

void RECTD::NormalizeRect() {
    if (left > right) std::swap(left, right);
    if (top > bottom) std::swap(top, bottom);
}

void RECTD::NormalizeBorder() {
    NormalizeRect();
    if (right - left == 0.0) right = left + 1.0;
    if (bottom - top == 0.0) bottom = top + 1.0;
    const double w = right - left;
    const double h = bottom - top;
    const double side = w > h ? w : h;
    right = left + side;
    bottom = top + side;
}

void RECTD::UnionRect(const RECTD& a, const RECTD& b) {
    const RECTD r((a.left < b.left) ? a.left : b.left, (a.top < b.top) ? a.top : b.top,
                  (a.right > b.right) ? a.right : b.right,
                  (a.bottom > b.bottom) ? a.bottom : b.bottom);
    *this = r;
}

void RECTD::GetBorderRect(const POINTD* points, LONG count) {
    if (points == nullptr || count < 1) {
        SetRectEmpty();
        return;
    }
    left = right = points[0].x;
    top = bottom = points[0].y;
    for (LONG i = 1; i < count; ++i) {
        const double x = points[i].x;
        const double y = points[i].y;
        if (x < left)
            left = x;
        else if (x > right)
            right = x;
        if (y < top)
            top = y;
        else if (y > bottom)
            bottom = y;
    }
}
