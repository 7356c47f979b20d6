// The ellipses every fill benchmark draws: the one inscribed in an A4 page at 720 DPI
// (5950 x 8420 pixels), straight and turned by 30 degrees about its centre, plus the same page
// at 150 DPI for peers that cannot take the large one. Peers get the ellipse's centre,
// semi-axes and angle and an image just large enough for its bounding box; the "pixels"
// counter of each benchmark lets a reader check that every side covered the same area.
#pragma once

#include <cmath>

#include <kxbase/platform/crect.h>

namespace kxbench {

struct EllipseScene {
    const char* name;
    CRect rc;  // bounding rectangle before turning, device pixels
    double degrees;

    double Angle() const { return degrees * (M_PI / 180.0); }
    double Cx() const { return 0.5 * (rc.left + rc.right); }
    double Cy() const { return 0.5 * (rc.top + rc.bottom); }
    double Rx() const { return 0.5 * (rc.right - rc.left); }
    double Ry() const { return 0.5 * (rc.bottom - rc.top); }
    // Half extents of the turned ellipse's bounding box.
    double Ex() const {
        const double c = std::cos(Angle()), s = std::sin(Angle());
        return std::sqrt(Rx() * Rx() * c * c + Ry() * Ry() * s * s);
    }
    double Ey() const {
        const double c = std::cos(Angle()), s = std::sin(Angle());
        return std::sqrt(Rx() * Rx() * s * s + Ry() * Ry() * c * c);
    }
    // An image holding the turned ellipse, with the ellipse centred in it.
    int ImageWidth() const { return static_cast<int>(std::ceil(2 * Ex())) + 4; }
    int ImageHeight() const { return static_cast<int>(std::ceil(2 * Ey())) + 4; }
};

inline const EllipseScene kA4Straight{"A4_720dpi_straight", CRect(0, 0, 5950, 8420), 0.0};
inline const EllipseScene kA4Turned{"A4_720dpi_turned30", CRect(0, 0, 5950, 8420), 30.0};
inline const EllipseScene kA4Small{"A4_150dpi_straight", CRect(0, 0, 1240, 1754), 0.0};

}  // namespace kxbench
