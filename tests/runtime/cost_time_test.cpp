// CCostTime bookkeeping driven by a clock the test controls (no sleeping).
#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include "runtime/cost_time_p.h"

using kxbase::detail::CostTimeAccess;

namespace {

INT64 g_now = 0;
bool g_counterWorks = true;

// Installs the fake clocks for one test; restores the real clocks and frequency after.
struct FakeClock : ::testing::Test {
    const INT64 saved = CostTimeAccess::Frequency();
    FakeClock() {
        kxbase::detail::SetCostTimeClocks([](INT64* v) { return *v = g_now, g_counterWorks; },
                                          [] { return static_cast<UINT64>(g_now); });
    }
    ~FakeClock() override {
        kxbase::detail::SetCostTimeClocks(nullptr, nullptr);
        CostTimeAccess::SetFrequency(saved);
    }
};

}  // namespace

// Wrong extremes or tags, zero-length or start-less runs counted, ties taking the later tag,
// on the tick path where values are raw milliseconds.
TEST_F(FakeClock, BookkeepingOfRunsWithTicks) {
    CostTimeAccess::SetFrequency(0);
    struct Case {
        std::vector<std::tuple<DWORD, INT64, INT64>> runs;  // tag, start, end
        int count;
        double total, min, max, last;
        DWORD minTag, maxTag;
    } const cases[] = {
        {{{7, 100, 130}}, 1, 30, 30, 30, 30, 7, 7},                 // one run: both extremes
        {{{1, 100, 110}, {2, 200, 200}}, 1, 10, 10, 10, 10, 1, 1},  // zero length ignored
        {{{1, 100, 110}, {2, 200, 210}, {3, 300, 305}}, 3, 25, 5, 10, 5, 3, 1},  // ties: first tag
        {{{1, 0, 50}}, 0, 0, 0, 0, 0, 0, 0},    // clock at 0: no start
        {{{1, 100, 90}}, 0, 0, 0, 0, 0, 0, 0},  // backwards: ignored
    };
    for (const Case& c : cases) {
        CCostTime t;
        for (auto [tag, start, end] : c.runs) {
            g_now = start;
            t.Time_Init(tag);
            g_now = end;
            t.Time_Exit();
        }
        double mx = -1, mn = -1, last = -1;
        DWORD maxTag = 99, minTag = 99;
        const double avg = t.GetCostTime(&mx, &mn, &last);
        const int flag = t.GetCostTimeFlag(&maxTag, &minTag, nullptr);
        EXPECT_EQ(std::tuple(avg * c.count, CostTimeAccess::Count(t), t.GetTotoalTime(), mn, mx,
                             last, minTag, maxTag, flag),
                  std::tuple(c.total, c.count, c.total, c.min, c.max, c.last, c.minTag, c.maxTag,
                             c.total != 0 ? 1 : 0))
            << c.runs.size() << " runs, total " << c.total;
    }
}

// Values not converted to milliseconds (or the average converted twice), the start not kept
// for a second Time_Exit, an unreadable counter recording a run or dropping the tag, and the
// microsecond clock not falling back to ticks x 1000 when the counter gives 0 or fails.
TEST_F(FakeClock, CounterPathAndMicrosecondClock) {
    CostTimeAccess::SetFrequency(4000);  // 4 counts per millisecond
    CCostTime t;
    for (INT64 end : {1008, 1004, 1005}) {  // the last Time_Exit reuses the kept start
        g_now = 1000;
        if (end != 1005) t.Time_Init(9);
        g_now = end;
        t.Time_Exit();
    }
    double mx = 0, mn = 0, last = 0;
    EXPECT_DOUBLE_EQ(t.GetCostTime(&mx, &mn, &last), 17.0 / 3 / 4);
    EXPECT_EQ(std::tuple(mx, mn, last), std::tuple(2.0, 1.0, 1.25));
    g_counterWorks = false;
    t.Time_Init(5);
    EXPECT_EQ(CCostTime::PerformanceCounter_CurrentCount(), 1005000);  // ticks x 1000
    g_counterWorks = true;
    g_now = 2000;
    t.Time_Exit();
    DWORD cur = 0;
    t.GetCostTimeFlag(nullptr, nullptr, &cur);
    EXPECT_EQ(std::tuple(CostTimeAccess::Count(t), cur), std::tuple(3, DWORD{5}));
    CostTimeAccess::SetFrequency(1000000000);
    g_now = 500;  // below one microsecond: truncates to 0, so the tick count is used
    EXPECT_EQ(CCostTime::PerformanceCounter_CurrentCount(), 500000);
}
