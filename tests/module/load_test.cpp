// Loading the shared library from a copy in a fresh folder: the start-up must fill the
// globals, create the product folder tree beside the file (or in the folder the host names),
// and unload without leaking (this program runs with LeakSanitizer in sanitizer builds).
#include <gtest/gtest.h>

#include <dlfcn.h>
#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include <kxbase/runtime/app_path.h>
#include <kxbase/runtime/env_obj.h>

namespace fs = std::filesystem;

namespace {

const char* const kTree[] = {"FMT",
                             "DRV",
                             "LIB",
                             "RPT",
                             "Profile",
                             "Config",
                             "Chart",
                             "Template",
                             "Config/Printer",
                             "Debug",
                             "Profile/Input",
                             "Profile/InputCMYK",
                             "Profile/Monitor",
                             "Profile/Output",
                             "Profile/Curve",
                             "Profile/NameColor",
                             "Chart/ChartLine",
                             "Chart/ChartICC",
                             "Chart/ChartProof"};

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

// Beside a writable folder the whole tree appears and g_AppPath names it; the other globals
// are as the start-up leaves them; unloading and loading again runs the start-up again.
TEST_F(Loaded, TreeAppearsBesideTheLibraryCopy) {
    for (const char* round : {"first", "second"}) {
        const fs::path lib = dir_ / round;
        const CAppPath* paths = Load(lib);
        ASSERT_NE(paths, nullptr);
        EXPECT_EQ(paths->m_strAppPath.str(), lib.string() + "/");
        EXPECT_EQ(paths->m_strInputCMYKPath.str(), lib.string() + "/Profile/InputCMYK/");
        for (const char* folder : kTree) EXPECT_TRUE(fs::is_directory(lib / folder)) << folder;

        auto note = reinterpret_cast<const char* (*)()>(dlsym(handle_, "_Z17KxProductTreeNotev"));
        const auto* version = static_cast<const CString*>(dlsym(handle_, "g_strAppVersion"));
        const auto* env = static_cast<const AEnvObj*>(dlsym(handle_, "g_EnvObj"));
        ASSERT_TRUE(note && version && env);
        EXPECT_STREQ(note(), "library folder; tree created");
        EXPECT_TRUE(version->IsEmpty());
        EXPECT_EQ(env->m_nHorzRes, 0);  // no screen in the core
        EXPECT_EQ(env->m_SystemInfo.dwPageSize, static_cast<DWORD>(sysconf(_SC_PAGESIZE)));
        EXPECT_EQ(dlclose(handle_), 0);
    }
}

// A product folder named through the environment wins: the folder and its tree are created
// there, and nothing appears beside the library file.
TEST_F(Loaded, EnvironmentNamesTheProductFolder) {
    const fs::path product = dir_ / "named";
    ASSERT_EQ(setenv(KXBASE_PRODUCT_DIR_ENV, product.c_str(), 1), 0);
    const CAppPath* paths = Load(dir_ / "lib");
    ASSERT_NE(paths, nullptr);
    EXPECT_EQ(paths->m_strAppPath.str(), product.string() + "/");
    for (const char* folder : kTree) {
        EXPECT_TRUE(fs::is_directory(product / folder)) << folder;
        EXPECT_FALSE(fs::exists(dir_ / "lib" / folder)) << folder;
    }
    EXPECT_EQ(dlclose(handle_), 0);
}
