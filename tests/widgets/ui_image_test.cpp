// ABitmap <-> QImage / QPixmap: pixels land at the same place with the same colour.
#include <gtest/gtest.h>

#include <QImage>
#include <QPixmap>

#include <kxbase/ui/image.h>

TEST(ImageConvert, RoundTripKeepsEveryPixel) {
    QImage src(5, 3, QImage::Format_ARGB32);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 5; ++x) src.setPixel(x, y, qRgba(x * 40, y * 80, 7 + x + y, 128));
    ABitmap bitmap;
    ASSERT_EQ(KxImageToBitmap(src, bitmap), 1);
    // The RGB buffer is bottom-up BGR: pixel (1, 0) of the image is in the last buffer row.
    std::vector<BYTE> bits(ABitmap::RgbBitsSize(5, 3));
    bitmap.GetRgbBits(bits.data());
    const std::size_t at = 2 * ABitmap::RgbBitsStride(5) + 3;
    EXPECT_EQ(bits[at], 8);       // blue
    EXPECT_EQ(bits[at + 1], 0);   // green
    EXPECT_EQ(bits[at + 2], 40);  // red

    const QImage back = KxBitmapToImage(bitmap);
    ASSERT_EQ(back.size(), src.size());
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 5; ++x)
            EXPECT_EQ(back.pixel(x, y) & 0xFFFFFF, src.pixel(x, y) & 0xFFFFFF);

    const QPixmap pixmap = KxBitmapToPixmap(bitmap);
    ABitmap again;
    ASSERT_EQ(KxPixmapToBitmap(pixmap, again), 1);
    EXPECT_EQ(KxBitmapToImage(again), back);
}

TEST(ImageConvert, EmptyInputs) {
    ABitmap empty;
    EXPECT_TRUE(KxBitmapToImage(empty).isNull());
    EXPECT_TRUE(KxBitmapToPixmap(empty).isNull());
    EXPECT_EQ(KxImageToBitmap(QImage(), empty), 0);
    EXPECT_EQ(empty.GetSafeHandle(), nullptr);
}
