// Golden vectors of the geometry family: POINTD, RECTD and CPrecise.
#include <vector>

#include "geometry_json.h"

namespace {

using conf::json;
using conf::num;
namespace geo = conf::geo;

static conf::Register reg{
    {"POINTD::operator POINT",
     [](const json& a) {
         return json{{"pt", geo::to_json(POINT(geo::pointd(a["pt"])))}};
     }},
    {"POINTD::GPOINT",
     [](const json& a) {
         return json{{"pt", geo::to_json(geo::pointd(a["pt"]).GPOINT())}};
     }},
    {"CPrecise::PreciseInt",
     [](const json& a) {
         return json{{"value", CPrecise::PreciseInt(num(a["value"]), num(a["precision"]))}};
     }},
    {"POINTD::operator==",
     [](const json& a) {
         const POINTD p = geo::pointd(a["a"]);
         // An integer point on the right-hand side selects the POINT overload.
         if (a["b"].at(0).is_number_integer() && a["b"].at(1).is_number_integer())
             return json{{"value", p == geo::point(a["b"])}};
         return json{{"value", p == geo::pointd(a["b"])}};
     }},
    {"POINTD::operator!=",
     [](const json& a) {
         const POINTD p = geo::pointd(a["a"]);
         if (a["b"].at(0).is_number_integer() && a["b"].at(1).is_number_integer())
             return json{{"value", p != geo::point(a["b"])}};
         return json{{"value", p != geo::pointd(a["b"])}};
     }},
    {"POINTD::operator+",
     [](const json& a) {
         return json{{"pt", geo::to_json(geo::pointd(a["a"]) + geo::pointd(a["b"]))}};
     }},
    {"POINTD::operator-",
     [](const json& a) {
         return json{{"pt", geo::to_json(geo::pointd(a["a"]) - geo::pointd(a["b"]))}};
     }},
    {"RECTD::operator RECT",
     [](const json& a) {
         return json{{"rc", geo::to_json(RECT(geo::rectd(a["rc"])))}};
     }},
    {"RECTD::GRECT",
     [](const json& a) {
         return json{{"rc", geo::to_json(geo::rectd(a["rc"]).GRECT())}};
     }},
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
     [](const json& a) {
         RECTD r = geo::rectd(a["rc"]);
         r.NormalizeBorder();
         return json{{"rc", geo::to_json(r)}};
     }},
    {"RECTD::NormalizeRect",
     [](const json& a) {
         RECTD r = geo::rectd(a["rc"]);
         r.NormalizeRect();
         return json{{"rc", geo::to_json(r)}};
     }},
    {"RECTD::operator==",
     [](const json& a) {
         const RECTD r = geo::rectd(a["a"]);
         const json& b = a["b"];
         bool allInt = true;
         for (const auto& e : b) allInt = allInt && e.is_number_integer();
         return json{{"value", allInt ? (r == geo::rect(b)) : (r == geo::rectd(b))}};
     }},
    {"RECTD::UnionRect",
     [](const json& a) {
         RECTD r(-1, -2, -3, -4);
         r.UnionRect(geo::rectd(a["a"]), geo::rectd(a["b"]));
         return json{{"rc", geo::to_json(r)}};
     }},
    {"RECTD::OffsetRect",
     [](const json& a) {
         RECTD r = geo::rectd(a["rc"]);
         r.OffsetRect(num(a["dx"]), num(a["dy"]));
         return json{{"rc", geo::to_json(r)}};
     }},
    {"RECTD::PtInRect",
     [](const json& a) {
         return json{{"value", geo::rectd(a["rc"]).PtInRect(geo::pointd(a["pt"]))}};
     }},
    {"RECTD::GetBorderRect",
     [](const json& a) {
         const std::vector<POINTD> pts =
             a["points"].is_null() ? std::vector<POINTD>{} : geo::pointds(a["points"]);
         // Start from a non-zero rectangle: an empty input must clear it.
         RECTD r(7, 8, 9, 10);
         r.GetBorderRect(pts.empty() ? nullptr : pts.data(), static_cast<LONG>(pts.size()));
         return json{{"rc", geo::to_json(r)}};
     }},
};

}  // namespace
