// Latched pthreads: "created suspended" is a thread that waits on an atomic latch until its
// owner releases it (or abandons it, in which case it leaves without running its entry).
#include "platform/threads_p.h"

#include <pthread.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/types.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <new>

namespace kxbase::detail {

struct OsThreadBlock {
    static constexpr int kClosed = 0, kReleased = 1, kAbandoned = 2;

    LatchedEntry entry = nullptr;
    void* arg = nullptr;
    pthread_t handle{};
    std::atomic<int> latch{kClosed};
    std::atomic<pid_t> tid{0};
};

namespace {

void* trampoline(void* p) {
    // The thread owns one reference to the block for its whole life, so the latch and the
    // id stay valid even when the owner has detached it and gone away.
    std::shared_ptr<OsThreadBlock> block;
    {
        auto* ref = static_cast<std::shared_ptr<OsThreadBlock>*>(p);
        block = std::move(*ref);
        delete ref;
    }
    block->tid.store(gettid(), std::memory_order_release);
    block->tid.notify_all();
    block->latch.wait(OsThreadBlock::kClosed, std::memory_order_acquire);
    const bool run = block->latch.load(std::memory_order_acquire) == OsThreadBlock::kReleased;
    block->entry(block->arg, run);
    return nullptr;
}

}  // namespace

std::unique_ptr<OsThread> OsThread::Start(LatchedEntry entry, void* arg, int& err) {
    err = 0;
    std::unique_ptr<OsThread> thread(new (std::nothrow) OsThread);
    if (!thread) {
        err = ENOMEM;
        return nullptr;
    }
    try {
        thread->m_block = std::make_shared<OsThreadBlock>();
    } catch (...) {
        err = ENOMEM;
        return nullptr;
    }
    OsThreadBlock& block = *thread->m_block;
    block.entry = entry;
    block.arg = arg;
    auto* ref = new (std::nothrow) std::shared_ptr<OsThreadBlock>(thread->m_block);
    if (ref == nullptr) {
        err = ENOMEM;
        return nullptr;
    }
    const int rc = pthread_create(&block.handle, nullptr, trampoline, ref);
    if (rc != 0) {
        delete ref;
        err = rc;
        return nullptr;
    }
    // The id exists only once the thread runs; wait for it so that the owner can address the
    // thread (priority, affinity) before releasing it.
    pid_t tid;
    while ((tid = block.tid.load(std::memory_order_acquire)) == 0) block.tid.wait(0);
    return thread;
}

OsThread::~OsThread() {
    // An owner that forgot to end the thread must not leak it, nor block here.
    if (m_block && !m_ended) {
        if (Abandon())
            Join();
        else
            Detach();
    }
}

DWORD OsThread::Id() const {
    return static_cast<DWORD>(m_block->tid.load());
}

void OsThread::Release() {
    int expected = OsThreadBlock::kClosed;
    if (m_block->latch.compare_exchange_strong(expected, OsThreadBlock::kReleased))
        m_block->latch.notify_all();
}

bool OsThread::Abandon() {
    int expected = OsThreadBlock::kClosed;
    if (!m_block->latch.compare_exchange_strong(expected, OsThreadBlock::kAbandoned)) return false;
    m_block->latch.notify_all();
    return true;
}

bool OsThread::Kill() {
    return false;  // cancelling a pthread that does not expect it is not safe
}

void OsThread::Join() {
    if (m_ended) return;
    pthread_join(m_block->handle, nullptr);
    m_ended = true;
}

void OsThread::Detach() {
    if (m_ended) return;
    pthread_detach(m_block->handle);
    m_ended = true;
}

bool OsThread::GetNice(int& nice, int& err) const {
    errno = 0;
    const int value = getpriority(PRIO_PROCESS, static_cast<id_t>(m_block->tid.load()));
    if (value == -1 && errno != 0) {
        err = errno;
        return false;
    }
    nice = value;
    return true;
}

bool OsThread::SetNice(int nice, int& err) {
    if (setpriority(PRIO_PROCESS, static_cast<id_t>(m_block->tid.load()), nice) != 0) {
        err = errno;
        return false;
    }
    return true;
}

bool OsThread::SetAffinity(DWORD cpu, int& err) {
    if (cpu >= CPU_SETSIZE || m_ended) {
        err = EINVAL;
        return false;
    }
    cpu_set_t set;
    CPU_ZERO(&set);
    CPU_SET(cpu, &set);
    const int rc = pthread_setaffinity_np(m_block->handle, sizeof set, &set);
    if (rc != 0) {
        err = rc;
        return false;
    }
    return true;
}

bool OsThread::FirstAllowedCpu(DWORD& cpu, int& err) const {
    cpu_set_t set;
    CPU_ZERO(&set);
    const int rc = m_ended ? ESRCH : pthread_getaffinity_np(m_block->handle, sizeof set, &set);
    if (rc != 0) {
        err = rc;
        return false;
    }
    for (int i = 0; i < CPU_SETSIZE; ++i)
        if (CPU_ISSET(i, &set)) {
            cpu = static_cast<DWORD>(i);
            return true;
        }
    err = EINVAL;
    return false;
}

}  // namespace kxbase::detail
