// `kxbase print` end to end: the tool runs as two processes, and what its printer writes
// must be, pixel for pixel, the page rasterised here in one process. The process-level
// cases kill one side mid-page and check that the other reports it and that no shared
// memory area is left behind.
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <png.h>
#include <tiffio.h>

#include <kxbase/runtime/share_memory.h>

#include "pack_reference.h"
#include "page.h"

extern char** environ;

namespace {

namespace fs = std::filesystem;

// A running tool with its stdout and stderr on pipes.
struct Child {
    pid_t pid = -1;
    int out = -1, err = -1;
    std::string outText, errText;

    // Reads both pipes until stderr holds `needle` (returns true) or both are closed.
    bool ReadUntil(const std::string& needle) {
        for (;;) {
            if (!needle.empty() && errText.find(needle) != std::string::npos) return true;
            pollfd p[2] = {{out, POLLIN, 0}, {err, POLLIN, 0}};
            if (out < 0 && err < 0) return false;
            if (::poll(p, 2, -1) < 0) continue;
            for (int i = 0; i < 2; ++i) {
                int& fd = i == 0 ? out : err;
                if (fd < 0 || p[i].revents == 0) continue;
                char buf[4096];
                const ssize_t n = ::read(fd, buf, sizeof buf);
                if (n <= 0) {
                    ::close(fd);
                    fd = -1;
                } else {
                    (i == 0 ? outText : errText).append(buf, static_cast<std::size_t>(n));
                }
            }
        }
    }
    int Wait() {
        ReadUntil("");
        int status = 0;
        ::waitpid(pid, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }
};

Child Start(const std::vector<std::string>& args, const fs::path& dir) {
    int out[2], err[2];
    EXPECT_EQ(::pipe2(out, O_CLOEXEC), 0);
    EXPECT_EQ(::pipe2(err, O_CLOEXEC), 0);
    posix_spawn_file_actions_t fa;
    posix_spawn_file_actions_init(&fa);
    posix_spawn_file_actions_adddup2(&fa, out[1], 1);
    posix_spawn_file_actions_adddup2(&fa, err[1], 2);
    posix_spawn_file_actions_addchdir_np(&fa, dir.c_str());
    std::vector<std::string> all = {KXBASE_TOOL_PATH, "print"};
    all.insert(all.end(), args.begin(), args.end());
    std::vector<char*> argv;
    for (std::string& a : all) argv.push_back(a.data());
    argv.push_back(nullptr);
    Child c;
    EXPECT_EQ(posix_spawn(&c.pid, KXBASE_TOOL_PATH, &fa, nullptr, argv.data(), environ), 0);
    posix_spawn_file_actions_destroy(&fa);
    ::close(out[1]);
    ::close(err[1]);
    c.out = out[0];
    c.err = err[0];
    return c;
}

// The area names of these tests need no escaping, so the object's name is predictable.
bool AreaExists(const std::string& name) {
    return fs::exists("/dev/shm/kxbase-" + name);
}

class PrintTest : public ::testing::Test {
protected:
    void SetUp() override {
        m_dir = fs::temp_directory_path() / ("kxbase-print-test-" + std::to_string(::getpid()));
        fs::create_directories(m_dir);
        m_area = "kxbase-print-test-" + std::to_string(::getpid()) + "-" +
                 ::testing::UnitTest::GetInstance()->current_test_info()->name();
        for (char& c : m_area)
            if (c == '/') c = '-';
    }
    void TearDown() override { fs::remove_all(m_dir); }

    fs::path m_dir;
    std::string m_area;
};

// ---- the one-process reference ------------------------------------------------------------

std::vector<std::vector<std::uint8_t>> Reference(const kxprint::PageSetup& setup) {
    kxprint::Page page(setup);
    EXPECT_TRUE(page.Ok()) << page.Error();
    std::vector<std::vector<std::uint8_t>> rows;
    std::vector<std::uint8_t> row(
        page.Width() * static_cast<std::uint32_t>(kxprint::ExpandedBytesPerPixel(setup.depth)));
    for (std::uint32_t y = 0; y < page.Height(); ++y) {
        page.RasteriseRow(y, row.data());
        rows.push_back(kxtest::PackRow(row, page.Width(), setup.depth));
    }
    return rows;
}

// ---- reading the outputs with the peers' own decoders ---------------------------------------

std::vector<std::vector<std::uint8_t>> ReadPng(const fs::path& path, int depth) {
    std::vector<std::vector<std::uint8_t>> rows;
    std::FILE* f = std::fopen(path.c_str(), "rb");
    if (!f) return rows;
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    if (setjmp(png_jmpbuf(png))) {
        png_destroy_read_struct(&png, &info, nullptr);
        std::fclose(f);
        rows.clear();
        return rows;
    }
    png_init_io(png, f);
    png_read_info(png, info);
    const png_uint_32 h = png_get_image_height(png, info);
    const png_size_t stride = png_get_rowbytes(png, info);
    for (png_uint_32 y = 0; y < h; ++y) {
        std::vector<std::uint8_t> row(stride);
        png_read_row(png, row.data(), nullptr);
        if (depth == 1) {  // PNG: 0 is black, ours: 1 is ink; the padding bits stay 0
            for (auto& b : row) b = static_cast<std::uint8_t>(~b);
            if (const png_uint_32 spare =
                    static_cast<png_uint_32>(stride * 8) - png_get_image_width(png, info))
                row.back() = static_cast<std::uint8_t>(row.back() & (0xFF << spare));
        }
        rows.push_back(std::move(row));
    }
    png_destroy_read_struct(&png, &info, nullptr);
    std::fclose(f);
    return rows;
}

// Each directory's rows, decoded by libtiff (its own LZW decoder reads our strips).
std::vector<std::vector<std::vector<std::uint8_t>>> ReadTiff(const fs::path& path,
                                                             std::uint16_t& bits) {
    std::vector<std::vector<std::vector<std::uint8_t>>> pages;
    TIFF* t = TIFFOpen(path.c_str(), "r");
    if (!t) return pages;
    do {
        std::uint32_t w = 0, h = 0;
        std::uint16_t compression = 0;
        TIFFGetField(t, TIFFTAG_IMAGEWIDTH, &w);
        TIFFGetField(t, TIFFTAG_IMAGELENGTH, &h);
        TIFFGetField(t, TIFFTAG_BITSPERSAMPLE, &bits);
        TIFFGetField(t, TIFFTAG_COMPRESSION, &compression);
        EXPECT_EQ(compression, COMPRESSION_LZW);
        std::vector<std::vector<std::uint8_t>> rows;
        for (std::uint32_t y = 0; y < h; ++y) {
            std::vector<std::uint8_t> row(static_cast<std::size_t>(TIFFScanlineSize(t)));
            if (TIFFReadScanline(t, row.data(), y) < 0) row.clear();
            rows.push_back(std::move(row));
        }
        pages.push_back(std::move(rows));
    } while (TIFFReadDirectory(t));
    TIFFClose(t);
    return pages;
}

// The first differing row, or -1.
long FirstDifference(const std::vector<std::vector<std::uint8_t>>& a,
                     const std::vector<std::vector<std::uint8_t>>& b) {
    if (a.size() != b.size()) return 0;
    for (std::size_t y = 0; y < a.size(); ++y)
        if (a[y] != b[y]) return static_cast<long>(y);
    return -1;
}

// ---- round trips --------------------------------------------------------------------------

struct Case {
    int depth;
    const char* codec;
};
const Case kCases[] = {{1, "pack"}, {2, "pack"}, {4, "pack"}, {8, "pack"}, {24, "pack"},
                       {1, "lzw"},  {2, "lzw"},  {4, "lzw"},  {8, "lzw"},  {24, "lzw"}};

// Every depth and codec, on a turned page of two pages in small bands through two slots, so
// that slots are reused and a second page follows the first: the PNGs and the TIFF pages must
// equal the one-process rasterisation.
TEST_F(PrintTest, EveryDepthAndCodecArrivesPixelExact) {
    kxprint::PageSetup setup;
    setup.widthMm = 60;
    setup.heightMm = 45;
    setup.dpi = 100;
    setup.angleDeg = 17;
    for (const Case& c : kCases) {
        SCOPED_TRACE(std::to_string(c.depth) + "-bit " + c.codec);
        setup.depth = c.depth;
        const auto want = Reference(setup);
        std::string name = std::to_string(c.depth);  // (GCC 12 warns falsely on "p" + string)
        name.insert(0, 1, 'p').append(c.codec);
        Child child = Start({"--size",      "60x45",      "--res",   "100",
                             "--angle",     "17",         "--depth", std::to_string(c.depth),
                             "--codec",     c.codec,      "--pages", "2",
                             "--band-rows", "16",         "--slots", "2",
                             "--area",      m_area,       "--png",   name + ".png",
                             "--tiff",      name + ".tif"},
                            m_dir);
        ASSERT_EQ(child.Wait(), 0) << child.errText;
        EXPECT_EQ(child.errText, "");  // no progress bar without a terminal
        EXPECT_NE(child.outText.find("pixels"), std::string::npos);
        for (int page = 1; page <= 2; ++page) {
            const auto png = ReadPng(m_dir / (name + "-" + std::to_string(page) + ".png"), c.depth);
            EXPECT_EQ(FirstDifference(png, want), -1) << "PNG page " << page;
        }
        std::uint16_t bits = 0;
        const auto tiff = ReadTiff(m_dir / (name + ".tif"), bits);
        ASSERT_EQ(tiff.size(), 2u);
        EXPECT_EQ(bits, c.depth == 24 ? 8 : c.depth);
        for (const auto& page : tiff) EXPECT_EQ(FirstDifference(page, want), -1) << "TIFF";
        EXPECT_FALSE(AreaExists(m_area));
    }
}

// A page whose streams are several times the area: the ring must reuse its slots, band
// after band, without losing or repeating a row.
TEST_F(PrintTest, PageLargerThanTheAreaPassesThroughReusedSlots) {
    kxprint::PageSetup setup;
    setup.widthMm = 105;
    setup.heightMm = 148;
    setup.dpi = 200;
    setup.depth = 8;
    const auto want = Reference(setup);
    Child child =
        Start({"--size", "A6", "--res", "200", "--depth", "8", "--codec", "lzw", "--area-size",
               "40K", "--slots", "3", "--area", m_area, "--png", "big.png"},
              m_dir);
    ASSERT_EQ(child.Wait(), 0) << child.errText;
    char digits[32] = {};
    unsigned bands = 0, slots = 0;
    const auto at = child.outText.find("  lzw ");
    ASSERT_NE(at, std::string::npos) << child.outText;
    ASSERT_EQ(std::sscanf(child.outText.c_str() + at, " lzw %31[0-9,] bytes", digits), 1);
    std::string plain;
    for (const char* d = digits; *d; ++d)
        if (*d != ',') plain += *d;
    const unsigned long long bytes = std::stoull(plain);
    ASSERT_EQ(std::sscanf(child.outText.c_str() + child.outText.find("ring"),
                          "ring %u bands through %u slots", &bands, &slots),
              2);
    EXPECT_GT(bytes, 2u * 40 * 1024);  // the streams alone are twice the area
    EXPECT_GT(bands, 3 * slots);
    EXPECT_EQ(FirstDifference(ReadPng(m_dir / "big.png", 8), want), -1);
}

// ---- one side dies mid-page -----------------------------------------------------------------

// Reads the process id from "... stalls in process N (test hook)".
pid_t StalledPid(const std::string& text) {
    const auto at = text.find("stalls in process ");
    return at == std::string::npos ? -1 : static_cast<pid_t>(std::stol(text.substr(at + 18)));
}

std::vector<std::string> StallArgs(const std::string& area, const char* side) {
    return {"--size",  "A5", "--res",  "150", "--band-rows", "8",
            "--slots", "2",  "--area", area,  "--stall",     side};
}

TEST_F(PrintTest, KilledPrinterEndsTheProducerAndTheArea) {
    Child child = Start(StallArgs(m_area, "printer"), m_dir);
    ASSERT_TRUE(child.ReadUntil("(test hook)\n")) << child.errText;
    const pid_t printer = StalledPid(child.errText);
    ASSERT_GT(printer, 0);
    ASSERT_TRUE(AreaExists(m_area));
    ASSERT_EQ(::kill(printer, SIGKILL), 0);
    EXPECT_EQ(child.Wait(), 1);
    EXPECT_NE(child.errText.find("printer process was killed by signal 9"), std::string::npos)
        << child.errText;
    EXPECT_FALSE(AreaExists(m_area));
}

TEST_F(PrintTest, KilledProducerEndsThePrinterAndTheArea) {
    // The printer outlives its parent: adopt it so that its exit status can be read.
    ASSERT_EQ(::prctl(PR_SET_CHILD_SUBREAPER, 1), 0);
    Child child = Start(StallArgs(m_area, "producer"), m_dir);
    ASSERT_TRUE(child.ReadUntil("(test hook)\n")) << child.errText;
    ASSERT_EQ(StalledPid(child.errText), child.pid);
    ASSERT_TRUE(AreaExists(m_area));
    ASSERT_EQ(::kill(child.pid, SIGKILL), 0);
    EXPECT_EQ(child.Wait(), 128 + SIGKILL);  // reads until the printer closes stderr too
    int status = 0;
    const pid_t printer = ::waitpid(-1, &status, 0);
    ::prctl(PR_SET_CHILD_SUBREAPER, 0);
    ASSERT_GT(printer, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 1);
    EXPECT_NE(child.errText.find("producer ended in the middle of page 1"), std::string::npos)
        << child.errText;
    EXPECT_FALSE(AreaExists(m_area));
}

// ---- refusals -------------------------------------------------------------------------------

TEST_F(PrintTest, DamagedRowIsRefusedByThePrinter) {
    Child child = Start({"--size", "60x45", "--res", "100", "--area", m_area, "--corrupt"}, m_dir);
    EXPECT_EQ(child.Wait(), 1);
    EXPECT_NE(child.errText.find("row 0: checksum mismatch"), std::string::npos) << child.errText;
    EXPECT_FALSE(AreaExists(m_area));
}

TEST_F(PrintTest, StaleAreaIsTakenOverAndLiveOneLeftAlone) {
    // A producer that died without closing its area.
    const pid_t dead = ::fork();
    if (dead == 0) {
        CShareMemoryServer server;
        _exit(server.CreateMap(m_area.c_str(), 1 << 16) ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(dead, &status, 0), dead);
    ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    ASSERT_TRUE(AreaExists(m_area));
    Child ok = Start({"--size", "60x45", "--res", "100", "--area", m_area}, m_dir);
    EXPECT_EQ(ok.Wait(), 0) << ok.errText;
    EXPECT_FALSE(AreaExists(m_area));

    CShareMemoryServer live;
    ASSERT_TRUE(live.CreateMap(m_area.c_str(), 1 << 16));
    Child refused = Start({"--size", "60x45", "--res", "100", "--area", m_area}, m_dir);
    EXPECT_EQ(refused.Wait(), 1);
    EXPECT_NE(refused.errText.find("in use"), std::string::npos) << refused.errText;
    EXPECT_TRUE(AreaExists(m_area));
}

TEST_F(PrintTest, BadOptionsExitWithUsageStatus) {
    const std::vector<std::vector<std::string>> bad = {
        {"--size", "B9"},        {"--size", "0x297"},
        {"--depth", "3"},        {"--codec", "zip"},
        {"--res", "0"},          {"--size", "5x5", "--res", "72"},
        {"--area-size", "lots"}, {"--area-size", "2K", "--size", "A4"},
    };
    for (const auto& args : bad) {
        std::vector<std::string> all = args;
        all.insert(all.end(), {"--area", m_area});
        Child c = Start(all, m_dir);
        EXPECT_EQ(c.Wait(), 2) << args[0] << " " << args[1] << ": " << c.errText;
        EXPECT_FALSE(AreaExists(m_area));
    }
}

}  // namespace
