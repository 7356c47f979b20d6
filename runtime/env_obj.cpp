// AEnvObj: screen numbers from the installed provider, system numbers from the backend.
#include <kxbase/runtime/env_obj.h>

#include <atomic>
#include <cmath>
#include <cstring>
#include <limits>

#include <kxbase/base/number_format.h>

#include "base/round8_p.h"
#include "base/saturate_p.h"
#include "platform/sys.h"

namespace {

std::atomic<KxScreenProvider> g_provider{nullptr};

// Pixels per millimetre; a screen without a physical size gives an infinite or undefined
// density, computed without dividing by zero.
double per_mm(int pixels, int mm) {
    return kxbase::detail::IeeeDiv(static_cast<double>(pixels), static_cast<double>(mm));
}

// A screen density that is not finite is reported as it is.
constexpr auto round8 = &kxbase::detail::Round8KeepNonFinite;

void read_system_info(SYSTEM_INFO& si) {
    std::memset(&si, 0, sizeof si);
#if defined(__x86_64__)
    si.wProcessorArchitecture = 9;
    si.dwProcessorType = 8664;
#elif defined(__aarch64__)
    si.wProcessorArchitecture = 12;
#else
    si.wProcessorArchitecture = 0xFFFF;
#endif
    si.dwPageSize = kxbase::sys::PageSize();
    si.dwAllocationGranularity = si.dwPageSize;
    si.lpMinimumApplicationAddress =
        reinterpret_cast<void*>(static_cast<std::uintptr_t>(si.dwPageSize));
    si.lpMaximumApplicationAddress = reinterpret_cast<void*>(
        sizeof(void*) == 8 ? std::uintptr_t{0x00007FFFFFFFEFFFu} : std::uintptr_t{0xBFFFFFFFu});
    si.dwNumberOfProcessors = kxbase::sys::OnlineProcessors();
    si.dwActiveProcessorMask =
        si.dwNumberOfProcessors >= 64 ? ~UINT64{0} : (UINT64{1} << si.dwNumberOfProcessors) - 1;
}

}  // namespace

KxScreenProvider KxSetScreenProvider(KxScreenProvider provider) {
    return g_provider.exchange(provider);
}

AEnvObj::AEnvObj()
    : m_nBitsPixel(0),
      m_nHorzRes(0),
      m_nVertRes(0),
      m_nLogPixelsX(0),
      m_nLogPixelsY(0),
      m_nHorzSize(0),
      m_nVertSize(0),
      m_SystemInfo(),
      m_dScreenDpiX(0),
      m_dScreenDpiY(0) {}

int AEnvObj::Init(int /*reserved*/) {
    KxScreenMetrics m{};
    const KxScreenProvider provider = g_provider.load();
    bool screen;
    if (provider != nullptr) {
        screen = provider(&m);
    } else {
        // Without a provider the system's own screen, where it has one (Windows).
        int caps[7] = {};
        screen = kxbase::sys::ScreenDeviceCaps(caps);
        m = {caps[0], caps[1], caps[2], caps[3], caps[4], caps[5], caps[6]};
    }
    if (!screen) m = KxScreenMetrics{};
    m_nBitsPixel = m.bitsPixel;
    m_nHorzRes = m.horzRes;
    m_nVertRes = m.vertRes;
    m_nLogPixelsX = m.logPixelsX;
    m_nLogPixelsY = m.logPixelsY;
    m_nHorzSize = m.horzSize;
    m_nVertSize = m.vertSize;
    if (screen) {
        const double x = per_mm(m_nHorzRes, m_nHorzSize);
        double y = per_mm(m_nVertRes, m_nVertSize);
        if (std::fabs(x - y) < 0.03937007859349251) y = x;
        m_dScreenDpiX = round8(x * 25.4);
        m_dScreenDpiY = round8(y * 25.4);
    } else {
        m_dScreenDpiX = 0;
        m_dScreenDpiY = 0;
    }
    read_system_info(m_SystemInfo);
    return 1;
}
