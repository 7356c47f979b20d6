// Golden-vector handlers: the run-length codecs and the depth dispatchers.
#include <kxbase/compress/compress.h>

#include "conformance.h"

namespace {

using conf::json;
using Bytes = std::vector<std::uint8_t>;

// Reaches the protected codecs for the vectors.
struct Access : ACompress {
    using ACompress::Comp_RLE24;
    using ACompress::Comp_RLE4;
    using ACompress::Comp_RLE8;
    using ACompress::GetLoc_RLE24;
    using ACompress::GetLoc_RLE4;
    using ACompress::GetLoc_RLE8;
    using ACompress::UnComp_RLE24;
    using ACompress::UnComp_RLE4;
    using ACompress::UnComp_RLE8;
};

constexpr ULONG kUntouched = 0xDEADBEEF;

json Len(ULONG v) {
    return v == kUntouched ? json(nullptr) : json(v);
}

// A source buffer: null for JSON null, else its bytes (may be longer than the length passed).
struct Src {
    Bytes b;
    bool null;
    explicit Src(const json& v) : b(v.is_null() ? Bytes{} : conf::bytes(v)), null(v.is_null()) {}
    const BYTE* get() const { return null ? nullptr : b.data(); }
};

// Encoders: dst is a fresh buffer of dstCap bytes unless args.dst is null.
template <class Fn>
json Encode(const json& a, Fn fn) {
    Src src(a.at("src"));
    const ULONG cap = conf::u32(a.at("dstCap"));
    Bytes dst(cap + 1);
    const bool dstNull = a.contains("dst") && a["dst"].is_null();
    ULONG len = kUntouched;
    const int r =
        fn(src.get(), conf::u32(a.at("srcLen")), dstNull ? nullptr : dst.data(), cap, len);
    json out{{"value", r}, {"dstLen", Len(len)}};
    if (len != kUntouched) out["dst"] = conf::hex(dst.data(), std::min<ULONG>(len, cap));
    return out;
}

// Decoders writing into a given buffer: expect.dst is the whole buffer after the call.
template <class Fn>
json IntoBuffer(const json& a, Fn fn) {
    Src src(a.at("src"));
    Bytes dst = a.at("dst").is_null() ? Bytes{} : conf::bytes(a.at("dst"));
    const int r = fn(src.get(), a.at("dst").is_null() ? nullptr : dst.data());
    return {{"value", r}, {"dst", conf::hex(dst)}};
}

const conf::Register reg{
    {"ACompress::Comp_RLE", [](const json& a) { return Encode(a, ACompress::Comp_RLE); }},
    {"ACompress::UnComp_RLE", [](const json& a) { return Encode(a, ACompress::UnComp_RLE); }},
    {"ACompress::Comp_RLE8", [](const json& a) { return Encode(a, Access::Comp_RLE8); }},
    {"ACompress::Comp_RLE24", [](const json& a) { return Encode(a, Access::Comp_RLE24); }},
    {"ACompress::Comp_RLE4", [](const json& a) { return Encode(a, Access::Comp_RLE4); }},
    {"ACompress::Pack",
     [](const json& a) {
         const int depth = conf::i32(a.at("depth"));
         return Encode(a, [depth](const BYTE* s, ULONG n, BYTE* d, ULONG c, ULONG& l) {
             return ACompress::Pack(s, n, depth, d, c, l);
         });
     }},
    {"ACompress::GetLoc_RLE8",
     [](const json& a) {
         Src src(a.at("src"));
         ULONG off = kUntouched, before = kUntouched, count = kUntouched;
         const int r =
             Access::GetLoc_RLE8(conf::u32(a.at("pos")), conf::u32(a.at("total")), src.get(),
                                 conf::u32(a.at("srcLen")), &off, &before, &count);
         return json{
             {"value", r}, {"offset", Len(off)}, {"before", Len(before)}, {"count", Len(count)}};
     }},
    {"ACompress::GetLoc_RLE24",
     [](const json& a) {
         Src src(a.at("src"));
         ULONG off = kUntouched, before = kUntouched;
         const int r = Access::GetLoc_RLE24(conf::u32(a.at("pos")), conf::u32(a.at("total")),
                                            src.get(), conf::u32(a.at("srcLen")), &off, &before);
         return json{{"value", r}, {"offset", Len(off)}, {"before", Len(before)}};
     }},
    {"ACompress::GetLoc_RLE4",
     [](const json& a) {
         Src src(a.at("src"));
         ULONG off = kUntouched, left = kUntouched;
         const int r = Access::GetLoc_RLE4(conf::u32(a.at("pos")), conf::u32(a.at("total")),
                                           src.get(), conf::u32(a.at("srcLen")), &off, &left);
         return json{{"value", r}, {"offset", Len(off)}, {"left", Len(left)}};
     }},
    {"ACompress::UnComp_RLE8",
     [](const json& a) {
         return IntoBuffer(a, [&](const BYTE* s, BYTE* d) {
             return Access::UnComp_RLE8(s, conf::u32(a.at("srcLen")), conf::u32(a.at("total")),
                                        conf::u32(a.at("start")), conf::u32(a.at("count")), d);
         });
     }},
    {"ACompress::UnComp_RLE4",
     [](const json& a) {
         return IntoBuffer(a, [&](const BYTE* s, BYTE* d) {
             return Access::UnComp_RLE4(s, conf::u32(a.at("srcLen")), conf::u32(a.at("total")),
                                        conf::u32(a.at("start")), conf::u32(a.at("count")), d);
         });
     }},
    {"ACompress::UnComp_RLE24",
     [](const json& a) {
         return IntoBuffer(a, [&](const BYTE* s, BYTE* d) {
             return Access::UnComp_RLE24(s, conf::u32(a.at("srcLen")), conf::u32(a.at("start")),
                                         conf::u32(a.at("count")), conf::u32(a.at("total")), d);
         });
     }},
    {"ACompress::UnPack",
     [](const json& a) {
         return IntoBuffer(a, [&](const BYTE* s, BYTE* d) {
             return ACompress::UnPack(s, conf::u32(a.at("srcLen")), conf::u32(a.at("total")),
                                      conf::i32(a.at("depth")), d);
         });
     }},
    {"ACompress::UnPack(window)",
     [](const json& a) {
         return IntoBuffer(a, [&](const BYTE* s, BYTE* d) {
             return ACompress::UnPack(s, conf::u32(a.at("srcLen")), conf::u32(a.at("total")),
                                      conf::i32(a.at("depth")), conf::u32(a.at("start")),
                                      conf::u32(a.at("count")), d);
         });
     }},
};

}  // namespace
