// Reading unit names and "number+unit" texts on the command line.
#pragma once

#include <optional>
#include <string>

#include <kxbase/units/units.h>

namespace kxtool {

/// "dpi", "dpcmm" (dots per 0.01 mm), "dpmm", "dpcm", "dpm"; case-insensitive.
std::optional<AResUnit> ParseResUnit(const std::string& name);
/// "px"/"pixel", "cmm" (0.01 mm), "mm", "cm", "m", "in"/"inch"; case-insensitive.
std::optional<ASizeUnit> ParseSizeUnit(const std::string& name);
/// Splits "28.346dpcm" into 28.346 and "dpcm"; the unit part may be empty. Fails on text that
/// does not start with a finite number.
bool SplitNumber(const std::string& text, double& value, std::string& unit);
/// "720", "720dpi", "28.346dpcm": a resolution, DPI when no unit is given.
bool ParseResolution(const std::string& text, double& value, AResUnit& unit, std::string& error);

const char* ResUnitName(AResUnit unit);
const char* SizeUnitName(ASizeUnit unit);

}  // namespace kxtool
