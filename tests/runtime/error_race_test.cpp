// g_Error raced by writers and lock-free readers: under ThreadSanitizer this must be clean, and
// a reader must only ever see a whole record (a text some writer wrote, with its flag).
#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include <kxbase/runtime/error_info.h>

namespace {

bool plausible(const std::string& text) {
    if (text.rfind("writer ", 0) == 0) return text.find(" step ") != std::string::npos;
    return text == std::string(std::strerror(EACCES)) + " (0xD)" ||
           text == "System Error (code:0xABCD)";
}

}  // namespace

TEST(ErrorRace, ReadersSeeWholeRecordsWhileWritersRace) {
    constexpr int kWriters = 3;
    constexpr int kReaders = 3;
    constexpr int kSteps = 3000;
    std::atomic<bool> done{false};
    std::atomic<int> torn{0};
    std::atomic<INT64> reads{0};

    std::vector<std::thread> threads;
    for (int w = 0; w < kWriters; ++w)
        threads.emplace_back([w] {
            for (int i = 0; i < kSteps; ++i) {
                switch (i % 4) {
                    case 0:
                        g_Error.SetLastError("writer %d step %d", w, i);
                        break;
                    case 1:
                        g_Error.SetLastErrorFromSystem(DWORD{EACCES});
                        break;
                    case 2:
                        g_Error.SetLastErrorFromSystem(0xABCDu);
                        break;
                    default:
                        g_Error.ClearError();
                        break;
                }
            }
        });
    for (int r = 0; r < kReaders; ++r)
        threads.emplace_back([&] {
            CString out;
            while (!done.load(std::memory_order_relaxed)) {
                const int flag = g_Error.GetLastError(out);
                const std::string text = out.str();
                if ((flag != 0) != !text.empty() || (flag != 0 && !plausible(text))) ++torn;
                (void)g_Error.IsError();
                ++reads;
            }
        });
    for (int w = 0; w < kWriters; ++w) threads[w].join();
    done = true;
    for (std::size_t t = kWriters; t < threads.size(); ++t) threads[t].join();
    EXPECT_EQ(torn.load(), 0);
    EXPECT_GT(reads.load(), 0);
}
