// Byte patterns and range plans shared by the channel tests and their peer process.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <sys/statvfs.h>
#include <unistd.h>
#include <vector>

#include <kxbase/runtime/share_memory.h>

namespace shmtest {

/// The byte a writer `who` puts at data offset `offset`: depends on every bit of the offset,
/// so a transfer that lands in the wrong place (off by a window, by the header) shows.
inline std::uint8_t PatternByte(std::uint64_t offset, unsigned who) {
    std::uint64_t x = offset * 0x9E3779B97F4A7C15ull + who * 0xD1B54A32D192ED03ull;
    x ^= x >> 29;
    return static_cast<std::uint8_t>(x ^ (x >> 17));
}

inline void Fill(std::vector<std::uint8_t>& buf, std::uint64_t offset, unsigned who) {
    for (std::size_t i = 0; i < buf.size(); ++i) buf[i] = PatternByte(offset + i, who);
}

/// Index of the first byte that differs from the pattern, or -1.
inline long long FirstMismatch(const std::vector<std::uint8_t>& buf, std::uint64_t offset,
                               unsigned who) {
    for (std::size_t i = 0; i < buf.size(); ++i)
        if (buf[i] != PatternByte(offset + i, who)) return static_cast<long long>(i);
    return -1;
}

/// Room left on the shared memory file system: areas are refused when larger, so tests of
/// multi-gigabyte areas shrink (or skip) on machines with a small /dev/shm.
inline std::uint64_t FreeShmBytes() {
    struct statvfs v {};
    if (statvfs("/dev/shm", &v) != 0) return ~0ull;
    return static_cast<std::uint64_t>(v.f_bavail) * v.f_frsize;
}

struct Range {
    std::uint64_t offset;
    std::uint32_t length;
};

/// Ranges spread over a data part of `size` bytes: the very start, the very end, and in
/// between ranges that cross window boundaries of any power-of-two window size. Writer 1
/// gets the even ranges, writer 2 the odd ones, so the two never overlap.
inline std::vector<Range> Plan(std::uint64_t size, unsigned who, std::uint32_t length) {
    std::vector<Range> all;
    const unsigned count = 48;
    for (unsigned i = 0; i < count; ++i) {
        std::uint64_t at = size / count * i;
        at -= at % (1u << 20);
        at += 1000003u * (i % 7);  // odd offsets that straddle window ends
        all.push_back({at, length});
    }
    all.push_back({size - length, length});  // the last byte of the data part
    std::vector<Range> mine;
    for (std::size_t i = 0; i < all.size(); ++i)
        if (i % 2 == (who == 1 ? 0u : 1u)) mine.push_back(all[i]);
    return mine;
}

/// Writes (`write`) or reads back and checks every byte of the ranges of `who`, in transfers
/// of `chunk` bytes; returns an error text, or "" when all went well.
inline std::string Exchange(CShareMemoryBase& shm, const std::vector<Range>& ranges, unsigned who,
                            std::uint32_t chunk, bool write) {
    std::vector<std::uint8_t> buf;
    for (const Range& r : ranges)
        for (std::uint64_t done = 0; done < r.length; done += chunk) {
            const std::uint64_t at = r.offset + done;
            buf.resize(static_cast<std::size_t>(std::min<std::uint64_t>(chunk, r.length - done)));
            if (write) Fill(buf, at, who);
            const auto n = static_cast<DWORD>(buf.size());
            if (!(write ? shm.WriteData(at, buf.data(), n) : shm.ReadData(at, buf.data(), n))) {
                CString e;
                shm.GetLastErrorInfo(e);
                return (write ? "write failed: " : "read failed: ") + e.str();
            }
            const long long bad = write ? -1 : FirstMismatch(buf, at, who);
            if (bad >= 0) return "mismatch at data offset " + std::to_string(at + bad);
        }
    return {};
}

}  // namespace shmtest
