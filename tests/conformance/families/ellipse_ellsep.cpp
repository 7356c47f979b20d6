// Golden vectors of the ellsep family: one call of a sector tracer EllSep0..EllSep7 on the
// array as it stood before the call.
#include <string>

#include "ellipse_probe.h"

namespace {

using namespace ellconf;
using conf::json;

json Run(int n, const json& a) {
    CArray<POINT> pts;
    for (const auto& p : a["pts"]) pts.Add(geo::point(p));
    int x = conf::i32(a["x"]), y = conf::i32(a["y"]), count = conf::i32(a["count"]);
    const int maxSteps = conf::i32(a["maxSteps"]);
    POINT stop{0, 0};
    const bool hasStop = !a["stop"].is_null();
    if (hasStop) stop = geo::point(a["stop"]);
    const int r = Probe::m_EllSep[n](Param(a["param"]), x, y, count, maxSteps,
                                     hasStop ? &stop : nullptr, pts);
    return json{{"value", r}, {"x", x}, {"y", y}, {"count", count}, {"pts", to_json(pts)}};
}

const conf::Register reg{
    {"CEllipse::EllSep0", [](const json& a) { return Run(0, a); }},
    {"CEllipse::EllSep1", [](const json& a) { return Run(1, a); }},
    {"CEllipse::EllSep2", [](const json& a) { return Run(2, a); }},
    {"CEllipse::EllSep3", [](const json& a) { return Run(3, a); }},
    {"CEllipse::EllSep4", [](const json& a) { return Run(4, a); }},
    {"CEllipse::EllSep5", [](const json& a) { return Run(5, a); }},
    {"CEllipse::EllSep6", [](const json& a) { return Run(6, a); }},
    {"CEllipse::EllSep7", [](const json& a) { return Run(7, a); }},
};

}  // namespace
