// The channel: a server writes the 1 GB data part sequentially, a client of the same area
// reads it back, each through its sliding window.
#include <kxbase/runtime/share_memory.h>

#include "shm_scene.h"

namespace {

using kxbench::kAreaBytes;

void BM_Kx_ChannelWrite(benchmark::State& st) {
    const auto transfer = static_cast<DWORD>(st.range(0));
    const auto window = static_cast<DWORD>(st.range(1));
    CShareMemoryServer server;
    if (!server.CreateMap(kxbench::AreaName("kx").c_str(), kAreaBytes, window)) {
        st.SkipWithError("CreateMap failed");
        return;
    }
    auto buf = kxbench::TransferBuffer(transfer);
    for (UINT64 at = 0; at < kAreaBytes; at += transfer) server.WriteData(at, buf.data(), transfer);
    for (auto _ : st)
        for (UINT64 at = 0; at < kAreaBytes; at += transfer)
            server.WriteData(at, buf.data(), transfer);
    st.SetBytesProcessed(static_cast<int64_t>(st.iterations() * kAreaBytes));
}
BENCHMARK(BM_Kx_ChannelWrite)->Apply(kxbench::TransferAndWindowSizes);

void BM_Kx_ChannelRead(benchmark::State& st) {
    const auto transfer = static_cast<DWORD>(st.range(0));
    const auto window = static_cast<DWORD>(st.range(1));
    const std::string name = kxbench::AreaName("kx");
    CShareMemoryServer server;
    CShareMemoryClient client;
    if (!server.CreateMap(name.c_str(), kAreaBytes, window) ||
        !client.OpenMap(name.c_str(), window)) {
        st.SkipWithError("CreateMap/OpenMap failed");
        return;
    }
    auto buf = kxbench::TransferBuffer(transfer);
    for (UINT64 at = 0; at < kAreaBytes; at += transfer) server.WriteData(at, buf.data(), transfer);
    server.DeleteMap();  // the client keeps the area
    std::uint64_t sum = 0;
    for (auto _ : st) {
        for (UINT64 at = 0; at < kAreaBytes; at += transfer) {
            client.ReadData(at, buf.data(), transfer);
            sum += buf[0];
        }
    }
    benchmark::DoNotOptimize(sum);
    st.SetBytesProcessed(static_cast<int64_t>(st.iterations() * kAreaBytes));
}
BENCHMARK(BM_Kx_ChannelRead)->Apply(kxbench::TransferAndWindowSizes);

}  // namespace
