// ZelFloatPrecision(x, 8, 1) beside the naive round trip through snprintf("%.8f") and strtod,
// on the same 4096 values (a mix of magnitudes seen in unit conversions).
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <random>
#include <vector>

#include <kxbase/base/number_format.h>

namespace {

std::vector<double> Values() {
    std::mt19937_64 rng(9);
    std::uniform_real_distribution<double> u(-30000.0, 30000.0);
    std::vector<double> v(4096);
    for (double& x : v) x = u(rng) / (1 + (rng() % 1000));
    return v;
}

void BM_Round8_kxbase_ZelFloatPrecision(benchmark::State& state) {
    const std::vector<double> v = Values();
    for (auto _ : state) {
        double sum = 0.0;
        for (double x : v) sum += ZelFloatPrecision(x, 8, 1);
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(v.size()));
}
BENCHMARK(BM_Round8_kxbase_ZelFloatPrecision);

void BM_Round8_libc_snprintf_strtod(benchmark::State& state) {
    const std::vector<double> v = Values();
    char buf[64];
    for (auto _ : state) {
        double sum = 0.0;
        for (double x : v) {
            std::snprintf(buf, sizeof buf, "%.8f", x);
            sum += std::strtod(buf, nullptr);
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(v.size()));
}
BENCHMARK(BM_Round8_libc_snprintf_strtod);

}  // namespace
