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

#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstring>

namespace kxbase::detail {
namespace {

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

}  // namespace

DWORD ShmGranularity() {
    const auto page = sysconf(_SC_PAGESIZE);
    return page > 0 ? static_cast<DWORD>(page) : 4096u;
}

std::string ShmObjectName(std::string_view areaName) {
    // A POSIX name is '/' and one path component of at most NAME_MAX bytes.
    return AreaObjectName(areaName, "/", NAME_MAX);
}

ShmHandle ShmCreate(std::string_view areaName, UINT64 size, int& err) {
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

ShmHandle ShmOpen(std::string_view areaName, int& err) {
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

bool ShmCreatorAttached(ShmHandle handle) {
    const int fd = static_cast<int>(handle);
    struct flock probe = creator_mark(F_WRLCK);
    if (fcntl(fd, F_OFD_GETLK, &probe) != 0) return true;  // cannot tell: assume alive
    return probe.l_type != F_UNLCK;
}

UINT64 ShmObjectSize(ShmHandle handle) {
    const int fd = static_cast<int>(handle);
    struct stat st {};
    if (fstat(fd, &st) != 0 || st.st_size < 0) return 0;
    return static_cast<UINT64>(st.st_size);
}

void* ShmMap(ShmHandle handle, UINT64 offset, std::size_t length, int& err) {
    const int fd = static_cast<int>(handle);
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

bool ShmWrite(ShmHandle handle, UINT64 offset, const void* buffer, std::size_t length, int& err) {
    err = 0;
    const int fd = static_cast<int>(handle);
    const auto* bytes = static_cast<const unsigned char*>(buffer);
    while (length != 0) {
        // pwrite past the end would grow the object, undoing another process's truncation
        // and handing out pages beyond the area; the size is checked on every pass because a
        // short write may have let a truncation in.
        const UINT64 objectSize = ShmObjectSize(handle);
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

bool ShmRead(ShmHandle handle, UINT64 offset, void* buffer, std::size_t length, int& err) {
    err = 0;
    const int fd = static_cast<int>(handle);
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

void ShmClose(ShmHandle handle) {
    const int fd = static_cast<int>(handle);
    if (fd >= 0) close(fd);
}

void ShmRemoveAndClose(std::string_view areaName, ShmHandle handle) {
    const int fd = static_cast<int>(handle);
    if (fd < 0) return;
    // Our own mark does not conflict with our own probe, so this sees only other creators.
    if (!ShmCreatorAttached(fd)) shm_unlink(ShmObjectName(areaName).c_str());
    close(fd);
}

}  // namespace kxbase::detail
