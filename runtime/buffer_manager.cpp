// CBufferManager. Buffers come from calloc: the zero fill is free for fresh pages, which
// matters for the large raster buffers this manager exists for.
#include <kxbase/runtime/buffer_manager.h>

#include <cstdlib>

#include "runtime/buffer_manager_p.h"

namespace kxbase::detail {
namespace {
void* default_alloc(std::size_t size) {
    return std::calloc(size == 0 ? 1 : size, 1);
}
BufferAllocFn g_alloc = &default_alloc;
}  // namespace

void SetBufferAllocator(BufferAllocFn fn) {
    g_alloc = fn ? fn : &default_alloc;
}

void* AllocateZeroed(std::size_t size) {
    try {
        return g_alloc(size);
    } catch (...) {
        return nullptr;
    }
}

}  // namespace kxbase::detail

CBufferManager::~CBufferManager() {
    m_bLocked = 0;
    std::free(m_pBuffer);
}

int CBufferManager::InitBuffer(DWORD* pLength, DWORD length) {
    if (pLength) *pLength = 0;
    if (m_bLocked) return 0;
    if (length == 0) {
        std::free(m_pBuffer);
        m_pBuffer = nullptr;
        m_dwLength = 0;
        return 1;
    }
    if (m_pBuffer != nullptr && m_dwLength == length) {
        if (pLength) *pLength = length;
        return 1;
    }
    std::free(m_pBuffer);
    m_pBuffer = nullptr;
    m_dwLength = 0;
    m_pBuffer = static_cast<BYTE*>(kxbase::detail::AllocateZeroed(length));
    if (m_pBuffer == nullptr) return 0;
    m_dwLength = length;
    if (pLength) *pLength = length;
    return 1;
}

BYTE* CBufferManager::LockBuffer(DWORD length, int bAllocNew) {
    if (m_pBuffer != nullptr && length <= m_dwLength && !m_bLocked) {
        m_bLocked = 1;
        return m_pBuffer;
    }
    if (!bAllocNew) return nullptr;
    return static_cast<BYTE*>(kxbase::detail::AllocateZeroed(length));
}

int CBufferManager::UnlockBuffer(BYTE* p) {
    if (p == nullptr) return 1;
    if (p != m_pBuffer) {
        std::free(p);
        return 1;
    }
    m_bLocked = 0;
    return 1;
}

DWORD CBufferManager::GetBufferLength() const {
    return m_pBuffer != nullptr ? m_dwLength : 0;
}
