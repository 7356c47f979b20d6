// AEnvObj's resolution arithmetic through an installed screen provider, and the resource
// module guard.
#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

#include <kxbase/platform/module.h>
#include <kxbase/runtime/env_obj.h>
#include <kxbase/runtime/resource_handle.h>

// Near-equal densities not snapped to x, unequal ones snapped, a screen of 0 mm not giving
// infinity, or no screen giving NaN instead of zeros.
TEST(AEnvObj, ResolutionFromScreenMetrics) {
    static KxScreenMetrics screen;
    static bool hasScreen;
    const KxScreenProvider saved =
        KxSetScreenProvider([](KxScreenMetrics* out) { return *out = screen, hasScreen; });
    // has a screen, metrics, the resulting x and y density
    const std::tuple<bool, KxScreenMetrics, double, double> cases[] = {
        {true, {32, 1920, 1080, 96, 96, 508, 286}, 96.0, 96.0},  // close: y snaps to x
        {true, {24, 1000, 1000, 96, 96, 254, 127}, 100.0, 200.0},
        {false, {32, 1920, 1080, 96, 96, 508, 286}, 0.0, 0.0},
        {true, {32, 1920, 1080, 96, 96, 0, 0}, INFINITY, INFINITY}};
    for (const auto& [has, m, dpiX, dpiY] : cases) {
        screen = m, hasScreen = has;
        AEnvObj env;
        EXPECT_EQ(env.Init(1), 1);
        EXPECT_EQ(std::tuple(env.m_dScreenDpiX, env.m_dScreenDpiY, env.m_nVertSize),
                  std::tuple(dpiX, dpiY, has ? m.vertSize : 0))
            << m.horzSize;
    }
    KxSetScreenProvider(saved);
}

// Without a provider: the system's screen on Windows (a device always has some colour depth
// and size), none elsewhere.
TEST(AEnvObj, ScreenWithoutProvider) {
    const KxScreenProvider saved = KxSetScreenProvider(nullptr);
    AEnvObj env;
    EXPECT_EQ(env.Init(1), 1);
#if defined(_WIN32)
    EXPECT_GT(env.m_nBitsPixel, 0);
    EXPECT_GT(env.m_nHorzRes, 0);
#else
    EXPECT_EQ(std::tuple(env.m_nBitsPixel, env.m_nHorzRes, env.m_dScreenDpiX),
              std::tuple(0, 0, 0.0));
#endif
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
        guard.Lock(reinterpret_cast<HINSTANCE>(&a));
        guard.Lock(reinterpret_cast<HINSTANCE>(&b));
        EXPECT_EQ(KxGetResourceHandle(), reinterpret_cast<HINSTANCE>(&b));
        guard.Unlock();
        EXPECT_EQ(KxGetResourceHandle(), original);
        guard.Lock(reinterpret_cast<HINSTANCE>(&a));
    }
    EXPECT_EQ(KxGetResourceHandle(), original);
}
