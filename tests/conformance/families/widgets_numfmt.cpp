// Golden vectors of the numfmt family: the Zel number helpers and the zoom-ratio steps.
#include <kxbase/widgets/number_format.h>

#include "conformance.h"

namespace {

using conf::json;
using conf::num;

json Text(const CString& s) {
    return json{{"text", s.str()}};
}
json Value(double v) {
    return json{{"value", conf::dbl(v)}};
}
unsigned char Width(const json& a) {
    return static_cast<unsigned char>(conf::u32(a["width"]));
}

json Zoom(const json& a, void (*step)(double&)) {
    double r = num(a["ratio"]);
    step(r);
    return json{{"ratio", conf::dbl(r)}};
}

static conf::Register reg{
    {"ZelFloatPrecisionString",
     [](const json& a) {
         return Text(ZelFloatPrecisionString(num(a["value"]), conf::i32(a["digits"]),
                                             conf::i32(a["round"])));
     }},
    {"ZelFloatPrecision",
     [](const json& a) {
         return Value(
             ZelFloatPrecision(num(a["value"]), conf::i32(a["digits"]), conf::i32(a["round"])));
     }},
    {"ZelFloor", [](const json& a) { return Value(ZelFloor(num(a["value"]))); }},
    {"ZelCeil", [](const json& a) { return Value(ZelCeil(num(a["value"]))); }},
    {"ZelFloatToInt",
     [](const json& a) {
         return json{{"value", ZelFloatToInt(num(a["value"]), conf::i32(a["round"]))}};
     }},
    {"ZelFloatToINT64",
     [](const json& a) {
         return json{{"value", ZelFloatToINT64(num(a["value"]), conf::i32(a["round"]))}};
     }},
    {"ZelFloatToDWORD",
     [](const json& a) {
         return json{{"value", ZelFloatToDWORD(num(a["value"]), conf::i32(a["round"]))}};
     }},
    {"ZelFloatToUINT64",
     [](const json& a) {
         return json{{"value", ZelFloatToUINT64(num(a["value"]), conf::i32(a["round"]))}};
     }},
    {"ZelIntString",
     [](const json& a) {
         return Text(ZelIntString(conf::i32(a["value"]), conf::i32(a["hex"]), Width(a)));
     }},
    {"ZelDWORDString",
     [](const json& a) {
         return Text(ZelDWORDString(conf::u32(a["value"]), conf::i32(a["hex"]), Width(a)));
     }},
    {"ZelINT64String",
     [](const json& a) {
         return Text(ZelINT64String(conf::i64(a["value"]), conf::i32(a["hex"]), Width(a)));
     }},
    {"ZelUINT64String",
     [](const json& a) {
         return Text(ZelUINT64String(conf::u64(a["value"]), conf::i32(a["hex"]), Width(a)));
     }},
    {"ZelZoomNormalRatio", [](const json& a) { return Zoom(a, ZelZoomNormalRatio); }},
    {"ZelZoomInRatio", [](const json& a) { return Zoom(a, ZelZoomInRatio); }},
    {"ZelZoomOutRatio", [](const json& a) { return Zoom(a, ZelZoomOutRatio); }},
};

}  // namespace
