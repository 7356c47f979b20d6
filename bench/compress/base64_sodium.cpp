// Peer: libsodium's constant-time Base64 without padding (sodium_bin2base64 /
// sodium_base642bin, variant ORIGINAL_NO_PADDING) on the inputs of base64_inputs.h, into
// buffers allocated once.
#ifdef KXBASE_HAVE_SODIUM
#include <benchmark/benchmark.h>
#include <sodium.h>

#include <vector>

#include "base64_inputs.h"

namespace {

constexpr int kVariant = sodium_base64_VARIANT_ORIGINAL_NO_PADDING;

void BM_Sodium_Base64Encode(benchmark::State& state) {
    const std::string& text = kxbench::Base64Text(static_cast<int>(state.range(0)));
    std::vector<char> out(sodium_base64_encoded_len(text.size(), kVariant));
    for (auto _ : state) {
        sodium_bin2base64(out.data(), out.size(),
                          reinterpret_cast<const unsigned char*>(text.data()), text.size(),
                          kVariant);
        benchmark::DoNotOptimize(out.data());
    }
    state.SetLabel(kxbench::Base64Name(static_cast<int>(state.range(0))));
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(text.size()));
}
BENCHMARK(BM_Sodium_Base64Encode)->Arg(0)->Arg(1);

void BM_Sodium_Base64Decode(benchmark::State& state) {
    const std::string& text = kxbench::Base64Text(static_cast<int>(state.range(0)));
    const std::string& enc = kxbench::Base64Encoded(static_cast<int>(state.range(0)));
    std::vector<unsigned char> out(text.size() + 8);
    for (auto _ : state) {
        std::size_t len = 0;
        sodium_base642bin(out.data(), out.size(), enc.data(), enc.size(), nullptr, &len, nullptr,
                          kVariant);
        benchmark::DoNotOptimize(out.data());
    }
    state.SetLabel(kxbench::Base64Name(static_cast<int>(state.range(0))));
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(text.size()));
}
BENCHMARK(BM_Sodium_Base64Decode)->Arg(0)->Arg(1);

}  // namespace
#endif
