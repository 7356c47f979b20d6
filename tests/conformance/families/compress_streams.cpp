// Golden-vector handlers of the codecs that write a stream into a buffer of given capacity
// (LZW stages, run-length and 1-/2-bit packing), the LZW tables and Base64.
#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "compress_probe.h"

namespace {

using conf::json;
using cz::kUntouched;
using cz::Probe;

// One stage: input `src` bytes (srcLen) or `codes` (codeCount); output `dst` bytes (dstCap,
// dstLen) or `codes` (codeCap, codeCount). A JSON null input, or an output named null in the
// arguments, passes a null pointer; a length left alone comes back as null.
template <class In, class Out, class F>
json Stage(const json& a, F fn) {
    constexpr bool codesIn = sizeof(In) == 2, codesOut = sizeof(Out) == 2;
    const json& in = a.at(codesIn ? "codes" : "src");
    std::vector<In> src;
    if constexpr (codesIn)
        src = conf::Codec<std::vector<In>>::get(in);
    else
        src = conf::bytes(in);
    src.push_back(0);  // keeps data() valid for an empty input
    const ULONG n = conf::u32(a.at(codesIn ? "codeCount" : "srcLen"));
    const char* outKey = codesOut ? "codes" : "dst";
    const char* capKey = codesOut ? "codeCap" : "dstCap";
    const ULONG cap =
        a.contains(capKey) ? conf::u32(a[capKey]) : ULONG(ACompress::LzwResumeCodeBound(n));
    std::vector<Out> dst(std::size_t(cap) + 1);
    const bool dstNull = a.contains(outKey) && a[outKey].is_null();
    ULONG len = kUntouched;
    const int r = [&] {
        conf::LibraryCall lib;
        return fn(in.is_null() ? nullptr : src.data(), n, dstNull ? nullptr : dst.data(), cap, len);
    }();
    json o{{"value", r},
           {codesOut ? "codeCount" : "dstLen", len == kUntouched ? json() : json(len)}};
    if (len == kUntouched) return o;
    const ULONG m = std::min(len, cap);
    if constexpr (codesOut)
        o[outKey] = std::vector<WORD>(dst.begin(), dst.begin() + m);
    else
        o[outKey] = conf::hex(dst.data(), m);
    return o;
}

template <class In = BYTE, class Out = BYTE, class F>
conf::Handler S(F fn) {
    return [=](const json& a) { return Stage<In, Out>(a, fn); };
}

// Base64 texts: the hex bytes; c_str() adds the terminating zero the routines read up to.
std::string Text(const json& v) {
    const auto b = conf::bytes(v);
    return std::string(b.begin(), b.end());
}

json Decode(const json& a) {
    const auto text = Text(a.at("text"));
    const std::size_t size = 3 * std::strlen(text.c_str()) / 4 + 1;
    char* r = [&] {
        conf::LibraryCall lib;
        return ACompress::Base64_Decode(text.c_str());
    }();
    if (!r) return json{{"bytes", json()}};
    const auto* p = reinterpret_cast<const std::uint8_t*>(r);
    json out{{"bytes", conf::hex(p, size)}};
    if (const void* zero = std::memchr(p, 0, size))
        out["text"] = conf::hex(p, std::size_t(static_cast<const std::uint8_t*>(zero) - p));
    ACompress::Base64_Free(&r);
    return out;
}

// The byte table of IsStrInList, given as nodes [offset, byte, next], in the codec's layout.
std::vector<BYTE> Nodes(const json& nodes) {
    std::vector<BYTE> table(Probe::kLzwNodeSize);
    for (const auto& n : nodes) {
        const std::size_t o = conf::u32(n.at(0));
        const unsigned next = conf::u32(n.at(2));
        table.resize(std::max<std::size_t>(table.size(), o + Probe::kLzwNodeSize));
        table[o] = static_cast<BYTE>(conf::u32(n.at(1)));
        table[o + 1] = static_cast<BYTE>(next);
        table[o + 2] = static_cast<BYTE>(next >> 8);
    }
    return table;
}

const conf::Register reg{
    {"ACompress::Comp_LZW", S(ACompress::Comp_LZW)},
    {"ACompress::UnComp_LZW", S(ACompress::UnComp_LZW)},
    {"ACompress::Pack_LZW", S<BYTE, WORD>(ACompress::Pack_LZW)},
    {"ACompress::UnPack_LZW", S<WORD, BYTE>(ACompress::UnPack_LZW)},
    {"ACompress::TransformDataBits", S<WORD, BYTE>(ACompress::TransformDataBits)},
    // No capacity argument: the stage gets LzwResumeCodeBound(srcLen) codes.
    {"ACompress::ResumeDataBit",
     S<BYTE, WORD>([](const BYTE* s, ULONG n, WORD* c, ULONG, ULONG& k) {
         return ACompress::ResumeDataBit(s, n, c, k);
     })},
    {"ACompress::Comp_RLE", S(ACompress::Comp_RLE)},
    {"ACompress::UnComp_RLE", S(ACompress::UnComp_RLE)},
    {"ACompress::Comp_RLE8", S(Probe::Comp_RLE8)},
    {"ACompress::Comp_RLE24", S(Probe::Comp_RLE24)},
    {"ACompress::Comp_RLE4", S(Probe::Comp_RLE4)},
    {"ACompress::Pack1", S(Probe::Pack1)},
    {"ACompress::Pack2", S(Probe::Pack2)},
    {"ACompress::Pack",
     [](const json& a) {
         const int d = conf::i32(a.at("depth"));
         return Stage<BYTE, BYTE>(a, [d](const BYTE* s, ULONG n, BYTE* o, ULONG c, ULONG& l) {
             return ACompress::Pack(s, n, d, o, c, l);
         });
     }},
    {"ACompress::Pack_Value",
     conf::call(
         [](BYTE v, ULONG n, int depth, conf::Hex& dst, ULONG& len) {
             conf::harness([&] { dst.assign(Probe::kPackValueMaxBytes + 1, 0); });
             const int r = Probe::Pack_Value(v, n, depth, dst.data(), len);
             conf::harness([&] {
                 dst.resize(len == kUntouched ? 0 : std::min<std::size_t>(len, dst.size()));
             });
             return r;
         },
         conf::in<BYTE>("value"), conf::in<ULONG>("count"), conf::in<int>("depth"),
         conf::out<conf::Hex>("dst"), cz::Untouched("dstLen"))},
    {"ACompress::IsStrInList",
     conf::call(
         [](WORD p, BYTE c, const json& nodes, WORD first, WORD* code, WORD* last) {
             const auto table = conf::harness([&] { return Nodes(nodes); });
             return Probe::IsStrInList(p, c, table.data(), first, code, last);
         },
         conf::in<WORD>("prefix"), conf::in<BYTE>("ch"), conf::in<json>("nodes"),
         conf::in<WORD>("first"), conf::kept<WORD>("code", 0xBEEF).ptr(),
         conf::kept<WORD>("last", 0xBEEF).ptr())},
    {"ACompress::Init",
     [](const json&) {
         const int r = [] {
             conf::LibraryCall lib;
             return Probe::Init();
         }();
         std::vector<BYTE> rows;
         for (const BYTE* p : Probe::m_pRowTable) rows.insert(rows.end(), p, p + 7);
         return json{{"value", r},
                     {"bitTable", conf::hex(&Probe::m_byBitTable[0][0], 2048)},
                     {"rowTable", conf::hex(rows.data(), rows.size())}};
     }},
    {"ACompress::Exit", conf::call(Probe::Exit)},
    {"ACompress::Base64_Encode",
     [](const json& a) {
         const auto text = Text(a.at("text"));
         char* r = [&] {
             conf::LibraryCall lib;
             return ACompress::Base64_Encode(a.at("text").is_null() ? nullptr : text.c_str());
         }();
         json out{{"value", r ? json(std::string(r)) : json()}};
         ACompress::Base64_Free(&r);
         return out;
     }},
    {"ACompress::Base64_Decode", Decode},
    // "result": "null-pointer" (the char** itself null), null (*result null) or "allocated".
    {"ACompress::Base64_Free",
     [](const json& a) {
         const json& what = a.at("result");
         const bool allocated = what == "allocated", nullPointer = what == "null-pointer";
         char* r = nullptr;
         {
             conf::LibraryCall lib;
             r = allocated ? ACompress::Base64_Encode("kxbase") : nullptr;
             ACompress::Base64_Free(nullPointer ? nullptr : &r);
         }
         return json{{"result", r ? json("<not null>") : json()}, {"value", json()}};
     }},
};

}  // namespace
