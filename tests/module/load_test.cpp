// Loading the shared library from a copy in a fresh folder: the start-up must fill the
// globals, create the product folder tree beside the file (or in the folder the host names),
// and unload without leaking.
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
        unsetenv(KXBASE_PRODUCT_DIR_ENV);
    }
    void TearDown() override {
        unsetenv(KXBASE_PRODUCT_DIR_ENV);
        std::error_code ec;
        fs::remove_all(dir_, ec);
    }
    // Copies the library into `folder` and loads the copy.
    void* Load(const fs::path& folder) {
        fs::create_directories(folder);
        const fs::path copy = folder / "libkxBaseCommon.so";
        fs::copy_file(KXBASE_SHARED_LIBRARY, copy, fs::copy_options::overwrite_existing);
        void* h = dlopen(copy.c_str(), RTLD_NOW | RTLD_LOCAL);
        EXPECT_NE(h, nullptr) << dlerror();
        return h;
    }
    template <class T>
    T* Symbol(void* h, const char* name) {
        void* p = dlsym(h, name);
        EXPECT_NE(p, nullptr) << name;
        return static_cast<T*>(p);
    }
    fs::path dir_;
};

}  // namespace

// Loading beside a writable folder: g_AppPath names that folder and the whole tree exists.
TEST_F(Loaded, TreeAppearsBesideTheLibraryCopy) {
    const fs::path lib = dir_ / "product";
    void* h = Load(lib);
    ASSERT_NE(h, nullptr);
    const auto* paths = Symbol<CAppPath>(h, "g_AppPath");
    ASSERT_NE(paths, nullptr);
    EXPECT_EQ(paths->m_strAppPath.str(), lib.string() + "/");
    EXPECT_EQ(paths->m_strInputCMYKPath.str(), lib.string() + "/Profile/InputCMYK/");
    for (const char* folder : kTree) EXPECT_TRUE(fs::is_directory(lib / folder)) << folder;

    auto note = reinterpret_cast<const char* (*)()>(dlsym(h, "_Z17KxProductTreeNotev"));
    ASSERT_NE(note, nullptr);
    EXPECT_STREQ(note(), "library folder; tree created");

    // The other globals as the start-up leaves them: no version text, no screen in the core.
    const auto* version = Symbol<CString>(h, "g_strAppVersion");
    const auto* env = Symbol<AEnvObj>(h, "g_EnvObj");
    ASSERT_TRUE(version && env);
    EXPECT_TRUE(version->IsEmpty());
    EXPECT_EQ(env->m_nHorzRes, 0);
    EXPECT_EQ(env->m_dScreenDpiX, 0.0);
    EXPECT_EQ(env->m_SystemInfo.dwPageSize, static_cast<DWORD>(sysconf(_SC_PAGESIZE)));
    EXPECT_EQ(dlclose(h), 0);
}

// A product folder named through the environment wins: the tree goes there (the folder itself
// is created), and nothing appears beside the library file.
TEST_F(Loaded, EnvironmentNamesTheProductFolder) {
    const fs::path product = dir_ / "named";
    ASSERT_EQ(setenv(KXBASE_PRODUCT_DIR_ENV, product.c_str(), 1), 0);
    void* h = Load(dir_ / "lib");
    ASSERT_NE(h, nullptr);
    const auto* paths = Symbol<CAppPath>(h, "g_AppPath");
    ASSERT_NE(paths, nullptr);
    EXPECT_EQ(paths->m_strAppPath.str(), product.string() + "/");
    for (const char* folder : kTree) {
        EXPECT_TRUE(fs::is_directory(product / folder)) << folder;
        EXPECT_FALSE(fs::exists(dir_ / "lib" / folder)) << folder;
    }
    EXPECT_EQ(dlclose(h), 0);
}

// Loading and unloading again must work (start-up and exit run once per load).
TEST_F(Loaded, ReloadAfterUnload) {
    for (int i = 0; i < 2; ++i) {
        void* h = Load(dir_ / ("round" + std::to_string(i)));
        ASSERT_NE(h, nullptr);
        EXPECT_TRUE(fs::is_directory(dir_ / ("round" + std::to_string(i)) / "Config/Printer"));
        EXPECT_EQ(dlclose(h), 0);
    }
}
