// Peer: libtiff's LZW codec through an in-memory TIFF (TIFFClientOpen) holding the input as
// one 8-bit row in one strip, on the inputs of lzw_inputs.h. Compression opens, writes and
// closes a TIFF per iteration (a few microseconds of the whole); decompression reads the
// encoded strip of a TIFF opened once.
#ifdef KXBASE_HAVE_TIFF
#include <algorithm>
#include <cstring>

#include <benchmark/benchmark.h>
#include <tiffio.h>

#include "lzw_inputs.h"
#include "tiff_mem_file.h"

namespace {

using kxbench::TiffMemFile;

void WriteStrip(TiffMemFile& file, const std::vector<std::uint8_t>& src) {
    file.buf.clear();
    TIFF* t = file.Open("w");
    TIFFSetField(t, TIFFTAG_IMAGEWIDTH, static_cast<uint32_t>(src.size()));
    TIFFSetField(t, TIFFTAG_IMAGELENGTH, 1u);
    TIFFSetField(t, TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(t, TIFFTAG_SAMPLESPERPIXEL, 1);
    TIFFSetField(t, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
    TIFFSetField(t, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(t, TIFFTAG_ROWSPERSTRIP, 1u);
    TIFFSetField(t, TIFFTAG_COMPRESSION, COMPRESSION_LZW);
    TIFFWriteEncodedStrip(t, 0, const_cast<std::uint8_t*>(src.data()),
                          static_cast<tmsize_t>(src.size()));
    TIFFClose(t);
}

void BM_Tiff_CompLZW(benchmark::State& state) {
    TIFFSetWarningHandler(nullptr);
    const auto& src = kxbench::LzwData(static_cast<int>(state.range(0)));
    TiffMemFile file;
    file.buf.reserve(src.size() * 2);
    for (auto _ : state) {
        WriteStrip(file, src);
        benchmark::DoNotOptimize(file.buf.data());
    }
    state.SetLabel(kxbench::LzwName(static_cast<int>(state.range(0))));
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(src.size()));
}
BENCHMARK(BM_Tiff_CompLZW)->DenseRange(0, 3);

void BM_Tiff_UnCompLZW(benchmark::State& state) {
    TIFFSetWarningHandler(nullptr);
    const auto& src = kxbench::LzwData(static_cast<int>(state.range(0)));
    TiffMemFile file;
    WriteStrip(file, src);
    TIFF* t = file.Open("r");
    std::vector<std::uint8_t> out(src.size());
    for (auto _ : state) {
        TIFFReadEncodedStrip(t, 0, out.data(), static_cast<tmsize_t>(out.size()));
        benchmark::DoNotOptimize(out.data());
    }
    TIFFClose(t);
    if (out != src) state.SkipWithError("round trip failed");
    state.SetLabel(kxbench::LzwName(static_cast<int>(state.range(0))));
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(src.size()));
}
BENCHMARK(BM_Tiff_UnCompLZW)->DenseRange(0, 3);

}  // namespace
#endif
