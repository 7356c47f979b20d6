// Shared helpers of the ellipse families: argument readers, output writers and the test-only
// class that reaches CEllipse's protected routines.
#pragma once

#include <type_traits>

#include <kxbase/ellipse/ellipse.h>

#include "geometry_json.h"

namespace ellconf {

using conf::geo::to_json;
namespace geo = conf::geo;

struct Probe : CEllipse {
    using CEllipse::EllPointSite;
    using CEllipse::GetRightPoint;
    using CEllipse::GetTopPoint;
    using CEllipse::m_EllSep;
    using CEllipse::MidPointCircle;
    using CEllipse::MidPointEllipse;
    using CEllipse::PrecisePoint;
    using CEllipse::RotateRect;
};

// Sentinels that make "left untouched" (null in the vectors) observable.
constexpr LONG kSentinel = 0x5A5A5A5A;
constexpr double kSentinelD = -12345.6789;
inline RECT SentinelRect() {
    return RECT{kSentinel, kSentinel, kSentinel, kSentinel};
}
template <class P>
P Fresh() {
    if constexpr (std::is_same_v<P, POINT>)
        return POINT{kSentinel, kSentinel};
    else
        return POINTD(kSentinelD, kSentinelD);
}
inline bool Untouched(const RECT& r) {
    return r.left == kSentinel && r.top == kSentinel && r.right == kSentinel &&
           r.bottom == kSentinel;
}
inline bool Untouched(const POINT& p) {
    return p.x == kSentinel && p.y == kSentinel;
}
inline bool Untouched(const POINTD& p) {
    return p.x == kSentinelD && p.y == kSentinelD;
}
template <class T>
conf::json OrNull(const T& v) {
    return Untouched(v) ? conf::json(nullptr) : to_json(v);
}

inline ELLPARAM Param(const conf::json& v) {
    const auto p = conf::nums(v);
    return ELLPARAM(p.at(0), p.at(1), p.at(2), p.at(3), p.at(4), p.at(5));
}
template <class R>
R RectOf(const conf::json& v) {
    if constexpr (std::is_same_v<R, RECT>)
        return geo::rect(v);
    else
        return geo::rectd(v);
}
// Integer points may be written as 200.0.
template <class P>
P PtOf(const conf::json& v) {
    if constexpr (std::is_same_v<P, POINT>)
        return POINT{static_cast<LONG>(conf::num(v[0])), static_cast<LONG>(conf::num(v[1]))};
    else
        return geo::pointd(v);
}

}  // namespace ellconf
