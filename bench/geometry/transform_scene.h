// The shared input of the point-mapping benchmarks: one million points and one rotating,
// scaling, translating map, identical for every library.
#pragma once

#include <random>
#include <vector>

#include <kxbase/geometry/transform.h>

namespace kxbench {

inline constexpr int kPointCount = 1000000;

/// The map: scale (1.5, 0.75), rotate 0.3 rad about (10, 20), translate (100, -50).
inline ATransform BenchMap() {
    ATransform t;
    t.Scaling(1.5, 0.75, 0.0, 0.0);
    t.Rotate(0.3, 10.0, 20.0);
    t.Translation(100.0, -50.0);
    return t;
}

/// x, y pairs, the same sequence on every call.
inline std::vector<double> BenchCoordinates() {
    std::mt19937_64 rng(42);
    std::uniform_real_distribution<double> u(-5000.0, 5000.0);
    std::vector<double> xy(2 * kPointCount);
    for (double& v : xy) v = u(rng);
    return xy;
}

}  // namespace kxbench
