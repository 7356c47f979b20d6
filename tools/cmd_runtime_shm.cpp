// kxbase shm: exercise the shared memory channel between two shells.
//   kxbase shm serve NAME --size 4G   creates the area, fills it with a pattern, and waits
//   kxbase shm check NAME             opens it from another process and verifies every byte
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <cctype>
#include <chrono>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include <kxbase/runtime/share_memory.h>

#include "command.h"

namespace {

// Data bytes 0..7 hold this marker once the server has filled the rest; the checker refuses
// an area without it (still being filled, or not made by `kxbase shm serve`).
constexpr char kReady[8] = {'K', 'X', 'S', 'H', 'M', '-', 'O', 'K'};
constexpr std::uint32_t kChunk = 1u << 20;

// The pattern: each aligned 8-byte word holds a mix of its own data offset, so a byte that
// lands at a wrong offset (a window off by a page, the header forgotten) does not match.
std::uint64_t PatternWord(std::uint64_t offset) {
    std::uint64_t x = offset * 0x9E3779B97F4A7C15ull;
    return x ^ (x >> 31);
}
void FillPattern(std::vector<std::uint8_t>& buf, std::uint64_t offset) {
    for (std::size_t i = 0; i < buf.size(); i += 8) {
        const std::uint64_t w = PatternWord(offset + i);
        std::memcpy(buf.data() + i, &w, std::min<std::size_t>(8, buf.size() - i));
    }
}

// "4G", "512M", "64K", "1T" or a byte count; 0 when the text is not a size.
std::uint64_t ParseSize(const std::string& text) {
    if (text.empty() || !std::isdigit(static_cast<unsigned char>(text[0]))) return 0;
    char* end = nullptr;
    errno = 0;
    const unsigned long long value = std::strtoull(text.c_str(), &end, 10);
    if (errno != 0) return 0;
    std::string unit(end);
    for (char& c : unit) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    if (!unit.empty() && unit.back() == 'B') unit.pop_back();
    int shift = 0;
    if (unit == "K")
        shift = 10;
    else if (unit == "M")
        shift = 20;
    else if (unit == "G")
        shift = 30;
    else if (unit == "T")
        shift = 40;
    else if (!unit.empty())
        return 0;
    if (shift != 0 && value > (~0ull >> shift)) return 0;
    return static_cast<std::uint64_t>(value) << shift;
}

class Progress {
public:
    Progress(const char* what, std::uint64_t total) : m_what(what), m_total(total) {}
    void Show(std::uint64_t done) {
        const int percent = m_total ? static_cast<int>(done * 100 / m_total) : 100;
        if (percent == m_last) return;
        m_last = percent;
        char bar[41];
        const int filled = percent * 40 / 100;
        for (int i = 0; i < 40; ++i) bar[i] = i < filled ? '#' : '.';
        bar[40] = '\0';
        std::fprintf(stderr, "\r%s [%s] %3d%%  %.2f / %.2f GB", m_what, bar, percent,
                     static_cast<double>(done) / (1ull << 30),
                     static_cast<double>(m_total) / (1ull << 30));
        if (done >= m_total) std::fputc('\n', stderr);
        std::fflush(stderr);
    }

private:
    const char* m_what;
    std::uint64_t m_total;
    int m_last = -1;
};

std::string LastError(CShareMemoryBase& shm) {
    CString text;
    shm.GetLastErrorInfo(text);
    // The system message follows a line break and a tab; keep it on the same line.
    std::string s;
    for (const char c : text.str())
        if (c == '\n')
            s += ' ';
        else if (c != '\t')
            s += c;
    return s;
}

std::atomic<bool> g_stop{false};
void OnSignal(int) {
    g_stop.store(true);
}

int Serve(const std::string& name, const std::string& sizeText, const std::string& windowText,
          int seconds) {
    const std::uint64_t size = ParseSize(sizeText);
    if (size < sizeof kReady) {
        std::fprintf(stderr,
                     "kxbase shm serve: '%s' is not a size of at least 8 bytes "
                     "(examples: 4G, 512M, 65536)\n",
                     sizeText.c_str());
        return 2;
    }
    const std::uint64_t window = windowText.empty() ? 0 : ParseSize(windowText);
    if (!windowText.empty() && (window == 0 || window > 0xFFFFFFFFull)) {
        std::fprintf(stderr, "kxbase shm serve: window '%s' must be 1 byte to 4 GB - 1\n",
                     windowText.c_str());
        return 2;
    }
    CShareMemoryServer server;
    if (!server.CreateMap(name.c_str(), size, static_cast<DWORD>(window))) {
        std::fprintf(stderr, "kxbase shm serve: cannot create area '%s' of %" PRIu64 " bytes: %s\n",
                     name.c_str(), size, LastError(server).c_str());
        return 1;
    }
    std::vector<std::uint8_t> buf;
    Progress progress("filling ", size);
    for (std::uint64_t at = sizeof kReady; at < size; at += buf.size()) {
        buf.resize(static_cast<std::size_t>(std::min<std::uint64_t>(kChunk, size - at)));
        FillPattern(buf, at);
        if (!server.WriteData(at, buf.data(), static_cast<DWORD>(buf.size()))) {
            std::fprintf(stderr,
                         "\nkxbase shm serve: write at data offset %" PRIu64 " failed: %s\n", at,
                         LastError(server).c_str());
            return 1;
        }
        progress.Show(at + buf.size());
    }
    char ready[sizeof kReady];
    std::memcpy(ready, kReady, sizeof ready);
    server.WriteData(0, ready, sizeof ready);
    progress.Show(size);

    struct sigaction sa {};
    sa.sa_handler = OnSignal;
    sigaction(SIGINT, &sa, nullptr);
    sigaction(SIGTERM, &sa, nullptr);
    std::printf("serving '%s': %" PRIu64
                " bytes of data. Run `kxbase shm check %s` in another "
                "shell; Ctrl-C ends (the name is removed).\n",
                name.c_str(), size, name.c_str());
    std::fflush(stdout);
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
    while (!g_stop.load() && (seconds <= 0 || std::chrono::steady_clock::now() < end))
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    server.DeleteMap();
    std::printf("area '%s' closed\n", name.c_str());
    return 0;
}

int Check(const std::string& name, const std::string& windowText) {
    const std::uint64_t window = windowText.empty() ? 0 : ParseSize(windowText);
    if (!windowText.empty() && (window == 0 || window > 0xFFFFFFFFull)) {
        std::fprintf(stderr, "kxbase shm check: window '%s' must be 1 byte to 4 GB - 1\n",
                     windowText.c_str());
        return 2;
    }
    CShareMemoryClient client;
    if (!client.OpenMap(name.c_str(), static_cast<DWORD>(window))) {
        std::fprintf(stderr, "kxbase shm check: cannot open area '%s': %s\n", name.c_str(),
                     LastError(client).c_str());
        std::fprintf(stderr, "(is `kxbase shm serve %s --size ...` running?)\n", name.c_str());
        return 1;
    }
    const std::uint64_t size = client.GetMapSize();
    char ready[sizeof kReady] = {};
    if (size < sizeof kReady || !client.ReadData(0, ready, sizeof ready) ||
        std::memcmp(ready, kReady, sizeof ready) != 0) {
        std::fprintf(stderr,
                     "kxbase shm check: area '%s' (%" PRIu64
                     " bytes) is not ready: "
                     "still being filled, or not made by `kxbase shm serve`\n",
                     name.c_str(), size);
        return 1;
    }
    std::vector<std::uint8_t> got, want;
    Progress progress("checking", size);
    for (std::uint64_t at = sizeof kReady; at < size; at += got.size()) {
        const auto n = static_cast<std::size_t>(std::min<std::uint64_t>(kChunk, size - at));
        got.resize(n);
        want.resize(n);
        if (!client.ReadData(at, got.data(), static_cast<DWORD>(n))) {
            std::fprintf(stderr, "\nkxbase shm check: read at data offset %" PRIu64 " failed: %s\n",
                         at, LastError(client).c_str());
            return 1;
        }
        FillPattern(want, at);
        if (std::memcmp(got.data(), want.data(), n) != 0) {
            std::size_t i = 0;
            while (got[i] == want[i]) ++i;
            std::fprintf(stderr,
                         "\nkxbase shm check: MISMATCH at data offset %" PRIu64
                         ": found 0x%02X, expected 0x%02X\n",
                         at + i, got[i], want[i]);
            return 1;
        }
        progress.Show(at + n);
    }
    progress.Show(size);
    std::printf("area '%s': all %" PRIu64 " bytes match\n", name.c_str(), size);
    return 0;
}

kxtool::Command cmd{
    "shm", "Create (serve) or verify (check) a shared memory area", [](CLI::App& app) {
        auto name = std::make_shared<std::string>();
        auto size = std::make_shared<std::string>("64M");
        auto window = std::make_shared<std::string>();
        auto seconds = std::make_shared<int>(0);
        app.require_subcommand(1);
        CLI::App* serve =
            app.add_subcommand("serve", "Create an area, fill it with a pattern, wait");
        serve->add_option("name", *name, "Area name (any text)")->required();
        serve->add_option("--size", *size, "Data size: bytes or with K, M, G, T (default 64M)");
        serve->add_option("--window", *window, "Window size (default 20M)");
        serve->add_option("--seconds", *seconds, "Stop after this many seconds (default: Ctrl-C)");
        CLI::App* check =
            app.add_subcommand("check", "Open an area by name and verify the pattern");
        check->add_option("name", *name, "Area name")->required();
        check->add_option("--window", *window, "Window size (default 20M)");
        return [=]() -> int {
            if (serve->parsed()) return Serve(*name, *size, *window, *seconds);
            return Check(*name, *window);
        };
    }};

}  // namespace
