// merger_sort: the stable top-down merge sort with a caller's comparison.
//
// The split points and the merge decisions are part of the contract (a comparison that is
// not a consistent order still gives the host's result), so the recursion is exactly:
// [lo, hi) splits at mid = (lo + hi) / 2, each half is sorted, and the merge takes the left
// record while compare(left, right) < 1. To avoid copying every merged run back, the
// recursion alternates the roles of base and temp (both start with the same records): each
// level merges from one into the other. This makes the same comparisons on the same records
// in the same order as merging into temp and copying back, with half the memory traffic.
#include <kxbase/mathopt/amathopt.h>

#include <cstring>

namespace {

using Compare = LONG (*)(const void*, const void*);

/// Copies one record; Size 0 means the run-time size.
template <size_t Size>
struct RecordCopy {
    static void One(BYTE* to, const BYTE* from, size_t) { std::memcpy(to, from, Size); }
};
template <>
struct RecordCopy<0> {
    static void One(BYTE* to, const BYTE* from, size_t size) { std::memcpy(to, from, size); }
};

template <size_t Size>
class MergeSorter {
public:
    MergeSorter(Compare compare, size_t size) : m_compare(compare), m_size(Size ? Size : size) {}

    /// Sorts the records [lo, hi) into `to`, reading `from`; on entry both hold the same
    /// records in that range.
    void SortInto(BYTE* to, BYTE* from, size_t lo, size_t hi) const {
        const size_t n = hi - lo;
        if (n < 2) return;
        if (n == 2) {  // the merge of two single records, without the recursion
            const BYTE* a = from + lo * m_size;
            const BYTE* b = a + m_size;
            BYTE* out = to + lo * m_size;
            if (m_compare(a, b) < 1) {
                Copy(out, a);
                Copy(out + m_size, b);
            } else {
                Copy(out, b);
                Copy(out + m_size, a);
            }
            return;
        }
        const size_t mid = (lo + hi) / 2;
        SortInto(from, to, lo, mid);
        SortInto(from, to, mid, hi);
        Merge(to, from, lo, mid, hi);
    }

private:
    void Copy(BYTE* to, const BYTE* from) const { RecordCopy<Size>::One(to, from, m_size); }

    void Merge(BYTE* to, const BYTE* from, size_t lo, size_t mid, size_t hi) const {
        const size_t size = m_size;
        const BYTE* left = from + lo * size;
        const BYTE* const leftEnd = from + mid * size;
        const BYTE* right = leftEnd;
        const BYTE* const rightEnd = from + hi * size;
        BYTE* out = to + lo * size;
        while (left != leftEnd && right != rightEnd) {
            if (m_compare(left, right) < 1) {
                Copy(out, left);
                left += size;
            } else {
                Copy(out, right);
                right += size;
            }
            out += size;
        }
        if (left != leftEnd) std::memcpy(out, left, static_cast<size_t>(leftEnd - left));
        if (right != rightEnd) std::memcpy(out, right, static_cast<size_t>(rightEnd - right));
    }

    Compare m_compare;
    size_t m_size;
};

template <size_t Size>
void Sort(BYTE* base, BYTE* temp, size_t count, size_t size, Compare compare) {
    std::memcpy(temp, base, count * size);
    MergeSorter<Size>(compare, size).SortInto(base, temp, 0, count);
}

}  // namespace

void AMathOpt::merger_sort(void* base, LONG count, LONG size, void* temp,
                           LONG (*compare)(const void*, const void*)) {
    if (!base || !temp || !compare || count < 2 || size < 1) return;
    BYTE* const b = static_cast<BYTE*>(base);
    BYTE* const t = static_cast<BYTE*>(temp);
    const auto n = static_cast<size_t>(count);
    const auto s = static_cast<size_t>(size);
    switch (s) {
        case 4:
            return Sort<4>(b, t, n, s, compare);
        case 8:
            return Sort<8>(b, t, n, s, compare);
        case 16:
            return Sort<16>(b, t, n, s, compare);
        case 24:
            return Sort<24>(b, t, n, s, compare);
        case 32:
            return Sort<32>(b, t, n, s, compare);
        default:
            return Sort<0>(b, t, n, s, compare);
    }
}
