// Value types every subsystem leans on: index failures must throw std::invalid_argument and
// nothing else; strings format like the Windows build; module file names are cut safely.
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

TEST(Module, FileNameOfOwnHandleAndRefusals) {
    char path[4096];
    const DWORD n = KxModuleFileName(KxLibraryHandle(), path, sizeof path);
    ASSERT_GT(n, 0u);
#if defined(_WIN32)
    EXPECT_EQ(path[1], ':') << path;  // a drive-letter path
#else
    EXPECT_EQ(path[0], '/') << path;
#endif
    EXPECT_EQ(std::strlen(path), n);
    char tiny[4];
    EXPECT_EQ(KxModuleFileName(KxLibraryHandle(), tiny, sizeof tiny), 4u);
    EXPECT_EQ(std::strlen(tiny), 3u);
    int local = 0;
    EXPECT_FALSE(KxIsModuleHandle(reinterpret_cast<HINSTANCE>(&local)));
    EXPECT_EQ(KxModuleFileName(reinterpret_cast<HINSTANCE>(&local), path, sizeof path), 0u);
    EXPECT_EQ(KxModuleFileName(nullptr, nullptr, 10), 0u);
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
