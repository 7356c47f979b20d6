// Fuzz target: IPv4 address text. Any text must parse without reading past its terminator,
// and the text, byte and printing forms must agree with each other.
#include <cstdlib>
#include <cstring>
#include <string>

#include <kxbase/mathopt/amathopt.h>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size) {
    if (size > 256) return 0;
    const std::string text(reinterpret_cast<const char*>(data), size);  // stops at a NUL
    BYTE ip[4];
    const bool parsed = AMathOpt::ipaddress_TransFromString(ip, text.c_str());
    if (!parsed && (ip[0] | ip[1] | ip[2] | ip[3]) != 0) std::abort();  // refused: zeroed
    const bool valid = parsed && AMathOpt::ipaddress_IsValid(ip);
    if (AMathOpt::ipaddress_IsValid(text.c_str()) != valid) std::abort();
    CString printed;
    if (AMathOpt::ipaddress_TransToString(printed, ip) != AMathOpt::ipaddress_IsValid(ip))
        std::abort();
    if (valid) {
        BYTE back[4];
        if (!AMathOpt::ipaddress_TransFromString(back, printed) || std::memcmp(back, ip, 4) != 0)
            std::abort();
    }
    return 0;
}
