// The control polygon every B-spline benchmark converts: one million points on a smooth,
// winding path (deterministic, so every peer sees the same data).
#pragma once

#include <cmath>
#include <vector>

#include <kxbase/geometry/pointd.h>

namespace kxbench {

constexpr int kControlPoints = 1000000;

inline const std::vector<POINTD>& ControlPolygon() {
    static const std::vector<POINTD> poly = [] {
        std::vector<POINTD> p;
        p.reserve(kControlPoints);
        for (int i = 0; i < kControlPoints; ++i) {
            const double t = i * 0.001;
            p.emplace_back(1000.0 * std::cos(t) + 37.0 * std::sin(7.3 * t) + i * 0.01,
                           800.0 * std::sin(1.7 * t) - 29.0 * std::cos(5.1 * t));
        }
        return p;
    }();
    return poly;
}

}  // namespace kxbench
