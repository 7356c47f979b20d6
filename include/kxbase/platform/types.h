// Fixed-width vocabulary types and the platform's plain geometric records.
//
// On Windows these names are the system's own (from <windows.h>, with NOMINMAX so that the
// min/max macros stay out); elsewhere the library defines them with the same widths and
// layouts. The static_asserts at the end hold for both.
//
// The widths are those of the 64-bit Windows data model the library's hosts were written
// for: DWORD, ULONG and LONG are 32 bits here too (never the native `long`, which is 64 bits
// on Linux). Code that formats these uses the <cinttypes> macros so the text is the same as
// on Windows ("%I64d" there, PRId64 here).
#pragma once

#include <cstddef>
#include <cstdint>

#if defined(_WIN32)

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#else

using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using UINT = std::uint32_t;
using ULONG = std::uint32_t;
using LONG = std::int32_t;
using INT64 = std::int64_t;
using UINT64 = std::uint64_t;
using INT_PTR = std::intptr_t;
using UINT_PTR = std::uintptr_t;
using BOOL = int;

#ifndef TRUE
#define TRUE 1
#endif
#ifndef FALSE
#define FALSE 0
#endif

/// Opaque module handle. The library's own handle is the base address of its loaded image
/// (see <kxbase/platform/module.h>); a null handle means "the library itself".
using HINSTANCE = void*;
using HMODULE = HINSTANCE;

/// Integer point: two signed 32-bit coordinates.
struct POINT {
    LONG x;
    LONG y;
};

/// Integer rectangle: four signed 32-bit edges; right and bottom are exclusive by convention.
struct RECT {
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
};

/// Integer extent.
struct SIZE {
    LONG cx;
    LONG cy;
};

#endif

/// Single-precision point.
struct POINTF {
    float x;
    float y;
};

static_assert(sizeof(BYTE) == 1 && sizeof(WORD) == 2 && sizeof(DWORD) == 4 && sizeof(UINT) == 4);
static_assert(sizeof(ULONG) == 4 && sizeof(LONG) == 4 && sizeof(BOOL) == 4);
static_assert(sizeof(INT64) == 8 && sizeof(UINT64) == 8);
static_assert(sizeof(INT_PTR) == sizeof(void*) && sizeof(UINT_PTR) == sizeof(void*));
static_assert(sizeof(HINSTANCE) == sizeof(void*));
static_assert(sizeof(POINT) == 8 && sizeof(RECT) == 16 && sizeof(SIZE) == 8 && sizeof(POINTF) == 8);

inline bool operator==(const POINT& a, const POINT& b) { return a.x == b.x && a.y == b.y; }
inline bool operator==(const RECT& a, const RECT& b) {
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}
inline bool operator==(const SIZE& a, const SIZE& b) { return a.cx == b.cx && a.cy == b.cy; }
