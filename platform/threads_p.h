// Operating-system threads for kxBaseThread: a pthread that starts behind a latch, plus the
// priority and affinity calls. Failures return an errno value; nothing throws.
#pragma once

#include <memory>

#include <kxbase/platform/types.h>

namespace kxbase::detail {

/// Entry of a latched thread. `run` is true when the latch was opened by Release, false when
/// the thread was abandoned before that (the entry then only frees what `arg` owns).
using LatchedEntry = void (*)(void* arg, bool run);

struct OsThreadBlock;  // shared between the owner and the thread

/// One thread created "suspended": it exists, knows its id, and waits for Release before it
/// calls its entry. The owner must end it with exactly one of Join or Detach.
class OsThread {
public:
    /// Starts the thread with the default stack size; returns null with `err` set on failure.
    /// Returns only once the thread has published its id.
    static std::unique_ptr<OsThread> Start(LatchedEntry entry, void* arg, int& err);
    ~OsThread();
    OsThread(const OsThread&) = delete;
    OsThread& operator=(const OsThread&) = delete;

    /// The kernel's id of the thread (as gettid gives it).
    DWORD Id() const;

    /// Opens the latch: the thread runs its entry. Repeated calls do nothing.
    void Release();

    /// Abandons a thread that is still behind its latch: it leaves without running its
    /// entry, promptly, so Join is safe; returns true. A thread that was released is not
    /// touched (returns false): nothing can stop running code safely from outside.
    bool Abandon();

    /// Forces a released thread that is still running to end, where the system can (Windows:
    /// TerminateThread; its stack is not unwound), and returns once it has; false where it
    /// cannot (POSIX) or the thread was never released. Join or Detach must still follow.
    bool Kill();

    /// Waits for the thread to end and releases it.
    void Join();
    /// Lets the thread end on its own; its resources go when it does.
    void Detach();

    /// Nice value of the thread, or false with `err` set.
    bool GetNice(int& nice, int& err) const;
    /// Sets the nice value (lowering needs no right; raising needs CAP_SYS_NICE or RLIMIT_NICE).
    bool SetNice(int nice, int& err);
    /// Restricts the thread to one CPU; EINVAL for a CPU that the system does not have.
    bool SetAffinity(DWORD cpu, int& err);
    /// Lowest CPU the thread may run on now, or false with `err` set.
    bool FirstAllowedCpu(DWORD& cpu, int& err) const;

private:
    OsThread() = default;
    std::shared_ptr<OsThreadBlock> m_block;
    bool m_ended = false;  // joined or detached
};

}  // namespace kxbase::detail
