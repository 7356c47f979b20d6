/// \file
/// Numeric edit controls: line edits that accept only a number of their type.
///
/// Each control carries a range (by default its type's whole range) and, for the integer
/// kinds, a hexadecimal mode. A validator refuses every edit that cannot lead to a number in
/// the range: typing or pasting letters into a decimal field, a second sign, a number whose
/// digits already exceed the range. Text that can still become valid ("-", "0x", an empty
/// field, a positive number still below a positive minimum) is accepted as intermediate;
/// GetValue clamps what the text reads as into the range (a non-number reads as 0). Leaving
/// the field with intermediate text replaces it by that clamped value.
///
/// The integer texts are read by ZelTextToInt64 (CInt64Edit::ToInt64), the parser the list
/// codecs use: blanks around the number, an optional sign, decimal digits or, in hex mode,
/// hexadecimal digits with an optional 0x.
///
/// Thread-safety: widgets, so the application's thread only. ToInt64 is pure.
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
    /// Nonzero in hexadecimal mode.
    int IsHex() const { return m_hex; }
    /// Switches the hexadecimal mode and rewrites the current value in the new base.
    void SetHex(int hex);

protected:
    /// A control of the given signedness with the range [lo, hi] (bits read in that signedness)
    /// and the hexadecimal mode hex; the text starts as the clamped value 0.
    CIntegerEditBase(QWidget* parent, bool isUnsigned, INT64 lo, INT64 hi, int hex);
    /// Sets the range (swapped when hi < lo) and rewrites the text as the value clamped into it.
    void SetRangeBits(INT64 lo, INT64 hi);
    /// Writes value, clamped into the range, as the text.
    void SetValueBits(INT64 value);
    /// The value read from the text, clamped into the range; `fallback` (clamped) for a
    /// non-number.
    INT64 ValueBits(INT64 fallback) const;
    /// The text of value in the kind's signedness and the current base (a negative hexadecimal
    /// value as a minus sign and its magnitude).
    CString TextOf(INT64 value) const;
    /// a < b, compared in the kind's signedness.
    bool Less(INT64 a, INT64 b) const;
    /// True when a minus sign may start the text: a signed kind whose minimum is negative.
    bool CanBeNegative() const;
    /// -1: outside the range but more digits may reach it; 0: inside; 1: out of reach.
    int Place(bool negative, INT64 bits) const;
    /// value clamped into the range, compared in the kind's signedness.
    INT64 Clamp(INT64 value) const;
    /// What text reads as, clamped into the range (a number beyond the kind's range clamps to the
    /// nearer bound); fallback, clamped, for a non-number.
    INT64 ValueOf(const std::string& text, INT64 fallback) const;

    bool m_unsigned;  ///< the kind is unsigned: bits compare as UINT64
    INT64 m_lo;  ///< range minimum (bits)
    INT64 m_hi;  ///< range maximum (bits)
    int m_hex;  ///< 1 in hexadecimal mode, else 0

private:
    class Validator;
    friend class Validator;
    Validator* m_validator;
};

/// Edit control for a signed 32-bit number; the range is the whole int range until SetRange.
class KXBASE_UI_API CIntEdit : public CIntegerEditBase {
public:
    /// A control with the type's whole range, in hexadecimal mode when hex is nonzero.
    explicit CIntEdit(QWidget* parent = nullptr, int hex = 0);
    /// Sets the range (swapped when hi < lo) and rewrites the value clamped into it.
    void SetRange(int lo, int hi) { SetRangeBits(lo, hi); }
    /// The value read from the text, clamped into the range; 0 (clamped) for a non-number.
    int GetValue() const { return static_cast<int>(ValueBits(0)); }
    /// Writes v, clamped into the range, as the text in the current base.
    void SetValue(int v) { SetValueBits(v); }
};

/// Edit control for an unsigned 32-bit number.
class KXBASE_UI_API CDWORDEdit : public CIntegerEditBase {
public:
    /// A control with the type's whole range, in hexadecimal mode when hex is nonzero.
    explicit CDWORDEdit(QWidget* parent = nullptr, int hex = 0);
    /// Sets the range (swapped when hi < lo) and rewrites the value clamped into it.
    void SetRange(DWORD lo, DWORD hi) { SetRangeBits(lo, hi); }
    /// The value read from the text, clamped into the range; 0 (clamped) for a non-number.
    DWORD GetValue() const { return static_cast<DWORD>(ValueBits(0)); }
    /// Writes v, clamped into the range, as the text in the current base.
    void SetValue(DWORD v) { SetValueBits(v); }
};

/// Edit control for a signed 64-bit number.
class KXBASE_UI_API CInt64Edit : public CIntegerEditBase {
public:
    /// A control with the type's whole range, in hexadecimal mode when hex is nonzero.
    explicit CInt64Edit(QWidget* parent = nullptr, int hex = 0);
    /// Sets the range (swapped when hi < lo) and rewrites the value clamped into it.
    void SetRange(INT64 lo, INT64 hi) { SetRangeBits(lo, hi); }
    /// The value read from the text, clamped into the range; 0 (clamped) for a non-number.
    INT64 GetValue() const { return ValueBits(0); }
    /// Writes v, clamped into the range, as the text in the current base.
    void SetValue(INT64 v) { SetValueBits(v); }
    /// The parser of every integer control: ZelTextToInt64(text, hex) (0 for a non-number).
    static INT64 ToInt64(const char* text, int hex);
};

/// Edit control for an unsigned 64-bit number.
class KXBASE_UI_API CUINT64Edit : public CIntegerEditBase {
public:
    /// A control with the type's whole range, in hexadecimal mode when hex is nonzero.
    explicit CUINT64Edit(QWidget* parent = nullptr, int hex = 0);
    /// Sets the range (swapped when hi < lo) and rewrites the value clamped into it.
    void SetRange(UINT64 lo, UINT64 hi) {
        SetRangeBits(static_cast<INT64>(lo), static_cast<INT64>(hi));
    }
    /// The value read from the text, clamped into the range; 0 (clamped) for a non-number.
    UINT64 GetValue() const { return static_cast<UINT64>(ValueBits(0)); }
    /// Writes v, clamped into the range, as the text in the current base.
    void SetValue(UINT64 v) { SetValueBits(static_cast<INT64>(v)); }
};

/// A decimal number with a fixed count of places (0..10; the text is written with
/// ZelFloatPrecisionString) inside a range. Accepts '.' as the decimal point whatever the
/// locale; no exponent. The range lies within +-2147483647 (the text form's integer part is a
/// 32-bit number); a non-finite bound is ignored.
class KXBASE_UI_API CFloatEdit : public QLineEdit {
public:
    /// A control with digits places (clamped to 0..10), the whole range and the value 0.
    explicit CFloatEdit(QWidget* parent = nullptr, int digits = 2);
    /// Sets the range (swapped when hi < lo, clamped to +-2147483647) and rewrites the value
    /// clamped into it. A non-finite bound makes the call do nothing.
    void SetRange(double lo, double hi);
    /// Sets the count of places (clamped to 0..10) and rewrites the value with it.
    void SetDigits(int digits);
    /// The count of places.
    int GetDigits() const { return m_digits; }
    /// The value read from the text, clamped into the range; 0 clamped when no number.
    double GetValue() const;
    /// Writes v, clamped into the range, with the control's places; a non-finite v writes 0
    /// (clamped).
    void SetValue(double v);
    /// 1 when the text reads as a number with at most the control's places inside the range.
    int IsValid() const;

private:
    class Validator;
    double m_lo;
    double m_hi;
    int m_digits;
};
