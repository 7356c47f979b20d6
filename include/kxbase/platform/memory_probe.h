/// \file
/// Memory-access probe: is a range of this process's address space writable?
///
/// The probe asks the system which mappings of the process permit writing (on Linux it reads
/// the mapping table, /proc/self/maps) and checks that they cover the whole range, so it never
/// touches the range itself: it cannot fault and never writes. The answer describes the moment of
/// the call;
/// another thread may map or unmap memory right after it.
///
/// Thread-safety: re-entrant (no shared state).
#pragma once

#include <kxbase/export.h>
#include <kxbase/platform/types.h>

/// True when every byte of [p, p + size) lies in a mapping of this process that permits
/// writing. size 0 is true (nothing to write). A null p with size > 0, a range that wraps
/// around the end of the address space, or a mapping table that cannot be read give false.
KXBASE_API bool KxIsWritableRange(const void* p, UINT64 size);
