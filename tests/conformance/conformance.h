// The golden-vector runner's interface for family files.
//
// A family file registers one handler per vector "fn" string. A handler receives the vector's
// "args" object and returns the outputs as a JSON object keyed like "expect". It throws
// conf::Unsupported for an overload it does not handle; a std::invalid_argument escaping the
// library becomes {"exception": "invalid_argument"}.
//
// Most handlers are data: call(fn, params...) names, for each argument of fn, the key it is
// read from, its kind (a C++ type with a Codec) and how it is passed and reported back. Only
// operations whose outputs need a rule of their own (capacity-bounded buffers, masks, guards)
// keep a hand-written handler.
#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <functional>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include <kxbase/platform.h>

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

/// Registers one handler (for families that build their names in a loop).
void add(const std::string& fn, Handler h);

const Handler* find_handler(const std::string& fn);
/// Every bound operation name, sorted (--list).
std::vector<std::string> handler_names();

// ---- library-call window (alloc_sweep.cpp) ----------------------------------------------
/// Marks where a handler runs library code. The allocation-failure sweep fails allocations
/// only inside such a window, so an injected failure never lands in the harness's own JSON
/// work. Outside the sweep build it only counts nesting.
inline int library_depth = 0;
struct LibraryCall {
    LibraryCall() { ++library_depth; }
    ~LibraryCall() { --library_depth; }
    LibraryCall(const LibraryCall&) = delete;
    LibraryCall& operator=(const LibraryCall&) = delete;
};
/// The opposite, inside a bound lambda: the harness's own preparation or checking around a
/// library call, which the sweep must not fail. A LibraryCall inside it counts again.
struct Harness {
    int saved = library_depth;
    Harness() { library_depth = 0; }
    ~Harness() { library_depth = saved; }
    Harness(const Harness&) = delete;
    Harness& operator=(const Harness&) = delete;
};
template <class F>
decltype(auto) harness(F f) {
    Harness h;
    return f();
}

// ---- scalar readers and writers (json_args.cpp) ------------------------------------------
/// A double: a JSON number or one of "nan", "inf", "-inf".
double num(const json& v);
/// An integer of any JSON number (negative values wrap like C conversions; 200.0 reads 200).
std::int64_t i64(const json& v);
inline std::uint64_t u64(const json& v) {
    return static_cast<std::uint64_t>(i64(v));
}
inline std::int32_t i32(const json& v) {
    return static_cast<std::int32_t>(i64(v));
}
inline std::uint32_t u32(const json& v) {
    return static_cast<std::uint32_t>(i64(v));
}
/// Lower-case hex text to bytes, and back.
std::vector<std::uint8_t> bytes(const json& v);
std::string hex(const std::uint8_t* p, std::size_t n);
/// A double as the vectors write it: finite values as numbers, others as "nan"/"inf"/"-inf".
json dbl(double v);

// ---- kinds: how a C++ value is read from and written to JSON ----------------------------
/// A byte buffer written as hex text.
struct Hex : std::vector<std::uint8_t> {};

template <class T, class = void>
struct Codec {
    static T get(const json& v) {
        if constexpr (std::is_same_v<T, bool>)
            return v.is_boolean() ? v.get<bool>() : i64(v) != 0;
        else if constexpr (std::is_floating_point_v<T>)
            return static_cast<T>(num(v));
        else
            return static_cast<T>(i64(v));
    }
    static json put(const T& v) {
        if constexpr (std::is_floating_point_v<T>)
            return dbl(v);
        else if constexpr (std::is_enum_v<T>)
            return static_cast<std::int64_t>(v);
        else
            return v;
    }
};
template <>
struct Codec<std::string> {
    static std::string get(const json& v) { return v.get<std::string>(); }
    static json put(const std::string& v) { return v; }
};
template <>
struct Codec<json> {
    static json get(const json& v) { return v; }
    static json put(const json& v) { return v; }
};
template <>
struct Codec<CString> {
    static CString get(const json& v) { return CString(v.get<std::string>().c_str()); }
    static json put(const CString& v) { return v.str(); }
};
template <>
struct Codec<Hex> {
    static Hex get(const json& v) { return Hex{bytes(v)}; }
    static json put(const Hex& v) { return hex(v.data(), v.size()); }
};
template <class T>
struct Codec<std::vector<T>> {
    static std::vector<T> get(const json& v) {
        std::vector<T> out;
        for (const auto& e : v) out.push_back(Codec<T>::get(e));
        return out;
    }
    static json put(const std::vector<T>& v) {
        json out = json::array();
        for (const auto& e : v) out.push_back(Codec<T>::put(e));
        return out;
    }
};
template <class T, std::size_t N>
struct Codec<std::array<T, N>> {
    static std::array<T, N> get(const json& v) {
        std::array<T, N> out{};
        for (std::size_t i = 0; i < N; ++i) out[i] = Codec<T>::get(v.at(i));
        return out;
    }
    static json put(const std::array<T, N>& v) {
        json out = json::array();
        for (const auto& e : v) out.push_back(Codec<T>::put(e));
        return out;
    }
};
template <class T>
struct Codec<CArray<T>> {
    static CArray<T> get(const json& v) {
        CArray<T> out;
        for (const auto& e : v) out.Add(Codec<T>::get(e));
        return out;
    }
    static json put(const CArray<T>& v) {
        json out = json::array();
        for (INT_PTR i = 0; i < v.GetSize(); ++i) out.push_back(Codec<T>::put(v[i]));
        return out;
    }
};

template <class T>
json put(const T& v) {
    return Codec<T>::put(v);
}
template <class T>
json put_all(const T* p, std::size_t n) {
    return Codec<std::vector<T>>::put(std::vector<T>(p, p + n));
}

/// Equality for "left untouched": byte-wise for plain records (so NaN sentinels work).
template <class T>
bool same(const T& a, const T& b) {
    if constexpr (std::is_trivially_copyable_v<T>)
        return std::memcmp(&a, &b, sizeof(T)) == 0;
    else
        return Codec<T>::put(a) == Codec<T>::put(b);
}

// ---- parameters: one argument of a bound operation ---------------------------------------
/// How an argument reaches the call: the value by reference, its address, or (for vectors and
/// buffers) the address of its first element.
enum class Pass { Ref, Ptr, Data };

template <class T, Pass P = Pass::Ref>
struct Param {
    const char* key = nullptr;  // read from args[key]; nullptr: starts as `init`
    const char* out = nullptr;  // reported as outputs[out] after the call; nullptr: not reported
    T init{};
    bool nullIfInit = false;  // report null when the call left the value at `init`
    bool nullable = false;    // a JSON null argument passes a null pointer
    bool optional = false;    // an absent argument keeps `init`

    /// Report the value after the call under `k` (default: the argument's own key).
    Param to(const char* k = nullptr) const {
        Param p = *this;
        p.out = k ? k : key;
        return p;
    }
    Param<T, Pass::Ptr> ptr() const { return {key, out, init, nullIfInit, nullable, optional}; }
    Param<T, Pass::Data> data() const { return {key, out, init, nullIfInit, nullable, optional}; }
    Param orNull() const {
        Param p = *this;
        p.nullable = true;
        return p;
    }

    struct Slot {
        const Param* d;
        T v;
        bool isNull;
        decltype(auto) ref() {
            if constexpr (P == Pass::Ptr)
                return isNull ? static_cast<T*>(nullptr) : &v;
            else if constexpr (P == Pass::Data)
                return isNull ? nullptr : v.data();
            else
                return (v);
        }
        void report(json& o) const {
            if (d->out) o[d->out] = d->nullIfInit && same(v, d->init) ? json() : Codec<T>::put(v);
        }
    };
    Slot make(const json& a) const {
        Slot s{this, init, false};
        if (!key || (optional && !a.contains(key))) return s;
        const json& j = a.at(key);
        if (nullable && j.is_null())
            s.isNull = true;
        else
            s.v = Codec<T>::get(j);
        return s;
    }
};

/// An argument read from args[key].
template <class T>
Param<T> in(const char* key) {
    return {key};
}
/// An argument that the vectors may leave out; then it is `fallback`.
template <class T>
Param<T> opt(const char* key, T fallback) {
    Param<T> p{key, nullptr, fallback};
    p.optional = true;
    return p;
}
/// An output that starts at `init` and is always reported.
template <class T>
Param<T> out(const char* key, T init = T{}) {
    return {nullptr, key, init};
}
/// An output preset to `sentinel`, reported as null when the call leaves it so.
template <class T>
Param<T> kept(const char* key, T sentinel) {
    return {nullptr, key, sentinel, true};
}
/// A fixed argument value that the vectors do not give.
template <class T>
Param<T> fixed(T v) {
    return {nullptr, nullptr, v};
}
/// A byte buffer (hex; JSON null passes a null pointer).
inline Param<Hex, Pass::Data> buf(const char* key) {
    return in<Hex>(key).orNull().data();
}

/// Binds an operation: f is called with each parameter's value; a non-void result is
/// reported as outputs[result] ("value" unless named).
template <class F, class... A>
Handler call_as(const char* result, F f, A... params) {
    return [=](const json& a) {
        std::tuple<typename A::Slot...> slots{params.make(a)...};
        json o = json::object();
        std::apply(
            [&](auto&... s) {
                using R = decltype(std::invoke(f, s.ref()...));
                if constexpr (std::is_void_v<R>) {
                    LibraryCall lib;
                    std::invoke(f, s.ref()...);
                } else {
                    std::decay_t<R> r = [&] {
                        LibraryCall lib;
                        return std::invoke(f, s.ref()...);
                    }();
                    o[result] = Codec<std::decay_t<R>>::put(r);
                }
                (s.report(o), ...);
            },
            slots);
        return o;
    };
}
template <class F, class... A>
Handler call(F f, A... params) {
    return call_as("value", f, params...);
}

// ---- compare (compare.cpp) ---------------------------------------------------------------
/// Compares got against expect as the vector's cmp (and tol) say; on a mismatch `why`
/// receives a short description of the first differing leaf.
bool matches(const json& got, const json& expect, const std::string& cmp, const json* tol,
             std::string& why);

}  // namespace conf
