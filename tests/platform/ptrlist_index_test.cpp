// APtrList: insertion by index and the index of a node.
#include <gtest/gtest.h>

#include <vector>

#include <kxbase/platform/ptrlist.h>

namespace {

std::vector<INT_PTR> Items(const APtrList& list) {
    std::vector<INT_PTR> out;
    for (POSITION p = list.GetHeadPosition(); p != nullptr;)
        out.push_back(reinterpret_cast<INT_PTR>(list.GetNext(p)));
    return out;
}

void* P(INT_PTR v) {
    return reinterpret_cast<void*>(v);
}

}  // namespace

TEST(PtrList, InsertAtIndex) {
    struct Case {
        int index;
        std::vector<INT_PTR> expected;  // after inserting 9 into {1, 2, 3}
    };
    const Case cases[] = {
        {0, {9, 1, 2, 3}}, {-5, {9, 1, 2, 3}}, {1, {1, 9, 2, 3}},
        {2, {1, 2, 9, 3}}, {3, {1, 2, 3, 9}},  {100, {1, 2, 3, 9}},
    };
    for (const Case& c : cases) {
        APtrList list(4);
        for (INT_PTR v : {1, 2, 3}) list.AddTail(P(v));
        const POSITION made = list.InsertAt(c.index, P(9));
        EXPECT_EQ(Items(list), c.expected) << c.index;
        EXPECT_EQ(list.GetAt(made), P(9));
        EXPECT_EQ(list.GetCount(), 4);
    }
    APtrList empty;
    empty.InsertAt(5, P(1));
    EXPECT_EQ(Items(empty), std::vector<INT_PTR>{1});
}

TEST(PtrList, FindPosition) {
    APtrList list(16), other;
    EXPECT_EQ(list.GetBlockSize(), 16);
    EXPECT_EQ(list.FindPosition(nullptr), 0x7FFFFFFF);
    const POSITION foreign = other.AddTail(P(1));
    EXPECT_EQ(list.FindPosition(foreign), 0x7FFFFFFF) << "empty list";
    std::vector<POSITION> nodes;
    for (INT_PTR v = 0; v < 5; ++v) nodes.push_back(list.AddTail(P(v)));
    for (int i = 0; i < 5; ++i) EXPECT_EQ(list.FindPosition(nodes[static_cast<std::size_t>(i)]), i);
    EXPECT_EQ(list.FindPosition(foreign), 0x7FFFFFFF) << "node of another list";
    EXPECT_EQ(APtrList(0).GetBlockSize(), 10);
}
