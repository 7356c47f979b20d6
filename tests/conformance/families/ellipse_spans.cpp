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
         const int first =
             CEllipse::EllipseRasterLine(CRect(Rect(a["rc"])), conf::num(a["angle"]), spans, &b);
         return json{{"first", first}, {"spans", J(spans)}, {"border", OrNull(b)}};
     }},
    {"CEllipse::EllipseRasterLine(RECT,double,RSRLINE&)",
     [](const json& a) {
         RSRLINE line;
         const int first = CEllipse::EllipseRasterLine(Rect(a["rc"]), conf::num(a["angle"]), line);
         return json{{"first", first},
                     {"spans", J(line.spans)},
                     {"counts", J(line.counts)},
                     {"rcBound", J(line.rcBound)}};
     }},
    {"CEllipse::GetRectBorder(RECT,double)",
     [](const json& a) {
         RECT b = SentinelRect();
         CEllipse::GetRectBorder(Rect(a["rc"]), conf::num(a["angle"]), b);
         return json{{"border", OrNull(b)}};
     }},
};

}  // namespace
