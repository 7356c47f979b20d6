// libtiff as an independent oracle for the LZW stream: TIFF's LZW (compression 5) uses the
// same codes, MSB-first packing and width timing. libtiff is loaded at run time, so the test
// program needs no link dependency; without libtiff the tests are skipped.
//
// A Comp_LZW stream is stored as the raw strip of a one-row TIFF and read back through
// libtiff's decoder; strips libtiff compressed are read raw and restored with UnComp_LZW.
// Where libtiff writes no early clear code the two encoders agree byte for byte: both put
// their clear code at the same place (libtiff when its next entry would be 4094, this encoder
// after its 3835th entry and one more data code). libtiff also starts over with a clear code,
// at whatever width it stands, when its compression ratio drops (checked every 10000 input
// bytes). TIFF resets the width after any clear code, this format only after one written at
// 12 bits, so such strips are outside the format and UnComp_LZW misreads them.
#include <gtest/gtest.h>

#if defined(_WIN32)

// The oracle is the host's libtiff, loaded with dlopen; a Windows build has neither.
TEST(LzwTiffOracle, LibtiffAndCompLzwReadEachOthersStreams) {
    GTEST_SKIP() << "needs the POSIX host's libtiff through dlopen";
}

#else

#include <dlfcn.h>
#include <sys/mman.h>
#include <tiffio.h>
#include <unistd.h>

#include <algorithm>
#include <vector>

#include <kxbase/compress/compress.h>

#include "lzw_data.h"

using lzwtest::Bytes;

namespace {

void* LibTiff() {
    static void* const lib = dlopen("libtiff.so.6", RTLD_NOW | RTLD_LOCAL);
    return lib;
}
// A libtiff function, looked up by name in the library loaded at run time.
#define KX_TIFF(name) reinterpret_cast<decltype(&TIFF##name)>(dlsym(LibTiff(), "TIFF" #name))

// Writes `strip` as the single strip of a one-row, `width`-pixel 8-bit grey LZW TIFF held in
// memory, either as it is (raw) or for libtiff to compress, and reads the strip back the other
// way: decoded after a raw write, raw after libtiff compressed it.
Bytes ThroughTiff(const Bytes& strip, std::size_t width, bool raw) {
    const int fd = memfd_create("lzw-oracle", 0);
    TIFF* w = fd < 0 ? nullptr : KX_TIFF(FdOpen)(dup(fd), "strip", "w");  // Close closes the dup
    if (!w) return {};
    KX_TIFF(SetField)(w, TIFFTAG_IMAGEWIDTH, unsigned(width));
    KX_TIFF(SetField)(w, TIFFTAG_IMAGELENGTH, 1u);
    KX_TIFF(SetField)(w, TIFFTAG_BITSPERSAMPLE, 8);
    KX_TIFF(SetField)(w, TIFFTAG_ROWSPERSTRIP, 1u);
    KX_TIFF(SetField)(w, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
    KX_TIFF(SetField)(w, TIFFTAG_COMPRESSION, COMPRESSION_LZW);
    auto* p = const_cast<BYTE*>(strip.data());
    raw ? KX_TIFF(WriteRawStrip)(w, 0, p, tmsize_t(strip.size()))
        : KX_TIFF(WriteEncodedStrip)(w, 0, p, tmsize_t(strip.size()));
    KX_TIFF(Close)(w);
    TIFF* r = lseek(fd, 0, SEEK_SET) == 0 ? KX_TIFF(FdOpen)(fd, "strip", "r") : nullptr;
    if (!r) return {};
    Bytes out(raw ? width : std::size_t(std::max<tmsize_t>(0, KX_TIFF(RawStripSize)(r, 0))));
    const tmsize_t n = raw ? KX_TIFF(ReadEncodedStrip)(r, 0, out.data(), tmsize_t(out.size()))
                           : KX_TIFF(ReadRawStrip)(r, 0, out.data(), tmsize_t(out.size()));
    KX_TIFF(Close)(r);
    out.resize(std::size_t(std::max<tmsize_t>(0, n)));
    return out;
}

// Faults: a stream departing from TIFF's LZW (bit order, width timing, clear handling at 12
// bits, end code), which an independent decoder would not read back; a decoder that misreads
// streams written by another encoder; an encoder whose dictionary or clear timing drifts from
// TIFF's LZW (the streams would then no longer be identical).
TEST(LzwTiffOracle, LibtiffAndCompLzwReadEachOthersStreams) {
    if (!LibTiff()) GTEST_SKIP() << "libtiff not available";
    KX_TIFF(SetErrorHandler)(nullptr);
    KX_TIFF(SetWarningHandler)(nullptr);
    for (const auto& s : lzwtest::Samples()) {
        SCOPED_TRACE(s.name);
        const auto n = ULONG(s.data.size());
        Bytes ours(ACompress::LzwCompressBound(n));
        ULONG len = 0;
        ASSERT_EQ(1, ACompress::Comp_LZW(s.data.data(), n, ours.data(), ULONG(ours.size()), len));
        ours.resize(len);
        EXPECT_EQ(s.data, ThroughTiff(ours, n, true));

        const Bytes theirs = ThroughTiff(s.data, n, false);
        Bytes back(ACompress::LzwDecompressCapacity(n));
        ASSERT_EQ(1, ACompress::UnComp_LZW(theirs.data(), ULONG(theirs.size()), back.data(),
                                           ULONG(back.size()), len));
        back.resize(len);
        EXPECT_EQ(s.data, back);
        EXPECT_EQ(ours, theirs);
    }
}

}  // namespace

#endif  // !_WIN32
