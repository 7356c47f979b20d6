/// \file
/// CUnitTrans: one length together with the resolution needed to express it in pixels.
///
/// Thread-safety: plain value type; distinct objects may be used from any thread.
#pragma once

#include <kxbase/export.h>
#include <kxbase/units/units.h>

/// A length in millimetres with its resolution in dots per millimetre, read back in any unit.
class KXBASE_API CUnitTrans {
public:
    double m_dLength = 0.0;      ///< the length in millimetres (may be negative)
    double m_dResolution = 0.0;  ///< the resolution in dots per millimetre (0.0 when not set)

    /// Both fields 0.0.
    CUnitTrans() = default;
    ///@{
    /// Plain copies.
    CUnitTrans(const CUnitTrans&) = default;
    CUnitTrans& operator=(const CUnitTrans&) = default;
    ///@}

    /// length = ToMM(|value|, res, resUnit, unit), negated back when value < 0; resolution =
    /// ToDPMM(res, resUnit) when res >= 0, else 0.0. Returns IsValid().
    int SetParams(double value, double res, AResUnit resUnit, ASizeUnit unit);
    /// Sets only the resolution, as SetParams does. Returns IsValid().
    int SetRes(double res, AResUnit unit);
    /// 1 when the resolution is > 0 and greater than one DPI (KX_ONE_DPI_IN_DPMM). Strictly
    /// greater: exactly one DPI is not valid here, although IsValidRes accepts it.
    int IsValid() const;
    /// 0.0 when not valid. Otherwise v = ConvertSize(length, SIZE_MM, unit, resolution,
    /// RES_DPMM, toInteger); when toInteger is 0, v is further rounded to `digits` decimals
    /// (ZelFloatPrecision(v, digits, 1)); when it is non-zero, v is returned as it is.
    double GetValue(ASizeUnit unit, int digits, int toInteger) const;
};
