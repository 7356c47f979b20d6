// Windows threads for kxBaseThread: CreateThread with CREATE_SUSPENDED, ResumeThread on
// release, and the system's priority levels and ideal processor.
#include "platform/threads_p.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <algorithm>
#include <atomic>
#include <new>

namespace kxbase::detail {

struct OsThreadBlock {
    static constexpr int kClosed = 0, kReleased = 1, kAbandoned = 2;

    LatchedEntry entry = nullptr;
    void* arg = nullptr;
    HANDLE handle = nullptr;
    DWORD id = 0;
    std::atomic<int> latch{kClosed};
};

namespace {

DWORD WINAPI trampoline(void* p) {
    // The thread owns one reference to the block, so the latch stays valid even when the
    // owner has detached the thread and gone away.
    std::shared_ptr<OsThreadBlock> block;
    {
        auto* ref = static_cast<std::shared_ptr<OsThreadBlock>*>(p);
        block = std::move(*ref);
        delete ref;
    }
    const bool run = block->latch.load(std::memory_order_acquire) == OsThreadBlock::kReleased;
    block->entry(block->arg, run);
    return 0;
}

// The nice scale of the portable code (5 steps per level, lower is more urgent) against the
// system's five levels around THREAD_PRIORITY_NORMAL.
int level_of_nice(int nice) {
    return std::clamp(-nice / 5, THREAD_PRIORITY_LOWEST, THREAD_PRIORITY_HIGHEST);
}

}  // namespace

std::unique_ptr<OsThread> OsThread::Start(LatchedEntry entry, void* arg, int& err) {
    err = 0;
    std::unique_ptr<OsThread> thread(new (std::nothrow) OsThread);
    if (!thread) {
        err = ERROR_NOT_ENOUGH_MEMORY;
        return nullptr;
    }
    try {
        thread->m_block = std::make_shared<OsThreadBlock>();
    } catch (...) {
        err = ERROR_NOT_ENOUGH_MEMORY;
        return nullptr;
    }
    OsThreadBlock& block = *thread->m_block;
    block.entry = entry;
    block.arg = arg;
    auto* ref = new (std::nothrow) std::shared_ptr<OsThreadBlock>(thread->m_block);
    if (ref == nullptr) {
        err = ERROR_NOT_ENOUGH_MEMORY;
        return nullptr;
    }
    block.handle = CreateThread(nullptr, 0, trampoline, ref, CREATE_SUSPENDED, &block.id);
    if (block.handle == nullptr) {
        err = static_cast<int>(GetLastError());
        delete ref;
        return nullptr;
    }
    return thread;
}

OsThread::~OsThread() {
    if (m_block && !m_ended) {
        if (Abandon())
            Join();
        else
            Detach();
    }
}

DWORD OsThread::Id() const {
    return m_block->id;
}

void OsThread::Release() {
    int expected = OsThreadBlock::kClosed;
    if (m_block->latch.compare_exchange_strong(expected, OsThreadBlock::kReleased))
        ResumeThread(m_block->handle);
}

bool OsThread::Abandon() {
    int expected = OsThreadBlock::kClosed;
    if (!m_block->latch.compare_exchange_strong(expected, OsThreadBlock::kAbandoned)) return false;
    ResumeThread(m_block->handle);  // it sees the mark and leaves without the entry
    return true;
}

bool OsThread::Kill() {
    if (m_ended || m_block->latch.load() != OsThreadBlock::kReleased) return false;
    // The thread stops wherever it is: its stack is not unwound, and what the entry owned
    // (the argument block, locks it held) is left as it was.
    if (!TerminateThread(m_block->handle, 1)) return false;
    WaitForSingleObject(m_block->handle, INFINITE);
    return true;
}

void OsThread::Join() {
    if (m_ended) return;
    WaitForSingleObject(m_block->handle, INFINITE);
    CloseHandle(m_block->handle);
    m_ended = true;
}

void OsThread::Detach() {
    if (m_ended) return;
    CloseHandle(m_block->handle);
    m_ended = true;
}

bool OsThread::GetNice(int& nice, int& err) const {
    const int level = GetThreadPriority(m_block->handle);
    if (level == THREAD_PRIORITY_ERROR_RETURN) {
        err = static_cast<int>(GetLastError());
        return false;
    }
    nice = -5 * std::clamp(level, THREAD_PRIORITY_LOWEST, THREAD_PRIORITY_HIGHEST);
    return true;
}

bool OsThread::SetNice(int nice, int& err) {
    if (!SetThreadPriority(m_block->handle, level_of_nice(nice))) {
        err = static_cast<int>(GetLastError());
        return false;
    }
    return true;
}

bool OsThread::SetAffinity(DWORD cpu, int& err) {
    if (m_ended || cpu >= MAXIMUM_PROCESSORS) {
        err = ERROR_INVALID_PARAMETER;
        return false;
    }
    SYSTEM_INFO si{};
    GetSystemInfo(&si);
    if (cpu >= si.dwNumberOfProcessors) {
        err = ERROR_INVALID_PARAMETER;
        return false;
    }
    if (SetThreadIdealProcessor(m_block->handle, cpu) == static_cast<DWORD>(-1)) {
        err = static_cast<int>(GetLastError());
        return false;
    }
    return true;
}

bool OsThread::FirstAllowedCpu(DWORD& cpu, int& err) const {
    if (m_ended) {
        err = ERROR_INVALID_HANDLE;
        return false;
    }
    // MAXIMUM_PROCESSORS asks for the current ideal processor without changing it.
    const DWORD ideal = SetThreadIdealProcessor(m_block->handle, MAXIMUM_PROCESSORS);
    if (ideal == static_cast<DWORD>(-1)) {
        err = static_cast<int>(GetLastError());
        return false;
    }
    cpu = ideal;
    return true;
}

}  // namespace kxbase::detail
