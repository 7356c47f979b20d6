// Golden vectors of the numfmt family: the Zel number helpers, the zoom-ratio steps and the
// 64-bit text parser.
#if __has_include(<kxbase/base/number_format.h>)
#include <kxbase/base/number_format.h>
#else
#include <kxbase/widgets/number_format.h>
#endif

#include <kxbase/base/int64_parse.h>

#include "conformance.h"

namespace {

using conf::call;
using conf::in;

const auto value = in<double>("value");
const auto round = in<int>("round");
// The integer texts: (value, hex, width); hex and width have defaults in the header.
template <class T>
conf::Handler Text(CString (*fn)(T, int, unsigned char)) {
    return conf::call_as("text", fn, in<T>("value"), conf::opt("hex", 0),
                         conf::opt<unsigned char>("width", 0));
}
const auto ratio = in<double>("ratio").to();

const conf::Register reg{
    {"ZelFloatPrecisionString",
     conf::call_as("text", ZelFloatPrecisionString, value, in<int>("digits"), round)},
    {"ZelFloatPrecision", call(ZelFloatPrecision, value, in<int>("digits"), round)},
    {"ZelFloor", call(ZelFloor, value)},
    {"ZelCeil", call(ZelCeil, value)},
    {"ZelFloatToInt", call(ZelFloatToInt, value, round)},
    {"ZelFloatToINT64", call(ZelFloatToINT64, value, round)},
    {"ZelFloatToDWORD", call(ZelFloatToDWORD, value, round)},
    {"ZelFloatToUINT64", call(ZelFloatToUINT64, value, round)},
    {"ZelIntString", Text(ZelIntString)},
    {"ZelDWORDString", Text(ZelDWORDString)},
    {"ZelINT64String", Text(ZelINT64String)},
    {"ZelUINT64String", Text(ZelUINT64String)},
    {"ZelZoomNormalRatio", call(ZelZoomNormalRatio, ratio)},
    {"ZelZoomInRatio", call(ZelZoomInRatio, ratio)},
    {"ZelZoomOutRatio", call(ZelZoomOutRatio, ratio)},
    // A null "text" passes a null pointer. "ok" is reported only when the parser wrote it: the
    // call runs twice, with the flag starting false and true.
    {"ZelTextToInt64",
     [](const conf::json& a) {
         const conf::json& t = a.at("text");
         const char* text = t.is_null() ? nullptr : t.get_ref<const std::string&>().c_str();
         const int hex = conf::i32(a.at("hex"));
         bool ok[2] = {false, true};
         INT64 v = 0;
         {
             conf::LibraryCall lib;
             v = ZelTextToInt64(text, hex, &ok[0]);
             ZelTextToInt64(text, hex, &ok[1]);
         }
         return conf::json{{"value", v}, {"ok", ok[0] == ok[1] ? conf::json(ok[0]) : conf::json()}};
     }},
};

}  // namespace
