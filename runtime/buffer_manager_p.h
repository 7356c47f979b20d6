// Allocation seam of CBufferManager: tests make allocations fail to check that out of memory
// is swallowed. Every buffer the manager hands out comes from here and goes back to std::free.
#pragma once

#include <cstddef>

namespace kxbase::detail {

/// Returns `size` zero-filled bytes (at least one byte, so that a length of 0 still gives a
/// distinct pointer) or null. Not thread-safe to replace: for tests only.
using BufferAllocFn = void* (*)(std::size_t size);
void SetBufferAllocator(BufferAllocFn fn);  // null restores the default (calloc)
void* AllocateZeroed(std::size_t size);

}  // namespace kxbase::detail
