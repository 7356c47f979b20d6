// The physical limit: memcpy of the same transfers into and out of 1 GB of ordinary,
// already-touched memory. And the floor of any windowed channel: the same copies into a
// shared memory object mapped one window at a time with raw mmap (each page's table entry
// is set up again whenever a window moves over it), with nothing else around them.
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include "shm_scene.h"

namespace {

using kxbench::kAreaBytes;

struct Area {
    std::uint8_t* p = static_cast<std::uint8_t*>(
        mmap(nullptr, kAreaBytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    Area() {
        if (p != MAP_FAILED) std::memset(p, 1, kAreaBytes);
    }
    ~Area() {
        if (p != MAP_FAILED) munmap(p, kAreaBytes);
    }
};

void BM_Memcpy_Write(benchmark::State& st) {
    const auto transfer = static_cast<std::size_t>(st.range(0));
    Area area;
    auto buf = kxbench::TransferBuffer(transfer);
    for (auto _ : st) {
        for (std::uint64_t at = 0; at < kAreaBytes; at += transfer)
            std::memcpy(area.p + at, buf.data(), transfer);
        benchmark::ClobberMemory();
    }
    st.SetBytesProcessed(static_cast<int64_t>(st.iterations() * kAreaBytes));
}
BENCHMARK(BM_Memcpy_Write)->Apply(kxbench::TransferSizes);

void BM_Memcpy_Read(benchmark::State& st) {
    const auto transfer = static_cast<std::size_t>(st.range(0));
    Area area;
    auto buf = kxbench::TransferBuffer(transfer);
    std::uint64_t sum = 0;
    for (auto _ : st) {
        for (std::uint64_t at = 0; at < kAreaBytes; at += transfer) {
            std::memcpy(buf.data(), area.p + at, transfer);
            benchmark::ClobberMemory();
            sum += buf[0];
        }
    }
    benchmark::DoNotOptimize(sum);
    st.SetBytesProcessed(static_cast<int64_t>(st.iterations() * kAreaBytes));
}
BENCHMARK(BM_Memcpy_Read)->Apply(kxbench::TransferSizes);

// Raw windows: mmap, populate, copy, munmap, in windows of the given size.
void BM_RawWindows_Write(benchmark::State& st) {
    const auto transfer = static_cast<std::size_t>(st.range(0));
    const auto window = static_cast<std::size_t>(st.range(1));
    std::string name = "/";
    name += kxbench::AreaName("raw");
    const int fd = shm_open(name.c_str(), O_RDWR | O_CREAT | O_EXCL, 0600);
    if (fd < 0 || ftruncate(fd, static_cast<off_t>(kAreaBytes)) != 0) {
        st.SkipWithError("shm_open failed");
        return;
    }
    auto buf = kxbench::TransferBuffer(transfer);
    auto pass = [&] {
        for (std::uint64_t base = 0; base < kAreaBytes; base += window) {
            const std::size_t len = std::min<std::uint64_t>(window, kAreaBytes - base);
            auto* p = static_cast<std::uint8_t*>(mmap(nullptr, len, PROT_READ | PROT_WRITE,
                                                      MAP_SHARED, fd, static_cast<off_t>(base)));
            madvise(p, len, MADV_POPULATE_READ);
            for (std::size_t at = 0; at < len; at += transfer)
                std::memcpy(p + at, buf.data(), std::min(transfer, len - at));
            munmap(p, len);
        }
    };
    pass();
    for (auto _ : st) pass();
    st.SetBytesProcessed(static_cast<int64_t>(st.iterations() * kAreaBytes));
    close(fd);
    shm_unlink(name.c_str());
}
BENCHMARK(BM_RawWindows_Write)->Apply(kxbench::TransferAndWindowSizes);

}  // namespace
