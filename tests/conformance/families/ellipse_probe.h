// Shared helpers of the ellipse families: argument readers, output writers and the test-only
// class that reaches CEllipse's protected routines.
#pragma once

#include <type_traits>

#include <kxbase/ellipse/ellipse.h>

#include "conformance.h"

namespace ellconf {

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

inline RECT Rect(const conf::json& v) {
    return RECT{conf::i32(v[0]), conf::i32(v[1]), conf::i32(v[2]), conf::i32(v[3])};
}
inline RECTD RectD(const conf::json& v) {
    return RECTD(conf::num(v[0]), conf::num(v[1]), conf::num(v[2]), conf::num(v[3]));
}
inline ATransform Transform(const conf::json& v) {
    return ATransform(conf::num(v[0]), conf::num(v[1]), conf::num(v[2]), conf::num(v[3]),
                      conf::num(v[4]), conf::num(v[5]));
}
inline ELLPARAM Param(const conf::json& v) {
    return ELLPARAM(conf::num(v[0]), conf::num(v[1]), conf::num(v[2]), conf::num(v[3]),
                    conf::num(v[4]), conf::num(v[5]));
}
inline POINT Pt(const conf::json& v) {
    return POINT{conf::i32(v[0]), conf::i32(v[1])};
}
inline POINTD PtD(const conf::json& v) {
    return POINTD(conf::num(v[0]), conf::num(v[1]));
}
template <class R>
R RectOf(const conf::json& v) {
    if constexpr (std::is_same_v<R, RECT>)
        return Rect(v);
    else
        return RectD(v);
}
// Integer points may be written as 200.0.
template <class P>
P PtOf(const conf::json& v) {
    if constexpr (std::is_same_v<P, POINT>)
        return POINT{static_cast<LONG>(conf::num(v[0])), static_cast<LONG>(conf::num(v[1]))};
    else
        return PtD(v);
}

inline conf::json J(int v) {
    return v;
}
inline conf::json J(const RECT& r) {
    return conf::json{r.left, r.top, r.right, r.bottom};
}
inline conf::json J(const POINT& p) {
    return conf::json{p.x, p.y};
}
inline conf::json J(const POINTD& p) {
    return conf::json{conf::dbl(p.x), conf::dbl(p.y)};
}
template <class P>
conf::json J(const P* p, std::size_t n) {
    conf::json a = conf::json::array();
    for (std::size_t i = 0; i < n; ++i) a.push_back(J(p[i]));
    return a;
}
template <class T>
conf::json J(const CArray<T>& a) {
    return J(a.GetData(), static_cast<std::size_t>(a.GetSize()));
}
template <class T>
conf::json OrNull(const T& v) {
    return Untouched(v) ? conf::json(nullptr) : J(v);
}

}  // namespace ellconf
