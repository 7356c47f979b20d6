// Golden vectors of the raster fraction print geometry.
#include <kxbase/mathopt/amathopt.h>

#include "conformance.h"

// A print pattern: [stepFirst, stepSecond, leadCount, secondCount, firstCount].
template <>
struct conf::Codec<RASTER_FRACTION_PRINTINFO> {
    using I = RASTER_FRACTION_PRINTINFO;
    static I get(const json& v) {
        return I{static_cast<WORD>(u32(v.at(0))), static_cast<WORD>(u32(v.at(1))), u32(v.at(2)),
                 u32(v.at(3)), u32(v.at(4))};
    }
    static json put(const I& i) {
        return json::array({i.stepFirst, i.stepSecond, i.leadCount, i.secondCount, i.firstCount});
    }
};

namespace {

using conf::call;
using conf::in;
using A = AMathOpt;
using Info = RASTER_FRACTION_PRINTINFO;

const auto info = in<Info>("info");
const auto step = in<double>("step");
const auto pair = [](double (*fn)(double, double), const char* x, const char* y) {
    return call(fn, in<double>(x), in<double>(y));
};

const conf::Register reg{
    {"AMathOpt::raster_fraction_printinfo",
     call(A::raster_fraction_printinfo,
          conf::out("info", Info{0xEEEE, 0xEEEE, 0xEEEEEEEE, 0xEEEEEEEE, 0xEEEEEEEE}),
          in<ULONG>("position"), in<double>("resolution"), step, in<int>("roundUp"),
          in<int>("fractional"))},
    {"AMathOpt::raster_fraction_correct_resolution",
     call(A::raster_fraction_correct_resolution, info, step)},
    {"AMathOpt::raster_width_from_image",
     call(A::raster_width_from_image, info, in<ULONG>("pixels"))},
    {"RASTER_FRACTION_PRINTINFO::IsValid", call(&Info::IsValid, info)},
    {"AMathOpt::raster_control_resolution_max", call(A::raster_control_resolution_max, step)},
    {"AMathOpt::FrequencyToSpeed", pair(A::FrequencyToSpeed, "resolution", "frequency")},
    {"AMathOpt::SpeedToFrequency", pair(A::SpeedToFrequency, "resolution", "speed")},
    {"AMathOpt::FrequencyToResolution", pair(A::FrequencyToResolution, "frequency", "speed")},
};

}  // namespace
