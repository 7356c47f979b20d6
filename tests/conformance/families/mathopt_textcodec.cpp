// Golden vectors of the address texts and the typed and string lists.
#include <cstring>
#include <string>
#include <vector>

#include <kxbase/mathopt/amathopt.h>

#include "conformance.h"

namespace {

using conf::json;

json ByteList(const BYTE* p, size_t n) {
    return json(std::vector<int>(p, p + n));
}

std::vector<BYTE> Bytes(const json& v) {
    std::vector<BYTE> out;
    for (const auto& x : v) out.push_back(static_cast<BYTE>(conf::u32(x)));
    return out;
}

/// The list of a vector as the raw element array of its type.
std::vector<BYTE> RawList(const json& list, BYTE type) {
    std::vector<BYTE> raw;
    auto put = [&raw](const void* p, size_t n) {
        raw.insert(raw.end(), static_cast<const BYTE*>(p), static_cast<const BYTE*>(p) + n);
    };
    for (const auto& x : list) {
        switch (type) {
            case 1:
            case 2: {
                const UINT v = conf::u32(x);
                put(&v, sizeof v);
                break;
            }
            case 3:
            case 4: {
                const UINT64 v = conf::u64(x);
                put(&v, sizeof v);
                break;
            }
            case 5: {
                const double v = conf::num(x);
                put(&v, sizeof v);
                break;
            }
            default: {
                const BYTE v = static_cast<BYTE>(conf::u32(x));
                put(&v, 1);
                break;
            }
        }
    }
    return raw;
}

json ListJson(const std::vector<BYTE>& raw, int count, BYTE type) {
    json out = json::array();
    for (int i = 0; i < count; ++i) {
        switch (type) {
            case 1: {
                std::int32_t v;
                std::memcpy(&v, raw.data() + i * 4, 4);
                out.push_back(v);
                break;
            }
            case 2: {
                std::uint32_t v;
                std::memcpy(&v, raw.data() + i * 4, 4);
                out.push_back(v);
                break;
            }
            case 3: {
                std::int64_t v;
                std::memcpy(&v, raw.data() + i * 8, 8);
                out.push_back(v);
                break;
            }
            case 4: {
                std::uint64_t v;
                std::memcpy(&v, raw.data() + i * 8, 8);
                out.push_back(v);
                break;
            }
            case 5: {
                double v;
                std::memcpy(&v, raw.data() + i * 8, 8);
                out.push_back(conf::dbl(v));
                break;
            }
            default:
                out.push_back(raw[static_cast<size_t>(i)]);
                break;
        }
    }
    return out;
}

static conf::Register reg{
    {"AMathOpt::ipaddress_TransFromString",
     [](const json& a) {
         BYTE ip[4] = {0xEE, 0xEE, 0xEE, 0xEE};
         const bool ok =
             AMathOpt::ipaddress_TransFromString(ip, a["text"].get<std::string>().c_str());
         return json{{"value", ok}, {"ip", ByteList(ip, 4)}};
     }},
    {"AMathOpt::ipaddress_IsValid(text)",
     [](const json& a) {
         return json{{"value", AMathOpt::ipaddress_IsValid(a["text"].get<std::string>().c_str())}};
     }},
    {"AMathOpt::ipaddress_IsValid(bytes)",
     [](const json& a) {
         return json{{"value", AMathOpt::ipaddress_IsValid(Bytes(a["ip"]).data())}};
     }},
    {"AMathOpt::ipaddress_TransToString",
     [](const json& a) {
         CString text("junk");
         const bool ok = AMathOpt::ipaddress_TransToString(text, Bytes(a["ip"]).data());
         return json{{"value", ok}, {"text", text.str()}};
     }},
    {"AMathOpt::macaddress_TransFromString",
     [](const json& a) {
         BYTE mac[6] = {0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE};
         const bool ok =
             AMathOpt::macaddress_TransFromString(mac, a["text"].get<std::string>().c_str());
         return json{{"value", ok}, {"mac", ByteList(mac, 6)}};
     }},
    {"AMathOpt::macaddress_TransToString",
     [](const json& a) {
         CString text("junk");
         const bool ok = AMathOpt::macaddress_TransToString(text, Bytes(a["mac"]).data());
         return json{{"value", ok}, {"text", text.str()}};
     }},
    {"AMathOpt::macaddress_IsValid(text)",
     [](const json& a) {
         return json{{"value", AMathOpt::macaddress_IsValid(a["text"].get<std::string>().c_str())}};
     }},
    {"AMathOpt::macaddress_IsValid(bytes)",
     [](const json& a) {
         return json{{"value", AMathOpt::macaddress_IsValid(Bytes(a["mac"]).data())}};
     }},
    {"AMathOpt::TransListToString",
     [](const json& a) {
         const BYTE type = static_cast<BYTE>(conf::u32(a["type"]));
         const std::vector<BYTE> raw = RawList(a["list"], type);
         CString text("junk");
         const int v = AMathOpt::TransListToString(
             text, raw.data(), static_cast<int>(a["list"].size()), type, conf::i32(a["hex"]));
         return json{{"value", v}, {"text", text.str()}};
     }},
    {"AMathOpt::TransListToString(buffer)",
     [](const json& a) {
         const BYTE type = static_cast<BYTE>(conf::u32(a["type"]));
         const std::vector<BYTE> raw = RawList(a["list"], type);
         const int size = conf::i32(a["size"]);
         // The buffer holds exactly size bytes, pre-filled, then guard bytes.
         constexpr char kFill = '\x7f';
         std::vector<char> buffer(static_cast<size_t>(size > 0 ? size : 0) + 16, kFill);
         const int v = AMathOpt::TransListToString(buffer.data(), size, raw.data(),
                                                   static_cast<int>(a["list"].size()), type,
                                                   conf::i32(a["hex"]));
         for (size_t i = static_cast<size_t>(size > 0 ? size : 0); i < buffer.size(); ++i)
             if (buffer[i] != kFill) throw std::runtime_error("wrote past size");
         json out{{"value", v}};
         bool untouched = true;
         for (int i = 0; i < size; ++i)
             untouched = untouched && buffer[static_cast<size_t>(i)] == kFill;
         if (v < 0 && untouched)
             out["buffer"] = nullptr;
         else if (v >= 0)
             out["buffer"] = std::string(buffer.data(), static_cast<size_t>(v));
         else
             out["buffer"] = "touched";
         return out;
     }},
    {"AMathOpt::TransListFromString",
     [](const json& a) {
         const BYTE type = static_cast<BYTE>(conf::u32(a["type"]));
         const int max = conf::i32(a["max"]);
         std::vector<BYTE> raw(static_cast<size_t>(max > 0 ? max : 0) * 8 + 8, 0);
         const int v = AMathOpt::TransListFromString(
             raw.data(), max, type, a["text"].get<std::string>().c_str(), conf::i32(a["hex"]));
         return json{{"value", v}, {"list", ListJson(raw, v, type)}};
     }},
    {"AMathOpt::TransListFromString(strings)",
     [](const json& a) {
         CStringArray items;
         items.Add("junk");
         const int v = AMathOpt::TransListFromString(items, a["text"].get<std::string>().c_str());
         json out = json::array();
         for (const CString& s : items) out.push_back(s.str());
         return json{{"value", v}, {"items", out}};
     }},
};

}  // namespace
