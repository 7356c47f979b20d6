// Golden vectors of the geometry family: POINTD, RECTD and CPrecise.
#include <vector>

#include "geometry_json.h"

namespace {

using conf::call;
using conf::call_as;
using conf::in;
using conf::json;

bool AllIntegers(const json& v) {
    for (const auto& e : v)
        if (!e.is_number_integer()) return false;
    return true;
}

// == and != of POINTD and RECTD: an integer right-hand side selects the integer overload.
template <class D, class I>
conf::Handler Compare(bool equal) {
    return [equal](const json& a) {
        const D x = conf::Codec<D>::get(a.at("a"));
        const json& b = a.at("b");
        const int r =
            AllIntegers(b) ? (x == conf::Codec<I>::get(b)) : (x == conf::Codec<D>::get(b));
        return json{{"value", equal ? r : !r}};
    };
}

// A modifying member applied to the rectangle "rc".
template <class F, class... A>
conf::Handler Modify(F f, A... more) {
    return call(f, in<RECTD>("rc").to(), more...);
}

const RECTD kStale(7, 8, 9, 10);  // results that must be overwritten start here

const conf::Register reg{
    {"POINTD::operator POINT",
     call_as(
         "pt", [](const POINTD& p) { return POINT(p); }, in<POINTD>("pt"))},
    {"POINTD::GPOINT", call_as("pt", &POINTD::GPOINT, in<POINTD>("pt"))},
    {"CPrecise::PreciseInt",
     call(CPrecise::PreciseInt, in<double>("value"), in<double>("precision"))},
    {"CPrecise::PrecisePoint",
     call([](POINTD p, POINT& out, double e) { CPrecise::PrecisePoint(p, out, e); },
          in<POINTD>("pt"), conf::out<POINT>("out"), in<double>("precision"))},
    {"POINTD::operator==", Compare<POINTD, POINT>(true)},
    {"POINTD::operator!=", Compare<POINTD, POINT>(false)},
    {"POINTD::operator+", call_as("pt", &POINTD::operator+, in<POINTD>("a"), in<POINTD>("b"))},
    {"POINTD::operator-", call_as("pt", &POINTD::operator-, in<POINTD>("a"), in<POINTD>("b"))},
    {"RECTD::operator RECT", call_as(
                                 "rc", [](const RECTD& r) { return RECT(r); }, in<RECTD>("rc"))},
    {"RECTD::GRECT", call_as("rc", &RECTD::GRECT, in<RECTD>("rc"))},
    {"RECTD::Width/Height/CenterPoint",
     call([](const RECTD& r, double& w, double& h,
             POINTD& c) { w = r.Width(), h = r.Height(), c = r.CenterPoint(); },
          in<RECTD>("rc"), conf::out<double>("width"), conf::out<double>("height"),
          conf::out<POINTD>("center"))},
    {"RECTD::IsRectEmpty/IsRectNull",
     call([](const RECTD& r, int& e, int& n) { e = r.IsRectEmpty(), n = r.IsRectNull(); },
          in<RECTD>("rc"), conf::out<int>("empty"), conf::out<int>("null"))},
    {"RECTD::NormalizeBorder", Modify(&RECTD::NormalizeBorder)},
    {"RECTD::NormalizeRect", Modify(&RECTD::NormalizeRect)},
    {"RECTD::OffsetRect", Modify(&RECTD::OffsetRect, in<double>("dx"), in<double>("dy"))},
    {"RECTD::operator==", Compare<RECTD, RECT>(true)},
    {"RECTD::operator!=", Compare<RECTD, RECT>(false)},
    {"RECTD::UnionRect",
     call(&RECTD::UnionRect, conf::out("rc", kStale), in<RECTD>("a"), in<RECTD>("b"))},
    {"RECTD::PtInRect", call(&RECTD::PtInRect, in<RECTD>("rc"), in<POINTD>("pt"))},
    {"RECTD::GetBorderRect",
     call(
         [](RECTD& r, const json& pts) {
             const auto p = conf::harness([&] {
                 return pts.is_null() ? std::vector<POINTD>{}
                                      : conf::Codec<std::vector<POINTD>>::get(pts);
             });
             r.GetBorderRect(p.empty() ? nullptr : p.data(), static_cast<LONG>(p.size()));
         },
         conf::out("rc", kStale), in<json>("points"))},
};

}  // namespace
