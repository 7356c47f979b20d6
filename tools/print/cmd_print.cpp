// kxbase print: the page pipeline of a printing host across two processes. See print_job.h.
#include <cmath>
#include <cstdio>
#include <memory>

#include <kxbase/units/units.h>

#include "../command.h"
#include "../units_text.h"
#include "print_job.h"

namespace {

std::uint64_t ParseBytes(const std::string& text) {
    char* end = nullptr;
    const double v = std::strtod(text.c_str(), &end);
    if (end == text.c_str() || !(v > 0) || v > 1e15) return 0;
    const std::string unit = end;
    double scale = 1;
    if (unit == "K" || unit == "k")
        scale = 1024;
    else if (unit == "M" || unit == "m")
        scale = 1024.0 * 1024;
    else if (unit == "G" || unit == "g")
        scale = 1024.0 * 1024 * 1024;
    else if (!unit.empty())
        return 0;
    return static_cast<std::uint64_t>(v * scale);
}

int Usage(const std::string& message) {
    std::fprintf(stderr, "kxbase print: %s\n", message.c_str());
    return 2;
}

kxtool::Command cmd{
    "print", "Rasterise the built-in test page, compress it and print it through a second process",
    [](CLI::App& app) {
        struct Args {
            kxprint::PrintOptions o;
            std::string res = "720", codec = "pack", areaSize = "16M", printer;
        };
        auto a = std::make_shared<Args>();
        a->o.png.clear();
        app.add_option(
               "-s,--size", a->o.sizeText,
               "page: A0..A6, Letter, Legal or WIDTHxHEIGHT in mm (also cm, in), e.g. 210x297")
            ->capture_default_str();
        app.add_option("-r,--res", a->res, "resolution, e.g. 720, 600dpi, 28.346dpcm")
            ->capture_default_str();
        app.add_option("-a,--angle", a->o.setup.angleDeg, "turn of the page content in degrees")
            ->capture_default_str();
        app.add_option("-d,--depth", a->o.setup.depth, "bits per pixel: 1, 2, 4, 8 or 24")
            ->capture_default_str()
            ->check(CLI::IsMember({1, 2, 4, 8, 24}));
        app.add_option("-c,--codec", a->codec,
                       "pack (the run-length codec of the depth) or lzw (over the packed rows)")
            ->capture_default_str()
            ->check(CLI::IsMember({"pack", "lzw"}));
        app.add_option("-n,--pages", a->o.pages, "number of pages")
            ->capture_default_str()
            ->check(CLI::Range(1, 100000));
        app.add_option("--png", a->o.png,
                       "write the page as PNG (several pages: FILE-1.png ...); default page.png");
        app.add_option("--tiff", a->o.tiff,
                       "write the pages as one TIFF whose strips are LZW streams");
        app.add_option("--area", a->o.area,
                       "name of the shared memory area (default kxbase-print-UID)");
        app.add_option("--area-size", a->areaSize, "bytes of the area: bytes or with K, M, G")
            ->capture_default_str();
        app.add_option("--slots", a->o.slots, "band slots in the area")
            ->capture_default_str()
            ->check(CLI::Range(1, 1024));
        app.add_option("--band-rows", a->o.bandRows, "most rows per band")
            ->capture_default_str()
            ->check(CLI::Range(1, 1 << 20));
        // The printer side and the test hooks are not for users.
        app.add_option("--printer", a->printer, "")->group("");
        app.add_option("--stall", a->o.stall, "")
            ->group("")
            ->check(CLI::IsMember({"producer", "printer"}));
        app.add_flag("--corrupt", a->o.corrupt, "")->group("");
        return [a]() -> int {
            kxprint::PrintOptions& o = a->o;
            if (!a->printer.empty()) return kxprint::RunPrinter(a->printer, o.png, o.tiff, o.stall);
            std::string error;
            if (!kxprint::ParsePageSize(o.sizeText, o.setup, error)) return Usage(error);
            double r = 0;
            AResUnit ru = RES_DPI;
            if (!kxtool::ParseResolution(a->res, r, ru, error)) return Usage(error);
            o.setup.dpi = ToDPI(r, ru);
            if (!std::isfinite(o.setup.angleDeg)) return Usage("the angle must be a number");
            kxprint::ParseCodec(a->codec, o.codec);
            o.areaBytes = ParseBytes(a->areaSize);
            if (o.areaBytes == 0)
                return Usage("not a size: " + a->areaSize + " (examples: 16M, 65536)");
            if (o.png.empty() && o.tiff.empty()) o.png = "page.png";
            return kxprint::RunPrint(o);
        };
    }};

}  // namespace
