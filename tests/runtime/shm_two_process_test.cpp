// Two real processes on one area: the test process (server) and kxbase_shm_peer (client)
// write disjoint ranges of a sparse multi-gigabyte area at the same time, through windows far
// smaller than the area, then each checks every byte the other wrote.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "shm_pattern.h"

namespace {

// Catches: windows that move wrongly over a large area (offsets past 4 GB cut to 32 bits,
// windows not re-based at granularity boundaries), a client that reads the header sizes
// wrongly, and transfers split at window ends that lose or shift bytes, seen from two
// processes whose windows differ. The second case moves transfers larger than the windows,
// so every transfer spans two or three of them.
TEST(ShmTwoProcess, DisjointRangesOfMultiGigabyteAreasThroughSmallWindows) {
    signal(SIGPIPE, SIG_IGN);  // a peer that dies early fails the test instead of ending it
    const struct {
        std::uint64_t size;
        DWORD serverWindow, peerWindow;
        std::uint32_t chunk;
    } cases[] = {{6ull << 30, 4u << 20, 1u << 20, 1u << 20},
                 {(5ull << 30) + 12345, 65536, 65536 + 4096, 98304}};
    for (auto c : cases) {
        c.size = std::min(c.size, shmtest::FreeShmBytes() / 2);  // a small /dev/shm
        const std::string name = shmtest::Name("two\\process/" + std::to_string(c.size));
        CShareMemoryServer server;
        ASSERT_EQ(server.CreateMap(name.c_str(), c.size, c.serverWindow), 1)
            << shmtest::ErrorOf(server);
        int toPeer[2], fromPeer[2];
        ASSERT_EQ(pipe2(toPeer, O_CLOEXEC) | pipe2(fromPeer, O_CLOEXEC), 0);
        // WINDOW CHUNK DATASIZE READ_FD WRITE_FD, made before fork: the child only execs.
        const std::string numbers = std::to_string(c.peerWindow) + " " + std::to_string(c.chunk) +
                                    " " + std::to_string(c.size) + " " + std::to_string(toPeer[0]) +
                                    " " + std::to_string(fromPeer[1]);
        const pid_t pid = fork();
        if (pid == 0) {  // only the peer's two pipe ends survive the exec
            fcntl(toPeer[0], F_SETFD, 0);
            fcntl(fromPeer[1], F_SETFD, 0);
            execl(KXBASE_SHM_PEER, KXBASE_SHM_PEER, name.c_str(), numbers.c_str(), nullptr);
            _exit(127);
        }
        for (const int fd : {toPeer[0], fromPeer[1]}) close(fd);  // EOF if the peer dies
        EXPECT_EQ(shmtest::Side(server, c.size, 1, c.chunk, fromPeer[0], toPeer[1]), "") << c.size;
        for (const int fd : {toPeer[1], fromPeer[0]}) close(fd);
        int status = 0;
        ASSERT_EQ(waitpid(pid, &status, 0), pid);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << c.size << ": " << status;
    }
}

}  // namespace
