// Golden-vector handlers: the run-length codecs and the depth dispatchers.
#include <kxbase/compress/compress.h>

#include "conformance.h"

namespace {

using conf::json;
using conf::u32;
using conf::with;

// Reaches the protected codecs for the vectors.
struct Access : ACompress {
    using ACompress::Comp_RLE24, ACompress::Comp_RLE4, ACompress::Comp_RLE8,
        ACompress::GetLoc_RLE24, ACompress::GetLoc_RLE4, ACompress::GetLoc_RLE8,
        ACompress::UnComp_RLE24, ACompress::UnComp_RLE4, ACompress::UnComp_RLE8;
};

// Encoders: dst is a fresh buffer of dstCap bytes unless args.dst is null.
const auto encode = [](const json& a, auto fn) {
    conf::Buf src(a.at("src"));
    const ULONG cap = u32(a.at("dstCap"));
    conf::CapOut dst(a, "dst", cap);
    const int r = fn(src.get(), u32(a.at("srcLen")), dst.get(), cap, dst.len);
    json out{{"value", r}, {"dstLen", dst.length()}};
    if (dst.written()) out["dst"] = conf::hex(dst.v.data(), std::min(dst.len, cap));
    return out;
};

// Windowed decoders fn(src, srcLen, total, start, count, dst) writing into a given buffer:
// expect.dst is the whole buffer after the call.
const auto window = [](const json& a, auto fn) {
    conf::Buf src(a.at("src")), dst(a.at("dst"));
    const int r = fn(src.get(), u32(a.at("srcLen")), u32(a.at("total")), u32(a.at("start")),
                     u32(a.at("count")), dst.get());
    return json{{"value", r}, {"dst", conf::hex(dst.b)}};
};

// Look-ups fn(out, pos, total, src, srcLen): out[i] is reported as names[i], null when the
// call left it untouched.
template <class Fn>
json Loc(const json& a, std::initializer_list<const char*> names, Fn fn) {
    constexpr ULONG kUntouched = 0xDEADBEEF;
    conf::Buf src(a.at("src"));
    std::vector<ULONG> o(names.size(), kUntouched);
    json out{{"value",
              fn(o.data(), u32(a.at("pos")), u32(a.at("total")), src.get(), u32(a.at("srcLen")))}};
    size_t i = 0;
    for (const char* n : names) out[n] = conf::or_null(o[i++], kUntouched);
    return out;
}

const conf::Register reg{
    {"ACompress::Comp_RLE", with(encode, ACompress::Comp_RLE)},
    {"ACompress::UnComp_RLE", with(encode, ACompress::UnComp_RLE)},
    {"ACompress::Comp_RLE8", with(encode, Access::Comp_RLE8)},
    {"ACompress::Comp_RLE24", with(encode, Access::Comp_RLE24)},
    {"ACompress::Comp_RLE4", with(encode, Access::Comp_RLE4)},
    {"ACompress::UnComp_RLE8", with(window, Access::UnComp_RLE8)},
    {"ACompress::UnComp_RLE4", with(window, Access::UnComp_RLE4)},
    {"ACompress::Pack",
     [](const json& a) {
         return encode(a,
                       [d = conf::i32(a.at("depth"))](auto s, auto n, auto dst, auto c, ULONG& l) {
                           return ACompress::Pack(s, n, d, dst, c, l);
                       });
     }},
    {"ACompress::GetLoc_RLE8",
     [](const json& a) {
         return Loc(a, {"offset", "before", "count"},
                    [](ULONG* o, auto... x) { return Access::GetLoc_RLE8(x..., o, o + 1, o + 2); });
     }},
    {"ACompress::GetLoc_RLE24",
     [](const json& a) {
         return Loc(a, {"offset", "before"},
                    [](ULONG* o, auto... x) { return Access::GetLoc_RLE24(x..., o, o + 1); });
     }},
    {"ACompress::GetLoc_RLE4",
     [](const json& a) {
         return Loc(a, {"offset", "left"},
                    [](ULONG* o, auto... x) { return Access::GetLoc_RLE4(x..., o, o + 1); });
     }},
    {"ACompress::UnComp_RLE24",  // takes (start, count, total)
     [](const json& a) {
         return window(a, [](auto s, auto n, auto total, auto start, auto count, auto d) {
             return Access::UnComp_RLE24(s, n, start, count, total, d);
         });
     }},
    {"ACompress::UnPack(window)",
     [](const json& a) {
         return window(a, [d = conf::i32(a.at("depth"))](auto s, auto n, auto total, auto start,
                                                         auto count, auto dst) {
             return ACompress::UnPack(s, n, total, d, start, count, dst);
         });
     }},
    {"ACompress::UnPack",
     [](const json& a) {
         conf::Buf src(a.at("src")), dst(a.at("dst"));
         const int r = ACompress::UnPack(src.get(), u32(a.at("srcLen")), u32(a.at("total")),
                                         conf::i32(a.at("depth")), dst.get());
         return json{{"value", r}, {"dst", conf::hex(dst.b)}};
     }},
};

}  // namespace
