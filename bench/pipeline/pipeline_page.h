// The page both pipelines process: the built-in page of `kxbase print`, A4 at 720 DPI, 1 bit.
#pragma once

#include <cstdint>

#include "page.h"

namespace kxbench {

inline kxprint::PageSetup PipelineSetup() {
    kxprint::PageSetup setup;  // A4, 720 DPI, upright
    setup.depth = 1;
    return setup;
}

// Folds a row into a running value the optimiser cannot drop.
inline std::uint64_t Fold(std::uint64_t acc, const std::uint8_t* row, std::size_t n) {
    for (std::size_t i = 0; i < n; i += 64) acc = acc * 31 + row[i];
    return acc + row[n - 1];
}

}  // namespace kxbench
