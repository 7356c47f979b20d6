// myMemset beside a plain loop of memcpy (one copy of the pattern per call), and myMemcpy
// beside a row loop of memcpy, on A4-at-720-DPI sized data (5953 pixels per row, 24 bits).
#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

#include <kxbase/mathopt/amathopt.h>

namespace {

constexpr INT64 kWidth = 5953;  // A4 width at 720 DPI
constexpr INT64 kRows = 256;
constexpr INT64 kRowBytes = kWidth * 3;
constexpr INT64 kSrcPitch = (kRowBytes + 3) / 4 * 4;
constexpr INT64 kDstPitch = kSrcPitch + 64;

void BM_Fill_kxbase_myMemset(benchmark::State& s) {
    const auto size = static_cast<UINT64>(s.range(0));
    const INT64 count = 1 << 16;
    std::vector<BYTE> pattern(size, 0x5A), dst(size * count);
    for (auto _ : s) {
        AMathOpt::myMemset(dst.data(), pattern.data(), size, count);
        benchmark::ClobberMemory();
    }
    s.SetBytesProcessed(static_cast<INT64>(s.iterations()) * static_cast<INT64>(dst.size()));
}
void BM_Fill_memcpy_loop(benchmark::State& s) {
    const auto size = static_cast<size_t>(s.range(0));
    const size_t count = 1 << 16;
    std::vector<BYTE> pattern(size, 0x5A), dst(size * count);
    for (auto _ : s) {
        BYTE* p = dst.data();
        for (size_t i = 0; i < count; ++i, p += size) std::memcpy(p, pattern.data(), size);
        benchmark::ClobberMemory();
    }
    s.SetBytesProcessed(static_cast<INT64>(s.iterations()) * static_cast<INT64>(dst.size()));
}

void BM_Rows_kxbase_myMemcpy(benchmark::State& s) {
    std::vector<BYTE> src(kSrcPitch * kRows, 1), dst(kDstPitch * kRows);
    for (auto _ : s) {
        benchmark::DoNotOptimize(
            AMathOpt::myMemcpy(dst.data(), kDstPitch, 24, src.data(), kSrcPitch, kWidth, kRows));
        benchmark::ClobberMemory();
    }
    s.SetBytesProcessed(static_cast<INT64>(s.iterations()) * kRowBytes * kRows);
}
void BM_Rows_memcpy_loop(benchmark::State& s) {
    std::vector<BYTE> src(kSrcPitch * kRows, 1), dst(kDstPitch * kRows);
    for (auto _ : s) {
        for (INT64 r = 0; r < kRows; ++r)
            std::memcpy(dst.data() + r * kDstPitch, src.data() + r * kSrcPitch, kRowBytes);
        benchmark::ClobberMemory();
    }
    s.SetBytesProcessed(static_cast<INT64>(s.iterations()) * kRowBytes * kRows);
}

BENCHMARK(BM_Fill_kxbase_myMemset)->Arg(3)->Arg(4)->Arg(10)->Arg(16);
BENCHMARK(BM_Fill_memcpy_loop)->Arg(3)->Arg(4)->Arg(10)->Arg(16);
BENCHMARK(BM_Rows_kxbase_myMemcpy);
BENCHMARK(BM_Rows_memcpy_loop);

}  // namespace
