// Golden-vector handlers: the packed 1- and 2-bit formats and the bit-depth conversions.
// (The windowed UnPack is registered with the run-length family.)
#include <kxbase/compress/compress.h>

#include "conformance.h"

namespace {

using conf::json;
using conf::u32;
using conf::with;

struct Access : ACompress {
    using ACompress::GetLoc_RLE1, ACompress::GetLoc_RLE2, ACompress::kPackValueMaxBytes,
        ACompress::Pack1, ACompress::Pack2, ACompress::Pack_Value, ACompress::UnPack1,
        ACompress::UnPack2, ACompress::UnPackSeg1, ACompress::UnPackSeg2;
};

constexpr ULONG kUntouched = 0xDEADBEEF;

json Len(ULONG v) {
    return conf::or_null(v, kUntouched);
}

const auto pack = [](const json& a, auto fn, bool twoBit) {
    conf::Buf src(a.at("src"));
    const ULONG cap = u32(a.at("dstCap"));
    conf::CapOut dst(a, "dst", cap);
    const int r = fn(src.get(), u32(a.at("srcLen")), dst.get(), cap, dst.len);
    json out{{"value", r}, {"dstLen", dst.length()}};
    if (dst.written()) {
        const ULONG n = std::min(dst.len, cap);
        out["dst"] = conf::hex(dst.v.data(), n);
        // The last literal of a 2-bit line takes three places; those past the line carry no
        // meaning (written as 0 here), so the mask leaves them out.
        std::vector<BYTE> mask(n, 0xFF);
        const BYTE rem = n >= 2 ? dst.v[n - 1] : 0;  // the closing byte
        if (twoBit && (rem == 1 || rem == 2)) mask[n - 2] = rem == 1 ? 0xF0 : 0xFC;
        out["dstMask"] = conf::hex(mask);
    }
    return out;
};

const auto loc = [](const json& a, auto fn) {
    conf::Buf src(a.at("src"));
    ULONG off = kUntouched, bytes = kUntouched, inside = kUntouched, pixels = kUntouched;
    const int r = fn(u32(a.at("pos")), u32(a.at("total")), src.get(), u32(a.at("srcLen")), &off,
                     &bytes, &inside, &pixels);
    return json{{"value", r},
                {"offset", Len(off)},
                {"bytes", Len(bytes)},
                {"inside", Len(inside)},
                {"pixels", Len(pixels)}};
};

const auto seg = [](const json& a, auto fn) {
    conf::Buf src(a.at("src"));
    BYTE value = 0xEE;
    ULONG count = kUntouched;
    const ULONG r = fn(src.get(), u32(a.at("offset")), u32(a.at("bytes")), value, count,
                       conf::i32(a.at("whole")));
    return json{
        {"value", r}, {"runValue", conf::or_null<BYTE>(value, 0xEE)}, {"count", Len(count)}};
};

const auto unpack = [](const json& a, auto fn) {
    conf::Buf src(a.at("src")), dst(a.at("dst"));
    const int r = fn(src.get(), u32(a.at("srcLen")), u32(a.at("pixels")), dst.get());
    return json{{"value", r}, {"dst", conf::hex(dst.b)}};
};

// ShrinkBit and ExpandBit: (buf, start, count, depth, dst); a null dst works in place.
const auto depthBits = [](const json& a, auto fn, const char* bufKey) {
    conf::Buf buf(a.at(bufKey)), dst(a.at("dst"));
    json out{{"value", fn(buf.get(), u32(a.at("start")), u32(a.at("count")),
                          conf::i32(a.at("depth")), dst.get())}};
    if (std::string(bufKey) == "buf") out["buf"] = conf::hex(buf.b);
    if (!dst.null) out["dst"] = conf::hex(dst.b);
    return out;
};

const conf::Register reg{
    {"ACompress::Pack1", with(pack, Access::Pack1, false)},
    {"ACompress::Pack2", with(pack, Access::Pack2, true)},
    {"ACompress::UnPack1", with(unpack, Access::UnPack1)},
    {"ACompress::UnPack2", with(unpack, Access::UnPack2)},
    {"ACompress::GetLoc_RLE1", with(loc, Access::GetLoc_RLE1)},
    {"ACompress::GetLoc_RLE2", with(loc, Access::GetLoc_RLE2)},
    {"ACompress::UnPackSeg1", with(seg, Access::UnPackSeg1)},
    {"ACompress::UnPackSeg2", with(seg, Access::UnPackSeg2)},
    {"ACompress::ShrinkBit", with(depthBits, ACompress::ShrinkBit, "buf")},
    {"ACompress::ExpandBit", with(depthBits, ACompress::ExpandBit, "src")},
    {"ACompress::Pack_Value",
     [](const json& a) {
         BYTE dst[Access::kPackValueMaxBytes + 1] = {};
         ULONG len = kUntouched;
         const int r = Access::Pack_Value(static_cast<BYTE>(u32(a.at("value"))), u32(a.at("count")),
                                          conf::i32(a.at("depth")), dst, len);
         json out{{"value", r}, {"dstLen", Len(len)}};
         if (len != kUntouched) out["dst"] = conf::hex(dst, len);
         return out;
     }},
};

}  // namespace
