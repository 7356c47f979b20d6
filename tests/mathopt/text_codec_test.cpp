// Address and list texts: the lenient and refused forms hosts depend on, numbers beyond 32 or
// 64 bits (which must be refused, not wrapped into a valid value), and buffer bounds.
#include <gtest/gtest.h>

#include <cstring>
#include <cstdint>
#include <vector>

#include <kxbase/mathopt/amathopt.h>
#include <kxbase/base/int64_parse.h>

namespace {

// Fault: the field reader is stricter or looser than "%d" (blanks, signs, the dot right after
// the number; "0x" fields of a MAC address), or wraps a number beyond 32 bits into a byte.
// A negative middle field of an IP address keeps its low 8 bits.
TEST(AddressText, ReadsLenientFieldsAndRefusesOverflow) {
    struct Case {
        const char* text;
        bool ok;
        BYTE ip[4];
    } cases[] = {{" 10. 0.+0.9 trailing", true, {10, 0, 0, 9}},
                 {"1.-1.2.3", true, {1, 255, 2, 3}},
                 {"1 .2.3.4", false, {}},
                 {"4294967297.1.1.1", false, {}},
                 {"1.1.1.-4294967295", false, {}},
                 {nullptr, false, {}}};
    for (const Case& c : cases) {
        BYTE ip[4] = {9, 9, 9, 9};
        EXPECT_EQ(AMathOpt::ipaddress_TransFromString(ip, c.text), c.ok) << (c.text ? c.text : "");
        EXPECT_EQ(std::memcmp(ip, c.ip, 4), 0) << (c.text ? c.text : "null");
    }
    BYTE mac[6];
    EXPECT_TRUE(AMathOpt::macaddress_TransFromString(mac, "0x1-0X2-3-4-5-6"));
    for (const char* text : {"-1-0-0-0-0-1", "100000001-1-1-1-1-1", "1:2:3:4:5:6"})
        EXPECT_FALSE(AMathOpt::macaddress_TransFromString(mac, text)) << text;
}

// Fault: the 64-bit reader wraps on overflow, accepts trailing junk or misreads hex.
TEST(Int64Text, ParsesDecimalAndHexWithinSixtyFourBits) {
    struct Case {
        const char* text;
        int hex;
        bool ok;
        INT64 value;
    } cases[] = {{"  -42 \t", 0, true, -42},
                 {"9223372036854775807", 0, true, INT64_MAX},
                 {"-9223372036854775808", 0, true, INT64_MIN},
                 {"18446744073709551615", 0, true, -1},
                 {"18446744073709551616", 0, false, 0},
                 {"0xFFFFFFFFFFFFFFFF", 1, true, -1},
                 {"1f", 0, false, 0},
                 {"0x", 1, false, 0}};
    for (const Case& c : cases) {
        bool ok = !c.ok;
        EXPECT_EQ(ZelTextToInt64(c.text, c.hex, &ok), c.value) << c.text;
        EXPECT_EQ(ok, c.ok) << c.text;
    }
    EXPECT_EQ(ZelTextToInt64(nullptr, 0), 0);
}

// Fault: the bounded form writes into a buffer too small (or absent) for the whole text, doubles
// are not read with the C decimal point, or the string lists drop or keep the wrong blanks.
TEST(ListText, BoundsDoublesAndStringLists) {
    const std::int32_t list[] = {1, 2, 3};  // "1 , 2 , 3 " is 10 characters
    for (int size : {-1, 0, 9}) {           // untouched when the text does not fit
        std::vector<char> buf(20, 'x');
        EXPECT_EQ(AMathOpt::TransListToString(buf.data(), size, list, 3, 1, 0), -10) << size;
        EXPECT_EQ(buf, std::vector<char>(20, 'x')) << size;
    }
    EXPECT_EQ(AMathOpt::TransListToString(nullptr, 100, list, 3, 1, 0), -10);
    double d[3] = {};
    EXPECT_EQ(AMathOpt::TransListFromString(d, 3, 5, " 1.5, -2e3 ,x", 0), 3);
    EXPECT_TRUE(d[0] == 1.5 && d[1] == -2000.0 && d[2] == 0.0);
    CStringArray items;
    EXPECT_EQ(AMathOpt::TransListFromString(items, " a , b,, c d ,"), 3);
    CString text;
    EXPECT_EQ(AMathOpt::TransListToString(text, items), 13);
    EXPECT_EQ(text.str(), "a  , b , c d ");
}

}  // namespace
