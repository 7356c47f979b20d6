// AEnvObj's resolution arithmetic through an installed screen provider, and the resource
// module guard.
#include <gtest/gtest.h>

#include <unistd.h>

#include <cmath>

#include <kxbase/platform/module.h>
#include <kxbase/runtime/env_obj.h>
#include <kxbase/runtime/resource_handle.h>

namespace {

KxScreenMetrics g_screen;
bool g_hasScreen = true;
bool fake_screen(KxScreenMetrics* out) {
    *out = g_screen;
    return g_hasScreen;
}

}  // namespace

// The near-equal test must snap y to x, unequal pixel densities must stay apart, a screen of
// 0 mm must give infinity, and no screen must give zeros (not NaN).
TEST(AEnvObj, ResolutionFromScreenMetrics) {
    struct Case {
        const char* what;
        bool screen;
        KxScreenMetrics m;
        double dpiX, dpiY;
    } const cases[] = {
        {"close densities snap to x", true, {32, 1920, 1080, 96, 96, 508, 286}, 96.0, 96.0},
        {"distinct densities", true, {24, 1000, 1000, 96, 96, 254, 127}, 100.0, 200.0},
        {"no screen", false, {32, 1920, 1080, 96, 96, 508, 286}, 0.0, 0.0},
        {"zero millimetres", true, {32, 1920, 1080, 96, 96, 0, 0}, INFINITY, INFINITY},
    };
    const KxScreenProvider saved = KxSetScreenProvider(&fake_screen);
    for (const Case& c : cases) {
        g_screen = c.m;
        g_hasScreen = c.screen;
        AEnvObj env;
        EXPECT_EQ(env.Init(1), 1);
        EXPECT_EQ(env.m_dScreenDpiX, c.dpiX) << c.what;
        EXPECT_EQ(env.m_dScreenDpiY, c.dpiY) << c.what;
        EXPECT_EQ(env.m_nHorzRes, c.screen ? c.m.horzRes : 0) << c.what;
        EXPECT_EQ(env.m_nVertSize, c.screen ? c.m.vertSize : 0) << c.what;
        EXPECT_EQ(env.m_SystemInfo.dwPageSize, static_cast<DWORD>(sysconf(_SC_PAGESIZE)));
        EXPECT_GE(env.m_SystemInfo.dwNumberOfProcessors, 1u);
    }
    KxSetScreenProvider(saved);
}

// Two Locks must keep the first saved handle; Unlock without Lock changes nothing; the
// destructor restores.
TEST(CResourceHandle, RestoresTheFirstSavedModule) {
    const HINSTANCE original = KxGetResourceHandle();
    EXPECT_EQ(original, KxLibraryHandle());
    int a = 0, b = 0;
    {
        CResourceHandle guard;
        guard.Unlock();
        EXPECT_EQ(KxGetResourceHandle(), original);
        guard.Lock(&a);
        guard.Lock(&b);
        EXPECT_EQ(KxGetResourceHandle(), static_cast<HINSTANCE>(&b));
        guard.Unlock();
        EXPECT_EQ(KxGetResourceHandle(), original);
        guard.Lock(&a);
    }
    EXPECT_EQ(KxGetResourceHandle(), original);
}
