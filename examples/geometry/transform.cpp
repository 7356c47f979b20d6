// Page-to-device transform: a point in millimetres on an A4 page, printed landscape at
// 720 DPI, carried to device pixels and back.
#include <cmath>
#include <cstdio>
#include <numbers>

#include <kxbase/geometry.h>

int main() {
    const double dotsPerMm = 720.0 / 25.4;

    // Composition appends each step after the previous ones: first turn the page a quarter
    // turn about its origin (x' = -y, y' = x), then move it right by the page's height so
    // it lies in positive coordinates, then scale millimetres to pixels.
    ATransform pageToDevice;
    pageToDevice.Rotate(std::numbers::pi / 2, 0.0, 0.0);
    pageToDevice.Translation(297.0, 0.0);
    pageToDevice.Scaling(dotsPerMm, dotsPerMm, 0.0, 0.0);

    POINTD p{10.0, 20.0};  // 10 mm from the left, 20 mm from the top of the portrait page
    pageToDevice.CalcPoint(p);
    std::printf("(10 mm, 20 mm) -> (%.2f px, %.2f px)\n", p.x, p.y);

    // The inverse is computed from the six values on demand; check that it exists first.
    if (!pageToDevice.CanInverseCalc()) return 1;
    pageToDevice.InverseCalcPoint(p);
    std::printf("and back: (%.6f mm, %.6f mm)\n", p.x, p.y);

    // Distances scale by the transform's linear part: 1 mm is 28.35 px here.
    double d = 1.0;
    pageToDevice.CalcDist(d);
    std::printf("1 mm = %.4f px\n", d);

    return std::fabs(p.x - 10.0) < 1e-9 && std::fabs(p.y - 20.0) < 1e-9 &&
                   std::fabs(d - dotsPerMm) < 1e-9
               ? 0
               : 1;
}
