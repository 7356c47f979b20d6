// Kinds of the geometry values: points [x, y], rectangles [left, top, right, bottom] and
// matrices [eM11, eM12, eM21, eM22, eDx, eDy]. Doubles accept the vectors' "nan"/"inf" strings
// and are written back as such, so non-finite results survive the round trip.
#pragma once

#include <kxbase/geometry.h>

#include "conformance.h"

namespace conf {

#define KXCONF_RECORD2(T, F, a, b)                                                                \
    template <>                                                                                   \
    struct Codec<T> {                                                                             \
        static T get(const json& v) { return T(Codec<F>::get(v.at(0)), Codec<F>::get(v.at(1))); } \
        static json put(const T& p) {                                                             \
            return json::array({Codec<F>::put(p.a), Codec<F>::put(p.b)});                         \
        }                                                                                         \
    };
KXCONF_RECORD2(POINT, LONG, x, y)
KXCONF_RECORD2(POINTD, double, x, y)
KXCONF_RECORD2(POINTF, float, x, y)
#undef KXCONF_RECORD2

#define KXCONF_RECT(T, F)                                                                    \
    template <>                                                                              \
    struct Codec<T> {                                                                        \
        static T get(const json& v) {                                                        \
            return T(Codec<F>::get(v.at(0)), Codec<F>::get(v.at(1)), Codec<F>::get(v.at(2)), \
                     Codec<F>::get(v.at(3)));                                                \
        }                                                                                    \
        static json put(const T& r) {                                                        \
            return json::array({Codec<F>::put(r.left), Codec<F>::put(r.top),                 \
                                Codec<F>::put(r.right), Codec<F>::put(r.bottom)});           \
        }                                                                                    \
    };
KXCONF_RECT(RECT, LONG)
KXCONF_RECT(RECTD, double)
KXCONF_RECT(CRect, LONG)
#undef KXCONF_RECT

#define KXCONF_MATRIX(T, F)                                                   \
    template <>                                                               \
    struct Codec<T> {                                                         \
        static T get(const json& v) {                                         \
            T m;                                                              \
            F* f[6] = {&m.eM11, &m.eM12, &m.eM21, &m.eM22, &m.eDx, &m.eDy};   \
            for (int i = 0; i < 6; ++i) *f[i] = Codec<F>::get(v.at(i));       \
            return m;                                                         \
        }                                                                     \
        static json put(const T& m) {                                         \
            return json::array({Codec<F>::put(m.eM11), Codec<F>::put(m.eM12), \
                                Codec<F>::put(m.eM21), Codec<F>::put(m.eM22), \
                                Codec<F>::put(m.eDx), Codec<F>::put(m.eDy)}); \
        }                                                                     \
    };
KXCONF_MATRIX(TransMatrix, double)
KXCONF_MATRIX(ATransform, double)
KXCONF_MATRIX(XFORM, float)
#undef KXCONF_MATRIX

}  // namespace conf
