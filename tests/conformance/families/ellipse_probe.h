// Shared by the ellipse families: the conic's kind, the sentinels that make "left untouched"
// (null in the vectors) observable, and the test-only class that reaches CEllipse's protected
// routines.
#pragma once

#include <array>

#include <kxbase/ellipse/ellipse.h>

#include "geometry_json.h"

template <>
struct conf::Codec<ELLPARAM> {
    static ELLPARAM get(const json& v) {
        const auto p = Codec<std::array<double, 6>>::get(v);
        return ELLPARAM(p[0], p[1], p[2], p[3], p[4], p[5]);
    }
    static json put(const ELLPARAM& p) {
        return Codec<std::array<double, 6>>::put({p.a, p.b, p.c, p.d, p.e, p.f});
    }
};

namespace ellconf {

using conf::call;
using conf::call_as;
using conf::in;
using conf::json;
using conf::kept;
using conf::out;
using Pts = CArray<POINT>;

struct Probe : CEllipse {
    using CEllipse::EllPointSite, CEllipse::GetRightPoint, CEllipse::GetTopPoint,
        CEllipse::m_EllSep, CEllipse::MidPointCircle, CEllipse::MidPointEllipse,
        CEllipse::PrecisePoint, CEllipse::RotateRect;
};

constexpr LONG kS = 0x5A5A5A5A;
constexpr double kSD = -12345.6789;
constexpr RECT kRect{kS, kS, kS, kS};
template <class P>
P Fresh() {
    if constexpr (std::is_same_v<P, POINT>)
        return POINT{kS, kS};
    else
        return POINTD(kSD, kSD);
}

const auto param = in<ELLPARAM>("param");
const auto rect = in<RECT>("rc");
const auto angle = in<double>("angle");
const auto tr = in<ATransform>("t");
const auto border = kept("border", kRect);

}  // namespace ellconf
