// The library's one printf-style formatter, behind CString::Format, the message functions
// and the error object, so that every entry point reads a format the same way.
#pragma once

#include <cstdarg>
#include <string>

namespace kxbase::detail {

/// Appends the text of `format` with `args` to `out`. Besides the C99 conversions it reads
/// the Windows length prefixes that the library's texts and its hosts use: "I64" (64-bit,
/// as "ll"), "I32" (32-bit, no prefix) and a lone "I" before d, i, o, u, x or X (pointer-
/// sized, as "z"). A null format appends nothing; so does a format the C library rejects.
/// Throws std::bad_alloc when the text cannot be stored.
void AppendFormatV(std::string& out, const char* format, va_list args);

/// The C99 spelling of a format with Windows length prefixes (exposed for tests).
std::string TranslateFormat(const char* format);

}  // namespace kxbase::detail
