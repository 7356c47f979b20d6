// Byte and pattern search: AMathOpt::FindData / ReverseFindData beside memchr, memrchr,
// memmem and std::boyer_moore_horspool_searcher, on the same 1 MiB random buffer with the
// match at the far end (the whole buffer is scanned).
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <random>
#include <vector>

#include <kxbase/mathopt/amathopt.h>

namespace {

constexpr size_t kLen = 1 << 20;
const BYTE kPattern[] = {0xC3, 0x5A, 0x11, 0x7E, 0x90, 0x42, 0x08, 0xEF};

/// Random bytes without 0xFF and without the pattern, then the needle planted at `at`.
std::vector<BYTE> Buffer(bool needleAtEnd) {
    std::vector<BYTE> b(kLen);
    std::mt19937 rng(99);
    for (auto& c : b) c = static_cast<BYTE>(rng() % 255);
    const size_t at = needleAtEnd ? kLen - sizeof kPattern : 0;
    std::copy(std::begin(kPattern), std::end(kPattern),
              b.begin() + static_cast<std::ptrdiff_t>(at));
    b[needleAtEnd ? kLen - 1 : 0] = 0xFF;  // the single-byte needle
    return b;
}

const std::vector<BYTE>& Forward() {
    static const std::vector<BYTE> b = Buffer(true);
    return b;
}
const std::vector<BYTE>& Backward() {
    static const std::vector<BYTE> b = Buffer(false);
    return b;
}

void Bytes(benchmark::State& s) {
    s.SetBytesProcessed(static_cast<INT64>(s.iterations()) * kLen);
}

// ---- single byte ---------------------------------------------------------------------------
void BM_FindByte_kxbase(benchmark::State& s) {
    const auto& b = Forward();
    for (auto _ : s) benchmark::DoNotOptimize(AMathOpt::FindData(b.data(), kLen, BYTE{0xFF}));
    Bytes(s);
}
void BM_FindByte_memchr(benchmark::State& s) {
    const auto& b = Forward();
    for (auto _ : s) benchmark::DoNotOptimize(std::memchr(b.data(), 0xFF, kLen));
    Bytes(s);
}
void BM_ReverseFindByte_kxbase(benchmark::State& s) {
    const auto& b = Backward();
    for (auto _ : s)
        benchmark::DoNotOptimize(AMathOpt::ReverseFindData(b.data(), kLen, BYTE{0xFF}));
    Bytes(s);
}
void BM_ReverseFindByte_memrchr(benchmark::State& s) {
    const auto& b = Backward();
    for (auto _ : s) benchmark::DoNotOptimize(memrchr(b.data(), 0xFF, kLen));
    Bytes(s);
}

// ---- pattern -------------------------------------------------------------------------------
void BM_FindPattern_kxbase(benchmark::State& s) {
    const auto& b = Forward();
    for (auto _ : s)
        benchmark::DoNotOptimize(AMathOpt::FindData(b.data(), kLen, kPattern, sizeof kPattern));
    Bytes(s);
}
void BM_FindPattern_memmem(benchmark::State& s) {
    const auto& b = Forward();
    for (auto _ : s) benchmark::DoNotOptimize(memmem(b.data(), kLen, kPattern, sizeof kPattern));
    Bytes(s);
}
void BM_FindPattern_std_bmh(benchmark::State& s) {
    const auto& b = Forward();
    for (auto _ : s) {
        const std::boyer_moore_horspool_searcher search(std::begin(kPattern), std::end(kPattern));
        benchmark::DoNotOptimize(std::search(b.begin(), b.end(), search));
    }
    Bytes(s);
}
void BM_ReverseFindPattern_kxbase(benchmark::State& s) {
    const auto& b = Backward();
    for (auto _ : s)
        benchmark::DoNotOptimize(
            AMathOpt::ReverseFindData(b.data(), kLen, kPattern, sizeof kPattern));
    Bytes(s);
}
void BM_ReverseFindPattern_std_bmh(benchmark::State& s) {
    // The last occurrence: the reversed pattern searched over reverse iterators.
    const auto& b = Backward();
    for (auto _ : s) {
        const std::boyer_moore_horspool_searcher search(std::rbegin(kPattern), std::rend(kPattern));
        benchmark::DoNotOptimize(std::search(b.rbegin(), b.rend(), search));
    }
    Bytes(s);
}
void BM_ReverseFindPattern_memmem(benchmark::State& s) {
    // memmem has no backward form; on this buffer the one occurrence is the last, so one
    // forward pass over the whole buffer is the cost a caller would pay.
    const auto& b = Backward();
    for (auto _ : s) {
        const BYTE* last = nullptr;
        const BYTE* p = b.data();
        size_t left = kLen;
        while (const void* hit = memmem(p, left, kPattern, sizeof kPattern)) {
            last = static_cast<const BYTE*>(hit);
            left -= static_cast<size_t>(last + 1 - p);
            p = last + 1;
        }
        benchmark::DoNotOptimize(last);
    }
    Bytes(s);
}

BENCHMARK(BM_FindByte_kxbase);
BENCHMARK(BM_FindByte_memchr);
BENCHMARK(BM_ReverseFindByte_kxbase);
BENCHMARK(BM_ReverseFindByte_memrchr);
BENCHMARK(BM_FindPattern_kxbase);
BENCHMARK(BM_FindPattern_memmem);
BENCHMARK(BM_FindPattern_std_bmh);
BENCHMARK(BM_ReverseFindPattern_kxbase);
BENCHMARK(BM_ReverseFindPattern_memmem);
BENCHMARK(BM_ReverseFindPattern_std_bmh);

}  // namespace
