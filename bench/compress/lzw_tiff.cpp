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

namespace {

struct LzwMemFile {
    std::vector<unsigned char> buf;
    toff_t pos = 0;

    static tmsize_t Read(thandle_t h, void* p, tmsize_t n) {
        auto* f = static_cast<LzwMemFile*>(h);
        const auto avail = static_cast<tmsize_t>(f->buf.size()) - static_cast<tmsize_t>(f->pos);
        const tmsize_t k = std::max<tmsize_t>(0, std::min(n, avail));
        if (k) std::memcpy(p, f->buf.data() + f->pos, static_cast<std::size_t>(k));
        f->pos += static_cast<toff_t>(k);
        return k;
    }
    static tmsize_t Write(thandle_t h, void* p, tmsize_t n) {
        auto* f = static_cast<LzwMemFile*>(h);
        if (f->pos + n > f->buf.size()) f->buf.resize(f->pos + n);
        std::memcpy(f->buf.data() + f->pos, p, static_cast<std::size_t>(n));
        f->pos += static_cast<toff_t>(n);
        return n;
    }
    static toff_t Seek(thandle_t h, toff_t off, int whence) {
        auto* f = static_cast<LzwMemFile*>(h);
        f->pos = whence == SEEK_SET ? off : whence == SEEK_CUR ? f->pos + off : f->buf.size() + off;
        return f->pos;
    }
    static int Close(thandle_t) { return 0; }
    static toff_t Size(thandle_t h) { return static_cast<LzwMemFile*>(h)->buf.size(); }
    static int Map(thandle_t, void**, toff_t*) { return 0; }
    static void Unmap(thandle_t, void*, toff_t) {}

    TIFF* Open(const char* mode) {
        pos = 0;
        return TIFFClientOpen("bench", mode, this, Read, Write, Seek, Close, Size, Map, Unmap);
    }
};

void WriteStrip(LzwMemFile& file, const std::vector<std::uint8_t>& src) {
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
    LzwMemFile file;
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
    LzwMemFile file;
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
