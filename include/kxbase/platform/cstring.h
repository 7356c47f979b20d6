// CString: an 8-bit character string with value semantics and printf-style formatting.
//
// Text is UTF-8 here (the library's string table is stored in UTF-8); lengths count bytes.
// Format() accepts the Windows width prefix "I64" ("%I64d", "%I64X") as well as the C99
// "ll", so format strings written for the Windows build give the same text.
//
// Failures: GetAt and SetAt with an index outside the text throw std::invalid_argument; any
// operation that makes the text longer throws std::bad_alloc when memory is exhausted (the
// text is then unchanged). A format the C library rejects gives an empty text. Nothing else
// throws; null `const char*` arguments count as empty texts.
//
// Thread-safety: a value type; distinct objects are independent, one object is not guarded.
#pragma once

#include <cstdarg>
#include <string>
#include <string_view>

#include <kxbase/export.h>

class KXBASE_API CString {
public:
    CString() = default;
    CString(const char* s) : m_str(s ? s : "") {}  // NOLINT: implicit like the platform class
    CString(const char* s, int length)
        : m_str(s ? std::string(s, length > 0 ? static_cast<std::size_t>(length) : 0u) : "") {}
    CString(std::string s) : m_str(std::move(s)) {}  // NOLINT
    CString(std::string_view s) : m_str(s) {}        // NOLINT
    CString(char c, int repeat = 1) : m_str(repeat > 0 ? static_cast<std::size_t>(repeat) : 0u, c) {}

    int GetLength() const { return static_cast<int>(m_str.size()); }
    bool IsEmpty() const { return m_str.empty(); }
    void Empty() { m_str.clear(); }
    const char* GetString() const { return m_str.c_str(); }
    operator const char*() const { return m_str.c_str(); }  // NOLINT
    const std::string& str() const { return m_str; }

    /// Character at a byte index; an index outside the text throws std::invalid_argument.
    char GetAt(int index) const;
    void SetAt(int index, char c);

    /// printf-style formatting into this string (the previous text is replaced). Besides the
    /// C99 conversions the "I64", "I32" and "I" length prefixes of Windows formats are read.
    void Format(const char* format, ...) KXBASE_PRINTF_FORMAT(2, 3);
    void FormatV(const char* format, va_list args);
    /// printf-style formatting appended to this string.
    void AppendFormat(const char* format, ...) KXBASE_PRINTF_FORMAT(2, 3);
    void Append(const char* s) { m_str += s ? s : ""; }

    /// Sub-strings; counts are clamped into the text as the platform class does.
    CString Left(int count) const;
    CString Right(int count) const;
    CString Mid(int first) const;
    CString Mid(int first, int count) const;
    /// Index of the first occurrence at or after start, or -1.
    int Find(const char* sub, int start = 0) const;
    int Find(char c, int start = 0) const;
    int ReverseFind(char c) const;
    int Replace(const char* from, const char* to);
    int Remove(char c);
    int Insert(int index, const char* s);
    int Delete(int index, int count = 1);
    CString& Trim();
    CString& TrimLeft();
    CString& TrimRight();
    CString& MakeUpper();
    CString& MakeLower();
    int Compare(const char* s) const;
    int CompareNoCase(const char* s) const;

    /// Direct access for C-style writers: GetBuffer(n) guarantees room for n bytes plus the
    /// terminator; ReleaseBuffer(-1) takes the length up to the first zero byte.
    char* GetBuffer(int minLength = 0);
    void ReleaseBuffer(int newLength = -1);

    CString& operator=(const char* s) { m_str = s ? s : ""; return *this; }
    CString& operator+=(const CString& s) { m_str += s.m_str; return *this; }
    CString& operator+=(const char* s) { m_str += s ? s : ""; return *this; }
    CString& operator+=(char c) { m_str += c; return *this; }

    friend CString operator+(const CString& a, const CString& b) { return CString(a.m_str + b.m_str); }
    friend CString operator+(const CString& a, const char* b) { return CString(a.m_str + (b ? b : "")); }
    friend CString operator+(const char* a, const CString& b) { return CString((a ? a : "") + b.m_str); }
    friend bool operator==(const CString& a, const CString& b) { return a.m_str == b.m_str; }
    friend bool operator==(const CString& a, const char* b) { return a.m_str == (b ? b : ""); }
    friend bool operator<(const CString& a, const CString& b) { return a.m_str < b.m_str; }

private:
    std::string m_str;
};
