// CAppPath: the twenty folder names, the module-folder rule, CreatePath's order and silence,
// and the start-up's refusal to litter system folders.
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include <kxbase/platform/module.h>
#include <kxbase/runtime/app_path.h>

#include "module/app_p.h"

namespace fs = std::filesystem;

namespace {

std::vector<std::pair<std::string, const CString*>> members(const CAppPath& p) {
    return {{"", &p.m_strAppPath},
            {"FMT/", &p.m_strFmtPath},
            {"DRV/", &p.m_strDrvPath},
            {"LIB/", &p.m_strLibPath},
            {"RPT/", &p.m_strRptPath},
            {"Profile/", &p.m_strProfilePath},
            {"Config/", &p.m_strConfigPath},
            {"Chart/", &p.m_strChartPath},
            {"Template/", &p.m_strTemplatePath},
            {"Config/Printer/", &p.m_strPrinterPath},
            {"Debug/", &p.m_strDebugPath},
            {"Profile/Input/", &p.m_strInputPath},
            {"Profile/InputCMYK/", &p.m_strInputCMYKPath},
            {"Profile/Monitor/", &p.m_strMonitorPath},
            {"Profile/Output/", &p.m_strOutputPath},
            {"Profile/Curve/", &p.m_strCurvePath},
            {"Profile/NameColor/", &p.m_strNameColorPath},
            {"Chart/ChartLine/", &p.m_strChartLinePath},
            {"Chart/ChartICC/", &p.m_strChartICCPath},
            {"Chart/ChartProof/", &p.m_strChartProofPath}};
}

// A fresh folder under the system's temporary folder, removed afterwards.
class TempDir : public ::testing::Test {
protected:
    void SetUp() override {
        char tmpl[] = "/tmp/kxbase_app_path_XXXXXX";
        ASSERT_NE(mkdtemp(tmpl), nullptr);
        dir_ = tmpl;
    }
    void TearDown() override {
        std::error_code ec;
        fs::remove_all(dir_, ec);
    }
    std::string dir_;
};

}  // namespace

// Every member must be its parent plus the stated name, ending in '/'; a missing '/' on the
// product folder is added; an empty folder gives relative names.
TEST(CAppPath, MemberNamesFollowTheTree) {
    for (const std::string& folder : {std::string("/opt/rip/lib/"), std::string("/opt/rip/lib")}) {
        CAppPath p;
        p.InitFromFolder(folder.c_str());
        for (const auto& [name, member] : members(p))
            EXPECT_EQ(member->str(), "/opt/rip/lib/" + name) << folder << " " << name;
    }
    CAppPath rel;
    rel.InitFromFolder(nullptr);
    for (const auto& [name, member] : members(rel)) EXPECT_EQ(member->str(), name);
}

// Init with the library's own module (null handle) must name the folder of the module's file;
// a handle that is not a module must not crash and gives relative names.
TEST(CAppPath, InitUsesTheModuleFolder) {
    char file[4096];
    ASSERT_GT(GetModuleFileNameA(KxLibraryHandle(), file, sizeof file), 0u);
    const std::string folder = fs::path(file).parent_path().string() + "/";
    CAppPath byNull, byHandle;
    EXPECT_EQ(byNull.Init(nullptr), 1);
    EXPECT_EQ(byHandle.Init(KxLibraryHandle()), 1);
    EXPECT_EQ(byNull.m_strAppPath.str(), folder);
    EXPECT_EQ(byHandle.m_strChartICCPath.str(), folder + "Chart/ChartICC/");

    CAppPath bogus;
    int local = 0;
    EXPECT_EQ(bogus.Init(&local), 1);
    EXPECT_EQ(bogus.m_strAppPath.str(), "");
    EXPECT_EQ(bogus.m_strPrinterPath.str(), "Config/Printer/");
}

// CreatePath must make the whole tree inside an existing product folder, and must never
// create the product folder itself (a missing one leaves nothing behind).
TEST_F(TempDir, CreatePathMakesTheTreeButNotTheProductFolder) {
    CAppPath p;
    p.InitFromFolder(dir_.c_str());
    EXPECT_EQ(p.CreatePath(), 1);
    for (const auto& [name, member] : members(p))
        EXPECT_TRUE(fs::is_directory(member->str())) << name;
    EXPECT_EQ(p.CreatePath(), 1);  // existing folders are fine

    CAppPath missing;
    missing.InitFromFolder((dir_ + "/absent").c_str());
    EXPECT_EQ(missing.CreatePath(), 1);
    EXPECT_FALSE(fs::exists(dir_ + "/absent"));

    const std::string file = dir_ + "/plain";  // a "folder" that cannot hold folders
    std::ofstream(file) << "x";
    CAppPath underFile;
    underFile.InitFromFolder(file.c_str());
    EXPECT_EQ(underFile.CreatePath(), 1);
    CAppPath readOnly;  // refuses new folders even to the superuser
    readOnly.InitFromFolder("/proc/self/");
    EXPECT_EQ(readOnly.CreatePath(), 1);
    EXPECT_FALSE(fs::exists("/proc/self/FMT"));
}

TEST(CAppPath, SystemFolders) {
    struct Case {
        const char* folder;
        int system;
    } const cases[] = {
        {"/usr/lib/x86_64-linux-gnu/", 1},
        {"/usr/local/lib/", 1},
        {"/lib64/", 1},
        {"/", 1},
        {"//", 1},
        {"/etc", 1},
        {"/var/lib/x/", 1},
        {"/opt/rip/", 0},
        {"/usrlocal/", 0},
        {"/tmp/x/", 0},
        {"/var/tmp/", 0},
        {"relative/", 0},
        {"", 0},
        {nullptr, 0},
    };
    for (const Case& c : cases)
        EXPECT_EQ(CAppPath::IsSystemFolder(c.folder), c.system) << (c.folder ? c.folder : "null");
}

// The start-up's placement: a system folder is left untouched, a writable library folder
// gets the tree, a folder named by the host is created with its tree.
TEST_F(TempDir, StartUpPlacementRules) {
    CAppPath sys;
    sys.InitFromFolder("/usr/lib/kxbase-test-never-created/");
    EXPECT_NE(kxbase::detail::PlaceProductTree(sys, false).find("system folder"),
              std::string::npos);
    EXPECT_FALSE(fs::exists("/usr/lib/kxbase-test-never-created/"));

    CAppPath lib;
    lib.InitFromFolder(dir_.c_str());
    EXPECT_EQ(kxbase::detail::PlaceProductTree(lib, false), "library folder; tree created");
    EXPECT_TRUE(fs::is_directory(dir_ + "/Config/Printer"));

    CAppPath named;
    named.InitFromFolder((dir_ + "/product").c_str());
    EXPECT_NE(kxbase::detail::PlaceProductTree(named, true).find("tree created"),
              std::string::npos);
    EXPECT_TRUE(fs::is_directory(dir_ + "/product/Chart/ChartProof"));

    if (geteuid() != 0) {  // the superuser may write anywhere
        const std::string ro = dir_ + "/readonly";
        ASSERT_EQ(mkdir(ro.c_str(), 0555), 0);
        CAppPath p;
        p.InitFromFolder(ro.c_str());
        EXPECT_NE(kxbase::detail::PlaceProductTree(p, false).find("not writable"),
                  std::string::npos);
        EXPECT_FALSE(fs::exists(ro + "/FMT"));
    }
}
