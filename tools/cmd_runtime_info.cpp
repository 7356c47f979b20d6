// kxbase info: what the library found at start-up, as a table: its version and file, the
// product folder tree (and whether each folder exists), the counter frequency and the screen.
#include <sys/stat.h>

#include <cinttypes>
#include <cstdio>
#include <string>

#include <kxbase/platform/module.h>
#include <kxbase/runtime/app_path.h>
#include <kxbase/runtime/cost_time.h>
#include <kxbase/runtime/env_obj.h>
#include <kxbase/version.h>

#include "command.h"

namespace {

void row(const char* name, const std::string& value) {
    std::printf("  %-22s %s\n", name, value.c_str());
}

std::string num(INT64 v) {
    return std::to_string(v);
}

std::string folder_state(const CString& path) {
    if (path.IsEmpty()) return "-";
    struct stat st {};
    if (stat(path.GetString(), &st) != 0) return "missing";
    return S_ISDIR(st.st_mode) ? "yes" : "not a folder";
}

std::string dpi(double v) {
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.8g", v);
    return buf;
}

int run_info() {
    std::printf("Library\n");
    row("version", KXBASE_VERSION_STRING);
    char file[4096];
    const DWORD n = KxModuleFileName(KxLibraryHandle(), file, sizeof file);
    row("file", n > 0 ? std::string(file) : std::string("(unknown)"));

    std::printf("\nProduct folders (%s)\n",
                KxProductTreeNote()[0] ? KxProductTreeNote() : "start-up did not run");
    std::printf("  %-22s %-13s %s\n", "member", "exists", "path");
    const struct {
        const char* name;
        const CString& path;
    } folders[] = {
        {"m_strAppPath", g_AppPath.m_strAppPath},
        {"m_strFmtPath", g_AppPath.m_strFmtPath},
        {"m_strDrvPath", g_AppPath.m_strDrvPath},
        {"m_strLibPath", g_AppPath.m_strLibPath},
        {"m_strRptPath", g_AppPath.m_strRptPath},
        {"m_strProfilePath", g_AppPath.m_strProfilePath},
        {"m_strConfigPath", g_AppPath.m_strConfigPath},
        {"m_strChartPath", g_AppPath.m_strChartPath},
        {"m_strTemplatePath", g_AppPath.m_strTemplatePath},
        {"m_strPrinterPath", g_AppPath.m_strPrinterPath},
        {"m_strDebugPath", g_AppPath.m_strDebugPath},
        {"m_strInputPath", g_AppPath.m_strInputPath},
        {"m_strInputCMYKPath", g_AppPath.m_strInputCMYKPath},
        {"m_strMonitorPath", g_AppPath.m_strMonitorPath},
        {"m_strOutputPath", g_AppPath.m_strOutputPath},
        {"m_strCurvePath", g_AppPath.m_strCurvePath},
        {"m_strNameColorPath", g_AppPath.m_strNameColorPath},
        {"m_strChartLinePath", g_AppPath.m_strChartLinePath},
        {"m_strChartICCPath", g_AppPath.m_strChartICCPath},
        {"m_strChartProofPath", g_AppPath.m_strChartProofPath},
    };
    for (const auto& f : folders)
        std::printf("  %-22s %-13s %s\n", f.name, folder_state(f.path).c_str(),
                    f.path.IsEmpty() ? "(empty)" : f.path.GetString());

    std::printf("\nClock\n");
    const INT64 freq = CCostTime::PerformanceCounter_Frequency();
    row("counter frequency",
        freq ? num(freq) + " counts/s" : std::string("0 (no counter: millisecond ticks)"));
    row("microsecond clock", num(CCostTime::PerformanceCounter_CurrentCount()) + " us");

    const AEnvObj& e = g_EnvObj;
    std::printf("\nScreen%s\n",
                e.m_nHorzRes == 0 ? " (none: the core library has no display)" : "");
    row("bits per pixel", num(e.m_nBitsPixel));
    row("pixels", num(e.m_nHorzRes) + " x " + num(e.m_nVertRes));
    row("logical pixels/inch", num(e.m_nLogPixelsX) + " x " + num(e.m_nLogPixelsY));
    row("size (mm)", num(e.m_nHorzSize) + " x " + num(e.m_nVertSize));
    row("resolution (dpi)", dpi(e.m_dScreenDpiX) + " x " + dpi(e.m_dScreenDpiY));

    const SYSTEM_INFO& si = e.m_SystemInfo;
    std::printf("\nSystem\n");
    row("architecture", num(si.wProcessorArchitecture));
    row("processors", num(si.dwNumberOfProcessors));
    row("page size", num(si.dwPageSize));
    row("allocation granularity", num(si.dwAllocationGranularity));
    return 0;
}

}  // namespace

static kxtool::Command cmd{
    "info",
    "Print the library's version and file, the product folder tree, the counter "
    "frequency and the screen record",
    [](CLI::App&) { return [] { return run_info(); }; }};
