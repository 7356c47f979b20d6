/// \file
/// Module handles: which loaded image a handle names, and that image's file.
///
/// Thread-safety: every function is re-entrant.
#pragma once

#include <kxbase/export.h>
#include <kxbase/platform/types.h>

/// The library's own module handle: the base address of the loaded libkxBaseCommon image
/// (or of the executable it is linked into statically). Never null.
KXBASE_API HINSTANCE KxLibraryHandle();

/// True when h is the base address of a module loaded in this process.
KXBASE_API bool KxIsModuleHandle(HINSTANCE h);

/// Absolute path of a module's file; a null handle names the main executable. Writes at most
/// size bytes including the terminator; a longer path is cut (and still terminated) and size
/// is returned. A handle that is not a loaded module, a null buffer or size 0 give 0 with the
/// thread's last system error set (ENOENT / EINVAL).
KXBASE_API DWORD KxModuleFileName(HINSTANCE module, char* buffer, DWORD size);
