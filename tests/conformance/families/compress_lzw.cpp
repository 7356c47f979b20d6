// Golden vectors of the lzw family: the LZW codec's public stages and its protected helpers
// (IsStrInList, Init), reached through a test-only derived class.
#include <algorithm>
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

// Runs one stage: input `src` bytes (srcLen) or `codes` (codeCount), output `dst` bytes
// (dstCap, dstLen) or `codes` (codeCap, codeCount). A JSON null input, or a null output named
// in the arguments, is passed as a null pointer; a length left alone comes back as null.
template <class In, class Out>
const auto stage = [](const conf::json& a, auto fn) {
    constexpr bool codesIn = sizeof(In) == 2, codesOut = sizeof(Out) == 2;
    const conf::json& in = a.at(codesIn ? "codes" : "src");
    std::vector<In> src;
    if constexpr (codesIn) {
        for (const auto& c : in) src.push_back(static_cast<WORD>(conf::u32(c)));
    } else {
        src = conf::bytes(in);
    }
    src.push_back(0);  // keeps data() valid for an empty input
    const ULONG n = conf::u32(a.at(codesIn ? "codeCount" : "srcLen"));
    const char* outKey = codesOut ? "codes" : "dst";
    const char* capKey = codesOut ? "codeCap" : "dstCap";
    const ULONG cap = a.contains(capKey) ? conf::u32(a[capKey]) : ACompress::LzwResumeCodeBound(n);
    conf::CapOut<Out> dst(a, outKey, cap);
    const int r = fn(in.is_null() ? nullptr : src.data(), n, dst.get(), cap, dst.len);
    conf::json out{{"value", r}, {codesOut ? "codeCount" : "dstLen", dst.length()}};
    if (r != 1) return out;
    if constexpr (codesOut) {
        out[outKey] = std::vector<WORD>(dst.v.begin(), dst.v.begin() + dst.len);
    } else {
        out[outKey] = conf::hex(dst.v.data(), dst.len);
    }
    return out;
};

static conf::Register reg{
    {"ACompress::Comp_LZW", conf::with(stage<BYTE, BYTE>, ACompress::Comp_LZW)},
    {"ACompress::UnComp_LZW", conf::with(stage<BYTE, BYTE>, ACompress::UnComp_LZW)},
    {"ACompress::Pack_LZW", conf::with(stage<BYTE, WORD>, ACompress::Pack_LZW)},
    {"ACompress::UnPack_LZW", conf::with(stage<WORD, BYTE>, ACompress::UnPack_LZW)},
    {"ACompress::TransformDataBits", conf::with(stage<WORD, BYTE>, ACompress::TransformDataBits)},
    {"ACompress::ResumeDataBit",
     [](const conf::json& a) {
         // No capacity argument: the stage gets LzwResumeCodeBound(srcLen) codes.
         return stage<BYTE, WORD>(a,
                                  [](const BYTE* src, ULONG n, WORD* codes, ULONG, ULONG& count) {
                                      return ACompress::ResumeDataBit(src, n, codes, count);
                                  });
     }},
    {"ACompress::IsStrInList",
     [](const conf::json& a) {
         // The vectors give nodes as [offset, byte, next]; lay them out in the table format.
         std::vector<BYTE> table(LzwProbe::kLzwNodeSize);
         for (const auto& n : a.at("nodes")) {
             const std::size_t o = conf::u32(n[0]);
             table.resize(std::max<std::size_t>(table.size(), o + LzwProbe::kLzwNodeSize));
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
                           {"code", conf::or_null(code, kSentinel)},
                           {"last", conf::or_null(last, kSentinel)}};
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
