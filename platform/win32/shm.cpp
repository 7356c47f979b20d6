// Named shared memory objects over page-file-backed file mappings (CreateFileMappingA with
// INVALID_HANDLE_VALUE). The object name is the area name exactly as the host gives it
// ("Local\..." or "Global\..." included), so a Windows host that makes or opens the mapping
// itself meets this library on the same object.
//
// A mapping lives while any process holds a handle to it or a view of it: when the last one
// goes (a crashed creator included) the system removes it. An area that still exists therefore
// has a live holder, and there is no creator mark to test.
//
// Transfers copy through the views that the channel has mapped: Windows has no positional
// read or write on a section handle, and the channel only transfers inside its current window,
// so the backend keeps a small table of the views it handed out and copies into the one that
// covers the range. A range no view covers gets a view of its own for the copy.
#include "platform/shm_p.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <cstring>
#include <mutex>
#include <vector>

namespace kxbase::detail {
namespace {

struct MappedView {
    ShmHandle handle;
    UINT64 offset;
    std::size_t length;
    BYTE* view;
};

// Views of every channel of the process; guarded by views_lock(). A handful at most: each
// open channel holds its header view and one window.
std::vector<MappedView>& views() {
    static std::vector<MappedView> table;
    return table;
}

std::mutex& views_lock() {
    static std::mutex lock;
    return lock;
}

// The address of area offset `offset` in a registered view of `handle` that holds `length`
// bytes from there, or null.
BYTE* registered_address(ShmHandle handle, UINT64 offset, std::size_t length) {
    std::lock_guard<std::mutex> guard(views_lock());
    for (const MappedView& v : views())
        if (v.handle == handle && offset >= v.offset && offset - v.offset <= v.length &&
            length <= v.length - (offset - v.offset))
            return v.view + (offset - v.offset);
    return nullptr;
}

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
    if (view == nullptr) {
        err = last_error();
        return nullptr;
    }
    try {
        std::lock_guard<std::mutex> guard(views_lock());
        views().push_back({handle, offset, length, static_cast<BYTE*>(view)});
    } catch (...) {
        // Without its table entry the view still works; transfers then map their own.
    }
    return view;
}

void ShmUnmap(void* view, std::size_t) {
    if (view == nullptr) return;
    {
        std::lock_guard<std::mutex> guard(views_lock());
        auto& table = views();
        for (std::size_t i = 0; i < table.size(); ++i)
            if (table[i].view == view) {
                table[i] = table.back();
                table.pop_back();
                break;
            }
    }
    UnmapViewOfFile(view);
}

namespace {

// Copies between `buffer` and [offset, offset + length) of the area: through the view that
// covers the range, or through a view made for this copy. Page-file-backed sections are
// committed when they are created, so the copy cannot fault on a page that is missing.
bool copy_range(ShmHandle handle, UINT64 offset, void* buffer, std::size_t length, bool write,
                int& err) {
    err = 0;
    if (length == 0) return true;
    BYTE* at = registered_address(handle, offset, length);
    void* own = nullptr;
    if (at == nullptr) {
        const DWORD granularity = ShmGranularity();
        const UINT64 start = offset - offset % granularity;
        const std::size_t skip = static_cast<std::size_t>(offset - start);
        if (offset + length > ShmObjectSize(handle)) {
            err = ERROR_INVALID_ADDRESS;
            return false;
        }
        own = MapViewOfFile(to_handle(handle), FILE_MAP_ALL_ACCESS, static_cast<DWORD>(start >> 32),
                            static_cast<DWORD>(start), skip + length);
        if (own == nullptr) {
            err = last_error();
            return false;
        }
        at = static_cast<BYTE*>(own) + skip;
    }
    if (write)
        std::memcpy(at, buffer, length);
    else
        std::memcpy(buffer, at, length);
    if (own != nullptr) UnmapViewOfFile(own);
    return true;
}

}  // namespace

bool ShmWrite(ShmHandle handle, UINT64 offset, const void* buffer, std::size_t length, int& err) {
    return copy_range(handle, offset, const_cast<void*>(buffer), length, true, err);
}

bool ShmRead(ShmHandle handle, UINT64 offset, void* buffer, std::size_t length, int& err) {
    return copy_range(handle, offset, buffer, length, false, err);
}

void ShmClose(ShmHandle handle) {
    if (handle != kNoShm && handle != 0) CloseHandle(to_handle(handle));
}

void ShmRemoveAndClose(std::string_view, ShmHandle handle) {
    // The name goes with the last handle or view of the mapping, in whichever process.
    ShmClose(handle);
}

}  // namespace kxbase::detail
