// The string table: loaded texts never split a UTF-8 character, and ids, handles and
// buffers the table does not own give an empty result.
#include <gtest/gtest.h>

#include <cstring>

#include <kxbase/base/string_table.h>
#include <kxbase/platform/module.h>

TEST(StringTable, TruncationNeverSplitsACharacter) {
    // id 20 is four 3-byte characters (12 bytes).
    const char* full = KxStringTableEntry(20);
    ASSERT_NE(full, nullptr);
    ASSERT_EQ(std::strlen(full), 12u);
    struct Case {
        int bufferMax, expected;
    } cases[] = {{1, 0}, {2, 0}, {3, 0}, {4, 3}, {6, 3}, {7, 6}, {12, 9}, {13, 12}, {100, 12}};
    for (const auto& c : cases) {
        char buf[128];
        std::memset(buf, 'Z', sizeof buf);
        EXPECT_EQ(KxLoadString(nullptr, 20, buf, c.bufferMax), c.expected) << c.bufferMax;
        EXPECT_EQ(std::strlen(buf), static_cast<std::size_t>(c.expected));
        EXPECT_EQ(std::memcmp(buf, full, static_cast<std::size_t>(c.expected)), 0);
        EXPECT_EQ(buf[c.bufferMax], 'Z') << "wrote past the buffer";
    }
    // Mixed ASCII and multi-byte: "Windows 套接字..." cut inside the first CJK character.
    char buf[10];
    EXPECT_EQ(KxLoadString(nullptr, 101, buf, 10), 8);
    EXPECT_STREQ(buf, "Windows ");
}

TEST(StringTable, UnknownIdsForeignHandlesAndBadBuffers) {
    char buf[16] = "junk";
    EXPECT_EQ(KxLoadString(nullptr, 0, buf, sizeof buf), 0);
    EXPECT_STREQ(buf, "");
    EXPECT_EQ(KxLoadString(nullptr, 27, buf, sizeof buf), 0);
    int local = 0;
    EXPECT_EQ(KxLoadString(reinterpret_cast<HINSTANCE>(&local), 22, buf, sizeof buf), 0);
    EXPECT_EQ(KxLoadString(KxLibraryHandle(), 22, buf, sizeof buf), 3);
    EXPECT_STREQ(buf, "DPI");
    EXPECT_EQ(KxLoadString(nullptr, 22, nullptr, 10), 0);
    EXPECT_EQ(KxLoadString(nullptr, 22, buf, 0), 0);
    EXPECT_EQ(KxLoadString(nullptr, 22, buf, -5), 0);
}
