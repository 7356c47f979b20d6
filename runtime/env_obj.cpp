// AEnvObj: screen numbers from the installed provider, system numbers from sysconf.
#include <kxbase/runtime/env_obj.h>

#include <unistd.h>

#include <atomic>
#include <cmath>
#include <cstring>
#include <limits>

#include <kxbase/widgets/number_format.h>

namespace {

std::atomic<KxScreenProvider> g_provider{nullptr};

// Pixels per millimetre, with the division by zero a screen without a physical size implies
// spelled out (so that it is not undefined behaviour to the sanitizers).
double per_mm(int pixels, int mm) {
    if (mm != 0) return static_cast<double>(pixels) / mm;
    if (pixels == 0) return std::numeric_limits<double>::quiet_NaN();
    return pixels > 0 ? std::numeric_limits<double>::infinity()
                      : -std::numeric_limits<double>::infinity();
}

double round8(double v) {
    return std::isfinite(v) ? ZelFloatPrecision(v, 8, 1) : v;
}

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
    const auto page = sysconf(_SC_PAGESIZE);
    si.dwPageSize = page > 0 ? static_cast<DWORD>(page) : 4096u;
    si.dwAllocationGranularity = si.dwPageSize;
    si.lpMinimumApplicationAddress =
        reinterpret_cast<void*>(static_cast<std::uintptr_t>(si.dwPageSize));
    si.lpMaximumApplicationAddress = reinterpret_cast<void*>(
        sizeof(void*) == 8 ? std::uintptr_t{0x00007FFFFFFFEFFFu} : std::uintptr_t{0xBFFFFFFFu});
    const auto cpus = sysconf(_SC_NPROCESSORS_ONLN);
    si.dwNumberOfProcessors = cpus > 0 ? static_cast<DWORD>(cpus) : 1u;
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
    const bool screen = provider != nullptr && provider(&m);
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
