// The operating-system backend: every system service the library needs beyond the C++
// standard library, as a few narrow functions. One folder per system implements them
// (platform/posix/ here; CMake picks the folder), and no other library file calls the system.
// Threads and shared memory have their own headers beside this one (threads_p.h, shm_p.h);
// module handles and the writable-range probe are public (<kxbase/platform/module.h>,
// <kxbase/platform/memory_probe.h>) and implemented by the backend too.
//
// The interface uses only the library's own types, so a backend is free in how it gets the
// answers. Error codes are the system's own numbers (errno values here), as the library's
// error object reports them. Nothing here throws.
#pragma once

#include <string>

#include <kxbase/platform/types.h>

namespace kxbase::sys {

// ---- clocks -------------------------------------------------------------------------------

/// A monotonic counter in nanoseconds (frequency 1e9); false when the system has none.
bool MonotonicNanoseconds(INT64* value);
/// Milliseconds of the same monotonic clock; 0 when it cannot be read.
UINT64 MonotonicMilliseconds();

// ---- last system error --------------------------------------------------------------------

/// The calling thread's last system error code.
DWORD LastSystemError();
void SetLastSystemError(DWORD code);
/// The codes the library itself reports through the last system error.
DWORD ErrorNoSuchFile();       // a path or module that does not exist
DWORD ErrorInvalidArgument();  // a null or empty argument
DWORD ErrorOutOfMemory();      // memory exhausted
DWORD ErrorInvalidHandle();    // an object (a thread) that does not exist

/// The system's message for an error code, in the current language. False (text untouched)
/// when the system has no message of its own for that code.
bool SystemErrorText(DWORD code, std::string& text);

// ---- folders and file status --------------------------------------------------------------

/// Creates one folder (the parent must exist). True when it was made or a folder of that
/// name exists already; false with the last system error set otherwise.
bool MakeFolder(const char* path);
/// True when the process may create files in the folder `path`.
bool IsWritableFolder(const char* path);
/// The characters that end a folder name in a path: "/" here, "\\/" on Windows.
const char* FolderSeparators();
/// Bytes a full path may take, without the terminator.
DWORD MaxPathBytes();

// ---- system information -------------------------------------------------------------------

/// The memory page size in bytes (never 0).
DWORD PageSize();
/// Processors online now (at least 1).
DWORD OnlineProcessors();

// ---- socket layer ------------------------------------------------------------------------

/// Starts the system's socket layer for this library (Winsock 2.2 on Windows; POSIX sockets
/// need no start-up, so always true there). False when the system refuses.
bool StartSockets();
/// Undoes a successful StartSockets; nothing when none succeeded.
void StopSockets();

// ---- screen -------------------------------------------------------------------------------

/// The primary screen's device capabilities, in this order: colour bits per pixel, width and
/// height in pixels, logical pixels per inch across and down, width and height in millimetres.
/// False (values untouched) when the system has no screen to ask (always, on POSIX: there the
/// host installs a provider).
bool ScreenDeviceCaps(int values[7]);

// ---- text and environment -----------------------------------------------------------------

/// The decimal parse of the C runtime's atof, in the "C" locale whatever locale the host set.
double ParseDoubleC(const char* text);

/// The value of an environment variable, or null when it is not set or when the process
/// runs with rights its caller does not have (a caller then must not choose paths for it).
const char* TrustedEnvironment(const char* name);

// ---- mathematics ---------------------------------------------------------------------------

/// Sine and cosine of the system's C library, accurate to the last place for every argument,
/// so that results agree across systems. (MinGW's own functions reduce the argument with the
/// x87 unit's 66-bit pi and are off by thousands of units near multiples of pi.)
double Sin(double x);
double Cos(double x);

// ---- threads ------------------------------------------------------------------------------

/// Calls fn(arg) and swallows every exception it lets out, except the unwinding by which the
/// system ends a thread from inside (that must reach the thread's start to finish it).
void RunSwallowingExceptions(void (*fn)(void*), void* arg);

}  // namespace kxbase::sys
