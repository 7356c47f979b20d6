// kxBaseThread: start latch, cooperative stop, forced end, hook order, priority and affinity.
#include <gtest/gtest.h>

#include <sched.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <kxbase/runtime/thread.h>
#include <kxbase/widgets/messages.h>

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

// What the body does.
enum class Body { UntilNeedExit, Return, IgnoreFlag, Throw };

// A worker that records the hooks in the order they run.
class Worker : public kxBaseThread {
public:
    explicit Worker(Body body, bool initResult = true) : m_body(body), m_init(initResult) {}
    ~Worker() override { Terminate(1000); }

    DWORD Run() override {
        runs.fetch_add(1);
        seenParam.store(m_pParam);
        struct Unwound {
            std::atomic<int>& n;
            ~Unwound() { n.fetch_add(1); }
        } unwound{unwinds};
        switch (m_body) {
            case Body::UntilNeedExit:
                while (!IsNeedExit()) std::this_thread::sleep_for(1ms);
                break;
            case Body::Return:
                break;
            case Body::IgnoreFlag:
                while (!release.load()) std::this_thread::sleep_for(1ms);
                break;
            case Body::Throw:
                throw std::runtime_error("body failed");
        }
        return 7;
    }
    bool NeedExit(bool bExit) override {
        Log(bExit ? "need-exit" : "need-exit-off");
        return kxBaseThread::NeedExit(bExit);
    }

    std::vector<std::string> Events() {
        std::lock_guard<std::mutex> lock(m_mutex);
        return m_events;
    }

    std::atomic<int> runs{0}, unwinds{0};
    std::atomic<bool> release{false};  // ends a body that ignores the need-exit flag
    std::atomic<void*> seenParam{nullptr};

protected:
    bool InitCustomParameter() override {
        Log("init");
        return m_init;
    }
    bool ReleaseCustomParameter() override {
        Log("release");
        return true;
    }

private:
    void Log(const char* e) {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_events.emplace_back(e);
    }
    Body m_body;
    bool m_init;
    std::mutex m_mutex;
    std::vector<std::string> m_events;
};

template <class Pred>
bool WaitFor(Pred pred, std::chrono::milliseconds limit = 5000ms) {
    const auto end = Clock::now() + limit;
    while (!pred()) {
        if (Clock::now() > end) return false;
        std::this_thread::sleep_for(1ms);
    }
    return true;
}

// Catches: a thread that runs before Resume, a terminated flag that is not false from Create
// on, a body that never starts after Resume, and a parameter that the body cannot see.
TEST(Thread, CreatedSuspendedUntilResume) {
    Worker w(Body::Return);
    EXPECT_TRUE(w.IsTerminated());
    EXPECT_FALSE(w.IsCreated());
    int param = 0;
    ASSERT_TRUE(w.Create(&param));
    EXPECT_TRUE(w.IsCreated());
    EXPECT_FALSE(w.IsTerminated());
    EXPECT_NE(w.GetThreadId(), 0u);
    std::this_thread::sleep_for(50ms);
    EXPECT_EQ(w.runs.load(), 0);
    EXPECT_TRUE(w.Resume());
    ASSERT_TRUE(WaitFor([&] { return w.IsTerminated(); }));
    EXPECT_EQ(w.runs.load(), 1);
    EXPECT_EQ(w.seenParam.load(), &param);
    EXPECT_TRUE(w.Resume());  // a second resume of a finished thread does nothing
    EXPECT_TRUE(w.Terminate(1000));
    EXPECT_FALSE(w.IsCreated());
    EXPECT_EQ(w.GetThreadId(), 0u);
    EXPECT_EQ(w.Events(), (std::vector<std::string>{"init", "need-exit", "release"}));
}

// Catches: Terminate not calling NeedExit through the virtual slot, not waiting for a body
// that does stop, or releasing the parameters before the body is gone.
TEST(Thread, CooperativeStopWithinTheTimeout) {
    Worker w(Body::UntilNeedExit);
    ASSERT_TRUE(w.Create(nullptr));
    w.Resume();
    ASSERT_TRUE(WaitFor([&] { return w.runs.load() == 1; }));
    const auto start = Clock::now();
    EXPECT_TRUE(w.Terminate(10000));
    EXPECT_LT(Clock::now() - start, 2000ms);
    EXPECT_TRUE(w.IsTerminated());
    EXPECT_EQ(w.unwinds.load(), 1);
    EXPECT_EQ(w.Events(), (std::vector<std::string>{"init", "need-exit", "release"}));
    // The object can start a new thread afterwards, with the flag lowered again.
    ASSERT_TRUE(w.Create(nullptr));
    EXPECT_FALSE(w.IsNeedExit());
    w.Resume();
    ASSERT_TRUE(WaitFor([&] { return w.runs.load() == 2; }));
    EXPECT_TRUE(w.Terminate(10000));
}

// Catches: a Terminate that blocks on a body that ignores the flag, an object that still
// claims the thread afterwards (a new Create must be possible), a body interrupted from
// outside, and an IsTerminated that never turns true once the let-go body returns.
TEST(Thread, BodyThatIgnoresTheFlagIsLetGoAfterTheTimeout) {
    Worker w(Body::IgnoreFlag);
    ASSERT_TRUE(w.Create(nullptr));
    w.Resume();
    ASSERT_TRUE(WaitFor([&] { return w.runs.load() == 1; }));
    const auto start = Clock::now();
    EXPECT_TRUE(w.Terminate(0));
    EXPECT_LT(Clock::now() - start, 1000ms);
    EXPECT_FALSE(w.IsCreated());
    EXPECT_TRUE(w.IsNeedExit());
    std::this_thread::sleep_for(20ms);
    EXPECT_FALSE(w.IsTerminated());  // still running, untouched
    EXPECT_EQ(w.unwinds.load(), 0);
    w.release.store(true);
    ASSERT_TRUE(WaitFor([&] { return w.IsTerminated(); }));
    EXPECT_EQ(w.unwinds.load(), 1);
    EXPECT_EQ(w.Events(), (std::vector<std::string>{"init", "need-exit", "release"}));
}

// Catches: a never-resumed thread that runs its body when it is ended, leaks, or keeps
// IsTerminated false; and a Terminate that does not wait the whole time-out first.
TEST(Thread, NeverResumedThreadWaitsTheTimeoutThenLeavesWithoutRunning) {
    Worker w(Body::Return);
    ASSERT_TRUE(w.Create(nullptr));
    const auto start = Clock::now();
    EXPECT_TRUE(w.Terminate(60));
    EXPECT_GE(Clock::now() - start, 60ms);
    EXPECT_EQ(w.runs.load(), 0);
    EXPECT_TRUE(w.IsTerminated());
}

// Catches: wrong hook order or missing hooks on the Create/Terminate paths, a second Create
// that starts another thread or keeps the old parameter, and a failed init that starts one.
TEST(Thread, HooksOnEveryPath) {
    {
        Worker w(Body::Return);
        EXPECT_TRUE(w.Terminate(5));  // no thread: still releases
        EXPECT_EQ(w.Events(), (std::vector<std::string>{"release"}));
    }
    {
        Worker w(Body::Return, /*initResult=*/false);
        EXPECT_FALSE(w.Create(nullptr));
        EXPECT_FALSE(w.IsCreated());
        EXPECT_TRUE(w.IsTerminated());
        EXPECT_EQ(w.Events(), (std::vector<std::string>{"init"}));
    }
    {
        Worker w(Body::Return);
        int first = 1, second = 2;
        ASSERT_TRUE(w.Create(&first));
        const DWORD id = w.GetThreadId();
        EXPECT_TRUE(w.Create(&second));
        EXPECT_EQ(w.GetThreadId(), id);
        EXPECT_EQ(w.Events(), (std::vector<std::string>{"init", "init", "release"}));
        w.Resume();
        ASSERT_TRUE(WaitFor([&] { return w.IsTerminated(); }));
        EXPECT_EQ(w.runs.load(), 1);
        EXPECT_EQ(w.seenParam.load(), &second);
    }
}

// Catches: an exception escaping the body that takes the process down or leaves the
// terminated flag false.
TEST(Thread, ExceptionFromTheBodyEndsTheThread) {
    Worker w(Body::Throw);
    ASSERT_TRUE(w.Create(nullptr));
    w.Resume();
    ASSERT_TRUE(WaitFor([&] { return w.IsTerminated(); }));
    EXPECT_EQ(w.unwinds.load(), 1);
}

int NiceOf(DWORD tid) {
    errno = 0;
    return getpriority(PRIO_PROCESS, static_cast<id_t>(tid));
}

// Catches: a wrong mapping of the five levels, out-of-range levels not taken as normal, and
// a call without a thread that fails instead of succeeding.
TEST(Thread, PriorityLevelsMapOntoNiceValues) {
    Worker none(Body::Return);
    for (int p : {5, -3, 0, 2, -2}) EXPECT_EQ(none.SetThreadPriority(p), 1);

    Worker w(Body::Return);
    ASSERT_TRUE(w.Create(nullptr));
    const int normal = NiceOf(w.GetThreadId());
    // Lowering a thread is always allowed; out-of-range levels are normal. Going back up
    // needs the right to: with it the nice value follows the table, without it the call
    // fails (0, errno) and the thread stays where it was.
    const struct {
        int level, nice;  // nice relative to normal
    } cases[] = {{-2, 10}, {-1, 5}, {0, 0}, {5, 0}, {-3, 0}, {15, 0}, {2, -10}, {1, -5}};
    int current = normal;
    for (const auto& c : cases) {
        const int expected = std::clamp(normal + c.nice, -20, 19);
        if (w.SetThreadPriority(c.level) == 0) {
            EXPECT_LT(expected, current) << c.level;
            EXPECT_TRUE(errno == EACCES || errno == EPERM) << errno;
        } else {
            current = expected;
        }
        EXPECT_EQ(NiceOf(w.GetThreadId()), current) << c.level;
    }
    EXPECT_TRUE(w.Terminate(100));
}

// Catches: an ideal processor that is not applied as affinity, a wrong "previous" result,
// a failure without the status-line message, and the no-thread case not reporting the
// invalid-handle code.
TEST(Thread, IdealProcessorIsAffinity) {
    Worker none(Body::Return);
    errno = 0;
    EXPECT_EQ(none.SetThreadIdealProcessor(0), 0xFFFFFFFFu);
    EXPECT_EQ(errno, EBADF);

    std::vector<std::string> status;
    std::mutex statusMutex;
    const KxStatusHook previous = KxSetStatusHook([&](const CString& text) {
        std::lock_guard<std::mutex> lock(statusMutex);
        status.push_back(text.str());
    });

    cpu_set_t allowed;
    ASSERT_EQ(sched_getaffinity(0, sizeof allowed, &allowed), 0);
    DWORD first = 0;
    while (!CPU_ISSET(first, &allowed)) ++first;
    DWORD last = first;
    for (DWORD i = 0; i < CPU_SETSIZE; ++i)
        if (CPU_ISSET(i, &allowed)) last = i;

    Worker w(Body::Return);
    ASSERT_TRUE(w.Create(nullptr));
    EXPECT_EQ(w.SetThreadIdealProcessor(kxBaseThread::kQueryIdealProcessor), first);
    EXPECT_EQ(w.SetThreadIdealProcessor(last), first);
    EXPECT_EQ(w.SetThreadIdealProcessor(kxBaseThread::kQueryIdealProcessor), last);
    cpu_set_t now;
    ASSERT_EQ(sched_getaffinity(static_cast<pid_t>(w.GetThreadId()), sizeof now, &now), 0);
    EXPECT_EQ(CPU_COUNT(&now), 1);
    EXPECT_TRUE(CPU_ISSET(last, &now));
    EXPECT_TRUE(status.empty());

    errno = 0;
    EXPECT_EQ(w.SetThreadIdealProcessor(CPU_SETSIZE + 3), 0xFFFFFFFFu);
    EXPECT_EQ(errno, EINVAL);
    ASSERT_EQ(status.size(), 1u);
    EXPECT_EQ(status[0], "Invalid argument (0x16)");
    EXPECT_EQ(w.SetThreadIdealProcessor(kxBaseThread::kQueryIdealProcessor), last);
    KxSetStatusHook(previous);

    // Pinned, the body still runs.
    w.Resume();
    EXPECT_TRUE(WaitFor([&] { return w.IsTerminated(); }));
    EXPECT_TRUE(w.Terminate(100));
}

}  // namespace
