// Golden vectors of the resampling maps and packed fractions.
#include <vector>

#include <kxbase/mathopt/amathopt.h>

#include "conformance.h"

namespace {

using conf::call;
using conf::in;
using A = AMathOpt;
using List = std::vector<UINT>;

// Output arrays carry one guard entry past their end: writing more entries than the count
// fails the vector.
constexpr UINT kGuard = 0xA5A5A5A5u;
void Trim(List& v) {
    if (v.back() != kGuard) throw std::runtime_error("wrote past the output array");
    v.pop_back();
}
conf::Handler Line(void (*fn)(UINT, UINT, UINT*), const char* key) {
    return call(
        [fn](UINT src, UINT dst, List& out) {
            conf::harness([&] { out.assign(static_cast<std::size_t>(src) + 1, kGuard); });
            fn(src, dst, out.data());
            conf::harness([&] { Trim(out); });
        },
        in<UINT>("src"), in<UINT>("dst"), conf::out<List>(key));
}
conf::Handler Segment(void (*fn)(UINT, UINT, UINT, UINT, UINT*), const char* key) {
    return call(
        [fn](UINT src, UINT dst, UINT first, UINT last, List& out) {
            conf::harness([&] { out.assign(last > first ? last - first + 1 : 1, kGuard); });
            fn(src, dst, first, last, out.data());
            conf::harness([&] { Trim(out); });
        },
        in<UINT>("src"), in<UINT>("dst"), in<UINT>("first"), in<UINT>("last"),
        conf::out<List>(key));
}
const auto f = in<UINT64>("f");

const conf::Register reg{
    {"AMathOpt::ResamplePosition",
     call([](UINT s, UINT d, UINT p) { return A::ResamplePosition(s, d, p); }, in<UINT>("src"),
          in<UINT>("dst"), in<UINT>("pos"))},
    {"AMathOpt::ResamplePosition(start)",
     call([](UINT s, UINT d, UINT p, UINT* start) { return A::ResamplePosition(s, d, p, start); },
          in<UINT>("src"), in<UINT>("dst"), in<UINT>("pos"), conf::kept("start", kGuard).ptr())},
    {"AMathOpt::ResampleSegCount", Segment(A::ResampleSegCount, "counts")},
    {"AMathOpt::ResampleSegMap", Segment(A::ResampleSegMap, "starts")},
    {"AMathOpt::ResampleLine", Line(A::ResampleLine, "counts")},
    {"AMathOpt::ResampleLineMap", Line(A::ResampleLineMap, "starts")},
    {"AMathOpt::CommonMultiple", call(A::CommonMultiple, in<UINT64>("a"), in<UINT64>("b"))},
    {"AMathOpt::SimpleFraction", call(A::SimpleFraction, f)},
    {"AMathOpt::ScaleMultiply", call(A::ScaleMultiply, f, in<UINT64>("g"))},
    {"AMathOpt::DoubleToFraction", call(A::DoubleToFraction, in<double>("x"), in<double>("limit"))},
};

}  // namespace
