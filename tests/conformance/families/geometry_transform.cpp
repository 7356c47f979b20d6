// Golden vectors of the transform family: ATransform composition, mapping and decomposition.
// Every mapping form exists for three point kinds, forward and inverse, one point, a list
// ("n" points, default all) or groups ("counts"; "groups", default all).
#include <map>
#include <string>
#include <type_traits>
#include <vector>

#include "geometry_json.h"

namespace {

using conf::in;
using conf::json;

template <class P>
struct Map {
    static constexpr bool kInt = std::is_same_v<P, POINT>;
    static void One(const ATransform& m, P& p, double e, bool inv) {
        if constexpr (kInt)
            inv ? m.InverseCalcPoint(p, e) : m.CalcPoint(p, e);
        else
            inv ? m.InverseCalcPoint(p) : m.CalcPoint(p);
    }
    static void List(const ATransform& m, std::vector<P>& p, int n, double e, bool inv) {
        if (n > static_cast<int>(p.size())) throw std::runtime_error("n exceeds the points");
        if constexpr (kInt)
            inv ? m.InverseCalcPoints(p.data(), n, e) : m.CalcPoints(p.data(), n, e);
        else
            inv ? m.InverseCalcPoints(p.data(), n) : m.CalcPoints(p.data(), n);
    }
    static void Groups(const ATransform& m, std::vector<P>& p, const std::vector<int>& c, int g,
                       double e, bool inv) {
        if (g > static_cast<int>(c.size())) throw std::runtime_error("groups exceeds the counts");
        if constexpr (kInt)
            inv ? m.InverseCalcPointPoints(p.data(), c.data(), g, e)
                : m.CalcPointPoints(p.data(), c.data(), g, e);
        else
            inv ? m.InverseCalcPointPoints(p.data(), c.data(), g)
                : m.CalcPointPoints(p.data(), c.data(), g);
    }

    static void Add(const char* kind) {
        const auto prec = kInt ? in<double>("precision") : conf::fixed(0.0);
        for (const bool inv : {false, true}) {
            const std::string name = inv ? "ATransform::InverseCalcPoint" : "ATransform::CalcPoint";
            const std::string form = std::string("(") + kind + ")";
            conf::add(name + form,
                      conf::call([inv](const ATransform& m, P& p, double e) { One(m, p, e, inv); },
                                 in<ATransform>("m"), in<P>("pt").to(), prec));
            conf::add(name + "s" + form,
                      conf::call([inv](const ATransform& m, std::vector<P>& p, int n,
                                       double e) { List(m, p, n < 0 ? int(p.size()) : n, e, inv); },
                                 in<ATransform>("m"), in<std::vector<P>>("pts").to(),
                                 conf::opt("n", -1), prec));
            conf::add(
                name + "Points" + form,
                conf::call([inv](const ATransform& m, std::vector<P>& p, std::vector<int>& c, int g,
                                 double e) { Groups(m, p, c, g < 0 ? int(c.size()) : g, e, inv); },
                           in<ATransform>("m"), in<std::vector<P>>("pts").to(),
                           in<std::vector<int>>("counts"), conf::opt("groups", -1), prec));
        }
    }
};

const bool added = [] {
    Map<POINTD>::Add("double");
    Map<POINTF>::Add("float");
    Map<POINT>::Add("POINT,precision");
    return true;
}();

// One composing call, written [name, args...], applied to t.
void Apply(ATransform& t, const json& op) {
    const std::string name = op.at(0).get<std::string>();
    std::vector<double> x;
    for (std::size_t i = 1; i < op.size(); ++i) x.push_back(conf::num(op[i]));
    x.resize(6, 0.0);
    conf::LibraryCall lib;
    if (name == "Translation")
        t.Translation(x[0], x[1]);
    else if (name == "Scaling")
        t.Scaling(x[0], x[1], x[2], x[3]);
    else if (name == "Rotate")
        t.Rotate(x[0], x[1], x[2]);
    else if (name == "Shear")
        t.Shear(x[0], x[1], x[2], x[3]);
    else if (name == "Reflection")
        t.Reflection(x[0], x[1], x[2]);
    else if (name == "MultMatrix")
        t.MultMatrix(ATransform(x[0], x[1], x[2], x[3], x[4], x[5]));
    else if (name == "LoadIdentity")
        t.LoadIdentity();
    else
        throw conf::Unsupported("composing call " + name);
}

// Resolution's parts start at a sentinel so that a refusal shows what it left alone.
const ATransform kPart(7, 7, 7, 7, 7, 7);

const conf::Register reg{
    {"ATransform::compose",
     [](const json& a) {
         ATransform t;
         for (const auto& op : a.at("ops")) Apply(t, op);
         return json{{"m", conf::put(t)}};
     }},
    {"ATransform::CalcDist",
     conf::call(&ATransform::CalcDist, in<ATransform>("m"), in<double>("d").to())},
    {"ATransform::InverseCalcDist",
     conf::call(&ATransform::InverseCalcDist, in<ATransform>("m"), in<double>("d").to())},
    {"ATransform::CanInverseCalc", conf::call(&ATransform::CanInverseCalc, in<ATransform>("m"))},
    {"ATransform::operator==",
     conf::call(&ATransform::operator==, in<ATransform>("a"), in<ATransform>("b"))},
    {"ATransform::operator!=",
     conf::call(&ATransform::operator!=, in<ATransform>("a"), in<ATransform>("b"))},
    {"ATransform::operator*",
     conf::call_as(
         "m", [](const ATransform& a, const ATransform& b) { return a * b; }, in<ATransform>("a"),
         in<ATransform>("b"))},
    {"ATransform::Resolution",
     conf::call(&ATransform::Resolution, in<ATransform>("m"), in<POINTD>("scaleCenter"),
                in<POINTD>("rotateCenter"), conf::kept("scale", kPart).ptr(),
                conf::kept("offset", kPart).ptr(), conf::kept("rotate", kPart).ptr())},
};

}  // namespace
