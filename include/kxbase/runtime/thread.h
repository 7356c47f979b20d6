/// \file
/// kxBaseThread: base class of the host's worker threads.
///
/// A derived class supplies the body (Run) and, if it wants, hooks that prepare and release
/// its own parameters. The base creates the thread suspended, lets the owner resume it, and
/// stops it cooperatively: Terminate raises the need-exit flag that the body polls, waits a
/// bounded time for the body to return, and only then lets it go (see below).
///
/// Lifecycle
///   no thread --Create--> created, suspended --Resume--> running --Run returns--> finished
///   (IsTerminated true, thread still owned) --Terminate--> no thread.
///   "Suspended" means the thread exists (it has its id, priority and affinity can be set) but
///   waits on a start latch and has not entered Run. A thread that is never resumed cannot
///   finish by itself: Terminate waits its whole time-out, then lets it leave without Run.
///
/// Ending a thread by force
///   When the time-out ends and Run has not returned, the thread is let go: the object
///   detaches it and forgets it (IsCreated turns false, a new Create may start another), the
///   need-exit flag stays raised, and the body runs on until it returns. Nothing interrupts
///   it from outside: killing or cancelling running code leaves its locks held, its heap
///   state half-changed, and in C++ a forced unwinding aborts the process in any noexcept
///   frame or catch (...) it crosses, so no forced end is safe. IsTerminated() turns true
///   once the let-go body has returned (that flag lives in a block that the thread itself
///   keeps alive, so it outlives this object safely). A body that ignores the flag must not
///   touch its object after the object is destroyed; this is the host's part of the contract.
///   A thread that was never resumed is ended for real: it leaves without entering Run.
///   On Windows the body is ended by force instead (TerminateThread), as Windows hosts have
///   always done: after the time-out Terminate kills it, waits for it, and IsTerminated turns
///   true at once. Its stack is not unwound and what it held stays as it was.
///   An exception that escapes Run ends the thread as if Run had returned.
///
/// Priorities (SetThreadPriority) map onto the thread's nice value relative to the nice
/// value the thread started with ("normal"): 2 highest = normal - 10, 1 above normal = -5,
/// 0 normal, -1 below normal = +5, -2 lowest = +10 (clamped to the system's -20..19).
/// Raising a thread above its normal level needs the right to (CAP_SYS_NICE or RLIMIT_NICE);
/// without it the call fails and returns 0 with the last system error set (errno here), like
/// any failing system call.
///
/// On Windows the five levels are the system's THREAD_PRIORITY_LOWEST..HIGHEST.
///
/// The ideal processor (SetThreadIdealProcessor) becomes a hard CPU affinity: the thread runs
/// on that CPU only. On Windows it is the system's ideal processor, a preference.
///
/// Flags: the need-exit and terminated flags are atomics (relaxed), written by one side and
/// polled by the other. Create, Terminate, Resume and the two setters belong to the owning
/// thread; IsNeedExit and IsTerminated may be read from anywhere.
///
/// Derived classes should call Terminate in their own destructor: the base destructor's
/// Terminate(1000) runs after the derived part is gone, when a still-running body would be
/// working on a destroyed object.
#pragma once

#include <atomic>
#include <memory>

#include <kxbase/export.h>
#include <kxbase/platform/types.h>

namespace kxbase::detail {
class OsThread;
}

/// Base of a worker thread: derive, put the work in Run, and poll IsNeedExit there; see the file
/// description.
class KXBASE_API kxBaseThread {
public:
    /// SetThreadIdealProcessor(kQueryIdealProcessor) returns the current ideal processor
    /// without changing it.
    static constexpr DWORD kQueryIdealProcessor = 64;
    /// SetThreadIdealProcessor's failure result.
    static constexpr DWORD kIdealProcessorFailed = 0xFFFFFFFF;

    /// No thread: parameter null, id 0, terminated true, need-exit false.
    kxBaseThread();
    /// Terminate(1000) of this class (not the derived one's).
    virtual ~kxBaseThread();

    kxBaseThread(const kxBaseThread&) = delete;
    kxBaseThread& operator=(const kxBaseThread&) = delete;

    /// Stores `param`, runs InitCustomParameter (false: returns false, nothing else happens).
    /// If a thread exists already, runs ReleaseCustomParameter and returns true without
    /// starting another (deliberately: the stored parameter is already replaced). Otherwise
    /// clears both flags and starts the thread suspended with normal priority; returns false
    /// if the system cannot start a thread (last system error set; the terminated flag stays true).
    virtual bool Create(void* param);

    /// Sets the need-exit flag to `bExit`; returns true.
    virtual bool NeedExit(bool bExit);

    /// Stops the thread, `timeout` in milliseconds: raises the need-exit flag (virtual
    /// NeedExit), polls IsTerminated (virtual) every millisecond while at most `timeout`
    /// milliseconds have passed, then releases the thread: joined when the body finished,
    /// let go when it did not (see "Ending a thread by force"). Never blocks longer than the
    /// time-out plus a millisecond or so. Then, with or without a thread, runs
    /// ReleaseCustomParameter. Returns true.
    virtual bool Terminate(DWORD timeout);

    /// Opens the start latch of a created thread; returns true, with or without a thread.
    virtual bool Resume();

    /// The need-exit flag: true once Terminate or NeedExit(true) asked the body to stop.
    virtual bool IsNeedExit() const;
    /// A thread exists (from Create until Terminate).
    virtual bool IsCreated() const;
    /// True when no body is running: before the first Create, after Run returned (also for
    /// a body that was let go), after a never-resumed thread was ended.
    virtual bool IsTerminated() const;

    /// The thread body. Its result is ignored.
    virtual DWORD Run() = 0;

    /// Without a thread: returns 1 and does nothing. Otherwise `priority` outside -2..2 is
    /// taken as 0 (normal); sets the mapped nice value and returns 1, or 0 with the last system
    /// error set.
    int SetThreadPriority(int priority);

    /// Without a thread: the last system error is the invalid-handle code (EBADF here) and
    /// returns 0xFFFFFFFF.
    /// Otherwise pins the thread to CPU `processor` and returns the previous ideal processor
    /// (before any call: the lowest CPU the thread was allowed on). If the system refuses
    /// (a CPU it does not have), shows the system message of the error through ZelStatusMsg,
    /// leaves the code as the last system error and returns 0xFFFFFFFF.
    DWORD SetThreadIdealProcessor(DWORD processor);

    /// The kernel's id of the thread; 0 without a thread.
    DWORD GetThreadId() const { return m_dwThreadId; }

protected:
    /// Runs first in Create; the base returns true.
    virtual bool InitCustomParameter();
    /// Runs in Terminate and in a redundant Create; the base returns true.
    virtual bool ReleaseCustomParameter();

    void* m_pParam = nullptr;  ///< the value last passed to Create

private:
    std::unique_ptr<kxbase::detail::OsThread> m_hThread;  // null while no thread exists
    DWORD m_dwThreadId = 0;
    // Shared with the thread, which keeps it alive as long as it runs.
    std::shared_ptr<std::atomic<bool>> m_pTerminated;
    std::atomic<bool> m_bNeedExit{false};
    int m_nNormalNice = 0;                 // the thread's nice value at start
    DWORD m_nIdealProcessor = 0xFFFFFFFF;  // last pinned CPU; 0xFFFFFFFF: not yet known
};
