#include "units_text.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>

namespace kxtool {

namespace {
std::string lower(std::string s) {
    for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return s;
}
}  // namespace

std::optional<AResUnit> ParseResUnit(const std::string& name) {
    const std::string n = lower(name);
    if (n == "dpi") return RES_DPI;
    if (n == "dpcmm") return RES_DPCMM;
    if (n == "dpmm") return RES_DPMM;
    if (n == "dpcm") return RES_DPCM;
    if (n == "dpm") return RES_DPM;
    return std::nullopt;
}

std::optional<ASizeUnit> ParseSizeUnit(const std::string& name) {
    const std::string n = lower(name);
    if (n == "px" || n == "pixel" || n == "pixels") return SIZE_PIXEL;
    if (n == "cmm") return SIZE_CMM;
    if (n == "mm") return SIZE_MM;
    if (n == "cm") return SIZE_CM;
    if (n == "m") return SIZE_M;
    if (n == "in" || n == "inch" || n == "inches") return SIZE_INCH;
    return std::nullopt;
}

bool SplitNumber(const std::string& text, double& value, std::string& unit) {
    const char* begin = text.c_str();
    char* end = nullptr;
    value = std::strtod(begin, &end);
    if (end == begin || !std::isfinite(value)) return false;
    unit = end;
    return true;
}

bool ParseResolution(const std::string& text, double& value, AResUnit& unit, std::string& error) {
    std::string name;
    if (!SplitNumber(text, value, name)) {
        error = "not a resolution: \"" + text + "\" (examples: 720, 600dpi, 28.346dpcm)";
        return false;
    }
    if (name.empty()) {
        unit = RES_DPI;
    } else if (auto u = ParseResUnit(name)) {
        unit = *u;
    } else {
        error = "unknown resolution unit \"" + name + "\" (dpi, dpcmm, dpmm, dpcm, dpm)";
        return false;
    }
    if (!IsValidRes(value, unit)) {
        error = "resolution " + text + " is outside 1 to 20000 DPI";
        return false;
    }
    return true;
}

const char* ResUnitName(AResUnit unit) {
    switch (unit) {
        case RES_DPI: return "dpi";
        case RES_DPCMM: return "dpcmm";
        case RES_DPMM: return "dpmm";
        case RES_DPCM: return "dpcm";
        case RES_DPM: return "dpm";
    }
    return "?";
}

const char* SizeUnitName(ASizeUnit unit) {
    switch (unit) {
        case SIZE_PIXEL: return "px";
        case SIZE_CMM: return "cmm";
        case SIZE_MM: return "mm";
        case SIZE_CM: return "cm";
        case SIZE_M: return "m";
        case SIZE_INCH: return "in";
    }
    return "?";
}

}  // namespace kxtool
