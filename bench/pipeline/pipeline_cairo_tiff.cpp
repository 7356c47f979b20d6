// Peer pipeline: cairo fills the same shapes under the same transforms into an A1 surface
// (no antialiasing, outlines stroked one device pixel wide), then libtiff codes every row as
// its own strip of an in-memory TIFF with PackBits or LZW and reads every strip back. cairo's
// A1 rows keep the first pixel in the low bit; a TIFF can say so (FillOrder 2), so the rows
// are coded as they are.
#ifdef KXBASE_HAVE_CAIRO_TIFF
#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include <benchmark/benchmark.h>
#include <cairo.h>
#include <tiffio.h>

#include "pipeline_page.h"
#include "tiff_mem_file.h"

namespace {

using kxbench::TiffMemFile;

// The page's shapes drawn by cairo: the same boxes, the same shape transforms, the same
// page transform; ink where the colour is dark, as on the 1-bit page.
void Draw(cairo_t* cr, const kxprint::Page& page, const kxprint::PageSetup& setup) {
    cairo_set_antialias(cr, CAIRO_ANTIALIAS_NONE);
    cairo_set_operator(cr, CAIRO_OPERATOR_SOURCE);
    cairo_set_line_width(cr, 1.0);
    cairo_set_source_rgba(cr, 0, 0, 0, 0);
    cairo_paint(cr);
    auto ink = [](const std::uint8_t c[3]) {
        return (299 * c[0] + 587 * c[1] + 114 * c[2] + 500) / 1000 < 128;
    };
    for (const auto& s : kxprint::Page::Shapes(setup.widthMm, setup.heightMm)) {
        const ATransform t = s.local * page.Transform();
        cairo_matrix_t m;
        cairo_matrix_init(&m, t.eM11, t.eM12, t.eM21, t.eM22, t.eDx, t.eDy);
        cairo_save(cr);
        cairo_set_matrix(cr, &m);
        if (s.ellipse) {
            cairo_translate(cr, (s.left + s.right) / 2, (s.top + s.bottom) / 2);
            cairo_scale(cr, (s.right - s.left) / 2, (s.bottom - s.top) / 2);
            cairo_arc(cr, 0, 0, 1, 0, 2 * M_PI);
        } else {
            cairo_rectangle(cr, s.left, s.top, s.right - s.left, s.bottom - s.top);
        }
        cairo_restore(cr);  // the path stays in device space; the stroke is one pixel wide
        cairo_set_source_rgba(cr, 0, 0, 0, ink(s.fill) ? 1 : 0);
        cairo_fill_preserve(cr);
        cairo_set_source_rgba(cr, 0, 0, 0, ink(s.line) ? 1 : 0);
        cairo_stroke(cr);
    }
}

void BM_Peer_Pipeline(benchmark::State& state) {
    const bool lzw = state.range(0) == 1;
    TIFFSetWarningHandler(nullptr);
    const kxprint::PageSetup setup = kxbench::PipelineSetup();
    const kxprint::Page probe(setup);  // for its size and transform only
    const auto w = static_cast<int>(probe.Width()), h = static_cast<int>(probe.Height());
    const std::uint32_t packedBytes = kxprint::PackedRowBytes(probe.Width(), 1);
    std::vector<std::uint8_t> out(packedBytes);
    TiffMemFile file;
    std::uint64_t streamBytes = 0, fold = 0;
    for (auto _ : state) {
        cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_A1, w, h);
        cairo_t* cr = cairo_create(surface);
        Draw(cr, probe, setup);
        cairo_destroy(cr);
        cairo_surface_flush(surface);
        const unsigned char* data = cairo_image_surface_get_data(surface);
        const int stride = cairo_image_surface_get_stride(surface);

        file.buf.clear();
        TIFF* t = file.Open("w");
        TIFFSetField(t, TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(w));
        TIFFSetField(t, TIFFTAG_IMAGELENGTH, static_cast<std::uint32_t>(h));
        TIFFSetField(t, TIFFTAG_BITSPERSAMPLE, 1);
        TIFFSetField(t, TIFFTAG_SAMPLESPERPIXEL, 1);
        TIFFSetField(t, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISWHITE);
        TIFFSetField(t, TIFFTAG_FILLORDER, FILLORDER_LSB2MSB);
        TIFFSetField(t, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
        TIFFSetField(t, TIFFTAG_ROWSPERSTRIP, 1u);
        TIFFSetField(t, TIFFTAG_COMPRESSION, lzw ? COMPRESSION_LZW : COMPRESSION_PACKBITS);
        for (int y = 0; y < h; ++y)
            TIFFWriteEncodedStrip(
                t, static_cast<std::uint32_t>(y),
                const_cast<unsigned char*>(data + static_cast<std::ptrdiff_t>(y) * stride),
                static_cast<tmsize_t>(packedBytes));
        TIFFClose(t);
        cairo_surface_destroy(surface);

        streamBytes = file.buf.size();
        TIFF* r = file.Open("r");
        for (int y = 0; y < h; ++y) {
            TIFFReadEncodedStrip(r, static_cast<std::uint32_t>(y), out.data(),
                                 static_cast<tmsize_t>(packedBytes));
            fold = kxbench::Fold(fold, out.data(), packedBytes);
        }
        TIFFClose(r);
    }
    benchmark::DoNotOptimize(fold);
    state.counters["stream_bytes"] = static_cast<double>(streamBytes);
    state.SetLabel(lzw ? "cairo A1 + libtiff LZW" : "cairo A1 + libtiff PackBits");
}
BENCHMARK(BM_Peer_Pipeline)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace
#endif
