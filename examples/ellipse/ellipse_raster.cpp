// Ellipse spans into a raster: EllipseRasterLine gives one inclusive run (first x, last x)
// per row; filling a bitmap is one memset per row.
#include <cmath>
#include <cstdio>
#include <cstring>
#include <numbers>
#include <vector>

#include <kxbase/ellipse.h>

int main() {
    const int width = 48, height = 24;
    std::vector<unsigned char> raster(static_cast<std::size_t>(width * height), 0);

    // The ellipse inscribed in this rectangle (right and bottom exclusive), turned by 30
    // degrees about its centre. Angles are radians, turning +x toward +y.
    const CRect rc(4, 6, 44, 18);
    CArray<POINT> spans;
    RECT border{};
    const int firstRow = CEllipse::EllipseRasterLine(rc, std::numbers::pi / 6, spans, &border);

    long long area = 0;
    for (INT_PTR i = 0; i < spans.GetSize(); ++i) {
        const int y = firstRow + static_cast<int>(i);
        const POINT run = spans[i];  // x = first pixel, y = last pixel of the row
        if (y < 0 || y >= height || run.x > run.y) continue;
        const int x0 = run.x < 0 ? 0 : run.x, x1 = run.y >= width ? width - 1 : run.y;
        std::memset(&raster[static_cast<std::size_t>(y * width + x0)], 1,
                    static_cast<std::size_t>(x1 - x0 + 1));
        area += run.y - run.x + 1;
    }

    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) std::putchar(raster[y * width + x] ? '#' : '.');
        std::putchar('\n');
    }
    std::printf("rows %d..%d, border (%d, %d, %d, %d), %lld pixels\n", firstRow,
                firstRow + static_cast<int>(spans.GetSize()) - 1, border.left, border.top,
                border.right, border.bottom, area);

    // The filled area is close to pi * a * b (half-axes 20 and 6).
    const double expected = std::numbers::pi * 20.0 * 6.0;
    return spans.GetSize() > 0 && std::fabs(static_cast<double>(area) - expected) < 0.1 * expected
               ? 0
               : 1;
}
