// Golden vectors of the address texts and the typed and string lists.
#include <algorithm>
#include <bit>
#include <cstring>
#include <string>
#include <vector>

#include <kxbase/mathopt/amathopt.h>

#include "conformance.h"

namespace {

using conf::call;
using conf::in;
using conf::json;
using conf::out;
using A = AMathOpt;
using Bytes = std::vector<BYTE>;

// Element sizes of the typed lists: 1 int32, 2 uint32, 3 int64, 4 uint64, 5 double, else byte.
std::size_t ElementSize(BYTE type) {
    return type == 1 || type == 2 ? 4 : type >= 3 && type <= 5 ? 8 : 1;
}

// Elements travel as the low bytes of a 64-bit word (little-endian host), doubles as their bits.
Bytes RawList(const json& list, BYTE type) {
    const std::size_t size = ElementSize(type);
    Bytes raw(list.size() * size + 8);
    for (std::size_t i = 0; i < list.size(); ++i) {
        const UINT64 u = type == 5 ? std::bit_cast<UINT64>(conf::num(list[i])) : conf::u64(list[i]);
        std::memcpy(&raw[i * size], &u, size);
    }
    return raw;
}

json ListJson(const Bytes& raw, int count, BYTE type) {
    json out = json::array();
    for (std::size_t i = 0, size = ElementSize(type); i < static_cast<std::size_t>(count); ++i) {
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

// Address texts are read into pre-filled arrays of N bytes.
template <std::size_t N>
conf::Handler AddressFrom(bool (*fn)(BYTE*, const char*), const char* key) {
    return call([fn](Bytes& b, const std::string& t) { return fn(b.data(), t.c_str()); },
                out(key, Bytes(N, 0xEE)), in<std::string>("text"));
}
template <std::size_t N>
conf::Handler AddressTo(bool (*fn)(CString&, const BYTE*), const char* key) {
    return call(
        [fn](CString& text, Bytes& b) {
            conf::harness([&] { b.resize(std::max(b.size(), N)); });
            return fn(text, b.data());
        },
        out("text", CString("junk")), in<Bytes>(key));
}
template <std::size_t N>
conf::Handler Valid(bool (*fn)(const BYTE*), const char* key) {
    return call(
        [fn](Bytes& b) {
            conf::harness([&] { b.resize(std::max(b.size(), N)); });
            return fn(b.data());
        },
        in<Bytes>(key));
}
conf::Handler Valid(bool (*fn)(const char*)) {
    return call([fn](const std::string& t) { return fn(t.c_str()); }, in<std::string>("text"));
}

// The typed list as text into a buffer of exactly `size` bytes followed by guard bytes.
int ToBuffer(json& buffer, int size, const json& list, BYTE type, int hex) {
    conf::Harness harness;
    const std::size_t n = static_cast<std::size_t>(std::max(size, 0));
    constexpr char kFill = '\x7f';
    std::vector<char> b(n + 16, kFill);
    const auto raw = RawList(list, type);
    const int v = [&] {
        conf::LibraryCall lib;
        return A::TransListToString(b.data(), size, raw.data(), int(list.size()), type, hex);
    }();
    const auto touched = [&](std::size_t from, std::size_t to) {
        return std::any_of(b.begin() + long(from), b.begin() + long(to),
                           [](char c) { return c != kFill; });
    };
    if (touched(n, b.size())) throw std::runtime_error("wrote past size");
    if (v >= 0)
        buffer = std::string(b.data(), std::size_t(v));
    else
        buffer = touched(0, n) ? json("touched") : json(nullptr);
    return v;
}

int FromText(json& list, int max, BYTE type, const std::string& text, int hex) {
    conf::Harness harness;
    Bytes raw(static_cast<std::size_t>(std::max(max, 0)) * 8 + 8, 0);
    const int v = [&] {
        conf::LibraryCall lib;
        return A::TransListFromString(raw.data(), max, type, text.c_str(), hex);
    }();
    list = ListJson(raw, v, type);
    return v;
}

// Joins "items"; with "count" the plain-array form is used (count may be below the items).
int JoinItems(CString& text, const CStringArray& items, int count) {
    if (count < 0) return A::TransListToString(text, items);
    if (count > items.GetSize()) throw std::runtime_error("count exceeds the items");
    return A::TransListToString(text, items.GetData(), count);
}

const auto type = in<BYTE>("type");
const auto hex = in<int>("hex");

const conf::Register reg{
    {"AMathOpt::ipaddress_TransFromString", AddressFrom<4>(A::ipaddress_TransFromString, "ip")},
    {"AMathOpt::macaddress_TransFromString", AddressFrom<6>(A::macaddress_TransFromString, "mac")},
    {"AMathOpt::ipaddress_TransToString", AddressTo<4>(A::ipaddress_TransToString, "ip")},
    {"AMathOpt::macaddress_TransToString", AddressTo<6>(A::macaddress_TransToString, "mac")},
    {"AMathOpt::ipaddress_IsValid(text)", Valid(A::ipaddress_IsValid)},
    {"AMathOpt::macaddress_IsValid(text)", Valid(A::macaddress_IsValid)},
    {"AMathOpt::ipaddress_IsValid(bytes)", Valid<4>(A::ipaddress_IsValid, "ip")},
    {"AMathOpt::macaddress_IsValid(bytes)", Valid<6>(A::macaddress_IsValid, "mac")},
    {"AMathOpt::TransListToString",
     call(
         [](CString& t, const json& l, BYTE ty, int h) {
             const auto raw = conf::harness([&] { return RawList(l, ty); });
             return A::TransListToString(t, raw.data(), int(l.size()), ty, h);
         },
         out("text", CString("junk")), in<json>("list"), type, hex)},
    {"AMathOpt::TransListToString(buffer)",
     call(ToBuffer, out<json>("buffer"), in<int>("size"), in<json>("list"), type, hex)},
    {"AMathOpt::TransListFromString",
     call(FromText, out<json>("list"), in<int>("max"), type, in<std::string>("text"), hex)},
    {"AMathOpt::TransListToString(strings)",
     call(JoinItems, out("text", CString("junk")), in<CStringArray>("items"),
          conf::opt("count", -1))},
    {"AMathOpt::TransListFromString(strings)",
     call([](CStringArray& items,
             const std::string& t) { return A::TransListFromString(items, t.c_str()); },
          out("items", conf::Codec<CStringArray>::get(json::array({"junk"}))),
          in<std::string>("text"))},
};

}  // namespace
