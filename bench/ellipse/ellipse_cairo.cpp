// cairo: the scene's ellipse as a path (unit circle under scale and rotation), filled with
// antialiasing off into an A1 and an A8 image surface. Timed: building the path and the fill
// (the mask); the surface is allocated once and not cleared between fills.
#include <benchmark/benchmark.h>

#include <bit>

#include <cairo.h>

#include "ellipse_scene.h"

namespace {

using kxbench::EllipseScene;

void FillEllipse(cairo_t* cr, const EllipseScene& s) {
    cairo_save(cr);
    cairo_translate(cr, 0.5 * s.ImageWidth(), 0.5 * s.ImageHeight());
    cairo_rotate(cr, s.Angle());
    cairo_scale(cr, s.Rx(), s.Ry());
    cairo_new_path(cr);
    cairo_arc(cr, 0, 0, 1, 0, 2 * M_PI);
    cairo_restore(cr);
    cairo_fill(cr);
}

double CoveredPixels(cairo_surface_t* surface, cairo_format_t format) {
    cairo_surface_flush(surface);
    const unsigned char* data = cairo_image_surface_get_data(surface);
    const int stride = cairo_image_surface_get_stride(surface);
    const int w = cairo_image_surface_get_width(surface),
              h = cairo_image_surface_get_height(surface);
    double n = 0;
    for (int y = 0; y < h; ++y) {
        const unsigned char* row = data + static_cast<std::ptrdiff_t>(y) * stride;
        if (format == CAIRO_FORMAT_A1) {
            for (int x = 0; x < (w + 7) / 8; ++x) n += std::popcount(static_cast<unsigned>(row[x]));
        } else {
            for (int x = 0; x < w; ++x) n += row[x] != 0;
        }
    }
    return n;
}

void BM_Ellipse_cairo(benchmark::State& state, const EllipseScene& s, cairo_format_t format) {
    cairo_surface_t* surface = cairo_image_surface_create(format, s.ImageWidth(), s.ImageHeight());
    cairo_t* cr = cairo_create(surface);
    cairo_set_antialias(cr, CAIRO_ANTIALIAS_NONE);
    cairo_set_source_rgba(cr, 0, 0, 0, 1);
    for (auto _ : state) {
        FillEllipse(cr, s);
        cairo_surface_flush(surface);
        benchmark::ClobberMemory();
    }
    state.counters["pixels"] = CoveredPixels(surface, format);
    cairo_destroy(cr);
    cairo_surface_destroy(surface);
}
BENCHMARK_CAPTURE(BM_Ellipse_cairo, A1_A4_720dpi_straight, kxbench::kA4Straight, CAIRO_FORMAT_A1)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Ellipse_cairo, A1_A4_720dpi_turned30, kxbench::kA4Turned, CAIRO_FORMAT_A1)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Ellipse_cairo, A8_A4_720dpi_straight, kxbench::kA4Straight, CAIRO_FORMAT_A8)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Ellipse_cairo, A8_A4_720dpi_turned30, kxbench::kA4Turned, CAIRO_FORMAT_A8)
    ->Unit(benchmark::kMillisecond);

}  // namespace
