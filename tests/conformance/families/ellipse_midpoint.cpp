// Golden vectors of the midpoint family: quadrant profiles of ellipses and circles and the
// fixed-order outlines of one- and two-pixel rectangles.
#include "ellipse_probe.h"

namespace {

using namespace ellconf;
using conf::json;

const conf::Register reg{
    {"CEllipse::MidPointEllipse(int,int)",
     [](const json& a) {
         CArray<int> profile;
         Probe::MidPointEllipse(conf::i32(a["a"]), conf::i32(a["b"]), profile);
         return json{{"profile", to_json(profile)}};
     }},
    {"CEllipse::MidPointCircle(int)",
     [](const json& a) {
         CArray<int> profile;
         profile.Add(-1);  // emptied first
         Probe::MidPointCircle(conf::i32(a["r"]), profile);
         return json{{"profile", to_json(profile)}};
     }},
    {"CEllipse::MidPointEllipse(CRect)",
     [](const json& a) {
         CArray<POINT> pts;
         Probe::MidPointEllipse(CRect(geo::rect(a["rc"])), pts);
         return json{{"pts", to_json(pts)}};
     }},
};

}  // namespace
