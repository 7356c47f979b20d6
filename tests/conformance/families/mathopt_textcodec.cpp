// Golden vectors of the address texts and the typed and string lists.
#include <algorithm>
#include <bit>
#include <cstring>
#include <string>
#include <vector>

#include <kxbase/mathopt/amathopt.h>

#include "conformance.h"

namespace {

using conf::json;
using conf::value;

json ByteList(const BYTE* p, size_t n) {
    return json(std::vector<int>(p, p + n));
}

std::vector<BYTE> Bytes(const json& v) {
    std::vector<BYTE> out;
    for (const auto& x : v) out.push_back(static_cast<BYTE>(conf::u32(x)));
    return out;
}

// Element sizes of the typed lists: 1 int32, 2 uint32, 3 int64, 4 uint64, 5 double, else byte.
size_t ElementSize(BYTE type) {
    return type == 1 || type == 2 ? 4 : type >= 3 && type <= 5 ? 8 : 1;
}

// Elements travel as the low bytes of a 64-bit word (little-endian host), doubles as their bits.
std::vector<BYTE> RawList(const json& list, BYTE type) {
    const size_t size = ElementSize(type);
    std::vector<BYTE> raw(list.size() * size);
    for (size_t i = 0; i < list.size(); ++i) {
        const UINT64 u = type == 5 ? std::bit_cast<UINT64>(conf::num(list[i])) : conf::u64(list[i]);
        std::memcpy(&raw[i * size], &u, size);
    }
    return raw;
}

json ListJson(const std::vector<BYTE>& raw, int count, BYTE type) {
    json out = json::array();
    for (size_t i = 0, size = ElementSize(type); i < static_cast<size_t>(count); ++i) {
        UINT64 u = 0;
        std::memcpy(&u, raw.data() + i * size, size);
        if (type == 1)
            out.push_back(static_cast<std::int32_t>(u));
        else if (type == 3)
            out.push_back(static_cast<std::int64_t>(u));
        else
            out.push_back(type == 5 ? conf::dbl(std::bit_cast<double>(u)) : json(u));
    }
    return out;
}

std::string Text(const json& a) {
    return a["text"].get<std::string>();
}

// Reads an address text into a pre-filled array of n bytes.
template <int N>
json AddressFrom(const json& a, bool (*fn)(BYTE*, const char*), const char* key) {
    BYTE out[N];
    std::memset(out, 0xEE, N);
    const bool ok = fn(out, Text(a).c_str());
    return json{{"value", ok}, {key, ByteList(out, N)}};
}

json AddressTo(const json& a, bool (*fn)(CString&, const BYTE*), const char* key) {
    CString text("junk");
    const bool ok = fn(text, Bytes(a[key]).data());
    return json{{"value", ok}, {"text", text.str()}};
}

BYTE Type(const json& a) {
    return static_cast<BYTE>(conf::u32(a["type"]));
}

static conf::Register reg{
    {"AMathOpt::ipaddress_TransFromString",
     [](const json& a) { return AddressFrom<4>(a, AMathOpt::ipaddress_TransFromString, "ip"); }},
    {"AMathOpt::macaddress_TransFromString",
     [](const json& a) { return AddressFrom<6>(a, AMathOpt::macaddress_TransFromString, "mac"); }},
    {"AMathOpt::ipaddress_TransToString",
     [](const json& a) { return AddressTo(a, AMathOpt::ipaddress_TransToString, "ip"); }},
    {"AMathOpt::macaddress_TransToString",
     [](const json& a) { return AddressTo(a, AMathOpt::macaddress_TransToString, "mac"); }},
    {"AMathOpt::ipaddress_IsValid(text)",
     [](const json& a) { return value(AMathOpt::ipaddress_IsValid(Text(a).c_str())); }},
    {"AMathOpt::macaddress_IsValid(text)",
     [](const json& a) { return value(AMathOpt::macaddress_IsValid(Text(a).c_str())); }},
    {"AMathOpt::ipaddress_IsValid(bytes)",
     [](const json& a) { return value(AMathOpt::ipaddress_IsValid(Bytes(a["ip"]).data())); }},
    {"AMathOpt::macaddress_IsValid(bytes)",
     [](const json& a) { return value(AMathOpt::macaddress_IsValid(Bytes(a["mac"]).data())); }},
    {"AMathOpt::TransListToString",
     [](const json& a) {
         CString text("junk");
         const int v =
             AMathOpt::TransListToString(text, RawList(a["list"], Type(a)).data(),
                                         int(a["list"].size()), Type(a), conf::i32(a["hex"]));
         return json{{"value", v}, {"text", text.str()}};
     }},
    {"AMathOpt::TransListToString(buffer)",
     [](const json& a) {
         const size_t size = static_cast<size_t>(std::max(conf::i32(a["size"]), 0));
         // The buffer holds exactly size bytes, pre-filled, then guard bytes.
         constexpr char kFill = '\x7f';
         std::vector<char> buffer(size + 16, kFill);
         const int v = AMathOpt::TransListToString(
             buffer.data(), conf::i32(a["size"]), RawList(a["list"], Type(a)).data(),
             int(a["list"].size()), Type(a), conf::i32(a["hex"]));
         const auto touched = [&](size_t from, size_t to) {
             return std::any_of(&buffer[from], &buffer[0] + to, [](char c) { return c != kFill; });
         };
         if (touched(size, buffer.size())) throw std::runtime_error("wrote past size");
         if (v >= 0) return json{{"value", v}, {"buffer", std::string(buffer.data(), size_t(v))}};
         return json{{"value", v}, {"buffer", touched(0, size) ? json("touched") : json(nullptr)}};
     }},
    {"AMathOpt::TransListFromString",
     [](const json& a) {
         const int max = conf::i32(a["max"]);
         std::vector<BYTE> raw(static_cast<size_t>(std::max(max, 0)) * 8 + 8, 0);
         const int v = AMathOpt::TransListFromString(raw.data(), max, Type(a), Text(a).c_str(),
                                                     conf::i32(a["hex"]));
         return json{{"value", v}, {"list", ListJson(raw, v, Type(a))}};
     }},
    {"AMathOpt::TransListFromString(strings)",
     [](const json& a) {
         CStringArray items;
         items.Add("junk");
         const int v = AMathOpt::TransListFromString(items, Text(a).c_str());
         json out = json::array();
         for (const CString& s : items) out.push_back(s.str());
         return json{{"value", v}, {"items", out}};
     }},
};

}  // namespace
