// Golden vectors of the ellipse family: conics, bounds, borders, ray points, gradient
// octants, the class's point rounding and turned rectangle corners.
#include <string>
#include <tuple>

#include "ellipse_probe.h"

namespace {

using namespace ellconf;
using C = CEllipse;
template <class P>
using Four = std::array<P, 4>;

// Registers one operation for the three ways to give the ellipse: the conic "param", or the
// rectangle "rc" (RECT or RECTD) with the transform "t"; make(shape params...) binds it.
template <class Make>
void Shapes(const std::string& name, const std::string& tail, Make make) {
    conf::add(name + "(ELLPARAM" + tail, make(param));
    conf::add(name + "(RECT,ATransform" + tail, make(rect, tr));
    conf::add(name + "(RECTD,ATransform" + tail, make(in<RECTD>("rc"), tr));
}

template <class P>
void AddPointForms(const std::string& kind) {
    Shapes("CEllipse::GetEllBoundary", "," + kind + "*)", [](auto... s) {
        const P f = Fresh<P>();
        return call([](auto&&... x) { return C::GetEllBoundary(x...); }, s...,
                    kept("points", Four<P>{f, f, f, f}).data(), border.ptr(),
                    kept("center", f).ptr());
    });
    Shapes("CEllipse::EllipsePoint", "," + kind + "*,double)", [](auto... s) {
        return call([](auto&&... x) { return C::EllipsePoint(x...); }, s...,
                    in<P>("center").orNull().ptr(), angle, kept("pt", Fresh<P>()));
    });
}

// The bounds through the ELLBOUND record, reported like the pointer forms.
template <class... S>
int Bound(Four<POINTD>& pts, RECT& b, POINTD& c, const S&... shape) {
    ELLBOUND e;
    const int r = C::GetEllBoundary(shape..., e);
    for (std::size_t i = 0; i < 4; ++i) pts[i] = e.ptBound[i];
    b = e.rcBorder, c = e.ptCenter;
    return r;
}

const bool added = [] {
    AddPointForms<POINTD>("POINTD");
    AddPointForms<POINT>("POINT");
    Shapes("CEllipse::GetEllipseBorder", ")", [](auto... s) {
        return call([](auto&&... x) { return C::GetEllipseBorder(x...); }, s..., border);
    });
    Shapes("CEllipse::GetEllBoundary", ",ELLBOUND&)", [](auto... s) {
        return call([](auto&&... x) { return Bound(x...); }, out<Four<POINTD>>("points"),
                    out<RECT>("border"), out<POINTD>("center"), s...);
    });
    return true;
}();

const ELLPARAM kParam(kSD, kSD, kSD, kSD, kSD, kSD);

int ParamOf(ELLPARAM& p, const auto& rc, const ATransform& t) {
    return C::GetEllipseParam(rc, t, p.a, p.b, p.c, p.d, p.e, p.f);
}
int Site(const ELLPARAM& p, const json& pt) {
    // Points given with a fraction exercise the double overload.
    if (pt.at(0).is_number_integer() && pt.at(1).is_number_integer())
        return Probe::EllPointSite(p, conf::Codec<POINT>::get(pt));
    return Probe::EllPointSite(p, conf::Codec<POINTD>::get(pt));
}
// The centred form [p, q, r, s] and the conic's six values as one list.
template <std::size_t N>
using Form = std::array<double, N>;
int FormPoint(int (*fn)(double, double, double, double, POINT&), const Form<4>& f, POINT& out) {
    return fn(f[0], f[1], f[2], f[3], out);
}

const conf::Register reg{
    {"CEllipse::GetEllipseParam(RECT,ATransform)",
     call([](ELLPARAM& p, const RECT& r, const ATransform& t) { return ParamOf(p, r, t); },
          kept("param", kParam), rect, tr)},
    {"CEllipse::GetEllipseParam(RECTD,ATransform)",
     call([](ELLPARAM& p, const RECTD& r, const ATransform& t) { return ParamOf(p, r, t); },
          kept("param", kParam), in<RECTD>("rc"), tr)},
    {"CEllipse::GetEllipseParam(RECT,double)",
     call([](const RECT& rc, double a,
             Form<4>& f) { return C::GetEllipseParam(rc, a, f[0], f[1], f[2], f[3]); },
          rect, angle, kept("form", Form<4>{kSD, kSD, kSD, kSD}))},
    {"CEllipse::GetEllipseBorder(RECT,double)",
     call([](const RECT& rc, double a, RECT& b) { C::GetEllipseBorder(rc, a, b); }, rect, angle,
          border)},
    {"CEllipse::GetTopPoint(ELLPARAM)",
     call([](const ELLPARAM& p, POINT& o) { return Probe::GetTopPoint(p, o); }, param,
          kept("pt", Fresh<POINT>()))},
    {"CEllipse::GetTopPoint(a,b,c,d,e,f)",
     call([](const Form<6>& f,
             POINT& o) { return Probe::GetTopPoint(f[0], f[1], f[2], f[3], f[4], f[5], o); },
          in<Form<6>>("param"), kept("pt", Fresh<POINT>()))},
    {"CEllipse::GetTopPoint(p,q,r,s)",
     call([](const Form<4>& f, POINT& o) { return FormPoint(Probe::GetTopPoint, f, o); },
          in<Form<4>>("form"), kept("pt", Fresh<POINT>()))},
    {"CEllipse::GetRightPoint(p,q,r,s)",
     call([](const Form<4>& f, POINT& o) { return FormPoint(Probe::GetRightPoint, f, o); },
          in<Form<4>>("form"), kept("pt", Fresh<POINT>()))},
    {"CEllipse::EllPointSite(POINT)", call(Site, param, in<json>("pt"))},
    {"CEllipse::EllPointSite(POINTD)", call(Site, param, in<json>("pt"))},
    {"CEllipse::RotateRect", call(Probe::RotateRect, rect, angle, out<Four<POINT>>("pts").data())},
    {"CEllipse::RectVertex", call(C::RectVertex, rect, out<Four<POINT>>("pts").data())},
    {"CEllipse::PrecisePoint",
     call(Probe::PrecisePoint, in<double>("x"), in<double>("y"), out<POINT>("pt"))},
};

}  // namespace
