// Golden vectors of the ellipse family: conics, bounds, borders, ray points, gradient
// octants, the class's point rounding and turned rectangle corners.
#include "ellipse_probe.h"

namespace {

using namespace ellconf;
using conf::json;

json Param6(int ok, const double* v) {
    return json{{"value", ok}, {"param", ok ? conf::dbls(v, 6) : json(nullptr)}};
}

template <class R>
json ParamOf(const json& a, R rc) {
    double v[6] = {kSentinelD, kSentinelD, kSentinelD, kSentinelD, kSentinelD, kSentinelD};
    const int ok =
        CEllipse::GetEllipseParam(rc, Transform(a["t"]), v[0], v[1], v[2], v[3], v[4], v[5]);
    if (!ok)
        for (double x : v)
            if (x != kSentinelD) throw std::runtime_error("outputs written on failure");
    return Param6(ok, v);
}

// The double bounds: on failure nothing is written (null in the vectors).
json BoundsD(int ok, const POINTD* pts, const RECT& border, const POINTD& c) {
    if (!ok)
        return json{{"value", 0},
                    {"points", nullptr},
                    {"border", BorderOrNull(border)},
                    {"center", nullptr}};
    return json{{"value", 1}, {"points", J(pts, 4)}, {"border", J(border)}, {"center", J(c)}};
}

json BoundsI(int ok, const POINT* pts, const RECT& border, const POINT& c) {
    return json{
        {"value", ok}, {"points", J(pts, 4)}, {"border", BorderOrNull(border)}, {"center", J(c)}};
}

template <class R>
json BoundaryTD(const json& a, R rc) {
    POINTD pts[4];
    POINTD c;
    RECT b = SentinelRect();
    const int ok = CEllipse::GetEllBoundary(rc, Transform(a["t"]), pts, &b, &c);
    return BoundsD(ok, pts, b, c);
}

template <class R>
json BoundaryTI(const json& a, R rc) {
    POINT pts[4] = {{kSentinel, kSentinel},
                    {kSentinel, kSentinel},
                    {kSentinel, kSentinel},
                    {kSentinel, kSentinel}};
    POINT c{kSentinel, kSentinel};
    RECT b = SentinelRect();
    const int ok = CEllipse::GetEllBoundary(rc, Transform(a["t"]), pts, &b, &c);
    if (!ok && pts[0].x == kSentinel)
        return json{{"value", 0}, {"points", nullptr}, {"border", nullptr}, {"center", nullptr}};
    return BoundsI(ok, pts, b, c);
}

template <class R>
json BorderT(const json& a, R rc) {
    RECT b = SentinelRect();
    const int ok = CEllipse::GetEllipseBorder(rc, Transform(a["t"]), b);
    return json{{"value", ok}, {"border", BorderOrNull(b)}};
}

template <class R>
json RayTD(const json& a, R rc) {
    POINTD out(kSentinelD, kSentinelD);
    POINTD c;
    const bool hasC = !a["center"].is_null();
    if (hasC) c = PtD(a["center"]);
    const int ok = CEllipse::EllipsePoint(rc, Transform(a["t"]), hasC ? &c : nullptr,
                                          conf::num(a["angle"]), out);
    const bool untouched = out.x == kSentinelD && out.y == kSentinelD;
    return json{{"value", ok}, {"pt", untouched ? json(nullptr) : J(out)}};
}

template <class R>
json RayTI(const json& a, R rc) {
    POINT out{kSentinel, kSentinel};
    POINT c{0, 0};
    const bool hasC = !a["center"].is_null();
    // Integer centres may be written as 200.0.
    if (hasC)
        c = POINT{static_cast<LONG>(conf::num(a["center"][0])),
                  static_cast<LONG>(conf::num(a["center"][1]))};
    const int ok = CEllipse::EllipsePoint(rc, Transform(a["t"]), hasC ? &c : nullptr,
                                          conf::num(a["angle"]), out);
    const bool untouched = out.x == kSentinel && out.y == kSentinel;
    return json{{"value", ok}, {"pt", untouched ? json(nullptr) : J(out)}};
}

json PointOut(int ok, const POINT& p) {
    const bool untouched = p.x == kSentinel && p.y == kSentinel;
    return json{{"value", ok}, {"pt", untouched ? json(nullptr) : J(p)}};
}

const conf::Register reg{
    {"CEllipse::GetEllipseParam(RECT,ATransform)",
     [](const json& a) { return ParamOf(a, Rect(a["rc"])); }},
    {"CEllipse::GetEllipseParam(RECTD,ATransform)",
     [](const json& a) { return ParamOf(a, RectD(a["rc"])); }},
    {"CEllipse::GetEllipseParam(RECT,double)",
     [](const json& a) {
         double v[4] = {kSentinelD, kSentinelD, kSentinelD, kSentinelD};
         const int ok = CEllipse::GetEllipseParam(Rect(a["rc"]), conf::num(a["angle"]), v[0], v[1],
                                                  v[2], v[3]);
         return json{{"value", ok},
                     {"form", v[0] == kSentinelD ? json(nullptr) : conf::dbls(v, 4)}};
     }},
    {"CEllipse::GetEllBoundary(ELLPARAM,POINTD*)",
     [](const json& a) {
         POINTD pts[4];
         POINTD c;
         RECT b = SentinelRect();
         const int ok = CEllipse::GetEllBoundary(Param(a["param"]), pts, &b, &c);
         return BoundsD(ok, pts, b, c);
     }},
    {"CEllipse::GetEllBoundary(ELLPARAM,POINT*)",
     [](const json& a) {
         POINT pts[4] = {{kSentinel, kSentinel},
                         {kSentinel, kSentinel},
                         {kSentinel, kSentinel},
                         {kSentinel, kSentinel}};
         POINT c{kSentinel, kSentinel};
         RECT b = SentinelRect();
         const int ok = CEllipse::GetEllBoundary(Param(a["param"]), pts, &b, &c);
         return BoundsI(ok, pts, b, c);
     }},
    {"CEllipse::GetEllBoundary(RECT,ATransform,POINTD*)",
     [](const json& a) { return BoundaryTD(a, Rect(a["rc"])); }},
    {"CEllipse::GetEllBoundary(RECTD,ATransform,POINTD*)",
     [](const json& a) { return BoundaryTD(a, RectD(a["rc"])); }},
    {"CEllipse::GetEllBoundary(RECT,ATransform,POINT*)",
     [](const json& a) { return BoundaryTI(a, Rect(a["rc"])); }},
    {"CEllipse::GetEllBoundary(RECTD,ATransform,POINT*)",
     [](const json& a) { return BoundaryTI(a, RectD(a["rc"])); }},
    {"CEllipse::GetEllipseBorder(ELLPARAM)",
     [](const json& a) {
         RECT b = SentinelRect();
         const int ok = CEllipse::GetEllipseBorder(Param(a["param"]), b);
         return json{{"value", ok}, {"border", BorderOrNull(b)}};
     }},
    {"CEllipse::GetEllipseBorder(RECT,ATransform)",
     [](const json& a) { return BorderT(a, Rect(a["rc"])); }},
    {"CEllipse::GetEllipseBorder(RECTD,ATransform)",
     [](const json& a) { return BorderT(a, RectD(a["rc"])); }},
    {"CEllipse::GetEllipseBorder(RECT,double)",
     [](const json& a) {
         RECT b = SentinelRect();
         CEllipse::GetEllipseBorder(Rect(a["rc"]), conf::num(a["angle"]), b);
         return json{{"border", BorderOrNull(b)}};
     }},
    {"CEllipse::GetTopPoint(ELLPARAM)",
     [](const json& a) {
         POINT p{kSentinel, kSentinel};
         const int ok = Probe::GetTopPoint(Param(a["param"]), p);
         return PointOut(ok, p);
     }},
    {"CEllipse::GetTopPoint(p,q,r,s)",
     [](const json& a) {
         const auto f = conf::nums(a["form"]);
         POINT p{kSentinel, kSentinel};
         const int ok = Probe::GetTopPoint(f.at(0), f.at(1), f.at(2), f.at(3), p);
         return PointOut(ok, p);
     }},
    {"CEllipse::GetRightPoint(p,q,r,s)",
     [](const json& a) {
         const auto f = conf::nums(a["form"]);
         POINT p{kSentinel, kSentinel};
         const int ok = Probe::GetRightPoint(f.at(0), f.at(1), f.at(2), f.at(3), p);
         return PointOut(ok, p);
     }},
    {"CEllipse::EllPointSite(POINT)",
     [](const json& a) {
         // Points given with a fraction exercise the double overload.
         const json& pt = a["pt"];
         if (pt[0].is_number_integer() && pt[1].is_number_integer())
             return json{{"value", Probe::EllPointSite(Param(a["param"]), Pt(pt))}};
         return json{{"value", Probe::EllPointSite(Param(a["param"]), PtD(pt))}};
     }},
    {"CEllipse::EllipsePoint(ELLPARAM,POINTD*,double)",
     [](const json& a) {
         POINTD out(kSentinelD, kSentinelD), c;
         const bool hasC = !a["center"].is_null();
         if (hasC) c = PtD(a["center"]);
         const int ok = CEllipse::EllipsePoint(Param(a["param"]), hasC ? &c : nullptr,
                                               conf::num(a["angle"]), out);
         const bool untouched = out.x == kSentinelD && out.y == kSentinelD;
         return json{{"value", ok}, {"pt", untouched ? json(nullptr) : J(out)}};
     }},
    {"CEllipse::EllipsePoint(ELLPARAM,POINT*,double)",
     [](const json& a) {
         POINT out{kSentinel, kSentinel}, c{0, 0};
         const bool hasC = !a["center"].is_null();
         if (hasC) c = Pt(a["center"]);
         const int ok = CEllipse::EllipsePoint(Param(a["param"]), hasC ? &c : nullptr,
                                               conf::num(a["angle"]), out);
         return PointOut(ok, out);
     }},
    {"CEllipse::EllipsePoint(RECTD,ATransform,POINTD*,double)",
     [](const json& a) { return RayTD(a, RectD(a["rc"])); }},
    {"CEllipse::EllipsePoint(RECT,ATransform,POINTD*,double)",
     [](const json& a) { return RayTD(a, Rect(a["rc"])); }},
    {"CEllipse::EllipsePoint(RECTD,ATransform,POINT*,double)",
     [](const json& a) { return RayTI(a, RectD(a["rc"])); }},
    {"CEllipse::EllipsePoint(RECT,ATransform,POINT*,double)",
     [](const json& a) { return RayTI(a, Rect(a["rc"])); }},
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
