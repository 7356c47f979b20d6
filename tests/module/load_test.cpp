// Loading the shared library from a copy in a fresh folder: the start-up must fill the
// globals, create the product folder tree beside the file (or in the folder the host names),
// and unload without leaking (this program runs with LeakSanitizer in sanitizer builds).
#include <gtest/gtest.h>

#include <dlfcn.h>
#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include <kxbase/runtime/app_path.h>
#include <kxbase/runtime/env_obj.h>

namespace fs = std::filesystem;

namespace {

// The product folder tree, relative to the product folder.
std::vector<std::string> Tree() {
    std::istringstream in(
        "FMT DRV LIB RPT Profile Config Chart Template Config/Printer Debug Profile/Input "
        "Profile/InputCMYK Profile/Monitor Profile/Output Profile/Curve Profile/NameColor "
        "Chart/ChartLine Chart/ChartICC Chart/ChartProof");
    std::vector<std::string> v;
    for (std::string s; in >> s;) v.push_back(s);
    return v;
}

class Loaded : public ::testing::Test {
protected:
    void SetUp() override {
        char tmpl[] = "/tmp/kxbase_load_XXXXXX";
        ASSERT_NE(mkdtemp(tmpl), nullptr);
        dir_ = fs::path(tmpl);
    }
    void TearDown() override {
        unsetenv(KXBASE_PRODUCT_DIR_ENV);
        std::error_code ec;
        fs::remove_all(dir_, ec);
    }
    // Copies the library into `folder` and loads the copy; returns g_AppPath of that copy.
    const CAppPath* Load(const fs::path& folder) {
        fs::create_directories(folder);
        const fs::path copy = folder / "libkxBaseCommon.so";
        fs::copy_file(KXBASE_SHARED_LIBRARY, copy, fs::copy_options::overwrite_existing);
        handle_ = dlopen(copy.c_str(), RTLD_NOW | RTLD_LOCAL);
        EXPECT_NE(handle_, nullptr) << dlerror();
        return handle_ ? static_cast<const CAppPath*>(dlsym(handle_, "g_AppPath")) : nullptr;
    }
    fs::path dir_;
    void* handle_ = nullptr;
};

}  // namespace

// Catches a start-up that does not fill the globals or create the tree beside the library (or,
// when the environment names a product folder, there and nothing beside the file), and an
// unload that leaks or keeps state so that loading again does not run the start-up again.
TEST_F(Loaded, StartUpPlacesTheTreeAndUnloadsCleanly) {
    for (const std::string round : {"first", "second", "named"}) {
        const fs::path lib = dir_ / round, product = round == "named" ? dir_ / "product" : lib;
        if (round == "named") setenv(KXBASE_PRODUCT_DIR_ENV, product.c_str(), 1);
        const CAppPath* paths = Load(lib);
        ASSERT_NE(paths, nullptr);
        EXPECT_EQ(paths->m_strInputCMYKPath.str(), product.string() + "/Profile/InputCMYK/");
        for (const std::string& folder : Tree()) {
            EXPECT_TRUE(fs::is_directory(product / folder)) << folder;
            EXPECT_EQ(fs::exists(lib / folder), lib == product) << folder;
        }
        auto note = reinterpret_cast<const char* (*)()>(dlsym(handle_, "_Z17KxProductTreeNotev"));
        const auto* version = static_cast<const CString*>(dlsym(handle_, "g_strAppVersion"));
        const auto* env = static_cast<const AEnvObj*>(dlsym(handle_, "g_EnvObj"));
        ASSERT_TRUE(note && version && env);
        EXPECT_TRUE(lib != product || std::string(note()) == "library folder; tree created");
        EXPECT_TRUE(version->IsEmpty());
        EXPECT_EQ(env->m_nHorzRes, 0);  // no screen in the core
        EXPECT_EQ(env->m_SystemInfo.dwPageSize, static_cast<DWORD>(sysconf(_SC_PAGESIZE)));
        EXPECT_EQ(dlclose(handle_), 0);
    }
}
