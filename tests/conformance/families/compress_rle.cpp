// Golden-vector handlers: the run-length codecs and the depth dispatchers.
#include <kxbase/compress/compress.h>

#include "conformance.h"

namespace {

using conf::json;
using Bytes = std::vector<std::uint8_t>;

// Reaches the protected codecs for the vectors.
struct Access : ACompress {
    using ACompress::Comp_RLE24, ACompress::Comp_RLE4, ACompress::Comp_RLE8,
        ACompress::GetLoc_RLE24, ACompress::GetLoc_RLE4, ACompress::GetLoc_RLE8,
        ACompress::UnComp_RLE24, ACompress::UnComp_RLE4, ACompress::UnComp_RLE8;
};

constexpr ULONG kUntouched = 0xDEADBEEF;

json Len(ULONG v) {
    return v == kUntouched ? json(nullptr) : json(v);
}

ULONG U(const json& a, const char* key) {
    return conf::u32(a.at(key));
}

// A buffer argument: null for JSON null, else its bytes (may be longer than the length passed).
struct Buf {
    Bytes b;
    bool null;
    explicit Buf(const json& v) : b(v.is_null() ? Bytes{} : conf::bytes(v)), null(v.is_null()) {}
    BYTE* get() { return null ? nullptr : b.data(); }
};

// Encoders: dst is a fresh buffer of dstCap bytes unless args.dst is null.
template <class Fn>
json Encode(const json& a, Fn fn) {
    Buf src(a.at("src"));
    const ULONG cap = U(a, "dstCap");
    Bytes dst(cap + 1);
    const bool dstNull = a.contains("dst") && a["dst"].is_null();
    ULONG len = kUntouched;
    const int r = fn(src.get(), U(a, "srcLen"), dstNull ? nullptr : dst.data(), cap, len);
    json out{{"value", r}, {"dstLen", Len(len)}};
    if (len != kUntouched) out["dst"] = conf::hex(dst.data(), std::min<ULONG>(len, cap));
    return out;
}

// Windowed decoders fn(src, srcLen, total, start, count, dst) writing into a given buffer:
// expect.dst is the whole buffer after the call.
template <class Fn>
json Window(const json& a, Fn fn) {
    Buf src(a.at("src")), dst(a.at("dst"));
    const int r =
        fn(src.get(), U(a, "srcLen"), U(a, "total"), U(a, "start"), U(a, "count"), dst.get());
    return {{"value", r}, {"dst", conf::hex(dst.b)}};
}

// Look-ups fn(out, pos, total, src, srcLen): out[i] is reported as names[i], null when the
// call left it untouched.
template <class Fn>
json Loc(const json& a, std::initializer_list<const char*> names, Fn fn) {
    Buf src(a.at("src"));
    std::vector<ULONG> o(names.size(), kUntouched);
    json out{{"value", fn(o.data(), U(a, "pos"), U(a, "total"), src.get(), U(a, "srcLen"))}};
    size_t i = 0;
    for (const char* n : names) out[n] = Len(o[i++]);
    return out;
}

const conf::Register reg{
    {"ACompress::Comp_RLE", [](const json& a) { return Encode(a, ACompress::Comp_RLE); }},
    {"ACompress::UnComp_RLE", [](const json& a) { return Encode(a, ACompress::UnComp_RLE); }},
    {"ACompress::Comp_RLE8", [](const json& a) { return Encode(a, Access::Comp_RLE8); }},
    {"ACompress::Comp_RLE24", [](const json& a) { return Encode(a, Access::Comp_RLE24); }},
    {"ACompress::Comp_RLE4", [](const json& a) { return Encode(a, Access::Comp_RLE4); }},
    {"ACompress::Pack",
     [](const json& a) {
         return Encode(a,
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
    {"ACompress::UnComp_RLE8", [](const json& a) { return Window(a, Access::UnComp_RLE8); }},
    {"ACompress::UnComp_RLE4", [](const json& a) { return Window(a, Access::UnComp_RLE4); }},
    {"ACompress::UnComp_RLE24",  // takes (start, count, total)
     [](const json& a) {
         return Window(a, [](auto s, auto n, auto total, auto start, auto count, auto d) {
             return Access::UnComp_RLE24(s, n, start, count, total, d);
         });
     }},
    {"ACompress::UnPack(window)",
     [](const json& a) {
         return Window(a, [d = conf::i32(a.at("depth"))](auto s, auto n, auto total, auto start,
                                                         auto count, auto dst) {
             return ACompress::UnPack(s, n, total, d, start, count, dst);
         });
     }},
    {"ACompress::UnPack",
     [](const json& a) {
         Buf src(a.at("src")), dst(a.at("dst"));
         const int r = ACompress::UnPack(src.get(), U(a, "srcLen"), U(a, "total"),
                                         conf::i32(a.at("depth")), dst.get());
         return json{{"value", r}, {"dst", conf::hex(dst.b)}};
     }},
};

}  // namespace
