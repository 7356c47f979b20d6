// Bad input to the channel: every case fails with its own text, leaves the object in the
// stated state, and never crashes or touches memory outside the area.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <climits>
#include <cstring>
#include <set>
#include <string>
#include <vector>

#include "platform/shm_p.h"
#include "shm_pattern.h"

namespace {

const char* const kInvalidParameter = "Invalid parameter!";
const char* const kForeign = "Invalid share memory area (create by other process)!";

std::string Name(const std::string& what) {
    return "kxtest/bad/" + std::to_string(getpid()) + "/" + what;
}

std::string ErrorOf(CShareMemoryBase& shm) {
    CString e;
    const int n = shm.GetLastErrorInfo(e);
    EXPECT_EQ(n, e.GetLength());
    return e.str();
}

// A shared memory object under an area's name that this library did not create.
struct ForeignObject {
    std::string object;
    ForeignObject(const std::string& name, std::size_t size, const std::vector<BYTE>& head)
        : object(kxbase::detail::ShmObjectName(name)) {
        const int fd = shm_open(object.c_str(), O_RDWR | O_CREAT | O_TRUNC, 0600);
        EXPECT_GE(fd, 0);
        EXPECT_EQ(ftruncate(fd, static_cast<off_t>(size)), 0);
        if (!head.empty()) {
            EXPECT_EQ(pwrite(fd, head.data(), head.size(), 0), ssize_t(head.size()));
        }
        close(fd);
    }
    ~ForeignObject() { shm_unlink(object.c_str()); }
};

std::vector<BYTE> Header(const char sig[4], UINT64 headerSize, UINT64 total) {
    std::vector<BYTE> h(16, 0);
    std::memcpy(h.data(), sig, 4);
    for (int i = 0; i < 4; ++i) h[4 + i] = static_cast<BYTE>(headerSize >> (8 * i));
    for (int i = 0; i < 8; ++i) h[8 + i] = static_cast<BYTE>(total >> (8 * i));
    return h;
}

// Catches: create parameters that slip through (a zero-sized area, a window larger than the
// data, a null name) and a failed create that leaves the object half open.
TEST(ShmBadInput, CreateParameters) {
    struct Case {
        const char* name;
        UINT64 size;
        DWORD window;
    } cases[] = {{nullptr, 4096, 0}, {"x", 0, 0}, {"x", 4096, 4097}, {"x", 1, 0xFFFFFFFF}};
    for (const Case& c : cases) {
        CShareMemoryServer server;
        EXPECT_EQ(server.CreateMap(c.name, c.size, c.window), 0);
        EXPECT_EQ(ErrorOf(server), kInvalidParameter);
        EXPECT_EQ(server.GetMapSize(), 0u);
        BYTE b = 0;
        EXPECT_EQ(server.ReadData(0, &b, 1), 0);
        EXPECT_EQ(ErrorOf(server), "Invalid share memory handle!");
    }
    // An area beyond what the system can address or hold fails with the system's reason.
    CShareMemoryServer server;
    EXPECT_EQ(server.CreateMap(Name("huge").c_str(), ~0ull, 0), 0);
    EXPECT_EQ(ErrorOf(server), "Could not create share memory handle.\n\tFile too large (0x1B)");
    EXPECT_EQ(server.CreateMap(Name("too-big").c_str(), 1ull << 60, 0), 0);
    EXPECT_EQ(ErrorOf(server).rfind("Could not create share memory handle.\n\t", 0), 0u);
}

// Catches: offsets at or past the end that transfer anyway (out-of-area access), offsets so
// large that offset + header wraps into the header, zero-length or null-buffer transfers
// that fail or copy, and a run past the end that copies more than the area holds.
TEST(ShmBadInput, TransferOffsetsLengthsAndBuffers) {
    const std::string name = Name("offsets");
    const UINT64 size = 100000;
    CShareMemoryServer server;
    ASSERT_EQ(server.CreateMap(name.c_str(), size, 4096), 1);
    BYTE buf[64] = {};
    struct Case {
        UINT64 offset;
        void* buffer;
        DWORD length;
        int result;
        const char* error;
    } cases[] = {
        {0, buf, 0, 1, ""},
        {size - 1, nullptr, 64, 1, ""},
        {size - 1, buf, 0, 1, ""},
        {size, buf, 0, 0, kInvalidParameter},
        {size, nullptr, 1, 0, kInvalidParameter},
        {size, buf, 1, 0, kInvalidParameter},
        {size + 1, buf, 1, 0, kInvalidParameter},
        {~0ull, buf, 1, 0, kInvalidParameter},
        {~0ull - 65535, buf, 16, 0, kInvalidParameter},  // offset + H wraps to 0
        {~0ull - 65536 + 16, buf, 16, 0, kInvalidParameter},
    };
    for (const Case& c : cases) {
        for (int write = 0; write < 2; ++write) {
            const int r = write ? server.WriteData(c.offset, c.buffer, c.length)
                                : server.ReadData(c.offset, c.buffer, c.length);
            EXPECT_EQ(r, c.result) << c.offset << " write=" << write;
            if (c.result == 0) {
                EXPECT_EQ(ErrorOf(server), c.error) << c.offset;
            }
        }
    }
    // The header is untouched by the wrapping offsets.
    CShareMemoryClient client;
    ASSERT_EQ(client.OpenMap(name.c_str(), 0), 1) << ErrorOf(client);
    EXPECT_EQ(client.GetMapSize(), size);

    // A write that runs past the end copies up to the end, then fails.
    std::vector<BYTE> tail(5000, 0xEE);
    EXPECT_EQ(server.WriteData(size - 3000, tail.data(), 5000), 0);
    EXPECT_EQ(ErrorOf(server), kInvalidParameter);
    std::vector<BYTE> back(3000);
    EXPECT_EQ(client.ReadData(size - 3000, back.data(), 3000), 1);
    EXPECT_EQ(back, std::vector<BYTE>(3000, 0xEE));
    // The object is still open and usable after such a failure.
    EXPECT_EQ(server.WriteData(0, tail.data(), 10), 1);
}

// Catches: a client that trusts whatever object carries the name: no signature, a header
// whose total size exceeds the object (reading past it would fault), impossible header
// sizes, an empty object. Each is refused with the foreign-area text and leaves it closed.
TEST(ShmBadInput, ForeignAndTruncatedAreas) {
    struct Case {
        const char* what;
        std::size_t objectSize;
        std::vector<BYTE> head;
    } cases[] = {
        {"empty object", 0, {}},
        {"shorter than the fields", 10, {'X', 'P', 'L', 'M'}},
        {"no signature", 1 << 20, Header("XPLN", 65536, 1 << 20)},
        {"zeros", 1 << 20, {}},
        {"truncated", 1 << 20, Header("XPLM", 65536, 64ull << 30)},
        {"header below the fields", 1 << 20, Header("XPLM", 8, 1 << 20)},
        {"header past the total", 1 << 20, Header("XPLM", 65536 * 32, 1 << 20)},
    };
    for (const Case& c : cases) {
        const std::string name = Name(std::string("foreign-") + c.what);
        ForeignObject object(name, c.objectSize, c.head);
        CShareMemoryClient client;
        EXPECT_EQ(client.OpenMap(name.c_str(), 0), 0) << c.what;
        EXPECT_EQ(ErrorOf(client), kForeign) << c.what;
        EXPECT_EQ(client.GetMapSize(), 0u) << c.what;
        BYTE b = 0;
        EXPECT_EQ(client.ReadData(0, &b, 1), 0);
    }
    CShareMemoryClient client;
    EXPECT_EQ(client.OpenMap(nullptr, 0), 0);
    EXPECT_EQ(ErrorOf(client), kInvalidParameter);
}

// Catches: a crash (SIGBUS) when another process cuts the object short under open views:
// the transfer must fail with the window text and the system's reason instead.
TEST(ShmBadInput, ObjectCutShortUnderAnOpenView) {
    const std::string name = Name("cut");
    CShareMemoryServer server;
    ASSERT_EQ(server.CreateMap(name.c_str(), 1 << 20, 0), 1);
    CShareMemoryClient client;
    ASSERT_EQ(client.OpenMap(name.c_str(), 0), 1);
    const int fd = shm_open(kxbase::detail::ShmObjectName(name).c_str(), O_RDWR, 0);
    ASSERT_GE(fd, 0);
    ASSERT_EQ(ftruncate(fd, 65536 + 4096), 0);
    close(fd);
    std::vector<BYTE> buf(8192, 0x11);
    EXPECT_EQ(client.ReadData(500000, buf.data(), 8192), 0);
    EXPECT_EQ(ErrorOf(client), "Could not lock buffer.\n\tBad address (0xE)");
    EXPECT_EQ(server.WriteData(4000, buf.data(), 8192), 0);  // straddles the cut
    EXPECT_EQ(ErrorOf(server), "Could not lock buffer.\n\tBad address (0xE)");
    EXPECT_EQ(server.WriteData(0, buf.data(), 4096), 1);  // what is left still works
    // A client that opens now sees a header that does not fit the object.
    CShareMemoryClient late;
    EXPECT_EQ(late.OpenMap(name.c_str(), 0), 0);
    EXPECT_EQ(ErrorOf(late), kForeign);
}

// Catches: names that break the POSIX name rules (a second '/', too long, empty after the
// slash) or that collide: escaping that is not one-to-one, a hash form that can meet an
// escaped form, prefixes of long names that are cut to the same text.
TEST(ShmBadInput, NamesMapToDistinctValidObjects) {
    const std::string longA(5000, 'a');
    const std::vector<std::string> names = {"",
                                            "/",
                                            "//",
                                            "\\",
                                            "\\\\",
                                            "a/b",
                                            "a\\b",
                                            "a%2Fb",
                                            "a%5Cb",
                                            "a_b",
                                            "A/B",
                                            "a b",
                                            "Global\\chan",
                                            "chan",
                                            std::string(300, '/'),
                                            std::string(300, '\\'),
                                            longA,
                                            longA + "b",
                                            std::string(4999, 'a') + "/",
                                            std::string("\xE4\xB8\xAD\xFF\x01", 5),
                                            std::string("a\0b", 3).substr(0, 1) + "~"};
    std::set<std::string> objects;
    for (const std::string& n : names) {
        const std::string o = kxbase::detail::ShmObjectName(n);
        EXPECT_EQ(o[0], '/') << n;
        EXPECT_EQ(o.find('/', 1), std::string::npos) << n;
        EXPECT_LE(o.size() - 1, std::size_t{NAME_MAX}) << n;
        EXPECT_TRUE(objects.insert(o).second) << "collision for " << n;
    }
    // Local\ names the same area as the bare name, as it does on Windows.
    EXPECT_EQ(kxbase::detail::ShmObjectName("Local\\chan"), kxbase::detail::ShmObjectName("chan"));
}

// Catches: names that can be mapped but not created or opened (shm_open rejects them).
TEST(ShmBadInput, AwkwardNamesWorkEndToEnd) {
    const std::string tag = std::to_string(getpid());
    const std::vector<std::string> names = {tag, tag + std::string(400, '/'),
                                            tag + std::string(400, '\\'),
                                            tag + std::string(100000, 'n'), tag + "C:\\temp\\x.y"};
    for (const std::string& n : names) {
        CShareMemoryServer server;
        ASSERT_EQ(server.CreateMap(n.c_str(), 8192, 0), 1) << ErrorOf(server);
        CShareMemoryClient client;
        ASSERT_EQ(client.OpenMap(n.c_str(), 0), 1) << ErrorOf(client);
        DWORD v = 0xCAFEF00D, seen = 0;
        EXPECT_EQ(server.WriteData(8188, &v, 4), 1);
        EXPECT_EQ(client.ReadData(8188, &seen, 4), 1);
        EXPECT_EQ(seen, v);
    }
    // The empty name is an ordinary name too; it is shared machine-wide, so create it only
    // if nobody else uses it.
    CShareMemoryClient probe;
    if (!probe.OpenMap("", 0)) {
        CShareMemoryServer server;
        EXPECT_EQ(server.CreateMap("", 4096, 0), 1) << ErrorOf(server);
        EXPECT_EQ(probe.OpenMap("", 0), 1);
    }
}

// Catches: a client window of almost 4 GB whose 32-bit length wraps so that it no longer
// covers the position asked for; the transfer must fail instead of looping for ever.
TEST(ShmBadInput, WindowLengthThatWrapsPastFourGigabytes) {
    if (shmtest::FreeShmBytes() < (7ull << 30)) GTEST_SKIP() << "/dev/shm too small";
    const std::string name = Name("wrap");
    CShareMemoryServer server;
    ASSERT_EQ(server.CreateMap(name.c_str(), 6ull << 30, 65536), 1);
    CShareMemoryClient client;
    ASSERT_EQ(client.OpenMap(name.c_str(), 0xFFFFFFFF), 1) << ErrorOf(client);
    BYTE b = 0;
    // Inside the first window (area offset 0 .. 4 GB - 1).
    EXPECT_EQ(client.ReadData(100, &b, 1), 1);
    // Outside it at an unaligned position: pos - start + 0xFFFFFFFF wraps to a short window.
    EXPECT_EQ(client.ReadData((5ull << 30) + 17, &b, 1), 0);
    EXPECT_EQ(ErrorOf(client), kInvalidParameter);
    // At an aligned position the window is 4 GB - 1, clamped to the area: works.
    EXPECT_EQ(client.ReadData((5ull << 30), &b, 1), 1);
}

}  // namespace
