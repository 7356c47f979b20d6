// Writable-range probe from the address space's region table (VirtualQuery), which never
// touches the probed memory.
#include <kxbase/platform/memory_probe.h>

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

namespace {

bool writable_protection(DWORD protect) {
    if ((protect & (PAGE_GUARD | PAGE_NOACCESS)) != 0) return false;
    // Copy-on-write pages count: a write gives the process its own copy.
    const DWORD base = protect & 0xFFu;
    return base == PAGE_READWRITE || base == PAGE_WRITECOPY || base == PAGE_EXECUTE_READWRITE ||
           base == PAGE_EXECUTE_WRITECOPY;
}

}  // namespace

bool KxIsWritableRange(const void* p, UINT64 size) {
    if (size == 0) return true;
    if (!p) return false;
    const UINT64 begin = reinterpret_cast<UINT_PTR>(p);
    if (size - 1 > ~UINT64{0} - begin) return false;  // wraps around the address space
    const UINT64 last = begin + (size - 1);

    // `next` is the first byte not yet shown to be writable.
    UINT64 next = begin;
    for (;;) {
        MEMORY_BASIC_INFORMATION info{};
        if (VirtualQuery(reinterpret_cast<const void*>(static_cast<UINT_PTR>(next)), &info,
                         sizeof info) == 0)
            return false;
        if (info.State != MEM_COMMIT || !writable_protection(info.Protect)) return false;
        const UINT64 end = reinterpret_cast<UINT_PTR>(info.BaseAddress) + info.RegionSize;
        if (end - 1 >= last) return true;
        next = end;
    }
}
