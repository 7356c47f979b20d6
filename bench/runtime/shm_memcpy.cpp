// The floors the channel is measured against. The physical limit: memcpy of the same
// transfers into and out of 1 GB of ordinary, already-touched memory. Then two bare ways
// of moving the bytes through a shared memory object with nothing around them: copies
// through windows mapped one at a time, and pwrite / pread on the object's descriptor.
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
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

// A shared memory object of the whole 1 GB, sized and filled once, removed at the end.
struct RawObject {
    std::string name = std::string(1, '/').append(kxbench::AreaName("raw"));
    int fd = shm_open(name.c_str(), O_RDWR | O_CREAT | O_EXCL, 0600);
    RawObject() {
        if (fd >= 0 && ftruncate(fd, static_cast<off_t>(kAreaBytes)) != 0) {
            close(fd);
            fd = -1;
        }
        auto buf = kxbench::TransferBuffer(1 << 20);
        for (std::uint64_t at = 0; fd >= 0 && at < kAreaBytes; at += buf.size())
            if (pwrite(fd, buf.data(), buf.size(), static_cast<off_t>(at)) < 0) fd = -1;
    }
    ~RawObject() {
        if (fd >= 0) close(fd);
        shm_unlink(name.c_str());
    }
};

// Raw windows: mmap, populate, copy, munmap, in windows of the given size. The cost of any
// design that copies through its windows: every page's table entry is set up again
// whenever a window moves over it.
template <bool Write>
void RawWindows(benchmark::State& st) {
    const auto transfer = static_cast<std::size_t>(st.range(0));
    const auto window = static_cast<std::size_t>(st.range(1));
    RawObject area;
    if (area.fd < 0) {
        st.SkipWithError("shm_open failed");
        return;
    }
    auto buf = kxbench::TransferBuffer(transfer);
    std::uint64_t sum = 0;
    auto pass = [&] {
        for (std::uint64_t base = 0; base < kAreaBytes; base += window) {
            const std::size_t len = std::min<std::uint64_t>(window, kAreaBytes - base);
            auto* p =
                static_cast<std::uint8_t*>(mmap(nullptr, len, PROT_READ | PROT_WRITE, MAP_SHARED,
                                                area.fd, static_cast<off_t>(base)));
            if (p == reinterpret_cast<std::uint8_t*>(MAP_FAILED)) return false;
            madvise(p, len, MADV_POPULATE_READ);
            for (std::size_t at = 0; at < len; at += transfer) {
                const std::size_t n = std::min(transfer, len - at);
                if (Write) {
                    std::memcpy(p + at, buf.data(), n);
                } else {
                    std::memcpy(buf.data(), p + at, n);
                    benchmark::ClobberMemory();
                    sum += buf[0];
                }
            }
            munmap(p, len);
        }
        return true;
    };
    for (auto _ : st)
        if (!pass()) st.SkipWithError("mmap failed");
    benchmark::DoNotOptimize(sum);
    st.SetBytesProcessed(static_cast<int64_t>(st.iterations() * kAreaBytes));
}
BENCHMARK_TEMPLATE(RawWindows, true)
    ->Name("BM_RawWindows_Write")
    ->Apply(kxbench::TransferAndWindowSizes);
BENCHMARK_TEMPLATE(RawWindows, false)
    ->Name("BM_RawWindows_Read")
    ->Apply(kxbench::TransferAndWindowSizes);

// The bare descriptor path: pwrite / pread of the same transfers on the object's descriptor,
// nothing mapped. The kernel copies between the buffer and the object's pages directly; no
// page-table work at all. The floor of the channel, which moves its bytes the same way.
// The checked variant also asks for the object's size before each write, as a writer must
// that may not grow an object another process cut short: the floor of a safe write.
template <bool Write, bool CheckSize = false>
void RawDescriptor(benchmark::State& st) {
    const auto transfer = static_cast<std::size_t>(st.range(0));
    RawObject area;
    if (area.fd < 0) {
        st.SkipWithError("shm_open failed");
        return;
    }
    auto buf = kxbench::TransferBuffer(transfer);
    std::uint64_t sum = 0;
    for (auto _ : st) {
        for (std::uint64_t at = 0; at < kAreaBytes; at += transfer) {
            const auto off = static_cast<off_t>(at);
            if (Write) {
                struct stat info {};
                if (CheckSize && (fstat(area.fd, &info) != 0 || info.st_size < off))
                    st.SkipWithError("fstat");
                if (pwrite(area.fd, buf.data(), transfer, off) < 0) st.SkipWithError("pwrite");
            } else {
                if (pread(area.fd, buf.data(), transfer, off) < 0) st.SkipWithError("pread");
                sum += buf[0];
            }
        }
    }
    benchmark::DoNotOptimize(sum);
    st.SetBytesProcessed(static_cast<int64_t>(st.iterations() * kAreaBytes));
}
BENCHMARK_TEMPLATE(RawDescriptor, true)
    ->Name("BM_RawDescriptor_Write")
    ->Apply(kxbench::TransferSizes);
BENCHMARK_TEMPLATE(RawDescriptor, true, true)
    ->Name("BM_RawDescriptorChecked_Write")
    ->Apply(kxbench::TransferSizes);
BENCHMARK_TEMPLATE(RawDescriptor, false)
    ->Name("BM_RawDescriptor_Read")
    ->Apply(kxbench::TransferSizes);

}  // namespace
