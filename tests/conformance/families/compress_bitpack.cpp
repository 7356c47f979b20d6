// Golden-vector handlers: the packed 1- and 2-bit formats and the bit-depth conversions.
// (The windowed UnPack is registered with the run-length family.)
#include <kxbase/compress/compress.h>

#include "conformance.h"

namespace {

using conf::json;
using Bytes = std::vector<std::uint8_t>;

struct Access : ACompress {
    using ACompress::GetLoc_RLE1, ACompress::GetLoc_RLE2, ACompress::kPackValueMaxBytes,
        ACompress::Pack1, ACompress::Pack2, ACompress::Pack_Value, ACompress::UnPack1,
        ACompress::UnPack2, ACompress::UnPackSeg1, ACompress::UnPackSeg2;
};

constexpr ULONG kUntouched = 0xDEADBEEF;

json Len(ULONG v) {
    return v == kUntouched ? json(nullptr) : json(v);
}

ULONG U(const json& a, const char* key) {
    return conf::u32(a.at(key));
}

// A buffer argument: null for JSON null, else its bytes.
struct Buf {
    Bytes b;
    bool null;
    explicit Buf(const json& v) : b(v.is_null() ? Bytes{} : conf::bytes(v)), null(v.is_null()) {}
    BYTE* get() { return null ? nullptr : b.data(); }
};

template <class Fn>
json PackHandler(const json& a, Fn fn, bool twoBit) {
    Buf src(a.at("src"));
    const ULONG cap = U(a, "dstCap");
    Bytes dst(cap + 1);
    const bool dstNull = a.contains("dst") && a["dst"].is_null();
    ULONG len = kUntouched;
    const int r = fn(src.get(), U(a, "srcLen"), dstNull ? nullptr : dst.data(), cap, len);
    json out{{"value", r}, {"dstLen", Len(len)}};
    if (len != kUntouched) {
        const ULONG n = std::min(len, cap);
        out["dst"] = conf::hex(dst.data(), n);
        // The last literal of a 2-bit line takes three places; those past the line carry no
        // meaning (written as 0 here), so the mask leaves them out.
        Bytes mask(n, 0xFF);
        const BYTE rem = n >= 2 ? dst[n - 1] : 0;  // the closing byte
        if (twoBit && (rem == 1 || rem == 2)) mask[n - 2] = rem == 1 ? 0xF0 : 0xFC;
        out["dstMask"] = conf::hex(mask);
    }
    return out;
}

template <class Fn>
json LocHandler(const json& a, Fn fn) {
    Buf src(a.at("src"));
    ULONG off = kUntouched, bytes = kUntouched, inside = kUntouched, pixels = kUntouched;
    const int r =
        fn(U(a, "pos"), U(a, "total"), src.get(), U(a, "srcLen"), &off, &bytes, &inside, &pixels);
    return {{"value", r},
            {"offset", Len(off)},
            {"bytes", Len(bytes)},
            {"inside", Len(inside)},
            {"pixels", Len(pixels)}};
}

template <class Fn>
json SegHandler(const json& a, Fn fn) {
    Buf src(a.at("src"));
    BYTE value = 0xEE;
    ULONG count = kUntouched;
    const ULONG r =
        fn(src.get(), U(a, "offset"), U(a, "bytes"), value, count, conf::i32(a.at("whole")));
    return {{"value", r},
            {"runValue", value == 0xEE ? json(nullptr) : json(value)},
            {"count", Len(count)}};
}

template <class Fn>
json UnPackHandler(const json& a, Fn fn) {
    Buf src(a.at("src")), dst(a.at("dst"));
    const int r = fn(src.get(), U(a, "srcLen"), U(a, "pixels"), dst.get());
    return {{"value", r}, {"dst", conf::hex(dst.b)}};
}

const conf::Register reg{
    {"ACompress::Pack1", [](const json& a) { return PackHandler(a, Access::Pack1, false); }},
    {"ACompress::Pack2", [](const json& a) { return PackHandler(a, Access::Pack2, true); }},
    {"ACompress::UnPack1", [](const json& a) { return UnPackHandler(a, Access::UnPack1); }},
    {"ACompress::UnPack2", [](const json& a) { return UnPackHandler(a, Access::UnPack2); }},
    {"ACompress::GetLoc_RLE1", [](const json& a) { return LocHandler(a, Access::GetLoc_RLE1); }},
    {"ACompress::GetLoc_RLE2", [](const json& a) { return LocHandler(a, Access::GetLoc_RLE2); }},
    {"ACompress::UnPackSeg1", [](const json& a) { return SegHandler(a, Access::UnPackSeg1); }},
    {"ACompress::UnPackSeg2", [](const json& a) { return SegHandler(a, Access::UnPackSeg2); }},
    {"ACompress::Pack_Value",
     [](const json& a) {
         BYTE dst[Access::kPackValueMaxBytes + 1] = {};
         ULONG len = kUntouched;
         const int r = Access::Pack_Value(static_cast<BYTE>(U(a, "value")), U(a, "count"),
                                          conf::i32(a.at("depth")), dst, len);
         json out{{"value", r}, {"dstLen", Len(len)}};
         if (len != kUntouched) out["dst"] = conf::hex(dst, len);
         return out;
     }},
    {"ACompress::ShrinkBit",
     [](const json& a) {
         Buf buf(a.at("buf")), dst(a.at("dst"));  // a null dst packs in place
         const int r = ACompress::ShrinkBit(buf.get(), U(a, "start"), U(a, "count"),
                                            conf::i32(a.at("depth")), dst.get());
         json out{{"value", r}, {"buf", conf::hex(buf.b)}};
         if (!dst.null) out["dst"] = conf::hex(dst.b);
         return out;
     }},
    {"ACompress::ExpandBit",
     [](const json& a) {
         Buf src(a.at("src")), dst(a.at("dst"));
         json out{{"value", ACompress::ExpandBit(src.get(), U(a, "start"), U(a, "count"),
                                                 conf::i32(a.at("depth")), dst.get())}};
         if (!dst.null) out["dst"] = conf::hex(dst.b);
         return out;
     }},
};

}  // namespace
