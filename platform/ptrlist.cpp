#include <kxbase/platform/ptrlist.h>

#include <stdexcept>

struct CPtrList::Node {
    Node* prev;
    Node* next;
    void* data;
};


// POSITION values are node addresses.
#define KX_NODE(pos) reinterpret_cast<Node*>(pos)
#define KX_POS(node) reinterpret_cast<POSITION>(node)

CPtrList::~CPtrList() { RemoveAll(); }

POSITION CPtrList::GetHeadPosition() const { return KX_POS(m_head); }
POSITION CPtrList::GetTailPosition() const { return KX_POS(m_tail); }

static void require(const void* p) {
    if (p == nullptr) throw std::invalid_argument("null list position");
}

void*& CPtrList::GetNext(POSITION& pos) {
    require(pos);
    Node* n = KX_NODE(pos);
    pos = KX_POS(n->next);
    return n->data;
}

void* CPtrList::GetNext(POSITION& pos) const {
    require(pos);
    Node* n = KX_NODE(pos);
    pos = KX_POS(n->next);
    return n->data;
}

void*& CPtrList::GetPrev(POSITION& pos) {
    require(pos);
    Node* n = KX_NODE(pos);
    pos = KX_POS(n->prev);
    return n->data;
}

void*& CPtrList::GetAt(POSITION pos) {
    require(pos);
    return KX_NODE(pos)->data;
}

void* CPtrList::GetAt(POSITION pos) const {
    require(pos);
    return KX_NODE(pos)->data;
}

void CPtrList::SetAt(POSITION pos, void* p) { GetAt(pos) = p; }

void* CPtrList::GetHead() const {
    require(m_head);
    return m_head->data;
}

void* CPtrList::GetTail() const {
    require(m_tail);
    return m_tail->data;
}

POSITION CPtrList::AddHead(void* p) {
    Node* n = new Node{nullptr, m_head, p};
    (m_head ? m_head->prev : m_tail) = n;
    m_head = n;
    ++m_count;
    return KX_POS(n);
}

POSITION CPtrList::AddTail(void* p) {
    Node* n = new Node{m_tail, nullptr, p};
    (m_tail ? m_tail->next : m_head) = n;
    m_tail = n;
    ++m_count;
    return KX_POS(n);
}

POSITION CPtrList::InsertBefore(POSITION pos, void* p) {
    if (pos == nullptr) return AddHead(p);
    Node* at = KX_NODE(pos);
    Node* n = new Node{at->prev, at, p};
    (at->prev ? at->prev->next : m_head) = n;
    at->prev = n;
    ++m_count;
    return KX_POS(n);
}

POSITION CPtrList::InsertAfter(POSITION pos, void* p) {
    if (pos == nullptr) return AddTail(p);
    Node* at = KX_NODE(pos);
    Node* n = new Node{at, at->next, p};
    (at->next ? at->next->prev : m_tail) = n;
    at->next = n;
    ++m_count;
    return KX_POS(n);
}

void* CPtrList::RemoveHead() {
    require(m_head);
    void* p = m_head->data;
    RemoveAt(KX_POS(m_head));
    return p;
}

void* CPtrList::RemoveTail() {
    require(m_tail);
    void* p = m_tail->data;
    RemoveAt(KX_POS(m_tail));
    return p;
}

void CPtrList::RemoveAt(POSITION pos) {
    require(pos);
    Node* n = KX_NODE(pos);
    (n->prev ? n->prev->next : m_head) = n->next;
    (n->next ? n->next->prev : m_tail) = n->prev;
    delete n;
    --m_count;
}

void CPtrList::RemoveAll() {
    for (Node* n = m_head; n != nullptr;) {
        Node* next = n->next;
        delete n;
        n = next;
    }
    m_head = m_tail = nullptr;
    m_count = 0;
}

POSITION CPtrList::Find(void* p, POSITION startAfter) const {
    for (Node* n = startAfter ? KX_NODE(startAfter)->next : m_head; n; n = n->next)
        if (n->data == p) return KX_POS(n);
    return nullptr;
}

POSITION CPtrList::FindIndex(INT_PTR index) const {
    if (index < 0 || index >= m_count) return nullptr;
    Node* n = m_head;
    while (index-- > 0) n = n->next;
    return KX_POS(n);
}

int APtrList::FindPosition(POSITION pos) const {
    if (pos == nullptr) return 0x7FFFFFFF;
    int index = 0;
    for (POSITION at = GetHeadPosition(); at != nullptr; ++index) {
        if (at == pos) return index;
        GetNext(at);
    }
    return 0x7FFFFFFF;
}

POSITION APtrList::InsertAt(int nIndex, void* p) {
    if (nIndex < 1) return AddHead(p);
    if (nIndex < GetCount()) return InsertBefore(FindIndex(nIndex), p);
    return AddTail(p);
}
