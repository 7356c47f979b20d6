// kxBaseThread over the latched threads of platform/threads_posix.cpp.
#include <kxbase/runtime/thread.h>

#include <algorithm>
#include <chrono>
#include <new>
#include <thread>

#include <kxbase/runtime/error_info.h>
#include <kxbase/base/messages.h>

#include "platform/sys.h"
#include "platform/threads_p.h"

using kxbase::detail::OsThread;

namespace {

// What the thread needs: its object and the terminated flag, which the thread keeps alive.
struct RunArgs {
    kxBaseThread* self;
    std::shared_ptr<std::atomic<bool>> terminated;
};

// Sets the terminated flag however the body ends: return, escaping exception, pthread_exit.
struct MarkTerminated {
    std::atomic<bool>& flag;
    ~MarkTerminated() { flag.store(true, std::memory_order_relaxed); }
};

void thread_entry(void* arg, bool run) {
    std::unique_ptr<RunArgs> args(static_cast<RunArgs*>(arg));
    MarkTerminated mark{*args->terminated};
    if (!run) return;  // abandoned before Resume
    args->terminated->store(false, std::memory_order_relaxed);
    // A body that fails ends the thread as if it had returned; the system's own thread exit
    // from inside the body still unwinds the whole stack.
    kxbase::sys::RunSwallowingExceptions(
        [](void* self) { static_cast<kxBaseThread*>(self)->Run(); }, args->self);
}

std::uint64_t tick_ms() {
    return static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::milliseconds>(
                                          std::chrono::steady_clock::now().time_since_epoch())
                                          .count());
}

constexpr int kNiceStep = 5;
constexpr int kNiceMin = -20, kNiceMax = 19;

}  // namespace

kxBaseThread::kxBaseThread() = default;

kxBaseThread::~kxBaseThread() {
    kxBaseThread::Terminate(1000);
}

bool kxBaseThread::InitCustomParameter() {
    return true;
}
bool kxBaseThread::ReleaseCustomParameter() {
    return true;
}

bool kxBaseThread::Create(void* param) {
    m_pParam = param;
    if (!InitCustomParameter()) return false;
    if (m_hThread) {
        ReleaseCustomParameter();
        return true;
    }
    m_dwThreadId = 0;
    m_bNeedExit.store(false, std::memory_order_relaxed);
    std::shared_ptr<std::atomic<bool>> terminated;
    RunArgs* args = nullptr;
    try {
        terminated = std::make_shared<std::atomic<bool>>(false);
        args = new RunArgs{this, terminated};
    } catch (...) {
        kxbase::sys::SetLastSystemError(kxbase::sys::ErrorOutOfMemory());
        return false;
    }
    int err = 0;
    m_hThread = OsThread::Start(thread_entry, args, err);
    if (!m_hThread) {
        delete args;
        kxbase::sys::SetLastSystemError(static_cast<DWORD>(err));
        return false;
    }
    m_pTerminated = std::move(terminated);
    m_dwThreadId = m_hThread->Id();
    m_nIdealProcessor = 0xFFFFFFFF;
    // The thread inherits its creator's nice value: that is its normal level.
    int nice = 0;
    if (!m_hThread->GetNice(nice, err)) nice = 0;
    m_nNormalNice = nice;
    SetThreadPriority(0);
    return true;
}

bool kxBaseThread::NeedExit(bool bExit) {
    m_bNeedExit.store(bExit, std::memory_order_relaxed);
    return true;
}

bool kxBaseThread::IsNeedExit() const {
    return m_bNeedExit.load(std::memory_order_relaxed);
}

bool kxBaseThread::IsCreated() const {
    return m_hThread != nullptr;
}

bool kxBaseThread::IsTerminated() const {
    return !m_pTerminated || m_pTerminated->load(std::memory_order_relaxed);
}

bool kxBaseThread::Resume() {
    if (m_hThread) m_hThread->Release();
    return true;
}

bool kxBaseThread::Terminate(DWORD timeout) {
    if (m_hThread) {
        NeedExit(true);
        const std::uint64_t start = tick_ms();
        while (!IsTerminated() && tick_ms() - start <= timeout)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        if (IsTerminated()) {
            m_hThread->Join();
        } else {
            // Never resumed: it leaves at once without running the body, so wait for it.
            // Running: it is let go, to end when its body returns (see the header).
            // Windows: a running body is ended by force after the time-out; the flag is
            // set here, as the killed thread runs none of its own exit steps.
            if (m_hThread->Abandon()) {
                m_hThread->Join();
            } else if (m_hThread->Kill()) {
                m_pTerminated->store(true, std::memory_order_relaxed);
                m_hThread->Join();
            } else {
                m_hThread->Detach();
            }
        }
        m_hThread.reset();
        m_dwThreadId = 0;
    }
    ReleaseCustomParameter();
    return true;
}

int kxBaseThread::SetThreadPriority(int priority) {
    if (!m_hThread) return 1;
    if (priority < -2 || priority > 2) priority = 0;
    const int nice = std::clamp(m_nNormalNice - kNiceStep * priority, kNiceMin, kNiceMax);
    int err = 0;
    if (!m_hThread->SetNice(nice, err)) {
        kxbase::sys::SetLastSystemError(static_cast<DWORD>(err));
        return 0;
    }
    return 1;
}

DWORD kxBaseThread::SetThreadIdealProcessor(DWORD processor) {
    if (!m_hThread) {
        kxbase::sys::SetLastSystemError(kxbase::sys::ErrorInvalidHandle());
        return kIdealProcessorFailed;
    }
    int err = 0;
    DWORD previous = m_nIdealProcessor;
    if (previous == 0xFFFFFFFF && !m_hThread->FirstAllowedCpu(previous, err)) previous = 0;
    if (processor == kQueryIdealProcessor) return previous;
    if (!m_hThread->SetAffinity(processor, err)) {
        ZelStatusMsg("%s",
                     CErrorInfo::TransSystemErrorCodeToString(static_cast<DWORD>(err)).GetString());
        kxbase::sys::SetLastSystemError(static_cast<DWORD>(err));
        return kIdealProcessorFailed;
    }
    m_nIdealProcessor = processor;
    return previous;
}
