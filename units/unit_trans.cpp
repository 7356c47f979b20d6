// CUnitTrans: a length in millimetres with the resolution that turns it into pixels.
#include <kxbase/units/unit_trans.h>

#include <cmath>

#include <kxbase/base/number_format.h>

int CUnitTrans::SetParams(double value, double res, AResUnit resUnit, ASizeUnit unit) {
    // Converted on the magnitude so negative lengths round like positive ones.
    const double mm = ToMM(std::fabs(value), res, resUnit, unit);
    m_dLength = value < 0.0 ? -mm : mm;
    return SetRes(res, resUnit);
}

int CUnitTrans::SetRes(double res, AResUnit unit) {
    m_dResolution = res >= 0.0 ? ToDPMM(res, unit) : 0.0;
    return IsValid();
}

int CUnitTrans::IsValid() const {
    return (m_dResolution > 0.0 && std::fabs(m_dResolution) > KX_ONE_DPI_IN_DPMM) ? 1 : 0;
}

double CUnitTrans::GetValue(ASizeUnit unit, int digits, int toInteger) const {
    if (!IsValid()) return 0.0;
    const double v = ConvertSize(m_dLength, SIZE_MM, unit, m_dResolution, RES_DPMM, toInteger);
    return toInteger ? v : ZelFloatPrecision(v, digits, 1);
}
