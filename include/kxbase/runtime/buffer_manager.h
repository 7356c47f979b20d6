/// \file
/// CBufferManager: one reusable, zero-filled work buffer lent to one borrower at a time.
///
/// A caller asks LockBuffer for a length. If the kept buffer is free and long enough it gets
/// that buffer; otherwise, if it allows it, a fresh zeroed temporary buffer. Both kinds go back
/// through UnlockBuffer, which tells them apart. States: empty (no kept buffer), free (kept,
/// not lent), lent. InitBuffer moves between empty and free and is refused while lent.
///
/// Out of memory is never passed on: InitBuffer returns 0 and LockBuffer returns null.
///
/// Thread-safety: none. A manager is used by one thread at a time (or guarded by its user).
/// Not copyable: a copy would share the kept buffer.
#pragma once

#include <kxbase/export.h>
#include <kxbase/platform/types.h>

/// The lender of one reusable work buffer; see the file description for its states.
class KXBASE_API CBufferManager {
public:
    /// Empty: no kept buffer, length 0, not lent.
    CBufferManager() = default;
    /// Frees the kept buffer. Temporaries still lent out stay the borrowers' to give back;
    /// after the manager is gone they are released with std::free.
    virtual ~CBufferManager();
    CBufferManager(const CBufferManager&) = delete;
    CBufferManager& operator=(const CBufferManager&) = delete;

    /// (Re)sizes the kept buffer to `length` bytes. *pLength (when pLength is not null) is set
    /// to 0 first and receives the kept length afterwards.
    ///  - lent out: returns 0, nothing changes (*pLength stays 0);
    ///  - length 0: frees the kept buffer, returns 1;
    ///  - the same length as now: keeps the buffer and its contents, returns 1;
    ///  - otherwise: frees the kept buffer and allocates a zero-filled one; returns 1, or 0
    ///    when memory runs out (the manager is then empty).
    int InitBuffer(DWORD* pLength, DWORD length);

    /// Borrows `length` bytes. The kept buffer when it exists, is long enough and is free (its
    /// contents are whatever the last borrower left); otherwise, if bAllocNew is nonzero, a
    /// new zero-filled temporary buffer the caller owns until UnlockBuffer (null when memory
    /// runs out); otherwise null. A temporary of length 0 is still a valid, distinct pointer.
    BYTE* LockBuffer(DWORD length, int bAllocNew);

    /// Gives a buffer back: null is ignored; a pointer other than the kept buffer is a
    /// temporary from LockBuffer and is freed; the kept buffer becomes free again (giving it
    /// back twice is harmless). Returns 1.
    int UnlockBuffer(BYTE* p);

    /// Length of the kept buffer, 0 when there is none.
    DWORD GetBufferLength() const;

private:
    DWORD m_dwLength = 0;
    BYTE* m_pBuffer = nullptr;
    int m_bLocked = 0;
};
