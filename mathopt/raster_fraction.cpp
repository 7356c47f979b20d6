// Raster fraction print geometry: alternating whole step sizes for a fractional pixel pitch,
// and the frequency / speed / resolution conversions of a raster printer.
#include <kxbase/mathopt/amathopt.h>

#include <cmath>

#include <kxbase/base/number_format.h>

#include "base/round8_p.h"
#include "base/saturate_p.h"
#include "mathopt/mathopt_p.h"

namespace {

using kxbase::detail::IeeeDiv;

// Results beyond the host format's 32-bit range are stated as unrounded.
constexpr auto Round8 = &kxbase::detail::Round8Within32;

constexpr DWORD kPlaceholderCount = 10000;

void SetIntegerPitch(RASTER_FRACTION_PRINTINFO& info, WORD step) {
    info.stepFirst = info.stepSecond = step;
    info.leadCount = info.secondCount = info.firstCount = kPlaceholderCount;
}

/// A non-negative double already floored or ceiled to a whole number, as an unsigned 32-bit
/// count (saturating; the quotients it receives stay below 2^32 for any valid pattern).
DWORD ToCount(double v) {
    if (!(v > 0)) return 0;
    if (v >= 4294967295.0) return 0xFFFFFFFFu;
    return static_cast<DWORD>(v);
}

/// ZelFloor / ZelCeil of a ratio below 65536, as a 16-bit step.
WORD ToStep(double v) {
    if (!(v > 0)) return 0;
    if (v >= 65535.0) return 65535;
    return static_cast<WORD>(v);
}

}  // namespace

double AMathOpt::raster_control_resolution_max(double step) {
    if (!(step > 1e-10)) return 0.0;
    return Round8(25.4 / step);
}

bool AMathOpt::raster_fraction_printinfo(RASTER_FRACTION_PRINTINFO& info, ULONG position,
                                         double resolution, double step, int roundUp,
                                         int fractional) {
    info = RASTER_FRACTION_PRINTINFO{};
    if (!std::isfinite(step) || !std::isfinite(resolution)) return false;
    if (step <= 1e-10) return false;
    if (resolution <= 1e-10 || resolution > raster_control_resolution_max(step)) return false;

    // Ideal control steps per pixel.
    const double ratio = Round8((25.4 / resolution) / step);
    if (!(ratio <= 65535.0)) return false;

    if (fractional == 0) {
        SetIntegerPitch(info, static_cast<WORD>(static_cast<DWORD>(ratio + 0.5)));
        return info.IsValid();
    }

    // The ratio as an exact fraction: N control steps per M pixels.
    const DWORD n0 = static_cast<DWORD>(Round8(2540000.0));
    const DWORD m0 = ToCount(std::trunc(Round8(resolution * step * 100000.0)));
    const DWORD g = static_cast<DWORD>(kxbase::detail::Gcd(n0, m0));
    if (g == 0) return false;
    const DWORD n = n0 / g;
    const DWORD m = m0 / g;

    const WORD hi = ToStep(ZelCeil(ratio));
    const WORD lo = ToStep(ZelFloor(ratio));
    if (std::fabs(ratio - hi) < 1e-10) {
        SetIntegerPitch(info, hi);
        return info.IsValid();
    }
    if (std::fabs(ratio - lo) < 1e-10) {
        SetIntegerPitch(info, lo);
        return info.IsValid();
    }
    if (hi == lo) return false;  // unreachable for a rounded ratio; guards the division

    // y pixels per M take the larger step, x the smaller (unsigned 32-bit arithmetic).
    const DWORD y = (n - DWORD{lo} * m) / DWORD{static_cast<WORD>(hi - lo)};
    const DWORD x = m - y;

    // (A, E): step and count of the rarer kind; (B, D): the commoner.
    DWORD a, e, b, d;
    if (x < y) {
        a = lo, e = x, b = hi, d = y;
    } else {
        a = hi, e = y, b = lo, d = x;
    }
    const DWORD period = a * e + b * d;
    // A zero step or an empty period cannot be placed (and would not be a valid pattern).
    if (a == 0 || b == 0 || period == 0) return false;

    const DWORD r = position % period;
    const DWORD ae = a * e;
    const auto set = [&info](DWORD s1, DWORD s2, DWORD lead, DWORD second, DWORD first) {
        info.stepFirst = static_cast<WORD>(s1);
        info.stepSecond = static_cast<WORD>(s2);
        info.leadCount = lead;
        info.secondCount = second;
        info.firstCount = first;
    };
    if (roundUp == 0) {
        if (r >= ae) {
            const DWORD t = ToCount(ZelFloor(static_cast<double>(r - ae) / b));
            set(b, a, d - t, e, d);
        } else {
            const DWORD t = ToCount(ZelFloor(static_cast<double>(r) / a));
            set(a, b, e - t, d, e);
        }
    } else {
        if (r > ae) {
            const DWORD t = ToCount(ZelCeil(static_cast<double>(r - ae) / b));
            set(b, a, t, e, d);
        } else {
            const DWORD t = ToCount(ZelCeil(static_cast<double>(r) / a));
            set(a, b, t, d, e);
        }
    }
    return info.IsValid();
}

double AMathOpt::raster_fraction_correct_resolution(const RASTER_FRACTION_PRINTINFO& info,
                                                    double step) {
    if (!info.IsValid()) return 0.0;
    const DWORD steps =
        DWORD{info.stepFirst} * info.firstCount + DWORD{info.stepSecond} * info.secondCount;
    const double pixels = static_cast<double>(info.secondCount) + info.firstCount;
    const double pitch = static_cast<double>(steps) / pixels;
    return Round8(IeeeDiv(1.0, pitch * step) * 25.4);
}

ULONG AMathOpt::raster_width_from_image(const RASTER_FRACTION_PRINTINFO& info, ULONG w) {
    const DWORD s1 = info.stepFirst;
    const DWORD s2 = info.stepSecond;
    const DWORD lead = info.leadCount;
    const DWORD c2 = info.secondCount;
    const DWORD c1 = info.firstCount;
    if (s1 == s2 || w <= lead) return s1 * w;
    const DWORD rest = w - lead;
    if (rest <= c2) return lead * s1 + s2 * rest;
    const DWORD period = c1 + c2;
    const DWORD q = period != 0 ? rest / period : 0;
    const DWORD m = period != 0 ? rest % period : rest;
    const DWORD base = lead * s1 + (c1 * s1 + s2 * c2) * q;
    if (m <= c2) return base + s2 * m;
    return base + (m - c2) * s1 + s2 * c2;
}

double AMathOpt::FrequencyToSpeed(double resolution, double frequency) {
    return Round8(IeeeDiv(frequency, resolution / 25.4));
}

double AMathOpt::SpeedToFrequency(double resolution, double speed) {
    return Round8(resolution / 25.4 * speed);
}

double AMathOpt::FrequencyToResolution(double frequency, double speed) {
    return Round8(IeeeDiv(frequency, speed) * 25.4);
}
