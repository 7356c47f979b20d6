#include <kxbase/platform/object.h>

const CRuntimeClass CObject::classCObject = {"CObject", static_cast<int>(sizeof(CObject)), nullptr};

bool CRuntimeClass::IsDerivedFrom(const CRuntimeClass* base) const {
    for (const CRuntimeClass* c = this; c != nullptr; c = c->m_pBaseClass)
        if (c == base) return true;
    return false;
}

const CRuntimeClass* CObject::GetRuntimeClass() const {
    return &classCObject;
}

bool CObject::IsKindOf(const CRuntimeClass* cls) const {
    return GetRuntimeClass()->IsDerivedFrom(cls);
}
