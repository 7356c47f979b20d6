// CEllipse::EllipseRasterLine: the covered runs of each scene, one per row, into a reused
// array (as a host filling page after page would); the angle form and the transform form.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <vector>

#include <kxbase/ellipse.h>

#include "ellipse_scene.h"

namespace {

using kxbench::EllipseScene;

double Covered(const CArray<POINT>& spans) {
    double n = 0;
    for (INT_PTR i = 0; i < spans.GetSize(); ++i) n += spans[i].y - spans[i].x + 1;
    return n;
}

void BM_Ellipse_kxbase_spans(benchmark::State& state, const EllipseScene& s) {
    CArray<POINT> spans;
    RECT border;
    for (auto _ : state) {
        benchmark::DoNotOptimize(CEllipse::EllipseRasterLine(s.rc, s.Angle(), spans, &border));
        benchmark::ClobberMemory();
    }
    state.counters["pixels"] = Covered(spans);
}
BENCHMARK_CAPTURE(BM_Ellipse_kxbase_spans, A4_720dpi_straight, kxbench::kA4Straight)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Ellipse_kxbase_spans, A4_720dpi_turned30, kxbench::kA4Turned)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Ellipse_kxbase_spans, A4_150dpi_straight, kxbench::kA4Small)
    ->Unit(benchmark::kMillisecond);

// The same ellipse given as the page rectangle carried by a rotation about its centre.
void BM_Ellipse_kxbase_transform(benchmark::State& state, const EllipseScene& s) {
    ATransform t;
    t.Rotate(s.Angle(), s.Cx(), s.Cy());
    const RECT rc = s.rc;
    CArray<POINT> spans;
    RECT border;
    for (auto _ : state) {
        benchmark::DoNotOptimize(CEllipse::EllipseRasterLine(rc, t, spans, &border));
        benchmark::ClobberMemory();
    }
    state.counters["pixels"] = Covered(spans);
}
BENCHMARK_CAPTURE(BM_Ellipse_kxbase_transform, A4_720dpi_straight, kxbench::kA4Straight)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Ellipse_kxbase_transform, A4_720dpi_turned30, kxbench::kA4Turned)
    ->Unit(benchmark::kMillisecond);

}  // namespace

namespace {

// Spans and then the 1-bit mask filled from them (MSB first, as an A1 surface), for a
// like-for-like comparison with the peers that produce a mask. The mask is not cleared
// between fills, as on the peers' side.
void BM_Ellipse_kxbase_spans_to_mask(benchmark::State& state, const EllipseScene& s) {
    const int w = s.ImageWidth(), h = s.ImageHeight();
    const std::size_t stride = (static_cast<std::size_t>(w) + 31) / 32 * 4;
    std::vector<unsigned char> mask(stride * static_cast<std::size_t>(h));
    CArray<POINT> spans;
    RECT border;
    // Offsets that centre the turned ellipse in the mask.
    const int ox = static_cast<int>(0.5 * w - s.Cx()), oy = static_cast<int>(0.5 * h - s.Cy());
    for (auto _ : state) {
        const int first = CEllipse::EllipseRasterLine(s.rc, s.Angle(), spans, &border);
        for (INT_PTR i = 0; i < spans.GetSize(); ++i) {
            const long long y = first + i + oy;
            const long long x0 = std::max<long long>(spans[i].x + ox, 0);
            const long long x1 = std::min<long long>(spans[i].y + ox, w - 1);
            if (y < 0 || y >= h || x0 > x1) continue;
            unsigned char* row = &mask[static_cast<std::size_t>(y) * stride];
            const long long b0 = x0 >> 3, b1 = x1 >> 3;
            const unsigned char head = static_cast<unsigned char>(0xFFu >> (x0 & 7));
            const unsigned char tail = static_cast<unsigned char>(0xFFu << (7 - (x1 & 7)));
            if (b0 == b1) {
                row[b0] |= head & tail;
            } else {
                row[b0] |= head;
                std::memset(row + b0 + 1, 0xFF, static_cast<std::size_t>(b1 - b0 - 1));
                row[b1] |= tail;
            }
        }
        benchmark::DoNotOptimize(mask.data());
        benchmark::ClobberMemory();
    }
    double pixels = 0;
    for (unsigned char b : mask) pixels += std::popcount(static_cast<unsigned>(b));
    state.counters["pixels"] = pixels;
}
BENCHMARK_CAPTURE(BM_Ellipse_kxbase_spans_to_mask, A4_720dpi_straight, kxbench::kA4Straight)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Ellipse_kxbase_spans_to_mask, A4_720dpi_turned30, kxbench::kA4Turned)
    ->Unit(benchmark::kMillisecond);

}  // namespace
