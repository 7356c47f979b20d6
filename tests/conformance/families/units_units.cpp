// Golden vectors of the units family: conversions, comparisons, names and CUnitTrans.
#include <kxbase/units.h>

#include "conformance.h"

namespace {

using conf::json;
using conf::num;
using conf::value;

AResUnit Res(const json& v) {
    return static_cast<AResUnit>(conf::i32(v));
}
ASizeUnit Size(const json& v) {
    return static_cast<ASizeUnit>(conf::i32(v));
}

// The argument shapes shared by several operations.
template <class R>
json OfRes(const json& a, R (*fn)(double, AResUnit)) {
    return value(fn(num(a["res"]), Res(a["unit"])));
}
template <class R>
json OfSize(const json& a, R (*fn)(double, double, AResUnit, ASizeUnit)) {
    return value(fn(num(a["value"]), num(a["res"]), Res(a["resUnit"]), Size(a["unit"])));
}
json OfPair(const json& a, int (*fn)(double, double)) {
    return value(fn(num(a["a"]), num(a["b"])));
}
template <class Unit>
json Name(const json& a, int (*fn)(CString&, Unit)) {
    CString text("stale");
    const int n = fn(text, static_cast<Unit>(conf::i32(a["unit"])));
    return json{{"count", n}, {"text", text.str()}};
}
template <class Unit>
json NameBuffer(const json& a, int (*fn)(char*, int, Unit)) {
    char buf[64] = "stale";
    const int n = fn(buf, conf::i32(a["size"]), static_cast<Unit>(conf::i32(a["unit"])));
    return json{{"count", n}, {"text", std::string(buf)}};
}

static conf::Register reg{
    {"ToDPMM", [](const json& a) { return OfRes(a, ToDPMM); }},
    {"ToDPI", [](const json& a) { return OfRes(a, ToDPI); }},
    {"ToNDPI", [](const json& a) { return OfRes(a, ToNDPI); }},
    {"IsValidRes", [](const json& a) { return OfRes(a, IsValidRes); }},
    {"RightRes", [](const json& a) { return OfRes(a, RightRes); }},
    {"ToINCH", [](const json& a) { return OfSize(a, ToINCH); }},
    {"ToMM", [](const json& a) { return OfSize(a, ToMM); }},
    {"ToPIXEL", [](const json& a) { return OfSize(a, ToPIXEL); }},
    {"ToNPIXEL", [](const json& a) { return OfSize(a, ToNPIXEL); }},
    {"EqualNDPI", [](const json& a) { return OfPair(a, EqualNDPI); }},
    {"EqualDPMM", [](const json& a) { return OfPair(a, EqualDPMM); }},
    {"EqualDPI", [](const json& a) { return OfPair(a, EqualDPI); }},
    {"EqualRes",
     [](const json& a) {
         return value(EqualRes(num(a["a"]), num(a["b"]), Res(a["unit"]), conf::i32(a["integer"])));
     }},
    {"DefResPrecision", [](const json& a) { return value(DefResPrecision(Res(a["unit"]))); }},
    {"SizeUnitString", [](const json& a) { return Name<ASizeUnit>(a, SizeUnitString); }},
    {"ResUnitString", [](const json& a) { return Name<AResUnit>(a, ResUnitString); }},
    {"SizeUnitString(char*,int)",
     [](const json& a) { return NameBuffer<ASizeUnit>(a, SizeUnitString); }},
    {"ResUnitString(char*,int)",
     [](const json& a) { return NameBuffer<AResUnit>(a, ResUnitString); }},
    {"CUnitTrans::GetValue",
     [](const json& a) {
         CUnitTrans t;
         t.m_dLength = num(a["length"]);
         t.m_dResolution = num(a["resolution"]);
         return value(
             t.GetValue(Size(a["unit"]), conf::i32(a["digits"]), conf::i32(a["toInteger"])));
     }},
    {"ConvertSize",
     [](const json& a) {
         return value(ConvertSize(num(a["value"]), Size(a["from"]), Size(a["to"]), num(a["res"]),
                                  Res(a["resUnit"]), conf::i32(a["toInteger"])));
     }},
    {"CUnitTrans::SetParams",
     [](const json& a) {
         CUnitTrans t;
         const int r =
             t.SetParams(num(a["value"]), num(a["res"]), Res(a["resUnit"]), Size(a["unit"]));
         return json{{"value", r},
                     {"length", conf::dbl(t.m_dLength)},
                     {"resolution", conf::dbl(t.m_dResolution)}};
     }},
    {"ConvertRes",
     [](const json& a) {
         return value(
             ConvertRes(num(a["res"]), Res(a["from"]), Res(a["to"]), conf::i32(a["toInteger"])));
     }},
    {"CUnitTrans::SetRes",
     [](const json& a) {
         CUnitTrans t;
         const int r = t.SetRes(num(a["res"]), Res(a["unit"]));
         return json{{"value", r}, {"resolution", conf::dbl(t.m_dResolution)}};
     }},
    {"CUnitTrans::IsValid",
     [](const json& a) {
         CUnitTrans t;
         t.m_dResolution = num(a["resolution"]);
         return value(t.IsValid());
     }},
};

}  // namespace
