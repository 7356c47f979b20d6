// Numeric edit controls: validators over the core's number parser and formatter.
#include <kxbase/ui/numeric_edit.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <limits>

#include <QValidator>

#include <kxbase/widgets/int64_parse.h>
#include <kxbase/widgets/number_format.h>

namespace {

// What an integer text says: a number (with its sign as written and whether its magnitude
// left the 64-bit range of the kind), a beginning of one, or nothing.
struct IntReading {
    enum Kind { kNumber, kPrefix, kInvalid } kind;
    bool negative;
    INT64 bits;
};

IntReading ReadInt(const std::string& raw, int hex) {
    std::size_t b = raw.find_first_not_of(" \t"), e = raw.find_last_not_of(" \t");
    const std::string t = b == std::string::npos ? std::string() : raw.substr(b, e - b + 1);
    const bool negative = !t.empty() && t[0] == '-';
    const std::string body = (!t.empty() && (t[0] == '-' || t[0] == '+')) ? t.substr(1) : t;
    if (body.empty() || (hex && (body == "0x" || body == "0X")))
        return {IntReading::kPrefix, negative, 0};
    bool ok = false;
    const INT64 v = ZelTextToInt64(t.c_str(), hex, &ok);
    return {ok ? IntReading::kNumber : IntReading::kInvalid, negative, v};
}

}  // namespace

// ---- integers ----------------------------------------------------------------------------

class CIntegerEditBase::Validator : public QValidator {
public:
    explicit Validator(CIntegerEditBase* edit) : QValidator(edit), m_edit(edit) {}

    State validate(QString& input, int&) const override {
        const IntReading r = ReadInt(input.toStdString(), m_edit->m_hex);
        if (r.kind == IntReading::kInvalid) return Invalid;
        if (r.kind == IntReading::kPrefix)
            return (r.negative && !m_edit->CanBeNegative()) ? Invalid : Intermediate;
        switch (m_edit->Place(r.negative, r.bits)) {
            case 0:
                return Acceptable;
            case -1:
                return Intermediate;  // more digits can still reach the range
            default:
                return Invalid;
        }
    }

    void fixup(QString& input) const override {
        input =
            QString::fromUtf8(m_edit->TextOf(m_edit->ValueOf(input.toStdString(), 0)).GetString());
    }

private:
    CIntegerEditBase* m_edit;
};

CIntegerEditBase::CIntegerEditBase(QWidget* parent, bool isUnsigned, INT64 lo, INT64 hi, int hex)
    : QLineEdit(parent),
      m_unsigned(isUnsigned),
      m_lo(lo),
      m_hi(hi),
      m_hex(hex),
      m_validator(new Validator(this)) {
    setValidator(m_validator);
    setText(QString::fromUtf8(TextOf(ValueBits(0)).GetString()));
}

bool CIntegerEditBase::Less(INT64 a, INT64 b) const {
    return m_unsigned ? static_cast<UINT64>(a) < static_cast<UINT64>(b) : a < b;
}

bool CIntegerEditBase::CanBeNegative() const {
    return !m_unsigned && m_lo < 0;
}

// -1: below the range but growing digits could still reach it; 0: inside; 1: beyond reach.
int CIntegerEditBase::Place(bool negative, INT64 bits) const {
    const IntReading reading{IntReading::kNumber, negative, bits};
    if (m_unsigned) {
        if (reading.negative) return reading.bits == 0 ? (m_lo == 0 ? 0 : -1) : 1;
        if (Less(reading.bits, m_lo)) return -1;
        return Less(m_hi, reading.bits) ? 1 : 0;
    }
    // A magnitude that wrapped the signed range shows as the wrong sign.
    if ((reading.negative && reading.bits > 0) || (!reading.negative && reading.bits < 0)) return 1;
    if (reading.bits < m_lo) return reading.bits >= 0 ? -1 : 1;
    if (reading.bits > m_hi) return reading.bits <= 0 ? -1 : 1;
    return 0;
}

INT64 CIntegerEditBase::Clamp(INT64 v) const {
    if (Less(v, m_lo)) return m_lo;
    if (Less(m_hi, v)) return m_hi;
    return v;
}

INT64 CIntegerEditBase::ValueOf(const std::string& text, INT64 fallback) const {
    const IntReading r = ReadInt(text, m_hex);
    if (r.kind != IntReading::kNumber) return Clamp(fallback);
    if (m_unsigned) return r.negative && r.bits != 0 ? m_lo : Clamp(r.bits);
    if (r.negative && r.bits > 0) return m_lo;
    if (!r.negative && r.bits < 0) return m_hi;
    return Clamp(r.bits);
}

INT64 CIntegerEditBase::ValueBits(INT64 fallback) const {
    return ValueOf(text().toStdString(), fallback);
}

int CIntegerEditBase::IsValid() const {
    const IntReading r = ReadInt(text().toStdString(), m_hex);
    return r.kind == IntReading::kNumber && Place(r.negative, r.bits) == 0 ? 1 : 0;
}

CString CIntegerEditBase::TextOf(INT64 v) const {
    if (m_unsigned) return ZelUINT64String(static_cast<UINT64>(v), m_hex, 0);
    if (m_hex && v < 0)  // a minus sign and the magnitude, as the field is typed
        return CString("-") + ZelUINT64String(0 - static_cast<UINT64>(v), 1, 0);
    return ZelINT64String(v, m_hex, 0);
}

void CIntegerEditBase::SetHex(int hex) {
    const INT64 v = ValueBits(0);
    m_hex = hex ? 1 : 0;
    setText(QString::fromUtf8(TextOf(v).GetString()));
}

void CIntegerEditBase::SetRangeBits(INT64 lo, INT64 hi) {
    if (Less(hi, lo)) std::swap(lo, hi);
    m_lo = lo;
    m_hi = hi;
    setText(QString::fromUtf8(TextOf(ValueBits(0)).GetString()));
}

void CIntegerEditBase::SetValueBits(INT64 v) {
    setText(QString::fromUtf8(TextOf(Clamp(v)).GetString()));
}

CIntEdit::CIntEdit(QWidget* parent, int hex)
    : CIntegerEditBase(parent, false, std::numeric_limits<int>::min(),
                       std::numeric_limits<int>::max(), hex) {}

CDWORDEdit::CDWORDEdit(QWidget* parent, int hex)
    : CIntegerEditBase(parent, true, 0, std::numeric_limits<DWORD>::max(), hex) {}

CInt64Edit::CInt64Edit(QWidget* parent, int hex)
    : CIntegerEditBase(parent, false, std::numeric_limits<INT64>::min(),
                       std::numeric_limits<INT64>::max(), hex) {}

INT64 CInt64Edit::ToInt64(const char* text, int hex) {
    return ZelTextToInt64(text, hex);
}

CUINT64Edit::CUINT64Edit(QWidget* parent, int hex) : CIntegerEditBase(parent, true, 0, -1, hex) {}

// ---- decimals ----------------------------------------------------------------------------

namespace {

// The text form writes the integer part as a 32-bit number.
constexpr double kFloatLimit = 2147483647.0;

// Digits with at most `digits` places after '.', an optional sign, blanks around.
// 0: number (value in *v), 1: prefix, 2: invalid.
int ReadFloat(const std::string& raw, int digits, double* v) {
    std::size_t b = raw.find_first_not_of(" \t"), e = raw.find_last_not_of(" \t");
    const std::string t = b == std::string::npos ? std::string() : raw.substr(b, e - b + 1);
    std::size_t i = (!t.empty() && (t[0] == '-' || t[0] == '+')) ? 1 : 0;
    int before = 0, after = 0;
    bool point = false;
    for (; i < t.size(); ++i) {
        const char c = t[i];
        if (c >= '0' && c <= '9') {
            (point ? after : before)++;
        } else if (c == '.' && !point && digits > 0) {
            point = true;
        } else {
            return 2;
        }
    }
    if (after > digits) return 2;
    if (before + after == 0) return 1;
    errno = 0;
    *v = std::strtod(t.c_str(), nullptr);
    return (errno == ERANGE || !std::isfinite(*v)) ? 2 : 0;
}

}  // namespace

class CFloatEdit::Validator : public QValidator {
public:
    explicit Validator(CFloatEdit* edit) : QValidator(edit), m_edit(edit) {}

    State validate(QString& input, int&) const override {
        double v = 0;
        switch (ReadFloat(input.toStdString(), m_edit->m_digits, &v)) {
            case 2:
                return Invalid;
            case 1:
                return (input.contains('-') && m_edit->m_lo >= 0) ? Invalid : Intermediate;
            default:
                break;
        }
        if (v >= m_edit->m_lo && v <= m_edit->m_hi) return Acceptable;
        // Below a positive minimum, or above a negative maximum, more digits may still help.
        if ((v >= 0 && v < m_edit->m_lo) || (v <= 0 && v > m_edit->m_hi)) return Intermediate;
        return Invalid;
    }

    void fixup(QString& input) const override {
        input = QString::fromUtf8(
            ZelFloatPrecisionString(m_edit->GetValue(), m_edit->m_digits, 1).GetString());
    }

private:
    CFloatEdit* m_edit;
};

CFloatEdit::CFloatEdit(QWidget* parent, int digits)
    : QLineEdit(parent),
      m_lo(-kFloatLimit),
      m_hi(kFloatLimit),
      m_digits(std::clamp(digits, 0, 10)) {
    setValidator(new Validator(this));
    SetValue(0.0);
}

void CFloatEdit::SetRange(double lo, double hi) {
    if (!std::isfinite(lo) || !std::isfinite(hi)) return;
    if (hi < lo) std::swap(lo, hi);
    lo = std::clamp(lo, -kFloatLimit, kFloatLimit);
    hi = std::clamp(hi, -kFloatLimit, kFloatLimit);
    m_lo = lo;
    m_hi = hi;
    SetValue(GetValue());
}

void CFloatEdit::SetDigits(int digits) {
    const double v = GetValue();
    m_digits = std::clamp(digits, 0, 10);
    SetValue(v);
}

double CFloatEdit::GetValue() const {
    double v = 0;
    if (ReadFloat(text().toStdString(), m_digits, &v) != 0) v = 0;
    return std::clamp(v, m_lo, m_hi);
}

void CFloatEdit::SetValue(double v) {
    if (!std::isfinite(v)) v = 0;
    v = std::clamp(v, m_lo, m_hi);
    setText(QString::fromUtf8(ZelFloatPrecisionString(v, m_digits, 1).GetString()));
}

int CFloatEdit::IsValid() const {
    double v = 0;
    return ReadFloat(text().toStdString(), m_digits, &v) == 0 && v >= m_lo && v <= m_hi ? 1 : 0;
}
