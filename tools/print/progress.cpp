#include "progress.h"

#include <unistd.h>

namespace kxprint {

ProgressBar::ProgressBar() : m_tty(::isatty(STDERR_FILENO) == 1) {}

void ProgressBar::Show(std::uint32_t page, std::uint32_t pages, std::uint64_t done,
                       std::uint64_t total) {
    if (!m_tty) return;
    const int percent = total ? static_cast<int>(done * 100 / total) : 100;
    if (percent == m_last && m_open) return;
    m_last = percent;
    m_open = true;
    char bar[41];
    const int filled = percent * 40 / 100;
    for (int i = 0; i < 40; ++i) bar[i] = i < filled ? '#' : '.';
    bar[40] = '\0';
    std::fprintf(stderr, "\rpage %u/%u [%s] %3d%%", page + 1, pages, bar, percent);
    std::fflush(stderr);
}

void ProgressBar::Finish() {
    if (!m_tty || !m_open) return;
    std::fputc('\n', stderr);
    m_open = false;
    m_last = -1;
}

namespace {
std::string Grouped(std::uint64_t v) {
    std::string digits = std::to_string(v), out;
    for (std::size_t i = 0; i < digits.size(); ++i) {
        if (i && (digits.size() - i) % 3 == 0) out += ',';
        out += digits[i];
    }
    return out;
}
double Ms(std::uint64_t ns) {
    return static_cast<double>(ns) / 1e6;
}
}  // namespace

void PrintSummary(std::FILE* out, const Summary& s) {
    const std::uint64_t pixels = std::uint64_t{s.width} * s.height;
    std::fprintf(out, "kxbase print: %s, %u x %u pixels, %d-bit, %u page%s\n", s.page.c_str(),
                 s.width, s.height, s.depth, s.pages, s.pages == 1 ? "" : "s");
    std::fprintf(out, "  pixels       %s per page, %s in all\n", Grouped(pixels).c_str(),
                 Grouped(pixels * s.pages).c_str());
    auto ratio = [&](std::uint64_t bytes) {
        return bytes ? static_cast<double>(s.packedBytes) / static_cast<double>(bytes) : 0.0;
    };
    std::fprintf(out, "  raster       %s bytes packed\n", Grouped(s.packedBytes).c_str());
    std::fprintf(out, "  %-12s %s bytes, ratio %.1f : 1 (handed to the printer)\n", s.codec.c_str(),
                 Grouped(s.streamBytes).c_str(), ratio(s.streamBytes));
    if (s.tiffBytes)
        std::fprintf(out, "  %-12s %s bytes, ratio %.1f : 1 (TIFF strips)\n", "lzw",
                     Grouped(s.tiffBytes).c_str(), ratio(s.tiffBytes));
    std::fprintf(out, "  ring         %u bands through %u slots of %s bytes\n", s.bands, s.slots,
                 Grouped(s.slotBytes).c_str());
    std::fprintf(out, "  time per stage (the two processes overlap):\n");
    std::fprintf(out, "    rasterise  %9.1f ms  producer\n", Ms(s.rasteriseNs));
    std::fprintf(out, "    compress   %9.1f ms  producer\n", Ms(s.compressNs));
    std::fprintf(out, "    transfer   %9.1f ms  both (copies into and out of the area)\n",
                 Ms(s.transferNs));
    std::fprintf(out, "    decompress %9.1f ms  printer (with the checksum test)\n",
                 Ms(s.decompressNs));
    std::fprintf(out, "    write      %9.1f ms  printer\n", Ms(s.writeNs));
    std::fprintf(out, "    waiting    %9.1f ms  producer, for free slots\n", Ms(s.producerWaitNs));
    const double seconds = static_cast<double>(s.wallNs) / 1e9;
    std::fprintf(out, "  wall time    %.3f s, %.1f pages per minute\n", seconds,
                 seconds > 0 ? s.pages * 60.0 / seconds : 0.0);
    if (!s.outputs.empty()) std::fprintf(out, "  wrote        %s\n", s.outputs.c_str());
}

}  // namespace kxprint
