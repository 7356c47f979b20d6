// merger_sort beside std::stable_sort on 1e6 16-byte records (random 32-bit keys with
// repeats). Both call the same out-of-line comparison through a function pointer, so the
// ratio measures the sort, not inlining; a std::stable_sort with an inlined comparison is
// listed for reference.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <vector>

#include <kxbase/mathopt/amathopt.h>

namespace {

struct Record {
    INT64 key;
    INT64 payload;
};
static_assert(sizeof(Record) == 16);

constexpr LONG kCount = 1000000;

const std::vector<Record>& Input() {
    static const std::vector<Record> v = [] {
        std::vector<Record> r(kCount);
        std::mt19937 rng(5);
        for (LONG i = 0; i < kCount; ++i)
            r[static_cast<size_t>(i)] = {static_cast<INT64>(rng() % 100000), i};
        return r;
    }();
    return v;
}

[[gnu::noinline]] LONG Compare(const void* a, const void* b) {
    const INT64 x = static_cast<const Record*>(a)->key;
    const INT64 y = static_cast<const Record*>(b)->key;
    return (x > y) - (x < y);
}

LONG (*volatile g_compare)(const void*, const void*) = Compare;

void BM_Sort_kxbase_merger_sort(benchmark::State& s) {
    std::vector<Record> data, temp(kCount);
    for (auto _ : s) {
        s.PauseTiming();
        data = Input();
        s.ResumeTiming();
        AMathOpt::merger_sort(data.data(), kCount, sizeof(Record), temp.data(), g_compare);
        benchmark::ClobberMemory();
    }
}
void BM_Sort_std_stable_sort(benchmark::State& s) {
    std::vector<Record> data;
    auto compare = g_compare;
    for (auto _ : s) {
        s.PauseTiming();
        data = Input();
        s.ResumeTiming();
        std::stable_sort(data.begin(), data.end(), [compare](const Record& a, const Record& b) {
            return compare(&a, &b) < 0;
        });
        benchmark::ClobberMemory();
    }
}
void BM_Sort_std_stable_sort_inlined(benchmark::State& s) {
    std::vector<Record> data;
    for (auto _ : s) {
        s.PauseTiming();
        data = Input();
        s.ResumeTiming();
        std::stable_sort(data.begin(), data.end(),
                         [](const Record& a, const Record& b) { return a.key < b.key; });
        benchmark::ClobberMemory();
    }
}

BENCHMARK(BM_Sort_kxbase_merger_sort)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Sort_std_stable_sort)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Sort_std_stable_sort_inlined)->Unit(benchmark::kMillisecond);

}  // namespace
