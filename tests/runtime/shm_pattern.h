// Byte patterns, range plans and small helpers shared by the channel tests and their peer.
#pragma once

#if defined(_WIN32)
#include <io.h>
#include <process.h>
#else
#include <sys/statvfs.h>
#include <unistd.h>
#endif

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include <kxbase/runtime/share_memory.h>

namespace shmtest {

inline std::string ErrorOf(CShareMemoryBase& shm) {
    CString e;
    shm.GetLastErrorInfo(e);
    return e.str();
}

/// An area name private to this test process.
inline std::string Name(const std::string& what) {
#if defined(_WIN32)
    // Windows object names take no backslash after the namespace prefix.
    std::string safe = what;
    for (char& c : safe)
        if (c == '\\') c = '-';
    return "Local\\kxtest/" + std::to_string(_getpid()) + "/" + safe;
#else
    return "kxtest/" + std::to_string(getpid()) + "/" + what;
#endif
}

/// The byte writer `who` puts at data offset `offset`: depends on every bit of the offset,
/// so a transfer that lands in the wrong place (off by a window, by the header) shows.
inline std::uint8_t PatternByte(std::uint64_t offset, unsigned who) {
    std::uint64_t x = offset * 0x9E3779B97F4A7C15ull + who * 0xD1B54A32D192ED03ull;
    x ^= x >> 29;
    return static_cast<std::uint8_t>(x ^ (x >> 17));
}

/// Room left on the shared memory file system: larger areas are refused, so tests of
/// multi-gigabyte areas shrink (or skip) on machines with a small /dev/shm.
inline std::uint64_t FreeShmBytes() {
#if defined(_WIN32)
    return ~0ull;  // page-file-backed areas: the system commits them when they are made
#else
    struct statvfs v {};
    if (statvfs("/dev/shm", &v) != 0) return ~0ull;
    return static_cast<std::uint64_t>(v.f_bavail) * v.f_frsize;
#endif
}

/// One byte through a pipe descriptor (the C runtime's on Windows).
inline bool PipeByte(int fd, char& c, bool send) {
#if defined(_WIN32)
    return (send ? _write(fd, &c, 1) : _read(fd, &c, 1)) == 1;
#else
    return (send ? ::write(fd, &c, 1) : ::read(fd, &c, 1)) == 1;
#endif
}

/// Writes (`write`) or reads back and checks every byte of the ranges of writer `who`, in
/// transfers of `chunk` bytes; returns an error text, or "" when all went well. The ranges
/// of 300000 bytes cover the start of the data part, its very end, and odd offsets between
/// that straddle window ends of any power-of-two window size. Writer 1 owns the even ones,
/// writer 2 the odd ones, so the two never overlap.
inline std::string Exchange(CShareMemoryBase& shm, std::uint64_t size, unsigned who,
                            std::uint32_t chunk, bool write) {
    const std::uint64_t kRange = 300000;
    std::vector<std::uint8_t> buf;
    for (unsigned r = who - 1; r <= 48; r += 2) {
        const std::uint64_t s = size / 48 * r;
        const std::uint64_t start =
            r == 48 ? size - kRange : s - s % (1u << 20) + 1000003u * (r % 7);
        for (std::uint64_t at = start; at < start + kRange; at += buf.size()) {
            buf.resize(std::min<std::uint64_t>(chunk, start + kRange - at));
            for (std::size_t i = 0; write && i < buf.size(); ++i) buf[i] = PatternByte(at + i, who);
            const auto n = static_cast<DWORD>(buf.size());
            if (!(write ? shm.WriteData(at, buf.data(), n) : shm.ReadData(at, buf.data(), n)))
                return (write ? "write failed: " : "read failed: ") + ErrorOf(shm);
            for (std::size_t i = 0; !write && i < buf.size(); ++i)
                if (buf[i] != PatternByte(at + i, who))
                    return "mismatch at data offset " + std::to_string(at + i);
        }
    }
    return {};
}

/// One side of the two-process exchange: writes the ranges of `who`, says so on `out`, waits
/// for the other side's word on `in`, then checks every byte the other side wrote.
inline std::string Side(CShareMemoryBase& shm, std::uint64_t size, unsigned who,
                        std::uint32_t chunk, int in, int out) {
    std::string error = Exchange(shm, size, who, chunk, true);
    char c = 'w';
    if (!PipeByte(out, c, true) && error.empty()) error = "other side gone";
    if ((!PipeByte(in, c, false) || c != 'w') && error.empty()) error = "other side failed";
    return error.empty() ? Exchange(shm, size, 3 - who, chunk, false) : error;
}

}  // namespace shmtest
