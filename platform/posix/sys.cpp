// The POSIX (Linux, glibc) side of the backend interface in platform/sys.h.
#include "platform/sys.h"

#include <cxxabi.h>
#include <locale.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <cmath>
#include <climits>
#include <cstdlib>
#include <cstring>

namespace kxbase::sys {

bool MonotonicNanoseconds(INT64* value) {
    timespec ts{};
    if (clock_gettime(CLOCK_MONOTONIC, &ts) != 0) return false;
    *value = static_cast<INT64>(ts.tv_sec) * 1000000000 + ts.tv_nsec;
    return true;
}

UINT64 MonotonicMilliseconds() {
    timespec ts{};
    if (clock_gettime(CLOCK_MONOTONIC, &ts) != 0) return 0;
    return static_cast<UINT64>(ts.tv_sec) * 1000u + static_cast<UINT64>(ts.tv_nsec) / 1000000u;
}

DWORD LastSystemError() {
    return static_cast<DWORD>(errno);
}

void SetLastSystemError(DWORD code) {
    errno = static_cast<int>(code);
}

DWORD ErrorNoSuchFile() {
    return ENOENT;
}

DWORD ErrorInvalidArgument() {
    return EINVAL;
}

DWORD ErrorOutOfMemory() {
    return ENOMEM;
}

DWORD ErrorInvalidHandle() {
    return EBADF;
}

bool SystemErrorText(DWORD code, std::string& text) {
    // strerrordesc_np knows exactly the codes that have a message (it returns null for the
    // rest, where strerror_r would invent "Unknown error N"); strerror_r gives the text in
    // the current locale.
    if (code > 0x7FFFFFFFu) return false;
    const int errnum = static_cast<int>(code);
    if (strerrordesc_np(errnum) == nullptr) return false;
    char buf[512];
    const char* message = strerror_r(errnum, buf, sizeof buf);
    if (message == nullptr || message[0] == '\0') return false;
    text = message;
    return true;
}

bool MakeFolder(const char* path) {
    if (mkdir(path, 0777) == 0) return true;
    const int err = errno;
    struct stat st {};
    if (err == EEXIST && stat(path, &st) == 0 && S_ISDIR(st.st_mode)) return true;
    errno = err;
    return false;
}

bool IsWritableFolder(const char* path) {
    return access(path, W_OK) == 0;
}

const char* FolderSeparators() {
    return "/";
}

DWORD MaxPathBytes() {
    return PATH_MAX;
}

DWORD PageSize() {
    const long page = sysconf(_SC_PAGESIZE);  // NOLINT: sysconf's own type
    return page > 0 ? static_cast<DWORD>(page) : 4096u;
}

DWORD OnlineProcessors() {
    const long cpus = sysconf(_SC_NPROCESSORS_ONLN);  // NOLINT: sysconf's own type
    return cpus > 0 ? static_cast<DWORD>(cpus) : 1u;
}

bool StartSockets() {
    return true;
}

void StopSockets() {}

bool ScreenDeviceCaps(int*) {
    return false;  // no system-wide screen; a host with a display installs a provider
}

double ParseDoubleC(const char* text) {
    static const locale_t cLocale = newlocale(LC_NUMERIC_MASK, "C", static_cast<locale_t>(0));
    if (cLocale == static_cast<locale_t>(0)) return std::atof(text);
    return strtod_l(text, nullptr, cLocale);
}

const char* TrustedEnvironment(const char* name) {
    // secure_getenv: a set-user-id host must not let its caller choose where folders appear.
    return secure_getenv(name);
}

double Sin(double x) {
    return std::sin(x);
}

double Cos(double x) {
    return std::cos(x);
}

void RunSwallowingExceptions(void (*fn)(void*), void* arg) {
    try {
        fn(arg);
    } catch (abi::__forced_unwind&) {
        throw;  // pthread_exit from the body must unwind the whole stack
    } catch (...) {
    }
}

}  // namespace kxbase::sys
