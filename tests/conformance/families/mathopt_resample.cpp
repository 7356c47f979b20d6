// Golden vectors of the resampling maps and packed fractions.
#include <vector>

#include <kxbase/mathopt/amathopt.h>

#include "conformance.h"

namespace {

using conf::json;
using conf::u32;
using conf::u64;

// Output arrays carry one guard entry past the end: an operation that writes more entries
// than its count fails the vector.
constexpr UINT kGuard = 0xA5A5A5A5u;

json Entries(const std::vector<UINT>& v, size_t n) {
    if (v[n] != kGuard) throw std::runtime_error("wrote past the output array");
    return json(std::vector<UINT>(v.begin(), v.begin() + static_cast<std::ptrdiff_t>(n)));
}

json Line(const json& a, void (*fn)(UINT, UINT, UINT*), const char* key) {
    const UINT src = u32(a["src"]);
    std::vector<UINT> out(static_cast<size_t>(src) + 1, kGuard);
    fn(src, u32(a["dst"]), out.data());
    return json{{key, Entries(out, src)}};
}

json Segment(const json& a, void (*fn)(UINT, UINT, UINT, UINT, UINT*), const char* key) {
    const UINT first = u32(a["first"]);
    const UINT last = u32(a["last"]);
    const size_t n = last > first ? last - first : 0;
    std::vector<UINT> out(n + 1, kGuard);
    fn(u32(a["src"]), u32(a["dst"]), first, last, out.data());
    return json{{key, Entries(out, n)}};
}

static conf::Register reg{
    {"AMathOpt::ResamplePosition",
     [](const json& a) {
         return conf::value(
             AMathOpt::ResamplePosition(u32(a["src"]), u32(a["dst"]), u32(a["pos"])));
     }},
    {"AMathOpt::ResamplePosition(start)",
     [](const json& a) {
         UINT start = kGuard;
         const UINT v =
             AMathOpt::ResamplePosition(u32(a["src"]), u32(a["dst"]), u32(a["pos"]), &start);
         return json{{"value", v}, {"start", start}};
     }},
    {"AMathOpt::ResampleSegCount", conf::with(Segment, AMathOpt::ResampleSegCount, "counts")},
    {"AMathOpt::ResampleSegMap", conf::with(Segment, AMathOpt::ResampleSegMap, "starts")},
    {"AMathOpt::ResampleLine", conf::with(Line, AMathOpt::ResampleLine, "counts")},
    {"AMathOpt::ResampleLineMap", conf::with(Line, AMathOpt::ResampleLineMap, "starts")},
    {"AMathOpt::CommonMultiple",
     [](const json& a) { return conf::value(AMathOpt::CommonMultiple(u64(a["a"]), u64(a["b"]))); }},
    {"AMathOpt::SimpleFraction",
     [](const json& a) { return conf::value(AMathOpt::SimpleFraction(u64(a["f"]))); }},
    {"AMathOpt::ScaleMultiply",
     [](const json& a) { return conf::value(AMathOpt::ScaleMultiply(u64(a["f"]), u64(a["g"]))); }},
    {"AMathOpt::DoubleToFraction",
     [](const json& a) {
         return conf::value(AMathOpt::DoubleToFraction(conf::num(a["x"]), conf::num(a["limit"])));
     }},
};

}  // namespace
