// MathOpt_IsBadWritePtr and the module-wide lock that serialises it.
#include <kxbase/mathopt/amathopt.h>

#include <new>

#include <kxbase/platform/memory_probe.h>

std::mutex* AMathOpt::m_section_IsBadWritePtr = nullptr;

void AMathOpt::Init() {
    if (!m_section_IsBadWritePtr) m_section_IsBadWritePtr = new (std::nothrow) std::mutex;
}

void AMathOpt::Exit() {
    delete m_section_IsBadWritePtr;
    m_section_IsBadWritePtr = nullptr;
}

int AMathOpt::MathOpt_IsBadWritePtr(void* p, UINT64 size) {
    if (std::mutex* lock = m_section_IsBadWritePtr) {
        const std::lock_guard<std::mutex> guard(*lock);
        return KxIsWritableRange(p, size) ? 0 : 1;
    }
    return KxIsWritableRange(p, size) ? 0 : 1;
}
