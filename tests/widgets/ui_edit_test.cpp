// Numeric edit controls: which edits the validators accept, refuse or hold as intermediate,
// the clamped values and hex mode.
#include <gtest/gtest.h>

#include <memory>

#include <QValidator>

#include <kxbase/ui/numeric_edit.h>

namespace {

QValidator::State Check(const QLineEdit& edit, QString text) {
    int pos = 0;
    return edit.validator()->validate(text, pos);
}

}  // namespace

TEST(NumericEdit, IntegerValidators) {
    using S = QValidator::State;
    CIntEdit ranged;
    ranged.SetRange(10, 500);
    CIntEdit negative;
    negative.SetRange(-50, -5);
    CIntEdit hex(nullptr, 1);
    CDWORDEdit dword;
    CUINT64Edit u64;
    CInt64Edit i64;
    struct Case {
        const QLineEdit* edit;
        const char* text;
        S expected;
        const char* what;
    };
    const Case cases[] = {
        {&ranged, "42", S::Acceptable, "inside"},
        {&ranged, "4", S::Intermediate, "below a positive minimum: more digits may reach it"},
        {&ranged, "501", S::Invalid, "above the maximum"},
        {&ranged, "-1", S::Invalid, "negative below a positive minimum"},
        {&ranged, "-", S::Invalid, "a sign the range cannot use"},
        {&ranged, "", S::Intermediate, "empty"},
        {&ranged, "4a", S::Invalid, "letters"},
        {&negative, "-", S::Intermediate, "sign first"},
        {&negative, "-3", S::Intermediate, "above a negative maximum"},
        {&negative, "-51", S::Invalid, "below the minimum"},
        {&hex, "0x", S::Intermediate, "hex prefix"},
        {&hex, "7fffffff", S::Acceptable, "largest int in hex"},
        {&hex, "80000000", S::Invalid, "int overflow in hex"},
        {&hex, "-80000000", S::Acceptable, "smallest int in hex"},
        {&dword, "4294967295", S::Acceptable, "largest DWORD"},
        {&dword, "4294967296", S::Invalid, "DWORD overflow"},
        {&dword, "-1", S::Invalid, "negative DWORD"},
        {&u64, "18446744073709551615", S::Acceptable, "largest UINT64"},
        {&u64, "18446744073709551616", S::Invalid, "UINT64 overflow"},
        {&i64, "9223372036854775807", S::Acceptable, "largest INT64"},
        {&i64, "9223372036854775808", S::Invalid, "INT64 overflow (wraps to negative)"},
        {&i64, "-9223372036854775808", S::Acceptable, "smallest INT64"},
        {&i64, " 12 ", S::Acceptable, "blanks around"},
        {&i64, "1 2", S::Invalid, "two numbers"},
    };
    for (const Case& c : cases) EXPECT_EQ(Check(*c.edit, c.text), c.expected) << c.what;
}

// Paste goes through the validator: text that cannot become a number is refused whole.
TEST(NumericEdit, InvalidPasteIsRefused) {
    CIntEdit edit;
    edit.setText("12");
    edit.setCursorPosition(2);
    edit.insert("abc");
    EXPECT_EQ(edit.text(), "12");
    edit.insert("3");
    EXPECT_EQ(edit.GetValue(), 123);
}

TEST(NumericEdit, ValuesAreClampedAndFormatted) {
    CIntEdit edit;
    edit.SetRange(10, 500);
    EXPECT_EQ(edit.text(), "10") << "the empty start is clamped into the range";
    edit.SetValue(9999);
    EXPECT_EQ(edit.text(), "500");
    edit.setText("4");
    EXPECT_EQ(edit.GetValue(), 10);
    EXPECT_FALSE(edit.IsValid());
    edit.SetValue(255);
    edit.SetHex(1);
    EXPECT_EQ(edit.text(), "FF");
    EXPECT_EQ(edit.GetValue(), 255);

    CUINT64Edit u64(nullptr, 1);
    u64.SetValue(~0ull);
    EXPECT_EQ(u64.text(), "FFFFFFFFFFFFFFFF");
    EXPECT_EQ(u64.GetValue(), ~0ull);
    CInt64Edit i64(nullptr, 1);
    i64.SetValue(-255);
    EXPECT_EQ(i64.text(), "-FF");
    EXPECT_EQ(i64.GetValue(), -255);
}

TEST(NumericEdit, FloatEdit) {
    using S = QValidator::State;
    CFloatEdit edit(nullptr, 2);
    edit.SetRange(0.5, 100.0);
    EXPECT_EQ(Check(edit, "12.34"), S::Acceptable);
    EXPECT_EQ(Check(edit, "12.345"), S::Invalid) << "more places than allowed";
    EXPECT_EQ(Check(edit, "0.1"), S::Intermediate);
    EXPECT_EQ(Check(edit, "100.01"), S::Invalid);
    EXPECT_EQ(Check(edit, "1e5"), S::Invalid);
    EXPECT_EQ(Check(edit, "-1"), S::Invalid);
    EXPECT_EQ(Check(edit, "."), S::Intermediate);
    edit.SetValue(2.5);
    EXPECT_EQ(edit.text(), "2.50");
    edit.SetValue(1e300);
    EXPECT_EQ(edit.GetValue(), 100.0);
    edit.SetDigits(0);
    EXPECT_EQ(edit.text(), "100");
    EXPECT_EQ(Check(edit, "1.5"), S::Invalid) << "no decimal point with 0 places";
}
