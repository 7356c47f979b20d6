// Golden vectors of the raster fraction print geometry.
#include <kxbase/mathopt/amathopt.h>

#include "conformance.h"

namespace {

using conf::json;

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

static conf::Register reg{
    {"AMathOpt::raster_fraction_printinfo",
     [](const json& a) {
         RASTER_FRACTION_PRINTINFO info{0xEEEE, 0xEEEE, 0xEEEEEEEE, 0xEEEEEEEE, 0xEEEEEEEE};
         const bool ok = AMathOpt::raster_fraction_printinfo(
             info, conf::u32(a["position"]), conf::num(a["resolution"]), conf::num(a["step"]),
             conf::i32(a["roundUp"]), conf::i32(a["fractional"]));
         return json{{"value", ok}, {"info", InfoJson(info)}};
     }},
    {"AMathOpt::raster_fraction_correct_resolution",
     [](const json& a) {
         return json{{"value", conf::dbl(AMathOpt::raster_fraction_correct_resolution(
                                   Info(a["info"]), conf::num(a["step"])))}};
     }},
    {"AMathOpt::raster_width_from_image",
     [](const json& a) {
         return json{
             {"value", AMathOpt::raster_width_from_image(Info(a["info"]), conf::u32(a["pixels"]))}};
     }},
    {"RASTER_FRACTION_PRINTINFO::IsValid",
     [](const json& a) {
         return json{{"value", Info(a["info"]).IsValid()}};
     }},
    {"AMathOpt::raster_control_resolution_max",
     [](const json& a) {
         return json{
             {"value", conf::dbl(AMathOpt::raster_control_resolution_max(conf::num(a["step"])))}};
     }},
    {"AMathOpt::FrequencyToSpeed",
     [](const json& a) {
         return json{{"value", conf::dbl(AMathOpt::FrequencyToSpeed(conf::num(a["resolution"]),
                                                                    conf::num(a["frequency"])))}};
     }},
    {"AMathOpt::SpeedToFrequency",
     [](const json& a) {
         return json{{"value", conf::dbl(AMathOpt::SpeedToFrequency(conf::num(a["resolution"]),
                                                                    conf::num(a["speed"])))}};
     }},
    {"AMathOpt::FrequencyToResolution",
     [](const json& a) {
         return json{{"value", conf::dbl(AMathOpt::FrequencyToResolution(conf::num(a["frequency"]),
                                                                         conf::num(a["speed"])))}};
     }},
};

}  // namespace
