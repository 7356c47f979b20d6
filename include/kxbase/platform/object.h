/// \file
/// CObject and CRuntimeClass: the run-time class record that host code ported from the
/// platform's class library expects (class name, object size, base class).
///
/// A class takes part by declaring KX_DECLARE_DYNAMIC(Class) in its body and
/// KX_IMPLEMENT_DYNAMIC(Class, Base) in one source file; RUNTIME_CLASS(Class) then names its
/// record, and obj->IsKindOf(RUNTIME_CLASS(Base)) walks the chain of base records.
///
/// Thread-safety: the records are constant after static initialisation; reading them is safe
/// from any thread.
#pragma once

#include <kxbase/export.h>
#include <kxbase/platform/types.h>

/// The run-time record of one class: one constant object per class, made by KX_IMPLEMENT_DYNAMIC.
struct KXBASE_API CRuntimeClass {
    const char* m_lpszClassName;        ///< the class name, as written in the source
    int m_nObjectSize;                  ///< sizeof the class, in bytes
    const CRuntimeClass* m_pBaseClass;  ///< the base class's record; null for CObject

    /// True when this record is `base` or derives from it (directly or further down).
    /// A null base gives false.
    bool IsDerivedFrom(const CRuntimeClass* base) const;
};

/// Root of the classes that carry a run-time class record; copying is for derived classes only.
class KXBASE_API CObject {
public:
    /// Virtual, so that an object is destroyed through a CObject pointer correctly.
    virtual ~CObject() = default;
    /// The record of the object's most derived class that declares one.
    virtual const CRuntimeClass* GetRuntimeClass() const;
    /// True when the object's class is `cls` or derives from it.
    bool IsKindOf(const CRuntimeClass* cls) const;

    /// The record of CObject itself, the end of every chain of base records.
    static const CRuntimeClass classCObject;

protected:
    ///@{
    /// Only derived classes create and copy objects.
    CObject() = default;
    CObject(const CObject&) = default;
    CObject& operator=(const CObject&) = default;
    ///@}
};

/// The address of class cls's run-time record (const CRuntimeClass*).
#define RUNTIME_CLASS(cls) (&cls::class##cls)

/// Declares, in the body of class cls, its run-time record and the GetRuntimeClass override.
/// Leaves the class body in the public section.
#define KX_DECLARE_DYNAMIC(cls)            \
public:                                    \
    static const CRuntimeClass class##cls; \
    const CRuntimeClass* GetRuntimeClass() const override;

/// Defines, in one source file, the record of cls (name, size, base record) and its
/// GetRuntimeClass.
#define KX_IMPLEMENT_DYNAMIC(cls, base)                                         \
    const CRuntimeClass cls::class##cls = {#cls, static_cast<int>(sizeof(cls)), \
                                           RUNTIME_CLASS(base)};                \
    const CRuntimeClass* cls::GetRuntimeClass() const {                         \
        return RUNTIME_CLASS(cls);                                              \
    }
