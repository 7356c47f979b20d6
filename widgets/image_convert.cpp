// ABitmap <-> QImage / QPixmap. The bitmap's device rows are top-down RGB bytes, the layout
// of QImage::Format_RGB888 apart from row padding, so each row is one copy.
#include <kxbase/ui/image.h>

#include <cstring>

#include "ui_p.h"

QImage KxBitmapToImage(const CBitmap& bitmap) {
    BITMAP info;
    if (!bitmap.GetBitmap(&info)) return {};
    QImage image(info.bmWidth, info.bmHeight, QImage::Format_RGB888);
    if (image.isNull()) return {};
    const auto* src = static_cast<const uchar*>(info.bmBits);
    for (int y = 0; y < info.bmHeight; ++y)
        std::memcpy(image.scanLine(y),
                    src + static_cast<std::size_t>(y) * static_cast<std::size_t>(info.bmWidthBytes),
                    static_cast<std::size_t>(info.bmWidthBytes));
    return image;
}

int KxImageToBitmap(const QImage& image, CBitmap& bitmap) {
    if (image.isNull()) return 0;
    const QImage rgb = image.convertToFormat(QImage::Format_RGB888);
    HBITMAP made = KxCreateBitmap(rgb.width(), rgb.height());
    if (made == nullptr) return 0;
    BITMAP info;
    KxGetBitmap(made, &info);
    auto* dst = static_cast<uchar*>(info.bmBits);
    for (int y = 0; y < rgb.height(); ++y)
        std::memcpy(dst + static_cast<std::size_t>(y) * static_cast<std::size_t>(info.bmWidthBytes),
                    rgb.constScanLine(y), static_cast<std::size_t>(info.bmWidthBytes));
    bitmap.DeleteObject();
    bitmap.Attach(made);
    return 1;
}

QPixmap KxBitmapToPixmap(const CBitmap& bitmap) {
    if (!kxui_detail::OnGuiThread()) return {};
    return QPixmap::fromImage(KxBitmapToImage(bitmap));
}

int KxPixmapToBitmap(const QPixmap& pixmap, CBitmap& bitmap) {
    if (!kxui_detail::OnGuiThread() || pixmap.isNull()) return 0;
    return KxImageToBitmap(pixmap.toImage(), bitmap);
}
