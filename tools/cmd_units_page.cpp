// kxbase page: a standard page size at a resolution, in pixels and every length unit.
// kxbase units: converts a length or a resolution between units.
#include <cctype>
#include <cstdio>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include <kxbase/units.h>
#include <kxbase/base/number_format.h>

#include "command.h"
#include "units_text.h"

namespace {

constexpr ASizeUnit kSizeUnits[] = {SIZE_PIXEL, SIZE_CMM, SIZE_MM, SIZE_CM, SIZE_M, SIZE_INCH};

struct Page {
    double width, height;
    ASizeUnit unit;
};

// ISO A series in millimetres, North American sizes in inches.
const std::map<std::string, Page>& pages() {
    static const std::map<std::string, Page> table = {
        {"a0", {841, 1189, SIZE_MM}}, {"a1", {594, 841, SIZE_MM}}, {"a2", {420, 594, SIZE_MM}},
        {"a3", {297, 420, SIZE_MM}},  {"a4", {210, 297, SIZE_MM}}, {"a5", {148, 210, SIZE_MM}},
        {"a6", {105, 148, SIZE_MM}},  {"letter", {8.5, 11, SIZE_INCH}}, {"legal", {8.5, 14, SIZE_INCH}},
    };
    return table;
}

// "A4", "letter" or "210x297mm" (any length unit; millimetres when none is given).
bool parse_page(std::string text, Page& page, std::string& error) {
    std::string key = text;
    for (char& c : key) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (auto it = pages().find(key); it != pages().end()) {
        page = it->second;
        return true;
    }
    const auto x = key.find('x');
    std::string unit;
    double w = 0, h = 0;
    if (x == std::string::npos || !kxtool::SplitNumber(key.substr(0, x), w, unit) || !unit.empty() ||
        !kxtool::SplitNumber(key.substr(x + 1), h, unit)) {
        error = "unknown page \"" + text + "\" (A0 to A6, Letter, Legal, or WIDTHxHEIGHT[unit] such as 210x297mm)";
        return false;
    }
    auto u = unit.empty() ? std::optional<ASizeUnit>(SIZE_MM) : kxtool::ParseSizeUnit(unit);
    if (!u) {
        error = "unknown length unit \"" + unit + "\" (px, cmm, mm, cm, m, in)";
        return false;
    }
    if (w <= 0 || h <= 0) {
        error = "page sides must be positive";
        return false;
    }
    page = {w, h, *u};
    return true;
}

int fail(const std::string& message) {
    std::fprintf(stderr, "kxbase: %s\n", message.c_str());
    return 2;
}

std::string unit_label(ASizeUnit unit) {
    CString name;
    SizeUnitString(name, unit);
    return std::string(kxtool::SizeUnitName(unit)) + " (" + name.GetString() + ")";
}

}  // namespace

static kxtool::Command page_cmd{
    "page", "Print a page size at a resolution, in pixels and every length unit", [](CLI::App& sub) {
        auto name = std::make_shared<std::string>("A4");
        auto res = std::make_shared<std::string>("720dpi");
        sub.add_option("size", *name, "A0..A6, Letter, Legal or WIDTHxHEIGHT[unit], e.g. 210x297mm")
            ->capture_default_str();
        sub.add_option("-r,--res", *res, "resolution, e.g. 720, 600dpi, 28.346dpcm")->capture_default_str();
        return [name, res]() -> int {
            Page page{};
            std::string error;
            double r = 0;
            AResUnit ru = RES_DPI;
            if (!parse_page(*name, page, error) || !kxtool::ParseResolution(*res, r, ru, error))
                return fail(error);
            if (page.unit == SIZE_PIXEL)
                return fail("give the page in a length unit; pixels depend on the resolution");
            std::printf("page %s at %s (%.8g dpi, %.8g dots/mm)\n\n", name->c_str(), res->c_str(),
                        ToDPI(r, ru), ToDPMM(r, ru));
            std::printf("  %-16s %18s %18s\n", "unit", "width", "height");
            for (ASizeUnit to : kSizeUnits) {
                const double w = ConvertSize(page.width, page.unit, to, r, ru, to == SIZE_PIXEL);
                const double h = ConvertSize(page.height, page.unit, to, r, ru, to == SIZE_PIXEL);
                std::printf("  %-16s %18s %18s\n", unit_label(to).c_str(),
                            ZelFloatPrecisionString(w, 8, 1).GetString(),
                            ZelFloatPrecisionString(h, 8, 1).GetString());
            }
            return 0;
        };
    }};

static kxtool::Command units_cmd{
    "units", "Convert a length or a resolution: kxbase units 210 mm --to in", [](CLI::App& sub) {
        struct Args {
            double value = 0;
            std::string from, to, res;
            bool integer = false;
        };
        auto a = std::make_shared<Args>();
        sub.add_option("value", a->value, "the number to convert")->required();
        sub.add_option("unit", a->from, "its unit: px cmm mm cm m in | dpi dpcmm dpmm dpcm dpm")->required();
        sub.add_option("--to", a->to, "the unit to convert to")->required();
        sub.add_option("-r,--res", a->res, "resolution for pixel conversions, e.g. 720dpi");
        sub.add_flag("-i,--integer", a->integer, "round pixel and DPI results to whole numbers");
        return [a]() -> int {
            const int integer = a->integer ? 1 : 0;
            if (auto from = kxtool::ParseResUnit(a->from)) {
                auto to = kxtool::ParseResUnit(a->to);
                if (!to) return fail("cannot convert a resolution to \"" + a->to + "\" (dpi, dpcmm, dpmm, dpcm, dpm)");
                const double out = ConvertRes(a->value, *from, *to, integer);
                std::printf("%s %s\n", ZelFloatPrecisionString(out, 8, 1).GetString(), kxtool::ResUnitName(*to));
                return 0;
            }
            auto from = kxtool::ParseSizeUnit(a->from);
            if (!from) return fail("unknown unit \"" + a->from + "\"");
            auto to = kxtool::ParseSizeUnit(a->to);
            if (!to) return fail("cannot convert a length to \"" + a->to + "\" (px, cmm, mm, cm, m, in)");
            double r = 0;
            AResUnit ru = RES_DPI;
            std::string error;
            if (!a->res.empty() && !kxtool::ParseResolution(a->res, r, ru, error)) return fail(error);
            if ((*from == SIZE_PIXEL || *to == SIZE_PIXEL) && a->res.empty())
                return fail("pixel conversions need a resolution (--res 720dpi)");
            const double out = ConvertSize(a->value, *from, *to, r, ru, integer);
            std::printf("%s %s\n", ZelFloatPrecisionString(out, 8, 1).GetString(), kxtool::SizeUnitName(*to));
            return 0;
        };
    }};
