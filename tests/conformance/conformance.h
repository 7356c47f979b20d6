// The golden-vector runner's interface for family files.
//
// Each file in families/ registers handlers keyed by the vector's "fn" string. A handler
// receives the vector's "args" object and returns the outputs as a JSON object keyed like
// "expect". It throws conf::Unsupported for an overload it does not handle; a
// std::invalid_argument escaping the library becomes {"exception": "invalid_argument"}.
#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include <kxbase/platform/types.h>

namespace conf {

using json = nlohmann::json;
using Handler = std::function<json(const json& args)>;

struct Unsupported : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Registers handlers at static-initialisation time: `static conf::Register r{{"fn", h}, ...};`
struct Register {
    Register(std::initializer_list<std::pair<const char*, Handler>> handlers);
};

const Handler* find_handler(const std::string& fn);

// ---- reading arguments -------------------------------------------------------------------
/// A double: a JSON number or one of "nan", "inf", "-inf".
double num(const json& v);
/// A signed / unsigned integer of any JSON integer (negative values wrap like C conversions).
std::int64_t i64(const json& v);
std::uint64_t u64(const json& v);
inline std::int32_t i32(const json& v) {
    return static_cast<std::int32_t>(i64(v));
}
inline std::uint32_t u32(const json& v) {
    return static_cast<std::uint32_t>(u64(v));
}
/// Lower-case hex text to bytes.
std::vector<std::uint8_t> bytes(const json& v);
/// Doubles of a JSON list.
std::vector<double> nums(const json& v);

// ---- writing outputs ---------------------------------------------------------------------
/// A double as the vectors write it: finite values as numbers, others as "nan"/"inf"/"-inf".
json dbl(double v);
json dbls(const double* v, std::size_t n);
std::string hex(const std::uint8_t* p, std::size_t n);
inline std::string hex(const std::vector<std::uint8_t>& v) {
    return hex(v.data(), v.size());
}

// ---- shared argument and output shapes --------------------------------------------------
/// A handler calling f(args, extra...), so that one helper serves several rows of a table.
template <class F, class... X>
Handler with(F f, X... x) {
    return [=](const json& a) { return json(f(a, x...)); };
}
/// {"value": v}; doubles are written with dbl.
template <class T>
json value(const T& v) {
    return json{{"value", std::is_floating_point_v<T> ? dbl(v) : json(v)}};
}
/// An output preset to `sentinel`: null when the call left it alone, else its value.
template <class T>
json or_null(const T& v, const T& sentinel) {
    return v == sentinel ? json() : json(v);
}
/// A byte-buffer argument: JSON null passes a null pointer, otherwise the hex bytes, which
/// may be longer than the length the call is told. `b` holds the buffer after the call.
struct Buf {
    std::vector<std::uint8_t> b;
    bool null;
    explicit Buf(const json& v) : b(bytes(v)), null(v.is_null()) {}
    std::uint8_t* get() { return null ? nullptr : b.data(); }
};
/// An output of `cap` elements (and one spare) whose length the call reports: null when the
/// arguments give `key` as JSON null; `len` starts at a sentinel so that a length left alone
/// comes back as null.
template <class T = std::uint8_t>
struct CapOut {
    static constexpr ULONG kUntouched = 0xA5A5A5A5u;
    std::vector<T> v;
    bool null;
    ULONG len = kUntouched;  // the library's length type (unsigned long on Windows)
    CapOut(const json& a, const char* key, std::size_t cap)
        : v(cap + 1), null(a.contains(key) && a[key].is_null()) {}
    T* get() { return null ? nullptr : v.data(); }
    bool written() const { return len != kUntouched; }
    json length() const { return or_null(len, kUntouched); }
};

// ---- comparison (compare.cpp) ------------------------------------------------------------
/// Compares got against expect as the vector's cmp (and tol) say; on a mismatch `why`
/// receives a short description of the first differing leaf.
bool matches(const json& got, const json& expect, const std::string& cmp, const json* tol,
             std::string& why);

}  // namespace conf
