// The shared bit tables: contents and start-up behaviour.
#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include <kxbase/compress/compress.h>

namespace {

struct Tables : ACompress {
    using ACompress::m_byBitTable;
    using ACompress::m_pRowTable;
};

// Faults: the tables are only valid after Init (a host that never calls it, or a 1-bit
// unpacker running on another thread during start-up, would read zeros); Init or Exit rewrites
// them while others read; a row pointer off by one byte; bits stored in the wrong order.
TEST(CompressTables, ReadyWithoutInitAndUnchangedByConcurrentInit) {
    auto check = [] {
        for (unsigned v = 0; v < 256; ++v) {
            for (unsigned b = 0; b < 8; ++b) {
                ASSERT_EQ((v >> (7 - b)) & 1, Tables::m_byBitTable[v][b]) << v << " bit " << b;
                if (v < 128 && b < 7) {
                    ASSERT_EQ((v >> (6 - b)) & 1, Tables::m_pRowTable[v][b]) << v << " bit " << b;
                }
            }
        }
    };
    check();
    std::vector<std::thread> threads;
    // A host may call Init itself, from any thread.
    for (int i = 0; i < 4; ++i) threads.emplace_back([] { EXPECT_EQ(1, ACompress::Init()); });
    threads.emplace_back(check);
    for (auto& t : threads) t.join();
    EXPECT_EQ(1, ACompress::Exit());
    check();
}

}  // namespace
