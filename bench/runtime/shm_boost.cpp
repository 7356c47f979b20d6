// Boost.Interprocess: a shared_memory_object of the same 1 GB, mapped whole with one
// mapped_region, transfers copied with memcpy.
#ifdef KXBASE_HAVE_BOOST
#include <boost/interprocess/mapped_region.hpp>
#include <boost/interprocess/shared_memory_object.hpp>

#include "shm_scene.h"

namespace {

namespace bip = boost::interprocess;
using kxbench::kAreaBytes;

struct BoostArea {
    std::string name = kxbench::AreaName("boost");
    bip::shared_memory_object object{bip::create_only, name.c_str(), bip::read_write};
    bip::mapped_region region;
    BoostArea() {
        object.truncate(static_cast<bip::offset_t>(kAreaBytes));
        region = bip::mapped_region(object, bip::read_write);
    }
    ~BoostArea() { bip::shared_memory_object::remove(name.c_str()); }
    std::uint8_t* data() { return static_cast<std::uint8_t*>(region.get_address()); }
};

void BM_Boost_Write(benchmark::State& st) {
    const auto transfer = static_cast<std::size_t>(st.range(0));
    BoostArea area;
    auto buf = kxbench::TransferBuffer(transfer);
    for (std::uint64_t at = 0; at < kAreaBytes; at += transfer)
        std::memcpy(area.data() + at, buf.data(), transfer);
    for (auto _ : st) {
        for (std::uint64_t at = 0; at < kAreaBytes; at += transfer)
            std::memcpy(area.data() + at, buf.data(), transfer);
        benchmark::ClobberMemory();
    }
    st.SetBytesProcessed(static_cast<int64_t>(st.iterations() * kAreaBytes));
}
BENCHMARK(BM_Boost_Write)->Apply(kxbench::TransferSizes);

void BM_Boost_Read(benchmark::State& st) {
    const auto transfer = static_cast<std::size_t>(st.range(0));
    BoostArea area;
    auto buf = kxbench::TransferBuffer(transfer);
    std::memset(area.data(), 1, kAreaBytes);
    std::uint64_t sum = 0;
    for (auto _ : st) {
        for (std::uint64_t at = 0; at < kAreaBytes; at += transfer) {
            std::memcpy(buf.data(), area.data() + at, transfer);
            benchmark::ClobberMemory();
            sum += buf[0];
        }
    }
    benchmark::DoNotOptimize(sum);
    st.SetBytesProcessed(static_cast<int64_t>(st.iterations() * kAreaBytes));
}
BENCHMARK(BM_Boost_Read)->Apply(kxbench::TransferSizes);

}  // namespace
#endif
