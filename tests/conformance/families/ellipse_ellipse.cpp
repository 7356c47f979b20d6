// Golden vectors of the ellipse family: conics, bounds, borders, ray points, gradient
// octants, the class's point rounding and turned rectangle corners.
#include "ellipse_probe.h"

namespace {

using namespace ellconf;
using conf::Handler;
using conf::json;

// Wraps a handler taking (args, rectangle) into one that reads the rectangle as R.
template <class R, class F>
Handler OnRect(F f) {
    return [f](const json& a) { return f(a, RectOf<R>(a["rc"])); };
}

// Outputs of the bounds routines; a point left untouched is null.
template <class P, class Call>
json Bounds(Call call) {
    P pts[4] = {Fresh<P>(), Fresh<P>(), Fresh<P>(), Fresh<P>()}, c = Fresh<P>();
    RECT b = SentinelRect();
    const int ok = call(pts, &b, &c);
    return json{{"value", ok},
                {"points", Untouched(pts[0]) ? json(nullptr) : J(pts, 4)},
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

const auto paramOf = [](const json& a, auto rc) {
    double v[6] = {kSentinelD, kSentinelD, kSentinelD, kSentinelD, kSentinelD, kSentinelD};
    const int ok =
        CEllipse::GetEllipseParam(rc, Transform(a["t"]), v[0], v[1], v[2], v[3], v[4], v[5]);
    for (double x : v)
        if (!ok && x != kSentinelD) throw std::runtime_error("outputs written on failure");
    return json{{"value", ok}, {"param", ok ? conf::dbls(v, 6) : json(nullptr)}};
};

template <class P>
Handler BoundsOfParam() {
    return [](const json& a) {
        return Bounds<P>([&](P* pts, RECT* b, P* c) {
            return CEllipse::GetEllBoundary(Param(a["param"]), pts, b, c);
        });
    };
}

template <class R, class P>
Handler BoundsOfRect() {
    return [](const json& a) {
        return Bounds<P>([&](P* pts, RECT* b, P* c) {
            return CEllipse::GetEllBoundary(RectOf<R>(a["rc"]), Transform(a["t"]), pts, b, c);
        });
    };
}

const auto borderOf = [](const json& a, auto rc) {
    RECT b = SentinelRect();
    const int ok = CEllipse::GetEllipseBorder(rc, Transform(a["t"]), b);
    return json{{"value", ok}, {"border", OrNull(b)}};
};

template <class P>
Handler RayOfParam() {
    return [](const json& a) {
        return Ray<P>(a, [&](const P* c, double angle, P& out) {
            return CEllipse::EllipsePoint(Param(a["param"]), c, angle, out);
        });
    };
}

template <class R, class P>
Handler RayOfRect() {
    return [](const json& a) {
        return Ray<P>(a, [&](const P* c, double angle, P& out) {
            return CEllipse::EllipsePoint(RectOf<R>(a["rc"]), Transform(a["t"]), c, angle, out);
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
    {"CEllipse::GetEllipseParam(RECT,ATransform)", OnRect<RECT>(paramOf)},
    {"CEllipse::GetEllipseParam(RECTD,ATransform)", OnRect<RECTD>(paramOf)},
    {"CEllipse::GetEllipseParam(RECT,double)",
     [](const json& a) {
         double v[4] = {kSentinelD, kSentinelD, kSentinelD, kSentinelD};
         const int ok = CEllipse::GetEllipseParam(Rect(a["rc"]), conf::num(a["angle"]), v[0], v[1],
                                                  v[2], v[3]);
         return json{{"value", ok},
                     {"form", v[0] == kSentinelD ? json(nullptr) : conf::dbls(v, 4)}};
     }},
    {"CEllipse::GetEllBoundary(ELLPARAM,POINTD*)", BoundsOfParam<POINTD>()},
    {"CEllipse::GetEllBoundary(ELLPARAM,POINT*)", BoundsOfParam<POINT>()},
    {"CEllipse::GetEllBoundary(RECT,ATransform,POINTD*)", BoundsOfRect<RECT, POINTD>()},
    {"CEllipse::GetEllBoundary(RECTD,ATransform,POINTD*)", BoundsOfRect<RECTD, POINTD>()},
    {"CEllipse::GetEllBoundary(RECT,ATransform,POINT*)", BoundsOfRect<RECT, POINT>()},
    {"CEllipse::GetEllBoundary(RECTD,ATransform,POINT*)", BoundsOfRect<RECTD, POINT>()},
    {"CEllipse::GetEllipseBorder(ELLPARAM)",
     [](const json& a) {
         RECT b = SentinelRect();
         const int ok = CEllipse::GetEllipseBorder(Param(a["param"]), b);
         return json{{"value", ok}, {"border", OrNull(b)}};
     }},
    {"CEllipse::GetEllipseBorder(RECT,ATransform)", OnRect<RECT>(borderOf)},
    {"CEllipse::GetEllipseBorder(RECTD,ATransform)", OnRect<RECTD>(borderOf)},
    {"CEllipse::GetEllipseBorder(RECT,double)",
     [](const json& a) {
         RECT b = SentinelRect();
         CEllipse::GetEllipseBorder(Rect(a["rc"]), conf::num(a["angle"]), b);
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
             return json{{"value", Probe::EllPointSite(Param(a["param"]), Pt(pt))}};
         return json{{"value", Probe::EllPointSite(Param(a["param"]), PtD(pt))}};
     }},
    {"CEllipse::EllipsePoint(ELLPARAM,POINTD*,double)", RayOfParam<POINTD>()},
    {"CEllipse::EllipsePoint(ELLPARAM,POINT*,double)", RayOfParam<POINT>()},
    {"CEllipse::EllipsePoint(RECTD,ATransform,POINTD*,double)", RayOfRect<RECTD, POINTD>()},
    {"CEllipse::EllipsePoint(RECT,ATransform,POINTD*,double)", RayOfRect<RECT, POINTD>()},
    {"CEllipse::EllipsePoint(RECTD,ATransform,POINT*,double)", RayOfRect<RECTD, POINT>()},
    {"CEllipse::EllipsePoint(RECT,ATransform,POINT*,double)", RayOfRect<RECT, POINT>()},
    {"CEllipse::RotateRect",
     [](const json& a) {
         POINT pts[4];
         const int q = Probe::RotateRect(Rect(a["rc"]), conf::num(a["angle"]), pts);
         return json{{"value", q}, {"pts", J(pts, 4)}};
     }},
    {"CEllipse::RectVertex",
     [](const json& a) {
         POINT pts[4];
         CEllipse::RectVertex(Rect(a["rc"]), pts);
         return json{{"pts", J(pts, 4)}};
     }},
    {"CEllipse::PrecisePoint",
     [](const json& a) {
         POINT p;
         Probe::PrecisePoint(conf::num(a["x"]), conf::num(a["y"]), p);
         return json{{"pt", J(p)}};
     }},
};

}  // namespace
