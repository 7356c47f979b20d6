// Shared helpers of the ellipse families: argument readers, output writers and the test-only
// class that reaches CEllipse's protected routines.
#pragma once

#include <cstring>
#include <vector>

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
inline bool Untouched(const RECT& r) {
    const RECT s = SentinelRect();
    return std::memcmp(&r, &s, sizeof r) == 0;
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
inline conf::json J(const CArray<POINT>& a) {
    conf::json out = conf::json::array();
    for (const POINT& p : a) out.push_back(J(p));
    return out;
}
inline conf::json J(const CArray<int>& a) {
    conf::json out = conf::json::array();
    for (int v : a) out.push_back(v);
    return out;
}
inline conf::json BorderOrNull(const RECT& r) {
    return Untouched(r) ? conf::json(nullptr) : J(r);
}

}  // namespace ellconf
