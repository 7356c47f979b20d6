#include <kxbase/base/bitmap.h>

#include <cstring>
#include <new>
#include <vector>

// The device image: top-down rows of red, green, blue bytes without padding.
struct KxBitmapImage {
    int width;
    int height;
    std::vector<BYTE> pixels;
};

namespace {
constexpr UINT64 kMaxBufferBytes = 0x7FFFFFFFu;

// On Windows HBITMAP is the system's handle type; the library's handles still point at its
// own image.
KxBitmapImage* image_of(HBITMAP h) {
    return reinterpret_cast<KxBitmapImage*>(h);
}
HBITMAP handle_of(KxBitmapImage* image) {
    return reinterpret_cast<HBITMAP>(image);
}
}  // namespace

HBITMAP KxCreateBitmap(int width, int height) {
    if (width < 1 || height < 1 || ABitmap::RgbBitsSize(width, height) > kMaxBufferBytes)
        return nullptr;
    try {
        auto* image = new KxBitmapImage{width, height, {}};
        try {
            image->pixels.assign(
                static_cast<std::size_t>(width) * 3u * static_cast<std::size_t>(height), 0);
        } catch (...) {
            delete image;
            return nullptr;
        }
        return handle_of(image);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void KxDeleteBitmap(HBITMAP handle) {
    delete image_of(handle);
}

int KxGetBitmap(HBITMAP handle, BITMAP* out) {
    KxBitmapImage* bitmap = image_of(handle);
    if (bitmap == nullptr || out == nullptr) return 0;
    out->bmType = 0;
    out->bmWidth = bitmap->width;
    out->bmHeight = bitmap->height;
    out->bmWidthBytes = bitmap->width * 3;
    out->bmPlanes = 1;
    out->bmBitsPixel = 24;
    out->bmBits = bitmap->pixels.data();
    return 1;
}

KX_IMPLEMENT_DYNAMIC(CBitmap, CObject)
KX_IMPLEMENT_DYNAMIC(ABitmap, CBitmap)

CBitmap::~CBitmap() {
    DeleteObject();
}

int CBitmap::CreateBitmap(int width, int height) {
    DeleteObject();
    m_hObject = KxCreateBitmap(width, height);
    return m_hObject != nullptr ? 1 : 0;
}

int CBitmap::Attach(HBITMAP bitmap) {
    if (m_hObject != nullptr || bitmap == nullptr) return 0;
    m_hObject = bitmap;
    return 1;
}

HBITMAP CBitmap::Detach() {
    HBITMAP h = m_hObject;
    m_hObject = nullptr;
    return h;
}

int CBitmap::DeleteObject() {
    if (m_hObject == nullptr) return 0;
    KxDeleteBitmap(m_hObject);
    m_hObject = nullptr;
    return 1;
}

UINT ABitmap::RgbBitsStride(int width) {
    if (width < 1) return 0;
    return static_cast<UINT>((static_cast<UINT64>(width) * 24u + 31u) / 32u * 4u);
}

UINT64 ABitmap::RgbBitsSize(int width, int height) {
    if (width < 1 || height < 1) return 0;
    return static_cast<UINT64>(RgbBitsStride(width)) * static_cast<UINT64>(height);
}

BITMAPINFOHEADER ABitmap::RgbBitsHeader(int width, int height) {
    BITMAPINFOHEADER h{};
    h.biSize = 40;
    h.biWidth = width;
    h.biHeight = height;
    h.biPlanes = 1;
    h.biBitCount = 24;
    h.biCompression = BI_RGB;
    return h;
}

int ABitmap::GetRgbBits(BYTE* bits) const {
    const KxBitmapImage* img = image_of(m_hObject);
    if (img == nullptr) return 1;
    if (bits == nullptr) return 0;
    const std::size_t stride = RgbBitsStride(img->width);
    const std::size_t w = static_cast<std::size_t>(img->width);
    for (int y = 0; y < img->height; ++y) {
        const BYTE* src = img->pixels.data() + static_cast<std::size_t>(y) * w * 3u;
        BYTE* dst = bits + static_cast<std::size_t>(img->height - 1 - y) * stride;
        for (std::size_t x = 0; x < w; ++x) {
            dst[3 * x] = src[3 * x + 2];
            dst[3 * x + 1] = src[3 * x + 1];
            dst[3 * x + 2] = src[3 * x];
        }
        std::memset(dst + 3 * w, 0, stride - 3 * w);
    }
    return 1;
}

int ABitmap::SetRgbBits(const BYTE* bits) {
    KxBitmapImage* img = image_of(m_hObject);
    if (img == nullptr) return 1;
    if (bits == nullptr) {
        std::memset(img->pixels.data(), 0xFF, img->pixels.size());
        return 1;
    }
    const std::size_t stride = RgbBitsStride(img->width);
    const std::size_t w = static_cast<std::size_t>(img->width);
    for (int y = 0; y < img->height; ++y) {
        BYTE* dst = img->pixels.data() + static_cast<std::size_t>(y) * w * 3u;
        const BYTE* src = bits + static_cast<std::size_t>(img->height - 1 - y) * stride;
        for (std::size_t x = 0; x < w; ++x) {
            dst[3 * x] = src[3 * x + 2];
            dst[3 * x + 1] = src[3 * x + 1];
            dst[3 * x + 2] = src[3 * x];
        }
    }
    return 1;
}

int ABitmap::Copy(HBITMAP source) {
    BITMAP info;
    if (KxGetBitmap(source, &info) == 0) return 0;
    try {
        std::vector<BYTE> buffer(
            static_cast<std::size_t>(RgbBitsSize(info.bmWidth, info.bmHeight)));
        ABitmap from;
        from.m_hObject = source;
        from.GetRgbBits(buffer.data());
        from.m_hObject = nullptr;
        HBITMAP made = KxCreateBitmap(info.bmWidth, info.bmHeight);
        if (made == nullptr) return 0;
        ABitmap to;
        to.m_hObject = made;
        to.SetRgbBits(buffer.data());
        DeleteObject();
        m_hObject = to.Detach();
        return 1;
    } catch (const std::bad_alloc&) {
        return 0;
    }
}
