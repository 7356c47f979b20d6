// B-spline to Bezier conversion and the in-place span layouts of SEPARATE.
#include <kxbase/separate/separate.h>

#include <cstddef>
#include <cstdint>
#include <exception>
#include <type_traits>
#include <vector>

#include "geometry/simd_level_p.h"
#include "point_lanes_p.h"

#if KXBASE_X86_DISPATCH
#include <immintrin.h>
#endif

namespace kxbase::detail {

/// The double conversion's spans (mode 1, n >= 4 points) with the variant of `level`; every
/// variant forms the same products and sums in the same order. Private, for the unit tests.
void BSplineSpansD(const POINTD* in, int n, POINTD* out, SimdLevel level);

}  // namespace kxbase::detail

namespace {

using kxbase::detail::Lanes;
using kxbase::detail::Load;

// The weights are these rounded literals on purpose: results must match, to the last bit of
// the integer form, what existing data was produced with.
constexpr double kA = 0.1666666666667;
constexpr double kB = 0.666666666667;
constexpr double kC = 0.333333333333;

// Outputs of at least this many bytes are written with non-temporal stores where the
// processor has them: far larger than the caches, they would only evict the caller's data,
// and skipping the read-for-ownership halves the memory traffic.
constexpr std::size_t kStreamBytes = std::size_t{8} << 20;

inline Lanes Phantom(Lanes end, Lanes inner) {
    return 2.0 * end - inner;
}

// One window (A, B, C, D) to four Bezier points, the full weight matrix product with each
// sum formed left to right:
//   a*A + b*B + a*C + 0*D,  0*A + b*B + c*C + 0*D,  0*A + c*B + b*C + 0*D,  0*A + a*B + b*C + a*D
// The zero entries take part (a non-finite coordinate spoils the whole window, as in the
// full product);
// a product that occurs twice is formed once.
template <class Sink, class P>
inline void Span(Lanes A, Lanes B, Lanes C, Lanes D, P* o) {
    const Lanes zA = 0.0 * A, zD = 0.0 * D, bB = kB * B, bC = kB * C;
    Sink::Put4(o, kA * A + bB + kA * C + zD, zA + bB + kC * C + zD, zA + kC * B + bC + zD,
               zA + kA * B + bC + kA * D);
}

template <class Sink, class P>
void SplineSpans(const P* in, int n, P* out) {
    // First window (Q, P0, P1, P2), the windows wholly inside the polygon, last window
    // (Pn-3, Pn-2, Pn-1, R). The loop slides the window by one point per span.
    Lanes A = Phantom(Load(in[0]), Load(in[1])), B = Load(in[0]), C = Load(in[1]), D = Load(in[2]);
    P* o = out;
    for (int k = 3; k < n; ++k, o += 4) {
        Span<Sink>(A, B, C, D, o);
        A = B;
        B = C;
        C = D;
        D = Load(in[k]);
    }
    Span<Sink>(A, B, C, D, o);
    Span<Sink>(B, C, D, Phantom(D, C), o + 4);
}

template <class P>
int Convert(const P* in, int n, P* out, int& outCount, int mode) {
    using Sinks = kxbase::detail::SinkFor<P>;
    if (!in || !out) return 0;
    if (mode == 0) {
        if (n != 4) return 0;
        const Lanes b0 = Load(in[0]), b1 = Load(in[1]), b2 = Load(in[2]), b3 = Load(in[3]);
        Sinks::template type<false>::Put4(out, 6.0 * b0 - 7.0 * b1 + 2.0 * b2, 2.0 * b1 - b2,
                                          2.0 * b2 - b1, 2.0 * b1 - 7.0 * b2 + 6.0 * b3);
        outCount = 4;
        return 1;
    }
    if (n < 4 || n > SEPARATE::kMaxControlPoints) return 0;

    if constexpr (std::is_same_v<P, POINTD>) {
        kxbase::detail::BSplineSpansD(in, n, out, kxbase::detail::HostSimdLevel());
    } else {
        const std::size_t bytes = std::size_t{4} * static_cast<std::size_t>(n - 1) * sizeof(P);
        if (kxbase::detail::kCanStream && bytes >= kStreamBytes &&
            reinterpret_cast<std::uintptr_t>(out) % 16 == 0) {
            SplineSpans<typename Sinks::template type<true>>(in, n, out);
            kxbase::detail::StreamFence();
        } else {
            SplineSpans<typename Sinks::template type<false>>(in, n, out);
        }
    }
    outCount = 4 * (n - 1);
    return 1;
}

}  // namespace

namespace kxbase::detail {
namespace {

void SpansPortable(const POINTD* in, int n, POINTD* out) {
    using Sinks = SinkFor<POINTD>;
    const std::size_t bytes = std::size_t{4} * static_cast<std::size_t>(n - 1) * sizeof(POINTD);
    if (kCanStream && bytes >= kStreamBytes && reinterpret_cast<std::uintptr_t>(out) % 16 == 0) {
        SplineSpans<Sinks::type<true>>(in, n, out);
        StreamFence();
    } else {
        SplineSpans<Sinks::type<false>>(in, n, out);
    }
}

#if KXBASE_X86_DISPATCH
// One window's four Bezier points in one 512-bit register, a point per 128-bit lane. Each of
// A, B, C, D is broadcast to the four lanes and multiplied by its column of the weight matrix
// (zeros included), and the four products are summed left to right: lane j then holds exactly
// the sum Span forms for point j.
struct Avx512Weights {
    __m512d a, b, c, d;
};

KXBASE_TARGET_AVX512 inline __m512d Broadcast(__m128d p) {
    // The masked form with an all-ones mask is the plain broadcast; the unmasked intrinsic trips
    // GCC 12's uninitialised-value warning inside its own header.
    return _mm512_mask_broadcast_f64x2(_mm512_setzero_pd(), 0xFF, p);
}

KXBASE_TARGET_AVX512 inline __m512d SpanAvx512(const Avx512Weights& w, __m512d A, __m512d B,
                                               __m512d C, __m512d D) {
    __m512d s = _mm512_add_pd(_mm512_mul_pd(A, w.a), _mm512_mul_pd(B, w.b));
    s = _mm512_add_pd(s, _mm512_mul_pd(C, w.c));
    return _mm512_add_pd(s, _mm512_mul_pd(D, w.d));
}

KXBASE_TARGET_AVX512 inline __m128d PhantomAvx512(__m128d end, __m128d inner) {
    return _mm_sub_pd(_mm_mul_pd(_mm_set1_pd(2.0), end), inner);
}

// Plain stores: on the processors with AVX-512 measured, full 64-byte stores of a window
// outrun non-temporal 16-byte ones, and one store per window is all the loop writes.
KXBASE_TARGET_AVX512 void SpansAvx512(const POINTD* in, int n, POINTD* out) {
    // Columns of the weight matrix, lane by lane (x and y share a weight).
    const Avx512Weights w{
        _mm512_setr_pd(kA, kA, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0),
        _mm512_setr_pd(kB, kB, kB, kB, kC, kC, kA, kA),
        _mm512_setr_pd(kA, kA, kC, kC, kB, kB, kB, kB),
        _mm512_setr_pd(0.0, 0.0, 0.0, 0.0, 0.0, 0.0, kA, kA),
    };
    const __m128d p0 = _mm_loadu_pd(&in[0].x), p1 = _mm_loadu_pd(&in[1].x);
    __m512d A = Broadcast(PhantomAvx512(p0, p1)), B = Broadcast(p0), C = Broadcast(p1),
            D = Broadcast(_mm_loadu_pd(&in[2].x));
    double* o = &out[0].x;
    for (int k = 3; k < n; ++k, o += 8) {
        _mm512_storeu_pd(o, SpanAvx512(w, A, B, C, D));
        A = B;
        B = C;
        C = D;
        D = Broadcast(_mm_loadu_pd(&in[k].x));
    }
    _mm512_storeu_pd(o, SpanAvx512(w, A, B, C, D));
    const __m128d last = _mm_loadu_pd(&in[n - 1].x), before = _mm_loadu_pd(&in[n - 2].x);
    _mm512_storeu_pd(o + 8, SpanAvx512(w, B, C, D, Broadcast(PhantomAvx512(last, before))));
    _mm256_zeroupper();
}
#endif

}  // namespace

void BSplineSpansD(const POINTD* in, int n, POINTD* out, SimdLevel level) {
#if KXBASE_X86_DISPATCH
    if (level >= SimdLevel::kAvx512 && HostSimdLevel() >= SimdLevel::kAvx512)
        return SpansAvx512(in, n, out);
#else
    (void)level;
#endif
    SpansPortable(in, n, out);
}

}  // namespace kxbase::detail

namespace {

// Copies the polygon with its phantom points: Q, P0, ..., Pn-1, R (n + 2 points), or an empty
// vector when the copy cannot be allocated.
std::vector<POINTD> WithPhantoms(const POINTD* p, int n) {
    std::vector<POINTD> s;
    try {
        s.resize(static_cast<std::size_t>(n) + 2);
    } catch (const std::exception&) {  // bad_alloc: report failure, never throw out
        return {};
    }
    s[0] = POINTD(2.0 * p[0].x - p[1].x, 2.0 * p[0].y - p[1].y);
    for (int i = 0; i < n; ++i) s[static_cast<std::size_t>(i) + 1] = p[i];
    s[static_cast<std::size_t>(n) + 1] =
        POINTD(2.0 * p[n - 1].x - p[n - 2].x, 2.0 * p[n - 1].y - p[n - 2].y);
    return s;
}

}  // namespace

int SEPARATE::BSplineToBezier(const POINT* in, int n, POINT* out, int& outCount, int mode) {
    return Convert(in, n, out, outCount, mode);
}

int SEPARATE::BSplineToBezier(const POINTD* in, int n, POINTD* out, int& outCount, int mode) {
    return Convert(in, n, out, outCount, mode);
}

int SEPARATE::GetMyBSCtrl(POINTD* points, int n) {
    if (!points || n < 2 || n > kMaxControlPoints) return 0;
    const std::vector<POINTD> s = WithPhantoms(points, n);
    if (s.empty()) return 0;
    // Window k is s[k..k+3]; n - 1 windows of four.
    POINTD* o = points;
    for (std::size_t k = 0; k + 1 < static_cast<std::size_t>(n); ++k)
        for (std::size_t j = 0; j < 4; ++j) *o++ = s[k + j];
    return 1;
}

int SEPARATE::GetMyEBSCtrl(POINTD* points, int n) {
    if (!points || n < 3 || n > kMaxControlPoints) return 0;
    std::vector<POINTD> s = WithPhantoms(points, n);
    if (s.empty()) return 0;
    // The quadratic windows run over Q, P1, ..., Pn-2, R: the phantoms replace P0 and Pn-1.
    s[1] = s[0];
    s[static_cast<std::size_t>(n)] = s[static_cast<std::size_t>(n) + 1];
    // Window k is s[k+1..k+3]; n - 2 windows of three.
    POINTD* o = points;
    for (std::size_t k = 0; k + 2 < static_cast<std::size_t>(n); ++k)
        for (std::size_t j = 1; j < 4; ++j) *o++ = s[k + j];
    return 1;
}
