// Uses a little of every core subsystem through the umbrella header only.
#include <cstdio>

#include <kxbase/kxbase.h>

int main() {
    ATransform t;
    t.Scaling(2.0, 2.0, 0.0, 0.0);
    double x = 1.5, y = -2.0;
    t.CalcPoint(x, y);
    const int pixels = ToNPIXEL(210.0, 720.0, RES_DPI, SIZE_MM);
    const CString text = ZelFloatPrecisionString(ToDPMM(72.0, RES_DPI), 8, 1);
    std::printf("%g %g %d %s\n", x, y, pixels, text.GetString());
    return (x == 3.0 && y == -4.0 && pixels == 5953 && text == "2.83464567") ? 0 : 1;
}
