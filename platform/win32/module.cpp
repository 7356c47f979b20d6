// Module handles over the Windows loader: a handle is the module's HMODULE (its base address).
#include <kxbase/platform/module.h>

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <cstring>
#include <vector>

namespace {

// Any function of this library serves as the anchor for GetModuleHandleExA.
void library_anchor() {}

}  // namespace

HINSTANCE KxLibraryHandle() {
    HMODULE module = nullptr;
    if (!GetModuleHandleExA(
            GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
            reinterpret_cast<LPCSTR>(&library_anchor), &module))
        return nullptr;
    return module;
}

bool KxIsModuleHandle(HINSTANCE h) {
    if (h == nullptr) return false;
    HMODULE found = nullptr;
    return GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                                  GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                              reinterpret_cast<LPCSTR>(h), &found) &&
           found == h;
}

DWORD KxModuleFileName(HINSTANCE module, char* buffer, DWORD size) {
    if (buffer == nullptr || size == 0) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    if (module != nullptr && !KxIsModuleHandle(module)) {
        buffer[0] = '\0';
        SetLastError(ERROR_MOD_NOT_FOUND);
        return 0;
    }
    // GetModuleFileNameA truncates to size - 1 characters, terminates, returns size and
    // reports ERROR_INSUFFICIENT_BUFFER: the same contract as this function's.
    const DWORD n = GetModuleFileNameA(module, buffer, size);
    if (n == 0) {
        buffer[0] = '\0';
    } else if (n >= size) {
        // Older systems (and Wine) leave a truncated name unterminated.
        buffer[size - 1] = '\0';
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return size;
    }
    return n;
}
