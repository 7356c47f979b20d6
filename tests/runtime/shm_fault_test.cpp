// The channel when the system fails under a transfer: the area's storage refusing a write
// part-way (the file-size limit stands in for a full file system: both make the kernel refuse
// the write with an error), and the process at the other end killed in mid-transfer. Each
// fault gives the channel's own text and leaves the object usable.
#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <vector>

#include "shm_pattern.h"

namespace {

using shmtest::ErrorOf;
using shmtest::Name;

constexpr UINT64 kHeader = 65536;

// Runs `body` in a child process and returns its exit status (-1 when it did not exit).
template <class F>
int InChild(F body) {
    const pid_t pid = fork();
    if (pid == 0) _exit(body());
    int status = 0;
    if (pid < 0 || waitpid(pid, &status, 0) != pid || !WIFEXITED(status)) return -1;
    return WEXITSTATUS(status);
}

// Catches: a refused write reported as success, a write error reported with another text, and
// an object that stays unusable after the refusal. The child may write the first 8 KB of the
// data part only; a 64 KB write from offset 4 KB is cut at that point.
TEST(ShmFault, WriteRefusedByTheStorageMidTransfer) {
    const std::string name = Name("efbig");
    CShareMemoryServer server;
    ASSERT_TRUE(server.CreateMap(name.c_str(), 1 << 20, 0));
    const int status = InChild([&] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{kHeader + 8192, kHeader + 8192};
        if (setrlimit(RLIMIT_FSIZE, &limit) != 0) return 10;
        CShareMemoryClient client;
        if (!client.OpenMap(name.c_str(), 0)) return 11;
        std::vector<BYTE> buf(65536, 0x5A);
        if (client.WriteData(4096, buf.data(), 65536) != 0) return 12;
        if (ErrorOf(client) != "Could not lock buffer.\n\tFile too large (0x1B)") return 13;
        // Still open and usable below the limit. (The error text stays until the next window
        // move: a transfer inside the window does not clear it.)
        BYTE back = 0;
        if (!client.WriteData(100, buf.data(), 1) || !client.ReadData(100, &back, 1)) return 14;
        if (back != 0x5A) return 15;
        if (client.GetMapSize() != (1u << 20)) return 16;
        return 0;
    });
    EXPECT_EQ(status, 0);
    // The part before the limit arrived; nothing past it did.
    BYTE edge[2] = {};
    ASSERT_TRUE(server.ReadData(8191, edge, 2));
    EXPECT_EQ(edge[0], 0x5A);
    EXPECT_EQ(edge[1], 0);
}

// Catches: an area that a killed peer leaves unusable, locked or half-closed. The child
// writes in a loop until it is killed; afterwards the server still reads and writes, and a
// new client still opens the area and sees the server's bytes.
TEST(ShmFault, PeerKilledDuringATransfer) {
    const std::string name = Name("killed");
    CShareMemoryServer server;
    ASSERT_TRUE(server.CreateMap(name.c_str(), 8 << 20, 1 << 20));
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    const pid_t pid = fork();
    if (pid == 0) {
        CShareMemoryClient client;
        if (!client.OpenMap(name.c_str(), 1 << 20)) _exit(1);
        std::vector<BYTE> buf(4 << 20, 0xC3);
        const char go = 1;
        if (write(ready[1], &go, 1) != 1) _exit(2);
        for (UINT64 at = 0;; at = (at + 4096) % (4 << 20))
            client.WriteData(at, buf.data(), 4 << 20);
    }
    ASSERT_GT(pid, 0);
    char go = 0;
    ASSERT_EQ(read(ready[0], &go, 1), 1);
    kill(pid, SIGKILL);
    int status = 0;
    ASSERT_EQ(waitpid(pid, &status, 0), pid);
    EXPECT_TRUE(WIFSIGNALED(status));
    close(ready[0]);
    close(ready[1]);

    std::vector<BYTE> mine(64, 0x21), back(64, 0);
    EXPECT_TRUE(server.WriteData(7 << 20, mine.data(), 64)) << ErrorOf(server);
    EXPECT_TRUE(server.ReadData(7 << 20, back.data(), 64)) << ErrorOf(server);
    EXPECT_EQ(back, mine);
    CShareMemoryClient late;
    ASSERT_TRUE(late.OpenMap(name.c_str(), 0)) << ErrorOf(late);
    std::fill(back.begin(), back.end(), 0);
    EXPECT_TRUE(late.ReadData(7 << 20, back.data(), 64));
    EXPECT_EQ(back, mine);
    EXPECT_EQ(late.GetMapSize(), 8u << 20);
}

}  // namespace
