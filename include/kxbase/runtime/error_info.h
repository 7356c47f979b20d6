/// \file
/// CErrorInfo: the text of the last failure a library operation wants the host to see.
///
/// The library keeps one instance for everybody, g_Error. An operation that fails records a
/// sentence there and returns 0; the host reads the text afterwards. Reading never clears it:
/// only a new SetLastError... call or ClearError does.
///
/// Invariant after every writer: IsError() is 0 exactly when the text is empty.
///
/// Thread-safety
///   Writers serialise on the object's own recursive lock (a writer may re-enter from the same
///   thread). Readers do not take that lock and never wait for a writer's work: each writer
///   builds an immutable (flag, text) record first and then swaps it in under a tiny
///   publication guard, which a reader holds only while it copies one reference-counted
///   pointer. GetLastError racing writers therefore returns either the old or the new record,
///   always a whole one: never a torn text, never a flag from another write. IsError is a
///   single atomic load.
///
/// Copying
///   Copies take the source's current record and get a lock of their own; the lock itself is
///   never copied. Assignment replaces the target's record under the target's lock.
#pragma once

#include <atomic>
#include <cstdarg>
#include <memory>
#include <mutex>
#include <string>

#include <kxbase/export.h>
#include <kxbase/platform/cstring.h>
#include <kxbase/platform/types.h>

/// The last failure text of library operations, readable from any thread while others write it.
class KXBASE_API CErrorInfo {
public:
    /// Clear: flag 0, empty text.
    CErrorInfo() noexcept;
    /// Destroys the record; no writer or reader may still use the object.
    ~CErrorInfo();
    /// Copies the source's current flag and text; the copy has its own lock.
    CErrorInfo(const CErrorInfo& other) noexcept;
    /// Replaces this object's flag and text by the source's current ones (under this lock).
    CErrorInfo& operator=(const CErrorInfo& other) noexcept;

    /// The flag: nonzero when a failure is recorded. Lock-free (one atomic load); racing a
    /// writer it may already show the next write's flag while GetLastError still copies the
    /// previous record.
    int IsError() const noexcept;

    /// If no failure is recorded, empties `out` and returns 0; otherwise copies the text into
    /// `out` and returns the flag. Takes no lock. (If memory runs out while copying, `out` is
    /// left empty and the flag is still returned.)
    int GetLastError(CString& out) const noexcept;

    /// Records string resource `id` of module `module` (read with ZelLoadString, at most 1000
    /// characters). A null module or id 0 clears the error. When the string does not exist,
    /// including when `module` is not a loaded module at all (no crash: the string table
    /// lookup simply finds nothing), the text is "Error in :%u (ID:%u)" with the low 32 bits
    /// of the handle value and the id. The flag is 1 in every non-clearing case. Returns 1.
    int SetLastError(HINSTANCE module, UINT id) noexcept;

    /// Records the printf-style formatted text. A null format clears the error; a format that
    /// yields an empty text leaves the flag 0. A ready-made message passed as the format is
    /// interpreted as a format: a '%' in it starts a conversion. Returns 1.
    int SetLastError(const char* format, ...) noexcept KXBASE_PRINTF_FORMAT(2, 3);
    /// The same with an argument list.
    int SetLastErrorV(const char* format, va_list args) noexcept;

    /// Records TransSystemErrorCodeToString(code); code 0 clears the error. Returns 1.
    int SetLastErrorFromSystem(DWORD code) noexcept;
    /// Records the calling thread's last system error (errno, read before anything else).
    int SetLastErrorFromSystem() noexcept;

    /// Flag 0, text emptied.
    void ClearError() noexcept;

    /// The system's message for an errno value followed by " (0x%X)" with the code, e.g.
    /// "Permission denied (0xD)". The message is the C library's text in the current locale,
    /// exactly as given (these texts carry no trailing line break, so none appears). Code 0
    /// gives an empty string; a code the system has no message for gives
    /// "System Error (code:0x%X)" (never the C library's "Unknown error N" text).
    /// Thread-safe.
    static CString TransSystemErrorCodeToString(DWORD code);

private:
    struct Record {
        int flag;
        std::string text;
    };
    // Stores a record built from text (flag = text not empty); callers hold m_lock.
    void Publish(std::string text, int flag) noexcept;

    std::shared_ptr<const Record> Current() const noexcept;
    void Store(std::shared_ptr<const Record> rec) noexcept;

    std::atomic<int> m_nError{0};            // the flag, mirrored for IsError
    std::shared_ptr<const Record> m_record;  // null: clear; guarded by m_publish
    mutable std::mutex m_publish;            // held only to copy or swap m_record
    std::recursive_mutex m_lock;             // serialises the writers
};

/// The library-wide error object (constructed at load, destroyed at unload).
KXBASE_API extern CErrorInfo g_Error;
