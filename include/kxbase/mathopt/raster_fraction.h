/// \file
/// RASTER_FRACTION_PRINTINFO: the step pattern that gives a raster printer a fractional
/// pixel pitch.
///
/// A print engine moves in whole control steps. To print at a resolution whose pixel pitch
/// is not a whole number of steps, the pattern alternates two whole step sizes: a lead run
/// of `leadCount` pixels at `stepFirst` steps each, then periods of `secondCount` pixels at
/// `stepSecond` followed by `firstCount` pixels at `stepFirst`, repeating. When both step
/// sizes are equal the pattern is a plain integer pitch and the three counts hold the
/// placeholder 10000.
///
/// AMathOpt builds (raster_fraction_printinfo), measures (raster_fraction_correct_resolution)
/// and applies (raster_width_from_image) such patterns; see <kxbase/mathopt/amathopt.h>.
///
/// Thread-safety: a plain record; distinct objects are independent.
#pragma once

#include <kxbase/export.h>
#include <kxbase/platform/types.h>

/// Plain record, copyable by value. Fields in this order.
struct RASTER_FRACTION_PRINTINFO {
    WORD stepFirst;     ///< control steps per pixel in the lead run and each period's second run
    WORD stepSecond;    ///< control steps per pixel in each period's first run
    DWORD leadCount;    ///< pixels of the lead run (at stepFirst) before the first period
    DWORD secondCount;  ///< pixels per period at stepSecond (the period's first run)
    DWORD firstCount;   ///< pixels per period at stepFirst (the period's second run)

    /// True when both steps and both per-period counts are non-zero and the lead run is no
    /// longer than the period's stepFirst run (leadCount <= firstCount).
    bool IsValid() const {
        return stepFirst != 0 && stepSecond != 0 && firstCount != 0 && secondCount != 0 &&
               leadCount <= firstCount;
    }
};
