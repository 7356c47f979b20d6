// Clock seam of CCostTime: tests substitute the counter and the tick count, and set the
// class-wide frequency, so that the bookkeeping is checked without sleeping.
#pragma once

#include <kxbase/runtime/cost_time.h>

namespace kxbase::detail {

/// Reads the high-resolution counter into *value; false when it cannot be read.
using CounterFn = bool (*)(INT64* value);
/// The monotonic millisecond tick count.
using TickFn = UINT64 (*)();

struct CostTimeAccess {
    static INT64 Frequency() { return CCostTime::m_PerformanceCounter_lFrequency; }
    static void SetFrequency(INT64 f) { CCostTime::m_PerformanceCounter_lFrequency = f; }
    static INT64 Start(const CCostTime& c) { return c.m_lStart; }
    static int Count(const CCostTime& c) { return c.m_nCount; }
    static INT64 Total(const CCostTime& c) { return c.m_lTotal; }
};

/// Replaces the clocks (null restores the system clock); returns nothing, not thread-safe:
/// for tests only.
void SetCostTimeClocks(CounterFn counter, TickFn tick);

/// The system clocks themselves.
bool SystemCounter(INT64* value);
UINT64 SystemTick();

}  // namespace kxbase::detail
