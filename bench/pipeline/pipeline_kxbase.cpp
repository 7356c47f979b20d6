// kxbase: build the page's spans, fill each row (one byte per pixel), code it with the 1-bit
// run-length codec (Pack) or with LZW over the packed row, then restore every row to packed
// bits, as the printer does (with the tool's bit packer, as `kxbase print` does). Streams are
// kept for the whole page, as a spooler would.
#include <cstring>
#include <vector>

#include <benchmark/benchmark.h>

#include <kxbase/compress/compress.h>

#include "pipeline_page.h"
#include "row_bits.h"

namespace {

void BM_Kxbase_Pipeline(benchmark::State& state) {
    const bool lzw = state.range(0) == 1;
    const kxprint::PageSetup setup = kxbench::PipelineSetup();
    kxprint::Page probe(setup);
    const std::uint32_t w = probe.Width(), h = probe.Height();
    const std::uint32_t packedBytes = kxprint::PackedRowBytes(w, 1);
    const auto bound = static_cast<std::uint32_t>(lzw ? ACompress::LzwCompressBound(packedBytes)
                                                      : ACompress::PackBound(w, 1));
    std::vector<std::uint8_t> row(w), packed(packedBytes + 8), out(packedBytes + 8), expanded(w);
    std::vector<std::uint8_t> streams(static_cast<std::size_t>(h) * 64);
    std::vector<std::uint32_t> offsets(h + 1);
    std::uint64_t streamBytes = 0, fold = 0;
    for (auto _ : state) {
        kxprint::Page page(setup);
        std::size_t at = 0;
        for (std::uint32_t y = 0; y < h; ++y) {
            page.RasteriseRow(y, row.data());
            if (streams.size() - at < bound) streams.resize(streams.size() * 2 + bound);
            ULONG n = 0;
            if (lzw) {
                kxprint::PackRowBits(row.data(), w, 1, packed.data());
                ACompress::Comp_LZW(packed.data(), packedBytes, streams.data() + at, bound, n);
            } else {
                ACompress::Pack(row.data(), w, 1, streams.data() + at, bound, n);
            }
            offsets[y] = static_cast<std::uint32_t>(at);
            at += n;
        }
        offsets[h] = static_cast<std::uint32_t>(at);
        for (std::uint32_t y = 0; y < h; ++y) {
            const std::uint8_t* s = streams.data() + offsets[y];
            const ULONG len = offsets[y + 1] - offsets[y];
            if (lzw) {
                ULONG n = 0;
                ACompress::UnComp_LZW(s, len, out.data(), static_cast<ULONG>(out.size()), n);
            } else {
                ACompress::UnPack(s, len, w, 1, expanded.data());
                kxprint::PackRowBits(expanded.data(), w, 1, out.data());
            }
            fold = kxbench::Fold(fold, out.data(), packedBytes);
        }
        streamBytes = at;
    }
    benchmark::DoNotOptimize(fold);
    state.counters["stream_bytes"] = static_cast<double>(streamBytes);
    state.SetLabel(lzw ? "A4 720dpi 1-bit, LZW" : "A4 720dpi 1-bit, pack1");
}
BENCHMARK(BM_Kxbase_Pipeline)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace
