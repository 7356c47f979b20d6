// Two real processes on one area: the test process (server) and kxbase_shm_peer (client)
// write disjoint ranges of a sparse multi-gigabyte area at the same time, through windows far
// smaller than the area, then each checks every byte the other wrote.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>

#include "shm_pattern.h"

namespace {

struct PeerRun {
    int status = -1;
    std::string error;
};

// Starts the peer, runs the server side of the exchange, and waits for the peer.
PeerRun RunExchange(const std::string& name, std::uint64_t size, DWORD serverWindow,
                    DWORD peerWindow, std::uint32_t chunk) {
    PeerRun result;
    CShareMemoryServer server;
    if (!server.CreateMap(name.c_str(), size, serverWindow)) {
        CString e;
        server.GetLastErrorInfo(e);
        result.error = "create: " + e.str();
        return result;
    }
    int toPeer[2], fromPeer[2];
    if (pipe2(toPeer, O_CLOEXEC) != 0 || pipe2(fromPeer, O_CLOEXEC) != 0) {
        result.error = "pipe";
        return result;
    }
    const std::string args[] = {KXBASE_SHM_PEER,
                                name,
                                std::to_string(peerWindow),
                                std::to_string(chunk),
                                std::to_string(size),
                                "3",
                                "4"};
    const pid_t pid = fork();
    if (pid == 0) {
        // The peer reads on fd 3 and writes on fd 4.
        dup2(toPeer[0], 3);
        dup2(fromPeer[1], 4);
        const char* argv[8];
        for (int i = 0; i < 7; ++i) argv[i] = args[i].c_str();
        argv[7] = nullptr;
        execv(argv[0], const_cast<char* const*>(argv));
        _exit(127);
    }
    close(toPeer[0]);
    close(fromPeer[1]);
    result.error = shmtest::Exchange(server, shmtest::Plan(size, 1, 300000), 1, chunk, true);
    char c = 'w';
    if (result.error.empty()) {
        if (read(fromPeer[0], &c, 1) != 1 || c != 'w') result.error = "peer did not finish writing";
    }
    if (result.error.empty())
        result.error = shmtest::Exchange(server, shmtest::Plan(size, 2, 300000), 2, chunk, false);
    c = 'w';
    if (write(toPeer[1], &c, 1) != 1 && result.error.empty()) result.error = "peer gone";
    close(toPeer[1]);
    close(fromPeer[0]);
    int status = 0;
    waitpid(pid, &status, 0);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return result;
}

// Catches: windows that move wrongly over a large area (offsets past 4 GB cut to 32 bits,
// windows not re-based at granularity boundaries), a client that reads the header sizes
// wrongly, and transfers split at window ends that lose or shift bytes, seen from two
// processes whose windows differ. The second case moves transfers larger than the windows,
// so every transfer spans two or three of them.
TEST(ShmTwoProcess, DisjointRangesOfMultiGigabyteAreasThroughSmallWindows) {
    const struct {
        std::uint64_t size;
        DWORD serverWindow, peerWindow;
        std::uint32_t chunk;
    } cases[] = {{6ull << 30, 4u << 20, 1u << 20, 1u << 20},
                 {(5ull << 30) + 12345, 65536, 65536 + 4096, 98304}};
    for (auto c : cases) {
        c.size = std::min(c.size, shmtest::FreeShmBytes() / 2);  // a small /dev/shm
        const std::string name =
            "kxtest\\two-process/" + std::to_string(getpid()) + "/" + std::to_string(c.size);
        const PeerRun run = RunExchange(name, c.size, c.serverWindow, c.peerWindow, c.chunk);
        EXPECT_EQ(run.error, "") << c.size;
        EXPECT_EQ(run.status, 0) << c.size;
    }
}

}  // namespace
