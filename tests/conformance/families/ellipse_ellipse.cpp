// Golden vectors of the ellipse family: conics, bounds, borders, ray points, gradient
// octants, the class's point rounding and turned rectangle corners.
#include "ellipse_probe.h"

namespace {

using namespace ellconf;
using conf::Handler;
using conf::json;

// Outputs of the bounds routines; a point left untouched is null.
template <class P, class Call>
json Bounds(Call call) {
    P pts[4] = {Fresh<P>(), Fresh<P>(), Fresh<P>(), Fresh<P>()}, c = Fresh<P>();
    RECT b = SentinelRect();
    const int ok = call(pts, &b, &c);
    return json{{"value", ok},
                {"points", Untouched(pts[0]) ? json(nullptr) : to_json(pts, 4)},
                {"border", OrNull(b)},
                {"center", OrNull(c)}};
}

// A ray point with the optional centre of the arguments.
template <class P, class Call>
json Ray(const json& a, Call call) {
    P out = Fresh<P>(), c{};
    const bool hasC = !a["center"].is_null();
    if (hasC) c = PtOf<P>(a["center"]);
    const int ok = call(hasC ? &c : nullptr, conf::num(a["angle"]), out);
    return json{{"value", ok}, {"pt", OrNull(out)}};
}

// A point routine's result and its point (null when untouched).
template <class Call>
json PointCall(Call call) {
    POINT p = Fresh<POINT>();
    const int ok = call(p);
    return json{{"value", ok}, {"pt", OrNull(p)}};
}

// Calls f with the ellipse of the arguments: "param" for R = ELLPARAM, else "rc" read as R
// and the transform "t".
template <class R, class F>
int OnShape(const json& a, F f) {
    if constexpr (std::is_same_v<R, ELLPARAM>)
        return f(Param(a["param"]));
    else
        return f(RectOf<R>(a["rc"]), geo::transform(a["t"]));
}

template <class R>
Handler ParamOf() {
    return [](const json& a) {
        double v[6] = {kSentinelD, kSentinelD, kSentinelD, kSentinelD, kSentinelD, kSentinelD};
        const int ok = OnShape<R>(a, [&](auto... s) {
            return CEllipse::GetEllipseParam(s..., v[0], v[1], v[2], v[3], v[4], v[5]);
        });
        for (double x : v)
            if (!ok && x != kSentinelD) throw std::runtime_error("outputs written on failure");
        return json{{"value", ok}, {"param", ok ? conf::dbls(v, 6) : json(nullptr)}};
    };
}

template <class R, class P>
Handler BoundsOf() {
    return [](const json& a) {
        return Bounds<P>([&](P* pts, RECT* b, P* c) {
            return OnShape<R>(a,
                              [&](auto... s) { return CEllipse::GetEllBoundary(s..., pts, b, c); });
        });
    };
}

template <class R>
Handler BorderOf() {
    return [](const json& a) {
        RECT b = SentinelRect();
        const int ok =
            OnShape<R>(a, [&](auto... s) { return CEllipse::GetEllipseBorder(s..., b); });
        return json{{"value", ok}, {"border", OrNull(b)}};
    };
}

template <class R, class P>
Handler RayOf() {
    return [](const json& a) {
        return Ray<P>(a, [&](const P* c, double angle, P& out) {
            return OnShape<R>(
                a, [&](auto... s) { return CEllipse::EllipsePoint(s..., c, angle, out); });
        });
    };
}

// The turned form's gradient points: "form" holds p, q, r, s.
template <int (*Fn)(double, double, double, double, POINT&)>
json FormPoint(const json& a) {
    const auto f = conf::nums(a["form"]);
    return PointCall([&](POINT& p) { return Fn(f.at(0), f.at(1), f.at(2), f.at(3), p); });
}

const conf::Register reg{
    {"CEllipse::GetEllipseParam(RECT,ATransform)", ParamOf<RECT>()},
    {"CEllipse::GetEllipseParam(RECTD,ATransform)", ParamOf<RECTD>()},
    {"CEllipse::GetEllipseParam(RECT,double)",
     [](const json& a) {
         double v[4] = {kSentinelD, kSentinelD, kSentinelD, kSentinelD};
         const int ok = CEllipse::GetEllipseParam(geo::rect(a["rc"]), conf::num(a["angle"]), v[0],
                                                  v[1], v[2], v[3]);
         return json{{"value", ok},
                     {"form", v[0] == kSentinelD ? json(nullptr) : conf::dbls(v, 4)}};
     }},
    {"CEllipse::GetEllBoundary(ELLPARAM,POINTD*)", BoundsOf<ELLPARAM, POINTD>()},
    {"CEllipse::GetEllBoundary(ELLPARAM,POINT*)", BoundsOf<ELLPARAM, POINT>()},
    {"CEllipse::GetEllBoundary(RECT,ATransform,POINTD*)", BoundsOf<RECT, POINTD>()},
    {"CEllipse::GetEllBoundary(RECTD,ATransform,POINTD*)", BoundsOf<RECTD, POINTD>()},
    {"CEllipse::GetEllBoundary(RECT,ATransform,POINT*)", BoundsOf<RECT, POINT>()},
    {"CEllipse::GetEllBoundary(RECTD,ATransform,POINT*)", BoundsOf<RECTD, POINT>()},
    {"CEllipse::GetEllipseBorder(ELLPARAM)", BorderOf<ELLPARAM>()},
    {"CEllipse::GetEllipseBorder(RECT,ATransform)", BorderOf<RECT>()},
    {"CEllipse::GetEllipseBorder(RECTD,ATransform)", BorderOf<RECTD>()},
    {"CEllipse::GetEllipseBorder(RECT,double)",
     [](const json& a) {
         RECT b = SentinelRect();
         CEllipse::GetEllipseBorder(geo::rect(a["rc"]), conf::num(a["angle"]), b);
         return json{{"border", OrNull(b)}};
     }},
    {"CEllipse::GetTopPoint(ELLPARAM)",
     [](const json& a) {
         return PointCall([&](POINT& p) { return Probe::GetTopPoint(Param(a["param"]), p); });
     }},
    {"CEllipse::GetTopPoint(p,q,r,s)", FormPoint<Probe::GetTopPoint>},
    {"CEllipse::GetRightPoint(p,q,r,s)", FormPoint<Probe::GetRightPoint>},
    {"CEllipse::EllPointSite(POINT)",
     [](const json& a) {
         // Points given with a fraction exercise the double overload.
         const json& pt = a["pt"];
         if (pt[0].is_number_integer() && pt[1].is_number_integer())
             return json{{"value", Probe::EllPointSite(Param(a["param"]), geo::point(pt))}};
         return json{{"value", Probe::EllPointSite(Param(a["param"]), geo::pointd(pt))}};
     }},
    {"CEllipse::EllipsePoint(ELLPARAM,POINTD*,double)", RayOf<ELLPARAM, POINTD>()},
    {"CEllipse::EllipsePoint(ELLPARAM,POINT*,double)", RayOf<ELLPARAM, POINT>()},
    {"CEllipse::EllipsePoint(RECTD,ATransform,POINTD*,double)", RayOf<RECTD, POINTD>()},
    {"CEllipse::EllipsePoint(RECT,ATransform,POINTD*,double)", RayOf<RECT, POINTD>()},
    {"CEllipse::EllipsePoint(RECTD,ATransform,POINT*,double)", RayOf<RECTD, POINT>()},
    {"CEllipse::EllipsePoint(RECT,ATransform,POINT*,double)", RayOf<RECT, POINT>()},
    {"CEllipse::RotateRect",
     [](const json& a) {
         POINT pts[4];
         const int q = Probe::RotateRect(geo::rect(a["rc"]), conf::num(a["angle"]), pts);
         return json{{"value", q}, {"pts", to_json(pts, 4)}};
     }},
    {"CEllipse::RectVertex",
     [](const json& a) {
         POINT pts[4];
         CEllipse::RectVertex(geo::rect(a["rc"]), pts);
         return json{{"pts", to_json(pts, 4)}};
     }},
    {"CEllipse::PrecisePoint",
     [](const json& a) {
         POINT p;
         Probe::PrecisePoint(conf::num(a["x"]), conf::num(a["y"]), p);
         return json{{"pt", to_json(p)}};
     }},
};

}  // namespace
