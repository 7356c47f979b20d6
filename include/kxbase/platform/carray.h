/// \file
/// CArray<T>: a growable value array with the member names a Windows host expects.
///
/// Indexed reads and writes outside [0, GetSize()) throw std::invalid_argument, the
/// platform's invalid-argument failure; that is the only exception these arrays raise apart
/// from std::bad_alloc when memory runs out. Sizes are INT_PTR as on the platform.
///
/// Thread-safety: none inside one array; distinct arrays are independent.
#pragma once

#include <stdexcept>
#include <utility>
#include <vector>

#include <kxbase/platform/cstring.h>
#include <kxbase/platform/types.h>

namespace kxbase::detail {
[[noreturn]] inline void throw_bad_index() { throw std::invalid_argument("array index out of range"); }
}  // namespace kxbase::detail

/// A growable array of T values, stored contiguously (a std::vector inside).
/// T must be copyable and value-initialisable. Element references and GetData() pointers stay
/// valid until the array grows or shrinks.
template <class T>
class CArray {
public:
    using value_type = T;  ///< the element type, for generic code

    /// An empty array.
    CArray() = default;

    ///@{
    /// Number of elements.
    INT_PTR GetSize() const { return static_cast<INT_PTR>(m_data.size()); }
    INT_PTR GetCount() const { return GetSize(); }  ///< the same as GetSize
    ///@}
    /// Index of the last element: GetSize() - 1, so -1 for an empty array.
    INT_PTR GetUpperBound() const { return GetSize() - 1; }
    /// True when the array holds no element.
    bool IsEmpty() const { return m_data.empty(); }

    /// Resizes to n elements; new elements are value-initialised (zero for plain records).
    /// growBy is accepted for compatibility and ignored. A negative size throws.
    void SetSize(INT_PTR n, INT_PTR growBy = -1) {
        (void)growBy;
        if (n < 0) kxbase::detail::throw_bad_index();
        m_data.resize(static_cast<std::size_t>(n));
    }
    /// Removes every element; the memory is kept for reuse.
    void RemoveAll() { m_data.clear(); }
    /// Gives back memory held beyond the current size.
    void FreeExtra() { m_data.shrink_to_fit(); }

    ///@{
    /// Element i; throws std::invalid_argument when i is outside [0, GetSize()).
    const T& GetAt(INT_PTR i) const { return m_data[check(i)]; }
    T& ElementAt(INT_PTR i) { return m_data[check(i)]; }
    ///@}
    /// Overwrites element i; throws std::invalid_argument when i is outside [0, GetSize()).
    void SetAt(INT_PTR i, const T& v) { m_data[check(i)] = v; }
    ///@{
    /// Element i, checked like GetAt.
    const T& operator[](INT_PTR i) const { return GetAt(i); }
    T& operator[](INT_PTR i) { return ElementAt(i); }

    /// Sets element i, growing the array (with value-initialised elements) when i is past
    /// the end. A negative index throws.
    ///@}
    void SetAtGrow(INT_PTR i, const T& v) {
        if (i < 0) kxbase::detail::throw_bad_index();
        if (i >= GetSize()) m_data.resize(static_cast<std::size_t>(i) + 1);
        m_data[static_cast<std::size_t>(i)] = v;
    }
    /// Appends and returns the new element's index.
    INT_PTR Add(const T& v) {
        m_data.push_back(v);
        return GetSize() - 1;
    }
    /// Appends every element of src and returns the index of the first one appended.
    INT_PTR Append(const CArray& src) {
        const INT_PTR first = GetSize();
        m_data.insert(m_data.end(), src.m_data.begin(), src.m_data.end());
        return first;
    }
    /// Replaces the contents with a copy of src's elements.
    void Copy(const CArray& src) { m_data = src.m_data; }

    /// Inserts count copies of v before index i; an index at or past the end grows the array.
    void InsertAt(INT_PTR i, const T& v, INT_PTR count = 1) {
        if (i < 0 || count < 0) kxbase::detail::throw_bad_index();
        if (i >= GetSize()) m_data.resize(static_cast<std::size_t>(i));
        m_data.insert(m_data.begin() + i, static_cast<std::size_t>(count), v);
    }
    /// Removes count elements from index i; a range outside the array throws.
    void RemoveAt(INT_PTR i, INT_PTR count = 1) {
        if (i < 0 || count < 0 || i + count > GetSize()) kxbase::detail::throw_bad_index();
        m_data.erase(m_data.begin() + i, m_data.begin() + i + count);
    }

    ///@{
    /// The first element, or null for an empty array; the elements follow contiguously.
    T* GetData() { return m_data.empty() ? nullptr : m_data.data(); }
    const T* GetData() const { return m_data.empty() ? nullptr : m_data.data(); }

    ///@}
    ///@{
    /// Iterators over the elements, for range-based for loops and the standard algorithms.
    auto begin() { return m_data.begin(); }
    auto end() { return m_data.end(); }
    auto begin() const { return m_data.begin(); }
    auto end() const { return m_data.end(); }

///@}
private:
    std::size_t check(INT_PTR i) const {
        if (i < 0 || i >= GetSize()) kxbase::detail::throw_bad_index();
        return static_cast<std::size_t>(i);
    }

    std::vector<T> m_data;
};

using CByteArray = CArray<BYTE>;  ///< array of bytes
using CWordArray = CArray<WORD>;  ///< array of 16-bit words
using CDWordArray = CArray<DWORD>;  ///< array of 32-bit words
using CStringArray = CArray<CString>;  ///< array of strings
