// Winsock start-up for programs linked with the static library, which has no entry point of
// its own: a global object starts it before main and ends it after.
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <winsock2.h>
#include <windows.h>

namespace {

struct WinsockLifetime {
    bool started = false;
    WinsockLifetime() {
        WSADATA data{};
        started = WSAStartup(MAKEWORD(2, 2), &data) == 0;
    }
    ~WinsockLifetime() {
        if (started) WSACleanup();
    }
};

WinsockLifetime g_winsock;

}  // namespace
