/// \file
/// ABitmap: a bitmap that copies another and exchanges its pixels as 24-bit rows.
///
/// Without a display server the "device" format behind a bitmap handle is a plain 24-bit
/// image: width x height pixels, rows top-down, 3 bytes per pixel in the order red, green,
/// blue, rows packed without padding (KxGetBitmap reports it). Raster code never depends on
/// that layout: it reads and writes pixels through ABitmap::GetRgbBits / SetRgbBits in the
/// buffer format below, which is the same whatever the device format is. The user-interface
/// library converts bitmaps to and from QImage and QPixmap.
///
/// RGB buffer format (a device-independent bitmap body): 24 bits per pixel, 3 bytes per
/// pixel in the order blue, green, red; rows bottom-up (the first row in the buffer is the
/// bottom row of the image); each row padded to a multiple of 4 bytes, so the stride is
/// ((width * 24 + 31) / 32) * 4 bytes and the buffer holds stride * height bytes. Padding
/// bytes are written as 0 and ignored when read.
///
/// Thread-safety: a bitmap object and its handle belong to one thread at a time.
#pragma once

#include <kxbase/export.h>
#include <kxbase/platform/object.h>
#include <kxbase/platform/types.h>

#if defined(_WIN32)
// Windows: HBITMAP, BITMAP and BITMAPINFOHEADER are the system's own (same fields). A handle
// made by KxCreateBitmap is this library's image, not a GDI object.
#else
/// Opaque device bitmap behind an HBITMAP.
struct KxBitmapImage;
/// Handle of a device bitmap; null is "no bitmap".
using HBITMAP = KxBitmapImage*;

/// What KxGetBitmap and CBitmap::GetBitmap report.
struct BITMAP {
    LONG bmType;        ///< 0
    LONG bmWidth;       ///< pixels
    LONG bmHeight;      ///< pixels
    LONG bmWidthBytes;  ///< bytes per device row: bmWidth * 3
    WORD bmPlanes;      ///< 1
    WORD bmBitsPixel;   ///< 24
    void* bmBits;       ///< the device rows, top-down, red-green-blue
};

/// The header that describes the RGB buffer format.
struct BITMAPINFOHEADER {
    DWORD biSize;  ///< 40
    LONG biWidth;  ///< pixels
    LONG biHeight;        ///< positive: bottom-up rows
    WORD biPlanes;        ///< 1
    WORD biBitCount;      ///< 24
    DWORD biCompression;  ///< BI_RGB (0)
    DWORD biSizeImage;    ///< 0
    LONG biXPelsPerMeter;  ///< 0: no resolution recorded
    LONG biYPelsPerMeter;  ///< 0: no resolution recorded
    DWORD biClrUsed;  ///< 0: no colour table
    DWORD biClrImportant;  ///< 0
};
#endif
#ifndef BI_RGB
#define BI_RGB 0u  ///< uncompressed rows (biCompression)
#endif

/// Creates a black device bitmap. Null when width or height is below 1, when the RGB
/// buffer of that size would exceed 2^31 - 1 bytes, or when memory is short.
KXBASE_API HBITMAP KxCreateBitmap(int width, int height);
/// Releases a bitmap made by KxCreateBitmap; null is ignored.
KXBASE_API void KxDeleteBitmap(HBITMAP bitmap);
/// Fills *out and returns 1; returns 0 for a null bitmap or a null out.
KXBASE_API int KxGetBitmap(HBITMAP bitmap, BITMAP* out);

/// Owner of one bitmap handle, released when the object is destroyed. Non-copyable.
class KXBASE_API CBitmap : public CObject {
    KX_DECLARE_DYNAMIC(CBitmap)
public:
    /// An object that holds no bitmap.
    CBitmap() = default;
    /// Releases the bitmap held.
    ~CBitmap() override;
    CBitmap(const CBitmap&) = delete;
    CBitmap& operator=(const CBitmap&) = delete;

    /// Releases the bitmap held and creates a black one of that size. 1 on success; 0 (and
    /// no bitmap held) when KxCreateBitmap fails.
    int CreateBitmap(int width, int height);
    /// Takes ownership of bitmap. Returns 0 when a bitmap is already held or bitmap is null.
    int Attach(HBITMAP bitmap);
    /// Gives up ownership and returns the handle (null when none).
    HBITMAP Detach();
    /// Releases the bitmap held; 1 when there was one.
    int DeleteObject();
    ///@{
    /// The handle held, or null.
    HBITMAP GetSafeHandle() const { return m_hObject; }
    operator HBITMAP() const { return m_hObject; }  // NOLINT: implicit like the platform class
    ///@}
    /// KxGetBitmap of the handle held.
    int GetBitmap(BITMAP* out) const { return KxGetBitmap(m_hObject, out); }

protected:
    HBITMAP m_hObject = nullptr;  ///< the handle owned; null when none
};

/// CBitmap that copies other bitmaps and reads and writes its pixels in the RGB buffer format.
class KXBASE_API ABitmap : public CBitmap {
    KX_DECLARE_DYNAMIC(ABitmap)
public:
    /// An object that holds no bitmap.
    ABitmap() = default;

    /// Makes this object a copy of source (pixels carried through the RGB buffer format).
    /// The bitmap held before is released after the copy succeeded, so copying a bitmap
    /// into itself works. Returns 0 for a null source or when memory is short (this object
    /// is then unchanged), else 1.
    int Copy(HBITMAP source);

    /// Copies every row of the bitmap into bits (RgbBitsSize bytes, RGB buffer format).
    /// Returns 1; also when no bitmap is held, and then writes nothing. A null bits with a
    /// bitmap held writes nothing and returns 0.
    int GetRgbBits(BYTE* bits) const;

    /// Writes every row of the bitmap from bits (RGB buffer format); a null bits paints the
    /// whole bitmap white. Returns 1; also when no bitmap is held (nothing happens).
    int SetRgbBits(const BYTE* bits);

    /// Row stride of the RGB buffer: ((width * 24 + 31) / 32) * 4; 0 for width < 1.
    static UINT RgbBitsStride(int width);
    /// stride * height bytes; 0 for an empty size.
    static UINT64 RgbBitsSize(int width, int height);
    /// The header of the RGB buffer: size 40, width, height, 1 plane, 24 bits, BI_RGB,
    /// image size 0, no colour table.
    static BITMAPINFOHEADER RgbBitsHeader(int width, int height);
};
