// Golden vectors of the base64 family: ACompress::Base64_Encode, Base64_Decode, Base64_Free.
#include <cstring>
#include <string>

#include <kxbase/compress/compress.h>

#include "conformance.h"

namespace {

// The text argument: its hex bytes; c_str() adds the terminating zero (the routines read up to
// the first zero byte).
std::string Text(const conf::json& v) {
    const auto b = conf::bytes(v);
    return std::string(b.begin(), b.end());
}

static conf::Register reg{
    {"ACompress::Base64_Encode",
     [](const conf::json& a) {
         const auto text = Text(a.at("text"));
         char* r = ACompress::Base64_Encode(a.at("text").is_null() ? nullptr : text.c_str());
         conf::json out{{"value", r ? conf::json(std::string(r)) : conf::json()}};
         ACompress::Base64_Free(&r);
         return out;
     }},
    {"ACompress::Base64_Decode",
     [](const conf::json& a) {
         const auto text = Text(a.at("text"));
         const std::size_t size = 3 * std::strlen(text.c_str()) / 4 + 1;
         char* r = ACompress::Base64_Decode(text.c_str());
         if (!r) return conf::json{{"bytes", conf::json()}};
         const auto* p = reinterpret_cast<const std::uint8_t*>(r);
         conf::json out{{"bytes", conf::hex(p, size)}};
         const void* zero = std::memchr(p, 0, size);
         if (zero) out["text"] = conf::hex(p, static_cast<const std::uint8_t*>(zero) - p);
         ACompress::Base64_Free(&r);
         return out;
     }},
    {"ACompress::Base64_Free",
     [](const conf::json& a) {
         const conf::json& what = a.at("result");  // "null-pointer", "allocated" or null
         if (what == "null-pointer") {
             ACompress::Base64_Free(nullptr);
             return conf::json{{"result", conf::json()}};
         }
         char* r = what == "allocated" ? ACompress::Base64_Encode("kxbase") : nullptr;
         ACompress::Base64_Free(&r);
         return conf::json{{"result", r ? conf::json("<not null>") : conf::json()}};
     }},
};

}  // namespace
