// Named shared memory objects: the operating-system side of the shared memory channel.
//
// The system backend implements these (platform/posix/: shm_open, ftruncate and mmap), so that
// the channel logic (runtime/share_memory.cpp) never touches the system directly. Failures
// return a sentinel and the system's error code through `err`; nothing throws.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include <kxbase/platform/types.h>

namespace kxbase::detail {

/// An open shared memory object, as the backend represents it (a descriptor here, an object
/// handle on Windows); kNoShm (-1) when there is none. The type of the channel's KxShmHandle.
using ShmHandle = INT_PTR;
inline constexpr ShmHandle kNoShm = -1;

/// Allocation granularity of windows: the page size (windows start on its multiples).
DWORD ShmGranularity();

/// The POSIX object name of an area name (the naming rule is documented in
/// <kxbase/runtime/share_memory.h>). Always a valid name: a leading '/', no other '/', at most
/// NAME_MAX bytes after the '/'. Distinct area names give distinct object names.
std::string ShmObjectName(std::string_view areaName);

/// Creates the object of `areaName`, or takes the existing one, read-write, not inherited
/// by child processes. The object is grown to at least `size` bytes (never shrunk: another
/// process may have mapped the part beyond). The returned descriptor carries the "creator
/// attached" mark that ShmCreatorAttached tests. Returns the handle or kNoShm; a size past
/// the signed 64-bit range is refused with the system's "file too large" code before anything
/// is created.
ShmHandle ShmCreate(std::string_view areaName, UINT64 size, int& err);

/// Opens the existing object of `areaName` read-write; the descriptor is inherited by child
/// processes. Returns the handle or kNoShm (ENOENT when there is no such object).
ShmHandle ShmOpen(std::string_view areaName, int& err);

/// True while some process holds the object through ShmCreate (its mark is released when
/// that descriptor is closed, including when the process dies).
bool ShmCreatorAttached(ShmHandle fd);

/// Current size of the object in bytes, or 0 when it cannot be read.
UINT64 ShmObjectSize(ShmHandle fd);

/// Maps `length` bytes at `offset` (a multiple of the granularity), shared and read-write.
/// The range must lie inside the object as it is now (EFAULT otherwise: touching pages past
/// the object's end would fault). Returns the view or null.
void* ShmMap(ShmHandle fd, UINT64 offset, std::size_t length, int& err);

void ShmUnmap(void* view, std::size_t length);

/// Copies `length` bytes from `buffer` into the object at `offset` through the descriptor
/// (pwrite): the kernel copies straight into the object's pages, so no page of a view is
/// touched and no page-table entry is set up. Never grows the object: a range that does not
/// lie inside the object as it is now (another process cut it short) fails with EFAULT
/// before anything of it is written. A full shared memory file system fails with ENOSPC,
/// possibly after part of the range was written. Short writes and EINTR are retried.
bool ShmWrite(ShmHandle fd, UINT64 offset, const void* buffer, std::size_t length, int& err);

/// Copies `length` bytes of the object at `offset` into `buffer` through the descriptor
/// (pread). A range that runs past the object's end (cut short) fails with EFAULT after the
/// bytes before the end were copied. Short reads and EINTR are retried.
bool ShmRead(ShmHandle fd, UINT64 offset, void* buffer, std::size_t length, int& err);

/// Closes a handle from ShmCreate or ShmOpen (releasing a creator's mark).
void ShmClose(ShmHandle fd);

/// Removes the name of the object `fd` refers to, unless another creator still holds it, then
/// closes `fd`. Mappings that processes still hold stay valid; later opens fail with ENOENT.
void ShmRemoveAndClose(std::string_view areaName, ShmHandle fd);

/// The system object name of an area name, the rule every backend shares: a leading "Local\\"
/// (the Windows session prefix) is dropped; the name is escaped (bytes other than A-Z, a-z,
/// 0-9, '.', '_' and '-' become %XX); the result is root + "kxbase-" + the escaped name, or,
/// when that part would exceed maxBytes, root + "kxbase~" + the first 64 escaped bytes + "~"
/// + the SHA-256 of the name. Distinct area names give distinct object names.
std::string AreaObjectName(std::string_view areaName, std::string_view root, std::size_t maxBytes);

/// SHA-256 of a byte string, as 64 lower-case hexadecimal digits (used for long names).
std::string Sha256Hex(std::string_view data);

}  // namespace kxbase::detail
