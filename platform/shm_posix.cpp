// Named shared memory objects over POSIX shm_open, ftruncate and mmap.
//
// The creator of an object marks it with a shared open-file-description lock on byte 0. The
// lock belongs to the creator's descriptor, so it disappears when the creator closes the
// object or dies; an opener tests for it to tell a live area from one a crashed creator left
// behind. Several creators of one name may hold the mark together.
#include "platform/shm_p.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstring>

namespace kxbase::detail {
namespace {

// Area names that a Windows host writes with the session-local namespace prefix name the
// same object as the bare name there, so the prefix is dropped before mapping.
constexpr std::string_view kLocalPrefix = "Local\\";
// Object names: "/kxbase-" + escaped name, or, when that is too long,
// "/kxbase~" + the first bytes of the escaped name + "~" + SHA-256 of the name. '~' never
// occurs in an escaped name, so the two forms cannot meet.
constexpr std::string_view kPlainPrefix = "/kxbase-";
constexpr std::string_view kHashedPrefix = "/kxbase~";
constexpr std::size_t kHashedReadable = 64;  // escaped bytes kept in front of the hash
constexpr std::size_t kMaxComponent = NAME_MAX;

bool keep_byte(unsigned char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' ||
           c == '_' || c == '-';
}

std::string escape(std::string_view name) {
    static constexpr char kHex[] = "0123456789ABCDEF";
    std::string out;
    out.reserve(name.size());
    for (const char ch : name) {
        const auto c = static_cast<unsigned char>(ch);
        if (keep_byte(c)) {
            out += ch;
        } else {
            out += '%';
            out += kHex[c >> 4];
            out += kHex[c & 15];
        }
    }
    return out;
}

struct flock creator_mark(short type) {
    struct flock fl {};
    fl.l_type = type;
    fl.l_whence = SEEK_SET;
    fl.l_start = 0;
    fl.l_len = 1;
    fl.l_pid = 0;  // must be 0 for open-file-description locks
    return fl;
}

// Bytes the shared memory file system can still give, or UINT64_MAX when unknown.
UINT64 free_bytes() {
    struct statvfs vfs {};
    if (statvfs("/dev/shm", &vfs) != 0) return UINT64_MAX;
    return static_cast<UINT64>(vfs.f_bavail) * static_cast<UINT64>(vfs.f_frsize);
}

// --- SHA-256 (FIPS 180-4), compact: names are short and hashed once per open. ---
constexpr std::array<std::uint32_t, 64> kK = {
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
    0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
    0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
    0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
    0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
    0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2};

constexpr std::uint32_t rotr(std::uint32_t x, int n) {
    return (x >> n) | (x << (32 - n));
}

void sha256_block(std::array<std::uint32_t, 8>& h, const unsigned char* p) {
    std::uint32_t w[64];
    for (int i = 0; i < 16; ++i)
        w[i] = (std::uint32_t{p[4 * i]} << 24) | (std::uint32_t{p[4 * i + 1]} << 16) |
               (std::uint32_t{p[4 * i + 2]} << 8) | std::uint32_t{p[4 * i + 3]};
    for (std::size_t i = 16; i < 64; ++i) {
        const std::uint32_t s0 = rotr(w[i - 15], 7) ^ rotr(w[i - 15], 18) ^ (w[i - 15] >> 3);
        const std::uint32_t s1 = rotr(w[i - 2], 17) ^ rotr(w[i - 2], 19) ^ (w[i - 2] >> 10);
        w[i] = w[i - 16] + s0 + w[i - 7] + s1;
    }
    std::uint32_t a = h[0], b = h[1], c = h[2], d = h[3], e = h[4], f = h[5], g = h[6], k = h[7];
    for (std::size_t i = 0; i < 64; ++i) {
        const std::uint32_t t1 =
            k + (rotr(e, 6) ^ rotr(e, 11) ^ rotr(e, 25)) + ((e & f) ^ (~e & g)) + kK[i] + w[i];
        const std::uint32_t t2 =
            (rotr(a, 2) ^ rotr(a, 13) ^ rotr(a, 22)) + ((a & b) ^ (a & c) ^ (b & c));
        k = g;
        g = f;
        f = e;
        e = d + t1;
        d = c;
        c = b;
        b = a;
        a = t1 + t2;
    }
    h[0] += a, h[1] += b, h[2] += c, h[3] += d, h[4] += e, h[5] += f, h[6] += g, h[7] += k;
}

}  // namespace

std::string Sha256Hex(std::string_view data) {
    std::array<std::uint32_t, 8> h = {0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                                      0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
    const auto* p = reinterpret_cast<const unsigned char*>(data.data());
    std::size_t n = data.size();
    while (n >= 64) {
        sha256_block(h, p);
        p += 64;
        n -= 64;
    }
    unsigned char tail[128] = {};
    std::memcpy(tail, p, n);
    tail[n] = 0x80;
    const std::size_t blocks = n + 9 > 64 ? 2 : 1;
    const std::uint64_t bits = static_cast<std::uint64_t>(data.size()) * 8;
    for (std::size_t i = 0; i < 8; ++i)
        tail[blocks * 64 - 1 - i] = static_cast<unsigned char>(bits >> (8 * i));
    for (std::size_t i = 0; i < blocks; ++i) sha256_block(h, tail + 64 * i);
    char out[65];
    for (std::size_t i = 0; i < 8; ++i) std::snprintf(out + 8 * i, 9, "%08x", h[i]);
    return std::string(out, 64);
}

DWORD ShmGranularity() {
    const auto page = sysconf(_SC_PAGESIZE);
    return page > 0 ? static_cast<DWORD>(page) : 4096u;
}

std::string ShmObjectName(std::string_view areaName) {
    if (areaName.starts_with(kLocalPrefix)) areaName.remove_prefix(kLocalPrefix.size());
    const std::string escaped = escape(areaName);
    if (kPlainPrefix.size() - 1 + escaped.size() <= kMaxComponent)
        return std::string(kPlainPrefix) + escaped;
    std::string out(kHashedPrefix);
    out.append(escaped, 0, kHashedReadable);
    out += '~';
    out += Sha256Hex(areaName);
    return out;
}

int ShmCreate(std::string_view areaName, UINT64 size, int& err) {
    err = 0;
    if (size > static_cast<UINT64>(INT64_MAX)) {
        err = EFBIG;
        return -1;
    }
    const std::string object = ShmObjectName(areaName);
    bool created = true;
    int fd = shm_open(object.c_str(), O_RDWR | O_CREAT | O_EXCL, 0600);
    if (fd < 0 && errno == EEXIST) {
        created = false;
        fd = shm_open(object.c_str(), O_RDWR | O_CREAT, 0600);
    }
    if (fd < 0) {
        err = errno;
        return -1;
    }
    auto fail = [&](int code) {
        err = code;
        close(fd);
        if (created) shm_unlink(object.c_str());
        return -1;
    };
    struct flock mark = creator_mark(F_RDLCK);
    if (fcntl(fd, F_OFD_SETLK, &mark) != 0) return fail(errno);
    const UINT64 current = ShmObjectSize(fd);
    if (current < size) {
        // The object is sparse, but refuse an area the file system could never hold: a
        // write into a page that cannot be allocated would fault rather than fail.
        if (size - current > free_bytes()) return fail(ENOSPC);
        if (ftruncate(fd, static_cast<off_t>(size)) != 0) return fail(errno);
    }
    return fd;
}

int ShmOpen(std::string_view areaName, int& err) {
    err = 0;
    const std::string object = ShmObjectName(areaName);
    const int fd = shm_open(object.c_str(), O_RDWR, 0);
    if (fd < 0) {
        err = errno;
        return -1;
    }
    // Opened handles are inheritable, as the channel's clients have always had them.
    const int flags = fcntl(fd, F_GETFD);
    if (flags >= 0) fcntl(fd, F_SETFD, flags & ~FD_CLOEXEC);
    return fd;
}

bool ShmCreatorAttached(int fd) {
    struct flock probe = creator_mark(F_WRLCK);
    if (fcntl(fd, F_OFD_GETLK, &probe) != 0) return true;  // cannot tell: assume alive
    return probe.l_type != F_UNLCK;
}

UINT64 ShmObjectSize(int fd) {
    struct stat st {};
    if (fstat(fd, &st) != 0 || st.st_size < 0) return 0;
    return static_cast<UINT64>(st.st_size);
}

void* ShmMap(int fd, UINT64 offset, std::size_t length, int& err) {
    err = 0;
    if (length == 0 || offset > static_cast<UINT64>(INT64_MAX)) {
        err = EINVAL;
        return nullptr;
    }
    const UINT64 objectSize = ShmObjectSize(fd);
    if (offset > objectSize || length > objectSize - offset) {
        err = EFAULT;
        return nullptr;
    }
    void* view =
        mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_SHARED, fd, static_cast<off_t>(offset));
    if (view == MAP_FAILED) {
        err = errno;
        return nullptr;
    }
    return view;
}

void ShmUnmap(void* view, std::size_t length) {
    if (view != nullptr && length != 0) munmap(view, length);
}

bool ShmWrite(int fd, UINT64 offset, const void* buffer, std::size_t length, int& err) {
    err = 0;
    const auto* bytes = static_cast<const unsigned char*>(buffer);
    while (length != 0) {
        // pwrite past the end would grow the object, undoing another process's truncation
        // and handing out pages beyond the area; the size is checked on every pass because a
        // short write may have let a truncation in.
        const UINT64 objectSize = ShmObjectSize(fd);
        if (offset > objectSize || length > objectSize - offset) {
            err = EFAULT;
            return false;
        }
        const ssize_t n = pwrite(fd, bytes, length, static_cast<off_t>(offset));
        if (n < 0) {
            if (errno == EINTR) continue;
            err = errno;
            return false;
        }
        if (n == 0) {  // no progress and no reason: do not spin
            err = EIO;
            return false;
        }
        const auto done = static_cast<std::size_t>(n);
        bytes += done;
        offset += done;
        length -= done;
    }
    return true;
}

bool ShmRead(int fd, UINT64 offset, void* buffer, std::size_t length, int& err) {
    err = 0;
    auto* bytes = static_cast<unsigned char*>(buffer);
    while (length != 0) {
        const ssize_t n = pread(fd, bytes, length, static_cast<off_t>(offset));
        if (n < 0) {
            if (errno == EINTR) continue;
            err = errno;
            return false;
        }
        if (n == 0) {  // the object ends before the range does: it was cut short
            err = EFAULT;
            return false;
        }
        const auto done = static_cast<std::size_t>(n);
        bytes += done;
        offset += done;
        length -= done;
    }
    return true;
}

void ShmClose(int fd) {
    if (fd >= 0) close(fd);
}

void ShmRemoveAndClose(std::string_view areaName, int fd) {
    if (fd < 0) return;
    // Our own mark does not conflict with our own probe, so this sees only other creators.
    if (!ShmCreatorAttached(fd)) shm_unlink(ShmObjectName(areaName).c_str());
    close(fd);
}

}  // namespace kxbase::detail
