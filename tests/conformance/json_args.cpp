#include "conformance.h"

#include <cmath>
#include <limits>
#include <map>

namespace conf {

namespace {
std::map<std::string, Handler>& registry() {
    static std::map<std::string, Handler> handlers;
    return handlers;
}
}  // namespace

void add(const std::string& fn, Handler h) {
    registry()[fn] = std::move(h);
}

Register::Register(std::initializer_list<std::pair<const char*, Handler>> handlers) {
    for (const auto& [fn, h] : handlers) add(fn, h);
}

std::vector<std::string> handler_names() {
    std::vector<std::string> names;
    for (const auto& [fn, h] : registry()) names.push_back(fn);
    return names;
}

const Handler* find_handler(const std::string& fn) {
    const auto it = registry().find(fn);
    return it == registry().end() ? nullptr : &it->second;
}

double num(const json& v) {
    if (v.is_string()) {
        const std::string s = v.get<std::string>();
        if (s == "nan") return std::numeric_limits<double>::quiet_NaN();
        if (s == "inf") return std::numeric_limits<double>::infinity();
        if (s == "-inf") return -std::numeric_limits<double>::infinity();
        throw std::runtime_error("not a number: " + s);
    }
    return v.get<double>();
}

std::int64_t i64(const json& v) {
    if (v.is_number_unsigned()) return static_cast<std::int64_t>(v.get<std::uint64_t>());
    if (v.is_number_integer()) return v.get<std::int64_t>();
    if (v.is_boolean()) return v.get<bool>() ? 1 : 0;
    if (v.is_number_float()) return static_cast<std::int64_t>(v.get<double>());
    throw std::runtime_error("not an integer: " + v.dump());
}

std::vector<std::uint8_t> bytes(const json& v) {
    std::vector<std::uint8_t> out;
    if (v.is_null()) return out;
    const std::string s = v.get<std::string>();
    auto nibble = [](char c) -> int {
        if (c >= '0' && c <= '9') return c - '0';
        if (c >= 'a' && c <= 'f') return c - 'a' + 10;
        if (c >= 'A' && c <= 'F') return c - 'A' + 10;
        throw std::runtime_error("bad hex digit");
    };
    out.reserve(s.size() / 2);
    for (std::size_t i = 0; i + 1 < s.size(); i += 2)
        out.push_back(static_cast<std::uint8_t>(nibble(s[i]) << 4 | nibble(s[i + 1])));
    return out;
}

json dbl(double v) {
    if (std::isnan(v)) return "nan";
    if (std::isinf(v)) return v > 0 ? "inf" : "-inf";
    return v;
}

std::string hex(const std::uint8_t* p, std::size_t n) {
    static const char digits[] = "0123456789abcdef";
    std::string out;
    out.reserve(2 * n);
    for (std::size_t i = 0; i < n; ++i) {
        out += digits[p[i] >> 4];
        out += digits[p[i] & 15];
    }
    return out;
}

}  // namespace conf
