// Golden vectors of the lzw family: the LZW codec's public stages and its protected helpers
// (IsStrInList, Init), reached through a test-only derived class.
#include <vector>

#include <kxbase/compress/compress.h>

#include "conformance.h"

namespace {

struct LzwProbe : ACompress {
    using ACompress::Init;
    using ACompress::IsStrInList;
    using ACompress::kLzwNodeSize;
    using ACompress::m_byBitTable;
    using ACompress::m_pRowTable;
};

constexpr ULONG kUntouched = 0xA5A5A5A5u;

// A length output: null when the routine left it alone.
conf::json Length(ULONG v) {
    return v == kUntouched ? conf::json() : conf::json(v);
}

std::vector<WORD> Codes(const conf::json& v) {
    std::vector<WORD> out;
    for (const auto& c : v) out.push_back(static_cast<WORD>(conf::u32(c)));
    return out;
}

conf::json CodesJson(const WORD* p, ULONG n) {
    conf::json a = conf::json::array();
    for (ULONG i = 0; i < n; ++i) a.push_back(p[i]);
    return a;
}

// Source bytes: a null pointer for JSON null; never an empty vector's null data pointer.
struct Source {
    std::vector<BYTE> bytes;
    bool null;
    explicit Source(const conf::json& v) : bytes(conf::bytes(v)), null(v.is_null()) {
        bytes.push_back(0);  // keeps data() valid for empty hex
    }
    const BYTE* get() const { return null ? nullptr : bytes.data(); }
};

// Runs one of the byte-in, byte-out codecs with a dst of dstCap bytes (or null).
template <class Fn>
conf::json ByteCodec(const conf::json& a, Fn fn) {
    const Source src(a.at("src"));
    const ULONG cap = conf::u32(a.at("dstCap"));
    std::vector<BYTE> dst(cap + 1);
    const bool nullDst = a.contains("dst") && a["dst"].is_null();
    ULONG len = kUntouched;
    const int r =
        fn(src.get(), conf::u32(a.at("srcLen")), nullDst ? nullptr : dst.data(), cap, len);
    conf::json out{{"value", r}, {"dstLen", Length(len)}};
    if (r == 1) out["dst"] = conf::hex(dst.data(), len);
    return out;
}

static conf::Register reg{
    {"ACompress::Comp_LZW", [](const conf::json& a) { return ByteCodec(a, ACompress::Comp_LZW); }},
    {"ACompress::UnComp_LZW",
     [](const conf::json& a) { return ByteCodec(a, ACompress::UnComp_LZW); }},
    {"ACompress::Pack_LZW",
     [](const conf::json& a) {
         const Source src(a.at("src"));
         const ULONG cap = conf::u32(a.at("codeCap"));
         std::vector<WORD> codes(cap + 1);
         const bool nullCodes = a.contains("codes") && a["codes"].is_null();
         ULONG count = kUntouched;
         const int r = ACompress::Pack_LZW(src.get(), conf::u32(a.at("srcLen")),
                                           nullCodes ? nullptr : codes.data(), cap, count);
         conf::json out{{"value", r}, {"codeCount", Length(count)}};
         if (r == 1) out["codes"] = CodesJson(codes.data(), count);
         return out;
     }},
    {"ACompress::UnPack_LZW",
     [](const conf::json& a) {
         const bool nullCodes = a.at("codes").is_null();
         std::vector<WORD> codes = Codes(a.at("codes"));
         codes.push_back(0);
         const ULONG cap = conf::u32(a.at("dstCap"));
         std::vector<BYTE> dst(cap + 1);
         ULONG len = kUntouched;
         const int r = ACompress::UnPack_LZW(nullCodes ? nullptr : codes.data(),
                                             conf::u32(a.at("codeCount")), dst.data(), cap, len);
         conf::json out{{"value", r}, {"dstLen", Length(len)}};
         if (r == 1) out["dst"] = conf::hex(dst.data(), len);
         return out;
     }},
    {"ACompress::TransformDataBits",
     [](const conf::json& a) {
         const bool nullCodes = a.at("codes").is_null();
         std::vector<WORD> codes = Codes(a.at("codes"));
         codes.push_back(0);
         const ULONG cap = conf::u32(a.at("dstCap"));
         std::vector<BYTE> dst(cap + 1);
         ULONG len = kUntouched;
         const int r =
             ACompress::TransformDataBits(nullCodes ? nullptr : codes.data(),
                                          conf::u32(a.at("codeCount")), dst.data(), cap, len);
         conf::json out{{"value", r}, {"dstLen", Length(len)}};
         if (r == 1) out["dst"] = conf::hex(dst.data(), len);
         return out;
     }},
    {"ACompress::ResumeDataBit",
     [](const conf::json& a) {
         const Source src(a.at("src"));
         const ULONG srcLen = conf::u32(a.at("srcLen"));
         std::vector<WORD> codes(ACompress::LzwResumeCodeBound(srcLen) + 1);
         ULONG count = kUntouched;
         const int r = ACompress::ResumeDataBit(src.get(), srcLen, codes.data(), count);
         conf::json out{{"value", r}, {"codeCount", Length(count)}};
         if (r == 1) out["codes"] = CodesJson(codes.data(), count);
         return out;
     }},
    {"ACompress::IsStrInList",
     [](const conf::json& a) {
         // The vectors give nodes as [offset, byte, next]; lay them out in the table format.
         std::vector<BYTE> table(LzwProbe::kLzwNodeSize);
         for (const auto& n : a.at("nodes")) {
             const std::size_t o = conf::u32(n[0]);
             if (table.size() < o + LzwProbe::kLzwNodeSize)
                 table.resize(o + LzwProbe::kLzwNodeSize);
             const unsigned next = conf::u32(n[2]);
             table[o] = static_cast<BYTE>(conf::u32(n[1]));
             table[o + 1] = static_cast<BYTE>(next);
             table[o + 2] = static_cast<BYTE>(next >> 8);
         }
         constexpr WORD kSentinel = 0xBEEF;
         WORD code = kSentinel, last = kSentinel;
         const int r = LzwProbe::IsStrInList(
             static_cast<WORD>(conf::u32(a.at("prefix"))), static_cast<BYTE>(conf::u32(a.at("ch"))),
             table.data(), static_cast<WORD>(conf::u32(a.at("first"))), &code, &last);
         return conf::json{{"value", r},
                           {"code", code == kSentinel ? conf::json() : conf::json(code)},
                           {"last", last == kSentinel ? conf::json() : conf::json(last)}};
     }},
    {"ACompress::Init",
     [](const conf::json&) {
         const int r = LzwProbe::Init();
         std::vector<BYTE> rows;
         for (const BYTE* p : LzwProbe::m_pRowTable) rows.insert(rows.end(), p, p + 7);
         return conf::json{{"value", r},
                           {"bitTable", conf::hex(&LzwProbe::m_byBitTable[0][0], 2048)},
                           {"rowTable", conf::hex(rows)}};
     }},
};

}  // namespace
