// Golden vectors of the units family: conversions, comparisons, names and CUnitTrans.
#include <kxbase/units.h>

#include "conformance.h"

namespace {

using conf::json;
using conf::num;

AResUnit Res(const json& v) {
    return static_cast<AResUnit>(conf::i32(v));
}
ASizeUnit Size(const json& v) {
    return static_cast<ASizeUnit>(conf::i32(v));
}

json Value(double v) {
    return json{{"value", conf::dbl(v)}};
}
json Value(int v) {
    return json{{"value", v}};
}

static conf::Register reg{
    {"ToDPMM", [](const json& a) { return Value(ToDPMM(num(a["res"]), Res(a["unit"]))); }},
    {"ToDPI", [](const json& a) { return Value(ToDPI(num(a["res"]), Res(a["unit"]))); }},
    {"ToNDPI", [](const json& a) { return Value(ToNDPI(num(a["res"]), Res(a["unit"]))); }},
    {"ToINCH",
     [](const json& a) {
         return Value(ToINCH(num(a["value"]), num(a["res"]), Res(a["resUnit"]), Size(a["unit"])));
     }},
    {"ToMM",
     [](const json& a) {
         return Value(ToMM(num(a["value"]), num(a["res"]), Res(a["resUnit"]), Size(a["unit"])));
     }},
    {"ToPIXEL",
     [](const json& a) {
         return Value(ToPIXEL(num(a["value"]), num(a["res"]), Res(a["resUnit"]), Size(a["unit"])));
     }},
    {"ToNPIXEL",
     [](const json& a) {
         return Value(ToNPIXEL(num(a["value"]), num(a["res"]), Res(a["resUnit"]), Size(a["unit"])));
     }},
    {"IsValidRes", [](const json& a) { return Value(IsValidRes(num(a["res"]), Res(a["unit"]))); }},
    {"RightRes", [](const json& a) { return Value(RightRes(num(a["res"]), Res(a["unit"]))); }},
    {"EqualRes",
     [](const json& a) {
         return Value(EqualRes(num(a["a"]), num(a["b"]), Res(a["unit"]), conf::i32(a["integer"])));
     }},
    {"DefResPrecision", [](const json& a) { return Value(DefResPrecision(Res(a["unit"]))); }},
    {"EqualNDPI", [](const json& a) { return Value(EqualNDPI(num(a["a"]), num(a["b"]))); }},
    {"EqualDPMM", [](const json& a) { return Value(EqualDPMM(num(a["a"]), num(a["b"]))); }},
    {"EqualDPI", [](const json& a) { return Value(EqualDPI(num(a["a"]), num(a["b"]))); }},
    {"SizeUnitString",
     [](const json& a) {
         CString text("stale");
         const int n = SizeUnitString(text, Size(a["unit"]));
         return json{{"count", n}, {"text", text.str()}};
     }},
    {"ResUnitString",
     [](const json& a) {
         CString text("stale");
         const int n = ResUnitString(text, Res(a["unit"]));
         return json{{"count", n}, {"text", text.str()}};
     }},
    {"ResUnitString(char*,int)",
     [](const json& a) {
         char buf[64] = "stale";
         const int n = ResUnitString(buf, conf::i32(a["size"]), Res(a["unit"]));
         return json{{"count", n}, {"text", std::string(buf)}};
     }},
    {"SizeUnitString(char*,int)",
     [](const json& a) {
         char buf[64] = "stale";
         const int n = SizeUnitString(buf, conf::i32(a["size"]), Size(a["unit"]));
         return json{{"count", n}, {"text", std::string(buf)}};
     }},
    {"CUnitTrans::GetValue",
     [](const json& a) {
         CUnitTrans t;
         t.m_dLength = num(a["length"]);
         t.m_dResolution = num(a["resolution"]);
         return Value(
             t.GetValue(Size(a["unit"]), conf::i32(a["digits"]), conf::i32(a["toInteger"])));
     }},
    {"ConvertSize",
     [](const json& a) {
         return Value(ConvertSize(num(a["value"]), Size(a["from"]), Size(a["to"]), num(a["res"]),
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
         return Value(
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
         return Value(t.IsValid());
     }},
};

}  // namespace
