// Value types every subsystem leans on: index failures must throw std::invalid_argument and
// nothing else; strings format like the Windows build; loaded texts never split a character.
#include <gtest/gtest.h>

#include <cinttypes>
#include <cstring>

#include <kxbase/platform.h>

TEST(CArray, IndexOutsideSizeThrowsInvalidArgument) {
    CArray<int> a;
    EXPECT_THROW(a.GetAt(0), std::invalid_argument);
    a.Add(7);
    a.Add(8);
    for (INT_PTR bad : {INT_PTR{-1}, INT_PTR{2}, INT_PTR{1} << 40}) {
        EXPECT_THROW(a.GetAt(bad), std::invalid_argument) << bad;
        EXPECT_THROW(a[bad] = 1, std::invalid_argument) << bad;
        EXPECT_THROW(a.SetAt(bad, 1), std::invalid_argument) << bad;
    }
    EXPECT_THROW(a.RemoveAt(1, 2), std::invalid_argument);
    EXPECT_THROW(a.SetAtGrow(-1, 0), std::invalid_argument);
    EXPECT_THROW(a.SetSize(-1), std::invalid_argument);
    EXPECT_EQ(a.GetSize(), 2);  // failed calls leave the array as it was
}

TEST(CArray, GrowInsertRemoveKeepOrderAndZeroFill) {
    CArray<POINT> a;
    a.SetAtGrow(3, POINT{5, 6});
    ASSERT_EQ(a.GetSize(), 4);
    EXPECT_EQ(a[0], (POINT{0, 0}));
    EXPECT_EQ(a[3], (POINT{5, 6}));
    a.InsertAt(1, POINT{1, 1}, 2);
    a.RemoveAt(0);
    ASSERT_EQ(a.GetSize(), 5);
    EXPECT_EQ(a[0], (POINT{1, 1}));
    EXPECT_EQ(a[1], (POINT{1, 1}));
    EXPECT_EQ(a[2], (POINT{0, 0}));
    EXPECT_EQ(a[4], (POINT{5, 6}));
    CArray<POINT> b;
    b.Copy(a);
    EXPECT_EQ(b.Append(a), 5);
    EXPECT_EQ(b.GetSize(), 10);
    EXPECT_EQ(b.GetUpperBound(), 9);
}

TEST(CString, FormatsWindowsWidthPrefixesAndLongText) {
    CString s;
    const char* windowsFormat = "%I64d|%I64X|%I64u|%%I64d";  // not a literal: gcc rejects "I64"
    s.Format(windowsFormat, INT64{-5}, UINT64{0xABCDEF012345}, UINT64{18446744073709551615u});
    EXPECT_STREQ(s, "-5|ABCDEF012345|18446744073709551615|%I64d");
    s.Format("%s", std::string(1000, 'x').c_str());
    EXPECT_EQ(s.GetLength(), 1000);
    s.AppendFormat("%.8X", 255u);
    EXPECT_EQ(s.Right(8), CString("000000FF"));
}

TEST(CString, SubstringsClampAndCharacterAccessThrows) {
    const CString s("abcdef");
    EXPECT_EQ(s.Left(100) + s.Left(-3) + s.Mid(4, 100) + s.Mid(10) + s.Right(2), CString("abcdefefef"));
    EXPECT_EQ(s.Find("cd") * 10 + s.Find('z'), 19);
    EXPECT_THROW(s.GetAt(6), std::invalid_argument);
    EXPECT_THROW(s.GetAt(-1), std::invalid_argument);
}

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
        EXPECT_EQ(LoadStringA(nullptr, 20, buf, c.bufferMax), c.expected) << c.bufferMax;
        EXPECT_EQ(std::strlen(buf), static_cast<std::size_t>(c.expected));
        EXPECT_EQ(std::memcmp(buf, full, static_cast<std::size_t>(c.expected)), 0);
        EXPECT_EQ(buf[c.bufferMax], 'Z') << "wrote past the buffer";
    }
    // Mixed ASCII and multi-byte: "Windows 套接字..." cut inside the first CJK character.
    char buf[10];
    EXPECT_EQ(LoadStringA(nullptr, 101, buf, 10), 8);
    EXPECT_STREQ(buf, "Windows ");
}

TEST(StringTable, UnknownIdsForeignHandlesAndBadBuffers) {
    char buf[16] = "junk";
    EXPECT_EQ(LoadStringA(nullptr, 0, buf, sizeof buf), 0);
    EXPECT_STREQ(buf, "");
    EXPECT_EQ(LoadStringA(nullptr, 27, buf, sizeof buf), 0);
    int local = 0;
    EXPECT_EQ(LoadStringA(&local, 22, buf, sizeof buf), 0);
    EXPECT_EQ(LoadStringA(KxLibraryHandle(), 22, buf, sizeof buf), 3);
    EXPECT_STREQ(buf, "DPI");
    EXPECT_EQ(LoadStringA(nullptr, 22, nullptr, 10), 0);
    EXPECT_EQ(LoadStringA(nullptr, 22, buf, 0), 0);
    EXPECT_EQ(LoadStringA(nullptr, 22, buf, -5), 0);
}

TEST(Module, FileNameOfOwnHandleAndRefusals) {
    char path[4096];
    const DWORD n = GetModuleFileNameA(KxLibraryHandle(), path, sizeof path);
    ASSERT_GT(n, 0u);
    EXPECT_EQ(path[0], '/');
    EXPECT_EQ(std::strlen(path), n);
    char tiny[4];
    EXPECT_EQ(GetModuleFileNameA(KxLibraryHandle(), tiny, sizeof tiny), 4u);
    EXPECT_EQ(std::strlen(tiny), 3u);
    int local = 0;
    EXPECT_FALSE(KxIsModuleHandle(&local));
    EXPECT_EQ(GetModuleFileNameA(&local, path, sizeof path), 0u);
    EXPECT_EQ(GetModuleFileNameA(nullptr, nullptr, 10), 0u);
}

TEST(CPtrList, LinksStayConsistentThroughEdits) {
    CPtrList list;
    int v[4];
    list.AddTail(&v[1]);
    list.AddHead(&v[0]);
    list.InsertBefore(list.AddTail(&v[3]), &v[2]);
    POSITION pos = list.GetHeadPosition();
    for (int i = 0; i < 4; ++i) EXPECT_EQ(list.GetNext(pos), &v[i]);
    EXPECT_EQ(pos, nullptr);
    list.RemoveAt(list.FindIndex(1));
    EXPECT_EQ(list.RemoveTail(), &v[3]);
    EXPECT_EQ(list.GetTail(), &v[2]);
    EXPECT_EQ(list.GetCount(), 2);
    EXPECT_THROW(list.GetAt(nullptr), std::invalid_argument);
}
