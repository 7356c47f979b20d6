// The channel when the system fails under a transfer: the storage under the area refusing a
// write part-way (a full file system, a file-size limit), another process cutting the area
// short while a transfer runs, and the process at the other end killed inside a transfer. Each
// fault must give the channel's own text, never a crash or SIGBUS, and leave the object usable
// or cleanly closed. Faults land at a known point (a transfer held on one page of its buffer,
// see shm_stall.h), never after a sleep.
#include <gtest/gtest.h>

#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "shm_pattern.h"
#include "shm_stall.h"

namespace {

using shmtest::ErrorOf;
using shmtest::Name;

constexpr UINT64 kHeader = 65536;
constexpr DWORD kK = 1024;
constexpr int kSkip = 77;  // a child's exit status: the fault cannot be set up here
const std::string kLockFailed = "Could not lock buffer.\n\t";
const std::string kCut = kLockFailed + "Bad address (0xE)";

// Runs `body` in a child process; its gtest failures print there and make it exit 1.
template <class F>
int InChild(F body) {
    const pid_t pid = fork();
    if (pid == 0) {
        body();
        _exit(testing::Test::HasFailure() ? 1 : 0);
    }
    int status = 0;
    if (pid < 0 || waitpid(pid, &status, 0) != pid || !WIFEXITED(status)) return -1;
    return WEXITSTATUS(status);
}

int OpenDescriptors() {
    namespace fs = std::filesystem;
    return static_cast<int>(std::distance(fs::directory_iterator("/proc/self/fd"), {}));
}

bool WriteText(const char* path, const std::string& text) {
    std::ofstream out(path);
    return static_cast<bool>(out << text << std::flush);
}

// Gives this (child) process a /dev/shm of its own, a 1 MB tmpfs in a private mount namespace,
// so that the file system under the area can really run full. Needs CAP_SYS_ADMIN, or user
// namespaces for unprivileged users.
bool SmallShmFileSystem() {
    if (unshare(CLONE_NEWNS) != 0) {
        const std::string uid = std::to_string(getuid()), gid = std::to_string(getgid());
        if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return false;
        WriteText("/proc/self/setgroups", "deny");
        if (!WriteText("/proc/self/uid_map", "0 " + uid + " 1") ||
            !WriteText("/proc/self/gid_map", "0 " + gid + " 1"))
            return false;
    }
    return mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           mount("kxtest", "/dev/shm", "tmpfs", MS_NOSUID | MS_NODEV, "size=1m,mode=1777") == 0;
}

constexpr const char* kFiller = "/dev/shm/kxtest-filler";

bool FillShmFileSystem() {
    const int fd = open(kFiller, O_WRONLY | O_CREAT | O_TRUNC, 0600);
    std::vector<char> block(64 * kK, 'f');
    ssize_t n = 0;
    while (fd >= 0 && (n = write(fd, block.data(), block.size())) > 0) {
    }
    const bool full = fd >= 0 && n < 0 && errno == ENOSPC;
    if (fd >= 0) close(fd);
    return full;
}

// Sets the soft file-size limit; 0 raises it back to the hard limit.
bool SetFileSizeLimit(rlim_t soft) {
    rlimit limit{};
    if (getrlimit(RLIMIT_FSIZE, &limit) != 0) return false;
    limit.rlim_cur = soft == 0 ? limit.rlim_max : soft;
    return setrlimit(RLIMIT_FSIZE, &limit) == 0;
}

// A way for the storage under the area to refuse writes: set up before the area exists (false:
// not possible on this system), exhausted once some pages of the area hold data, released, and
// the system's text for the refusal.
struct Refusal {
    const char* name;
    bool (*prepare)();
    bool (*exhaust)();
    bool (*release)();
    const char* text;
};

const Refusal kRefusals[] = {
    {"FileSystemFull", SmallShmFileSystem, FillShmFileSystem, [] { return unlink(kFiller) == 0; },
     "No space left on device (0x1C)"},
    // Where it is set, the limit stops writes at 128 KB into the data part.
    {"FileSizeLimit", [] { return std::signal(SIGXFSZ, SIG_IGN) != SIG_ERR; },
     [] { return SetFileSizeLimit(kHeader + 128 * kK); }, [] { return SetFileSizeLimit(0); },
     "File too large (0x1B)"},
};

void PrintTo(const Refusal& r, std::ostream* os) {
    *os << r.name;
}

class ShmStorageRefusal : public testing::TestWithParam<Refusal> {};

// Catches: a refused write reported as success or with another text; pages the area already
// had becoming unwritable; an object that stays broken once the storage has room again; and
// a new area that is created on storage that cannot hold it.
TEST_P(ShmStorageRefusal, WriteFailsWithTheSystemTextAndTheAreaRecovers) {
    const Refusal& r = GetParam();
    const std::string name = Name(r.name);
    const std::string text = r.text;
    const int status = InChild([&] {
        if (!r.prepare()) _exit(kSkip);
        std::vector<BYTE> a(64 * kK, 0xA1), b(64 * kK, 0xB2), back(64 * kK);
        CShareMemoryServer server;
        ASSERT_TRUE(server.CreateMap(name.c_str(), 512 * kK, 64 * kK)) << ErrorOf(server);
        ASSERT_TRUE(server.WriteData(0, a.data(), 64 * kK)) << ErrorOf(server);
        ASSERT_TRUE(r.exhaust());

        EXPECT_FALSE(server.WriteData(96 * kK, b.data(), 64 * kK));
        EXPECT_EQ(ErrorOf(server), kLockFailed + text);
        EXPECT_TRUE(server.WriteData(0, b.data(), 64 * kK)) << ErrorOf(server);
        EXPECT_TRUE(server.ReadData(0, back.data(), 64 * kK)) << ErrorOf(server);
        EXPECT_EQ(back, b);
        CShareMemoryServer other;
        EXPECT_FALSE(other.CreateMap((name + "-2").c_str(), 256 * kK, 0));
        EXPECT_EQ(ErrorOf(other), "Could not create share memory handle.\n\t" + text);

        ASSERT_TRUE(r.release());
        EXPECT_TRUE(server.WriteData(96 * kK, b.data(), 64 * kK)) << ErrorOf(server);
        EXPECT_TRUE(server.ReadData(96 * kK, back.data(), 64 * kK)) << ErrorOf(server);
        EXPECT_EQ(back, b);
        EXPECT_EQ(server.GetMapSize(), 512u * kK);
    });
    if (status == kSkip) GTEST_SKIP() << "cannot mount a small tmpfs on /dev/shm here";
    EXPECT_EQ(status, 0) << "the child's failures are printed above";
}

INSTANTIATE_TEST_SUITE_P(Storage, ShmStorageRefusal, testing::ValuesIn(kRefusals),
                         [](const auto& p) { return std::string(p.param.name); });

// Another process cuts the area's object to `keep` bytes (the header is the first 64 KB)
// before the transfer starts (stallPage -1), or while the kernel copies page `stallPage` of the
// caller's buffer. A read is cut where it stands. A write cannot be: the kernel holds the
// object's lock for the whole of a pwrite and the truncation waits for it, so the write lands
// whole and the cut shows at the next transfer (a copy through the mapped view instead would
// run into the cut and fault). The area holds 1 MB of data.
struct Cut {
    const char* name;
    bool write;
    DWORD window;  // 0: the default, which covers the whole area here
    UINT64 offset;
    DWORD length;
    int stallPage;
    UINT64 keep;
};

const Cut kCuts[] = {
    // The transfer straddles the end of a 256 KB window; the cut is at that end, so the first
    // part lands and the second finds no area to map.
    {"WriteStraddlingCutBefore", true, 256 * kK, 128 * kK, 256 * kK, -1, kHeader + 256 * kK},
    {"ReadStraddlingCutBefore", false, 256 * kK, 128 * kK, 256 * kK, -1, kHeader + 256 * kK},
    {"ReadStraddlingCutBetweenParts", false, 256 * kK, 128 * kK, 256 * kK, 31, kHeader + 256 * kK},
    // One window holds the whole transfer; the cut falls below its start.
    {"WriteCutBelowBefore", true, 0, 128 * kK, 512 * kK, -1, kHeader + 64 * kK},
    {"ReadCutBelowWhileCopying", false, 0, 128 * kK, 512 * kK, 64, kHeader + 64 * kK},
    {"WriteHeldWhileCut", true, 0, 128 * kK, 512 * kK, 64, kHeader + 64 * kK},
    {"WriteAfterTheWholeObjectIsGone", true, 0, 0, 4096, -1, 0},
};

void PrintTo(const Cut& c, std::ostream* os) {
    *os << c.name;
}

class ShmCutByAnotherProcess : public testing::TestWithParam<Cut> {};

// Catches: a SIGBUS from touching a view past the object's new end; a transfer into a cut area
// reported as success; a write that grows the object back; another text; and an object that
// can no longer transfer in the part that is left, or cannot be closed.
TEST_P(ShmCutByAnotherProcess, CutGivesTheTextAndLeavesTheObjectUsable) {
    const Cut& c = GetParam();
    const bool whole = c.write && c.stallPage >= 0;
    const std::string name = Name(c.name);
    CShareMemoryServer server;
    ASSERT_TRUE(server.CreateMap(name.c_str(), 1024 * kK, c.window)) << ErrorOf(server);
    shmtest::Cutter cutter(name);
    std::atomic<bool> cut{false};
    shmtest::StallingBuffer buf(
        c.length,
        c.stallPage < 0 ? shmtest::StallingBuffer::kNoStall : static_cast<std::size_t>(c.stallPage),
        0x6B, [&] { cut = whole ? cutter.Request(c.keep) : cutter.Cut(c.keep); });
    if (!buf.ok()) GTEST_SKIP() << "no userfaultfd for kernel accesses here: " << buf.why();
    if (c.stallPage < 0) {
        ASSERT_TRUE(cutter.Cut(c.keep));
    }

    const int done = c.write ? server.WriteData(c.offset, buf.data(), c.length)
                             : server.ReadData(c.offset, buf.data(), c.length);
    if (c.stallPage >= 0) {
        EXPECT_TRUE(buf.stalled());
        EXPECT_TRUE(cut && (!whole || cutter.Wait()));
    }
    EXPECT_EQ(done, whole ? 1 : 0);
    EXPECT_EQ(ErrorOf(server), whole ? "" : kCut);
    EXPECT_EQ(shmtest::ObjectSize(name), c.keep);
    if (whole) {
        EXPECT_FALSE(server.WriteData(c.offset, buf.data(), 1));
        EXPECT_EQ(ErrorOf(server), kCut);
    }

    // What is left of the data part still transfers; with nothing left, the same text again.
    BYTE one = 0x3C, back = 0;
    const bool left = c.keep > kHeader;
    EXPECT_EQ(server.WriteData(0, &one, 1) && server.ReadData(0, &back, 1), left)
        << ErrorOf(server);
    EXPECT_EQ(back, left ? one : 0);
    if (!left) {
        EXPECT_EQ(ErrorOf(server), kCut);
    }
    EXPECT_TRUE(server.DeleteMap());
    EXPECT_FALSE(shmtest::ObjectExists(name));
}

INSTANTIATE_TEST_SUITE_P(Cuts, ShmCutByAnotherProcess, testing::ValuesIn(kCuts),
                         [](const auto& p) { return std::string(p.param.name); });

class ShmPeerKilled : public testing::TestWithParam<bool> {};

// The peer is killed while the kernel copies its 1 MB write (held on one page of its buffer).
// Catches: a survivor whose transfers fail or hang after the peer's death; a dead server's
// area still opened as live (its clients would wait for a server that is gone); a dead
// server's leftover that no later server takes over and removes; and descriptors or names
// left behind.
TEST_P(ShmPeerKilled, SurvivorKeepsWorkingAndNothingIsLeft) {
    const bool serverDies = GetParam();
    const std::string name = Name(serverDies ? "server-dies" : "client-dies");
    {
        const shmtest::StallingBuffer probe(4096, 0, 0, [] {});
        if (!probe.ok()) GTEST_SKIP() << "no userfaultfd for kernel accesses here: " << probe.why();
    }
    const int descriptors = OpenDescriptors();
    {
        CShareMemoryServer server;
        CShareMemoryClient client;
        if (!serverDies) {
            ASSERT_TRUE(server.CreateMap(name.c_str(), 8 << 20, 1 << 20));
        }
        int sync[2];
        ASSERT_EQ(pipe(sync), 0);
        const pid_t pid = fork();
        if (pid == 0) {
            close(sync[0]);
            const bool ready = serverDies ? server.CreateMap(name.c_str(), 8 << 20, 1 << 20)
                                          : client.OpenMap(name.c_str(), 1 << 20);
            char word = ready ? 'o' : 'x';
            if (write(sync[1], &word, 1) != 1 || !ready) _exit(1);
            shmtest::StallingBuffer buf(1 << 20, 100, 0xC3, [&] {
                word = 's';
                if (write(sync[1], &word, 1) == 1)
                    for (;;) pause();
            });
            if (!buf.ok()) _exit(3);
            (serverDies ? static_cast<CShareMemoryBase&>(server) : client)
                .WriteData(4096, buf.data(), 1 << 20);
            _exit(2);  // the transfer ended without reaching the held page
        }
        ASSERT_GT(pid, 0);
        close(sync[1]);
        char word = 0;
        ASSERT_EQ(read(sync[0], &word, 1), 1);
        ASSERT_EQ(word, 'o');
        if (serverDies) {
            ASSERT_TRUE(client.OpenMap(name.c_str(), 1 << 20)) << ErrorOf(client);
        }
        const bool held = read(sync[0], &word, 1) == 1 && word == 's';
        if (held) kill(pid, SIGKILL);
        int status = 0;
        ASSERT_EQ(waitpid(pid, &status, 0), pid);
        close(sync[0]);
        ASSERT_TRUE(held) << "the peer's transfer was not held inside the kernel's copy";
        EXPECT_TRUE(WIFSIGNALED(status));

        CShareMemoryBase& survivor = serverDies ? static_cast<CShareMemoryBase&>(client) : server;
        std::vector<BYTE> mine(64, 0x21), back(64, 0);
        EXPECT_TRUE(survivor.WriteData(7 << 20, mine.data(), 64)) << ErrorOf(survivor);
        EXPECT_TRUE(survivor.ReadData(7 << 20, back.data(), 64)) << ErrorOf(survivor);
        EXPECT_EQ(back, mine);

        CShareMemoryClient late;
        EXPECT_EQ(late.OpenMap(name.c_str(), 0), serverDies ? 0 : 1);
        if (serverDies) {
            EXPECT_EQ(ErrorOf(late),
                      "Could not open share memory handle.\n\tNo such file or directory (0x2)");
            client.DeleteMap();
            // The dead server's object is taken over by the next server, which removes it.
            EXPECT_TRUE(shmtest::ObjectExists(name));
            ASSERT_TRUE(server.CreateMap(name.c_str(), 8 << 20, 0)) << ErrorOf(server);
        } else {
            std::fill(back.begin(), back.end(), 0);
            EXPECT_TRUE(late.ReadData(7 << 20, back.data(), 64)) << ErrorOf(late);
            EXPECT_EQ(back, mine);
        }
    }
    EXPECT_FALSE(shmtest::ObjectExists(name));
    EXPECT_EQ(OpenDescriptors(), descriptors);
}

INSTANTIATE_TEST_SUITE_P(Peer, ShmPeerKilled, testing::Bool(),
                         [](const auto& p) { return p.param ? "ServerDies" : "ClientDies"; });

}  // namespace
