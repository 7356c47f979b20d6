// cairo: cairo_matrix_transform_point over the same points (xx, yx, xy, yy, x0, y0 take the
// map's eM11, eM12, eM21, eM22, eDx, eDy).
#include <benchmark/benchmark.h>

#include <cstring>

#include <cairo.h>

#include "transform_scene.h"

namespace {

void BM_Transform_cairo_matrix_transform_point(benchmark::State& state) {
    const ATransform t = kxbench::BenchMap();
    cairo_matrix_t m;
    cairo_matrix_init(&m, t.eM11, t.eM12, t.eM21, t.eM22, t.eDx, t.eDy);
    const std::vector<double> xy = kxbench::BenchCoordinates();
    std::vector<double> pts(xy.size());
    for (auto _ : state) {
        std::memcpy(pts.data(), xy.data(), xy.size() * sizeof(double));
        for (std::size_t i = 0; i < pts.size(); i += 2)
            cairo_matrix_transform_point(&m, &pts[i], &pts[i + 1]);
        benchmark::DoNotOptimize(pts.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kxbench::kPointCount);
}
BENCHMARK(BM_Transform_cairo_matrix_transform_point)->Unit(benchmark::kMillisecond);

}  // namespace
