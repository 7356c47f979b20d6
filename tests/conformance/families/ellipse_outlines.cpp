// Golden vectors of the midpoint, spans and ellsep families: outline profiles and outlines,
// scan-line spans of ellipses and rectangles, and one call of a sector tracer on the array as
// it stood before the call.
#include <string>

#include "ellipse_probe.h"

namespace {

using namespace ellconf;
using C = CEllipse;

const CArray<POINT> kStale =
    conf::Codec<Pts>::get(json::array({json::array({kS, kS})}));  // replaced by the call

// The span routines: the array form with its border, and the record form reported as its
// three parts.
template <class R, class A, class H>
conf::Handler Spans(int (*fn)(const R&, A, Pts&, RECT*), H how) {
    return call_as("first", fn, in<R>("rc"), how, out("spans", kStale), border.ptr());
}
template <class R, class A, class H>
conf::Handler Line(int (*fn)(const R&, A, RSRLINE&), H how) {
    return call_as(
        "first",
        [fn](Pts& s, CArray<int>& c, RECT& b, const R& r, const std::decay_t<A>& a) {
            RSRLINE line;
            const int first = fn(r, a, line);
            conf::harness([&] { s = line.spans, c = line.counts, b = line.rcBound; });
            return first;
        },
        out<Pts>("spans"), out<CArray<int>>("counts"), out<RECT>("rcBound"), in<R>("rc"), how);
}
// Outline routines that fill a point array ("pts").
template <class... A, class... P>
conf::Handler Outline(void (*fn)(A..., Pts&), P... args) {
    return call(fn, args..., out("pts", kStale));
}

const bool added = [] {
    for (int n = 0; n < 8; ++n)
        conf::add("CEllipse::EllSep" + std::to_string(n),
                  call(Probe::m_EllSep[n], param, in<int>("x").to(), in<int>("y").to(),
                       in<int>("count").to(), in<int>("maxSteps"), in<POINT>("stop").orNull().ptr(),
                       in<Pts>("pts").to()));
    return true;
}();

const auto crect = in<CRect>("rc");

const conf::Register reg{
    {"CEllipse::MidPointEllipse(int,int)",
     call([](int a, int b, CArray<int>& p) { Probe::MidPointEllipse(a, b, p); }, in<int>("a"),
          in<int>("b"), out<CArray<int>>("profile"))},
    {"CEllipse::MidPointCircle(int)",
     call([](int r, CArray<int>& p) { Probe::MidPointCircle(r, p); }, in<int>("r"),
          out("profile", conf::Codec<CArray<int>>::get(json::array({-1}))))},
    {"CEllipse::MidPointEllipse(CRect)", Outline<const CRect&>(Probe::MidPointEllipse, crect)},
    {"CEllipse::MidPointCircle(CRect)", Outline<const CRect&>(C::MidPointCircle, crect)},
    {"CEllipse::MidPointEllipse(RECT,double)",
     Outline<const RECT&, double>(C::MidPointEllipse, rect, angle)},
    {"CEllipse::MidPointEllipse(RECT,ATransform)",
     Outline<const RECT&, const ATransform&>(C::MidPointEllipse, rect, tr)},
    {"CEllipse::MidPointEllipse(RECTD,ATransform)",
     Outline<const RECTD&, const ATransform&>(C::MidPointEllipse, in<RECTD>("rc"), tr)},
    {"CEllipse::MidPointRect(RECT,double)",
     Outline<const RECT&, double>(C::MidPointRect, rect, angle)},
    {"CEllipse::MidPointRect(RECT,ATransform)",
     Outline<const RECT&, const ATransform&>(C::MidPointRect, rect, tr)},
    {"CEllipse::MidPointParalgram",
     call([](const std::array<POINT, 4>& p, Pts& o) { C::MidPointParalgram(p.data(), o); },
          in<std::array<POINT, 4>>("pts"), out("out", kStale))},
    {"CEllipse::MidPointLine",
     call([](POINT a, POINT b, Pts& o) { return C::MidPointLine(a, b, o); }, in<POINT>("p1"),
          in<POINT>("p2"), out("pts", kStale))},
    {"CEllipse::EllipseRasterLine(CRect,double,CArray<POINT>&,RECT*)",
     Spans<CRect, double>(C::EllipseRasterLine, angle)},
    {"CEllipse::EllipseRasterLine(RECT,ATransform,CArray<POINT>&,RECT*)",
     Spans<RECT, const ATransform&>(C::EllipseRasterLine, tr)},
    {"CEllipse::EllipseRasterLine(RECTD,ATransform,CArray<POINT>&,RECT*)",
     Spans<RECTD, const ATransform&>(C::EllipseRasterLine, tr)},
    {"CEllipse::EllipseRasterLine(RECT,double,RSRLINE&)",
     Line<RECT, double>(C::EllipseRasterLine, angle)},
    {"CEllipse::EllipseRasterLine(RECT,ATransform,RSRLINE&)",
     Line<RECT, const ATransform&>(C::EllipseRasterLine, tr)},
    {"CEllipse::EllipseRasterLine(RECTD,ATransform,RSRLINE&)",
     Line<RECTD, const ATransform&>(C::EllipseRasterLine, tr)},
    {"CEllipse::RectRasterLine(RECT,double,CArray<POINT>&,RECT*)",
     Spans<RECT, double>(C::RectRasterLine, angle)},
    {"CEllipse::RectRasterLine(RECT,ATransform,CArray<POINT>&,RECT*)",
     Spans<RECT, const ATransform&>(C::RectRasterLine, tr)},
    {"CEllipse::RectRasterLine(RECT,double,RSRLINE&)",
     Line<RECT, double>(C::RectRasterLine, angle)},
    {"CEllipse::RectRasterLine(RECT,ATransform,RSRLINE&)",
     Line<RECT, const ATransform&>(C::RectRasterLine, tr)},
    {"CEllipse::GetRectBorder(RECT,double)",
     call([](const RECT& r, double a, RECT& b) { C::GetRectBorder(r, a, b); }, rect, angle,
          border)},
    {"CEllipse::GetRectBorder(RECT,ATransform)",
     call([](const RECT& r, const ATransform& t, RECT& b) { C::GetRectBorder(r, t, b); }, rect, tr,
          border)},
};

}  // namespace
