/// \file
/// The current resource module, and CResourceHandle, a guard that switches it for a scope.
///
/// String and dialog resources are loaded from the current resource module. It starts as this
/// library's own module (KxLibraryHandle()). The setting is process-wide: switch it only on the
/// thread that owns the host's user interface, as a host switches resource modules there.
#pragma once

#include <kxbase/export.h>
#include <kxbase/platform/types.h>

/// The current resource module; this library's module until someone changes it.
KXBASE_API HINSTANCE KxGetResourceHandle();
/// Makes `module` the current resource module (null means this library again).
KXBASE_API void KxSetResourceHandle(HINSTANCE module);

/// Switches the current resource module for a scope and switches it back when destroyed.
/// Non-copyable.
class KXBASE_API CResourceHandle {
public:
    /// Saves nothing yet; Lock does the switching.
    CResourceHandle() = default;
    /// Restores the saved module, as Unlock does.
    virtual ~CResourceHandle();
    CResourceHandle(const CResourceHandle&) = delete;
    CResourceHandle& operator=(const CResourceHandle&) = delete;

    /// Saves the current resource module (unless one is saved already, so that two Locks
    /// keep the first saved handle) and makes `hResource` current.
    void Lock(HINSTANCE hResource);
    /// When a module is saved: makes it current again and forgets it. Otherwise nothing.
    void Unlock();

private:
    HINSTANCE m_hSaved = nullptr;
};
