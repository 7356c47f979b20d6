// AEnvObj's resolution arithmetic through an installed screen provider, and the resource
// module guard.
#include <gtest/gtest.h>

#include <cmath>

#include <kxbase/platform/module.h>
#include <kxbase/runtime/env_obj.h>
#include <kxbase/runtime/resource_handle.h>

namespace {
KxScreenMetrics g_screen;
bool g_hasScreen = true;
}  // namespace

// Near-equal densities not snapped to x, unequal ones snapped, a screen of 0 mm not giving
// infinity, or no screen giving NaN instead of zeros.
TEST(AEnvObj, ResolutionFromScreenMetrics) {
    struct Case {
        bool screen;
        KxScreenMetrics m;
        double dpiX, dpiY;
    } const cases[] = {
        {true, {32, 1920, 1080, 96, 96, 508, 286}, 96.0, 96.0},  // close: y snaps to x
        {true, {24, 1000, 1000, 96, 96, 254, 127}, 100.0, 200.0},
        {false, {32, 1920, 1080, 96, 96, 508, 286}, 0.0, 0.0},
        {true, {32, 1920, 1080, 96, 96, 0, 0}, INFINITY, INFINITY},
    };
    const KxScreenProvider saved = KxSetScreenProvider([](KxScreenMetrics* out) {
        *out = g_screen;
        return g_hasScreen;
    });
    for (const Case& c : cases) {
        g_screen = c.m;
        g_hasScreen = c.screen;
        AEnvObj env;
        EXPECT_EQ(env.Init(1), 1);
        EXPECT_EQ(env.m_dScreenDpiX, c.dpiX) << c.m.horzSize;
        EXPECT_EQ(env.m_dScreenDpiY, c.dpiY) << c.m.horzSize;
        EXPECT_EQ(env.m_nVertSize, c.screen ? c.m.vertSize : 0);
    }
    KxSetScreenProvider(saved);
}

// A second Lock overwriting the saved handle, Unlock without Lock changing the module, or
// the destructor not restoring.
TEST(CResourceHandle, RestoresTheFirstSavedModule) {
    const HINSTANCE original = KxGetResourceHandle();
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
