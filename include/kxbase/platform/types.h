/// \file
/// Fixed-width vocabulary types and the platform's plain geometric records.
///
/// On Windows these names are the system's own (from <windows.h>, with NOMINMAX so that the
/// min/max macros stay out); elsewhere the library defines them with the same widths and
/// layouts. The static_asserts at the end hold for both.
///
/// The widths are those of the 64-bit Windows data model the library's hosts were written
/// for: DWORD, ULONG and LONG are 32 bits here too (never the native `long`, which is 64 bits
/// on Linux). Code that formats these uses the `<cinttypes>` macros so the text is the same as
/// on Windows ("%I64d" there, PRId64 here).
///
/// Thread-safety: plain types and records; nothing here holds state.
#pragma once

#include <cstddef>
#include <cstdint>

#if defined(_WIN32)

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#else

using BYTE = std::uint8_t;  ///< unsigned 8 bits
using WORD = std::uint16_t;  ///< unsigned 16 bits
using DWORD = std::uint32_t;  ///< unsigned 32 bits
using UINT = std::uint32_t;  ///< unsigned 32 bits
using ULONG = std::uint32_t;  ///< unsigned 32 bits (not the native unsigned long)
using LONG = std::int32_t;  ///< signed 32 bits (not the native long)
using INT64 = std::int64_t;  ///< signed 64 bits
using UINT64 = std::uint64_t;  ///< unsigned 64 bits
using INT_PTR = std::intptr_t;  ///< signed, as wide as a pointer
using UINT_PTR = std::uintptr_t;  ///< unsigned, as wide as a pointer
using BOOL = int;  ///< a 32-bit truth value: 0 is false, anything else true

#ifndef TRUE
#define TRUE 1  ///< BOOL true
#endif
#ifndef FALSE
#define FALSE 0  ///< BOOL false
#endif

/// Opaque module handle. The library's own handle is the base address of its loaded image
/// (see <kxbase/platform/module.h>); a null handle means "the library itself".
using HINSTANCE = void*;
using HMODULE = HINSTANCE;  ///< the same handle under its other name

/// Integer point: two signed 32-bit coordinates.
struct POINT {
    LONG x;  ///< horizontal coordinate
    LONG y;  ///< vertical coordinate
};

/// Integer rectangle: four signed 32-bit edges; right and bottom are exclusive by convention.
struct RECT {
    LONG left;  ///< left edge (inclusive)
    LONG top;  ///< top edge (inclusive)
    LONG right;  ///< right edge (exclusive)
    LONG bottom;  ///< bottom edge (exclusive)
};

/// Integer extent.
struct SIZE {
    LONG cx;  ///< width
    LONG cy;  ///< height
};

#endif

/// Single-precision point.
struct POINTF {
    float x;  ///< horizontal coordinate
    float y;  ///< vertical coordinate
};

static_assert(sizeof(BYTE) == 1 && sizeof(WORD) == 2 && sizeof(DWORD) == 4 && sizeof(UINT) == 4);
static_assert(sizeof(ULONG) == 4 && sizeof(LONG) == 4 && sizeof(BOOL) == 4);
static_assert(sizeof(INT64) == 8 && sizeof(UINT64) == 8);
static_assert(sizeof(INT_PTR) == sizeof(void*) && sizeof(UINT_PTR) == sizeof(void*));
static_assert(sizeof(HINSTANCE) == sizeof(void*));
static_assert(sizeof(POINT) == 8 && sizeof(RECT) == 16 && sizeof(SIZE) == 8 && sizeof(POINTF) == 8);

///@{
/// Field-by-field equality of the integer records.
inline bool operator==(const POINT& a, const POINT& b) { return a.x == b.x && a.y == b.y; }
inline bool operator==(const RECT& a, const RECT& b) {
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}
inline bool operator==(const SIZE& a, const SIZE& b) { return a.cx == b.cx && a.cy == b.cy; }
///@}
