// The write probe must answer from the mapping table without touching the memory: a wrong
// answer here lets a host write into read-only or unmapped memory, or refuse a good buffer.
#include <gtest/gtest.h>

#if defined(_WIN32)
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#else
#include <sys/mman.h>
#include <unistd.h>
#endif

#include <atomic>
#include <thread>
#include <vector>

#include <kxbase/mathopt/amathopt.h>

namespace {

// Three pages: writable, read-only, and a hole (unmapped; on Windows reserved, not committed).
// Returns the first page; FreeProbePages releases what is left.
BYTE* ProbePages(size_t& page) {
#if defined(_WIN32)
    SYSTEM_INFO si{};
    GetSystemInfo(&si);
    page = si.dwPageSize;
    void* p = VirtualAlloc(nullptr, 3 * page, MEM_RESERVE, PAGE_NOACCESS);
    if (p == nullptr || VirtualAlloc(p, 2 * page, MEM_COMMIT, PAGE_READWRITE) == nullptr)
        return nullptr;
    DWORD old = 0;
    if (!VirtualProtect(static_cast<BYTE*>(p) + page, page, PAGE_READONLY, &old)) return nullptr;
    return static_cast<BYTE*>(p);
#else
    page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
    void* p = mmap(nullptr, 3 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (p == MAP_FAILED) return nullptr;
    BYTE* base = static_cast<BYTE*>(p);
    if (mprotect(base + page, page, PROT_READ) != 0 || munmap(base + 2 * page, page) != 0)
        return nullptr;
    return base;
#endif
}

void FreeProbePages(BYTE* base, size_t page) {
#if defined(_WIN32)
    (void)page;
    VirtualFree(base, 0, MEM_RELEASE);
#else
    munmap(base, 2 * page);
#endif
}

// Code of the system library: mapped, but never writable.
void* SystemCode() {
#if defined(_WIN32)
    return reinterpret_cast<void*>(&VirtualAlloc);
#else
    return reinterpret_cast<void*>(&mmap);
#endif
}

// Reaches the module-wide lock, which is protected.
struct LockView : AMathOpt {
    static bool Exists() { return m_section_IsBadWritePtr != nullptr; }
};

// Fault: a region's protection is misread (or a range ending in a hole passes), with or
// without the module lock; null, wrapping ranges and code count as writable.
TEST(WriteProbe, AnswersPerRegionWithAndWithoutTheModuleLock) {
    size_t page = 0;
    BYTE* const base = ProbePages(page);
    ASSERT_NE(base, nullptr);
    // Writable page and byte, read-only page, the hole, ranges running into read-only memory
    // and past the end of the mapping, and size zero on the hole.
    struct Case {
        size_t offset, size;
        int bad;
    } cases[] = {{0, page, 0},      {page - 1, 1, 0},      {page, page, 1}, {2 * page, page, 1},
                 {page - 8, 16, 1}, {2 * page - 8, 16, 1}, {2 * page, 0, 0}};
    int local = 0;
    for (bool withLock : {false, true}) {
        if (withLock) AMathOpt::Init();
        for (const Case& c : cases)
            EXPECT_EQ(AMathOpt::MathOpt_IsBadWritePtr(base + c.offset, c.size), c.bad)
                << c.offset << "+" << c.size << (withLock ? " (locked)" : " (no lock)");
        EXPECT_EQ(AMathOpt::MathOpt_IsBadWritePtr(nullptr, 1), 1);
        EXPECT_EQ(AMathOpt::MathOpt_IsBadWritePtr(&local, sizeof local), 0);
        EXPECT_EQ(AMathOpt::MathOpt_IsBadWritePtr(&local, ~UINT64{0}), 1);  // wraps
        EXPECT_EQ(AMathOpt::MathOpt_IsBadWritePtr(SystemCode(), 1), 1);
        AMathOpt::Exit();
        EXPECT_FALSE(LockView::Exists());
    }
    FreeProbePages(base, page);
}

// Fault: probes under the lock race (TSan) or disagree; a second start-up drops the lock.
TEST(WriteProbe, ConcurrentProbesUnderTheLockAgree) {
    AMathOpt::Init();
    AMathOpt::Init();
    std::vector<BYTE> heap(1 << 20);
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < 50; ++i)
                if (AMathOpt::MathOpt_IsBadWritePtr(heap.data(), heap.size()) != 0) ++wrong;
        });
    for (auto& th : threads) th.join();
    AMathOpt::Exit();
    EXPECT_EQ(wrong.load(), 0);
}

}  // namespace
