// Test helpers that make a fault land inside a channel transfer at a known point, without
// sleeping: a buffer whose chosen page is missing until the test lets it in, and another
// process that cuts a shared memory object short on request.
#pragma once

#include <fcntl.h>
#include <linux/userfaultfd.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <thread>
#include <utility>

#include "platform/shm_p.h"

namespace shmtest {

/// A buffer of `bytes` filled with `fill`, except that page `stallPage` is missing: the first
/// access to it, also the kernel's copy inside a pread or pwrite, waits while `onStall` runs on
/// a helper thread, then finds the page filled too. The transfer is thus held at a known byte
/// while another process acts. Needs userfaultfd for kernel accesses (root, or
/// vm.unprivileged_userfaultfd=1); ok() is false, with the reason in why(), where it is missing.
/// With `stallPage` kNoStall it is a plain buffer.
class StallingBuffer {
public:
    static constexpr std::size_t kNoStall = ~std::size_t{0};

    StallingBuffer(std::size_t bytes, std::size_t stallPage, unsigned char fill,
                   std::function<void()> onStall)
        : m_bytes(bytes),
          m_page(static_cast<std::size_t>(sysconf(_SC_PAGESIZE))),
          m_fill(fill),
          m_onStall(std::move(onStall)) {
        void* p =
            mmap(nullptr, m_bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (p == MAP_FAILED) {
            Fail("mmap");
            return;
        }
        m_data = static_cast<unsigned char*>(p);
        std::memset(m_data, fill, m_bytes);
        if (stallPage == kNoStall) return;
        if (madvise(m_data + stallPage * m_page, m_page, MADV_DONTNEED) != 0) {
            Fail("madvise");
            return;
        }
        m_uffd = static_cast<int>(syscall(SYS_userfaultfd, O_CLOEXEC | O_NONBLOCK));
        if (m_uffd < 0) {
            Fail("userfaultfd");
            return;
        }
        uffdio_api api{};
        api.api = UFFD_API;
        if (ioctl(m_uffd, UFFDIO_API, &api) != 0) {
            Fail("UFFDIO_API");
            return;
        }
        uffdio_register reg{};
        reg.range.start = reinterpret_cast<std::uintptr_t>(m_data);
        reg.range.len = m_bytes;
        reg.mode = UFFDIO_REGISTER_MODE_MISSING;
        if (ioctl(m_uffd, UFFDIO_REGISTER, &reg) != 0) {
            Fail("UFFDIO_REGISTER");
            return;
        }
        if (pipe(m_stop) != 0) {
            Fail("pipe");
            return;
        }
        m_thread = std::thread([this] { Serve(); });
    }
    ~StallingBuffer() {
        if (m_thread.joinable()) {
            const char c = 0;
            if (write(m_stop[1], &c, 1) == 1)
                m_thread.join();
            else
                m_thread.detach();
        }
        for (int fd : {m_uffd, m_stop[0], m_stop[1]})
            if (fd >= 0) close(fd);
        if (m_data != nullptr) munmap(m_data, m_bytes);
    }
    StallingBuffer(const StallingBuffer&) = delete;
    StallingBuffer& operator=(const StallingBuffer&) = delete;

    bool ok() const { return m_why.empty(); }
    const std::string& why() const { return m_why; }
    unsigned char* data() { return m_data; }
    /// True once the missing page was reached and `onStall` has run.
    bool stalled() const { return m_stalled.load(); }

private:
    void Fail(const char* what) { m_why = std::string(what) + ": " + std::strerror(errno); }
    void Serve() {
        for (;;) {
            pollfd fds[2] = {{m_uffd, POLLIN, 0}, {m_stop[0], POLLIN, 0}};
            if (poll(fds, 2, -1) < 0) {
                if (errno == EINTR) continue;
                return;
            }
            if (fds[1].revents != 0) return;
            uffd_msg msg{};
            if (read(m_uffd, &msg, sizeof msg) != static_cast<ssize_t>(sizeof msg)) continue;
            if (msg.event != UFFD_EVENT_PAGEFAULT) continue;
            if (!m_stalled.load()) m_onStall();
            m_stalled.store(true);
            std::string page(m_page, static_cast<char>(m_fill));
            uffdio_copy copy{};
            copy.dst = msg.arg.pagefault.address & ~(static_cast<std::uint64_t>(m_page) - 1);
            copy.src = reinterpret_cast<std::uintptr_t>(page.data());
            copy.len = m_page;
            ioctl(m_uffd, UFFDIO_COPY, &copy);
        }
    }

    std::size_t m_bytes;
    std::size_t m_page;
    unsigned char m_fill;
    std::function<void()> m_onStall;
    unsigned char* m_data = nullptr;
    int m_uffd = -1;
    int m_stop[2] = {-1, -1};
    std::atomic<bool> m_stalled{false};
    std::thread m_thread;
    std::string m_why;
};

/// Another process holding the area's object by name: Cut(size) has it truncate the object
/// to `size` bytes and returns once it has; Request and Wait are the two halves of Cut.
class Cutter {
public:
    explicit Cutter(const std::string& areaName) {
        if (pipe(m_cmd) != 0 || pipe(m_ack) != 0) return;
        const std::string object = kxbase::detail::ShmObjectName(areaName);
        m_pid = fork();
        // Each side keeps only its own ends, so that closing them ends the other side's read.
        close(m_pid == 0 ? m_cmd[1] : m_cmd[0]);
        close(m_pid == 0 ? m_ack[0] : m_ack[1]);
        if (m_pid == 0)
            m_cmd[1] = m_ack[0] = -1;
        else
            m_cmd[0] = m_ack[1] = -1;
        if (m_pid != 0) return;
        const int fd = shm_open(object.c_str(), O_RDWR, 0);
        std::uint64_t size = 0;
        while (read(m_cmd[0], &size, sizeof size) == static_cast<ssize_t>(sizeof size)) {
            const char ok = fd >= 0 && ftruncate(fd, static_cast<off_t>(size)) == 0 ? 1 : 0;
            if (write(m_ack[1], &ok, 1) != 1) break;
        }
        _exit(0);
    }
    ~Cutter() {
        for (int fd : {m_cmd[0], m_cmd[1], m_ack[0], m_ack[1]})
            if (fd >= 0) close(fd);
        if (m_pid > 0) waitpid(m_pid, nullptr, 0);
    }
    Cutter(const Cutter&) = delete;
    Cutter& operator=(const Cutter&) = delete;

    bool Request(std::uint64_t size) {
        return m_pid > 0 && write(m_cmd[1], &size, sizeof size) == sizeof size;
    }
    bool Wait() {
        char ok = 0;
        return read(m_ack[0], &ok, 1) == 1 && ok == 1;
    }
    bool Cut(std::uint64_t size) { return Request(size) && Wait(); }

private:
    int m_cmd[2] = {-1, -1};
    int m_ack[2] = {-1, -1};
    pid_t m_pid = -1;
};

/// Size of the area's object as the system has it now (0 when there is none).
inline std::uint64_t ObjectSize(const std::string& areaName) {
    const int fd = shm_open(kxbase::detail::ShmObjectName(areaName).c_str(), O_RDONLY, 0);
    if (fd < 0) return 0;
    const std::uint64_t size = kxbase::detail::ShmObjectSize(fd);
    close(fd);
    return size;
}

/// True while a shared memory object of the area's name exists.
inline bool ObjectExists(const std::string& areaName) {
    const int fd = shm_open(kxbase::detail::ShmObjectName(areaName).c_str(), O_RDONLY, 0);
    if (fd >= 0) close(fd);
    return fd >= 0;
}

}  // namespace shmtest
