// Module handles and the library's string table.
#pragma once

#include <kxbase/export.h>
#include <kxbase/platform/types.h>

/// The library's own module handle: the base address of the loaded libkxBaseCommon image
/// (or of the executable it is linked into statically). Never null.
KXBASE_API HINSTANCE KxLibraryHandle();

/// True when h is the base address of a module loaded in this process.
KXBASE_API bool KxIsModuleHandle(HINSTANCE h);

/// Absolute path of a module's file, like GetModuleFileNameA: a null handle names the main
/// executable. Writes at most size bytes including the terminator; a longer path is cut
/// (and still terminated) and size is returned. A handle that is not a loaded module, a null
/// buffer or size 0 give 0 with errno set (ENOENT / EINVAL).
KXBASE_API DWORD GetModuleFileNameA(HINSTANCE module, char* buffer, DWORD size);

/// Loads string `id` of a module's string table into buffer, like LoadStringA. The library's
/// table (zh-CN, stored as UTF-8) belongs to the handle KxLibraryHandle(); a null handle
/// means the same table. Copies at most bufferMax - 1 bytes, cut back to a whole UTF-8
/// character, then a terminator, and returns the bytes copied. An unknown id, a handle of
/// another module (or no module), a null buffer or bufferMax < 1 give 0 (and an empty text
/// whenever there is room for the terminator).
KXBASE_API int LoadStringA(HINSTANCE module, UINT id, char* buffer, int bufferMax);

/// The table entry itself, or null when the id is not in the table.
KXBASE_API const char* KxStringTableEntry(UINT id);
