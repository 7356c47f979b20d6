// ABitmap: the RGB buffer format (bottom-up BGR rows padded to 4 bytes), Copy, the white
// fill, the answers without a bitmap, and the run-time class chain.
#include <gtest/gtest.h>

#include <vector>

#include <kxbase/base/bitmap.h>

namespace {

// A width x height buffer whose pixel (x, y) counted from the top is (x, y, x ^ y) in
// (red, green, blue), written in the RGB buffer format.
std::vector<BYTE> Pattern(int width, int height) {
    const UINT stride = ABitmap::RgbBitsStride(width);
    std::vector<BYTE> bits(ABitmap::RgbBitsSize(width, height), 0);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            BYTE* p = &bits[static_cast<std::size_t>(height - 1 - y) * stride +
                            3u * static_cast<UINT>(x)];
            p[0] = static_cast<BYTE>(x ^ y);
            p[1] = static_cast<BYTE>(y);
            p[2] = static_cast<BYTE>(x);
        }
    return bits;
}

}  // namespace

// Catches a stride without the 4-byte padding, a size that ignores it, and a header that
// describes top-down rows or another pixel format.
TEST(Bitmap, StrideSizeAndHeader) {
    for (const auto& [width, stride] :
         {std::pair{1, 4u}, {3, 12u}, {4, 12u}, {5, 16u}, {0, 0u}, {-3, 0u}})
        EXPECT_EQ(ABitmap::RgbBitsStride(width), stride) << width;
    EXPECT_EQ(ABitmap::RgbBitsSize(3, 2), 24u);
    const BITMAPINFOHEADER h = ABitmap::RgbBitsHeader(3, 2);
    EXPECT_TRUE(h.biSize == 40 && h.biWidth == 3 && h.biHeight == 2 && h.biBitCount == 24 &&
                h.biCompression == BI_RGB);
}

// Catches rows written top-down, RGB instead of BGR, a stride without padding, and padding
// bytes left with stale data.
TEST(Bitmap, RgbBitsRoundTripAndDeviceLayout) {
    for (const int width : {1, 3, 4, 7}) {
        ABitmap bitmap;
        ASSERT_EQ(bitmap.CreateBitmap(width, 5), 1);
        const std::vector<BYTE> in = Pattern(width, 5);
        EXPECT_EQ(bitmap.SetRgbBits(in.data()), 1);
        std::vector<BYTE> out(in.size(), 0xAB);
        EXPECT_EQ(bitmap.GetRgbBits(out.data()), 1);
        EXPECT_EQ(out, in) << width;
        BITMAP info;
        ASSERT_EQ(bitmap.GetBitmap(&info), 1);
        const auto* dev = static_cast<const BYTE*>(info.bmBits);
        // Device pixel (x = width - 1, y = 1) is top-down RGB.
        const BYTE* p = dev + info.bmWidthBytes + 3 * (width - 1);
        EXPECT_EQ(p[0], width - 1);
        EXPECT_EQ(p[1], 1);
        EXPECT_EQ(p[2], (width - 1) ^ 1);
    }
}

TEST(Bitmap, CopyWhiteFillAndEmptyObject) {
    ABitmap source;
    ASSERT_EQ(source.CreateBitmap(3, 2), 1);
    const std::vector<BYTE> in = Pattern(3, 2);
    source.SetRgbBits(in.data());

    ABitmap copy;
    ASSERT_EQ(copy.CreateBitmap(9, 9), 1);  // held before: released by the copy
    EXPECT_EQ(copy.Copy(source), 1);
    BITMAP info;
    copy.GetBitmap(&info);
    EXPECT_EQ(info.bmWidth, 3);
    EXPECT_EQ(info.bmHeight, 2);
    EXPECT_NE(copy.GetSafeHandle(), source.GetSafeHandle());
    std::vector<BYTE> out(in.size());
    copy.GetRgbBits(out.data());
    EXPECT_EQ(out, in);
    EXPECT_EQ(copy.Copy(copy), 1) << "copying into itself";
    EXPECT_EQ(copy.Copy(nullptr), 0);
    EXPECT_NE(copy.GetSafeHandle(), nullptr) << "a failed copy keeps the bitmap";

    EXPECT_EQ(copy.SetRgbBits(nullptr), 1);
    copy.GetRgbBits(out.data());
    for (std::size_t i = 0; i < out.size(); ++i)
        EXPECT_EQ(out[i], (i % 12) < 9 ? 0xFF : 0x00) << "white pixels, zero padding";

    ABitmap empty;
    std::vector<BYTE> untouched(12, 0x5A);
    EXPECT_EQ(empty.GetRgbBits(untouched.data()), 1);
    EXPECT_EQ(untouched, std::vector<BYTE>(12, 0x5A));
    EXPECT_EQ(empty.SetRgbBits(nullptr), 1);
    EXPECT_EQ(source.GetRgbBits(nullptr), 0);
}

TEST(Bitmap, CreateRefusesBadSizes) {
    for (const auto& [w, h] : {std::pair{0, 5}, {5, 0}, {-1, 1}, {100000, 100000}})
        EXPECT_EQ(KxCreateBitmap(w, h), nullptr) << w << "x" << h;
    CBitmap b;
    EXPECT_EQ(b.CreateBitmap(0, 0), 0);
    EXPECT_EQ(b.Attach(nullptr), 0);
    EXPECT_EQ(KxGetBitmap(nullptr, nullptr), 0);
}
