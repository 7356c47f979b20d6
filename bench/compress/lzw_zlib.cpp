// Peer: zlib's deflate at level 1 (the fast setting a user would pick instead of LZW) and
// inflate, on the inputs of lzw_inputs.h.
#ifdef KXBASE_HAVE_ZLIB
#include <benchmark/benchmark.h>
#include <zlib.h>

#include "lzw_inputs.h"

namespace {

void BM_Zlib1_Compress(benchmark::State& state) {
    const auto& src = kxbench::LzwData(static_cast<int>(state.range(0)));
    std::vector<Bytef> dst(compressBound(src.size()));
    uLongf len = 0;
    for (auto _ : state) {
        len = dst.size();
        compress2(dst.data(), &len, src.data(), src.size(), 1);
        benchmark::DoNotOptimize(dst.data());
    }
    state.SetLabel(kxbench::LzwName(static_cast<int>(state.range(0))));
    state.counters["ratio"] = double(len) / double(src.size());
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(src.size()));
}
BENCHMARK(BM_Zlib1_Compress)->DenseRange(0, 3);

void BM_Zlib1_Uncompress(benchmark::State& state) {
    const auto& src = kxbench::LzwData(static_cast<int>(state.range(0)));
    std::vector<Bytef> stream(compressBound(src.size()));
    uLongf len = stream.size();
    compress2(stream.data(), &len, src.data(), src.size(), 1);
    std::vector<Bytef> out(src.size());
    for (auto _ : state) {
        uLongf outLen = out.size();
        uncompress(out.data(), &outLen, stream.data(), len);
        benchmark::DoNotOptimize(out.data());
    }
    state.SetLabel(kxbench::LzwName(static_cast<int>(state.range(0))));
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(src.size()));
}
BENCHMARK(BM_Zlib1_Uncompress)->DenseRange(0, 3);

}  // namespace
#endif
