// The built-in test page of `kxbase print`: its size in pixels, the transform from page
// coordinates to device pixels, and the rasterisation of one device row at a time.
//
// The page holds ellipses, turned ellipses, rectangles and parallelograms, each filled and
// outlined in its own colour. Every shape is turned into per-row spans once, when the page
// is built (CEllipse under the page transform); rows are then produced top to bottom from
// those spans, so a row costs a few span look-ups and fills and nothing is allocated.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <kxbase/geometry/transform.h>
#include <kxbase/platform/carray.h>

namespace kxprint {

/// What the user asks for: page size in millimetres, resolution, turn and pixel depth.
struct PageSetup {
    double widthMm = 210.0;
    double heightMm = 297.0;
    double dpi = 720.0;
    double angleDeg = 0.0;  ///< the page content turns by this angle about the page centre
    int depth = 1;          ///< 1, 2, 4, 8 or 24 bits per pixel
};

/// Reads "A4", "letter", "210x297" or "210x297mm" (also cm and in) into the setup's size.
/// Returns false with a message in `error` for anything else.
bool ParsePageSize(const std::string& text, PageSetup& setup, std::string& error);

/// Bytes per pixel of the one-byte-per-sample ("expanded") rows: 3 for 24-bit, else 1.
inline int ExpandedBytesPerPixel(int depth) {
    return depth == 24 ? 3 : 1;
}
/// Bytes of one packed row (pixels side by side, most significant bits first, rows padded to
/// a whole byte): the layout PNG and TIFF store.
inline std::uint32_t PackedRowBytes(std::uint32_t width, int depth) {
    return static_cast<std::uint32_t>(
        (std::uint64_t{width} * static_cast<std::uint32_t>(depth) + 7) / 8);
}
inline bool ValidDepth(int depth) {
    return depth == 1 || depth == 2 || depth == 4 || depth == 8 || depth == 24;
}

class Page {
public:
    /// Builds the shapes' spans for the setup. Check Ok() (and Error()) afterwards.
    explicit Page(const PageSetup& setup);

    bool Ok() const { return m_error.empty(); }
    const std::string& Error() const { return m_error; }
    std::uint32_t Width() const { return m_width; }
    std::uint32_t Height() const { return m_height; }
    int Depth() const { return m_depth; }
    /// The page transform: page coordinates (tenths of a millimetre) to device pixels.
    const ATransform& Transform() const { return m_transform; }

    /// Writes device row y (0 <= y < Height()) as an expanded row: Width() bytes of pixel
    /// values (0/1 for 1-bit, 0..2^depth-1 grey levels, 0 = black) or Width() RGB triples
    /// for 24-bit. Rows must be asked for in increasing order after Rewind(); a row asked out
    /// of order is still correct, only slower (the outline cursors restart).
    void RasteriseRow(std::uint32_t y, std::uint8_t* expanded);
    /// Returns the outline cursors to the top of the page.
    void Rewind();

    /// One shape in page coordinates (tenths of a millimetre), for the benchmark's peers.
    struct ShapeInfo {
        bool ellipse;  ///< ellipse inscribed in the box, else the box itself
        double left, top, right, bottom;
        ATransform local;  ///< the shape's own turn or shear, applied before the page map
        std::uint8_t fill[3], line[3];
    };
    /// The shapes in painting order.
    static std::vector<ShapeInfo> Shapes(double widthMm, double heightMm);

private:
    struct Run {
        std::int32_t y, x0, x1;  // x1 inclusive
    };
    struct Painted {
        std::int64_t first = 0;                   // device row of spans[0]
        CArray<POINT> spans;                      // x = first pixel, y = last pixel
        std::vector<Run> outline;                 // sorted by row, then column
        std::size_t cursor = 0;                   // first outline run not above the current row
        std::uint8_t fill[3] = {}, line[3] = {};  // pixel values for the page's depth
    };

    void Paint(std::uint8_t* row, std::int32_t x0, std::int32_t x1,
               const std::uint8_t* value) const;

    std::uint32_t m_width = 0, m_height = 0;
    int m_depth = 1;
    ATransform m_transform;
    std::vector<Painted> m_shapes;
    std::uint8_t m_paper[3] = {};
    std::vector<std::uint8_t> m_paperRow;  // 24-bit: one row of white
    std::uint32_t m_lastRow = 0;
    std::string m_error;
};

}  // namespace kxprint
