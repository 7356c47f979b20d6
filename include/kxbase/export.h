/// \file
/// Export control: every symbol is hidden unless it is marked KXBASE_API.
///
/// On Windows the shared library exports what KXBASE_API marks and a host that links it
/// imports the same; a host that links the static library (the CMake target kxbase_static
/// defines KXBASE_STATIC for it) must see plain declarations instead.
#pragma once

#if defined(_WIN32)
#if defined(KXBASE_BUILDING)
#define KXBASE_API __declspec(dllexport)
#elif defined(KXBASE_STATIC)
#define KXBASE_API
#else
#define KXBASE_API __declspec(dllimport)
#endif
#else
/// Marks a function or class as part of the library's API: exported from the shared library
/// (imported by its users on Windows); everything else stays hidden.
#define KXBASE_API __attribute__((visibility("default")))
#endif

/// Marks a printf-style function: argument `fmt` is the format, the variable arguments start
/// at `first` (count `this` as argument 1 in member functions), so compilers that know the
/// attribute check the calls. The library's formatter also accepts the "I64" length prefix
/// ("%I64d", "%I64u", "%I64X"), which the checker does not know: write such formats through
/// a variable, or use the `<cinttypes>` macros.
#if defined(__GNUC__) || defined(__clang__)
#define KXBASE_PRINTF_FORMAT(fmt, first) __attribute__((format(printf, fmt, first)))
#else
#define KXBASE_PRINTF_FORMAT(fmt, first)
#endif
