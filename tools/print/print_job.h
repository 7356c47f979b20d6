// The two processes of `kxbase print`: RunPrint is the producer (rasterise, compress, hand
// bands over), RunPrinter the printer it starts (decompress, verify, write the files).
#pragma once

#include <cstdint>
#include <string>

#include "line_codec.h"
#include "page.h"

namespace kxprint {

/// The descriptors the printer finds its pipes on.
constexpr int kTokenFd = 3;  ///< tokens from the producer (read end)
constexpr int kAckFd = 4;    ///< acknowledgements to the producer (write end)

struct PrintOptions {
    PageSetup setup;
    std::string sizeText = "A4";
    Codec codec = Codec::Pack;
    std::uint32_t pages = 1;
    std::string png, tiff;
    std::string area;                     ///< empty: "kxbase-print-<uid>"
    std::uint64_t areaBytes = 16u << 20;  ///< data bytes of the area, slots included
    std::uint32_t slots = 4;
    std::uint32_t bandRows = 256;  ///< most rows per band
    std::string stall;             ///< test hook: "producer" or "printer"
    bool corrupt = false;          ///< test hook: send a wrong checksum for row 0
};

/// Runs the job; returns the exit status (0 success, 1 failure, 2 bad options, 130 Ctrl-C).
int RunPrint(const PrintOptions& options);

/// The printer process: reads bands from `area` through the pipes on kTokenFd and kAckFd.
int RunPrinter(const std::string& area, const std::string& png, const std::string& tiff,
               const std::string& stall);

}  // namespace kxprint
