// The write probe must answer from the mapping table without touching the memory: a wrong
// answer here lets a host write into read-only or unmapped memory, or refuse a good buffer.
#include <gtest/gtest.h>

#include <sys/mman.h>
#include <unistd.h>

#include <atomic>
#include <thread>
#include <vector>

#include <kxbase/mathopt/amathopt.h>
#include <kxbase/platform/memory_probe.h>

namespace {

/// Three pages: writable, read-only, and an unmapped hole after them.
class ProbePages : public ::testing::Test {
protected:
    void SetUp() override {
        page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
        void* p =
            mmap(nullptr, 3 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        ASSERT_NE(p, MAP_FAILED);
        base = static_cast<BYTE*>(p);
        ASSERT_EQ(mprotect(base + page, page, PROT_READ), 0);
        ASSERT_EQ(munmap(base + 2 * page, page), 0);
    }
    void TearDown() override { munmap(base, 2 * page); }

    size_t page = 0;
    BYTE* base = nullptr;
};

/// Reaches the module-wide lock, which is protected.
struct LockView : AMathOpt {
    static bool Exists() { return m_section_IsBadWritePtr != nullptr; }
};

TEST_F(ProbePages, AnswersPerRegionWithAndWithoutTheModuleLock) {
    struct Case {
        const char* what;
        size_t offset, size;
        int bad;
    } cases[] = {
        {"writable page", 0, page, 0},
        {"one writable byte", page - 1, 1, 0},
        {"read-only page", page, page, 1},
        {"unmapped page", 2 * page, page, 1},
        {"straddles writable into read-only", page - 8, 16, 1},
        {"straddles the end of the mapping", 2 * page - 8, 16, 1},
        {"size zero on an unmapped page", 2 * page, 0, 0},
    };
    for (bool withLock : {false, true}) {
        if (withLock) AMathOpt::Init();
        EXPECT_EQ(LockView::Exists(), withLock);
        for (const Case& c : cases)
            EXPECT_EQ(AMathOpt::MathOpt_IsBadWritePtr(base + c.offset, c.size), c.bad)
                << c.what << (withLock ? " (locked)" : " (no lock)");
        AMathOpt::Exit();
        EXPECT_FALSE(LockView::Exists());
    }
}

TEST(WriteProbe, RefusesNullAndWrappingRangesAndAcceptsStackAndHeap) {
    EXPECT_EQ(AMathOpt::MathOpt_IsBadWritePtr(nullptr, 1), 1);
    int local = 0;
    EXPECT_EQ(AMathOpt::MathOpt_IsBadWritePtr(&local, sizeof local), 0);
    EXPECT_EQ(AMathOpt::MathOpt_IsBadWritePtr(&local, ~UINT64{0}), 1);  // wraps
    std::vector<BYTE> heap(1 << 20);
    EXPECT_EQ(AMathOpt::MathOpt_IsBadWritePtr(heap.data(), heap.size()), 0);
    // Code is mapped read-only / executable.
    EXPECT_FALSE(KxIsWritableRange(reinterpret_cast<const void*>(&KxIsWritableRange), 1));
}

TEST(WriteProbe, ConcurrentProbesUnderTheLockAgree) {
    AMathOpt::Init();
    AMathOpt::Init();  // a second start-up keeps the lock
    std::vector<BYTE> heap(4096);
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
