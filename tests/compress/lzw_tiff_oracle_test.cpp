// libtiff as an independent oracle for the LZW stream: TIFF's LZW (compression 5) uses the
// same codes, MSB-first packing and width timing. libtiff is loaded at run time, so the test
// program needs no link dependency; without libtiff the tests are skipped.
//
// Streams of Comp_LZW are stored as the raw strip of a one-row TIFF in memory and read back
// through libtiff's decoder; strips that libtiff compressed are read raw and restored with
// UnComp_LZW. Where libtiff writes no early clear code the two encoders agree byte for byte:
// both put their clear code at the same place in the stream (libtiff when its next entry
// would be 4094, this encoder after its 3835th entry and one more data code).
// libtiff's encoder also starts over with a clear code, at whatever width it stands, when its
// compression ratio drops (checked every 10000 input bytes, e.g. a long white run followed by
// text). TIFF resets the width after any clear code; this format resets it only after a clear
// code written at 12 bits, so such strips are outside the format and UnComp_LZW misreads them.
#include <gtest/gtest.h>

#include <dlfcn.h>
#include <tiffio.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include <kxbase/compress/compress.h>

#include "lzw_data.h"

using lzwtest::Bytes;

namespace {

// The few libtiff entry points the oracle needs, resolved from the shared library.
#define KX_TIFF_FUNCTIONS(X)                                                              \
    X(ClientOpen)                                                                         \
    X(SetField) X(WriteRawStrip) X(WriteEncodedStrip) X(ReadRawStrip) X(ReadEncodedStrip) \
        X(RawStripSize) X(Close) X(SetErrorHandler) X(SetWarningHandler)
struct LibTiff {
#define KX_DECLARE(name) decltype(&TIFF##name) name = nullptr;
    KX_TIFF_FUNCTIONS(KX_DECLARE)
#undef KX_DECLARE
    bool ok = false;

    static const LibTiff& Get() {
        static const LibTiff lib = [] {
            LibTiff t;
            void* h = dlopen("libtiff.so.6", RTLD_NOW | RTLD_LOCAL);
            if (!h) return t;
            t.ok = true;
#define KX_RESOLVE(name)                                                 \
    t.name = reinterpret_cast<decltype(t.name)>(dlsym(h, "TIFF" #name)); \
    t.ok = t.ok && t.name;
            KX_TIFF_FUNCTIONS(KX_RESOLVE)
#undef KX_RESOLVE
            if (t.ok) {
                t.SetErrorHandler(nullptr);
                t.SetWarningHandler(nullptr);
            }
            return t;
        }();
        return lib;
    }
};

// A TIFF file in memory.
struct MemFile {
    Bytes data;
    toff_t pos = 0;

    static tmsize_t Read(thandle_t h, void* buf, tmsize_t n) {
        auto* f = static_cast<MemFile*>(h);
        const auto avail = f->pos < f->data.size() ? f->data.size() - f->pos : 0;
        const auto k = std::min<std::size_t>(static_cast<std::size_t>(n), avail);
        std::memcpy(buf, f->data.data() + f->pos, k);
        f->pos += k;
        return static_cast<tmsize_t>(k);
    }
    static tmsize_t Write(thandle_t h, void* buf, tmsize_t n) {
        auto* f = static_cast<MemFile*>(h);
        if (f->data.size() < f->pos + n) f->data.resize(f->pos + n);
        std::memcpy(f->data.data() + f->pos, buf, static_cast<std::size_t>(n));
        f->pos += n;
        return n;
    }
    static toff_t Seek(thandle_t h, toff_t off, int whence) {
        auto* f = static_cast<MemFile*>(h);
        f->pos = whence == SEEK_SET   ? off
                 : whence == SEEK_CUR ? f->pos + off
                                      : f->data.size() + off;
        return f->pos;
    }
    static int CloseProc(thandle_t) { return 0; }
    static toff_t Size(thandle_t h) { return static_cast<MemFile*>(h)->data.size(); }
    static int Map(thandle_t, void**, toff_t*) { return 0; }
    static void Unmap(thandle_t, void*, toff_t) {}

    TIFF* Open(const LibTiff& t, const char* mode) {
        pos = 0;
        return t.ClientOpen("memory", mode, this, Read, Write, Seek, CloseProc, Size, Map, Unmap);
    }
};

// One 8-bit grey row of `width` pixels, one strip, LZW without predictor.
void SetupRow(const LibTiff& t, TIFF* tif, std::size_t width) {
    t.SetField(tif, TIFFTAG_IMAGEWIDTH, static_cast<uint32_t>(width));
    t.SetField(tif, TIFFTAG_IMAGELENGTH, 1u);
    t.SetField(tif, TIFFTAG_BITSPERSAMPLE, 8);
    t.SetField(tif, TIFFTAG_SAMPLESPERPIXEL, 1);
    t.SetField(tif, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
    t.SetField(tif, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    t.SetField(tif, TIFFTAG_ROWSPERSTRIP, 1u);
    t.SetField(tif, TIFFTAG_COMPRESSION, COMPRESSION_LZW);
}

// libtiff's decoding of our stream as the strip of a `width`-pixel row.
Bytes TiffDecode(const Bytes& stream, std::size_t width) {
    const auto& t = LibTiff::Get();
    MemFile file;
    TIFF* w = file.Open(t, "w");
    if (!w) return {};
    SetupRow(t, w, width);
    t.WriteRawStrip(w, 0, const_cast<BYTE*>(stream.data()), static_cast<tmsize_t>(stream.size()));
    t.Close(w);
    TIFF* r = file.Open(t, "r");
    if (!r) return {};
    Bytes out(width);
    const tmsize_t n = t.ReadEncodedStrip(r, 0, out.data(), static_cast<tmsize_t>(width));
    t.Close(r);
    out.resize(n < 0 ? 0 : static_cast<std::size_t>(n));
    return out;
}

// The raw LZW strip libtiff writes for `data` as one row.
Bytes TiffEncode(const Bytes& data) {
    const auto& t = LibTiff::Get();
    MemFile file;
    TIFF* w = file.Open(t, "w");
    if (!w) return {};
    SetupRow(t, w, data.size());
    t.WriteEncodedStrip(w, 0, const_cast<BYTE*>(data.data()), static_cast<tmsize_t>(data.size()));
    t.Close(w);
    TIFF* r = file.Open(t, "r");
    if (!r) return {};
    Bytes raw(static_cast<std::size_t>(t.RawStripSize(r, 0)));
    const tmsize_t n = t.ReadRawStrip(r, 0, raw.data(), static_cast<tmsize_t>(raw.size()));
    t.Close(r);
    raw.resize(n < 0 ? 0 : static_cast<std::size_t>(n));
    return raw;
}

// Fault: a stream departing from TIFF's LZW code stream (bit order, width timing, clear
// handling at 12 bits, end code), which an independent decoder would not read back.
TEST(LzwTiffOracle, LibtiffDecodesCompLzwStreams) {
    if (!LibTiff::Get().ok) GTEST_SKIP() << "libtiff not available";
    for (const auto& s : lzwtest::Samples()) {
        SCOPED_TRACE(s.name);
        const auto n = static_cast<ULONG>(s.data.size());
        Bytes stream(static_cast<std::size_t>(ACompress::LzwCompressBound(n)));
        ULONG len = 0;
        ASSERT_EQ(1, ACompress::Comp_LZW(s.data.data(), n, stream.data(),
                                         static_cast<ULONG>(stream.size()), len));
        stream.resize(len);
        EXPECT_EQ(s.data, TiffDecode(stream, s.data.size()));
    }
}

// Faults: the decoder misreads streams written by another encoder; the encoder's dictionary
// or clear timing drifts from TIFF's LZW (the streams are then no longer identical).
TEST(LzwTiffOracle, LibtiffStripsEqualCompLzwStreamsAndDecode) {
    if (!LibTiff::Get().ok) GTEST_SKIP() << "libtiff not available";
    // Strips below 10000 bytes, or that keep compressing better, carry no early clear code.
    const std::vector<lzwtest::Sample> samples = {
        {"print 1-bit line band", lzwtest::Make(0, 8770, 9)},
        {"halftone 9999", lzwtest::Make(1, 9999, 8)},
        {"random 9999 (full-table clear)", lzwtest::Make(3, 9999, 6)},
        {"random 70000 (several full-table clears)", lzwtest::Make(3, 70000, 5)},
        {"photo 24-bit 3000 px", lzwtest::Make(2, 9000, 4)},
        {"run 200000", lzwtest::Make(4, 200000, 0xFF)},
        {"text 9000", lzwtest::Make(7, 9000)},
    };
    for (const auto& s : samples) {
        SCOPED_TRACE(s.name);
        const Bytes raw = TiffEncode(s.data);
        ASSERT_FALSE(raw.empty());
        const auto cap = static_cast<ULONG>(ACompress::LzwDecompressCapacity(s.data.size()));
        Bytes out(cap);
        ULONG len = 0;
        ASSERT_EQ(1, ACompress::UnComp_LZW(raw.data(), static_cast<ULONG>(raw.size()), out.data(),
                                           cap, len));
        out.resize(len);
        EXPECT_EQ(s.data, out);
        Bytes ours(static_cast<std::size_t>(
            ACompress::LzwCompressBound(static_cast<ULONG>(s.data.size()))));
        ASSERT_EQ(1, ACompress::Comp_LZW(s.data.data(), static_cast<ULONG>(s.data.size()),
                                         ours.data(), static_cast<ULONG>(ours.size()), len));
        ours.resize(len);
        EXPECT_EQ(raw, ours);
    }
}

}  // namespace
