/// \file
/// Conversions between ABitmap and Qt's images.
///
/// Thread-safety: QImage conversions are safe from any thread for distinct objects; QPixmap
/// needs the application's thread (Qt's rule).
#pragma once

#include <QImage>
#include <QPixmap>

#include <kxbase/ui/export.h>
#include <kxbase/base/bitmap.h>

/// The bitmap as a QImage in Format_RGB888 (a deep copy); a null QImage when it holds no
/// bitmap.
KXBASE_UI_API QImage KxBitmapToImage(const CBitmap& bitmap);
/// Makes bitmap hold a copy of image (any format, converted to 24-bit RGB; alpha dropped).
/// Returns 1; 0 for a null image or when the bitmap cannot be created (bitmap unchanged).
KXBASE_UI_API int KxImageToBitmap(const QImage& image, CBitmap& bitmap);
///@{
/// The same through QPixmap. Without a QGuiApplication: a null pixmap / 0.
KXBASE_UI_API QPixmap KxBitmapToPixmap(const CBitmap& bitmap);
KXBASE_UI_API int KxPixmapToBitmap(const QPixmap& pixmap, CBitmap& bitmap);
///@}
