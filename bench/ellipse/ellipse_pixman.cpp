// pixman: the scene's ellipse as a polygon (ellipse_outline.h), cut into trapezoids between
// consecutive vertex rows and rasterised into an a1 image with pixman_rasterize_trapezoid.
// Timed: the polygon, the trapezoids and the rasterisation (the mask); the image is allocated
// once and not cleared between fills.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <bit>
#include <vector>

#include <pixman.h>

#include "ellipse_outline.h"

namespace {

using kxbench::EllipseScene;
using kxbench::Vertex;

pixman_line_fixed_t Line(const Vertex& a, const Vertex& b) {
    return {{pixman_double_to_fixed(a.x), pixman_double_to_fixed(a.y)},
            {pixman_double_to_fixed(b.x), pixman_double_to_fixed(b.y)}};
}

// Trapezoids of a convex polygon: walk the chains left and right of the top vertex down to the
// bottom one, emitting one trapezoid per band between consecutive vertex rows.
void Trapezoids(const std::vector<Vertex>& v, std::vector<pixman_trapezoid_t>& out) {
    out.clear();
    const int n = static_cast<int>(v.size());
    int top = 0;
    for (int i = 1; i < n; ++i)
        if (v[i].y < v[top].y) top = i;
    // Vertices run counter-clockwise on the screen from angle 0 (y down): from the top vertex
    // the chain with decreasing index goes down the left side... pick by x of the neighbours.
    int l0 = top, r0 = top;
    int stepL = (v[(top + n - 1) % n].x < v[(top + 1) % n].x) ? n - 1 : 1;
    int stepR = stepL == 1 ? n - 1 : 1;
    int l1 = (l0 + stepL) % n, r1 = (r0 + stepR) % n;
    double y = v[top].y;
    for (int guard = 0; guard < 2 * n; ++guard) {
        const double yNext = std::min(v[l1].y, v[r1].y);
        if (yNext > y)
            out.push_back({pixman_double_to_fixed(y), pixman_double_to_fixed(yNext),
                           Line(v[l0], v[l1]), Line(v[r0], v[r1])});
        y = yNext;
        if (l1 == r1) break;
        if (v[l1].y <= yNext) {
            l0 = l1;
            l1 = (l1 + stepL) % n;
        }
        if (v[r1].y <= yNext && r1 != l0) {
            r0 = r1;
            r1 = (r1 + stepR) % n;
        }
    }
}

void BM_Ellipse_pixman(benchmark::State& state, const EllipseScene& s) {
    const int w = s.ImageWidth(), h = s.ImageHeight();
    pixman_image_t* image = pixman_image_create_bits(PIXMAN_a1, w, h, nullptr, 0);
    std::vector<pixman_trapezoid_t> traps;
    for (auto _ : state) {
        const std::vector<Vertex> poly = kxbench::EllipsePolygon(s, 0.5 * w, 0.5 * h);
        Trapezoids(poly, traps);
        for (const pixman_trapezoid_t& t : traps) pixman_rasterize_trapezoid(image, &t, 0, 0);
        benchmark::ClobberMemory();
    }
    pixman_image_unref(image);
    // Area check on a fresh image.
    image = pixman_image_create_bits(PIXMAN_a1, w, h, nullptr, 0);
    for (const pixman_trapezoid_t& t : traps) pixman_rasterize_trapezoid(image, &t, 0, 0);
    const auto* bits = reinterpret_cast<const unsigned char*>(pixman_image_get_data(image));
    const int stride = pixman_image_get_stride(image);
    double pixels = 0;
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < (w + 7) / 8; ++x)
            pixels += std::popcount(
                static_cast<unsigned>(bits[static_cast<std::ptrdiff_t>(y) * stride + x]));
    state.counters["pixels"] = pixels;
    state.counters["trapezoids"] = static_cast<double>(traps.size());
    pixman_image_unref(image);
}
BENCHMARK_CAPTURE(BM_Ellipse_pixman, a1_A4_720dpi_straight, kxbench::kA4Straight)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Ellipse_pixman, a1_A4_720dpi_turned30, kxbench::kA4Turned)
    ->Unit(benchmark::kMillisecond);

}  // namespace
