// Peer: libtiff's PackBits codec, through an in-memory TIFF (TIFFClientOpen), one strip per
// line, on the same A4 band and 64 KiB buffer as rle_kxbase.cpp. A 1-bit TIFF holds packed
// bits, so its line is 5953 / 8 bytes; throughput counts the same expanded bytes as ours.
#ifdef KXBASE_HAVE_TIFF
#include <cstring>

#include <benchmark/benchmark.h>
#include <tiffio.h>

#include "rle_pages.h"
#include "tiff_mem_file.h"

namespace {

using kxbench::Band;
using kxbench::kA4Width720;
using kxbench::kBandLines;

using kxbench::TiffMemFile;

// The band as TIFF lines: 1-bit lines packed MSB first, others as they are.
std::vector<unsigned char> TiffLines(int depth, tmsize_t& lineBytes) {
    const auto& band = Band(depth);
    if (depth != 1) {
        lineBytes = kA4Width720 * (depth == 24 ? 3 : 1);
        return band;
    }
    lineBytes = (kA4Width720 + 7) / 8;
    std::vector<unsigned char> out(lineBytes * kBandLines, 0);
    for (std::uint32_t y = 0; y < kBandLines; ++y)
        for (std::uint32_t x = 0; x < kA4Width720; ++x)
            if (band[std::size_t{y} * kA4Width720 + x])
                out[y * lineBytes + x / 8] |= 0x80 >> (x % 8);
    return out;
}

void SetFields(TIFF* t, int depth) {
    TIFFSetField(t, TIFFTAG_IMAGEWIDTH, kA4Width720);
    TIFFSetField(t, TIFFTAG_IMAGELENGTH, kBandLines);
    TIFFSetField(t, TIFFTAG_BITSPERSAMPLE, depth == 1 ? 1 : 8);
    TIFFSetField(t, TIFFTAG_SAMPLESPERPIXEL, depth == 24 ? 3 : 1);
    TIFFSetField(t, TIFFTAG_PHOTOMETRIC, depth == 24 ? PHOTOMETRIC_RGB : PHOTOMETRIC_MINISBLACK);
    TIFFSetField(t, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(t, TIFFTAG_ROWSPERSTRIP, 1);
    TIFFSetField(t, TIFFTAG_COMPRESSION, COMPRESSION_PACKBITS);
}

void BM_Tiff_PackBits_Encode(benchmark::State& st) {
    const int depth = static_cast<int>(st.range(0));
    tmsize_t lb = 0;
    auto lines = TiffLines(depth, lb);
    TiffMemFile f;
    f.buf.reserve(lines.size() * 2);
    for (auto _ : st) {
        f.buf.clear();
        TIFF* t = f.Open("w");
        SetFields(t, depth);
        for (std::uint32_t y = 0; y < kBandLines; ++y)
            TIFFWriteEncodedStrip(t, y, &lines[y * lb], lb);
        TIFFClose(t);
    }
    st.SetBytesProcessed(st.iterations() * Band(depth).size());
}
BENCHMARK(BM_Tiff_PackBits_Encode)->Arg(1)->Arg(8)->Arg(24);

void BM_Tiff_PackBits_Decode(benchmark::State& st) {
    const int depth = static_cast<int>(st.range(0));
    tmsize_t lb = 0;
    auto lines = TiffLines(depth, lb);
    TiffMemFile f;
    TIFF* w = f.Open("w");
    SetFields(w, depth);
    for (std::uint32_t y = 0; y < kBandLines; ++y) TIFFWriteEncodedStrip(w, y, &lines[y * lb], lb);
    TIFFClose(w);
    TIFF* t = f.Open("r");
    std::vector<unsigned char> out(lb);
    for (auto _ : st) {
        for (std::uint32_t y = 0; y < kBandLines; ++y) TIFFReadEncodedStrip(t, y, out.data(), lb);
        benchmark::DoNotOptimize(out.data());
    }
    TIFFClose(t);
    st.SetBytesProcessed(st.iterations() * Band(depth).size());
}
BENCHMARK(BM_Tiff_PackBits_Decode)->Arg(1)->Arg(8)->Arg(24);

}  // namespace
#endif
