// ACompress run-length codecs and line packing on an A4 band at 720 DPI (Pack/UnPack per
// depth) and on 64 KiB of mixed bytes (Comp_RLE/UnComp_RLE). Throughput counts expanded bytes.
#include <benchmark/benchmark.h>

#include <kxbase/compress/compress.h>

#include "rle_pages.h"

namespace {

using kxbench::Band;
using kxbench::kA4Width720;
using kxbench::kBandLines;

struct Streams {
    std::vector<BYTE> data;
    std::vector<ULONG> off, len;
};

Streams PackBand(int depth) {
    const auto& band = Band(depth);
    const ULONG lineBytes = kA4Width720 * (depth == 24 ? 3 : 1);
    const ULONG cap = static_cast<ULONG>(ACompress::PackBound(lineBytes, depth));
    Streams s;
    s.data.resize(std::size_t{cap} * kBandLines);
    for (ULONG y = 0; y < kBandLines; ++y) {
        ULONG n = 0;
        ACompress::Pack(&band[std::size_t{y} * lineBytes], lineBytes, depth,
                        &s.data[std::size_t{y} * cap], cap, n);
        s.off.push_back(y * cap);
        s.len.push_back(n);
    }
    return s;
}

void BM_Kx_Pack(benchmark::State& st) {
    const int depth = static_cast<int>(st.range(0));
    const auto& band = Band(depth);
    const ULONG lineBytes = kA4Width720 * (depth == 24 ? 3 : 1);
    const ULONG cap = static_cast<ULONG>(ACompress::PackBound(lineBytes, depth));
    std::vector<BYTE> out(cap);
    std::size_t packed = 0;
    for (auto _ : st) {
        packed = 0;
        for (ULONG y = 0; y < kBandLines; ++y) {
            ULONG n = 0;
            ACompress::Pack(&band[std::size_t{y} * lineBytes], lineBytes, depth, out.data(), cap,
                            n);
            packed += n;
        }
        benchmark::DoNotOptimize(out.data());
    }
    st.SetBytesProcessed(st.iterations() * band.size());
    st.counters["ratio"] = double(packed) / band.size();
}
BENCHMARK(BM_Kx_Pack)->Arg(1)->Arg(8)->Arg(24);

void BM_Kx_UnPack(benchmark::State& st) {
    const int depth = static_cast<int>(st.range(0));
    const Streams s = PackBand(depth);
    std::vector<BYTE> out(std::size_t{kA4Width720} * (depth == 24 ? 3 : 1));
    for (auto _ : st) {
        for (ULONG y = 0; y < kBandLines; ++y)
            ACompress::UnPack(&s.data[s.off[y]], s.len[y], kA4Width720, depth, out.data());
        benchmark::DoNotOptimize(out.data());
    }
    st.SetBytesProcessed(st.iterations() * Band(depth).size());
}
BENCHMARK(BM_Kx_UnPack)->Arg(1)->Arg(8)->Arg(24);

void BM_Kx_CompRLE_Mixed64K(benchmark::State& st) {
    const auto& in = kxbench::Mixed64K();
    std::vector<BYTE> out(ACompress::RleCompressBound(in.size()));
    for (auto _ : st) {
        ULONG n = 0;
        ACompress::Comp_RLE(in.data(), ULONG(in.size()), out.data(), ULONG(out.size()), n);
        benchmark::DoNotOptimize(n);
    }
    st.SetBytesProcessed(st.iterations() * in.size());
}
BENCHMARK(BM_Kx_CompRLE_Mixed64K);

void BM_Kx_UnCompRLE_Mixed64K(benchmark::State& st) {
    const auto& in = kxbench::Mixed64K();
    std::vector<BYTE> z(ACompress::RleCompressBound(in.size())), out(in.size());
    ULONG zn = 0;
    ACompress::Comp_RLE(in.data(), ULONG(in.size()), z.data(), ULONG(z.size()), zn);
    for (auto _ : st) {
        ULONG n = 0;
        ACompress::UnComp_RLE(z.data(), zn, out.data(), ULONG(out.size()), n);
        benchmark::DoNotOptimize(out.data());
    }
    st.SetBytesProcessed(st.iterations() * in.size());
}
BENCHMARK(BM_Kx_UnCompRLE_Mixed64K);

}  // namespace
