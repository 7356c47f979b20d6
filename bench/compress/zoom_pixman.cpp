// Peer: pixman nearest-neighbour scaling (pixman_image_composite with a scale transform and
// PIXMAN_FILTER_NEAREST) of the same lines and band as zoom_kxbase.cpp: a8 for 8-bit,
// r8g8b8 for 24-bit. pixman rows are 4-byte aligned, so the data is copied into such rows once.
#ifdef KXBASE_HAVE_PIXMAN
#include <cstring>

#include <benchmark/benchmark.h>
#include <pixman.h>

#include "rle_pages.h"

namespace {

using kxbench::Band;
using kxbench::kA4Width720;
using kxbench::kBandLines;

struct Img {
    std::vector<std::uint32_t> bits;
    pixman_image_t* img = nullptr;
    Img(pixman_format_code_t fmt, int w, int h, std::size_t pb) {
        const int stride = static_cast<int>((pb * w + 3) / 4 * 4);
        bits.assign(std::size_t(stride) / 4 * h + 1, 0);
        img = pixman_image_create_bits(fmt, w, h, bits.data(), stride);
    }
    ~Img() { pixman_image_unref(img); }
    int stride() const { return pixman_image_get_stride(img); }
    unsigned char* row(int y) {
        return reinterpret_cast<unsigned char*>(bits.data()) + std::size_t(stride()) * y;
    }
};

void Scale(benchmark::State& st, int lines, int dstLines) {
    const int depth = static_cast<int>(st.range(0));
    const int dw = static_cast<int>(kA4Width720 * st.range(1) / 100);
    const std::size_t pb = depth == 24 ? 3 : 1;
    const pixman_format_code_t fmt = depth == 24 ? PIXMAN_r8g8b8 : PIXMAN_a8;
    Img src(fmt, kA4Width720, lines, pb), dst(fmt, dw, dstLines, pb);
    for (int y = 0; y < lines; ++y)
        std::memcpy(src.row(y), &Band(depth)[std::size_t(y) * pb * kA4Width720], pb * kA4Width720);
    pixman_transform_t t;
    pixman_transform_init_scale(&t, pixman_double_to_fixed(double(kA4Width720) / dw),
                                pixman_double_to_fixed(double(lines) / dstLines));
    pixman_image_set_transform(src.img, &t);
    pixman_image_set_filter(src.img, PIXMAN_FILTER_NEAREST, nullptr, 0);
    for (auto _ : st) {
        pixman_image_composite(PIXMAN_OP_SRC, src.img, nullptr, dst.img, 0, 0, 0, 0, 0, 0, dw,
                               dstLines);
        benchmark::DoNotOptimize(dst.bits.data());
    }
    st.SetBytesProcessed(st.iterations() * pb * dw * dstLines);
}

void BM_Pixman_ScaleLine(benchmark::State& st) {
    Scale(st, 1, 1);
}
BENCHMARK(BM_Pixman_ScaleLine)->Args({8, 200})->Args({8, 50})->Args({24, 200})->Args({24, 50});

void BM_Pixman_ScaleBand(benchmark::State& st) {
    Scale(st, kBandLines, static_cast<int>(kBandLines * st.range(1) / 100));
}
BENCHMARK(BM_Pixman_ScaleBand)->Args({8, 200})->Args({8, 50})->Args({24, 200})->Args({24, 50});

}  // namespace
#endif
