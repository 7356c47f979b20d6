// CCostTime bookkeeping driven by a clock the test controls (no sleeping).
#include <gtest/gtest.h>

#include <vector>

#include "runtime/cost_time_p.h"

using kxbase::detail::CostTimeAccess;

namespace {

INT64 g_now = 0;
bool g_counterWorks = true;
bool fake_counter(INT64* v) {
    *v = g_now;
    return g_counterWorks;
}
UINT64 fake_tick() {
    return static_cast<UINT64>(g_now);
}

// Installs the fake clocks for one test; restores the real clocks and frequency after.
class FakeClock : public ::testing::Test {
protected:
    void SetUp() override {
        saved_ = CostTimeAccess::Frequency();
        g_now = 0;
        g_counterWorks = true;
        kxbase::detail::SetCostTimeClocks(&fake_counter, &fake_tick);
    }
    void TearDown() override {
        kxbase::detail::SetCostTimeClocks(nullptr, nullptr);
        CostTimeAccess::SetFrequency(saved_);
    }
    INT64 saved_ = 0;
};

struct TimedRun {
    DWORD tag;
    INT64 start, end;
};

}  // namespace

// Extremes and their tags, zero-length and start-less runs, ties (which must keep the first
// tag), on the tick path where values are raw milliseconds.
TEST_F(FakeClock, BookkeepingOfRunsWithTicks) {
    CostTimeAccess::SetFrequency(0);
    struct Case {
        const char* what;
        std::vector<TimedRun> runs;
        int count;
        INT64 total;
        double min, max, last;
        DWORD minTag, maxTag;
    } const cases[] = {
        {"first run is both extremes", {{7, 100, 130}}, 1, 30, 30, 30, 30, 7, 7},
        {"zero-length run ignored", {{1, 100, 110}, {2, 200, 200}}, 1, 10, 10, 10, 10, 1, 1},
        {"ties keep first tags",
         {{1, 100, 110}, {2, 200, 210}, {3, 300, 305}},
         3,
         25,
         5,
         10,
         5,
         3,
         1},
        {"clock at 0 is no start", {{1, 0, 50}}, 0, 0, 0, 0, 0, 0, 0},
        {"backwards clock ignored", {{1, 100, 90}}, 0, 0, 0, 0, 0, 0, 0},
    };
    for (const Case& c : cases) {
        CCostTime t;
        for (const TimedRun& r : c.runs) {
            g_now = r.start;
            t.Time_Init(r.tag);
            g_now = r.end;
            t.Time_Exit();
        }
        double mx = -1, mn = -1, last = -1;
        EXPECT_DOUBLE_EQ(t.GetCostTime(&mx, &mn, &last), c.count ? double(c.total) / c.count : 0.0)
            << c.what;
        EXPECT_EQ(CostTimeAccess::Count(t), c.count) << c.what;
        EXPECT_EQ(t.GetTotoalTime(), double(c.total)) << c.what;
        EXPECT_EQ(mn, c.min) << c.what;
        EXPECT_EQ(mx, c.max) << c.what;
        EXPECT_EQ(last, c.last) << c.what;
        DWORD maxTag = 99, minTag = 99;
        EXPECT_EQ(t.GetCostTimeFlag(&maxTag, &minTag, nullptr), c.total != 0 ? 1 : 0) << c.what;
        EXPECT_EQ(minTag, c.minTag) << c.what;
        EXPECT_EQ(maxTag, c.maxTag) << c.what;
    }
}

// With a frequency every value is converted to milliseconds, the average after dividing; the
// start is kept for a second Time_Exit; an unreadable counter records nothing.
TEST_F(FakeClock, CounterPath) {
    CostTimeAccess::SetFrequency(4000);  // 4 counts per millisecond
    CCostTime t;
    for (INT64 len : {8, 4}) {
        g_now = 1000;
        t.Time_Init(static_cast<DWORD>(len));
        g_now = 1000 + len;
        t.Time_Exit();
    }
    g_now = 1005;
    t.Time_Exit();  // again from the kept start: a run of 5 counts
    double mx = 0, mn = 0, last = 0;
    EXPECT_DOUBLE_EQ(t.GetCostTime(&mx, &mn, &last), 17.0 / 3 / 4);
    EXPECT_DOUBLE_EQ(mx, 2.0);
    EXPECT_DOUBLE_EQ(mn, 1.0);
    EXPECT_DOUBLE_EQ(last, 1.25);
    EXPECT_DOUBLE_EQ(t.GetCostTime(nullptr, nullptr, nullptr), 17.0 / 3 / 4);

    g_counterWorks = false;
    t.Time_Init(9);
    EXPECT_EQ(CostTimeAccess::Start(t), 0);
    g_counterWorks = true;
    g_now = 2000;
    t.Time_Exit();
    EXPECT_EQ(CostTimeAccess::Count(t), 3);
    DWORD cur = 0;
    t.GetCostTimeFlag(nullptr, nullptr, &cur);
    EXPECT_EQ(cur, 9u);  // the tag is taken even when the counter fails
}

// The microsecond clock: counter-based when that gives a nonzero value, else ticks x 1000.
TEST_F(FakeClock, MicrosecondClockFallsBackToTicks) {
    CostTimeAccess::SetFrequency(1000000000);
    g_now = 5000000000;
    EXPECT_EQ(CCostTime::PerformanceCounter_CurrentCount(), 5000000);
    g_now = 500;  // below one microsecond: truncates to 0, so the tick count is used
    EXPECT_EQ(CCostTime::PerformanceCounter_CurrentCount(), 500000);
    g_counterWorks = false;
    g_now = 7;
    EXPECT_EQ(CCostTime::PerformanceCounter_CurrentCount(), 7000);
}
