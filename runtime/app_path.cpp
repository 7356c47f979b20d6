// CAppPath: the product folder tree below the library's own folder.
#include <kxbase/runtime/app_path.h>

#include <cstring>
#include <string>
#include <vector>

#include <kxbase/platform/module.h>
#include <kxbase/runtime/doc_obj.h>

#include "platform/sys.h"

int CAppPath::Init(HINSTANCE hModule) {
    if (hModule == nullptr) hModule = KxLibraryHandle();
    // Longer than the 360 characters the original buffer held: paths may be long.
    std::vector<char> name(kxbase::sys::MaxPathBytes() + 1u);
    const DWORD size = static_cast<DWORD>(name.size());
    const DWORD n = KxModuleFileName(hModule, name.data(), size);
    std::string folder;
    if (n > 0) {
        folder.assign(name.data(), n < size ? n : size - 1);
        const std::size_t slash = folder.find_last_of(kxbase::sys::FolderSeparators());
        if (slash == std::string::npos)
            folder += '/';
        else
            folder.resize(slash + 1);
    }
    return InitFromFolder(folder.c_str());
}

int CAppPath::InitFromFolder(const char* folder) {
    std::string app = folder ? folder : "";
    if (!app.empty() && std::strchr(kxbase::sys::FolderSeparators(), app.back()) == nullptr)
        app += '/';
    // Parents are filled before their children.
    m_strAppPath = app;
    m_strFmtPath = app + "FMT/";
    m_strDrvPath = app + "DRV/";
    m_strLibPath = app + "LIB/";
    m_strRptPath = app + "RPT/";
    m_strConfigPath = app + "Config/";
    m_strChartPath = app + "Chart/";
    m_strProfilePath = app + "Profile/";
    m_strInputPath = m_strProfilePath + "Input/";
    m_strInputCMYKPath = m_strProfilePath + "InputCMYK/";
    m_strMonitorPath = m_strProfilePath + "Monitor/";
    m_strOutputPath = m_strProfilePath + "Output/";
    m_strCurvePath = m_strProfilePath + "Curve/";
    m_strNameColorPath = m_strProfilePath + "NameColor/";
    m_strChartLinePath = m_strChartPath + "ChartLine/";
    m_strChartICCPath = m_strChartPath + "ChartICC/";
    m_strChartProofPath = m_strChartPath + "ChartProof/";
    m_strTemplatePath = app + "Template/";
    m_strPrinterPath = m_strConfigPath + "Printer/";
    m_strDebugPath = app + "Debug/";
    return 1;
}

int CAppPath::CreatePath() {
    const CString* const order[] = {
        &m_strFmtPath,       &m_strDrvPath,       &m_strLibPath,      &m_strRptPath,
        &m_strProfilePath,   &m_strConfigPath,    &m_strChartPath,    &m_strInputPath,
        &m_strInputCMYKPath, &m_strMonitorPath,   &m_strOutputPath,   &m_strCurvePath,
        &m_strNameColorPath, &m_strChartLinePath, &m_strChartICCPath, &m_strChartProofPath,
        &m_strTemplatePath,  &m_strPrinterPath,   &m_strDebugPath,
    };
    for (const CString* path : order) ADocObj::CreateDirectoryA(path->GetString());
    return 1;
}

int CAppPath::IsSystemFolder(const char* folder) {
    if (folder == nullptr || folder[0] == '\0') return 0;
    static const char* const roots[] = {
        "/usr",  "/lib",  "/lib32", "/lib64", "/libx32", "/bin",     "/sbin", "/etc",
        "/boot", "/proc", "/sys",   "/dev",   "/run",    "/var/lib", "/snap", "/nix/store"};
    const std::string f = folder;
    if (f.find_first_not_of('/') == std::string::npos) return 1;  // the root folder
    for (const char* root : roots) {
        const std::size_t n = std::strlen(root);
        if (f.compare(0, n, root) == 0 && (f.size() == n || f[n] == '/')) return 1;
    }
    return 0;
}
