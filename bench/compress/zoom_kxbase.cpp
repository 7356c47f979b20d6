// ACompress line zoom on A4-at-720-DPI lines: ResampleLine doubling and halving one line
// (map computed per call, as a caller without a cached map does) and ZoomBits doubling a
// 64-line band. Throughput counts destination bytes.
#include <benchmark/benchmark.h>

#include <kxbase/compress/compress.h>

#include "rle_pages.h"

namespace {

using kxbench::Band;
using kxbench::kA4Width720;
using kxbench::kBandLines;

// range(0): depth 8 or 24; range(1): destination width in per cent of the source.
void BM_Kx_ResampleLine(benchmark::State& st) {
    const int depth = static_cast<int>(st.range(0));
    const int dstCount = static_cast<int>(kA4Width720 * st.range(1) / 100);
    const std::size_t pb = depth == 24 ? 3 : 1;
    const auto& band = Band(depth);
    std::vector<BYTE> out(pb * dstCount);
    for (auto _ : st) {
        ACompress::ResampleLine(band.data(), depth, kA4Width720, out.data(), dstCount, nullptr);
        benchmark::DoNotOptimize(out.data());
    }
    st.SetBytesProcessed(st.iterations() * out.size());
}
BENCHMARK(BM_Kx_ResampleLine)->Args({8, 200})->Args({8, 50})->Args({24, 200})->Args({24, 50});

void BM_Kx_ZoomBits(benchmark::State& st) {
    const int depth = static_cast<int>(st.range(0));
    const int pct = static_cast<int>(st.range(1));
    const int dw = kA4Width720 * pct / 100, dh = kBandLines * pct / 100;
    const std::size_t pb = depth == 24 ? 3 : 1;
    std::vector<BYTE> out(pb * dw * dh);
    for (auto _ : st) {
        ACompress::ZoomBits(kA4Width720, kBandLines, static_cast<unsigned short>(depth),
                            Band(depth).data(), dw, dh, out.data());
        benchmark::DoNotOptimize(out.data());
    }
    st.SetBytesProcessed(st.iterations() * out.size());
}
BENCHMARK(BM_Kx_ZoomBits)->Args({8, 200})->Args({8, 50})->Args({24, 200})->Args({24, 50});

}  // namespace
