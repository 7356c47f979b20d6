// Fuzz target: hardware address text. Parsing never reads past the terminator, a refused
// text leaves six zero bytes, and every accepted address prints and parses back unchanged.
#include <cstdlib>
#include <cstring>
#include <string>

#include <kxbase/mathopt/amathopt.h>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size) {
    if (size > 256) return 0;
    const std::string text(reinterpret_cast<const char*>(data), size);
    BYTE mac[6];
    const bool parsed = AMathOpt::macaddress_TransFromString(mac, text.c_str());
    if (parsed != AMathOpt::macaddress_IsValid(text.c_str())) std::abort();
    if (parsed != AMathOpt::macaddress_IsValid(mac)) std::abort();
    for (BYTE b : mac)
        if (b == 0xFF) std::abort();  // 0xFF is never stored
    if (parsed) {
        CString printed;
        AMathOpt::macaddress_TransToString(printed, mac);
        BYTE back[6];
        if (!AMathOpt::macaddress_TransFromString(back, printed) || std::memcmp(back, mac, 6) != 0)
            std::abort();
    }
    return 0;
}
