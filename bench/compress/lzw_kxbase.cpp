// kxbase LZW: Comp_LZW and UnComp_LZW on the inputs of lzw_inputs.h. Throughput counts the
// uncompressed bytes in both directions.
#include <benchmark/benchmark.h>

#include <kxbase/compress/compress.h>

#include "lzw_inputs.h"

namespace {

void BM_Kx_CompLZW(benchmark::State& state) {
    const auto& src = kxbench::LzwData(static_cast<int>(state.range(0)));
    std::vector<BYTE> dst(ACompress::LzwCompressBound(static_cast<ULONG>(src.size())));
    ULONG len = 0;
    for (auto _ : state) {
        ACompress::Comp_LZW(src.data(), static_cast<ULONG>(src.size()), dst.data(),
                            static_cast<ULONG>(dst.size()), len);
        benchmark::DoNotOptimize(dst.data());
    }
    state.SetLabel(kxbench::LzwName(static_cast<int>(state.range(0))));
    state.counters["ratio"] = double(len) / double(src.size());
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(src.size()));
}
BENCHMARK(BM_Kx_CompLZW)->DenseRange(0, 3);

void BM_Kx_UnCompLZW(benchmark::State& state) {
    const auto& src = kxbench::LzwData(static_cast<int>(state.range(0)));
    std::vector<BYTE> stream(ACompress::LzwCompressBound(static_cast<ULONG>(src.size())));
    ULONG len = 0;
    ACompress::Comp_LZW(src.data(), static_cast<ULONG>(src.size()), stream.data(),
                        static_cast<ULONG>(stream.size()), len);
    std::vector<BYTE> out(ACompress::LzwDecompressCapacity(src.size()));
    ULONG outLen = 0;
    for (auto _ : state) {
        ACompress::UnComp_LZW(stream.data(), len, out.data(), static_cast<ULONG>(out.size()),
                              outLen);
        benchmark::DoNotOptimize(out.data());
    }
    if (outLen != src.size()) state.SkipWithError("round trip failed");
    state.SetLabel(kxbench::LzwName(static_cast<int>(state.range(0))));
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(src.size()));
}
BENCHMARK(BM_Kx_UnCompLZW)->DenseRange(0, 3);

}  // namespace
