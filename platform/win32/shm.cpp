// Named shared memory objects over page-file-backed file mappings (CreateFileMappingA with
// INVALID_HANDLE_VALUE). The object name is the area name exactly as the host gives it
// ("Local\..." or "Global\..." included), so a Windows host that makes or opens the mapping
// itself meets this library on the same object.
//
// A mapping lives while any process holds a handle to it or a view of it: when the last one
// goes (a crashed creator included) the system removes it. An area that still exists therefore
// has a live holder, and there is no creator mark to test.
#include "platform/shm_p.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

namespace kxbase::detail {
namespace {

HANDLE to_handle(ShmHandle h) {
    return reinterpret_cast<HANDLE>(h);
}

ShmHandle from_handle(HANDLE h) {
    return reinterpret_cast<ShmHandle>(h);
}

int last_error() {
    return static_cast<int>(GetLastError());
}

}  // namespace

DWORD ShmGranularity() {
    SYSTEM_INFO si{};
    GetSystemInfo(&si);
    return si.dwAllocationGranularity != 0 ? si.dwAllocationGranularity : 65536u;
}

std::string ShmObjectName(std::string_view areaName) {
    return std::string(areaName);
}

ShmHandle ShmCreate(std::string_view areaName, UINT64 size, int& err) {
    err = 0;
    const std::string object = ShmObjectName(areaName);
    HANDLE h = CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE,
                                  static_cast<DWORD>(size >> 32), static_cast<DWORD>(size),
                                  object.c_str());
    if (h == nullptr) {
        err = last_error();
        return kNoShm;
    }
    if (GetLastError() == ERROR_ALREADY_EXISTS) {
        // A mapping cannot grow: an existing one must already be large enough.
        const ShmHandle handle = from_handle(h);
        if (ShmObjectSize(handle) < size) {
            CloseHandle(h);
            err = ERROR_ALREADY_EXISTS;
            return kNoShm;
        }
    }
    return from_handle(h);
}

ShmHandle ShmOpen(std::string_view areaName, int& err) {
    err = 0;
    const std::string object = ShmObjectName(areaName);
    // Opened handles are inheritable, as the channel's clients have always had them.
    HANDLE h = OpenFileMappingA(FILE_MAP_ALL_ACCESS, TRUE, object.c_str());
    if (h == nullptr) {
        err = last_error();
        return kNoShm;
    }
    return from_handle(h);
}

bool ShmCreatorAttached(ShmHandle) {
    return true;  // an existing mapping always has a holder (see above)
}

UINT64 ShmObjectSize(ShmHandle handle) {
    // The section's size is the size of a view of all of it, rounded up to whole pages.
    void* view = MapViewOfFile(to_handle(handle), FILE_MAP_READ, 0, 0, 0);
    if (view == nullptr) return 0;
    MEMORY_BASIC_INFORMATION info{};
    const SIZE_T got = VirtualQuery(view, &info, sizeof info);
    UnmapViewOfFile(view);
    return got == 0 ? 0u : static_cast<UINT64>(info.RegionSize);
}

void* ShmMap(ShmHandle handle, UINT64 offset, std::size_t length, int& err) {
    err = 0;
    if (length == 0) {
        err = ERROR_INVALID_PARAMETER;
        return nullptr;
    }
    // The system itself refuses a view that reaches past the end of the mapping.
    void* view =
        MapViewOfFile(to_handle(handle), FILE_MAP_ALL_ACCESS, static_cast<DWORD>(offset >> 32),
                      static_cast<DWORD>(offset), length);
    if (view == nullptr) err = last_error();
    return view;
}

void ShmUnmap(void* view, std::size_t) {
    if (view != nullptr) UnmapViewOfFile(view);
}

bool ShmPrefault(void*, std::size_t, bool, int& err) {
    // Page-file-backed views are committed when the mapping is made; the copy faults the
    // pages in itself.
    err = 0;
    return true;
}

void ShmClose(ShmHandle handle) {
    if (handle != kNoShm && handle != 0) CloseHandle(to_handle(handle));
}

void ShmRemoveAndClose(std::string_view, ShmHandle handle) {
    // The name goes with the last handle or view of the mapping, in whichever process.
    ShmClose(handle);
}

}  // namespace kxbase::detail
