// Byte searches and the merge sort against naive oracles (the fill and the row copy are
// checked byte for byte by the golden vectors, with guard bytes).
// The public searches pick among several strategies by size, so each strategy is checked
// directly too: a shift-table bug shows only on buffers long enough to use it.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include <kxbase/mathopt/amathopt.h>

#include "mathopt/byte_search_p.h"

namespace {

constexpr ULONG kNone = AMathOpt::kNotFound;

// Fault: a strategy (or the public dispatch over them) misses or misplaces a match.
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
        if (rng() % 2)  // plant the pattern somewhere
            std::copy(pat.begin(), pat.end(), buf.begin() + rng() % (len - patLen + 1));
        const auto f = std::search(buf.begin(), buf.end(), pat.begin(), pat.end());
        const auto l = std::find_end(buf.begin(), buf.end(), pat.begin(), pat.end());
        const ULONG first = f == buf.end() ? kNone : static_cast<ULONG>(f - buf.begin());
        const ULONG last = l == buf.end() ? kNone : static_cast<ULONG>(l - buf.begin());
        const auto L = static_cast<ULONG>(len), P = static_cast<ULONG>(patLen);
        for (Fn fn : forward) ASSERT_EQ(fn(buf.data(), L, pat.data(), P), first) << iter;
        for (Fn fn : backward) ASSERT_EQ(fn(buf.data(), L, pat.data(), P), last) << iter;
        ASSERT_EQ(AMathOpt::FindData(buf.data(), L, pat.data(), P), first) << iter;
        // The public reverse form reports the distance from the end to the start of the match.
        ASSERT_EQ(AMathOpt::ReverseFindData(buf.data(), L, pat.data(), P),
                  last == kNone ? kNone : L - last);
    }
    // Null buffers with a non-zero length are refused without reading.
    const BYTE b[] = {1, 2, 3};
    EXPECT_EQ(AMathOpt::FindData(nullptr, 3, b, 1), kNone);
    EXPECT_EQ(AMathOpt::FindData(b, 3, nullptr, 1), kNone);
    EXPECT_EQ(AMathOpt::ReverseFindData(nullptr, 5, BYTE{1}), kNone);
    EXPECT_EQ(AMathOpt::FindData_Int(nullptr, 4, ';'), kNone);
}

// Fault: a record-size-specific copy path breaks records or stability. A consistent order
// makes the merge a stable sort, so std::stable_sort of the records is the oracle.
TEST(MergerSort, StableForEveryRecordSize) {
    std::mt19937 rng(7);
    for (size_t size : {1u, 2u, 4u, 5u, 8u, 12u, 16u, 24u, 32u, 40u})
        for (size_t count : {0u, 1u, 2u, 3u, 7u, 64u, 1001u}) {
            std::vector<std::vector<BYTE>> records(count, std::vector<BYTE>(size));
            std::vector<BYTE> data, want, temp(count * size + 1);
            for (auto& r : records)
                for (size_t i = 0; i < size; ++i) r[i] = static_cast<BYTE>(i ? rng() : rng() % 8);
            for (const auto& r : records) data.insert(data.end(), r.begin(), r.end());
            std::stable_sort(records.begin(), records.end(),
                             [](const auto& a, const auto& b) { return a[0] < b[0]; });
            for (const auto& r : records) want.insert(want.end(), r.begin(), r.end());
            AMathOpt::merger_sort(data.data(), static_cast<LONG>(count), static_cast<LONG>(size),
                                  temp.data(), [](const void* a, const void* b) -> LONG {
                                      const BYTE x = *static_cast<const BYTE*>(a);
                                      const BYTE y = *static_cast<const BYTE*>(b);
                                      return (x > y) - (x < y);
                                  });
            ASSERT_EQ(data, want) << "size " << size << " count " << count;
        }
}

}  // namespace
