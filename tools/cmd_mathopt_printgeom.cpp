// kxbase printgeom: the raster fraction print geometry for a resolution, a control step and
// a start position, and the frequency / speed / resolution conversions of a raster printer.
#include <cmath>
#include <cstdio>
#include <memory>

#include <kxbase/mathopt/amathopt.h>

#include "command.h"

namespace {

// ULONG and DWORD are unsigned long on Windows and 32-bit everywhere: print them as unsigned.
unsigned u(ULONG v) {
    return static_cast<unsigned>(v);
}

struct Options {
    double resolution = 0;
    double step = 0;
    ULONG position = 0;
    bool roundUp = false;
    bool integer = false;
    ULONG pixels = 1000;
    double frequency = NAN;
    double speed = NAN;
};

int Fail(const char* message) {
    std::fprintf(stderr, "printgeom: %s\n", message);
    return 2;
}

/// Explains why the pattern cannot be built, in the order the builder checks.
int ExplainRefusal(const Options& o) {
    char text[256];
    const double max = AMathOpt::raster_control_resolution_max(o.step);
    if (o.resolution > max) {
        std::snprintf(text, sizeof text,
                      "%.8g dpi is above the highest resolution a %.8g mm control step allows "
                      "(%.8g dpi)",
                      o.resolution, o.step, max);
        return Fail(text);
    }
    const double ratio = 25.4 / o.resolution / o.step;
    if (ratio > 65535.0) {
        std::snprintf(text, sizeof text,
                      "%.8g dpi needs %.8g control steps per pixel; at most 65535 are possible",
                      o.resolution, ratio);
        return Fail(text);
    }
    return Fail("no valid step pattern exists for this resolution and step");
}

int Run(const Options& o) {
    if (!std::isfinite(o.step) || o.step <= 1e-10)
        return Fail("the control step must be a positive length in millimetres");
    if (!std::isfinite(o.resolution) || o.resolution <= 1e-10)
        return Fail("the resolution must be a positive number of dots per inch");

    RASTER_FRACTION_PRINTINFO info{};
    if (!AMathOpt::raster_fraction_printinfo(info, o.position, o.resolution, o.step,
                                             o.roundUp ? 1 : 0, o.integer ? 0 : 1))
        return ExplainRefusal(o);

    const double real = AMathOpt::raster_fraction_correct_resolution(info, o.step);
    std::printf("control step          %.8g mm (at most %.8g dpi)\n", o.step,
                AMathOpt::raster_control_resolution_max(o.step));
    std::printf("requested resolution  %.8g dpi, start position %u, rounding %s\n", o.resolution,
                u(o.position), o.roundUp ? "up" : "down");
    std::printf("steps per pixel       %.8f ideal\n", 25.4 / o.resolution / o.step);
    if (info.stepFirst == info.stepSecond) {
        std::printf("pattern               integer pitch of %u steps per pixel\n",
                    u(info.stepFirst));
    } else {
        std::printf(
            "pattern               lead %u px x %u steps, then periods of %u px x %u steps"
            " + %u px x %u steps\n",
            u(info.leadCount), u(info.stepFirst), u(info.secondCount), u(info.stepSecond),
            u(info.firstCount), u(info.stepFirst));
    }
    std::printf(
        "record                stepFirst %u, stepSecond %u, leadCount %u, secondCount %u,"
        " firstCount %u\n",
        u(info.stepFirst), u(info.stepSecond), u(info.leadCount), u(info.secondCount),
        u(info.firstCount));
    std::printf("printed resolution    %.8f dpi\n", real);
    const ULONG width = AMathOpt::raster_width_from_image(info, o.pixels);
    std::printf("printed width         %u px -> %u steps = %.8f mm\n", u(o.pixels), u(width),
                width * o.step);

    if (!std::isnan(o.frequency)) {
        if (!(o.frequency > 0)) return Fail("the firing frequency must be positive");
        const double speed = AMathOpt::FrequencyToSpeed(real, o.frequency);
        std::printf("firing %.8g Hz        -> carriage speed %.8f mm/s (back: %.8f Hz, %.8f dpi)\n",
                    o.frequency, speed, AMathOpt::SpeedToFrequency(real, speed),
                    AMathOpt::FrequencyToResolution(o.frequency, speed));
    }
    if (!std::isnan(o.speed)) {
        if (!(o.speed > 0)) return Fail("the carriage speed must be positive");
        const double frequency = AMathOpt::SpeedToFrequency(real, o.speed);
        std::printf("carriage %.8g mm/s    -> firing frequency %.8f Hz (back: %.8f mm/s)\n",
                    o.speed, frequency, AMathOpt::FrequencyToSpeed(real, frequency));
    }
    return 0;
}

static kxtool::Command cmd{
    "printgeom",
    "Raster fraction print geometry: step pattern, printed resolution and width, and "
    "frequency/speed conversions",
    [](CLI::App& sub) -> kxtool::Run {
        auto o = std::make_shared<Options>();
        sub.add_option("-r,--resolution", o->resolution, "output resolution in dpi")->required();
        sub.add_option("-s,--step", o->step, "control step length in mm (0.0254 = 1/1000 inch)")
            ->required();
        sub.add_option("-p,--position", o->position, "start position in control steps");
        sub.add_flag("--round-up", o->roundUp, "align the pattern rounding up");
        sub.add_flag("--integer", o->integer, "whole-step pitch only (no fractional pattern)");
        sub.add_option("-w,--pixels", o->pixels, "image width in pixels for the printed width");
        sub.add_option("-f,--frequency", o->frequency, "firing frequency in Hz");
        sub.add_option("--speed", o->speed, "carriage speed in mm/s");
        return [o] { return Run(*o); };
    }};

}  // namespace
