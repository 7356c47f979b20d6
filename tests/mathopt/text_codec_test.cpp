// Address and list texts: the refused forms hosts depend on, numbers beyond 32 bits (which
// must be refused, not wrapped into a valid byte), and round trips of every list type.
#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include <kxbase/mathopt/amathopt.h>
#include <kxbase/widgets/int64_parse.h>

namespace {

TEST(IpAddressText, AcceptsAndRefusesTheDocumentedForms) {
    struct Case {
        const char* text;
        bool ok;
        BYTE ip[4];
    } cases[] = {
        {"192.168.0.1", true, {192, 168, 0, 1}},
        {" 10. 0.+0.9 trailing", true, {10, 0, 0, 9}},  // "%d" skips blanks, takes a sign
        {"1.-1.2.3", true, {1, 255, 2, 3}},             // negative middle: low 8 bits
        {"0.1.2.3", false, {}},
        {"1.2.3.0", false, {}},
        {"1.2.3.255", false, {}},
        {"1.2.3", false, {}},
        {"1 .2.3.4", false, {}},          // the dot must follow the number
        {"4294967297.1.1.1", false, {}},  // beyond 32 bits: refused, not 1
        {"1.1.1.-4294967295", false, {}},
        {"", false, {}},
        {nullptr, false, {}},
    };
    for (const Case& c : cases) {
        BYTE ip[4] = {9, 9, 9, 9};
        EXPECT_EQ(AMathOpt::ipaddress_TransFromString(ip, c.text), c.ok)
            << (c.text ? c.text : "null");
        EXPECT_EQ(std::memcmp(ip, c.ip, 4), 0) << (c.text ? c.text : "null");
    }
}

TEST(MacAddressText, RefusesFFNegativeAndOverflowingFieldsAndRoundTrips) {
    struct Case {
        const char* text;
        bool ok;
    } cases[] = {
        {"00-1a-2b-3c-4d-5e", true}, {"0x1-0X2-3-4-5-6", true},      {"ff-0-0-0-0-1", false},
        {"-1-0-0-0-0-1", false},     {"100000001-1-1-1-1-1", false}, {"0-0-0-0-0-0", false},
        {"1-2-3-4-5", false},        {"1:2:3:4:5:6", false},
    };
    for (const Case& c : cases) {
        BYTE mac[6];
        EXPECT_EQ(AMathOpt::macaddress_TransFromString(mac, c.text), c.ok) << c.text;
    }
    const BYTE mac[6] = {0, 0x1a, 0xfe, 0x0a, 1, 0x80};
    CString text;
    ASSERT_TRUE(AMathOpt::macaddress_TransToString(text, mac));
    BYTE back[6];
    ASSERT_TRUE(AMathOpt::macaddress_TransFromString(back, text));
    EXPECT_EQ(std::memcmp(back, mac, 6), 0) << text.str();
}

TEST(Int64Text, ParsesDecimalAndHexWithinSixtyFourBits) {
    struct Case {
        const char* text;
        int hex;
        bool ok;
        INT64 value;
    } cases[] = {
        {"  -42 \t", 0, true, -42},
        {"+7", 0, true, 7},
        {"9223372036854775807", 0, true, std::numeric_limits<INT64>::max()},
        {"-9223372036854775808", 0, true, std::numeric_limits<INT64>::min()},
        {"18446744073709551615", 0, true, -1},
        {"18446744073709551616", 0, false, 0},
        {"FFFFFFFFFFFFFFFF", 1, true, -1},
        {"0x1f", 1, true, 31},
        {"1f", 0, false, 0},
        {"12 34", 0, false, 0},
        {"-", 0, false, 0},
        {"", 0, false, 0},
        {"0x", 1, false, 0},
        {"1.5", 0, false, 0},
    };
    for (const Case& c : cases) {
        bool ok = !c.ok;
        EXPECT_EQ(ZelTextToInt64(c.text, c.hex, &ok), c.value) << c.text;
        EXPECT_EQ(ok, c.ok) << c.text;
    }
    EXPECT_EQ(ZelTextToInt64(nullptr, 0), 0);
}

template <class T>
void ExpectListRoundTrip(BYTE type, const std::vector<T>& values) {
    for (int hex : {0, 1}) {
        CString text;
        AMathOpt::TransListToString(text, values.data(), static_cast<int>(values.size()), type,
                                    hex);
        std::vector<T> back(values.size() + 1);
        const int n = AMathOpt::TransListFromString(back.data(), static_cast<int>(values.size()),
                                                    type, text, hex);
        ASSERT_EQ(n, static_cast<int>(values.size())) << text.str();
        back.pop_back();
        EXPECT_EQ(back, values) << "type " << int{type} << " hex " << hex << ": " << text.str();
    }
}

TEST(TypedList, EveryIntegerTypeReadsBackWhatItWrites) {
    ExpectListRoundTrip<std::int32_t>(1, {0, -1, 2147483647, -2147483647 - 1, 10});
    ExpectListRoundTrip<std::uint32_t>(2, {0, 4294967295u, 255});
    ExpectListRoundTrip<std::int64_t>(3, {std::numeric_limits<INT64>::min(), -1, 0, 1});
    ExpectListRoundTrip<std::uint64_t>(4, {~UINT64{0}, 0, 1234567890123ull});
    ExpectListRoundTrip<std::uint8_t>(0, {0, 255, 128, 7});
}

TEST(TypedList, BoundedBufferNeverWritesPastSize) {
    const std::int32_t list[] = {1, 2, 3};  // "1 , 2 , 3 " is 10 characters
    for (int size : {-1, 0, 9, 10, 11}) {
        std::vector<char> buf(20, 'x');
        const int n = AMathOpt::TransListToString(buf.data(), size, list, 3, 1, 0);
        EXPECT_EQ(n, size >= 10 ? 10 : -10) << size;
        const size_t written = size >= 10 ? (size > 10 ? 11 : 10) : 0;
        for (size_t i = written; i < buf.size(); ++i) ASSERT_EQ(buf[i], 'x') << size << " at " << i;
    }
    EXPECT_EQ(AMathOpt::TransListToString(nullptr, 100, list, 3, 1, 0), -10);
}

TEST(TypedList, DoublesReadWithTheCDecimalPointAndPrintAsZero) {
    double d[3] = {};
    EXPECT_EQ(AMathOpt::TransListFromString(d, 3, 5, " 1.5, -2e3 ,x", 0), 3);
    EXPECT_EQ(d[0], 1.5);
    EXPECT_EQ(d[1], -2000.0);
    EXPECT_EQ(d[2], 0.0);
    CString text;
    AMathOpt::TransListToString(text, d, 2, 5, 0);
    EXPECT_EQ(text.str(), "0.000000 , 0.000000 ");
}

TEST(StringList, SplitsAndJoinsWithTheDocumentedBlanks) {
    CStringArray items;
    EXPECT_EQ(AMathOpt::TransListFromString(items, " a , b,, c d ,"), 3);
    ASSERT_EQ(items.GetSize(), 3);
    EXPECT_EQ(items[0].str(), "a ");
    EXPECT_EQ(items[1].str(), "b");
    EXPECT_EQ(items[2].str(), "c d ");
    CString text;
    EXPECT_EQ(AMathOpt::TransListToString(text, items), 13);
    EXPECT_EQ(text.str(), "a  , b , c d ");
    const CString plain[] = {"x", "", "y"};
    AMathOpt::TransListToString(text, plain, 3);
    EXPECT_EQ(text.str(), "x ,  , y");
}

}  // namespace
