// Peer: libtiff's PackBits codec, through an in-memory TIFF (TIFFClientOpen), one strip per
// line, on the same A4 band and 64 KiB buffer as rle_kxbase.cpp. A 1-bit TIFF holds packed
// bits, so its line is 5953 / 8 bytes; throughput counts the same expanded bytes as ours.
#ifdef KXBASE_HAVE_TIFF
#include <cstring>

#include <benchmark/benchmark.h>
#include <tiffio.h>

#include "rle_pages.h"

namespace {

using kxbench::Band;
using kxbench::kA4Width720;
using kxbench::kBandLines;

// A growable memory file for TIFFClientOpen.
struct MemFile {
    std::vector<unsigned char> buf;
    toff_t pos = 0;
};

tmsize_t MemRead(thandle_t h, void* p, tmsize_t n) {
    auto* f = static_cast<MemFile*>(h);
    const tmsize_t avail = static_cast<tmsize_t>(f->buf.size()) - static_cast<tmsize_t>(f->pos);
    const tmsize_t k = std::max<tmsize_t>(0, std::min(n, avail));
    if (k) std::memcpy(p, f->buf.data() + f->pos, k);
    f->pos += k;
    return k;
}
tmsize_t MemWrite(thandle_t h, void* p, tmsize_t n) {
    auto* f = static_cast<MemFile*>(h);
    if (f->pos + n > f->buf.size()) f->buf.resize(f->pos + n);
    std::memcpy(f->buf.data() + f->pos, p, n);
    f->pos += n;
    return n;
}
toff_t MemSeek(thandle_t h, toff_t off, int whence) {
    auto* f = static_cast<MemFile*>(h);
    f->pos = whence == SEEK_SET ? off : whence == SEEK_CUR ? f->pos + off : f->buf.size() + off;
    return f->pos;
}
int MemClose(thandle_t) {
    return 0;
}
toff_t MemSize(thandle_t h) {
    return static_cast<MemFile*>(h)->buf.size();
}
int MemMap(thandle_t, void**, toff_t*) {
    return 0;
}
void MemUnmap(thandle_t, void*, toff_t) {}

TIFF* Open(MemFile& f, const char* mode) {
    f.pos = 0;
    return TIFFClientOpen("mem", mode, &f, MemRead, MemWrite, MemSeek, MemClose, MemSize, MemMap,
                          MemUnmap);
}

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
    MemFile f;
    f.buf.reserve(lines.size() * 2);
    for (auto _ : st) {
        f.buf.clear();
        TIFF* t = Open(f, "w");
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
    MemFile f;
    TIFF* w = Open(f, "w");
    SetFields(w, depth);
    for (std::uint32_t y = 0; y < kBandLines; ++y) TIFFWriteEncodedStrip(w, y, &lines[y * lb], lb);
    TIFFClose(w);
    TIFF* t = Open(f, "r");
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
