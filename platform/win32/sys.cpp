// The Windows side of the backend interface in platform/sys.h. Error codes are the system's
// own (GetLastError values).
#include "platform/sys.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>  // with winsock.h: WSAStartup and WSACleanup

#include <cmath>
#include <cstdlib>
#include <locale.h>

namespace kxbase::sys {
namespace {

// Whether StartSockets succeeded, so that StopSockets pairs every WSAStartup with exactly
// one WSACleanup. The start-up and exit run once each, in the loader's thread.
bool g_socketsStarted = false;

INT64 performance_frequency() {
    static const INT64 frequency = [] {
        LARGE_INTEGER f{};
        return QueryPerformanceFrequency(&f) && f.QuadPart > 0 ? f.QuadPart : INT64{0};
    }();
    return frequency;
}

// Counter ticks scaled to `unit` per second without overflowing for the first centuries.
bool scaled_counter(INT64 unit, INT64& value) {
    const INT64 frequency = performance_frequency();
    LARGE_INTEGER now{};
    if (frequency == 0 || !QueryPerformanceCounter(&now)) return false;
    const INT64 seconds = now.QuadPart / frequency;
    const INT64 rest = now.QuadPart % frequency;
    value = seconds * unit + rest * unit / frequency;
    return true;
}

}  // namespace

bool MonotonicNanoseconds(INT64* value) {
    return scaled_counter(1000000000, *value);
}

bool StartSockets() {
    if (g_socketsStarted) return true;
    WSADATA data{};
    g_socketsStarted = WSAStartup(MAKEWORD(2, 2), &data) == 0;
    return g_socketsStarted;
}

void StopSockets() {
    if (g_socketsStarted) WSACleanup();
    g_socketsStarted = false;
}

UINT64 MonotonicMilliseconds() {
    INT64 ms = 0;
    return scaled_counter(1000, ms) ? static_cast<UINT64>(ms) : 0u;
}

DWORD LastSystemError() {
    return GetLastError();
}

void SetLastSystemError(DWORD code) {
    SetLastError(code);
}

DWORD ErrorNoSuchFile() {
    return ERROR_FILE_NOT_FOUND;
}

DWORD ErrorInvalidArgument() {
    return ERROR_INVALID_PARAMETER;
}

DWORD ErrorOutOfMemory() {
    return ERROR_NOT_ENOUGH_MEMORY;
}

DWORD ErrorInvalidHandle() {
    return ERROR_INVALID_HANDLE;
}

bool SystemErrorText(DWORD code, std::string& text) {
    char buf[1024];
    DWORD n = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                             code, 0, buf, sizeof buf, nullptr);
    // The system's messages end with a line break (and often a full stop before it).
    while (n > 0 && (buf[n - 1] == '\n' || buf[n - 1] == '\r' || buf[n - 1] == ' ')) --n;
    if (n == 0) return false;
    text.assign(buf, n);
    return true;
}

bool MakeFolder(const char* path) {
    if (CreateDirectoryA(path, nullptr)) return true;
    const DWORD err = GetLastError();
    const DWORD attributes = GetFileAttributesA(path);
    if (err == ERROR_ALREADY_EXISTS && attributes != INVALID_FILE_ATTRIBUTES &&
        (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
        return true;
    SetLastError(err);
    return false;
}

bool IsWritableFolder(const char* path) {
    // Windows has no access check by path that honours the folder's ACL the way creating a
    // file does, so create (and at once delete) a uniquely named file there.
    const DWORD attributes = GetFileAttributesA(path);
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0)
        return false;
    char name[MAX_PATH];
    if (GetTempFileNameA(path, "kxw", 0, name) == 0) return false;
    DeleteFileA(name);
    return true;
}

const char* FolderSeparators() {
    return "\\/";
}

DWORD MaxPathBytes() {
    return 32767;  // the longest path the wide and "\\?\" forms of the system accept
}

DWORD PageSize() {
    SYSTEM_INFO si{};
    GetSystemInfo(&si);
    return si.dwPageSize != 0 ? si.dwPageSize : 4096u;
}

DWORD OnlineProcessors() {
    SYSTEM_INFO si{};
    GetSystemInfo(&si);
    return si.dwNumberOfProcessors != 0 ? si.dwNumberOfProcessors : 1u;
}

bool ScreenDeviceCaps(int values[7]) {
    HDC dc = GetDC(nullptr);
    if (dc == nullptr) return false;
    const int caps[7] = {BITSPIXEL, HORZRES, VERTRES, LOGPIXELSX, LOGPIXELSY, HORZSIZE, VERTSIZE};
    for (int i = 0; i < 7; ++i) values[i] = GetDeviceCaps(dc, caps[i]);
    ReleaseDC(nullptr, dc);
    return true;
}

double ParseDoubleC(const char* text) {
    static const _locale_t cLocale = _create_locale(LC_NUMERIC, "C");
    if (cLocale == nullptr) return std::atof(text);
    return _strtod_l(text, nullptr, cLocale);
}

const char* TrustedEnvironment(const char* name) {
    // Windows processes do not change rights on start, so every variable is the caller's own.
    return std::getenv(name);
}

namespace {

using MathFunction = double (*)(double);

// The C runtime DLL's own function, or MinGW's static one where the DLL lacks it.
MathFunction crt_function(const char* name, MathFunction fallback) {
    HMODULE crt = GetModuleHandleA("msvcrt.dll");
    if (crt == nullptr) crt = LoadLibraryA("msvcrt.dll");
    if (crt == nullptr) return fallback;
    const FARPROC f = GetProcAddress(crt, name);
    return f != nullptr ? reinterpret_cast<MathFunction>(reinterpret_cast<void*>(f)) : fallback;
}

double static_sin(double x) {
    return std::sin(x);
}

double static_cos(double x) {
    return std::cos(x);
}

}  // namespace

double Sin(double x) {
    static const MathFunction f = crt_function("sin", static_sin);
    return f(x);
}

double Cos(double x) {
    static const MathFunction f = crt_function("cos", static_cos);
    return f(x);
}

void RunSwallowingExceptions(void (*fn)(void*), void* arg) {
    // A thread ended from outside (TerminateThread) does not unwind, so nothing is rethrown.
    try {
        fn(arg);
    } catch (...) {
    }
}

}  // namespace kxbase::sys
