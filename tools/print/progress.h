// What `kxbase print` shows: a progress bar per page while a terminal watches, and the
// summary at the end.
#pragma once

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <string>

namespace kxprint {

/// The clock of the job's figures, and the nanoseconds between two of its readings.
using Clock = std::chrono::steady_clock;
inline std::uint64_t Ns(Clock::time_point a, Clock::time_point b) {
    return static_cast<std::uint64_t>(
        std::chrono::duration_cast<std::chrono::nanoseconds>(b - a).count());
}

/// A one-line bar redrawn on stderr; does nothing unless stderr is a terminal.
class ProgressBar {
public:
    ProgressBar();
    void Show(std::uint32_t page, std::uint32_t pages, std::uint64_t done, std::uint64_t total);
    /// Ends the line of a finished page.
    void Finish();

private:
    bool m_tty;
    int m_last = -1;
    bool m_open = false;
};

/// The figures of one job, from both processes.
struct Summary {
    std::string page;  ///< "A4 (210 x 297 mm) at 720 dpi"
    std::uint32_t width = 0, height = 0, pages = 0, bands = 0, slots = 0;
    std::uint64_t slotBytes = 0;
    int depth = 1;
    std::string codec;
    std::uint64_t packedBytes = 0;  ///< packed rows of all pages (the uncompressed size)
    std::uint64_t streamBytes = 0;  ///< streams handed over
    std::uint64_t tiffBytes = 0;    ///< LZW strips written to the TIFF (0: no TIFF)
    std::uint64_t rasteriseNs = 0, compressNs = 0, transferNs = 0, decompressNs = 0, writeNs = 0;
    std::uint64_t producerWaitNs = 0;
    std::uint64_t wallNs = 0;
    std::string outputs;
};

void PrintSummary(std::FILE* out, const Summary& s);

}  // namespace kxprint
