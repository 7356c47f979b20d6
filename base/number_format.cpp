// Number helpers: fixed-place decimal text, its value, integer conversions and text forms.
#include <kxbase/base/number_format.h>

#include <charconv>
#include <cinttypes>
#include <cmath>
#include <cstdint>

#include "base/saturate_p.h"

namespace {

using kxbase::detail::AddEpsilon;
using kxbase::detail::AddHalf;
using kxbase::detail::TruncI64;

constexpr std::int64_t kPow10[11] = {1,       10,       100,       1000,       10000,      100000,
                                     1000000, 10000000, 100000000, 1000000000, 10000000000};

constexpr double kPow10Double[11] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10};
// Below this magnitude |integer part| * 10^10 + fraction stays below 2^53, so the fast path's
// integer and its double are exact.
constexpr double kFastLimit = 900000.0;

// Longest text: "-9223372036854775807" + "." + 10 places, plus the terminator.
constexpr int kTextMax = 40;

// The parts of the fixed-place text, from which both the text and its value are made.
struct FixedParts {
    std::int64_t ip = 0;    // integer part as printed (before any "-" of a "-0")
    std::int64_t frac = 0;  // A: the fraction's magnitude in units of 10^-places
    int places = 0;         // 0 for the integer form
    bool negZero = false;   // integer part 0 with a negative fraction: written "-0"
};

FixedParts Decompose(double value, int digits, int round) {
    FixedParts p;
    if (value != value) return p;  // NaN: "0"
    const int d = digits < 10 ? digits : 10;
    // The integer form: with rounding, half a unit away from zero; then epsilon truncation.
    auto integerForm = [&] {
        p.ip = TruncI64(AddEpsilon(round ? AddHalf(value) : value));
        p.places = 0;
        return p;
    };
    if (d < 1) return integerForm();
    // Beyond the 64-bit integer part there is no fraction left to show (every such double is
    // an integer); the integer part saturates.
    if (!(std::fabs(value) < 9223372036854775808.0)) return integerForm();

    const std::int64_t scale = kPow10[d];
    const std::int64_t ip = TruncI64(AddEpsilon(value));
    double f = (value - static_cast<double>(ip)) * static_cast<double>(scale);
    if (round) f = f < 0.0 ? f - 0.5 : f + 0.5;
    const std::int64_t fu = TruncI64(f < 0.0 ? f - 1e-10 : f + 1e-10);
    const std::int64_t a = fu < 0 ? -fu : fu;
    if (a >= scale || fu == 0) return integerForm();
    p.ip = ip;
    p.frac = a;
    p.places = d;
    p.negZero = ip == 0 && fu < 0;
    return p;
}

// Writes the text of p into out (at least kTextMax bytes, not terminated); returns its length.
int WriteText(const FixedParts& p, char* out) {
    char* cur = out;
    char* const end = out + kTextMax;
    if (p.negZero) *cur++ = '-';
    cur = std::to_chars(cur, end, p.ip).ptr;
    if (p.places > 0) {
        *cur++ = '.';
        char digits[16];
        const int n =
            static_cast<int>(std::to_chars(digits, digits + sizeof digits, p.frac).ptr - digits);
        for (int i = n; i < p.places; ++i) *cur++ = '0';
        for (int i = 0; i < n; ++i) *cur++ = digits[i];
    }
    return static_cast<int>(cur - out);
}

CString Hex(const char* plainFormat, const char* widthFormat, unsigned char width, auto value) {
    CString text;
    if (width != 0)
        text.Format(widthFormat, static_cast<int>(width), value);
    else
        text.Format(plainFormat, value);
    return text;
}

}  // namespace

CString ZelFloatPrecisionString(double value, int digits, int round) {
    char buf[kTextMax];
    const int n = WriteText(Decompose(value, digits, round), buf);
    return CString(buf, n);
}

namespace {

// Every case: the parts of the text, then its value.
[[gnu::noinline]] double PrecisionGeneral(double value, int digits, int round) {
    const FixedParts p = Decompose(value, digits, round);
    if (p.places == 0) return static_cast<double>(p.ip);
    // The text's value is sign * (|ip| + A / 10^places). While |ip| * 10^places + A is below
    // 2^53 both it and 10^places are exact doubles, and one correctly rounded division gives
    // the nearest double to the decimal text, exactly as parsing the text would.
    const std::int64_t scale = kPow10[p.places];
    const bool negative = p.negZero || p.ip < 0;
    const std::uint64_t mag =
        p.ip < 0 ? 0 - static_cast<std::uint64_t>(p.ip) : static_cast<std::uint64_t>(p.ip);
    constexpr std::uint64_t kExactLimit = std::uint64_t{1} << 53;
    if (mag < kExactLimit / static_cast<std::uint64_t>(scale)) {
        const double q = static_cast<double>(mag * static_cast<std::uint64_t>(scale) +
                                             static_cast<std::uint64_t>(p.frac)) /
                         static_cast<double>(scale);
        return negative ? -q : q;
    }
    char buf[kTextMax];
    const int n = WriteText(p, buf);
    double result = 0.0;
    std::from_chars(buf, buf + n, result);
    return result;
}

}  // namespace

double ZelFloatPrecision(double value, int digits, int round) {
    // Fast path for the common case, a fraction of the text not zero and an integer part that
    // keeps the quotient exact. It runs Decompose's steps on |value| and puts the sign back at
    // the end: every step (the epsilon and half steps, the truncations, the subtraction and
    // the product) is symmetric under negation for a non-zero fraction, and the text of a
    // negative value with a non-zero fraction always starts with "-". So the result equals the
    // general path's bit for bit, without a branch on the sign (which random input would
    // mispredict half the time).
    const double m = std::fabs(value);
    if (digits >= 1 && m < kFastLimit) {  // also false for NaN
        const int d = digits < 10 ? digits : 10;
        const double scale = kPow10Double[d];
        const std::int64_t ip = static_cast<std::int64_t>(m + kxbase::detail::kTolerance);
        double f = (m - static_cast<double>(ip)) * scale;
        if (round) f = f < 0.0 ? f - 0.5 : f + 0.5;
        const std::int64_t fu = static_cast<std::int64_t>(f < 0.0 ? f - 1e-10 : f + 1e-10);
        const std::int64_t a = fu < 0 ? -fu : fu;
        if (fu != 0 && a < kPow10[d]) {
            const double q = static_cast<double>(ip * kPow10[d] + a) / scale;
            return std::copysign(q, value);
        }
    }
    return PrecisionGeneral(value, digits, round);
}

double ZelFloor(double value) {
    return std::floor(ZelFloatPrecision(value, 8, 1));
}
double ZelCeil(double value) {
    return std::ceil(ZelFloatPrecision(value, 8, 1));
}

int ZelFloatToInt(double value, int round) {
    return kxbase::detail::TruncI32(AddEpsilon(round ? AddHalf(value) : value));
}

INT64 ZelFloatToINT64(double value, int round) {
    return TruncI64(AddEpsilon(round ? AddHalf(value) : value));
}

DWORD ZelFloatToDWORD(double value, int round) {
    if (round) value = AddHalf(value);
    if (value < 0.0) return 0;
    return kxbase::detail::TruncU32(value + 1e-10);
}

UINT64 ZelFloatToUINT64(double value, int round) {
    if (round) value = AddHalf(value);
    if (value < 0.0) return 0;
    return kxbase::detail::TruncU64(value + 1e-10);
}

CString ZelIntString(int value, int hex, unsigned char width) {
    if (!hex) {
        CString text;
        text.Format("%d", value);
        return text;
    }
    return Hex("%X", "%.*X", width, static_cast<unsigned>(value));
}

CString ZelDWORDString(ULONG value, int hex, unsigned char width) {
    if (!hex) {
        CString text;
        text.Format("%u", static_cast<unsigned>(value));
        return text;
    }
    return Hex("%X", "%.*X", width, static_cast<unsigned>(value));
}

CString ZelINT64String(INT64 value, int hex, unsigned char width) {
    if (!hex) {
        CString text;
        text.Format("%" PRId64, static_cast<std::int64_t>(value));
        return text;
    }
    return Hex("%" PRIX64, "%.*" PRIX64, width, static_cast<std::uint64_t>(value));
}

CString ZelUINT64String(UINT64 value, int hex, unsigned char width) {
    if (!hex) {
        CString text;
        text.Format("%" PRIu64, static_cast<std::uint64_t>(value));
        return text;
    }
    return Hex("%" PRIX64, "%.*" PRIX64, width, static_cast<std::uint64_t>(value));
}
