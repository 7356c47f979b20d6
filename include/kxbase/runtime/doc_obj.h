/// \file
/// ADocObj: file and folder utilities. This core carries the parts the runtime needs: the
/// cache-folder text and the one folder-creating helper of the product folder tree.
///
/// Thread-safety: CreateDirectoryA may be called from any thread; m_strCacheDirectory is set by
/// the host at start-up and only read afterwards.
#pragma once

#include <kxbase/export.h>
#include <kxbase/platform/cstring.h>
#include <kxbase/platform/types.h>

/// File and folder helpers, as static members.
class KXBASE_API ADocObj {
public:
    /// Folder for cached files, chosen by the host; empty at load.
    static CString m_strCacheDirectory;

    /// Creates one folder (not its parents), with mode 0777 minus the process umask. A
    /// trailing '/' is allowed. Returns 1 when the folder exists afterwards (created now or
    /// already there; an existing folder is left alone), 0 otherwise (null or empty path,
    /// missing parent, no permission, a file of that name) with errno telling why. Never
    /// throws; thread-safe.
    static int CreateDirectoryA(const char* path);
};
