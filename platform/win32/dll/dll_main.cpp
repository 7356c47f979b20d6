// Entry point of kxBaseCommon.dll. Winsock is started here because it is the one start-up
// step whose failure must fail the load: a host then gets the loader's error instead of a
// library whose network calls all fail later. The backend starts it once more from a global
// object (platform/win32/sys.cpp), which is what a program linked with the static library
// gets; Winsock counts its start-ups, so the DLL's second one costs nothing.
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <winsock2.h>
#include <windows.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID) {
    switch (reason) {
        case DLL_PROCESS_ATTACH: {
            WSADATA data{};
            return WSAStartup(MAKEWORD(2, 2), &data) == 0 ? TRUE : FALSE;
        }
        case DLL_PROCESS_DETACH:
            WSACleanup();
            return TRUE;
        default:
            return TRUE;
    }
}
