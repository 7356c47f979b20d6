#include <kxbase/platform/cstring.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstring>
#include <stdexcept>

#include "platform/format_p.h"

namespace kxbase::detail {

std::string TranslateFormat(const char* format) {
    std::string out;
    for (const char* p = format; *p; ++p) {
        out += *p;
        if (*p != '%') continue;
        if (p[1] == '%') {
            out += *++p;
            continue;
        }
        // Copy flags, width and precision, then rewrite a Windows length prefix.
        while (p[1] && std::strchr("-+ #0123456789.*", p[1])) out += *++p;
        if (p[1] != 'I') continue;
        if (p[2] == '6' && p[3] == '4') {
            out += "ll";
            p += 3;
        } else if (p[2] == '3' && p[3] == '2') {
            p += 3;
        } else if (p[2] != '\0' && std::strchr("diouxX", p[2])) {
            out += 'z';
            p += 1;
        }
    }
    return out;
}

void AppendFormatV(std::string& out, const char* format, va_list args) {
    if (format == nullptr) return;
    const std::string translated =
        std::strchr(format, 'I') ? TranslateFormat(format) : std::string();
    const char* fmt = translated.empty() ? format : translated.c_str();
    va_list copy;
    va_copy(copy, args);
    char small[256];
    const int n = std::vsnprintf(small, sizeof small, fmt, copy);
    va_end(copy);
    if (n <= 0) return;
    const std::size_t length = static_cast<std::size_t>(n);
    if (length < sizeof small) {
        out.append(small, length);
        return;
    }
    const std::size_t at = out.size();
    out.resize(at + length + 1);
    std::vsnprintf(out.data() + at, length + 1, fmt, args);
    out.resize(at + length);
}

}  // namespace kxbase::detail

namespace {

using kxbase::detail::AppendFormatV;

std::string vformat(const char* format, va_list args) {
    std::string out;
    AppendFormatV(out, format, args);
    return out;
}

// Case-insensitive byte comparison with the C library's tolower, as strcasecmp does.
int compare_no_case(const char* a, const char* b) {
    for (;; ++a, ++b) {
        const int ca = std::tolower(static_cast<unsigned char>(*a));
        const int cb = std::tolower(static_cast<unsigned char>(*b));
        if (ca != cb || ca == 0) return ca - cb;
    }
}

int clamp_count(int count, int size) { return std::clamp(count, 0, size); }

}  // namespace

char CString::GetAt(int index) const {
    if (index < 0 || index >= GetLength()) throw std::invalid_argument("string index out of range");
    return m_str[static_cast<std::size_t>(index)];
}

void CString::SetAt(int index, char c) {
    if (index < 0 || index >= GetLength()) throw std::invalid_argument("string index out of range");
    m_str[static_cast<std::size_t>(index)] = c;
}

void CString::Format(const char* format, ...) {
    va_list args;
    va_start(args, format);
    m_str = vformat(format, args);
    va_end(args);
}

void CString::FormatV(const char* format, va_list args) { m_str = vformat(format, args); }

void CString::AppendFormat(const char* format, ...) {
    va_list args;
    va_start(args, format);
    AppendFormatV(m_str, format, args);
    va_end(args);
}

CString CString::Left(int count) const {
    return CString(m_str.substr(0, static_cast<std::size_t>(clamp_count(count, GetLength()))));
}

CString CString::Right(int count) const {
    const int n = clamp_count(count, GetLength());
    return CString(m_str.substr(static_cast<std::size_t>(GetLength() - n)));
}

CString CString::Mid(int first) const { return Mid(first, GetLength()); }

CString CString::Mid(int first, int count) const {
    const int start = clamp_count(first, GetLength());
    const int n = clamp_count(count, GetLength() - start);
    return CString(m_str.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(n)));
}

int CString::Find(const char* sub, int start) const {
    if (sub == nullptr || start < 0 || start > GetLength()) return -1;
    const auto pos = m_str.find(sub, static_cast<std::size_t>(start));
    return pos == std::string::npos ? -1 : static_cast<int>(pos);
}

int CString::Find(char c, int start) const {
    if (start < 0 || start >= GetLength()) return -1;
    const auto pos = m_str.find(c, static_cast<std::size_t>(start));
    return pos == std::string::npos ? -1 : static_cast<int>(pos);
}

int CString::ReverseFind(char c) const {
    const auto pos = m_str.rfind(c);
    return pos == std::string::npos ? -1 : static_cast<int>(pos);
}

int CString::Replace(const char* from, const char* to) {
    if (from == nullptr || *from == '\0') return 0;
    const std::string with = to ? to : "";
    const std::size_t len = std::strlen(from);
    int count = 0;
    for (std::size_t pos = m_str.find(from); pos != std::string::npos;
         pos = m_str.find(from, pos + with.size())) {
        m_str.replace(pos, len, with);
        ++count;
    }
    return count;
}

int CString::Remove(char c) {
    const auto old = m_str.size();
    m_str.erase(std::remove(m_str.begin(), m_str.end(), c), m_str.end());
    return static_cast<int>(old - m_str.size());
}

int CString::Insert(int index, const char* s) {
    m_str.insert(static_cast<std::size_t>(clamp_count(index, GetLength())), s ? s : "");
    return GetLength();
}

int CString::Delete(int index, int count) {
    const int start = clamp_count(index, GetLength());
    m_str.erase(static_cast<std::size_t>(start),
                static_cast<std::size_t>(clamp_count(count, GetLength() - start)));
    return GetLength();
}

CString& CString::Trim() { return TrimRight().TrimLeft(); }

CString& CString::TrimLeft() {
    std::size_t i = 0;
    while (i < m_str.size() && std::isspace(static_cast<unsigned char>(m_str[i]))) ++i;
    m_str.erase(0, i);
    return *this;
}

CString& CString::TrimRight() {
    while (!m_str.empty() && std::isspace(static_cast<unsigned char>(m_str.back()))) m_str.pop_back();
    return *this;
}

CString& CString::MakeUpper() {
    for (char& c : m_str) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return *this;
}

CString& CString::MakeLower() {
    for (char& c : m_str) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return *this;
}

int CString::Compare(const char* s) const { return std::strcmp(m_str.c_str(), s ? s : ""); }

int CString::CompareNoCase(const char* s) const {
    return compare_no_case(m_str.c_str(), s ? s : "");
}

char* CString::GetBuffer(int minLength) {
    if (minLength > GetLength()) m_str.resize(static_cast<std::size_t>(minLength));
    return m_str.data();
}

void CString::ReleaseBuffer(int newLength) {
    if (newLength < 0) newLength = static_cast<int>(std::strlen(m_str.c_str()));
    m_str.resize(static_cast<std::size_t>(clamp_count(newLength, GetLength())));
}
