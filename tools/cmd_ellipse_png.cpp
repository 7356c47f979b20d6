// kxbase ellipse: rasterises one ellipse with CEllipse's scan-line spans into a 1-bit image
// and writes it as PNG, so a person can look at what the library produces.
//
//   kxbase ellipse --rect L,T,R,B [--angle DEG | --transform a,b,c,d,e,f] --png OUT.png
//                  [--outline] [--scale N]
//
// The ellipse is the one inscribed in the rectangle, turned by DEG degrees about its centre
// (EllipseRasterLine with an angle) or carried into device space by the transform, given in
// the matrix order eM11, eM12, eM21, eM22, eDx, eDy (EllipseRasterLine with an ATransform).
// The image covers the spans and the outline with a margin of 4 pixels; its origin is
// printed. Without --outline the PNG is 1-bit: white background, black runs. With --outline
// the midpoint tracer's outline (MidPointEllipse, same angle or transform) is drawn over it
// in a 2-bit palette image: white background, grey runs, black outline pixels that lie on a
// run, red outline pixels that lie outside every run.
#include <algorithm>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <csetjmp>
#include <cstdio>
#include <string>
#include <vector>

#include <png.h>

#include <kxbase/ellipse.h>
#include <kxbase/geometry/transform.h>

#include "command.h"
#include "out_file.h"

namespace {

constexpr int kMargin = 4;
constexpr long long kMaxSide = 32768;  // 128 MiB of 1-bit pixels at most

bool ParseList(const std::string& text, std::vector<double>& out, std::size_t want) {
    out.clear();
    const char* p = text.c_str();
    while (*p) {
        char* end = nullptr;
        const double v = std::strtod(p, &end);
        if (end == p || !std::isfinite(v)) return false;
        out.push_back(v);
        p = end;
        if (*p == ',')
            ++p;
        else if (*p)
            return false;
    }
    return out.size() == want;
}

// One palette index per pixel (0 background, 1 run, 2 outline on a run, 3 outline off runs).
struct Canvas {
    long long left = 0, top = 0, width = 0, height = 0;
    std::vector<unsigned char> px;

    unsigned char& At(long long x, long long y) {
        return px[static_cast<std::size_t>((y - top) * width + (x - left))];
    }
    bool Inside(long long x, long long y) const {
        return x >= left && x < left + width && y >= top && y < top + height;
    }
};

// Encodes the canvas into f, each pixel as a scale x scale block. libpng reports errors by
// jumping back to the setjmp here, which skips destructors: so this frame owns nothing that
// has one, and the row buffer (row.size() bytes, one packed output row) is the caller's.
// On failure err holds errno as the failing call left it.
bool EncodePng(FILE* f, const Canvas& c, int depth, int scale, std::vector<png_byte>& row,
               int& err) {
    const int perByte = 8 / depth;
    const long long w = c.width * scale, h = c.height * scale;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    if (!png || !info || setjmp(png_jmpbuf(png))) {
        err = errno;
        png_destroy_write_struct(&png, &info);
        return false;
    }
    png_init_io(png, f);
    png_set_IHDR(png, info, static_cast<png_uint_32>(w), static_cast<png_uint_32>(h), depth,
                 PNG_COLOR_TYPE_PALETTE, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    png_color palette[4] = {{255, 255, 255}, {0, 0, 0}, {0, 0, 0}, {220, 0, 0}};
    if (depth == 2) palette[1] = {170, 170, 170};
    png_set_PLTE(png, info, palette, depth == 1 ? 2 : 4);
    png_write_info(png, info);
    for (long long y = 0; y < h; ++y) {
        std::fill(row.begin(), row.end(), 0);
        const unsigned char* src = &c.px[static_cast<std::size_t>(y / scale * c.width)];
        for (long long x = 0; x < w; ++x) {
            const int shift = 8 - depth * (1 + static_cast<int>(x % perByte));
            row[static_cast<std::size_t>(x / perByte)] |=
                static_cast<png_byte>(src[x / scale] << shift);
        }
        png_write_row(png, row.data());
    }
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    return true;
}

// Writes the canvas to path whole or not at all.
bool WritePng(const std::string& path, const Canvas& c, int depth, int scale) {
    kxtool::OutFile out;
    std::string error;
    if (!out.Open(path, error)) {
        std::fprintf(stderr, "ellipse: %s\n", error.c_str());
        return false;
    }
    const int perByte = 8 / depth;
    std::vector<png_byte> row(static_cast<std::size_t>((c.width * scale + perByte - 1) / perByte));
    int err = 0;
    if (!EncodePng(out.File(), c, depth, scale, row, err)) {
        if (std::ferror(out.File()))
            std::fprintf(stderr, "ellipse: %s\n", kxtool::WriteError(path, err).c_str());
        else
            std::fprintf(stderr, "ellipse: PNG encoding failed\n");
        return false;
    }
    if (out.Commit(error)) return true;
    std::fprintf(stderr, "ellipse: %s\n", error.c_str());
    return false;
}

struct Options {
    std::string rect, transform, png;
    double angle = 0.0;
    int scale = 1;
    bool haveAngle = false, outline = false;
};

int Run(const Options& o) {
    std::vector<double> r, m;
    if (!ParseList(o.rect, r, 4)) {
        std::fprintf(stderr, "ellipse: --rect wants four numbers L,T,R,B\n");
        return 2;
    }
    for (double v : r)
        if (std::fabs(v) > 2147483647.0) {
            std::fprintf(stderr, "ellipse: --rect edge outside the 32-bit range\n");
            return 2;
        }
    const CRect rc(static_cast<LONG>(r[0]), static_cast<LONG>(r[1]), static_cast<LONG>(r[2]),
                   static_cast<LONG>(r[3]));
    const bool useTransform = !o.transform.empty();
    if (useTransform && !ParseList(o.transform, m, 6)) {
        std::fprintf(stderr, "ellipse: --transform wants six numbers a,b,c,d,e,f\n");
        return 2;
    }
    const double angle = o.angle * (M_PI / 180.0);

    CArray<POINT> spans, outline;
    RECT border{0, 0, 0, 0};
    int first = 0;
    if (useTransform) {
        const ATransform t(m[0], m[1], m[2], m[3], m[4], m[5]);
        first = CEllipse::EllipseRasterLine(static_cast<const RECT&>(rc), t, spans, &border);
        if (o.outline) CEllipse::MidPointEllipse(static_cast<const RECT&>(rc), t, outline);
    } else {
        first = CEllipse::EllipseRasterLine(rc, angle, spans, &border);
        if (o.outline) CEllipse::MidPointEllipse(static_cast<const RECT&>(rc), angle, outline);
    }
    const INT_PTR rows = spans.GetSize();
    std::printf("first row %d, %lld rows, border (%d, %d, %d, %d), outline %lld pixels\n", first,
                static_cast<long long>(rows), border.left, border.top, border.right, border.bottom,
                static_cast<long long>(outline.GetSize()));

    // Extent of everything drawn.
    long long x0 = LLONG_MAX, y0 = LLONG_MAX, x1 = LLONG_MIN, y1 = LLONG_MIN;
    auto grow = [&](long long x, long long y) {
        x0 = std::min(x0, x);
        y0 = std::min(y0, y);
        x1 = std::max(x1, x);
        y1 = std::max(y1, y);
    };
    for (INT_PTR i = 0; i < rows; ++i) {
        grow(spans[i].x, first + static_cast<long long>(i));
        grow(spans[i].y, first + static_cast<long long>(i));
    }
    for (INT_PTR i = 0; i < outline.GetSize(); ++i) grow(outline[i].x, outline[i].y);
    if (x0 > x1) {
        std::fprintf(stderr, "ellipse: nothing to draw (empty shape)\n");
        x0 = y0 = 0;
        x1 = y1 = 0;
    }
    Canvas c;
    c.left = x0 - kMargin;
    c.top = y0 - kMargin;
    c.width = x1 - x0 + 1 + 2 * kMargin;
    c.height = y1 - y0 + 1 + 2 * kMargin;
    if (c.width * o.scale > kMaxSide || c.height * o.scale > kMaxSide) {
        std::fprintf(stderr, "ellipse: image of %lld x %lld pixels is too large (limit %lld)\n",
                     c.width * o.scale, c.height * o.scale, kMaxSide);
        return 1;
    }
    c.px.assign(static_cast<std::size_t>(c.width * c.height), 0);
    for (INT_PTR i = 0; i < rows; ++i)
        for (long long x = spans[i].x; x <= spans[i].y; ++x)
            c.At(x, first + static_cast<long long>(i)) = 1;
    for (INT_PTR i = 0; i < outline.GetSize(); ++i) {
        unsigned char& p = c.At(outline[i].x, outline[i].y);
        p = p == 1 || p == 2 ? 2 : 3;
    }
    std::printf("image origin (%lld, %lld), %lld x %lld pixels\n", c.left, c.top, c.width,
                c.height);
    return WritePng(o.png, c, o.outline ? 2 : 1, o.scale) ? 0 : 1;
}

}  // namespace

static kxtool::Command cmd{
    "ellipse", "Fill an ellipse's scan-line spans into a 1-bit PNG (outline on request)",
    [](CLI::App& sub) {
        static Options o;
        sub.add_option("--rect", o.rect, "Bounding rectangle L,T,R,B (device pixels)")->required();
        auto* angle = sub.add_option_function<double>(
                             "--angle", [](double v) { o.angle = v, o.haveAngle = true; },
                             "Turn about the rectangle's centre, degrees (clockwise on the screen)")
                          ->check(CLI::Range(-1e6, 1e6));
        sub.add_option("--transform", o.transform,
                       "Map into device space: eM11,eM12,eM21,eM22,eDx,eDy")
            ->excludes(angle);
        sub.add_option("--png", o.png, "Output PNG file")->required();
        sub.add_option("--scale", o.scale, "Draw each pixel as an N x N block (1-16)")
            ->check(CLI::Range(1, 16));
        sub.add_flag("--outline", o.outline,
                     "Draw the midpoint outline too (2-bit palette: grey runs, black outline "
                     "on runs, red outline off runs)");
        return [] { return Run(o); };
    }};
