// kxBaseThread: start latch, cooperative stop, forced end, hook order, priority and affinity.
#include <gtest/gtest.h>

#if defined(_WIN32)
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#else
#include <sched.h>
#include <sys/resource.h>
#endif

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <tuple>
#include <utility>

#include <kxbase/runtime/thread.h>
#include <kxbase/base/messages.h>

#include "platform/sys.h"

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

enum class Body { UntilNeedExit, Return, IgnoreFlag, Throw };

// A worker that records its hooks in the order they run (all on the owning thread).
struct Worker : kxBaseThread {
    explicit Worker(Body b, bool initResult = true) : body(b), init(initResult) {}
    ~Worker() override { Terminate(1000); }

    DWORD Run() override {
        seenParam = m_pParam;
        ++runs;
        const std::shared_ptr<void> unwound(nullptr, [this](void*) { ++unwinds; });
        while (body == Body::UntilNeedExit ? !IsNeedExit() : body == Body::IgnoreFlag && !release)
            std::this_thread::sleep_for(1ms);
        if (body == Body::Throw) throw std::runtime_error("body failed");
        return 7;
    }
    bool NeedExit(bool bExit) override {
        events += bExit ? "need-exit " : "need-exit-off ";
        return kxBaseThread::NeedExit(bExit);
    }
    bool InitCustomParameter() override { return events += "init ", init; }
    bool ReleaseCustomParameter() override { return events += "release ", true; }

    const Body body;
    const bool init;
    std::string events;
    std::atomic<int> runs{0}, unwinds{0};
    std::atomic<bool> release{false};  // ends a body that ignores the need-exit flag
    std::atomic<void*> seenParam{nullptr};
};

bool WaitFor(const std::function<bool()>& pred) {
    for (const auto end = Clock::now() + 5s; !pred() && Clock::now() < end;)
        std::this_thread::sleep_for(1ms);
    return pred();
}

// Catches: a thread that runs before Resume, wrong flags from Create on, a redundant Create
// that starts a second thread or keeps the old parameter, a body that never starts after
// Resume, and missing or misordered hooks on the Create paths (a refused init starts
// nothing; Terminate without a thread still releases).
TEST(Thread, CreatedSuspendedUntilResume) {
    Worker w(Body::Return);
    EXPECT_TRUE(w.IsTerminated() && !w.IsCreated());
    int first = 1, second = 2;
    ASSERT_TRUE(w.Create(&first));
    const DWORD id = w.GetThreadId();
    EXPECT_TRUE(w.IsCreated() && !w.IsTerminated() && id != 0);
    EXPECT_TRUE(w.Create(&second) && w.GetThreadId() == id);
    std::this_thread::sleep_for(50ms);
    EXPECT_EQ(w.runs.load(), 0);
    EXPECT_TRUE(w.Resume());
    ASSERT_TRUE(WaitFor([&] { return w.IsTerminated(); }));
    EXPECT_TRUE(w.runs.load() == 1 && w.seenParam.load() == &second);
    EXPECT_TRUE(w.Resume());  // a finished thread: does nothing
    EXPECT_TRUE(w.Terminate(1000) && !w.IsCreated() && w.GetThreadId() == 0);
    EXPECT_EQ(w.events, "init init release need-exit release ");

    Worker refused(Body::Return, /*initResult=*/false), idle(Body::Return);
    EXPECT_FALSE(refused.Create(nullptr));
    EXPECT_TRUE(!refused.IsCreated() && refused.IsTerminated());
    EXPECT_TRUE(idle.Terminate(5));
    EXPECT_EQ(refused.events + "| " + idle.events, "init | release ");
}

// Catches: Terminate not raising the flag through the virtual NeedExit or not waiting for a
// body that stops; blocking on a body that ignores the flag (it must be let go untouched and
// the object freed for a new Create); running a never-resumed body or not waiting its whole
// time-out; an escaping exception that takes the process down; parameters released before
// the body is gone.
TEST(Thread, TerminateStopsLetsGoOrEndsUnstartedBodies) {
    // body, time-out, the least time Terminate must wait; only Return is not resumed. No upper
    // bound is asserted (a loaded machine stretches any wait): a Terminate that blocks on a
    // body instead of letting it go never returns, and the test's time-out reports it.
    const std::tuple<Body, DWORD, std::chrono::milliseconds> cases[] = {
        {Body::UntilNeedExit, 10000, 0ms},
        {Body::IgnoreFlag, 0, 0ms},
        {Body::Return, 60, 60ms},
        {Body::Throw, 1000, 0ms}};
    for (const auto& [body, timeout, atLeast] : cases) {
        SCOPED_TRACE(static_cast<int>(body));
        const bool resume = body != Body::Return;
#if defined(_WIN32)
        // Windows ends a body that ignores the flag by force (TerminateThread): its stack is
        // not unwound, and the object says at once that no body runs.
        const bool letGo = false, killed = body == Body::IgnoreFlag;
#else
        const bool letGo = body == Body::IgnoreFlag, killed = false;
#endif
        Worker w(body);
        ASSERT_TRUE(w.Create(nullptr));
        if (resume) w.Resume();
        ASSERT_TRUE(WaitFor([&] { return w.runs.load() == (resume ? 1 : 0); }));
        const auto start = Clock::now();
        EXPECT_TRUE(w.Terminate(timeout));
        const auto took = Clock::now() - start;
        EXPECT_TRUE(took >= atLeast && !w.IsCreated());
        std::this_thread::sleep_for(20ms);
        EXPECT_EQ(w.IsTerminated(), !letGo);  // a let-go body runs on
        EXPECT_EQ(w.unwinds.load(), letGo || killed ? 0 : w.runs.load());
        w.release.store(true);
        ASSERT_TRUE(WaitFor([&] { return w.IsTerminated(); }));
        EXPECT_EQ(w.unwinds.load(), killed ? 0 : w.runs.load());
        EXPECT_EQ(w.events, "init need-exit release ");
        ASSERT_TRUE(w.Create(nullptr));  // a new thread starts with the flag lowered
        EXPECT_FALSE(w.IsNeedExit());
        w.Resume();
    }
}

// Catches: a wrong mapping of the five levels, out-of-range levels not taken as normal, a
// call without a thread that fails, and a raise without the right that claims success or
// moves the thread anyway (it must fail with EACCES/EPERM and leave the nice value alone).
TEST(Thread, PriorityLevelsMapOntoNiceValues) {
    Worker none(Body::Return);
    for (int p : {5, -3, 0, 2, -2}) EXPECT_EQ(none.SetThreadPriority(p), 1);
    Worker w(Body::Return);
    ASSERT_TRUE(w.Create(nullptr));
#if defined(_WIN32)
    // The five levels are the system's own; out-of-range levels are normal.
    const HANDLE h = OpenThread(THREAD_QUERY_INFORMATION, FALSE, w.GetThreadId());
    ASSERT_NE(h, nullptr);
    for (auto [level, expected] : {std::pair{-2, THREAD_PRIORITY_LOWEST},
                                   {-1, THREAD_PRIORITY_BELOW_NORMAL},
                                   {5, THREAD_PRIORITY_NORMAL},
                                   {2, THREAD_PRIORITY_HIGHEST},
                                   {-3, THREAD_PRIORITY_NORMAL},
                                   {1, THREAD_PRIORITY_ABOVE_NORMAL}}) {
        EXPECT_EQ(w.SetThreadPriority(level), 1) << level;
        EXPECT_EQ(GetThreadPriority(h), expected) << level;
    }
    CloseHandle(h);
#else
    const auto nice = [&] { return getpriority(PRIO_PROCESS, static_cast<id_t>(w.GetThreadId())); };
    const int normal = nice();
    int current = normal;  // level, then nice relative to normal
    for (auto [level, rel] :
         {std::pair{-2, 10}, {-1, 5}, {0, 0}, {5, 0}, {-3, 0}, {15, 0}, {2, -10}, {1, -5}}) {
        const int expected = std::clamp(normal + rel, -20, 19);
        const bool set = w.SetThreadPriority(level) != 0;
        // Only a raise may be refused (no right to it), and then the thread stays put.
        EXPECT_TRUE(set || (expected < current && (errno == EACCES || errno == EPERM))) << level;
        current = set ? expected : current;
        EXPECT_EQ(nice(), current) << level;
    }
#endif
    w.Resume();
}

// Catches: an ideal processor not applied as a one-CPU affinity, a wrong "previous" result,
// a refused CPU without the status-line message, and the no-thread case not reporting the
// invalid-handle code. A pinned thread must still run its body.
TEST(Thread, IdealProcessorIsAffinity) {
    Worker none(Body::Return);
    kxbase::sys::SetLastSystemError(0);
    EXPECT_EQ(none.SetThreadIdealProcessor(0), 0xFFFFFFFFu);
    EXPECT_EQ(kxbase::sys::LastSystemError(), kxbase::sys::ErrorInvalidHandle());
#if defined(_WIN32)
    GTEST_SKIP() << "Windows keeps the ideal processor as a preference and reports no "
                    "affinity to check it against";
#else

    std::string status;  // the hook runs on the calling thread
    const KxStatusHook previous =
        KxSetStatusHook([&](const CString& text) { status += text.str(); });
    cpu_set_t allowed, now;
    ASSERT_EQ(sched_getaffinity(0, sizeof allowed, &allowed), 0);
    DWORD first = CPU_SETSIZE, last = 0;
    for (DWORD i = 0; i < CPU_SETSIZE; ++i)
        if (CPU_ISSET(i, &allowed)) first = std::min(first, i), last = i;
    const DWORD query = kxBaseThread::kQueryIdealProcessor;

    Worker w(Body::Return);
    ASSERT_TRUE(w.Create(nullptr));
    EXPECT_EQ(w.SetThreadIdealProcessor(query), first);
    EXPECT_EQ(w.SetThreadIdealProcessor(last), first);
    EXPECT_EQ(w.SetThreadIdealProcessor(query), last);
    ASSERT_EQ(sched_getaffinity(static_cast<pid_t>(w.GetThreadId()), sizeof now, &now), 0);
    EXPECT_TRUE(CPU_COUNT(&now) == 1 && CPU_ISSET(last, &now));
    errno = 0;
    EXPECT_TRUE(w.SetThreadIdealProcessor(CPU_SETSIZE + 3) == 0xFFFFFFFFu && errno == EINVAL);
    EXPECT_EQ(status, "Invalid argument (0x16)");
    EXPECT_EQ(w.SetThreadIdealProcessor(query), last);
    KxSetStatusHook(previous);
    w.Resume();
    EXPECT_TRUE(WaitFor([&] { return w.IsTerminated(); }));
#endif
}

}  // namespace
