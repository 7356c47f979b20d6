// CBufferManager state changes: the kept buffer is never lent twice, temporaries are zeroed
// and freed on return, and out of memory is swallowed.
#include <gtest/gtest.h>

#include <algorithm>
#include <new>

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

#include <kxbase/runtime/buffer_manager.h>

#include "runtime/buffer_manager_p.h"

namespace {

bool all_zero(const BYTE* p, DWORD n) {
    return std::all_of(p, p + n, [](BYTE b) { return b == 0; });
}

void* failing_alloc(std::size_t) {
    return nullptr;
}
void* throwing_alloc(std::size_t) {
    throw std::bad_alloc();
}

}  // namespace

// Lending: the kept buffer goes to one borrower only; a second borrower or a longer request
// gets a fresh zeroed temporary (or null without bAllocNew); a temporary's return leaves the
// kept buffer lent.
TEST(CBufferManager, LendsKeptBufferToOneBorrowerAtATime) {
    CBufferManager m;
    EXPECT_EQ(m.LockBuffer(16, 0), nullptr);  // empty manager, no temporaries allowed
    DWORD len = 99;
    ASSERT_EQ(m.InitBuffer(&len, 64), 1);
    EXPECT_EQ(len, 64u);
    EXPECT_EQ(m.GetBufferLength(), 64u);

    BYTE* kept = m.LockBuffer(64, 0);
    ASSERT_NE(kept, nullptr);
    EXPECT_TRUE(all_zero(kept, 64));
    std::fill(kept, kept + 64, BYTE{0xAB});

    EXPECT_EQ(m.LockBuffer(8, 0), nullptr);  // lent: no second loan
    BYTE* temp = m.LockBuffer(8, 1);
    ASSERT_NE(temp, nullptr);
    EXPECT_NE(temp, kept);
    EXPECT_TRUE(all_zero(temp, 8));
    EXPECT_EQ(m.UnlockBuffer(temp), 1);
    EXPECT_EQ(m.LockBuffer(8, 0), nullptr);  // returning a temporary did not free the kept one

    EXPECT_EQ(m.UnlockBuffer(kept), 1);
    EXPECT_EQ(m.UnlockBuffer(kept), 1);  // twice is harmless
    EXPECT_EQ(m.UnlockBuffer(nullptr), 1);

    BYTE* longer = m.LockBuffer(65, 1);  // longer than kept: never the kept buffer
    ASSERT_NE(longer, nullptr);
    EXPECT_NE(longer, kept);
    m.UnlockBuffer(longer);

    BYTE* again = m.LockBuffer(10, 0);
    EXPECT_EQ(again, kept);
    EXPECT_EQ(again[0], 0xAB);  // contents are what the last borrower left
    m.UnlockBuffer(again);

    BYTE* zeroLen = m.LockBuffer(0, 1);  // fits the kept buffer
    EXPECT_EQ(zeroLen, kept);
    m.UnlockBuffer(zeroLen);
}

// Resizing: refused while lent, keeps contents for the same length, zeroes a new length,
// frees for length 0.
TEST(CBufferManager, InitBufferStateChanges) {
    CBufferManager m;
    DWORD len = 1;
    EXPECT_EQ(m.InitBuffer(&len, 0), 1);  // empty stays empty
    EXPECT_EQ(len, 0u);
    ASSERT_EQ(m.InitBuffer(nullptr, 32), 1);
    BYTE* p = m.LockBuffer(32, 0);
    p[5] = 7;

    len = 1;
    EXPECT_EQ(m.InitBuffer(&len, 16), 0);  // lent: refused
    EXPECT_EQ(len, 0u);
    EXPECT_EQ(m.GetBufferLength(), 32u);
    m.UnlockBuffer(p);

    EXPECT_EQ(m.InitBuffer(&len, 32), 1);  // same length keeps the contents
    EXPECT_EQ(len, 32u);
    p = m.LockBuffer(32, 0);
    EXPECT_EQ(p[5], 7);
    m.UnlockBuffer(p);

    EXPECT_EQ(m.InitBuffer(&len, 48), 1);  // another length: zeroed
    p = m.LockBuffer(48, 0);
    ASSERT_NE(p, nullptr);
    EXPECT_TRUE(all_zero(p, 48));
    m.UnlockBuffer(p);

    EXPECT_EQ(m.InitBuffer(&len, 0), 1);
    EXPECT_EQ(m.GetBufferLength(), 0u);
    EXPECT_EQ(m.LockBuffer(1, 0), nullptr);
}

// Out of memory, whether reported by a null result or by an exception, must come back as a
// 0 result / null pointer and an empty manager, never as an exception.
TEST(CBufferManager, OutOfMemoryIsSwallowed) {
    for (auto alloc : {&failing_alloc, &throwing_alloc}) {
        CBufferManager m;
        ASSERT_EQ(m.InitBuffer(nullptr, 100), 1);
        kxbase::detail::SetBufferAllocator(alloc);
        DWORD len = 5;
        EXPECT_EQ(m.InitBuffer(&len, 0xFFFFFFFFu), 0);
        EXPECT_EQ(len, 0u);
        EXPECT_EQ(m.GetBufferLength(), 0u);
        EXPECT_EQ(m.LockBuffer(0xFFFFFFFFu, 1), nullptr);
        kxbase::detail::SetBufferAllocator(nullptr);
        EXPECT_EQ(m.LockBuffer(1, 0), nullptr);
    }
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
// The real allocator refusing a length (address space capped in a child process): the
// manager must report 0 and stay empty instead of passing the failure on. (Sanitizer runtimes
// treat an exhausted address space as fatal, so this runs in plain builds only.)
TEST(CBufferManager, LengthThatCannotBeAllocated) {
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        const rlimit cap{512u << 20, 512u << 20};
        if (setrlimit(RLIMIT_AS, &cap) != 0) _exit(2);
        CBufferManager m;
        DWORD len = 1;
        const bool ok = m.InitBuffer(&len, 0xFFFFFFFFu) == 0 && len == 0 &&
                        m.GetBufferLength() == 0 && m.LockBuffer(0xFFFFFFFFu, 1) == nullptr;
        _exit(ok ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
}
#endif
