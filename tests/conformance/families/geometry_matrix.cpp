// Golden vectors of the matrix family: TransMatrix and the general n x n inversion.
#include <vector>

#include "geometry_json.h"

namespace {

using conf::call;
using conf::in;
using conf::json;

using Nine = std::vector<double>;

const conf::Register reg{
    {"TransMatrix::OnlyScaleOffset", call(&TransMatrix::OnlyScaleOffset, in<TransMatrix>("m"))},
    {"TransMatrix::IdentityMatrix", call(&TransMatrix::IdentityMatrix, in<TransMatrix>("m"))},
    {"TransMatrix::OnlyOffset",
     call(&TransMatrix::OnlyOffset, in<TransMatrix>("m"), in<TransMatrix>("other"),
          conf::kept("offset", POINTD(12345.5, -6789.25)).ptr())},
    {"TransMatrix::TransMatrix(XFORM)",
     conf::call_as(
         "m", [](const XFORM& x) { return TransMatrix(x); }, in<XFORM>("xform"))},
    {"TransMatrix::operator XFORM",
     conf::call_as(
         "xform", [](const TransMatrix& m) { return XFORM(m); }, in<TransMatrix>("m"))},
    {"TransMatrix::SetTransMatrix",
     call([](TransMatrix& m, const Nine& v) { m.SetTransMatrix(v.data()); },
          conf::out("m", TransMatrix(9, 9, 9, 9, 9, 9)), in<Nine>("array"))},
    {"TransMatrix::GetTransMatrix",
     call([](const TransMatrix& m, Nine& v) { m.GetTransMatrix(v.data()); }, in<TransMatrix>("m"),
          conf::out("array", Nine(9)))},
    {"TransMatrix::InverseMatrix",
     call([](TransMatrix& m) { return m.InverseMatrix(); }, in<TransMatrix>("m").to())},
    {"TransMatrix::InverseMatrix(TransMatrix)",
     call([](TransMatrix& dst, const TransMatrix& src) { return dst.InverseMatrix(src); },
          conf::out("m", TransMatrix(9, 9, 9, 9, 9, 9)), in<TransMatrix>("src"))},
    {"TransMatrix::InverseMatrix(double*,int)",
     [](const json& a) {
         std::vector<double> m = conf::Codec<Nine>::get(a.at("a"));
         const int n = conf::i32(a.at("n"));
         if (n > 0 && static_cast<std::size_t>(n) * static_cast<std::size_t>(n) > m.size())
             throw std::runtime_error("n exceeds the matrix");
         const int r = [&] {
             conf::LibraryCall lib;
             return TransMatrix::InverseMatrix(m.data(), n);
         }();
         // On failure the matrix is left partly transformed; the vectors do not look at it.
         return r ? json{{"value", r}, {"a", conf::put(m)}} : json{{"value", r}};
     }},
    {"TransMatrix::InverseMatrix(double*,const double*,int)",
     call(
         [](Nine& dst, const Nine& src, int n) {
             conf::harness([&] { dst.resize(src.size()); });
             if (n > 0 && static_cast<std::size_t>(n) * static_cast<std::size_t>(n) > src.size())
                 throw std::runtime_error("n exceeds the matrix");
             return TransMatrix::InverseMatrix(dst.data(), src.data(), n);
         },
         conf::out<Nine>("dst"), in<Nine>("src"), in<int>("n"))},
};

}  // namespace
