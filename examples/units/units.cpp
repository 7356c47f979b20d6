// Resolution and length units: page sizes in pixels, unit conversions and unit names.
#include <cstdio>

#include <kxbase/units.h>

int main() {
    // A4 at 600 DPI. ToNPIXEL rounds half away from zero; ToPIXEL keeps 8 decimals.
    const int width = ToNPIXEL(210.0, 600.0, RES_DPI, SIZE_MM);
    const int height = ToNPIXEL(297.0, 600.0, RES_DPI, SIZE_MM);
    std::printf("A4 at 600 DPI: %d x %d pixels\n", width, height);

    // Resolutions convert between units; results are rounded to 8 decimals, which is part
    // of the contract (stored settings are compared with these values).
    const double dpmm = ToDPMM(600.0, RES_DPI);
    std::printf("600 DPI = %.8f dots per mm\n", dpmm);

    // Sizes convert through millimetres; pixels need the resolution.
    const double inches = ConvertSize(4960.0, SIZE_PIXEL, SIZE_INCH, 600.0, RES_DPI, 0);
    std::printf("4960 pixels at 600 DPI = %.8f in\n", inches);

    // Valid resolutions lie between 1 and 20000 DPI; RightRes clamps into that range.
    std::printf("30000 DPI valid: %d, clamped: %.0f\n", IsValidRes(30000.0, RES_DPI),
                RightRes(30000.0, RES_DPI));

    // Unit names come from the library's string table (UTF-8).
    CString name;
    SizeUnitString(name, SIZE_MM);
    std::printf("name of SIZE_MM: %s\n", name.GetString());

    return width == 4961 && height == 7016 && dpmm == 23.62204724 && inches > 8.26 &&
                   inches < 8.27 && !name.IsEmpty()
               ? 0
               : 1;
}
