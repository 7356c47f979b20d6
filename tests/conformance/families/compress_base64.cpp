// Golden vectors of the base64 family: ACompress::Base64_Encode, Base64_Decode, Base64_Free.
#include <cstring>
#include <string>
#include <vector>

#include <kxbase/compress/compress.h>

#include "conformance.h"

namespace {

// The text argument: its hex bytes, then a terminating zero (the routine reads to the first).
std::vector<char> Text(const conf::json& v) {
    const auto b = conf::bytes(v);
    std::vector<char> t(b.begin(), b.end());
    t.push_back('\0');
    return t;
}

static conf::Register reg{
    {"ACompress::Base64_Encode",
     [](const conf::json& a) {
         if (a.at("text").is_null()) {
             char* r = ACompress::Base64_Encode(nullptr);
             return conf::json{{"value", r ? conf::json("<not null>") : conf::json()}};
         }
         const auto text = Text(a.at("text"));
         char* r = ACompress::Base64_Encode(text.data());
         conf::json out{{"value", r ? conf::json(std::string(r)) : conf::json()}};
         ACompress::Base64_Free(&r);
         return out;
     }},
    {"ACompress::Base64_Decode",
     [](const conf::json& a) {
         const auto text = Text(a.at("text"));
         const std::size_t n = std::strlen(text.data());
         char* r = ACompress::Base64_Decode(text.data());
         if (!r) return conf::json{{"bytes", conf::json()}};
         const auto* p = reinterpret_cast<const std::uint8_t*>(r);
         const std::size_t size = 3 * n / 4 + 1;
         conf::json out{{"bytes", conf::hex(p, size)}};
         const void* zero = std::memchr(p, 0, size);
         if (zero) out["text"] = conf::hex(p, static_cast<const std::uint8_t*>(zero) - p);
         ACompress::Base64_Free(&r);
         return out;
     }},
    {"ACompress::Base64_Free",
     [](const conf::json& a) {
         const conf::json& what = a.at("result");
         if (what.is_string() && what.get<std::string>() == "null-pointer") {
             ACompress::Base64_Free(nullptr);
             return conf::json{{"result", conf::json()}};
         }
         char* r = nullptr;
         if (what.is_string() && what.get<std::string>() == "allocated")
             r = ACompress::Base64_Encode("kxbase");
         ACompress::Base64_Free(&r);
         return conf::json{{"result", r ? conf::json("<not null>") : conf::json()}};
     }},
};

}  // namespace
