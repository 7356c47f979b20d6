// Feeds arbitrary doubles and integers (NaN, infinities, subnormals, 1e308) to the number
// helpers, the unit conversions and ATransform. Beyond sanitizer reports it checks that the
// 8-decimal value equals its own text read back and that zoom ratios stay in range.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>

#include <fuzzer/FuzzedDataProvider.h>

#include <kxbase/geometry.h>
#include <kxbase/units.h>
#include <kxbase/base/number_format.h>

namespace {

// A double from raw bits, or one of the awkward values picked by a selector byte.
double Double(FuzzedDataProvider& in) {
    static const double special[] = {0.0,
                                     -0.0,
                                     std::numeric_limits<double>::quiet_NaN(),
                                     std::numeric_limits<double>::infinity(),
                                     -std::numeric_limits<double>::infinity(),
                                     1e308,
                                     -1e308,
                                     4.9e-324,
                                     2147483647.5,
                                     -2147483648.5,
                                     9223372036854775807.0,
                                     0.49999999995,
                                     1e-10,
                                     600.0};
    const std::uint8_t sel = in.ConsumeIntegral<std::uint8_t>();
    if (sel < sizeof special / sizeof special[0]) return special[sel];
    std::uint64_t bits = in.ConsumeIntegral<std::uint64_t>();
    double v;
    std::memcpy(&v, &bits, sizeof v);
    return v;
}

void Numbers(FuzzedDataProvider& in) {
    const double v = Double(in);
    const int digits = in.ConsumeIntegralInRange(-3, 14);
    const int round = in.ConsumeIntegralInRange(0, 1);
    const CString text = ZelFloatPrecisionString(v, digits, round);
    if (ZelFloatPrecision(v, digits, round) != std::strtod(text.GetString(), nullptr)) std::abort();
    (void)ZelFloor(v);
    (void)ZelCeil(v);
    (void)ZelFloatToInt(v, round);
    (void)ZelFloatToINT64(v, round);
    (void)ZelFloatToDWORD(v, round);
    (void)ZelFloatToUINT64(v, round);
    const auto width = in.ConsumeIntegral<unsigned char>();
    (void)ZelIntString(in.ConsumeIntegral<int>(), round, width);
    (void)ZelUINT64String(in.ConsumeIntegral<UINT64>(), round, width);
    double r = v;
    switch (in.ConsumeIntegralInRange(0, 2)) {
        case 0:
            ZelZoomNormalRatio(r);
            break;
        case 1:
            ZelZoomInRatio(r);
            break;
        default:
            ZelZoomOutRatio(r);
            break;
    }
    if (!(r >= 1.0 / 20000 && r <= 100.0)) std::abort();
}

void Units(FuzzedDataProvider& in) {
    const double value = Double(in), res = Double(in);
    const auto ru = static_cast<AResUnit>(in.ConsumeIntegralInRange(-1, 7));
    const auto su = static_cast<ASizeUnit>(in.ConsumeIntegralInRange(-1, 8));
    const auto su2 = static_cast<ASizeUnit>(in.ConsumeIntegralInRange(-1, 8));
    const int integer = in.ConsumeIntegralInRange(0, 1);
    (void)ConvertRes(res, ru, static_cast<AResUnit>(in.ConsumeIntegralInRange(-1, 7)), integer);
    (void)ConvertSize(value, su, su2, res, ru, integer);
    (void)ToNPIXEL(value, res, ru, su);
    (void)ToINCH(value, res, ru, su);
    (void)EqualRes(value, res, ru, integer);
    (void)IsValidRes(res, ru);
    (void)RightRes(res, ru);
    CUnitTrans t;
    t.SetParams(value, res, ru, su);
    (void)t.GetValue(su2, in.ConsumeIntegralInRange(-2, 12), integer);
    char buf[8];
    (void)SizeUnitString(buf, in.ConsumeIntegralInRange(0, 8), su);
}

void Transforms(FuzzedDataProvider& in) {
    ATransform t;
    const int ops = in.ConsumeIntegralInRange(0, 4);
    for (int i = 0; i < ops; ++i) {
        const double a = Double(in), b = Double(in), c = Double(in), d = Double(in);
        switch (in.ConsumeIntegralInRange(0, 5)) {
            case 0:
                t.Translation(a, b);
                break;
            case 1:
                t.Scaling(a, b, c, d);
                break;
            case 2:
                t.Rotate(a, b, c);
                break;
            case 3:
                t.Shear(a, b, c, d);
                break;
            case 4:
                t.Reflection(a, b, c);
                break;
            default:
                t.MultMatrix(ATransform(a, b, c, d, Double(in), Double(in)));
                break;
        }
    }
    const double prec = Double(in);
    POINT pts[4];
    POINTD dpts[4];
    POINTF fpts[4];
    for (int i = 0; i < 4; ++i) {
        pts[i] = POINT{in.ConsumeIntegral<LONG>(), in.ConsumeIntegral<LONG>()};
        dpts[i] = POINTD(Double(in), Double(in));
        fpts[i] = POINTF{static_cast<float>(Double(in)), static_cast<float>(Double(in))};
    }
    const int counts[3] = {in.ConsumeIntegralInRange(-2, 2), in.ConsumeIntegralInRange(-2, 1),
                           in.ConsumeIntegralInRange(-2, 1)};
    t.CalcPoints(pts, 4, prec);
    t.CalcPointPoints(dpts, counts, 3);
    t.InverseCalcPoints(pts, 4, prec);
    t.InverseCalcPointPoints(fpts, counts, 3);
    t.InverseCalcPoint(pts[0], prec);
    t.CalcPoint(fpts[0]);
    double dist = Double(in);
    t.CalcDist(dist);
    t.InverseCalcDist(dist);
    ATransform s, o, r;
    (void)t.Resolution(dpts[0], dpts[1], &s, &o, &r);
    (void)RECTD(dpts, 4).GRECT();

    const int n = in.ConsumeIntegralInRange(1, 5);
    double m[25];
    for (int i = 0; i < n * n; ++i) m[i] = Double(in);
    (void)TransMatrix::InverseMatrix(m, n);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider in(data, size);
    Numbers(in);
    Units(in);
    Transforms(in);
    return 0;
}
