// The shared memory channel between a server and a client object on the backend of the
// system at hand (one process): data crosses window boundaries both ways, and the name is
// gone once the server closes and no client holds the area. Runs on both systems.
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include <kxbase/runtime/share_memory.h>

namespace {

std::string unique_area_name() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
    return "Local\\kxbase-portable-" + std::to_string(now);
}

std::vector<BYTE> pattern(std::size_t n, unsigned seed) {
    std::vector<BYTE> v(n);
    for (std::size_t i = 0; i < n; ++i) v[i] = static_cast<BYTE>((i * 131u + seed) >> 3);
    return v;
}

}  // namespace

TEST(ShareMemoryPortable, ServerAndClientExchangeAcrossWindows) {
    const std::string name = unique_area_name();
    constexpr UINT64 kData = 300000;
    CShareMemoryServer server;
    ASSERT_EQ(server.CreateMap(name.c_str(), kData, 70000), 1);
    CShareMemoryClient client;
    ASSERT_EQ(client.OpenMap(name.c_str(), 50000), 1);

    // Server to client, then client to server, each time over several window moves and at
    // offsets that straddle the system's granularity.
    struct Case {
        UINT64 offset;
        DWORD length;
    };
    const Case cases[] = {{0, 300000}, {65530, 20}, {131000, 100000}, {299999, 1}};
    unsigned seed = 1;
    for (const Case& c : cases) {
        const std::vector<BYTE> sent = pattern(c.length, seed++);
        std::vector<BYTE> got(c.length);
        ASSERT_EQ(server.WriteData(c.offset, const_cast<BYTE*>(sent.data()), c.length), 1);
        ASSERT_EQ(client.ReadData(c.offset, got.data(), c.length), 1);
        EXPECT_EQ(got, sent) << c.offset;
        const std::vector<BYTE> back = pattern(c.length, seed++);
        ASSERT_EQ(client.WriteData(c.offset, const_cast<BYTE*>(back.data()), c.length), 1);
        ASSERT_EQ(server.ReadData(c.offset, got.data(), c.length), 1);
        EXPECT_EQ(got, back) << c.offset;
    }
    client.DeleteMap();
    server.DeleteMap();
    CShareMemoryClient late;
    EXPECT_EQ(late.OpenMap(name.c_str()), 0);
}
