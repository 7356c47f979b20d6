// Run-time choice of the widest vector unit the processor offers, for kernels that keep a
// portable loop and add AVX2 / AVX-512 variants compiled with per-function target attributes
// (so the rest of the library stays at the baseline instruction set).
//
// Every kernel takes the level explicitly as well, so that unit tests can run each level the
// machine supports against the portable one on the same inputs.
#pragma once

namespace kxbase::detail {

enum class SimdLevel : int {
    kPortable = 0,  // plain C++ (on x86-64 the compiler's SSE2 baseline)
    kAvx2 = 1,
    kAvx512 = 2,  // AVX-512 F + VL + DQ + BW
};

#if (defined(__x86_64__) || defined(__i386__)) && (defined(__GNUC__) || defined(__clang__)) && \
    !defined(KXBASE_NO_SIMD)
#define KXBASE_X86_DISPATCH 1
#endif

#if KXBASE_X86_DISPATCH
// Marks a function compiled for the instruction set `isa` ("avx2", "avx512f,..."). GCC
// contracts a product and a following sum into a fused multiply-add whenever the target has
// FMA (AVX-512 implies it), which rounds once instead of twice and so changes results; the
// kernels must match the portable loop bit for bit, so contraction is switched off for them.
// Clang contracts only within one source expression, which intrinsic calls never are.
#if defined(__clang__)
#define KXBASE_TARGET(isa) __attribute__((target(isa)))
#else
#define KXBASE_TARGET(isa) __attribute__((target(isa), optimize("fp-contract=off")))
#endif
#define KXBASE_TARGET_AVX2 KXBASE_TARGET("avx2")
#define KXBASE_TARGET_AVX512 KXBASE_TARGET("avx512f,avx512vl,avx512dq,avx512bw")
#endif

/// The widest level this processor (and its operating system's register saving) supports.
/// Determined on the first call; later calls return the stored answer.
inline SimdLevel HostSimdLevel() {
#if KXBASE_X86_DISPATCH
    static const SimdLevel level = [] {
        __builtin_cpu_init();
        if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512vl") &&
            __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512bw"))
            return SimdLevel::kAvx512;
        if (__builtin_cpu_supports("avx2")) return SimdLevel::kAvx2;
        return SimdLevel::kPortable;
    }();
    return level;
#else
    return SimdLevel::kPortable;
#endif
}

}  // namespace kxbase::detail
