// Vector comparison: integers, texts, booleans and null exactly; floating leaves per `cmp`.
#include "conformance.h"

#include <cmath>

namespace conf {

namespace {

bool is_float_text(const json& v) {
    if (!v.is_string()) return false;
    const auto& s = v.get_ref<const std::string&>();
    return s == "nan" || s == "inf" || s == "-inf";
}

bool is_numeric(const json& v) {
    return v.is_number() || is_float_text(v);
}

struct Comparer {
    const std::string& cmp;
    double abs_tol = 0.0;
    std::string& why;

    bool fail(const std::string& path, const json& got, const json& expect) {
        why = path + ": expected " + expect.dump() + ", got " + got.dump();
        return false;
    }

    bool floats(const std::string& path, const json& got, const json& expect, const json* tol) {
        const double g = num(got), e = num(expect);
        if (std::isnan(e) || std::isnan(g))
            return std::isnan(e) && std::isnan(g) ? true : fail(path, got, expect);
        if (g == e) return true;  // also -0.0 against 0.0 and equal infinities
        double allowed = 0.0;
        if (cmp == "tol" && tol && tol->is_number())
            allowed = tol->get<double>();
        else if (cmp.rfind("abs:", 0) == 0)
            allowed = abs_tol;
        if (std::isfinite(g) && std::isfinite(e) && std::fabs(g - e) <= allowed) return true;
        return fail(path, got, expect);
    }

    bool leaf(const std::string& path, const json& got, const json& expect, const json* tol) {
        if (expect.is_null()) return got.is_null() ? true : fail(path, got, expect);
        if (expect.is_boolean() || got.is_boolean()) {
            if (!is_numeric(got) && !got.is_boolean()) return fail(path, got, expect);
            const auto truth = [](const json& v) {
                return v.is_boolean() ? v.get<bool>() : num(v) != 0.0;
            };
            return truth(got) == truth(expect) ? true : fail(path, got, expect);
        }
        if (expect.is_string() && !(is_float_text(expect) && got.is_number()))
            return got == expect ? true : fail(path, got, expect);
        if (!is_numeric(got) || !is_numeric(expect)) return fail(path, got, expect);
        if (expect.is_number_integer() && got.is_number_integer()) {
            // Compare as 64-bit patterns when both fit; signed/unsigned mixes compare by value.
            const bool eneg = !expect.is_number_unsigned() && expect.get<std::int64_t>() < 0;
            const bool gneg = !got.is_number_unsigned() && got.get<std::int64_t>() < 0;
            if (eneg != gneg) return fail(path, got, expect);
            return u64(got) == u64(expect) ? true : fail(path, got, expect);
        }
        if (expect.is_number_integer())
            return num(got) == num(expect) ? true : fail(path, got, expect);
        return floats(path, got, expect, tol);
    }

    bool walk(const std::string& path, const json& got, const json& expect, const json* tol) {
        if (expect.is_object()) {
            if (!got.is_object()) return fail(path, got, expect);
            for (const auto& [key, value] : expect.items()) {
                if (!got.contains(key)) return fail(path + "." + key, json("<missing>"), value);
                const json* sub =
                    tol && tol->is_object() && tol->contains(key) ? &(*tol)[key] : nullptr;
                if (!walk(path + "." + key, got[key], value, sub)) return false;
            }
            return true;
        }
        if (expect.is_array()) {
            if (!got.is_array() || got.size() != expect.size()) return fail(path, got, expect);
            for (std::size_t i = 0; i < expect.size(); ++i) {
                const json* sub = tol && tol->is_array() && i < tol->size() ? &(*tol)[i] : nullptr;
                if (!walk(path + "[" + std::to_string(i) + "]", got[i], expect[i], sub))
                    return false;
            }
            return true;
        }
        return leaf(path, got, expect, tol);
    }
};

}  // namespace

bool matches(const json& got, const json& expect, const std::string& cmp, const json* tol,
             std::string& why) {
    Comparer c{cmp, 0.0, why};
    if (cmp.rfind("abs:", 0) == 0) c.abs_tol = std::stod(cmp.substr(4));
    if (!expect.contains("dstMask") || !got.contains("dst"))
        return c.walk("expect", got, expect, tol);
    // Bits outside dstMask carry no meaning: compare dst under the mask only.
    json e = expect, g = got;
    const auto mask = bytes(e["dstMask"]);
    auto d = bytes(g["dst"]), x = bytes(e["dst"]);
    if (d.size() == mask.size() && x.size() == mask.size()) {
        for (std::size_t i = 0; i < mask.size(); ++i) d[i] &= mask[i], x[i] &= mask[i];
        g["dst"] = hex(d.data(), d.size()), e["dst"] = hex(x.data(), x.size());
    }
    e.erase("dstMask");
    return c.walk("expect", g, e, tol);
}

}  // namespace conf
