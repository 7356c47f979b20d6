// CAppPath: the twenty folder names, the module-folder rule, CreatePath's silence, and the
// start-up's refusal to litter system folders.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <kxbase/base/messages.h>
#include <kxbase/platform/module.h>
#include <kxbase/runtime/app_path.h>

#include "module/app_p.h"

namespace fs = std::filesystem;

#if defined(_WIN32)
constexpr const char* kFolderSeparators = "\\/";  // the module path comes with backslashes
#else
constexpr const char* kFolderSeparators = "/";
#endif

namespace {

// Every member, beside the name it must carry below the product folder.
using Member = CString CAppPath::*;
const Member kMembers[] = {
    &CAppPath::m_strAppPath,       &CAppPath::m_strFmtPath,       &CAppPath::m_strDrvPath,
    &CAppPath::m_strLibPath,       &CAppPath::m_strRptPath,       &CAppPath::m_strProfilePath,
    &CAppPath::m_strConfigPath,    &CAppPath::m_strChartPath,     &CAppPath::m_strTemplatePath,
    &CAppPath::m_strPrinterPath,   &CAppPath::m_strDebugPath,     &CAppPath::m_strInputPath,
    &CAppPath::m_strInputCMYKPath, &CAppPath::m_strMonitorPath,   &CAppPath::m_strOutputPath,
    &CAppPath::m_strCurvePath,     &CAppPath::m_strNameColorPath, &CAppPath::m_strChartLinePath,
    &CAppPath::m_strChartICCPath,  &CAppPath::m_strChartProofPath};
const std::vector<std::string> kNames = [] {
    std::vector<std::string> v{""};
    std::istringstream in(
        "FMT DRV LIB RPT Profile Config Chart Template Config/Printer Debug Profile/Input "
        "Profile/InputCMYK Profile/Monitor Profile/Output Profile/Curve Profile/NameColor "
        "Chart/ChartLine Chart/ChartICC Chart/ChartProof");
    for (std::string s; in >> s;) v.push_back(s + "/");
    return v;
}();

}  // namespace

// A member naming the wrong folder, a missing '/' on the product folder not added, Init not
// naming the folder of the library's own file, or a null folder or a handle that is not a
// module not giving relative names.
TEST(CAppPath, MemberNamesFollowTheTree) {
    char file[4096];
    ASSERT_GT(KxModuleFileName(KxLibraryHandle(), file, sizeof file), 0u);
    CAppPath p[5];
    p[0].InitFromFolder("/opt/rip/lib/");
    p[1].InitFromFolder("/opt/rip/lib");
    p[2].InitFromFolder(nullptr);
    EXPECT_EQ(p[3].Init(nullptr), 1);
    int local = 0;
    EXPECT_EQ(p[4].Init(reinterpret_cast<HINSTANCE>(&local)), 1);
    const std::string base[] = {
        "/opt/rip/lib/", "/opt/rip/lib/", "",
        std::string(file).substr(0, std::string(file).find_last_of(kFolderSeparators) + 1), ""};
    for (int k = 0; k < 5; ++k)
        for (size_t i = 0; i < std::size(kMembers); ++i)
            EXPECT_EQ((p[k].*kMembers[i]).str(), base[k] + kNames[i]) << k << " " << kNames[i];
}

// CreatePath must make the whole tree inside an existing product folder, never create the
// product folder itself, and stay silent (1) where folders cannot be made.
TEST(CAppPath, CreatePathMakesTheTreeButNotTheProductFolder) {
    const fs::path unique =
        fs::temp_directory_path() / ("kxbase_app_path_" + std::to_string(std::random_device{}()));
    ASSERT_TRUE(fs::create_directory(unique));
    const std::string dir = unique.string();
    std::ofstream(dir + "/plain") << "x";
    std::vector<std::string> folders{dir, dir + "/absent", dir + "/plain"};
#if !defined(_WIN32)
    folders.push_back("/proc/self/");  // a folder where nothing can be created
#endif
    for (const std::string& folder : folders) {
        CAppPath p;
        p.InitFromFolder(folder.c_str());
        EXPECT_EQ(p.CreatePath(), 1) << folder;
        for (size_t i = 1; i < std::size(kMembers); ++i)  // [0] is the product folder
            EXPECT_EQ(fs::is_directory((p.*kMembers[i]).str()), folder == dir) << kNames[i];
    }
    EXPECT_FALSE(fs::exists(dir + "/absent"));
    fs::remove_all(dir);
}

// A system folder taken for a product folder (or a look-alike prefix taken for one), and the
// start-up littering a system folder with the tree.
TEST(CAppPath, SystemFoldersAreLeftAlone) {
#if defined(_WIN32)
    GTEST_SKIP() << "the system folders listed are those of a POSIX file system";
#endif
    for (const char* f : {"/usr/lib/x86_64-linux-gnu/", "/usr/local/lib/", "/lib64/", "/", "//",
                          "/etc", "/var/lib/x/"})
        EXPECT_EQ(CAppPath::IsSystemFolder(f), 1) << f;
    for (const char* f : {"/opt/rip/", "/usrlocal/", "/tmp/x/", "/var/tmp/", "relative/", "",
                          static_cast<const char*>(nullptr)})
        EXPECT_EQ(CAppPath::IsSystemFolder(f), 0) << (f ? f : "null");
    CAppPath sys;
    sys.InitFromFolder("/usr/lib/kxbase-test-never-created/");
    EXPECT_NE(kxbase::detail::PlaceProductTree(sys, false).find("system folder"),
              std::string::npos);
    EXPECT_FALSE(fs::exists("/usr/lib/kxbase-test-never-created/"));
}

// Catches: a socket layer that did not start letting the start-up go on, or failing it without
// telling the host why; and a start-up of this program that did not succeed.
TEST(StartUp, SocketFailureShowsItsTextAndFailsTheStartUp) {
    EXPECT_FALSE(kxbase::detail::StartUpFailed());
    std::vector<std::string> shown;
    UINT type = 0;
    const KxDialogHook previous = KxSetDialogHook([&](const CString& text, UINT t) {
        shown.push_back(text.GetString());
        type = t;
        return IDOK;
    });
    const int started = kxbase::detail::StartUpSockets(KxLibraryHandle(), true);
    const int refused = kxbase::detail::StartUpSockets(KxLibraryHandle(), false);
    KxSetDialogHook(previous);
    EXPECT_EQ(started, 1);
    EXPECT_EQ(refused, 0);
    EXPECT_EQ(shown, std::vector<std::string>{"Windows 套接字初始化失败。"});
    EXPECT_EQ(type, MB_OK | MB_ICONERROR);
}
