// pixman: pixman_f_transform_point (double, homogeneous 3x3, column vectors) and
// pixman_transform_point_3d (16.16 fixed point) over the same points.
#include <benchmark/benchmark.h>

#include <cstring>

#include <pixman.h>

#include "transform_scene.h"

namespace {

void BM_Transform_pixman_f_transform_point(benchmark::State& state) {
    const ATransform t = kxbench::BenchMap();
    // pixman multiplies column vectors: row 0 gives x', row 1 gives y'.
    pixman_f_transform ft;
    ft.m[0][0] = t.eM11, ft.m[0][1] = t.eM21, ft.m[0][2] = t.eDx;
    ft.m[1][0] = t.eM12, ft.m[1][1] = t.eM22, ft.m[1][2] = t.eDy;
    ft.m[2][0] = 0.0, ft.m[2][1] = 0.0, ft.m[2][2] = 1.0;
    const std::vector<double> xy = kxbench::BenchCoordinates();
    std::vector<double> pts(xy.size());
    for (auto _ : state) {
        std::memcpy(pts.data(), xy.data(), xy.size() * sizeof(double));
        for (std::size_t i = 0; i < pts.size(); i += 2) {
            pixman_f_vector v{{pts[i], pts[i + 1], 1.0}};
            pixman_f_transform_point(&ft, &v);
            pts[i] = v.v[0];
            pts[i + 1] = v.v[1];
        }
        benchmark::DoNotOptimize(pts.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kxbench::kPointCount);
}
BENCHMARK(BM_Transform_pixman_f_transform_point)->Unit(benchmark::kMillisecond);

void BM_Transform_pixman_transform_point_3d(benchmark::State& state) {
    const ATransform t = kxbench::BenchMap();
    pixman_f_transform ft;
    ft.m[0][0] = t.eM11, ft.m[0][1] = t.eM21, ft.m[0][2] = t.eDx;
    ft.m[1][0] = t.eM12, ft.m[1][1] = t.eM22, ft.m[1][2] = t.eDy;
    ft.m[2][0] = 0.0, ft.m[2][1] = 0.0, ft.m[2][2] = 1.0;
    pixman_transform fixed;
    pixman_transform_from_pixman_f_transform(&fixed, &ft);
    const std::vector<double> xy = kxbench::BenchCoordinates();
    std::vector<pixman_vector> in(kxbench::kPointCount), pts(kxbench::kPointCount);
    for (int i = 0; i < kxbench::kPointCount; ++i)
        in[i] = pixman_vector{{pixman_double_to_fixed(xy[2 * i]),
                               pixman_double_to_fixed(xy[2 * i + 1]), pixman_fixed_1}};
    for (auto _ : state) {
        std::memcpy(pts.data(), in.data(), in.size() * sizeof(pixman_vector));
        for (auto& v : pts) pixman_transform_point_3d(&fixed, &v);
        benchmark::DoNotOptimize(pts.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kxbench::kPointCount);
}
BENCHMARK(BM_Transform_pixman_transform_point_3d)->Unit(benchmark::kMillisecond);

}  // namespace
