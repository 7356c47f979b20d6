// Golden vectors of the transform family: ATransform composition, mapping and decomposition.
#include <string>
#include <type_traits>
#include <vector>

#include "geometry_json.h"

namespace {

using conf::json;
using conf::num;
namespace geo = conf::geo;

// Applies one composing call, written [name, args...], to t.
void Apply(ATransform& t, const json& op) {
    const std::string name = op.at(0).get<std::string>();
    auto arg = [&](std::size_t i) { return num(op.at(i)); };
    if (name == "Translation")
        t.Translation(arg(1), arg(2));
    else if (name == "Scaling")
        t.Scaling(arg(1), arg(2), arg(3), arg(4));
    else if (name == "Rotate")
        t.Rotate(arg(1), arg(2), arg(3));
    else if (name == "Shear")
        t.Shear(arg(1), arg(2), arg(3), arg(4));
    else if (name == "Reflection")
        t.Reflection(arg(1), arg(2), arg(3));
    else if (name == "MultMatrix")
        t.MultMatrix(ATransform(arg(1), arg(2), arg(3), arg(4), arg(5), arg(6)));
    else
        throw conf::Unsupported("composing call " + name);
}

std::vector<int> Counts(const json& v) {
    std::vector<int> c;
    for (const auto& e : v) c.push_back(conf::i32(e));
    return c;
}

json Distance(const json& a, bool inverse) {
    const ATransform t = geo::transform(a["m"]);
    double d = num(a["d"]);
    inverse ? t.InverseCalcDist(d) : t.CalcDist(d);
    return json{{"d", conf::dbl(d)}};
}

// Maps the point "pt" by the matrix "m", forward or inverse; integer points take "precision".
template <class P>
json MapPoint(const json& a, P p, bool inverse) {
    const ATransform t = geo::transform(a["m"]);
    if constexpr (std::is_same_v<P, POINT>)
        inverse ? t.InverseCalcPoint(p, num(a["precision"])) : t.CalcPoint(p, num(a["precision"]));
    else
        inverse ? t.InverseCalcPoint(p) : t.CalcPoint(p);
    return json{{"pt", geo::to_json(p)}};
}

static conf::Register reg{
    {"ATransform::compose",
     [](const json& a) {
         ATransform t;
         for (const auto& op : a["ops"]) Apply(t, op);
         return json{{"m", geo::to_json(t)}};
     }},
    {"ATransform::CalcPoint(double)",
     [](const json& a) { return MapPoint(a, geo::pointd(a["pt"]), false); }},
    {"ATransform::CalcPoint(float)",
     [](const json& a) { return MapPoint(a, geo::pointf(a["pt"]), false); }},
    {"ATransform::CalcPoint(POINT,precision)",
     [](const json& a) { return MapPoint(a, geo::point(a["pt"]), false); }},
    {"ATransform::InverseCalcPoint(POINT,precision)",
     [](const json& a) { return MapPoint(a, geo::point(a["pt"]), true); }},
    {"ATransform::InverseCalcPoint(double)",
     [](const json& a) { return MapPoint(a, geo::pointd(a["pt"]), true); }},
    {"ATransform::CalcDist", [](const json& a) { return Distance(a, false); }},
    {"ATransform::InverseCalcDist", [](const json& a) { return Distance(a, true); }},
    {"ATransform::CanInverseCalc",
     [](const json& a) {
         return json{{"value", geo::transform(a["m"]).CanInverseCalc()}};
     }},
    {"ATransform::CalcPointPoints(POINT,precision)",
     [](const json& a) {
         std::vector<POINT> pts = geo::points(a["pts"]);
         const std::vector<int> counts = Counts(a["counts"]);
         geo::transform(a["m"]).CalcPointPoints(
             pts.data(), counts.data(), static_cast<int>(counts.size()), num(a["precision"]));
         return json{{"pts", geo::to_json(pts)}};
     }},
    {"ATransform::InverseCalcPoints(POINT,precision)",
     [](const json& a) {
         std::vector<POINT> pts = geo::points(a["pts"]);
         geo::transform(a["m"]).InverseCalcPoints(pts.data(), static_cast<int>(pts.size()),
                                                  num(a["precision"]));
         return json{{"pts", geo::to_json(pts)}};
     }},
    {"ATransform::operator==",
     [](const json& a) {
         return json{{"value", geo::transform(a["a"]) == geo::transform(a["b"])}};
     }},
    {"ATransform::Resolution",
     [](const json& a) {
         // Sentinel outputs show which parts a refusal left untouched.
         const ATransform sentinel(7, 7, 7, 7, 7, 7);
         ATransform scale = sentinel, offset = sentinel, rotate = sentinel;
         const int r = geo::transform(a["m"]).Resolution(geo::pointd(a["scaleCenter"]),
                                                         geo::pointd(a["rotateCenter"]), &scale,
                                                         &offset, &rotate);
         auto part = [&](const ATransform& p) {
             const bool same = p.eM11 == 7 && p.eM12 == 7 && p.eM21 == 7 && p.eM22 == 7 &&
                               p.eDx == 7 && p.eDy == 7;
             return same ? json(nullptr) : geo::to_json(p);
         };
         return json{{"value", r},
                     {"scale", part(scale)},
                     {"offset", part(offset)},
                     {"rotate", part(rotate)}};
     }},
};

}  // namespace
