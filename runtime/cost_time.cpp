// CCostTime over the system's monotonic clock: the counter counts nanoseconds (frequency 1e9)
// and the tick count is milliseconds of the same clock.
#include <kxbase/runtime/cost_time.h>

#include "platform/sys.h"
#include "runtime/cost_time_p.h"

INT64 CCostTime::m_PerformanceCounter_lFrequency = 0;

namespace kxbase::detail {
namespace {
CounterFn g_counter = &SystemCounter;
TickFn g_tick = &SystemTick;
}  // namespace

bool SystemCounter(INT64* value) {
    return kxbase::sys::MonotonicNanoseconds(value);
}

UINT64 SystemTick() {
    return kxbase::sys::MonotonicMilliseconds();
}

void SetCostTimeClocks(CounterFn counter, TickFn tick) {
    g_counter = counter ? counter : &SystemCounter;
    g_tick = tick ? tick : &SystemTick;
}

static bool ReadCounter(INT64* value) {
    return g_counter(value);
}
static INT64 ReadTick() {
    return static_cast<INT64>(g_tick());
}

}  // namespace kxbase::detail

using kxbase::detail::ReadCounter;
using kxbase::detail::ReadTick;

void CCostTime::Init() {
    *this = CCostTime();
}

void CCostTime::Time_Init(DWORD tag) {
    m_lStart = 0;
    if (m_PerformanceCounter_lFrequency != 0) {
        INT64 now = 0;
        const bool ok = ReadCounter(&now);
        m_dwCurFlag = tag;
        if (!ok) return;
        m_lStart = now;
    } else {
        m_lStart = ReadTick();
        m_dwCurFlag = tag;
    }
}

void CCostTime::Time_Exit() {
    if (m_lStart < 1) return;
    INT64 now = m_lStart;
    if (m_PerformanceCounter_lFrequency == 0) {
        now = ReadTick();
    } else if (!ReadCounter(&now)) {
        now = m_lStart;
    }
    if (now <= m_lStart) return;
    const INT64 d = now - m_lStart;
    m_lLast = d;
    if (m_lMin == 0 || m_lMin > d) {
        m_lMin = d;
        m_dwMinFlag = m_dwCurFlag;
    }
    if (m_lMax == 0 || m_lMax < d) {
        m_lMax = d;
        m_dwMaxFlag = m_dwCurFlag;
    }
    // Wraps rather than overflowing after ~292 years of nanoseconds.
    m_lTotal = static_cast<INT64>(static_cast<UINT64>(m_lTotal) + static_cast<UINT64>(d));
    m_nCount = static_cast<int>(static_cast<unsigned>(m_nCount) + 1u);
}

double CCostTime::ToMilliseconds(double raw) const {
    if (m_PerformanceCounter_lFrequency == 0) return raw;
    return raw / static_cast<double>(m_PerformanceCounter_lFrequency) * 1000.0;
}

double CCostTime::GetCostTime(double* pMax, double* pMin, double* pLast) const {
    if (m_nCount == 0) {
        if (pMax) *pMax = 0;
        if (pMin) *pMin = 0;
        if (pLast) *pLast = 0;
        return 0;
    }
    if (pMax) *pMax = ToMilliseconds(static_cast<double>(m_lMax));
    if (pMin) *pMin = ToMilliseconds(static_cast<double>(m_lMin));
    if (pLast) *pLast = ToMilliseconds(static_cast<double>(m_lLast));
    return ToMilliseconds(static_cast<double>(m_lTotal) / static_cast<double>(m_nCount));
}

int CCostTime::GetCostTimeFlag(DWORD* pMaxTag, DWORD* pMinTag, DWORD* pCurTag) const {
    const bool any = m_lTotal != 0;
    if (pMaxTag) *pMaxTag = any ? m_dwMaxFlag : 0;
    if (pMinTag) *pMinTag = any ? m_dwMinFlag : 0;
    if (pCurTag) *pCurTag = any ? m_dwCurFlag : 0;
    return any ? 1 : 0;
}

double CCostTime::GetTotoalTime() const {
    if (m_nCount == 0) return 0;
    return ToMilliseconds(static_cast<double>(m_lTotal));
}

void CCostTime::PerformanceCounter_Init() {
    INT64 probe = 0;
    m_PerformanceCounter_lFrequency = kxbase::sys::MonotonicNanoseconds(&probe) ? 1000000000 : 0;
}

int CCostTime::PerformanceCounter_IsValid() {
    return m_PerformanceCounter_lFrequency != 0 ? 1 : 0;
}

INT64 CCostTime::PerformanceCounter_Frequency() {
    return m_PerformanceCounter_lFrequency;
}

INT64 CCostTime::PerformanceCounter_CurrentCount() {
    INT64 counter = 0;
    if (m_PerformanceCounter_lFrequency != 0 && ReadCounter(&counter)) {
        const double us = static_cast<double>(counter) /
                          static_cast<double>(m_PerformanceCounter_lFrequency) * 1000.0 * 1000.0;
        // Finite and far inside the INT64 range for any real counter; guard anyway.
        if ((us >= 1.0 || us <= -1.0) && us < 9.2e18 && us > -9.2e18) return static_cast<INT64>(us);
    }
    return static_cast<INT64>(static_cast<UINT64>(ReadTick()) * 1000u);
}
