// Two-lane (x, y) double arithmetic for the point kernels of SEPARATE, with loads from and
// stores to the library's point types. With SSE2 both coordinates go through one register and
// large results can bypass the cache; elsewhere (or with KXBASE_NO_SIMD defined) the same
// operations run on two doubles. Both paths form exactly the same IEEE products and sums, so
// results do not depend on the path.
#pragma once

#include <cmath>
#include <cstdint>

#include <kxbase/geometry/pointd.h>
#include <kxbase/platform/types.h>

#if (defined(__SSE2__) || defined(_M_X64)) && !defined(KXBASE_NO_SIMD)
#include <emmintrin.h>
#define KXBASE_SEPARATE_SSE2 1
#endif

namespace kxbase::detail {

#if KXBASE_SEPARATE_SSE2

struct Lanes {
    __m128d v;
};

inline Lanes MakeLanes(double x, double y) {
    return {_mm_set_pd(y, x)};
}
inline Lanes Load(const POINTD& p) {
    return {_mm_loadu_pd(&p.x)};
}
inline Lanes Load(const POINT& p) {
    return {_mm_cvtepi32_pd(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(&p)))};
}
inline double LaneX(Lanes l) {
    return _mm_cvtsd_f64(l.v);
}
inline double LaneY(Lanes l) {
    return _mm_cvtsd_f64(_mm_unpackhi_pd(l.v, l.v));
}
inline Lanes operator+(Lanes l, Lanes r) {
    return {_mm_add_pd(l.v, r.v)};
}
inline Lanes operator-(Lanes l, Lanes r) {
    return {_mm_sub_pd(l.v, r.v)};
}
inline Lanes operator*(double w, Lanes p) {
    return {_mm_mul_pd(_mm_set1_pd(w), p.v)};
}

// The integer B-spline form rounds half away from zero WITHOUT the library's epsilon step
// (HalfAway32 in base/saturate_p.h adds 1e-10 after the half step): its public contract says
// so, and stored outlines depend on it: the weights are rounded decimals, so a weighted sum
// of integers can come out a hair below a half, which the epsilon step would round up. Its inputs
// are integers, so the sums are finite (at most about 3.2e10): NaN never reaches this rounding, and
// what it would give (INT_MIN, the conversion's "indefinite" value) is not part of any contract.
//
// Both lanes: v + copysign(0.5, v), truncated, with saturation. Only the upper limit needs a
// clamp: the truncating conversion already turns values below the int32 range into
// 0x80000000, the minimum. Returns x and y in the low 64 bits.
inline __m128i RoundHalfAwayNoEpsilon(Lanes l) {
    const __m128d sign = _mm_and_pd(l.v, _mm_set1_pd(-0.0));
    __m128d r = _mm_add_pd(l.v, _mm_or_pd(sign, _mm_set1_pd(0.5)));
    r = _mm_min_pd(_mm_set1_pd(2147483647.0), r);
    return _mm_cvttpd_epi32(r);
}

/// Writes point results; `stream` selects non-temporal stores (16-byte aligned output only).
template <bool stream>
struct DoubleSink {
    static void Put4(POINTD* o, Lanes p0, Lanes p1, Lanes p2, Lanes p3) {
        if constexpr (stream) {
            _mm_stream_pd(&o[0].x, p0.v);
            _mm_stream_pd(&o[1].x, p1.v);
            _mm_stream_pd(&o[2].x, p2.v);
            _mm_stream_pd(&o[3].x, p3.v);
        } else {
            _mm_storeu_pd(&o[0].x, p0.v);
            _mm_storeu_pd(&o[1].x, p1.v);
            _mm_storeu_pd(&o[2].x, p2.v);
            _mm_storeu_pd(&o[3].x, p3.v);
        }
    }
};

template <bool stream>
struct IntSink {
    static void Put4(POINT* o, Lanes p0, Lanes p1, Lanes p2, Lanes p3) {
        const __m128i a =
            _mm_unpacklo_epi64(RoundHalfAwayNoEpsilon(p0), RoundHalfAwayNoEpsilon(p1));
        const __m128i b =
            _mm_unpacklo_epi64(RoundHalfAwayNoEpsilon(p2), RoundHalfAwayNoEpsilon(p3));
        if constexpr (stream) {
            _mm_stream_si128(reinterpret_cast<__m128i*>(o), a);
            _mm_stream_si128(reinterpret_cast<__m128i*>(o + 2), b);
        } else {
            _mm_storeu_si128(reinterpret_cast<__m128i*>(o), a);
            _mm_storeu_si128(reinterpret_cast<__m128i*>(o + 2), b);
        }
    }
};

inline void StreamFence() {
    _mm_sfence();
}
constexpr bool kCanStream = true;

#else  // portable two-double lanes

struct Lanes {
    double x, y;
};

inline Lanes MakeLanes(double x, double y) {
    return {x, y};
}
inline Lanes Load(const POINTD& p) {
    return {p.x, p.y};
}
inline Lanes Load(const POINT& p) {
    return {static_cast<double>(p.x), static_cast<double>(p.y)};
}
inline double LaneX(Lanes l) {
    return l.x;
}
inline double LaneY(Lanes l) {
    return l.y;
}
inline Lanes operator+(Lanes l, Lanes r) {
    return {l.x + r.x, l.y + r.y};
}
inline Lanes operator-(Lanes l, Lanes r) {
    return {l.x - r.x, l.y - r.y};
}
inline Lanes operator*(double w, Lanes p) {
    return {w * p.x, w * p.y};
}

// The same rule as the vector form above (half away from zero, no epsilon, saturating).
inline LONG RoundHalfAwayNoEpsilon(double v) {
    double r = v + std::copysign(0.5, v);
    r = r > -2147483648.0 ? r : -2147483648.0;  // as the vector conversion: NaN gives the minimum
    r = r < 2147483647.0 ? r : 2147483647.0;
    return static_cast<LONG>(r);
}

template <bool stream>
struct DoubleSink {
    static void Put4(POINTD* o, Lanes p0, Lanes p1, Lanes p2, Lanes p3) {
        const Lanes p[4] = {p0, p1, p2, p3};
        for (int i = 0; i < 4; ++i) o[i] = POINTD(p[i].x, p[i].y);
    }
};

template <bool stream>
struct IntSink {
    static void Put4(POINT* o, Lanes p0, Lanes p1, Lanes p2, Lanes p3) {
        const Lanes p[4] = {p0, p1, p2, p3};
        for (int i = 0; i < 4; ++i)
            o[i] = POINT{RoundHalfAwayNoEpsilon(p[i].x), RoundHalfAwayNoEpsilon(p[i].y)};
    }
};

inline void StreamFence() {}
constexpr bool kCanStream = false;

#endif

template <class P>
struct SinkFor;
template <>
struct SinkFor<POINTD> {
    template <bool stream>
    using type = DoubleSink<stream>;
};
template <>
struct SinkFor<POINT> {
    template <bool stream>
    using type = IntSink<stream>;
};

}  // namespace kxbase::detail
