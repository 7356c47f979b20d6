// The channel's contract within one process: header layout, window placement and movement,
// straddling transfers, lifecycle of the name.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <string>
#include <vector>

#include "platform/shm_p.h"
#include "shm_pattern.h"

namespace {

using shmtest::Fill;
using shmtest::FirstMismatch;

// Test-only access to the window bookkeeping.
template <class Base>
struct Probe : Base {
    UINT64 ViewStart() const { return this->m_nViewStart; }
    DWORD ViewLength() const { return this->m_nViewLength; }
    bool HasView() const { return this->m_pView != nullptr; }
    DWORD HeaderSize() const { return this->m_nHeaderSize; }
    UINT64 TotalSize() const { return this->m_nTotalSize; }
    DWORD WindowSize() const { return this->m_nWindowSize; }
    int MapView(UINT64 pos, DWORD len) { return this->_MapView(pos, len); }
};
using Server = Probe<CShareMemoryServer>;
using Client = Probe<CShareMemoryClient>;

std::string Name(const std::string& what) {
    return "kxtest/channel/" + std::to_string(getpid()) + "/" + what;
}

std::string ErrorOf(CShareMemoryBase& shm) {
    CString e;
    shm.GetLastErrorInfo(e);
    return e.str();
}

// Maps the raw object of an area name, to look at the bytes another platform would see.
std::vector<BYTE> RawBytes(const std::string& name, std::size_t offset, std::size_t length) {
    const int fd = shm_open(kxbase::detail::ShmObjectName(name).c_str(), O_RDONLY, 0);
    if (fd < 0) return {};
    void* p = mmap(nullptr, offset + length, PROT_READ, MAP_SHARED, fd, 0);
    close(fd);
    if (p == MAP_FAILED) return {};
    std::vector<BYTE> out(static_cast<BYTE*>(p) + offset, static_cast<BYTE*>(p) + offset + length);
    munmap(p, offset + length);
    return out;
}

// Catches: a wrong signature, header size or total size, big-endian or misplaced fields,
// garbage in the unused header bytes, and data offset 0 not landing at area offset H.
TEST(ShmChannel, HeaderIsXplmWithLittleEndianSizesAndDataFollowsIt) {
    const std::string name = Name("header");
    Server server;
    ASSERT_EQ(server.CreateMap(name.c_str(), 3 << 20, 65536), 1) << ErrorOf(server);
    EXPECT_EQ(server.HeaderSize(), 65536u);
    EXPECT_EQ(server.GetMapSize(), 3u << 20);
    BYTE marker[4] = {0xA1, 0xB2, 0xC3, 0xD4};
    ASSERT_EQ(server.WriteData(0, marker, 4), 1);

    const std::vector<BYTE> raw = RawBytes(name, 0, 65536 + 4);
    ASSERT_EQ(raw.size(), 65536u + 4);
    const UINT64 total = 65536ull + (3u << 20);
    const BYTE expected[16] = {'X',
                               'P',
                               'L',
                               'M',
                               0x00,
                               0x00,
                               0x01,
                               0x00,
                               static_cast<BYTE>(total),
                               static_cast<BYTE>(total >> 8),
                               static_cast<BYTE>(total >> 16),
                               static_cast<BYTE>(total >> 24),
                               0,
                               0,
                               0,
                               0};
    EXPECT_EQ(std::memcmp(raw.data(), expected, 16), 0);
    for (std::size_t i = 16; i < 65536; ++i) ASSERT_EQ(raw[i], 0) << "header byte " << i;
    EXPECT_EQ(std::memcmp(raw.data() + 65536, marker, 4), 0);
}

// Catches: a first window that is not where each side's contract puts it (the server's at the
// data, the client's at area offset 0), an unclamped window past the area's end, a default
// window size other than 20 MB, and a reopen that keeps the old window.
TEST(ShmChannel, FirstWindowsAndDefaultWindowSize) {
    const std::string name = Name("windows");
    Server server;
    ASSERT_EQ(server.CreateMap(name.c_str(), 1 << 20, 0), 1) << ErrorOf(server);
    EXPECT_EQ(server.WindowSize(), 20u << 20);
    EXPECT_EQ(server.ViewStart(), 65536u);
    EXPECT_EQ(server.ViewLength(), 1u << 20);  // clamped to the end of the area

    Client client;
    ASSERT_EQ(client.OpenMap(name.c_str(), 0), 1) << ErrorOf(client);
    EXPECT_EQ(client.WindowSize(), 20u << 20);
    EXPECT_EQ(client.ViewStart(), 0u);
    EXPECT_EQ(client.ViewLength(), 65536u + (1u << 20));
    EXPECT_EQ(client.GetMapSize(), 1u << 20);

    // Reopening an open client starts over with the new window size.
    ASSERT_EQ(client.OpenMap(name.c_str(), 8192), 1);
    EXPECT_EQ(client.ViewStart(), 0u);
    EXPECT_EQ(client.ViewLength(), 8192u);
    EXPECT_EQ(ErrorOf(client), "");
}

// Catches: a window moved on every transfer (it must move only when a transfer leaves it),
// windows not rounded down to the granularity, and straddling transfers that drop, repeat or
// shift bytes at a window end. Transfers of prime lengths cross many window ends.
TEST(ShmChannel, StraddlingTransfersMoveTheWindowOnlyWhenLeavingIt) {
    const std::string name = Name("straddle");
    const UINT64 size = 5 << 20;
    Server server;
    ASSERT_EQ(server.CreateMap(name.c_str(), size, 65536), 1);
    std::vector<BYTE> inside(1000);
    Fill(inside, 100, 1);
    ASSERT_EQ(server.WriteData(100, inside.data(), 1000), 1);
    EXPECT_EQ(server.ViewStart(), 65536u);  // still the first window

    // A transfer that crosses the first window's end moves it to the page of the crossing.
    std::vector<BYTE> across(5000);
    Fill(across, 63000, 1);
    ASSERT_EQ(server.WriteData(63000, across.data(), 5000), 1);
    EXPECT_EQ(server.ViewStart(), 65536u + 65536u);
    EXPECT_EQ(server.ViewLength(), 65536u);

    // Whole data part, in odd-sized pieces, written by the server and read by a client whose
    // windows are of another size.
    std::vector<BYTE> buf;
    for (UINT64 at = 0; at < size; at += 99991) {
        buf.resize(static_cast<std::size_t>(std::min<UINT64>(99991, size - at)));
        Fill(buf, at, 3);
        ASSERT_EQ(server.WriteData(at, buf.data(), static_cast<DWORD>(buf.size())), 1) << at;
    }
    Client client;
    ASSERT_EQ(client.OpenMap(name.c_str(), 3 * 4096), 1);
    for (UINT64 at = 0; at < size; at += 70001) {
        buf.assign(static_cast<std::size_t>(std::min<UINT64>(70001, size - at)), 0);
        ASSERT_EQ(client.ReadData(at, buf.data(), static_cast<DWORD>(buf.size())), 1) << at;
        ASSERT_EQ(FirstMismatch(buf, at, 3), -1) << "read at " << at;
        EXPECT_EQ(client.ViewStart() % 4096, 0u);
    }
    // One read covering the whole data part in a single call.
    std::vector<BYTE> all(size);
    ASSERT_EQ(client.ReadData(0, all.data(), static_cast<DWORD>(size)), 1);
    EXPECT_EQ(FirstMismatch(all, 0, 3), -1);
}

// Catches: a server close that pulls the area from under attached clients, or that leaves
// the name behind so that new clients attach to a dead channel.
TEST(ShmChannel, ServerCloseRemovesTheNameButAttachedClientsKeepWorking) {
    const std::string name = Name("server-gone");
    auto server = std::make_unique<Server>();
    ASSERT_EQ(server->CreateMap(name.c_str(), 1 << 20, 0), 1);
    Client client;
    ASSERT_EQ(client.OpenMap(name.c_str(), 4096), 1);
    server.reset();
    std::vector<BYTE> buf(20000);
    Fill(buf, 500000, 9);
    EXPECT_EQ(client.WriteData(500000, buf.data(), 20000), 1);
    std::vector<BYTE> back(20000);
    EXPECT_EQ(client.ReadData(500000, back.data(), 20000), 1);
    EXPECT_EQ(back, buf);
    Client late;
    EXPECT_EQ(late.OpenMap(name.c_str(), 0), 0);
    EXPECT_EQ(ErrorOf(late),
              "Could not open share memory handle.\n\tNo such file or directory (0x2)");
}

// Catches: a client that attaches to the leftover of a server that died without closing
// (the name survives the process here), and a new server that cannot take that name over.
TEST(ShmChannel, StaleAreaOfACrashedServer) {
    const std::string name = Name("crashed");
    const pid_t pid = fork();
    if (pid == 0) {
        CShareMemoryServer server;
        const int ok = server.CreateMap(name.c_str(), 1 << 20, 0);
        BYTE b = 0x5A;
        server.WriteData(0, &b, 1);
        _exit(ok ? 0 : 1);  // dies without DeleteMap
    }
    int status = 0;
    ASSERT_EQ(waitpid(pid, &status, 0), pid);
    ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);

    Client client;
    EXPECT_EQ(client.OpenMap(name.c_str(), 0), 0);
    EXPECT_EQ(ErrorOf(client),
              "Could not open share memory handle.\n\tNo such file or directory (0x2)");
    EXPECT_EQ(client.GetMapSize(), 0u);

    Server server;
    ASSERT_EQ(server.CreateMap(name.c_str(), 2 << 20, 0), 1) << ErrorOf(server);
    ASSERT_EQ(client.OpenMap(name.c_str(), 0), 1) << ErrorOf(client);
    EXPECT_EQ(client.GetMapSize(), 2u << 20);
    BYTE b = 0;
    ASSERT_EQ(client.ReadData(0, &b, 1), 1);
    EXPECT_EQ(b, 0x5A);  // a taken-over area keeps its data
}

// Catches: SHA-256 mistakes in the padding of one- and two-block messages (long names would
// then still work but lose their collision resistance).
TEST(ShmChannel, NameHashIsSha256) {
    using kxbase::detail::Sha256Hex;
    EXPECT_EQ(Sha256Hex(""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    EXPECT_EQ(Sha256Hex("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(Sha256Hex("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"),
              "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1");
}

}  // namespace
