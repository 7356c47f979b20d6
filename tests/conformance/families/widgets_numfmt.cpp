// Golden vectors of the numfmt family: the Zel number helpers and the zoom-ratio steps.
#include <kxbase/widgets/number_format.h>

#include "conformance.h"

namespace {

using conf::json;
using conf::num;
using conf::value;

json Text(const CString& s) {
    return json{{"text", s.str()}};
}

// A float-to-integer conversion: (value, round) -> integer.
template <class T>
json ToInteger(const json& a, T (*fn)(double, int)) {
    return json{{"value", fn(num(a["value"]), conf::i32(a["round"]))}};
}

// An integer-to-text conversion: (value, hex, width) -> text; `value` reads the integer.
template <class T>
json IntegerText(const json& a, CString (*fn)(T, int, unsigned char), T value) {
    return Text(fn(value, conf::i32(a["hex"]), static_cast<unsigned char>(conf::u32(a["width"]))));
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
         return value(
             ZelFloatPrecision(num(a["value"]), conf::i32(a["digits"]), conf::i32(a["round"])));
     }},
    {"ZelFloor", [](const json& a) { return value(ZelFloor(num(a["value"]))); }},
    {"ZelCeil", [](const json& a) { return value(ZelCeil(num(a["value"]))); }},
    {"ZelFloatToInt", [](const json& a) { return ToInteger(a, ZelFloatToInt); }},
    {"ZelFloatToINT64", [](const json& a) { return ToInteger(a, ZelFloatToINT64); }},
    {"ZelFloatToDWORD", [](const json& a) { return ToInteger(a, ZelFloatToDWORD); }},
    {"ZelFloatToUINT64", [](const json& a) { return ToInteger(a, ZelFloatToUINT64); }},
    {"ZelIntString",
     [](const json& a) { return IntegerText(a, ZelIntString, conf::i32(a["value"])); }},
    {"ZelDWORDString",
     [](const json& a) { return IntegerText<ULONG>(a, ZelDWORDString, conf::u32(a["value"])); }},
    {"ZelINT64String",
     [](const json& a) { return IntegerText<INT64>(a, ZelINT64String, conf::i64(a["value"])); }},
    {"ZelUINT64String",
     [](const json& a) { return IntegerText<UINT64>(a, ZelUINT64String, conf::u64(a["value"])); }},
    {"ZelZoomNormalRatio", [](const json& a) { return Zoom(a, ZelZoomNormalRatio); }},
    {"ZelZoomInRatio", [](const json& a) { return Zoom(a, ZelZoomInRatio); }},
    {"ZelZoomOutRatio", [](const json& a) { return Zoom(a, ZelZoomOutRatio); }},
};

}  // namespace
