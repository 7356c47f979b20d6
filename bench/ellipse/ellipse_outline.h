// The scene's ellipse as a closed polygon, for peers that fill polygons: enough vertices that
// the chords stay within 0.05 pixel of the curve (cairo's default tolerance is 0.1).
#pragma once

#include <cmath>
#include <vector>

#include "ellipse_scene.h"

namespace kxbench {

struct Vertex {
    double x, y;
};

inline std::vector<Vertex> EllipsePolygon(const EllipseScene& s, double cx, double cy) {
    const double r = std::max(s.Rx(), s.Ry());
    const int n = static_cast<int>(std::ceil(M_PI / std::acos(1.0 - 0.05 / r)));
    const double c = std::cos(s.Angle()), sn = std::sin(s.Angle());
    std::vector<Vertex> v;
    for (int i = 0; i < n; ++i) {
        const double t = 2 * M_PI * i / n;
        const double x = s.Rx() * std::cos(t), y = s.Ry() * std::sin(t);
        v.push_back({cx + c * x - sn * y, cy + sn * x + c * y});
    }
    return v;
}

}  // namespace kxbench
