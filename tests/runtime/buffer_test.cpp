// CBufferManager state changes: the kept buffer is never lent twice, temporaries are zeroed
// and freed on return, and out of memory is swallowed.
#include <gtest/gtest.h>

#include <algorithm>
#include <new>

#include <kxbase/runtime/buffer_manager.h>

#include "runtime/buffer_manager_p.h"

namespace {

bool all_zero(const BYTE* p, DWORD n) {
    return p && std::all_of(p, p + n, [](BYTE b) { return b == 0; });
}

}  // namespace

// Lending the kept buffer to two borrowers, an unzeroed temporary, returning a temporary
// that frees the kept buffer, a longer request served by the kept buffer, resizing while lent,
// a same-length InitBuffer losing the contents, a new length not zeroed, 0 not freeing.
TEST(CBufferManager, LendingAndResizing) {
    CBufferManager m;
    DWORD len = 99;
    ASSERT_EQ(m.InitBuffer(&len, 64), 1);
    EXPECT_EQ(len, 64u);
    BYTE* kept = m.LockBuffer(64, 0);
    ASSERT_TRUE(all_zero(kept, 64));
    kept[5] = 7;
    EXPECT_EQ(m.LockBuffer(8, 0), nullptr);  // lent: no second loan
    BYTE* temp = m.LockBuffer(8, 1);
    EXPECT_TRUE(temp != kept && all_zero(temp, 8));
    m.UnlockBuffer(temp);
    EXPECT_EQ(m.LockBuffer(8, 0), nullptr);  // returning a temporary did not free the kept one
    EXPECT_EQ(m.InitBuffer(&len, 16), 0);    // lent: refused
    EXPECT_EQ(m.GetBufferLength(), 64u);
    m.UnlockBuffer(kept);
    BYTE* longer = m.LockBuffer(65, 1);
    EXPECT_NE(longer, kept);
    m.UnlockBuffer(longer);
    EXPECT_EQ(m.InitBuffer(&len, 64), 1);
    ASSERT_EQ(m.LockBuffer(0, 0), kept);
    EXPECT_EQ(kept[5], 7);  // contents are what the last borrower left
    m.UnlockBuffer(kept);
    EXPECT_EQ(m.InitBuffer(&len, 48), 1);
    EXPECT_TRUE(all_zero(kept = m.LockBuffer(48, 0), 48));
    m.UnlockBuffer(kept);
    EXPECT_EQ(m.InitBuffer(&len, 0), 1);
    EXPECT_EQ(m.GetBufferLength(), 0u);
    EXPECT_EQ(m.LockBuffer(0, 0), nullptr);
}

// Out of memory, whether reported by a null result or by an exception, must come back as a
// 0 result / null pointer and an empty manager, never as an exception.
TEST(CBufferManager, OutOfMemoryIsSwallowed) {
    const kxbase::detail::BufferAllocFn failing = [](std::size_t) -> void* { return nullptr; };
    const kxbase::detail::BufferAllocFn throwing = [](std::size_t) -> void* {
        throw std::bad_alloc();
    };
    for (auto alloc : {failing, throwing}) {
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
