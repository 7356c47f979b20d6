// CAppPath: the twenty folder names, the module-folder rule, CreatePath's silence, and the
// start-up's refusal to litter system folders.
#include <gtest/gtest.h>

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <kxbase/platform/module.h>
#include <kxbase/runtime/app_path.h>

#include "module/app_p.h"

namespace fs = std::filesystem;

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
    EXPECT_EQ(p[4].Init(&local), 1);
    const std::string base[] = {"/opt/rip/lib/", "/opt/rip/lib/", "",
                                fs::path(file).parent_path().string() + "/", ""};
    for (int k = 0; k < 5; ++k)
        for (size_t i = 0; i < std::size(kMembers); ++i)
            EXPECT_EQ((p[k].*kMembers[i]).str(), base[k] + kNames[i]) << k << " " << kNames[i];
}

// CreatePath must make the whole tree inside an existing product folder, never create the
// product folder itself, and stay silent (1) where folders cannot be made.
TEST(CAppPath, CreatePathMakesTheTreeButNotTheProductFolder) {
    char tmpl[] = "/tmp/kxbase_app_path_XXXXXX";
    ASSERT_NE(mkdtemp(tmpl), nullptr);
    const std::string dir = tmpl;
    std::ofstream(dir + "/plain") << "x";
    for (const std::string& folder :
         {dir, dir + "/absent", dir + "/plain", std::string("/proc/self/")}) {
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
