/// \file
/// CCostTime: bookkeeping of how long a repeated piece of work takes.
///
/// Bracket each run with Time_Init(tag) and Time_Exit(). The object keeps the total, the
/// shortest and the longest run with the tags that were current then, the last run and the
/// number of runs. Durations are kept in raw clock units: counter counts (nanoseconds here,
/// CLOCK_MONOTONIC) when the class-wide counter frequency is nonzero, milliseconds of the
/// monotonic tick count otherwise. The getters convert to milliseconds.
///
/// Thread-safety: an object belongs to one thread. The class-wide frequency is written once at
/// library start-up (PerformanceCounter_Init) and only read afterwards.
#pragma once

#include <kxbase/export.h>
#include <kxbase/platform/types.h>

namespace kxbase::detail {
struct CostTimeAccess;
}

/// Run-time statistics of one repeated piece of work: total, shortest, longest and last run.
class KXBASE_API CCostTime {
public:
    /// Every member 0.
    CCostTime() = default;
    /// Forgets every run: every member 0 again, as after construction.
    void Init();

    /// Starts a run and makes `tag` the current tag. If the counter cannot be read the start
    /// stays 0 and the following Time_Exit records nothing.
    void Time_Init(DWORD tag);

    /// Ends a run: d = now - start. Nothing is recorded when no start was taken (start < 1)
    /// or when d <= 0. Otherwise last = d; the minimum (maximum) is replaced, with the current
    /// tag, when it is 0 or strictly greater (less) than d, so ties keep the earlier run's
    /// tag; total += d; count += 1. The start is kept: a second Time_Exit without a new
    /// Time_Init measures again from the same start and counts as another run.
    void Time_Exit();

    /// Average run time in milliseconds (total / count, computed in double before the
    /// conversion); stores the maximum, the minimum and the last run (milliseconds) through
    /// the pointers, in that order, each skipped when null. With no runs everything is 0.
    double GetCostTime(double* pMax, double* pMin, double* pLast) const;

    /// With a nonzero total: stores the maximum, minimum and current tags (null pointers
    /// skipped) and returns 1. Otherwise stores 0 through each non-null pointer, returns 0.
    int GetCostTimeFlag(DWORD* pMaxTag, DWORD* pMinTag, DWORD* pCurTag) const;

    /// Total measured time in milliseconds; 0 with no runs. (The name is spelt so.)
    double GetTotoalTime() const;

    /// Reads the counter frequency: 1e9 counts per second (CLOCK_MONOTONIC in nanoseconds),
    /// or 0 when the monotonic clock cannot be read. The library start-up calls this.
    static void PerformanceCounter_Init();
    /// 1 when the frequency is nonzero.
    static int PerformanceCounter_IsValid();
    /// The frequency itself: counts per second, 0 when there is no counter.
    static INT64 PerformanceCounter_Frequency();
    /// A microsecond clock: counter / frequency * 1e6 truncated when the counter works and
    /// that is nonzero, otherwise the millisecond tick count * 1000.
    static INT64 PerformanceCounter_CurrentCount();

private:
    friend struct kxbase::detail::CostTimeAccess;
    double ToMilliseconds(double raw) const;

    static INT64 m_PerformanceCounter_lFrequency;

    INT64 m_lStart = 0;
    INT64 m_lTotal = 0;
    INT64 m_lMin = 0;
    INT64 m_lMax = 0;
    INT64 m_lLast = 0;
    int m_nCount = 0;
    DWORD m_dwMinFlag = 0;
    DWORD m_dwMaxFlag = 0;
    DWORD m_dwCurFlag = 0;
};
