// Byte searches, the patterned fill, the row copy and the merge sort against naive oracles.
// The public searches pick among several strategies by size, so each strategy is checked
// directly too: a shift-table bug shows only on buffers long enough to use it.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <vector>

#include <kxbase/mathopt/amathopt.h>

#include "mathopt/byte_search_p.h"

namespace {

constexpr ULONG kNone = AMathOpt::kNotFound;

ULONG NaiveFirst(const std::vector<BYTE>& b, const std::vector<BYTE>& p) {
    if (p.empty() || p.size() > b.size()) return kNone;
    auto it = std::search(b.begin(), b.end(), p.begin(), p.end());
    return it == b.end() ? kNone : static_cast<ULONG>(it - b.begin());
}

ULONG NaiveLast(const std::vector<BYTE>& b, const std::vector<BYTE>& p) {
    if (p.empty() || p.size() > b.size()) return kNone;
    auto it = std::find_end(b.begin(), b.end(), p.begin(), p.end());
    return it == b.end() ? kNone : static_cast<ULONG>(it - b.begin());
}

TEST(ByteSearch, EveryStrategyMatchesANaiveSearchOnRandomData) {
    std::mt19937 rng(12345);
    using Fn = ULONG (*)(const BYTE*, ULONG, const BYTE*, ULONG);
    const Fn forward[] = {kxbase::detail::ForwardScan, kxbase::detail::ForwardHorspool};
    const Fn backward[] = {
        kxbase::detail::BackwardScan,
        kxbase::detail::BackwardHorspool,
#if defined(__GLIBC__)
        kxbase::detail::BackwardChunked,
#endif
    };
    for (int iter = 0; iter < 3000; ++iter) {
        const int alphabet = 2 + static_cast<int>(rng() % 3);  // small: many partial matches
        const size_t len = 1 + rng() % (iter % 10 == 0 ? 3000 : 64);
        const size_t patLen = 1 + rng() % std::min<size_t>(len, 9);
        std::vector<BYTE> buf(len), pat(patLen);
        for (auto& c : buf) c = static_cast<BYTE>(rng() % alphabet);
        for (auto& c : pat) c = static_cast<BYTE>(rng() % alphabet);
        if (rng() % 2) {  // plant the pattern somewhere
            const size_t at = rng() % (len - patLen + 1);
            std::copy(pat.begin(), pat.end(), buf.begin() + static_cast<std::ptrdiff_t>(at));
        }
        const ULONG first = NaiveFirst(buf, pat), last = NaiveLast(buf, pat);
        const auto L = static_cast<ULONG>(len), P = static_cast<ULONG>(patLen);
        for (Fn f : forward) ASSERT_EQ(f(buf.data(), L, pat.data(), P), first) << iter;
        for (Fn f : backward) ASSERT_EQ(f(buf.data(), L, pat.data(), P), last) << iter;
        ASSERT_EQ(AMathOpt::FindData(buf.data(), L, pat.data(), P), first) << iter;
        // The pattern form reports the distance from the end to the start of the match.
        ASSERT_EQ(AMathOpt::ReverseFindData(buf.data(), L, pat.data(), P),
                  last == kNone ? kNone : L - last)
            << iter;
        // The byte form counts from the last byte instead.
        const ULONG lastByte = NaiveLast(buf, {pat[0]});
        ASSERT_EQ(AMathOpt::ReverseFindData(buf.data(), L, pat[0]),
                  lastByte == kNone ? kNone : L - 1 - lastByte);
        ASSERT_EQ(AMathOpt::FindData(buf.data(), L, pat[0]), NaiveFirst(buf, {pat[0]}));
    }
}

TEST(ByteSearch, RefusesNullEmptyAndOversizedPatternsWithoutReading) {
    const BYTE b[] = {1, 2, 3};
    EXPECT_EQ(AMathOpt::FindData(nullptr, 3, b, 1), kNone);
    EXPECT_EQ(AMathOpt::FindData(b, 3, nullptr, 1), kNone);
    EXPECT_EQ(AMathOpt::ReverseFindData(b, 3, b, 0), kNone);
    EXPECT_EQ(AMathOpt::ReverseFindData(b, 2, b, 3), kNone);
    EXPECT_EQ(AMathOpt::FindData(b, 0, BYTE{1}), kNone);
    EXPECT_EQ(AMathOpt::ReverseFindData(nullptr, 5, BYTE{1}), kNone);
    EXPECT_EQ(AMathOpt::FindData_Int(nullptr, 4, ';'), kNone);
}

TEST(MyMemset, WritesExactlyCountCopiesForEveryPatternSizeAndCount) {
    std::vector<BYTE> pattern(12);
    for (size_t i = 0; i < pattern.size(); ++i) pattern[i] = static_cast<BYTE>(0x41 + i);
    for (UINT64 size = 1; size <= 12; ++size) {
        for (INT64 count : {INT64{-5}, INT64{0}, INT64{1}, INT64{59}, INT64{60}, INT64{120},
                            INT64{121}, INT64{179}, INT64{180}, INT64{181}, INT64{1000}}) {
            const size_t n = count > 0 ? static_cast<size_t>(count) * size : 0;
            std::vector<BYTE> got(n + 32, 0xEE), want(n + 32, 0xEE);
            for (size_t i = 0; i < n; ++i) want[i] = pattern[i % size];
            AMathOpt::myMemset(got.data(), pattern.data(), size, count);
            ASSERT_EQ(got, want) << "size " << size << " count " << count;
        }
    }
    AMathOpt::myMemset(nullptr, pattern.data(), 3, 10);  // must not crash
}

TEST(MyMemcpy, RefusesRowsWiderThanAPitchEvenWhenTheProductOverflows) {
    BYTE dst[16] = {}, src[16] = {1};
    const INT64 huge = INT64{1} << 62;
    EXPECT_EQ(AMathOpt::myMemcpy(dst, 16, 32, src, 16, huge, 1), 0);  // width * 4 overflows
    EXPECT_EQ(AMathOpt::myMemcpy(dst, -16, 8, src, 16, 1, 1), 0);     // negative pitch
    EXPECT_EQ(AMathOpt::myMemcpy(dst, 16, 255, src, 16, 1, 1), 0);    // 32 bytes per pixel
    EXPECT_EQ(AMathOpt::myMemcpy(dst, 16, 8, src, 16, 16, 0), 0);
    EXPECT_EQ(dst[0], 0);
    EXPECT_EQ(AMathOpt::myMemcpy(dst, 16, 8, src, 16, 16, 1), 1);
    EXPECT_EQ(dst[0], 1);
}

// ---- merge sort ---------------------------------------------------------------------------

/// The sort exactly as its contract states it: merge into the start of temp, copy back.
void LiteralMergeSort(BYTE* base, long lo, long hi, size_t size, BYTE* temp,
                      LONG (*cmp)(const void*, const void*)) {
    if (hi - lo <= 1) return;
    const long mid = (lo + hi) / 2;
    LiteralMergeSort(base, lo, mid, size, temp, cmp);
    LiteralMergeSort(base, mid, hi, size, temp, cmp);
    long i = lo, j = mid;
    BYTE* out = temp;
    while (i < mid && j < hi) {
        const long take = cmp(base + i * size, base + j * size) < 1 ? i++ : j++;
        std::memcpy(out, base + take * size, size);
        out += size;
    }
    for (; i < mid; ++i, out += size) std::memcpy(out, base + i * size, size);
    for (; j < hi; ++j, out += size) std::memcpy(out, base + j * size, size);
    std::memcpy(base + lo * size, temp, static_cast<size_t>(hi - lo) * size);
}

LONG ByFirstByte(const void* a, const void* b) {
    const BYTE x = *static_cast<const BYTE*>(a), y = *static_cast<const BYTE*>(b);
    return (x > y) - (x < y);
}

/// Not an order: the answer depends on both records' contents in an arbitrary way.
LONG Scrambled(const void* a, const void* b) {
    const BYTE x = static_cast<const BYTE*>(a)[1], y = static_cast<const BYTE*>(b)[1];
    return static_cast<LONG>((x * 31 + y * 17) % 3) - 1;
}

TEST(MergerSort, GivesTheLiteralResultForEveryRecordSizeAndComparison) {
    std::mt19937 rng(7);
    for (size_t size : {2u, 4u, 5u, 8u, 12u, 16u, 24u, 32u, 40u}) {
        for (long count : {0L, 1L, 2L, 3L, 7L, 64L, 1001L}) {
            for (auto cmp : {ByFirstByte, Scrambled}) {
                std::vector<BYTE> data(static_cast<size_t>(count) * size);
                for (size_t i = 0; i < data.size(); ++i)
                    data[i] =
                        i % size == 0 ? static_cast<BYTE>(rng() % 8) : static_cast<BYTE>(rng());
                std::vector<BYTE> want = data, temp(data.size() + 1), temp2(data.size() + 1);
                LiteralMergeSort(want.data(), 0, count, size, temp2.data(), cmp);
                AMathOpt::merger_sort(data.data(), static_cast<LONG>(count),
                                      static_cast<LONG>(size), temp.data(), cmp);
                ASSERT_EQ(data, want) << "size " << size << " count " << count;
            }
        }
    }
}

}  // namespace
