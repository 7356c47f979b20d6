/// \file
/// Shared memory channel: a named area through which two processes exchange bulk data.
///
/// One process (the server, CShareMemoryServer) creates the area with a name and a data size;
/// another (the client, CShareMemoryClient) opens it by name. Both then read and write byte
/// ranges of the data part by offset. Each side maps only the header and one sliding window
/// of the area at a time, so areas of many gigabytes work with little address space.
///
/// Area layout (little-endian, shared between processes):
///   offset 0   4 bytes  signature "XPLM"
///   offset 4   4 bytes  header size H (unsigned): where the data part begins
///   offset 8   8 bytes  total size T = H + data size (unsigned)
///   offset 16  H - 16   unused, zero
///   offset H   T - H    the data part; data offset 0 is area offset H
/// H is the smallest multiple of the allocation granularity (the page size here) that is at
/// least 65,536, so H = 65,536 on every usual system.
///
/// Names
///   Any area name works, including names with slashes or backslashes, empty names and names
///   of any length; names are case-sensitive. A leading session prefix "Local" + backslash is
///   dropped (on Windows it names the same area as the bare name); "Global" + backslash is
///   kept, so such names stay distinct. The area lives in the POSIX shared memory object
///   "/kxbase-" + name, where every byte other than [A-Za-z0-9._-] is written as "%XX"
///   (upper-case hex). When that would exceed the system's name limit, the object is
///   "/kxbase~" + the first 64 escaped bytes + "~" + the SHA-256 of the name in hex. Distinct
///   area names therefore give distinct objects.
///
/// Lifetime of the name
///   The area is sparse: a page costs memory only once a transfer touches it. The server's
///   DeleteMap (and
///   destructor) removes the name, unless another server of the same name is still open:
///   clients that are attached keep working on their mappings, but nobody can open the name
///   any more. A server that dies without DeleteMap leaves its object behind; a client that
///   opens such a stale area (valid header, no server attached) is refused with
///   "Could not open share memory handle.\n\t" and the system message of ENOENT, exactly as if
///   the name did not exist. A server that creates a name whose object is already there (a
///   stale one, or another live server's) takes it as it is, grows it to the new total size
///   when it is smaller (never shrinks it), and overwrites its header; the data part keeps its
///   old bytes. A server counts as attached while its process, or a child it forked that
///   still holds the descriptor, is alive. Creating fails with ENOSPC when the shared memory file
///   system cannot hold the
///   area (a write into a page that cannot be allocated would otherwise fault).
///
/// Results and errors
///   Every operation returns nonzero for success and 0 for failure; a failure stores one of
///   these texts in the object's own error text (never in g_Error):
///     "Invalid parameter!", "Out of memory!", "Invalid share memory handle!",
///     "Invalid share memory area (create by other process)!",
///     "Could not create share memory handle.\n\t%s", "Could not open share memory handle.\n\t%s",
///     "Could not lock buffer.\n\t%s"
///   where %s is CErrorInfo::TransSystemErrorCodeToString of the errno value. Nothing throws.
///
/// Thread-safety
///   None: one object must not be used from two threads at once (a transfer moves the shared
///   window). The area carries no lock: the processes agree by other means on who writes
///   which range when.
#pragma once

#include <cstddef>

#include <kxbase/export.h>
#include <kxbase/platform/cstring.h>
#include <kxbase/platform/types.h>

/// An open shared memory object as the operating system identifies it (a descriptor or an
/// object handle, widened to pointer size); -1 means none. Opaque to hosts.
using KxShmHandle = INT_PTR;

/// What server and client share: the open area, its header, the sliding window and the transfers.
class KXBASE_API CShareMemoryBase {
public:
    /// Window size used when CreateMap or OpenMap is given 0: 20 MB.
    static constexpr DWORD kDefaultWindowSize = 0x1400000;
    /// Bytes of the fixed header fields (signature, H, T).
    static constexpr DWORD kHeaderFields = 16;

    /// Closed: no area, no views, empty error text; the granularity is read from the system.
    CShareMemoryBase();
    /// Closes everything (DeleteMap).
    virtual ~CShareMemoryBase();

    CShareMemoryBase(const CShareMemoryBase&) = delete;
    CShareMemoryBase& operator=(const CShareMemoryBase&) = delete;

    /// Closes the area: unmaps the window and the header, closes the object and, for a
    /// server, removes the name (see "Lifetime of the name"). The error text is kept.
    /// Returns 1.
    virtual int DeleteMap();

    /// Copies `length` bytes from `buffer` to data offset `offset`.
    /// - closed object: "Invalid share memory handle!", 0.
    /// - `offset` at or past the data size: "Invalid parameter!", 0.
    /// - null `buffer` or `length` 0 at a valid offset: 1, nothing copied.
    /// - a transfer that runs past the end of the data copies the part up to the end, then
    ///   fails with "Invalid parameter!".
    /// A transfer that leaves the current window copies the part inside it, moves the window
    /// (one window size from the new position, clamped to the area) and goes on, so one call
    /// may move the window several times. A failed window move ("Could not lock buffer.")
    /// leaves the object open without a window; the next transfer maps a new one.
    /// The window is mapped as described, but the bytes of each part move between `buffer`
    /// and the area through the area's descriptor (the kernel copies them directly, with no
    /// intermediate buffer), so a transfer costs no page fault however often the window
    /// moves. A transfer never grows the area's object. It fails with
    /// "Could not lock buffer.\n\t%s" instead of faulting, after copying the parts before
    /// it, when another process cut the object short (EFAULT: a write copies nothing of the
    /// part that would run past the object's end, a read copies up to that end), when the
    /// shared memory file system is full (ENOSPC) or when `buffer` is not readable or
    /// writable memory of `length` bytes (EFAULT).
    virtual int WriteData(UINT64 offset, void* buffer, DWORD length);

    /// Copies `length` bytes from data offset `offset` into `buffer`; as WriteData otherwise.
    virtual int ReadData(UINT64 offset, void* buffer, DWORD length);

    /// Copies the last error text into `text`; returns its length (0 when the last operation
    /// that records a result succeeded).
    virtual int GetLastErrorInfo(CString& text);

    /// The data size T - H when open, else 0.
    UINT64 GetMapSize() const;

protected:
    /// Maps the window [pos rounded down to the granularity, pos + len) of the area,
    /// replacing the current window. The window length is computed in 32-bit arithmetic
    /// (pos - start + len); a length that wraps to 0 becomes the window size, and the window
    /// is clamped to the end of the area. `pos` at or past T, or `len` 0: "Invalid
    /// parameter!". A failed mapping: "Could not lock buffer.\n\t%s", no window.
    int _MapView(UINT64 pos, DWORD len);

    /// Copies `length` bytes between `buffer` and area position `pos` (header included),
    /// moving the window as needed. `write` nonzero copies buffer -> area.
    int _DataExchange(UINT64 pos, void* buffer, DWORD length, int write);

    /// Unmaps, closes and zeroes everything except the error text, and reads the granularity
    /// again. A server's reset removes the name.
    void _Destory();

    /// Sets the error text to `fixed`, or to `fixed` formatted with the system message of
    /// `code` when the text ends in "%s".
    void SetError(const char* fixed);
    /// Sets the error text to format, with the system message of errno value code in place of
    /// its "%s".
    void SetSystemError(const char* format, int code);

    // Members in the order hosts know them.
    BYTE* m_pHeaderView = nullptr;  ///< mapped header (H bytes), null when closed
    KxShmHandle m_hMap = -1;        ///< the open object, -1 when closed
    char* m_pszName = nullptr;      ///< own heap copy of the area name
    UINT64 m_nTotalSize = 0;        ///< T
    DWORD m_nHeaderSize = 0;        ///< H
    BYTE* m_pView = nullptr;        ///< current window, null when none
    UINT64 m_nViewStart = 0;        ///< area offset of the window (multiple of the granularity)
    DWORD m_nViewLength = 0;        ///< bytes in the window
    DWORD m_nGranularity = 0;       ///< allocation granularity (page size)
    DWORD m_nWindowSize = 0;        ///< bytes to map when the window moves
    CString m_strError;             ///< last error text

    // Bookkeeping this platform needs besides.
    std::size_t m_nHeaderViewLength = 0;  ///< length of the header view (unmapping needs it)
    bool m_bCreator = false;  ///< this object created the area (its close removes the name)
};

/// The creating side. Adds CreateMap.
class KXBASE_API CShareMemoryServer : public CShareMemoryBase {
public:
    /// Creates the area `name` with `dataSize` bytes of data and opens it, with windows of
    /// `windowSize` bytes (0: 20 MB; windows are clamped to the end of the area). Resets the
    /// object first, so calling it on an open object reopens it.
    /// - null name, dataSize 0, or windowSize > dataSize: "Invalid parameter!", 0.
    /// - the object cannot be created or sized: "Could not create share memory handle.\n\t%s".
    /// - a view cannot be mapped: "Could not lock buffer.\n\t%s".
    /// Writes the header (first 16 bytes zeroed, then "XPLM", H, T) and maps the first window
    /// at the start of the data. On failure the object is closed. Returns 1 on success with
    /// an empty error text.
    int CreateMap(const char* name, UINT64 dataSize, DWORD windowSize = 0);
};

/// The opening side. Adds OpenMap.
class KXBASE_API CShareMemoryClient : public CShareMemoryBase {
public:
    /// Opens the existing area `name` with windows of `windowSize` bytes (0: 20 MB; a window
    /// larger than the area is clamped to it). Resets the object first.
    /// - null name: "Invalid parameter!", 0.
    /// - no such area, or a stale one whose server is gone:
    ///   "Could not open share memory handle.\n\t%s".
    /// - an object without the "XPLM" signature, or whose header does not describe it (H
    ///   below 16 or above T, T larger than the object): "Invalid share memory area (create by
    ///   other process)!".
    /// - a view cannot be mapped: "Could not lock buffer.\n\t%s".
    /// The sizes come from the area's header. The first window starts at area offset 0, so
    /// it deliberately covers the header and the start of the data. On failure the object is
    /// closed. Returns 1 on success with an empty error text.
    int OpenMap(const char* name, DWORD windowSize = 0);
};
