// JSON <-> geometry values for golden-vector family files.
//
// Points are [x, y], rectangles [left, top, right, bottom], matrices
// [eM11, eM12, eM21, eM22, eDx, eDy]. Doubles accept the vectors' "nan"/"inf" strings and are
// written back with conf::dbl, so non-finite results survive the round trip.
#pragma once

#include <cstddef>
#include <type_traits>
#include <vector>

#include <kxbase/geometry.h>

#include "conformance.h"

namespace conf::geo {

// ---- reading ----------------------------------------------------------------------------

inline POINTD pointd(const json& v) {
    return POINTD(num(v.at(0)), num(v.at(1)));
}
inline POINT point(const json& v) {
    return POINT{i32(v.at(0)), i32(v.at(1))};
}
inline POINTF pointf(const json& v) {
    return POINTF{static_cast<float>(num(v.at(0))), static_cast<float>(num(v.at(1)))};
}
inline RECTD rectd(const json& v) {
    return RECTD(num(v.at(0)), num(v.at(1)), num(v.at(2)), num(v.at(3)));
}
inline RECT rect(const json& v) {
    return RECT{i32(v.at(0)), i32(v.at(1)), i32(v.at(2)), i32(v.at(3))};
}
inline ATransform transform(const json& v) {
    return ATransform(num(v.at(0)), num(v.at(1)), num(v.at(2)), num(v.at(3)), num(v.at(4)),
                      num(v.at(5)));
}
inline TransMatrix matrix(const json& v) {
    return transform(v);
}

inline std::vector<POINTD> pointds(const json& v) {
    std::vector<POINTD> out;
    for (const auto& e : v) out.push_back(pointd(e));
    return out;
}
inline std::vector<POINT> points(const json& v) {
    std::vector<POINT> out;
    for (const auto& e : v) out.push_back(point(e));
    return out;
}
inline std::vector<POINTF> pointfs(const json& v) {
    std::vector<POINTF> out;
    for (const auto& e : v) out.push_back(pointf(e));
    return out;
}

// ---- writing ----------------------------------------------------------------------------

inline json to_json(const POINTD& p) {
    return json::array({dbl(p.x), dbl(p.y)});
}
inline json to_json(const POINT& p) {
    return json::array({p.x, p.y});
}
inline json to_json(const POINTF& p) {
    return json::array({dbl(p.x), dbl(p.y)});
}
inline json to_json(const RECTD& r) {
    return json::array({dbl(r.left), dbl(r.top), dbl(r.right), dbl(r.bottom)});
}
inline json to_json(const RECT& r) {
    return json::array({r.left, r.top, r.right, r.bottom});
}
inline json to_json(const TransMatrix& m) {
    return json::array(
        {dbl(m.eM11), dbl(m.eM12), dbl(m.eM21), dbl(m.eM22), dbl(m.eDx), dbl(m.eDy)});
}

// Lists of points, rectangles or plain numbers.
template <class P>
json to_json(const P* p, std::size_t n) {
    json a = json::array();
    for (std::size_t i = 0; i < n; ++i) {
        if constexpr (std::is_arithmetic_v<P>)
            a.push_back(p[i]);
        else
            a.push_back(to_json(p[i]));
    }
    return a;
}
template <class P>
json to_json(const std::vector<P>& v) {
    return to_json(v.data(), v.size());
}
template <class P>
json to_json(const CArray<P>& v) {
    return to_json(v.GetData(), static_cast<std::size_t>(v.GetSize()));
}

}  // namespace conf::geo
