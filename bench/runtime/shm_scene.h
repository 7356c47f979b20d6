// The scene every shared memory benchmark runs: 1 GB of data moved sequentially in transfers
// of 1 MB or 64 KB, from and into one cache-resident transfer buffer. Throughput counts the
// bytes moved.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <unistd.h>
#include <vector>

namespace kxbench {

constexpr std::uint64_t kAreaBytes = 1ull << 30;

/// Benchmark arguments: transfer size, and (channel only) window size.
inline void TransferSizes(benchmark::internal::Benchmark* b) {
    b->Arg(1 << 20)->Arg(64 << 10)->Unit(benchmark::kMillisecond)->UseRealTime();
}
inline void TransferAndWindowSizes(benchmark::internal::Benchmark* b) {
    for (int transfer : {1 << 20, 64 << 10})
        for (int window : {20 << 20, 1 << 20}) b->Args({transfer, window});
    b->Unit(benchmark::kMillisecond)->UseRealTime();
}

inline std::vector<std::uint8_t> TransferBuffer(std::size_t n) {
    std::vector<std::uint8_t> buf(n);
    for (std::size_t i = 0; i < n; ++i) buf[i] = static_cast<std::uint8_t>(i * 131 + 7);
    return buf;
}

inline std::string AreaName(const char* who) {
    return std::string("kxbench-") + who + "-" + std::to_string(getpid());
}

}  // namespace kxbench
