// Peer: OpenSSL's EVP_EncodeBlock / EVP_DecodeBlock on the inputs of base64_inputs.h, into
// buffers allocated once (OpenSSL's own calling pattern; kxbase allocates per call).
#ifdef KXBASE_HAVE_OPENSSL
#include <benchmark/benchmark.h>
#include <openssl/evp.h>

#include <vector>

#include "base64_inputs.h"

namespace {

void BM_OpenSSL_Base64Encode(benchmark::State& state) {
    const std::string& text = kxbench::Base64Text(static_cast<int>(state.range(0)));
    std::vector<unsigned char> out(text.size() / 3 * 4 + 8);
    for (auto _ : state) {
        EVP_EncodeBlock(out.data(), reinterpret_cast<const unsigned char*>(text.data()),
                        static_cast<int>(text.size()));
        benchmark::DoNotOptimize(out.data());
    }
    state.SetLabel(kxbench::Base64Name(static_cast<int>(state.range(0))));
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(text.size()));
}
BENCHMARK(BM_OpenSSL_Base64Encode)->Arg(0)->Arg(1);

void BM_OpenSSL_Base64Decode(benchmark::State& state) {
    const std::string& text = kxbench::Base64Text(static_cast<int>(state.range(0)));
    const std::string& enc = kxbench::Base64Encoded(static_cast<int>(state.range(0)));
    std::vector<unsigned char> out(enc.size() / 4 * 3 + 8);
    for (auto _ : state) {
        EVP_DecodeBlock(out.data(), reinterpret_cast<const unsigned char*>(enc.data()),
                        static_cast<int>(enc.size()));
        benchmark::DoNotOptimize(out.data());
    }
    state.SetLabel(kxbench::Base64Name(static_cast<int>(state.range(0))));
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(text.size()));
}
BENCHMARK(BM_OpenSSL_Base64Decode)->Arg(0)->Arg(1);

}  // namespace
#endif
