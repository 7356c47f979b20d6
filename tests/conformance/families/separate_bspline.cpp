// Golden vectors of the bspline family: SEPARATE::BSplineToBezier in both point types and the
// protected in-place span layouts, reached through a test-only derived class.
#include <cstring>
#include <vector>

#include <kxbase/separate/separate.h>

#include "geometry_json.h"

namespace {

struct SeparateProbe : SEPARATE {
    using SEPARATE::GetMyBSCtrl;
    using SEPARATE::GetMyEBSCtrl;
};

constexpr LONG kSentinel = 0x5A5A5A5A;
constexpr int kUnwritten = -777;

// Runs the converter on an output buffer pre-filled with a sentinel so that "not written"
// (null in the vectors) is observable for both the points and the count.
template <class P>
conf::json Convert(const std::vector<P>& in, int mode, P fill) {
    const int n = static_cast<int>(in.size());
    std::vector<P> out(in.size() < 2 ? 4 : 4 * (in.size() - 1) + 4, fill);
    const std::vector<P> before = out;
    int count = kUnwritten;
    const int r = SEPARATE::BSplineToBezier(in.data(), n, out.data(), count, mode);
    conf::json res{{"value", r}};
    const bool untouched = std::memcmp(out.data(), before.data(), out.size() * sizeof(P)) == 0;
    res["count"] = count == kUnwritten ? conf::json(nullptr) : conf::json(count);
    if (count != kUnwritten && count >= 0 && static_cast<std::size_t>(count) <= out.size())
        res["points"] = conf::put_all(out.data(), static_cast<std::size_t>(count));
    else
        res["points"] = untouched ? conf::json(nullptr) : conf::put_all(out.data(), out.size());
    return res;
}

// Runs a span layout on a buffer with room for its longest result; "points" is the result
// (4 * (n - 1) or 3 * (n - 2) points) on success, null when the array was left untouched.
conf::json Layout(const conf::json& a, int (*fn)(POINTD*, int), std::size_t perWindow,
                  std::size_t windowsLess) {
    std::vector<POINTD> p = conf::Codec<std::vector<POINTD>>::get(a.at("points"));
    const std::size_t n = p.size();
    p.resize(4 * n + 4, POINTD(1e300, -1e300));
    const std::vector<POINTD> before = p;
    const int r = fn(p.data(), static_cast<int>(n));
    conf::json res{{"value", r}};
    if (r == 1 && n >= windowsLess)
        res["points"] = conf::put_all(p.data(), perWindow * (n - windowsLess));
    else
        res["points"] = std::memcmp(p.data(), before.data(), p.size() * sizeof(POINTD)) == 0
                            ? conf::json(nullptr)
                            : conf::put_all(p.data(), p.size());
    return res;
}

const conf::Register reg{
    {"SEPARATE::BSplineToBezier(POINT)",
     [](const conf::json& a) {
         return Convert(conf::Codec<std::vector<POINT>>::get(a.at("points")),
                        conf::i32(a.at("mode")), POINT{kSentinel, kSentinel});
     }},
    {"SEPARATE::BSplineToBezier(POINTD)",
     [](const conf::json& a) {
         return Convert(conf::Codec<std::vector<POINTD>>::get(a.at("points")),
                        conf::i32(a.at("mode")), POINTD(1e300, -1e300));
     }},
    {"SEPARATE::GetMyBSCtrl",
     [](const conf::json& a) { return Layout(a, &SeparateProbe::GetMyBSCtrl, 4, 1); }},
    {"SEPARATE::GetMyEBSCtrl",
     [](const conf::json& a) { return Layout(a, &SeparateProbe::GetMyEBSCtrl, 3, 2); }},
};

}  // namespace
