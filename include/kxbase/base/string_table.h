/// \file
/// The library's string table: the display texts (zh-CN, stored as UTF-8) under the numeric
/// ids hosts load them by.
///
/// Thread-safety: read-only data; every function is re-entrant.
#pragma once

#include <kxbase/export.h>
#include <kxbase/platform/types.h>

/// Loads string `id` of a module's string table into buffer. The library's table belongs to
/// the handle KxLibraryHandle(); a null handle means the same table. Copies at most
/// bufferMax - 1 bytes, cut back to a whole UTF-8 character, then a terminator, and returns
/// the bytes copied. An unknown id, a handle of another module (or no module), a null buffer
/// or bufferMax < 1 give 0 (and an empty text whenever there is room for the terminator).
KXBASE_API int KxLoadString(HINSTANCE module, UINT id, char* buffer, int bufferMax);

/// The table entry itself, or null when the id is not in the table.
KXBASE_API const char* KxStringTableEntry(UINT id);
