/// \file
/// AEnvObj: the screen and system environment measured at start-up, kept in g_EnvObj; and
/// g_strAppVersion, the host's version text.
///
/// The core library has no display connection. Screen numbers come from a screen provider the
/// UI library (or a host) installs with KxSetScreenProvider; without one every screen number
/// is 0, resolutions included. The system information record is always filled.
///
/// Thread-safety: start-up (and the UI library, on the application's thread) fills g_EnvObj;
/// afterwards it is only read. KxSetScreenProvider may be called from any thread.
#pragma once

#include <kxbase/export.h>
#include <kxbase/platform/cstring.h>
#include <kxbase/platform/types.h>

#if !defined(_WIN32)
/// The system information record, with the fields of the platform's GetSystemInfo (on
/// Windows the system's own record, from <windows.h>). Here:
/// architecture 9 (x86-64), 12 (ARM64) or 0xFFFF (other); the page size; the lowest and
/// highest addresses a process may map; a mask with one bit per online processor (at most
/// 64); the online processor count; the allocation granularity, which is the page size.
struct SYSTEM_INFO {
    WORD wProcessorArchitecture;  ///< 9 (x86-64), 12 (ARM64) or 0xFFFF (other)
    WORD wReserved;  ///< 0
    DWORD dwPageSize;  ///< bytes per memory page
    void* lpMinimumApplicationAddress;  ///< lowest address a process may map
    void* lpMaximumApplicationAddress;  ///< highest address a process may map
    UINT64 dwActiveProcessorMask;  ///< the low dwNumberOfProcessors bits set (all 64 from 64 on)
    DWORD dwNumberOfProcessors;  ///< online processors
    DWORD dwProcessorType;  ///< 8664 on x86-64, else 0
    DWORD dwAllocationGranularity;  ///< granularity of mapping offsets: the page size
    WORD wProcessorLevel;  ///< 0: not reported here
    WORD wProcessorRevision;  ///< 0: not reported here
};
#endif

/// What a screen provider reports about the primary screen.
struct KxScreenMetrics {
    int bitsPixel;   ///< colour bits per pixel
    int horzRes;     ///< width in pixels
    int vertRes;     ///< height in pixels
    int logPixelsX;  ///< logical pixels per inch, horizontally
    int logPixelsY;  ///< logical pixels per inch, vertically
    int horzSize;    ///< physical width in millimetres
    int vertSize;    ///< physical height in millimetres
};

/// Fills *out and returns true when there is a screen; false when there is none.
using KxScreenProvider = bool (*)(KxScreenMetrics* out);

/// Installs the screen provider (null removes it) and returns the previous one. Without a
/// provider, Windows reads the primary screen's device capabilities (GetDC(NULL),
/// GetDeviceCaps); other systems report no screen (zeros). Takes effect
/// at the next AEnvObj::Init; call AEnvObj::Init on g_EnvObj again after installing one.
KXBASE_API KxScreenProvider KxSetScreenProvider(KxScreenProvider provider);

/// The screen and system numbers of this process; the library keeps one, g_EnvObj.
class KXBASE_API AEnvObj {
public:
    /// Every number 0, the system record zeroed.
    AEnvObj();

    /// Measures the screen (through the screen provider) and reads the system record. The
    /// argument is reserved (start-up passes 1). Returns 1.
    ///
    /// Resolutions: x = horzRes / horzSize and y = vertRes / vertSize pixels per millimetre;
    /// when they differ by less than 0.03937007859349251 (1/25.4 in single precision) y takes
    /// x; both are multiplied by 25.4 and rounded to 8 decimals (ZelFloatPrecision(v, 8, 1)).
    /// So 1920 x 1080 pixels on 508 x 286 mm gives 96.0 in both directions. A physical size
    /// of 0 mm gives +infinity (or NaN for 0 pixels too), stored as it comes. Without a
    /// screen every number is 0.
    int Init(int reserved);

    int m_nBitsPixel;  ///< colour bits per pixel of the primary screen
    int m_nHorzRes;  ///< screen width in pixels
    int m_nVertRes;  ///< screen height in pixels
    int m_nLogPixelsX;  ///< logical pixels per inch, horizontally
    int m_nLogPixelsY;  ///< logical pixels per inch, vertically
    int m_nHorzSize;  ///< physical screen width in millimetres
    int m_nVertSize;  ///< physical screen height in millimetres
    SYSTEM_INFO m_SystemInfo;  ///< the system information record
    double m_dScreenDpiX;  ///< measured horizontal resolution in DPI (see Init)
    double m_dScreenDpiY;  ///< measured vertical resolution in DPI (see Init)
};

/// The environment measured at start-up.
KXBASE_API extern AEnvObj g_EnvObj;

/// The host's version text: empty at load; the library only clears it, the host sets it.
KXBASE_API extern CString g_strAppVersion;
