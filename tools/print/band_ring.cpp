#include "band_ring.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace kxprint {

PipeResult WriteToken(int fd, const Token& token) {
    for (;;) {
        const ssize_t n = ::write(fd, &token, sizeof token);
        if (n == static_cast<ssize_t>(sizeof token)) return PipeResult::Ok;
        if (n < 0 && errno == EINTR) continue;
        return n < 0 && errno == EPIPE ? PipeResult::Closed : PipeResult::Failed;
    }
}

PipeResult ReadToken(int fd, Token& token, const volatile int* stop, int timeoutMs) {
    int waited = 0;
    for (;;) {
        if (stop && *stop) return PipeResult::Interrupted;
        pollfd p{fd, POLLIN, 0};
        const int tick = timeoutMs < 0 ? 100 : std::min(100, timeoutMs - waited);
        const int r = ::poll(&p, 1, tick);
        if (r < 0) {
            if (errno == EINTR) continue;
            return PipeResult::Failed;
        }
        if (r == 0) {
            waited += tick;
            if (timeoutMs >= 0 && waited >= timeoutMs) return PipeResult::Interrupted;
            continue;
        }
        // POLLHUP comes with POLLIN while tokens are still buffered: read those first.
        const ssize_t n = ::read(fd, &token, sizeof token);
        if (n == static_cast<ssize_t>(sizeof token)) return PipeResult::Ok;
        if (n == 0) return PipeResult::Closed;
        if (n < 0 && errno == EINTR) continue;
        return PipeResult::Failed;
    }
}

std::string ChannelError(CShareMemoryBase& area) {
    CString text;
    area.GetLastErrorInfo(text);
    std::string s;
    for (const char c : text.str()) {
        if (c == '\n')
            s += ' ';
        else if (c != '\t')
            s += c;
    }
    return s;
}

}  // namespace kxprint
