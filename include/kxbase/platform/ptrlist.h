/// \file
/// CPtrList: a doubly linked list of untyped pointers; POSITION is an opaque node handle.
///
/// Failures: a null POSITION handed to GetNext, GetPrev, GetAt, SetAt or RemoveAt, and GetHead,
/// GetTail, RemoveHead or RemoveTail on an empty list, throw std::invalid_argument (the list is
/// unchanged). Adding an element throws std::bad_alloc when memory is exhausted (the list is
/// unchanged). A POSITION of another list, or of a node already removed, is not detected: the
/// caller must not use one. InsertBefore and InsertAfter take a null POSITION as the head and
/// the tail. Nothing else throws.
///
/// Thread-safety: none inside one list; distinct lists are independent.
#pragma once

#include <kxbase/export.h>
#include <kxbase/platform/types.h>

/// Opaque node type behind POSITION; never defined for hosts.
struct __POSITION;
/// Handle of one node of a CPtrList; null is "no node" (before the head, after the tail).
using POSITION = __POSITION*;

/// A doubly linked list of untyped pointers; the list never owns what they point to.
class KXBASE_API CPtrList {
public:
    /// An empty list with the default block size 10.
    CPtrList() = default;
    /// The platform class allocates nodes nBlockSize at a time. Nodes here come one at a time
    /// from the general allocator, which is as fast for lists of pointers; the size is kept
    /// (values below 1 count as 10, the platform's default) and reported by GetBlockSize.
    explicit CPtrList(INT_PTR nBlockSize) : m_blockSize(nBlockSize > 0 ? nBlockSize : 10) {}
    CPtrList(const CPtrList&) = delete;
    CPtrList& operator=(const CPtrList&) = delete;
    /// Frees the nodes (not the elements they point to).
    virtual ~CPtrList();

    /// The block size given to the constructor (see there).
    INT_PTR GetBlockSize() const { return m_blockSize; }
    ///@{
    /// Number of elements.
    INT_PTR GetCount() const { return m_count; }
    INT_PTR GetSize() const { return m_count; }
    ///@}
    /// True when the list holds no element.
    bool IsEmpty() const { return m_count == 0; }

    ///@{
    /// Node of the first / last element; null for an empty list.
    POSITION GetHeadPosition() const;
    POSITION GetTailPosition() const;
    ///@}
    ///@{
    /// Returns the element at pos and advances pos to the next node (null after the tail).
    void*& GetNext(POSITION& pos);
    void* GetNext(POSITION& pos) const;
    ///@}
    /// Returns the element at pos and moves pos to the previous node (null before the head).
    void*& GetPrev(POSITION& pos);
    ///@{
    /// The element at node pos (a reference in the non-const form, so it can be replaced).
    void*& GetAt(POSITION pos);
    void* GetAt(POSITION pos) const;
    ///@}
    /// Replaces the element at node pos with p.
    void SetAt(POSITION pos, void* p);
    ///@{
    /// The first / last element; throws std::invalid_argument on an empty list.
    void* GetHead() const;
    void* GetTail() const;
    ///@}

    ///@{
    /// Adds p before the first / after the last element and returns its new node.
    POSITION AddHead(void* p);
    POSITION AddTail(void* p);
    ///@}
    ///@{
    /// Inserts p before / after node pos (a null pos: at the head / the tail) and returns the
    /// new node.
    POSITION InsertBefore(POSITION pos, void* p);
    POSITION InsertAfter(POSITION pos, void* p);
    ///@}
    ///@{
    /// Removes the first / last element and returns it; throws std::invalid_argument on an
    /// empty list.
    void* RemoveHead();
    void* RemoveTail();
    ///@}
    /// Removes the node pos (which becomes invalid) and its element.
    void RemoveAt(POSITION pos);
    /// Removes every node; the elements themselves are not touched.
    void RemoveAll();

    /// Node of the first element equal to p at or after startAfter's successor, or null.
    POSITION Find(void* p, POSITION startAfter = nullptr) const;
    /// Node at a zero-based index, or null when the index is outside the list.
    POSITION FindIndex(INT_PTR index) const;

private:
    struct Node;
    Node* m_head = nullptr;
    Node* m_tail = nullptr;
    INT_PTR m_count = 0;
    INT_PTR m_blockSize = 10;
};

/// CPtrList with index-based insertion and the index of a node.
class KXBASE_API APtrList : public CPtrList {
public:
    /// An empty list; nBlockSize as for CPtrList.
    explicit APtrList(int nBlockSize = 10) : CPtrList(nBlockSize) {}

    /// Zero-based index of node pos counted from the head; 0x7FFFFFFF when pos is null, the
    /// list is empty or pos is not a node of this list. Linear in the index.
    int FindPosition(POSITION pos) const;

    /// Inserts p so that it gets index nIndex: nIndex < 1 adds at the head, an index below
    /// the count inserts before the element now there, any larger index adds at the tail.
    /// Returns the new node. Throws std::bad_alloc like the other insertions.
    POSITION InsertAt(int nIndex, void* p);
};
