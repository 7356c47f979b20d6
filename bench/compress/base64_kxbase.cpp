// kxbase Base64: Base64_Encode and Base64_Decode on the inputs of base64_inputs.h. Each call
// measures the whole operation as a host sees it: length scan, allocation of the result,
// coding, and release with Base64_Free. Throughput counts the plain bytes.
#include <benchmark/benchmark.h>

#include <kxbase/compress/compress.h>

#include "base64_inputs.h"

namespace {

void BM_Kx_Base64Encode(benchmark::State& state) {
    const std::string& text = kxbench::Base64Text(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        char* r = ACompress::Base64_Encode(text.c_str());
        benchmark::DoNotOptimize(r);
        ACompress::Base64_Free(&r);
    }
    state.SetLabel(kxbench::Base64Name(static_cast<int>(state.range(0))));
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(text.size()));
}
BENCHMARK(BM_Kx_Base64Encode)->Arg(0)->Arg(1);

void BM_Kx_Base64Decode(benchmark::State& state) {
    const std::string& text = kxbench::Base64Text(static_cast<int>(state.range(0)));
    const std::string& enc = kxbench::Base64Encoded(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        char* r = ACompress::Base64_Decode(enc.c_str());
        benchmark::DoNotOptimize(r);
        ACompress::Base64_Free(&r);
    }
    char* r = ACompress::Base64_Decode(enc.c_str());
    if (text.compare(0, text.size(), r, text.size()) != 0) state.SkipWithError("decode differs");
    ACompress::Base64_Free(&r);
    state.SetLabel(kxbench::Base64Name(static_cast<int>(state.range(0))));
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(text.size()));
}
BENCHMARK(BM_Kx_Base64Decode)->Arg(0)->Arg(1);

}  // namespace
