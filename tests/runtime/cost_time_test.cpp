// CCostTime bookkeeping driven by a clock the test controls (no sleeping).
#include <gtest/gtest.h>

#include <vector>

#include "runtime/cost_time_p.h"

using kxbase::detail::CostTimeAccess;

namespace {

INT64 g_now = 0;
bool g_counterWorks = true;
bool fake_counter(INT64* v) {
    if (!g_counterWorks) return false;
    *v = g_now;
    return true;
}
UINT64 fake_tick() {
    return static_cast<UINT64>(g_now);
}

// Installs the fake clocks and a frequency for one test; restores the real ones after.
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

// Runs given as (tag, start, end) must give the stated extremes with their tags; zero-length
// runs and runs without a start must not count; ties must keep the first tag.
TEST_F(FakeClock, BookkeepingOfRunsWithTicks) {
    CostTimeAccess::SetFrequency(0);  // tick path: raw values are milliseconds
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
        {"max then min", {{4, 10, 50}, {5, 60, 61}}, 2, 41, 1, 40, 1, 5, 4},
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
        const double avg = t.GetCostTime(&mx, &mn, &last);
        EXPECT_EQ(CostTimeAccess::Count(t), c.count) << c.what;
        EXPECT_EQ(CostTimeAccess::Total(t), c.total) << c.what;
        EXPECT_DOUBLE_EQ(avg, c.count ? double(c.total) / c.count : 0.0) << c.what;
        EXPECT_DOUBLE_EQ(mn, c.min) << c.what;
        EXPECT_DOUBLE_EQ(mx, c.max) << c.what;
        EXPECT_DOUBLE_EQ(last, c.last) << c.what;
        DWORD maxTag = 99, minTag = 99, curTag = 99;
        EXPECT_EQ(t.GetCostTimeFlag(&maxTag, &minTag, &curTag), c.total != 0 ? 1 : 0) << c.what;
        EXPECT_EQ(minTag, c.minTag) << c.what;
        EXPECT_EQ(maxTag, c.maxTag) << c.what;
        EXPECT_EQ(t.GetTotoalTime(), double(c.total)) << c.what;
    }
}

// With a counter frequency every value is converted to milliseconds (a missing conversion, or
// one applied before the average, shows here).
TEST_F(FakeClock, CounterValuesConvertToMilliseconds) {
    CostTimeAccess::SetFrequency(4000);  // 4 counts per millisecond
    CCostTime t;
    for (INT64 len : {8, 4, 1}) {  // 2 ms, 1 ms, 0.25 ms
        g_now = 1000;
        t.Time_Init(static_cast<DWORD>(len));
        g_now = 1000 + len;
        t.Time_Exit();
    }
    double mx = 0, mn = 0, last = 0;
    EXPECT_DOUBLE_EQ(t.GetCostTime(&mx, &mn, &last), 13.0 / 3 / 4);
    EXPECT_DOUBLE_EQ(mx, 2.0);
    EXPECT_DOUBLE_EQ(mn, 0.25);
    EXPECT_DOUBLE_EQ(last, 0.25);
    EXPECT_DOUBLE_EQ(t.GetTotoalTime(), 3.25);
    EXPECT_DOUBLE_EQ(t.GetCostTime(nullptr, nullptr, nullptr), 13.0 / 3 / 4);
}

// A second Time_Exit measures again from the kept start; an unreadable counter at Time_Init
// records nothing afterwards, and one at Time_Exit records nothing either.
TEST_F(FakeClock, StartIsKeptAndUnreadableCounterRecordsNothing) {
    CostTimeAccess::SetFrequency(1000);
    CCostTime t;
    g_now = 10;
    t.Time_Init(1);
    g_now = 12;
    t.Time_Exit();
    g_now = 15;
    t.Time_Exit();
    EXPECT_EQ(CostTimeAccess::Count(t), 2);
    EXPECT_EQ(CostTimeAccess::Total(t), 7);

    g_counterWorks = false;
    t.Time_Init(2);
    EXPECT_EQ(CostTimeAccess::Start(t), 0);
    g_counterWorks = true;
    g_now = 100;
    t.Time_Exit();
    EXPECT_EQ(CostTimeAccess::Count(t), 2);
    DWORD cur = 0;
    t.GetCostTimeFlag(nullptr, nullptr, &cur);
    EXPECT_EQ(cur, 2u);  // the tag is taken even when the counter fails

    g_now = 200;
    t.Time_Init(3);
    g_counterWorks = false;
    t.Time_Exit();
    EXPECT_EQ(CostTimeAccess::Count(t), 2);

    t.Init();
    EXPECT_EQ(CostTimeAccess::Count(t), 0);
    EXPECT_EQ(t.GetCostTimeFlag(nullptr, nullptr, nullptr), 0);
}

// The microsecond clock: counter-based when it gives a nonzero value, else ticks x 1000.
TEST_F(FakeClock, MicrosecondClockFallsBackToTicks) {
    CostTimeAccess::SetFrequency(1000000000);
    g_now = 5000000000;  // 5 s of nanoseconds
    EXPECT_EQ(CCostTime::PerformanceCounter_CurrentCount(), 5000000);
    g_now = 500;  // below one microsecond: truncates to 0, so the tick count is used
    EXPECT_EQ(CCostTime::PerformanceCounter_CurrentCount(), 500000);
    g_counterWorks = false;
    g_now = 7;
    EXPECT_EQ(CCostTime::PerformanceCounter_CurrentCount(), 7000);
    CostTimeAccess::SetFrequency(0);
    g_counterWorks = true;
    EXPECT_EQ(CCostTime::PerformanceCounter_IsValid(), 0);
    EXPECT_EQ(CCostTime::PerformanceCounter_CurrentCount(), 7000);
}

// The real clock: the start-up's frequency is the monotonic clock's, and it advances.
TEST(CCostTime, SystemClockIsMonotonicNanoseconds) {
    CCostTime::PerformanceCounter_Init();
    EXPECT_EQ(CCostTime::PerformanceCounter_IsValid(), 1);
    EXPECT_EQ(CostTimeAccess::Frequency(), 1000000000);
    const INT64 a = CCostTime::PerformanceCounter_CurrentCount();
    const INT64 b = CCostTime::PerformanceCounter_CurrentCount();
    EXPECT_GT(a, 0);
    EXPECT_LE(a, b);
}
