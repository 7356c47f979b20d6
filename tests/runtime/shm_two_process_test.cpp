// Two real processes on one area: the test process (server) and kxbase_shm_peer (client)
// write disjoint ranges of a sparse multi-gigabyte area at the same time, through windows far
// smaller than the area, then each checks every byte the other wrote.
#include <gtest/gtest.h>

#if defined(_WIN32)
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <fcntl.h>
#include <windows.h>
#else
#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

#include "shm_pattern.h"

namespace {

#if defined(_WIN32)
// The peer program beside this test program (its build puts them in one folder).
std::string PeerPath() {
    char self[MAX_PATH];
    const DWORD n = GetModuleFileNameA(nullptr, self, MAX_PATH);
    std::string path(self, n);
    return path.substr(0, path.find_last_of('\\') + 1) + "kxbase_shm_peer.exe";
}

// Starts the peer with CreateProcess; the handles in `inherit` pass to it. Returns its
// process handle, or null.
HANDLE StartPeer(const std::string& args) {
    std::string command = "\"" + PeerPath() + "\" " + args;
    STARTUPINFOA si{};
    si.cb = sizeof si;
    PROCESS_INFORMATION pi{};
    if (!CreateProcessA(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &si,
                        &pi))
        return nullptr;
    CloseHandle(pi.hThread);
    return pi.hProcess;
}

DWORD WaitForExit(HANDLE process) {
    WaitForSingleObject(process, INFINITE);
    DWORD code = 0;
    GetExitCodeProcess(process, &code);
    CloseHandle(process);
    return code;
}
#endif

// Catches: windows that move wrongly over a large area (offsets past 4 GB cut to 32 bits,
// windows not re-based at granularity boundaries), a client that reads the header sizes
// wrongly, and transfers split at window ends that lose or shift bytes, seen from two
// processes whose windows differ. The second case moves transfers larger than the windows,
// so every transfer spans two or three of them.
TEST(ShmTwoProcess, DisjointRangesOfMultiGigabyteAreasThroughSmallWindows) {
#if !defined(_WIN32)
    signal(SIGPIPE, SIG_IGN);  // a peer that dies early fails the test instead of ending it
#endif
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
#if defined(_WIN32)
        // Two anonymous pipes; only the peer's ends are inheritable.
        SECURITY_ATTRIBUTES sa{sizeof sa, nullptr, TRUE};
        HANDLE toPeer[2], fromPeer[2];  // read end, write end
        ASSERT_TRUE(CreatePipe(&toPeer[0], &toPeer[1], &sa, 0) &&
                    CreatePipe(&fromPeer[0], &fromPeer[1], &sa, 0));
        SetHandleInformation(toPeer[1], HANDLE_FLAG_INHERIT, 0);
        SetHandleInformation(fromPeer[0], HANDLE_FLAG_INHERIT, 0);
        const std::string numbers = std::to_string(c.peerWindow) + " " + std::to_string(c.chunk) +
                                    " " + std::to_string(c.size) + " " +
                                    std::to_string(reinterpret_cast<intptr_t>(toPeer[0])) + " " +
                                    std::to_string(reinterpret_cast<intptr_t>(fromPeer[1]));
        const HANDLE peer = StartPeer(name + " \"" + numbers + "\"");
        CloseHandle(toPeer[0]);  // EOF if the peer dies
        CloseHandle(fromPeer[1]);
        ASSERT_NE(peer, nullptr) << GetLastError();
        const int in = _open_osfhandle(reinterpret_cast<intptr_t>(fromPeer[0]), _O_RDONLY);
        const int out = _open_osfhandle(reinterpret_cast<intptr_t>(toPeer[1]), 0);
        EXPECT_EQ(shmtest::Side(server, c.size, 1, c.chunk, in, out), "") << c.size;
        _close(in);
        _close(out);
        EXPECT_EQ(WaitForExit(peer), 0u) << c.size;
#else
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
#endif
    }
}

#if defined(_WIN32)
// Catches an area that outlives a server process which ended without closing it: on Windows
// the system removes a mapping with its last holder, so the name is free at once and a new
// server starts from a zeroed area. An existing area cannot be made larger.
TEST(ShmTwoProcess, CrashedServerLeavesNoArea) {
    const std::string name = shmtest::Name("crashed");
    const HANDLE peer = StartPeer("--crash " + name);
    ASSERT_NE(peer, nullptr);
    ASSERT_EQ(WaitForExit(peer), 0u);
    CShareMemoryClient client;
    EXPECT_EQ(client.OpenMap(name.c_str(), 0), 0);
    EXPECT_EQ(client.GetMapSize(), 0u);
    CShareMemoryServer server;
    ASSERT_EQ(server.CreateMap(name.c_str(), 2 << 20, 0), 1) << shmtest::ErrorOf(server);
    BYTE b = 0xFF;
    EXPECT_TRUE(server.ReadData(0, &b, 1) && b == 0);
    // A mapping cannot grow: a second server asking for more under the same name fails.
    CShareMemoryServer larger;
    EXPECT_EQ(larger.CreateMap(name.c_str(), 8 << 20, 0), 0);
    EXPECT_EQ(shmtest::ErrorOf(larger).rfind("Could not create share memory handle.\n\t", 0), 0u)
        << shmtest::ErrorOf(larger);
}

// Catches an area name that is rewritten on its way to the system: a Windows host that opens
// the mapping by the same name with the system's own call must find the area's header.
TEST(ShmTwoProcess, AreaNameIsTheSystemMappingName) {
    const std::string name = shmtest::Name("host-visible");
    CShareMemoryServer server;
    ASSERT_EQ(server.CreateMap(name.c_str(), 4096, 0), 1) << shmtest::ErrorOf(server);
    const HANDLE mapping = OpenFileMappingA(FILE_MAP_READ, FALSE, name.c_str());
    ASSERT_NE(mapping, nullptr) << GetLastError();
    const void* view = MapViewOfFile(mapping, FILE_MAP_READ, 0, 0, 16);
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(std::string(static_cast<const char*>(view), 4), "XPLM");
    UnmapViewOfFile(view);
    CloseHandle(mapping);
}
#endif

}  // namespace
