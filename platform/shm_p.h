// Named shared memory objects: the operating-system side of the shared memory channel.
//
// Every call here is a thin wrapper over POSIX shm_open / ftruncate / mmap, so that the
// channel logic (runtime/share_memory.cpp) never touches the system directly. Failures return
// a sentinel and an errno value through `err`; nothing throws.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include <kxbase/platform/types.h>

namespace kxbase::detail {

/// Allocation granularity of windows: the page size (windows start on its multiples).
DWORD ShmGranularity();

/// The POSIX object name of an area name (the naming rule is documented in
/// <kxbase/runtime/share_memory.h>). Always a valid name: a leading '/', no other '/', at most
/// NAME_MAX bytes after the '/'. Distinct area names give distinct object names.
std::string ShmObjectName(std::string_view areaName);

/// Creates the object of `areaName`, or takes the existing one, read-write, not inherited
/// by child processes. The object is grown to at least `size` bytes (never shrunk: another
/// process may have mapped the part beyond). The returned descriptor carries the "creator
/// attached" mark that ShmCreatorAttached tests. Returns the descriptor or -1.
int ShmCreate(std::string_view areaName, UINT64 size, int& err);

/// Opens the existing object of `areaName` read-write; the descriptor is inherited by child
/// processes. Returns the descriptor or -1 (ENOENT when there is no such object).
int ShmOpen(std::string_view areaName, int& err);

/// True while some process holds the object through ShmCreate (its mark is released when
/// that descriptor is closed, including when the process dies).
bool ShmCreatorAttached(int fd);

/// Current size of the object in bytes, or 0 when it cannot be read.
UINT64 ShmObjectSize(int fd);

/// Maps `length` bytes at `offset` (a multiple of the granularity), shared and read-write.
/// The range must lie inside the object as it is now (EFAULT otherwise: touching pages past
/// the object's end would fault). Returns the view or null.
void* ShmMap(int fd, UINT64 offset, std::size_t length, int& err);

void ShmUnmap(void* view, std::size_t length);

/// Copies `length` bytes from `buffer` into the object at `offset` through the descriptor
/// (pwrite): the kernel copies straight into the object's pages, so no page of a view is
/// touched and no page-table entry is set up. Never grows the object: a range that does not
/// lie inside the object as it is now (another process cut it short) fails with EFAULT
/// before anything of it is written. A full shared memory file system fails with ENOSPC,
/// possibly after part of the range was written. Short writes and EINTR are retried.
bool ShmWrite(int fd, UINT64 offset, const void* buffer, std::size_t length, int& err);

/// Copies `length` bytes of the object at `offset` into `buffer` through the descriptor
/// (pread). A range that runs past the object's end (cut short) fails with EFAULT after the
/// bytes before the end were copied. Short reads and EINTR are retried.
bool ShmRead(int fd, UINT64 offset, void* buffer, std::size_t length, int& err);

/// Closes a descriptor from ShmCreate or ShmOpen (releasing a creator's mark).
void ShmClose(int fd);

/// Removes the name of the object `fd` refers to, unless another creator still holds it, then
/// closes `fd`. Mappings that processes still hold stay valid; later opens fail with ENOENT.
void ShmRemoveAndClose(std::string_view areaName, int fd);

/// SHA-256 of a byte string, as 64 lower-case hexadecimal digits (used for long names).
std::string Sha256Hex(std::string_view data);

}  // namespace kxbase::detail
