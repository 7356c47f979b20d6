// Writable-range probe from the process's mapping table.
//
// /proc/self/maps lists the mappings in ascending address order, one per line:
//   "start-end perms offset dev inode path" with hexadecimal start and end (end exclusive)
// and perms such as "rw-p". The range is writable when mappings with 'w' in their
// permissions cover it without a gap. Reading the table never touches the probed memory.
#include <kxbase/platform/memory_probe.h>

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace {

/// Streams the mapping table through a fixed buffer and walks the covering mappings. Only
/// the first fields of each line are parsed; the rest of the line (the path, which may be
/// long) is skipped.
class MapsReader {
public:
    explicit MapsReader(int fd) : m_fd(fd) {}

    /// Next mapping; false at the end of the table or on a read or format error.
    bool Next(UINT64& start, UINT64& end, bool& writable) {
        int c = Get();
        if (c < 0) return false;
        if (!Hex(c, start) || c != '-') return false;
        c = Get();
        if (!Hex(c, end) || c != ' ') return false;
        const int r = Get(), w = Get();
        if (r < 0 || w < 0) return false;
        writable = w == 'w';
        while (c >= 0 && c != '\n') c = Get();  // rest of the line
        return true;
    }

private:
    int Get() {
        if (m_pos == m_len) {
            ssize_t n;
            do {
                n = ::read(m_fd, m_buf, sizeof m_buf);
            } while (n < 0 && errno == EINTR);
            if (n <= 0) return -1;
            m_len = static_cast<size_t>(n);
            m_pos = 0;
        }
        return static_cast<unsigned char>(m_buf[m_pos++]);
    }

    /// Reads hexadecimal digits starting with c; c receives the first byte after them.
    bool Hex(int& c, UINT64& value) {
        value = 0;
        int digits = 0;
        for (;; c = Get(), ++digits) {
            int d;
            if (c >= '0' && c <= '9')
                d = c - '0';
            else if (c >= 'a' && c <= 'f')
                d = c - 'a' + 10;
            else if (c >= 'A' && c <= 'F')
                d = c - 'A' + 10;
            else
                break;
            if (digits >= 16) return false;
            value = value << 4 | static_cast<UINT64>(d);
        }
        return digits > 0;
    }

    int m_fd;
    char m_buf[4096];
    size_t m_len = 0;
    size_t m_pos = 0;
};

}  // namespace

bool KxIsWritableRange(const void* p, UINT64 size) {
    if (size == 0) return true;
    if (!p) return false;
    const UINT64 begin = reinterpret_cast<UINT_PTR>(p);
    if (size - 1 > ~UINT64{0} - begin) return false;  // wraps around the address space
    const UINT64 last = begin + (size - 1);           // last byte, inclusive

    int fd;
    do {
        fd = ::open("/proc/self/maps", O_RDONLY | O_CLOEXEC);
    } while (fd < 0 && errno == EINTR);
    if (fd < 0) return false;

    // `next` is the first byte not yet shown to be writable.
    UINT64 next = begin;
    bool covered = false;
    MapsReader reader(fd);
    UINT64 start, end;
    bool writable;
    while (reader.Next(start, end, writable)) {
        if (end <= next) continue;  // wholly below what is still needed
        if (start > next) break;    // a gap before the next needed byte
        if (!writable) break;       // the next needed byte is not writable
        if (end - 1 >= last) {
            covered = true;
            break;
        }
        next = end;
    }
    const int savedErrno = errno;
    ::close(fd);
    errno = savedErrno;
    return covered;
}
