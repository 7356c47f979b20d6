// Golden vectors of the geometry family: POINTD, RECTD and CPrecise.
#include <vector>

#include "geometry_json.h"

namespace {

using conf::json;
using conf::num;
using conf::value;
namespace geo = conf::geo;

template <class P>
json Pt(const P& p) {
    return json{{"pt", geo::to_json(p)}};
}
template <class R>
json Rc(const R& r) {
    return json{{"rc", geo::to_json(r)}};
}
bool AllIntegers(const json& v) {
    for (const auto& e : v)
        if (!e.is_number_integer()) return false;
    return true;
}

// POINTD == / != ; an integer point on the right-hand side selects the POINT overload.
json PointCompare(const json& a, bool equal) {
    const POINTD p = geo::pointd(a["a"]);
    const json& b = a["b"];
    if (AllIntegers(b)) return value(equal ? p == geo::point(b) : p != geo::point(b));
    return value(equal ? p == geo::pointd(b) : p != geo::pointd(b));
}

// Applies a modifying member to the rectangle "rc" and returns it.
template <class F>
json Modified(const json& a, F f) {
    RECTD r = geo::rectd(a["rc"]);
    f(r);
    return Rc(r);
}

static conf::Register reg{
    {"POINTD::operator POINT", [](const json& a) { return Pt(POINT(geo::pointd(a["pt"]))); }},
    {"POINTD::GPOINT", [](const json& a) { return Pt(geo::pointd(a["pt"]).GPOINT()); }},
    {"CPrecise::PreciseInt",
     [](const json& a) {
         return value(CPrecise::PreciseInt(num(a["value"]), num(a["precision"])));
     }},
    {"POINTD::operator==", [](const json& a) { return PointCompare(a, true); }},
    {"POINTD::operator!=", [](const json& a) { return PointCompare(a, false); }},
    {"POINTD::operator+",
     [](const json& a) { return Pt(geo::pointd(a["a"]) + geo::pointd(a["b"])); }},
    {"POINTD::operator-",
     [](const json& a) { return Pt(geo::pointd(a["a"]) - geo::pointd(a["b"])); }},
    {"RECTD::operator RECT", [](const json& a) { return Rc(RECT(geo::rectd(a["rc"]))); }},
    {"RECTD::GRECT", [](const json& a) { return Rc(geo::rectd(a["rc"]).GRECT()); }},
    {"RECTD::Width/Height/CenterPoint",
     [](const json& a) {
         const RECTD r = geo::rectd(a["rc"]);
         return json{{"width", conf::dbl(r.Width())},
                     {"height", conf::dbl(r.Height())},
                     {"center", geo::to_json(r.CenterPoint())}};
     }},
    {"RECTD::IsRectEmpty/IsRectNull",
     [](const json& a) {
         const RECTD r = geo::rectd(a["rc"]);
         return json{{"empty", r.IsRectEmpty()}, {"null", r.IsRectNull()}};
     }},
    {"RECTD::NormalizeBorder",
     [](const json& a) { return Modified(a, [](RECTD& r) { r.NormalizeBorder(); }); }},
    {"RECTD::NormalizeRect",
     [](const json& a) { return Modified(a, [](RECTD& r) { r.NormalizeRect(); }); }},
    {"RECTD::OffsetRect",
     [](const json& a) {
         return Modified(a, [&](RECTD& r) { r.OffsetRect(num(a["dx"]), num(a["dy"])); });
     }},
    {"RECTD::operator==",
     [](const json& a) {
         const RECTD r = geo::rectd(a["a"]);
         return value(AllIntegers(a["b"]) ? r == geo::rect(a["b"]) : r == geo::rectd(a["b"]));
     }},
    {"RECTD::UnionRect",
     [](const json& a) {
         RECTD r(-1, -2, -3, -4);
         r.UnionRect(geo::rectd(a["a"]), geo::rectd(a["b"]));
         return Rc(r);
     }},
    {"RECTD::PtInRect",
     [](const json& a) { return value(geo::rectd(a["rc"]).PtInRect(geo::pointd(a["pt"]))); }},
    {"RECTD::GetBorderRect",
     [](const json& a) {
         const std::vector<POINTD> pts =
             a["points"].is_null() ? std::vector<POINTD>{} : geo::pointds(a["points"]);
         // Start from a non-zero rectangle: an empty input must clear it.
         RECTD r(7, 8, 9, 10);
         r.GetBorderRect(pts.empty() ? nullptr : pts.data(), static_cast<LONG>(pts.size()));
         return Rc(r);
     }},
};

}  // namespace
