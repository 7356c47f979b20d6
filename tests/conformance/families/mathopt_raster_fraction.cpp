// Golden vectors of the raster fraction print geometry.
#include <kxbase/mathopt/amathopt.h>

#include "conformance.h"

namespace {

using conf::json;
using conf::num;
using conf::u32;

RASTER_FRACTION_PRINTINFO Info(const json& v) {
    RASTER_FRACTION_PRINTINFO info{};
    info.stepFirst = static_cast<WORD>(conf::u32(v.at(0)));
    info.stepSecond = static_cast<WORD>(conf::u32(v.at(1)));
    info.leadCount = conf::u32(v.at(2));
    info.secondCount = conf::u32(v.at(3));
    info.firstCount = conf::u32(v.at(4));
    return info;
}

json InfoJson(const RASTER_FRACTION_PRINTINFO& i) {
    return json::array({i.stepFirst, i.stepSecond, i.leadCount, i.secondCount, i.firstCount});
}

// A conversion between two of resolution, frequency and speed.
json Pair(const json& a, double (*fn)(double, double), const char* x, const char* y) {
    return conf::value(fn(num(a[x]), num(a[y])));
}

static conf::Register reg{
    {"AMathOpt::raster_fraction_printinfo",
     [](const json& a) {
         RASTER_FRACTION_PRINTINFO info{0xEEEE, 0xEEEE, 0xEEEEEEEE, 0xEEEEEEEE, 0xEEEEEEEE};
         const bool ok = AMathOpt::raster_fraction_printinfo(
             info, u32(a["position"]), num(a["resolution"]), num(a["step"]),
             conf::i32(a["roundUp"]), conf::i32(a["fractional"]));
         return json{{"value", ok}, {"info", InfoJson(info)}};
     }},
    {"AMathOpt::raster_fraction_correct_resolution",
     [](const json& a) {
         return conf::value(
             AMathOpt::raster_fraction_correct_resolution(Info(a["info"]), num(a["step"])));
     }},
    {"AMathOpt::raster_width_from_image",
     [](const json& a) {
         return conf::value(AMathOpt::raster_width_from_image(Info(a["info"]), u32(a["pixels"])));
     }},
    {"RASTER_FRACTION_PRINTINFO::IsValid",
     [](const json& a) { return conf::value(Info(a["info"]).IsValid()); }},
    {"AMathOpt::raster_control_resolution_max",
     [](const json& a) {
         return conf::value(AMathOpt::raster_control_resolution_max(num(a["step"])));
     }},
    {"AMathOpt::FrequencyToSpeed",
     conf::with(Pair, AMathOpt::FrequencyToSpeed, "resolution", "frequency")},
    {"AMathOpt::SpeedToFrequency",
     conf::with(Pair, AMathOpt::SpeedToFrequency, "resolution", "speed")},
    {"AMathOpt::FrequencyToResolution",
     conf::with(Pair, AMathOpt::FrequencyToResolution, "frequency", "speed")},
};

}  // namespace
