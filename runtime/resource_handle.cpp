// The current resource module and its scope guard.
#include <kxbase/runtime/resource_handle.h>

#include <atomic>

#include <kxbase/platform/module.h>

namespace {
// Null stands for "this library" so that the setting needs no start-up.
std::atomic<HINSTANCE> g_resource{nullptr};
}  // namespace

HINSTANCE KxGetResourceHandle() {
    const HINSTANCE h = g_resource.load(std::memory_order_relaxed);
    return h != nullptr ? h : KxLibraryHandle();
}

void KxSetResourceHandle(HINSTANCE module) {
    g_resource.store(module, std::memory_order_relaxed);
}

CResourceHandle::~CResourceHandle() {
    Unlock();
}

void CResourceHandle::Lock(HINSTANCE hResource) {
    if (m_hSaved == nullptr) m_hSaved = KxGetResourceHandle();
    KxSetResourceHandle(hResource);
}

void CResourceHandle::Unlock() {
    if (m_hSaved == nullptr) return;
    KxSetResourceHandle(m_hSaved);
    m_hSaved = nullptr;
}
