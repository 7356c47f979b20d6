// Entry point of kxBaseCommon.dll. The C runtime has constructed the library's globals before
// it calls this, and with them run the start-up (module/globals.cpp); a start-up that failed
// (the socket layer would not start, and the host has been shown why) fails the load here, so
// the host gets the loader's error instead of a library whose network calls all fail later.
// The socket layer is stopped by the exit, when the globals are destroyed.
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include "module/app_p.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH && kxbase::detail::StartUpFailed()) return FALSE;
    return TRUE;
}
