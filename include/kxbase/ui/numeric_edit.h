// Numeric edit controls: line edits that accept only a number of their type.
//
// Each control carries a range (by default its type's whole range) and, for the integer
// kinds, a hexadecimal mode. A validator refuses every edit that cannot lead to a number in
// the range: typing or pasting letters into a decimal field, a second sign, a number whose
// digits already exceed the range. Text that can still become valid ("-", "0x", an empty
// field, a positive number still below a positive minimum) is accepted as intermediate;
// GetValue clamps what the text reads as into the range (a non-number reads as 0). Leaving
// the field with intermediate text replaces it by that clamped value.
//
// The integer texts are read by ZelTextToInt64 (CInt64Edit::ToInt64), the parser the list
// codecs use: blanks around the number, an optional sign, decimal digits or, in hex mode,
// hexadecimal digits with an optional 0x.
//
// Thread-safety: widgets, so the application's thread only. ToInt64 is pure.
#pragma once

#include <string>

#include <QLineEdit>

#include <kxbase/platform/cstring.h>
#include <kxbase/platform/types.h>
#include <kxbase/ui/export.h>

/// Shared behaviour of the integer controls; the value travels as a signed 64-bit number
/// (unsigned kinds keep their bits).
class KXBASE_UI_API CIntegerEditBase : public QLineEdit {
public:
    /// 1 when the text reads as a number inside the range.
    int IsValid() const;
    int IsHex() const { return m_hex; }
    /// Switches the hexadecimal mode and rewrites the current value in the new base.
    void SetHex(int hex);

protected:
    CIntegerEditBase(QWidget* parent, bool isUnsigned, INT64 lo, INT64 hi, int hex);
    void SetRangeBits(INT64 lo, INT64 hi);
    void SetValueBits(INT64 value);
    /// The value read from the text, clamped into the range; `fallback` (clamped) for a
    /// non-number.
    INT64 ValueBits(INT64 fallback) const;
    CString TextOf(INT64 value) const;
    bool Less(INT64 a, INT64 b) const;  // in the kind's signedness
    bool CanBeNegative() const;
    /// -1: outside the range but more digits may reach it; 0: inside; 1: out of reach.
    int Place(bool negative, INT64 bits) const;
    INT64 Clamp(INT64 value) const;
    INT64 ValueOf(const std::string& text, INT64 fallback) const;

    bool m_unsigned;
    INT64 m_lo;
    INT64 m_hi;
    int m_hex;

private:
    class Validator;
    friend class Validator;
    Validator* m_validator;
};

class KXBASE_UI_API CIntEdit : public CIntegerEditBase {
public:
    explicit CIntEdit(QWidget* parent = nullptr, int hex = 0);
    void SetRange(int lo, int hi) { SetRangeBits(lo, hi); }
    int GetValue() const { return static_cast<int>(ValueBits(0)); }
    void SetValue(int v) { SetValueBits(v); }
};

class KXBASE_UI_API CDWORDEdit : public CIntegerEditBase {
public:
    explicit CDWORDEdit(QWidget* parent = nullptr, int hex = 0);
    void SetRange(DWORD lo, DWORD hi) { SetRangeBits(lo, hi); }
    DWORD GetValue() const { return static_cast<DWORD>(ValueBits(0)); }
    void SetValue(DWORD v) { SetValueBits(v); }
};

class KXBASE_UI_API CInt64Edit : public CIntegerEditBase {
public:
    explicit CInt64Edit(QWidget* parent = nullptr, int hex = 0);
    void SetRange(INT64 lo, INT64 hi) { SetRangeBits(lo, hi); }
    INT64 GetValue() const { return ValueBits(0); }
    void SetValue(INT64 v) { SetValueBits(v); }
    /// The parser of every integer control: ZelTextToInt64(text, hex) (0 for a non-number).
    static INT64 ToInt64(const char* text, int hex);
};

class KXBASE_UI_API CUINT64Edit : public CIntegerEditBase {
public:
    explicit CUINT64Edit(QWidget* parent = nullptr, int hex = 0);
    void SetRange(UINT64 lo, UINT64 hi) {
        SetRangeBits(static_cast<INT64>(lo), static_cast<INT64>(hi));
    }
    UINT64 GetValue() const { return static_cast<UINT64>(ValueBits(0)); }
    void SetValue(UINT64 v) { SetValueBits(static_cast<INT64>(v)); }
};

/// A decimal number with a fixed count of places (0..10; the text is written with
/// ZelFloatPrecisionString) inside a range. Accepts '.' as the decimal point whatever the
/// locale; no exponent. The range lies within +-2147483647 (the text form's integer part is a
/// 32-bit number); a non-finite bound is ignored.
class KXBASE_UI_API CFloatEdit : public QLineEdit {
public:
    explicit CFloatEdit(QWidget* parent = nullptr, int digits = 2);
    void SetRange(double lo, double hi);
    void SetDigits(int digits);
    int GetDigits() const { return m_digits; }
    /// The value read from the text, clamped into the range; 0 clamped when no number.
    double GetValue() const;
    void SetValue(double v);
    int IsValid() const;

private:
    class Validator;
    double m_lo;
    double m_hi;
    int m_digits;
};
