/// \file
/// CString: an 8-bit character string with value semantics and printf-style formatting.
///
/// Text is UTF-8 here (the library's string table is stored in UTF-8); lengths count bytes.
/// Format() accepts the Windows width prefix "I64" ("%I64d", "%I64X") as well as the C99
/// "ll", so format strings written for the Windows build give the same text.
///
/// Failures: GetAt and SetAt with an index outside the text throw std::invalid_argument; any
/// operation that makes the text longer throws std::bad_alloc when memory is exhausted (the
/// text is then unchanged). A format the C library rejects gives an empty text. Nothing else
/// throws; null `const char*` arguments count as empty texts.
///
/// Thread-safety: a value type; distinct objects are independent, one object is not guarded.
#pragma once

#include <cstdarg>
#include <string>
#include <string_view>

#include <kxbase/export.h>

/// An 8-bit string (UTF-8 text) with the member names of the platform's string class.
class KXBASE_API CString {
public:
    /// The empty string.
    CString() = default;
    /// A copy of the zero-terminated text s; null gives the empty string.
    CString(const char* s) : m_str(s ? s : "") {}  // NOLINT: implicit like the platform class
    /// The first length bytes of s (zero bytes included); null s or length < 1 give the empty
    /// string.
    CString(const char* s, int length)
        : m_str(s ? std::string(s, length > 0 ? static_cast<std::size_t>(length) : 0u) : "") {}
    ///@{
    /// A copy of a standard string (zero bytes included).
    CString(std::string s) : m_str(std::move(s)) {}  // NOLINT
    CString(std::string_view s) : m_str(s) {}        // NOLINT
    ///@}
    /// repeat copies of c; repeat < 1 gives the empty string.
    CString(char c, int repeat = 1) : m_str(repeat > 0 ? static_cast<std::size_t>(repeat) : 0u, c) {}

    /// Length in bytes (not characters), without the terminator.
    int GetLength() const { return static_cast<int>(m_str.size()); }
    /// True for the empty string.
    bool IsEmpty() const { return m_str.empty(); }
    /// Makes the string empty.
    void Empty() { m_str.clear(); }
    ///@{
    /// The zero-terminated text, valid until the string is next changed or destroyed.
    const char* GetString() const { return m_str.c_str(); }
    operator const char*() const { return m_str.c_str(); }  // NOLINT
    ///@}
    /// The text as a standard string.
    const std::string& str() const { return m_str; }

    /// Character at a byte index; an index outside the text throws std::invalid_argument.
    char GetAt(int index) const;
    /// Replaces the byte at index; an index outside the text throws std::invalid_argument.
    void SetAt(int index, char c);

    /// printf-style formatting into this string (the previous text is replaced). Besides the
    /// C99 conversions the "I64", "I32" and "I" length prefixes of Windows formats are read.
    void Format(const char* format, ...) KXBASE_PRINTF_FORMAT(2, 3);
    /// Format with the arguments in a va_list.
    void FormatV(const char* format, va_list args);
    /// printf-style formatting appended to this string.
    void AppendFormat(const char* format, ...) KXBASE_PRINTF_FORMAT(2, 3);
    /// Appends s (null appends nothing).
    void Append(const char* s) { m_str += s ? s : ""; }

    /// Sub-strings; counts are clamped into the text as the platform class does.
    ///@{
    /// Sub-strings. Left: the first count bytes; Right: the last count bytes; Mid: from byte
    /// first to the end, or count bytes from first. Counts and positions are clamped into the
    /// text (a negative count gives the empty string), so nothing fails.
    CString Left(int count) const;
    CString Right(int count) const;
    CString Mid(int first) const;
    CString Mid(int first, int count) const;
    /// Index of the first occurrence at or after start, or -1.
    ///@}
    ///@{
    /// Index of the first occurrence of sub (or c) at or after byte start; -1 when there is none,
    /// when start is outside the text, or when sub is null.
    int Find(const char* sub, int start = 0) const;
    int Find(char c, int start = 0) const;
    ///@}
    /// Index of the last occurrence of c, or -1.
    int ReverseFind(char c) const;
    /// Replaces every occurrence of from by to (null to: removes them), scanning left to right
    /// without re-reading inserted text. Returns the count of replacements; 0 for a null or empty
    /// from.
    int Replace(const char* from, const char* to);
    /// Removes every byte equal to c and returns how many were removed.
    int Remove(char c);
    /// Inserts s before byte index (clamped into the text) and returns the new length.
    int Insert(int index, const char* s);
    /// Removes count bytes from index (both clamped into the text) and returns the new length.
    int Delete(int index, int count = 1);
    ///@{
    /// Removes white space (ASCII: blank, tab, new line, ...) from both ends, the left or the right
    /// end.
    /// Return this string.
    CString& Trim();
    CString& TrimLeft();
    CString& TrimRight();
    ///@}
    ///@{
    /// ASCII letters to upper or lower case; other bytes (UTF-8 sequences included) are unchanged.
    /// Return this string.
    CString& MakeUpper();
    CString& MakeLower();
    ///@}
    /// Byte-wise comparison with s (null counts as empty): negative, 0 or positive, as strcmp.
    int Compare(const char* s) const;
    /// The same, ignoring ASCII case.
    int CompareNoCase(const char* s) const;

    ///@{
    /// Direct access for C-style writers: GetBuffer(n) guarantees room for n bytes plus the
    /// terminator (growing the text with zero bytes when needed) and returns the bytes;
    /// ReleaseBuffer(n) then cuts the text to n bytes (clamped), and ReleaseBuffer(-1) to the
    /// first zero byte. The pointer is valid until the next change of the string.
    char* GetBuffer(int minLength = 0);
    void ReleaseBuffer(int newLength = -1);
    ///@}

    ///@{
    /// Assigns or appends text (a null text counts as empty).
    CString& operator=(const char* s) { m_str = s ? s : ""; return *this; }
    CString& operator+=(const CString& s) { m_str += s.m_str; return *this; }
    CString& operator+=(const char* s) { m_str += s ? s : ""; return *this; }
    CString& operator+=(char c) { m_str += c; return *this; }

    ///@}
    ///@{
    /// Concatenation; a null text counts as empty.
    friend CString operator+(const CString& a, const CString& b) { return CString(a.m_str + b.m_str); }
    friend CString operator+(const CString& a, const char* b) { return CString(a.m_str + (b ? b : "")); }
    friend CString operator+(const char* a, const CString& b) { return CString((a ? a : "") + b.m_str); }
    ///@}
    ///@{
    /// Byte-wise equality and ordering, for comparisons and ordered containers.
    friend bool operator==(const CString& a, const CString& b) { return a.m_str == b.m_str; }
    friend bool operator==(const CString& a, const char* b) { return a.m_str == (b ? b : ""); }
    friend bool operator<(const CString& a, const CString& b) { return a.m_str < b.m_str; }

///@}
private:
    std::string m_str;
};
