// Golden vectors of the spans family: EllipseRasterLine at fixed-layout angles (array and
// record forms) and GetRectBorder.
#include "ellipse_probe.h"

namespace {

using namespace ellconf;
using conf::json;

const conf::Register reg{
    {"CEllipse::EllipseRasterLine(CRect,double,CArray<POINT>&,RECT*)",
     [](const json& a) {
         CArray<POINT> spans;
         spans.Add(POINT{kSentinel, kSentinel});  // replaced by the call
         RECT b = SentinelRect();
         const int first = CEllipse::EllipseRasterLine(CRect(geo::rect(a["rc"])),
                                                       conf::num(a["angle"]), spans, &b);
         return json{{"first", first}, {"spans", to_json(spans)}, {"border", OrNull(b)}};
     }},
    {"CEllipse::EllipseRasterLine(RECT,double,RSRLINE&)",
     [](const json& a) {
         RSRLINE line;
         const int first =
             CEllipse::EllipseRasterLine(geo::rect(a["rc"]), conf::num(a["angle"]), line);
         return json{{"first", first},
                     {"spans", to_json(line.spans)},
                     {"counts", to_json(line.counts)},
                     {"rcBound", to_json(line.rcBound)}};
     }},
    {"CEllipse::GetRectBorder(RECT,double)",
     [](const json& a) {
         RECT b = SentinelRect();
         CEllipse::GetRectBorder(geo::rect(a["rc"]), conf::num(a["angle"]), b);
         return json{{"border", OrNull(b)}};
     }},
};

}  // namespace
