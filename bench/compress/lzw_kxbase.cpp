// kxbase LZW: Comp_LZW and UnComp_LZW on the inputs of lzw_inputs.h. Throughput counts the
// uncompressed bytes in both directions.
#include <benchmark/benchmark.h>

#include <kxbase/compress/compress.h>

#include "lzw_inputs.h"

namespace {

// An input as Comp_LZW codes it, made once outside the timing of the decoding benchmarks.
struct Encoded {
    std::vector<BYTE> stream;
    ULONG len = 0;
};

Encoded Encode(const std::vector<BYTE>& src) {
    Encoded e;
    e.stream.resize(ACompress::LzwCompressBound(static_cast<ULONG>(src.size())));
    ACompress::Comp_LZW(src.data(), static_cast<ULONG>(src.size()), e.stream.data(),
                        static_cast<ULONG>(e.stream.size()), e.len);
    return e;
}

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
    const Encoded enc = Encode(src);
    const std::vector<BYTE>& stream = enc.stream;
    const ULONG len = enc.len;
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

// Where UnComp_LZW's time goes on each input, as two floors: reading the variable-width codes
// alone (ResumeDataBit, no dictionary), and the dictionary stage alone (UnPack_LZW on the codes
// already read). Their sum exceeds UnComp_LZW's time because the fused decoder overlaps them.
void BM_Kx_LzwFloor_ReadCodes(benchmark::State& state) {
    const auto& src = kxbench::LzwData(static_cast<int>(state.range(0)));
    const Encoded enc = Encode(src);
    const std::vector<BYTE>& stream = enc.stream;
    const ULONG len = enc.len;
    std::vector<WORD> codes(ACompress::LzwResumeCodeBound(len));
    ULONG count = 0;
    for (auto _ : state) {
        ACompress::ResumeDataBit(stream.data(), len, codes.data(), count);
        benchmark::DoNotOptimize(codes.data());
    }
    state.SetLabel(kxbench::LzwName(static_cast<int>(state.range(0))));
    state.counters["codes"] = double(count);
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(src.size()));
}
BENCHMARK(BM_Kx_LzwFloor_ReadCodes)->DenseRange(0, 3);

void BM_Kx_LzwFloor_UnPackCodes(benchmark::State& state) {
    const auto& src = kxbench::LzwData(static_cast<int>(state.range(0)));
    const Encoded enc = Encode(src);
    const std::vector<BYTE>& stream = enc.stream;
    const ULONG len = enc.len;
    std::vector<WORD> codes(ACompress::LzwResumeCodeBound(len));
    ULONG count = 0;
    ACompress::ResumeDataBit(stream.data(), len, codes.data(), count);
    std::vector<BYTE> out(ACompress::LzwDecompressCapacity(src.size()));
    ULONG outLen = 0;
    for (auto _ : state) {
        ACompress::UnPack_LZW(codes.data(), count, out.data(), static_cast<ULONG>(out.size()),
                              outLen);
        benchmark::DoNotOptimize(out.data());
    }
    if (outLen != src.size()) state.SkipWithError("round trip failed");
    state.SetLabel(kxbench::LzwName(static_cast<int>(state.range(0))));
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(src.size()));
}
BENCHMARK(BM_Kx_LzwFloor_UnPackCodes)->DenseRange(0, 3);

}  // namespace
