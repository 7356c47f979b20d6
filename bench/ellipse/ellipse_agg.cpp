// AGG: the scene's ellipse (agg::ellipse under a rotation) through rasterizer_scanline_aa
// with scanline_bin and a 50% coverage threshold, the covered runs collected per row; and, on
// the small scene only, the runs from ellipse_bresenham_interpolator (as
// renderer_primitives::solid_ellipse walks it). Its 32-bit arithmetic overflows once
// 2 * rx^2 * ry exceeds 2^31 (radii above about 1000 pixels), so the A4 page at 720 DPI is
// out of its range. Timed: path, rasterisation and the runs.
#include <benchmark/benchmark.h>

#include <vector>

#include <agg_conv_transform.h>
#include <agg_ellipse.h>
#include <agg_ellipse_bresenham.h>
#include <agg_gamma_functions.h>
#include <agg_rasterizer_scanline_aa.h>
#include <agg_scanline_bin.h>
#include <agg_trans_affine.h>

#include "ellipse_scene.h"

namespace {

using kxbench::EllipseScene;

struct Run {
    int y, x1, x2;
};

void BM_Ellipse_agg_scanline_bin(benchmark::State& state, const EllipseScene& s) {
    agg::rasterizer_scanline_aa<> ras;
    ras.gamma(agg::gamma_threshold(0.5));
    agg::scanline_bin sl;
    std::vector<Run> runs;
    runs.reserve(static_cast<std::size_t>(s.ImageHeight()));
    const double cx = 0.5 * s.ImageWidth(), cy = 0.5 * s.ImageHeight();
    for (auto _ : state) {
        runs.clear();
        agg::ellipse e(0, 0, s.Rx(), s.Ry());
        agg::trans_affine m =
            agg::trans_affine_rotation(s.Angle()) * agg::trans_affine_translation(cx, cy);
        agg::conv_transform<agg::ellipse> path(e, m);
        ras.reset();
        ras.add_path(path);
        if (ras.rewind_scanlines()) {
            sl.reset(ras.min_x(), ras.max_x());
            while (ras.sweep_scanline(sl)) {
                auto span = sl.begin();
                for (unsigned i = sl.num_spans(); i; --i, ++span)
                    runs.push_back({sl.y(), span->x, span->x + span->len - 1});
            }
        }
        benchmark::DoNotOptimize(runs.data());
        benchmark::ClobberMemory();
    }
    double pixels = 0;
    for (const Run& r : runs) pixels += r.x2 - r.x1 + 1;
    state.counters["pixels"] = pixels;
}
BENCHMARK_CAPTURE(BM_Ellipse_agg_scanline_bin, A4_720dpi_straight, kxbench::kA4Straight)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Ellipse_agg_scanline_bin, A4_720dpi_turned30, kxbench::kA4Turned)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Ellipse_agg_scanline_bin, A4_150dpi_straight, kxbench::kA4Small)
    ->Unit(benchmark::kMillisecond);

void BM_Ellipse_agg_bresenham(benchmark::State& state, const EllipseScene& s) {
    const int rx = static_cast<int>(s.Rx()), ry = static_cast<int>(s.Ry());
    const int x = rx, y = ry;
    std::vector<Run> runs;
    runs.reserve(static_cast<std::size_t>(2 * ry + 1));
    for (auto _ : state) {
        runs.clear();
        agg::ellipse_bresenham_interpolator ei(rx, ry);
        int dx = 0, dy = -ry, dy0 = dy, dx0 = dx;
        do {
            dx += ei.dx();
            dy += ei.dy();
            if (dy != dy0) {
                runs.push_back({y + dy0, x - dx0, x + dx0});
                runs.push_back({y - dy0, x - dx0, x + dx0});
            }
            dx0 = dx;
            dy0 = dy;
            ++ei;
        } while (dy < 0);
        runs.push_back({y + dy0, x - dx0, x + dx0});
        benchmark::DoNotOptimize(runs.data());
        benchmark::ClobberMemory();
    }
    double pixels = 0;
    for (const Run& r : runs) pixels += r.x2 - r.x1 + 1;
    state.counters["pixels"] = pixels;
}
BENCHMARK_CAPTURE(BM_Ellipse_agg_bresenham, A4_150dpi_straight, kxbench::kA4Small)
    ->Unit(benchmark::kMillisecond);

}  // namespace
