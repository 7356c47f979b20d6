// Golden-vector handlers: the packed 1- and 2-bit formats and the bit-depth conversions.
// (The windowed UnPack is registered with the run-length family.)
#include <kxbase/compress/compress.h>

#include "conformance.h"

namespace {

using conf::json;
using Bytes = std::vector<std::uint8_t>;

struct Access : ACompress {
    using ACompress::GetLoc_RLE1;
    using ACompress::GetLoc_RLE2;
    using ACompress::kPackValueMaxBytes;
    using ACompress::Pack1;
    using ACompress::Pack2;
    using ACompress::Pack_Value;
    using ACompress::UnPack1;
    using ACompress::UnPack2;
    using ACompress::UnPackSeg1;
    using ACompress::UnPackSeg2;
};

constexpr ULONG kUntouched = 0xDEADBEEF;

json Len(ULONG v) {
    return v == kUntouched ? json(nullptr) : json(v);
}

Bytes BytesOrEmpty(const json& v) {
    return v.is_null() ? Bytes{} : conf::bytes(v);
}

template <class Fn>
json PackHandler(const json& a, Fn fn, bool twoBit) {
    Bytes src = BytesOrEmpty(a.at("src"));
    const ULONG srcLen = conf::u32(a.at("srcLen"));
    const ULONG cap = conf::u32(a.at("dstCap"));
    Bytes dst(cap + 1);
    const bool dstNull = a.contains("dst") && a["dst"].is_null();
    ULONG len = kUntouched;
    const int r = fn(a.at("src").is_null() ? nullptr : src.data(), srcLen,
                     dstNull ? nullptr : dst.data(), cap, len);
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
    Bytes src = BytesOrEmpty(a.at("src"));
    ULONG off = kUntouched, bytes = kUntouched, inside = kUntouched, pixels = kUntouched;
    const int r = fn(conf::u32(a.at("pos")), conf::u32(a.at("total")),
                     a.at("src").is_null() ? nullptr : src.data(), conf::u32(a.at("srcLen")), &off,
                     &bytes, &inside, &pixels);
    return {{"value", r},
            {"offset", Len(off)},
            {"bytes", Len(bytes)},
            {"inside", Len(inside)},
            {"pixels", Len(pixels)}};
}

template <class Fn>
json SegHandler(const json& a, Fn fn) {
    Bytes src = BytesOrEmpty(a.at("src"));
    BYTE value = 0xEE;
    ULONG count = kUntouched;
    const ULONG r = fn(a.at("src").is_null() ? nullptr : src.data(), conf::u32(a.at("offset")),
                       conf::u32(a.at("bytes")), value, count, conf::i32(a.at("whole")));
    return {{"value", r},
            {"runValue", value == 0xEE ? json(nullptr) : json(value)},
            {"count", Len(count)}};
}

template <class Fn>
json UnPackHandler(const json& a, Fn fn) {
    Bytes src = BytesOrEmpty(a.at("src"));
    Bytes dst = BytesOrEmpty(a.at("dst"));
    const int r = fn(a.at("src").is_null() ? nullptr : src.data(), conf::u32(a.at("srcLen")),
                     conf::u32(a.at("pixels")), a.at("dst").is_null() ? nullptr : dst.data());
    return {{"value", r}, {"dst", conf::hex(dst)}};
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
         const int r =
             Access::Pack_Value(static_cast<BYTE>(conf::u32(a.at("value"))),
                                conf::u32(a.at("count")), conf::i32(a.at("depth")), dst, len);
         json out{{"value", r}, {"dstLen", Len(len)}};
         if (len != kUntouched) out["dst"] = conf::hex(dst, len);
         return out;
     }},
    {"ACompress::ShrinkBit",
     [](const json& a) {
         Bytes buf = BytesOrEmpty(a.at("buf"));
         const bool inPlace = a.at("dst").is_null();
         Bytes dst = BytesOrEmpty(a.at("dst"));
         const int r = ACompress::ShrinkBit(
             a.at("buf").is_null() ? nullptr : buf.data(), conf::u32(a.at("start")),
             conf::u32(a.at("count")), conf::i32(a.at("depth")), inPlace ? nullptr : dst.data());
         json out{{"value", r}, {"buf", conf::hex(buf)}};
         if (!inPlace) out["dst"] = conf::hex(dst);
         return out;
     }},
    {"ACompress::ExpandBit",
     [](const json& a) {
         Bytes src = BytesOrEmpty(a.at("src"));
         Bytes dst = BytesOrEmpty(a.at("dst"));
         const int r = ACompress::ExpandBit(a.at("src").is_null() ? nullptr : src.data(),
                                            conf::u32(a.at("start")), conf::u32(a.at("count")),
                                            conf::i32(a.at("depth")),
                                            a.at("dst").is_null() ? nullptr : dst.data());
         json out{{"value", r}};
         if (!a.at("dst").is_null()) out["dst"] = conf::hex(dst);
         return out;
     }},
};

}  // namespace
