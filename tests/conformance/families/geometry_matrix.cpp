// Golden vectors of the matrix family: TransMatrix and the general n x n inversion.
#include <vector>

#include "geometry_json.h"

namespace {

using conf::json;
using conf::num;
namespace geo = conf::geo;

static conf::Register reg{
    {"TransMatrix::OnlyScaleOffset",
     [](const json& a) {
         return json{{"value", geo::matrix(a["m"]).OnlyScaleOffset()}};
     }},
    {"TransMatrix::IdentityMatrix",
     [](const json& a) {
         return json{{"value", geo::matrix(a["m"]).IdentityMatrix()}};
     }},
    {"TransMatrix::OnlyOffset",
     [](const json& a) {
         // A sentinel offset shows whether the call wrote it.
         POINTD off(12345.5, -6789.25);
         const int r = geo::matrix(a["m"]).OnlyOffset(geo::matrix(a["other"]), &off);
         const bool written = !(off.x == 12345.5 && off.y == -6789.25);
         return json{{"value", r}, {"offset", written ? geo::to_json(off) : json(nullptr)}};
     }},
    {"TransMatrix::TransMatrix(XFORM)",
     [](const json& a) {
         const std::vector<double> v = conf::nums(a["xform"]);
         const XFORM xf{static_cast<float>(v.at(0)), static_cast<float>(v.at(1)),
                        static_cast<float>(v.at(2)), static_cast<float>(v.at(3)),
                        static_cast<float>(v.at(4)), static_cast<float>(v.at(5))};
         return json{{"m", geo::to_json(TransMatrix(xf))}};
     }},
    {"TransMatrix::operator XFORM",
     [](const json& a) {
         const XFORM xf = geo::matrix(a["m"]);
         return json{
             {"xform", json::array({conf::dbl(xf.eM11), conf::dbl(xf.eM12), conf::dbl(xf.eM21),
                                    conf::dbl(xf.eM22), conf::dbl(xf.eDx), conf::dbl(xf.eDy)})}};
     }},
    {"TransMatrix::SetTransMatrix",
     [](const json& a) {
         const std::vector<double> v = conf::nums(a["array"]);
         TransMatrix m(9, 9, 9, 9, 9, 9);
         m.SetTransMatrix(v.data());
         return json{{"m", geo::to_json(m)}};
     }},
    {"TransMatrix::GetTransMatrix",
     [](const json& a) {
         double v[9];
         geo::matrix(a["m"]).GetTransMatrix(v);
         return json{{"array", conf::dbls(v, 9)}};
     }},
    {"TransMatrix::InverseMatrix",
     [](const json& a) {
         TransMatrix m = geo::matrix(a["m"]);
         const int r = m.InverseMatrix();
         return json{{"value", r}, {"m", geo::to_json(m)}};
     }},
    {"TransMatrix::InverseMatrix(double*,int)",
     [](const json& a) {
         const int n = conf::i32(a["n"]);
         std::vector<double> m = conf::nums(a["a"]);
         const int r = TransMatrix::InverseMatrix(m.data(), n);
         json out{{"value", r}};
         // On failure the matrix is left partly transformed; the vectors do not look at it.
         if (r) out["a"] = conf::dbls(m.data(), m.size());
         return out;
     }},
};

}  // namespace
