// The channel within one process: the header other builds read, the lifetime of an area's
// name, and bad input (every case fails with its own text, leaves the object in the stated
// state, and never crashes or touches memory outside the area).
#include <gtest/gtest.h>

#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <bit>
#include <climits>
#include <cstdio>
#include <fstream>
#include <set>

#include "platform/shm_p.h"
#include "shm_pattern.h"

namespace {

using shmtest::ErrorOf;
using shmtest::Name;

const char* const kInvalidParameter = "Invalid parameter!";
const char* const kForeign = "Invalid share memory area (create by other process)!";
const char* const kNoSuchArea =
    "Could not open share memory handle.\n\tNo such file or directory (0x2)";

// Where the object of an area lives in the file system (Linux puts POSIX objects there).
std::string ObjectPath(const std::string& name) {
    return "/dev/shm" + kxbase::detail::ShmObjectName(name);
}

// The fixed header fields as this library writes them (the test runs little-endian only).
std::string Header(const char* sig, DWORD headerSize, UINT64 total) {
    static_assert(std::endian::native == std::endian::little);
    return std::string(sig, 4) + std::string(reinterpret_cast<const char*>(&headerSize), 4) +
           std::string(reinterpret_cast<const char*>(&total), 8);
}

// Catches: a wrong signature, header size or total size, big-endian or misplaced fields,
// garbage in the unused header bytes, and data offset 0 not landing at area offset H.
TEST(ShmChannel, HeaderIsXplmWithLittleEndianSizesAndDataFollowsIt) {
    const std::string name = Name("header");
    CShareMemoryServer server;
    char marker[] = "\xA1\xB2\xC3\xD4";
    ASSERT_TRUE(server.CreateMap(name.c_str(), 3 << 20, 65536) && server.WriteData(0, marker, 4));
    std::string raw(65536 + 4, '\0'), expected = Header("XPLM", 65536, 65536 + (3 << 20));
    std::ifstream(ObjectPath(name), std::ios::binary).read(raw.data(), 65536 + 4);
    expected.resize(65536);
    EXPECT_EQ(raw, expected + marker);
}

// Catches: a server close that pulls the area from under attached clients, or that leaves
// the name behind so that new clients attach to a dead channel.
TEST(ShmChannel, ServerCloseRemovesTheNameButAttachedClientsKeepWorking) {
    const std::string name = Name("server-gone");
    auto server = std::make_unique<CShareMemoryServer>();
    ASSERT_EQ(server->CreateMap(name.c_str(), 1 << 20, 0), 1);
    CShareMemoryClient client, late;
    ASSERT_EQ(client.OpenMap(name.c_str(), 4096), 1);
    server.reset();
    std::vector<BYTE> buf(20000), back(20000);
    for (std::size_t i = 0; i < buf.size(); ++i) buf[i] = shmtest::PatternByte(i, 9);
    EXPECT_TRUE(client.WriteData(500000, buf.data(), 20000) &&
                client.ReadData(500000, back.data(), 20000) && back == buf);
    EXPECT_EQ(late.OpenMap(name.c_str(), 0), 0);
    EXPECT_EQ(ErrorOf(late), kNoSuchArea);
}

// Catches: a client that attaches to the leftover of a server that died without closing
// (the name survives the process here), and a new server that cannot take that name over.
TEST(ShmChannel, StaleAreaOfACrashedServer) {
    const std::string name = Name("crashed");
    const pid_t pid = fork();
    if (pid == 0) {
        CShareMemoryServer server;  // dies below without closing
        BYTE b = 0x5A;
        _exit(server.CreateMap(name.c_str(), 1 << 20, 0) && server.WriteData(0, &b, 1) ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(pid, &status, 0), pid);
    ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    CShareMemoryClient client;
    EXPECT_EQ(client.OpenMap(name.c_str(), 0), 0);
    EXPECT_EQ(ErrorOf(client), kNoSuchArea);
    EXPECT_EQ(client.GetMapSize(), 0u);

    CShareMemoryServer server;
    ASSERT_EQ(server.CreateMap(name.c_str(), 2 << 20, 0), 1) << ErrorOf(server);
    ASSERT_EQ(client.OpenMap(name.c_str(), 0), 1) << ErrorOf(client);
    EXPECT_EQ(client.GetMapSize(), 2u << 20);
    BYTE b = 0;
    EXPECT_TRUE(client.ReadData(0, &b, 1) && b == 0x5A);  // a taken-over area keeps its data
}

// Catches: create parameters that slip through (a null name, a zero-sized area, a window
// larger than the data, an area the system cannot hold) and a failed create that leaves
// the object half open.
TEST(ShmBadInput, CreateParameters) {
    const std::string kCreate = "Could not create share memory handle.\n\t";
    const struct {
        const char* name;
        UINT64 size;
        DWORD window;
        std::string text;
    } cases[] = {{nullptr, 4096, 0, kInvalidParameter},
                 {"x", 0, 0, kInvalidParameter},
                 {"x", 4096, 4097, kInvalidParameter},
                 {"x", 1, 0xFFFFFFFF, kInvalidParameter},
                 {"huge", ~0ull, 0, kCreate + "File too large (0x1B)"},
                 {"too-big", 1ull << 60, 0, kCreate + "No space left on device (0x1C)"}};
    for (const auto& c : cases) {
        CShareMemoryServer server;
        EXPECT_EQ(server.CreateMap(c.name ? Name(c.name).c_str() : nullptr, c.size, c.window), 0);
        EXPECT_EQ(ErrorOf(server), c.text);
        BYTE b = 0;
        EXPECT_TRUE(server.GetMapSize() == 0 && !server.ReadData(0, &b, 1));
        EXPECT_EQ(ErrorOf(server), "Invalid share memory handle!");
    }
}

// Catches: offsets at or past the end that transfer anyway (out-of-area access), offsets so
// large that offset + header (65536) wraps into the header, zero-length or null-buffer
// transfers that fail or copy, and a run past the end that copies more than the area holds.
TEST(ShmBadInput, TransferOffsetsLengthsAndBuffers) {
    const std::string name = Name("offsets");
    const UINT64 size = 100000;
    CShareMemoryServer server;
    ASSERT_EQ(server.CreateMap(name.c_str(), size, 4096), 1);
    BYTE buf[64] = {};
    const struct {
        UINT64 offset;
        void* buffer;
        DWORD length;
        int result;
    } cases[] = {{0, buf, 0, 1},
                 {size - 1, nullptr, 64, 1},
                 {size - 1, buf, 0, 1},
                 {size, buf, 0, 0},
                 {size, nullptr, 1, 0},
                 {size, buf, 1, 0},
                 {size + 1, buf, 1, 0},
                 {~0ull, buf, 1, 0},
                 {~0ull - 65535, buf, 16, 0},
                 {~0ull - 65536 + 16, buf, 16, 0}};
    for (const auto& c : cases)
        for (const bool write : {false, true}) {
            EXPECT_EQ(write ? server.WriteData(c.offset, c.buffer, c.length)
                            : server.ReadData(c.offset, c.buffer, c.length),
                      c.result)
                << c.offset << " write=" << write;
            EXPECT_TRUE(c.result || ErrorOf(server) == kInvalidParameter) << c.offset;
        }
    // The header is untouched by the wrapping offsets.
    CShareMemoryClient client;
    ASSERT_EQ(client.OpenMap(name.c_str(), 0), 1) << ErrorOf(client);
    EXPECT_EQ(client.GetMapSize(), size);
    // A write that runs past the end copies up to the end, then fails; the object stays usable.
    std::vector<BYTE> tail(5000, 0xEE), back(3000);
    EXPECT_EQ(server.WriteData(size - 3000, tail.data(), 5000), 0);
    EXPECT_EQ(ErrorOf(server), kInvalidParameter);
    EXPECT_TRUE(client.ReadData(size - 3000, back.data(), 3000) &&
                back == std::vector<BYTE>(3000, 0xEE));
    EXPECT_EQ(server.WriteData(0, tail.data(), 10), 1);
}

// Catches: a client that trusts whatever object carries the name: no signature, a header
// whose total size exceeds the object (reading past it would fault), impossible header
// sizes, an empty object. Each is refused with the foreign-area text and leaves it closed.
TEST(ShmBadInput, ForeignAndTruncatedAreas) {
    const struct {
        const char* what;
        off_t objectSize;
        std::string head;
    } cases[] = {{"empty object", 0, ""},
                 {"shorter than the fields", 10, "XPLM"},
                 {"no signature", 1 << 20, Header("XPLN", 65536, 1 << 20)},
                 {"zeros", 1 << 20, ""},
                 {"truncated", 1 << 20, Header("XPLM", 65536, 64ull << 30)},
                 {"header below the fields", 1 << 20, Header("XPLM", 8, 1 << 20)},
                 {"header past the total", 1 << 20, Header("XPLM", 65536 * 32, 1 << 20)}};
    for (const auto& c : cases) {
        const std::string name = Name(std::string("foreign-") + c.what);
        std::ofstream(ObjectPath(name), std::ios::binary) << c.head;
        ASSERT_EQ(truncate(ObjectPath(name).c_str(), c.objectSize), 0);
        CShareMemoryClient client;
        EXPECT_EQ(client.OpenMap(name.c_str(), 0), 0) << c.what;
        EXPECT_EQ(ErrorOf(client), kForeign) << c.what;
        EXPECT_EQ(client.GetMapSize(), 0u) << c.what;
        unlink(ObjectPath(name).c_str());
    }
    CShareMemoryClient client;
    EXPECT_EQ(client.OpenMap(nullptr, 0), 0);
    EXPECT_EQ(ErrorOf(client), kInvalidParameter);
}

// Catches: a crash (SIGBUS) when another process cuts the object short under open views:
// the transfer must fail with the window text and the system's reason instead; a write that
// grows the cut object back (a bare pwrite past its end would); a read or write that stops
// short of the cut; and a caller buffer that is not memory, which must fail, not crash.
TEST(ShmBadInput, ObjectCutShortUnderAnOpenView) {
    const std::string name = Name("cut");
    const char* const kCut = "Could not lock buffer.\n\tBad address (0xE)";
    const off_t kCutAt = 65536 + 4096;
    CShareMemoryServer server;
    CShareMemoryClient client, late;
    ASSERT_TRUE(server.CreateMap(name.c_str(), 1 << 20, 0) && client.OpenMap(name.c_str(), 0));
    ASSERT_EQ(truncate(ObjectPath(name).c_str(), kCutAt), 0);
    std::vector<BYTE> buf(8192, 0x11);
    const struct {
        CShareMemoryBase* side;
        bool write;
        UINT64 offset;
        DWORD length;
        int result;
    } cases[] = {{&client, false, 500000, 8192, 0}, {&client, true, 500000, 1, 0},
                 {&server, true, 4000, 8192, 0},    {&server, false, 4000, 8192, 0},
                 {&client, true, 4095, 1, 1},       {&client, false, 4095, 1, 1},
                 {&server, true, 0, 4096, 1},       {&server, true, 4096, 1, 0}};
    for (const auto& c : cases) {
        const int result = c.write ? c.side->WriteData(c.offset, buf.data(), c.length)
                                   : c.side->ReadData(c.offset, buf.data(), c.length);
        EXPECT_EQ(result, c.result) << c.offset << " write=" << c.write;
        EXPECT_TRUE(result != 0 || ErrorOf(*c.side) == kCut)
            << c.offset << ": " << ErrorOf(*c.side);
        struct stat st {};
        ASSERT_EQ(stat(ObjectPath(name).c_str(), &st), 0);
        EXPECT_EQ(st.st_size, kCutAt) << "the object grew: " << c.offset;
    }
    EXPECT_EQ(late.OpenMap(name.c_str(), 0), 0);  // the header no longer fits
    EXPECT_EQ(ErrorOf(late), kForeign);

    // A buffer the process cannot touch, inside the object that is left.
    void* const none = mmap(nullptr, 4096, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(none, MAP_FAILED);
    EXPECT_EQ(server.WriteData(0, none, 16), 0);
    EXPECT_EQ(ErrorOf(server), kCut);
    EXPECT_EQ(client.ReadData(0, none, 16), 0);
    EXPECT_EQ(ErrorOf(client), kCut);
    munmap(none, 4096);
}

// Catches: names that break the POSIX name rules (a second '/', too long, empty after the
// slash) or that collide (escaping that is not one-to-one, a hash form that meets an
// escaped form, long names cut to the same prefix), names that map but cannot be created
// or opened, and a wrong SHA-256 in the hashed form of long names.
TEST(ShmBadInput, AnyNameMapsToItsOwnWorkingArea) {
    std::vector<std::string> names = {"",       "/",   "\\",           "a/b",  "a\\b",
                                      "a%2Fb",  "a_b", "Global\\chan", "chan", "\xE4\xFF\x01",
                                      "C:\\x.y"};
    for (const char c : {'/', '\\', 'a'})  // long names that share the prefix the hash follows
        names.insert(names.end(), {std::string(300, c), std::string(5000, c) + "b"});
    std::set<std::string> objects;
    for (const std::string& n : names) {
        const std::string o = kxbase::detail::ShmObjectName(n), unique = Name(n);
        EXPECT_TRUE(o[0] == '/' && o.find('/', 1) == std::string::npos) << n;
        EXPECT_LE(o.size() - 1, std::size_t{NAME_MAX}) << n;
        EXPECT_TRUE(objects.insert(o).second) << "collision for " << n;
        CShareMemoryServer server;  // under a name private to this process
        CShareMemoryClient client;
        EXPECT_TRUE(server.CreateMap(unique.c_str(), 4096, 0) && client.OpenMap(unique.c_str(), 0))
            << n << ": " << ErrorOf(server) << ErrorOf(client);
    }
    // Local\ names the same area as the bare name, as it does on Windows.
    EXPECT_EQ(kxbase::detail::ShmObjectName("Local\\chan"), kxbase::detail::ShmObjectName("chan"));
    EXPECT_EQ(kxbase::detail::Sha256Hex("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"),
              "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1");
}

// Catches: a client window of almost 4 GB whose 32-bit length wraps so that it no longer
// covers the position asked for; the transfer must fail instead of looping for ever.
TEST(ShmBadInput, WindowLengthThatWrapsPastFourGigabytes) {
    if (shmtest::FreeShmBytes() < (7ull << 30)) GTEST_SKIP() << "/dev/shm too small";
    const std::string name = Name("wrap");
    CShareMemoryServer server;
    CShareMemoryClient client;
    ASSERT_EQ(server.CreateMap(name.c_str(), 6ull << 30, 65536), 1);
    ASSERT_EQ(client.OpenMap(name.c_str(), 0xFFFFFFFF), 1) << ErrorOf(client);
    BYTE b = 0;
    EXPECT_EQ(client.ReadData(100, &b, 1), 1);  // inside the first window
    // Outside it, unaligned: the window length (pos - start + 0xFFFFFFFF) wraps short.
    EXPECT_EQ(client.ReadData((5ull << 30) + 17, &b, 1), 0);
    EXPECT_EQ(ErrorOf(client), kInvalidParameter);
    EXPECT_EQ(client.ReadData((5ull << 30), &b, 1), 1);  // aligned: clamped to the area
}

}  // namespace
