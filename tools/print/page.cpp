#include "page.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <map>

#include <kxbase/ellipse/ellipse.h>
#include <kxbase/units/units.h>

namespace kxprint {

namespace {

constexpr double kPi = 3.14159265358979323846;

// Page coordinates are tenths of a millimetre: fine enough for integer rectangles, which the
// rectangle rasteriser takes.
constexpr double kUnitsPerMm = 10.0;

std::string Lower(std::string s) {
    for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return s;
}

// Luminance of an sRGB triple, 0..255, with the usual video weights.
int Luminance(const std::uint8_t rgb[3]) {
    return (299 * rgb[0] + 587 * rgb[1] + 114 * rgb[2] + 500) / 1000;
}

// The pixel value of a colour at a depth. 1-bit pixels are ink (1) or paper (0); grey
// levels keep 0 as black, so white paper is the largest value.
void PixelValue(const std::uint8_t rgb[3], int depth, std::uint8_t out[3]) {
    const int lum = Luminance(rgb);
    out[0] = out[1] = out[2] = 0;
    switch (depth) {
        case 1:
            out[0] = lum < 128 ? 1 : 0;
            break;
        case 2:
            out[0] = static_cast<std::uint8_t>(lum >> 6);
            break;
        case 4:
            out[0] = static_cast<std::uint8_t>(lum >> 4);
            break;
        case 8:
            out[0] = static_cast<std::uint8_t>(lum);
            break;
        default:
            std::memcpy(out, rgb, 3);
            break;
    }
}

// The outline's pixels ordered by row, then column. An outline has a few pixels per row
// over many rows, so they are distributed by row first (one counting pass) and only each
// row's handful is sorted.
std::vector<POINT> SortByRow(const CArray<POINT>& pts) {
    const POINT* p = pts.GetData();
    const auto n = static_cast<std::size_t>(pts.GetSize());
    std::vector<POINT> out(n);
    if (n == 0) return out;
    LONG lo = p[0].y, hi = p[0].y;
    for (std::size_t i = 1; i < n; ++i) {
        lo = std::min(lo, p[i].y);
        hi = std::max(hi, p[i].y);
    }
    std::vector<std::size_t> start(static_cast<std::size_t>(std::int64_t{hi} - lo) + 2, 0);
    for (std::size_t i = 0; i < n; ++i) ++start[static_cast<std::size_t>(p[i].y - lo) + 1];
    for (std::size_t r = 1; r < start.size(); ++r) start[r] += start[r - 1];
    std::vector<std::size_t> next(start.begin(), start.end() - 1);
    for (std::size_t i = 0; i < n; ++i) out[next[static_cast<std::size_t>(p[i].y - lo)]++] = p[i];
    for (std::size_t r = 0; r + 1 < start.size(); ++r)
        std::sort(out.begin() + static_cast<std::ptrdiff_t>(start[r]),
                  out.begin() + static_cast<std::ptrdiff_t>(start[r + 1]),
                  [](const POINT& a, const POINT& b) { return a.x < b.x; });
    return out;
}

}  // namespace

bool ParsePageSize(const std::string& text, PageSetup& setup, std::string& error) {
    static const std::map<std::string, std::pair<double, double>> named = {
        {"a0", {841, 1189}}, {"a1", {594, 841}},         {"a2", {420, 594}},
        {"a3", {297, 420}},  {"a4", {210, 297}},         {"a5", {148, 210}},
        {"a6", {105, 148}},  {"letter", {215.9, 279.4}}, {"legal", {215.9, 355.6}},
    };
    const std::string key = Lower(text);
    if (const auto it = named.find(key); it != named.end()) {
        setup.widthMm = it->second.first;
        setup.heightMm = it->second.second;
        return true;
    }
    error = "unknown page size \"" + text +
            "\" (A0 to A6, Letter, Legal, or WIDTHxHEIGHT in mm, e.g. 210x297, 8.5x11in)";
    const char* p = key.c_str();
    char* end = nullptr;
    const double w = std::strtod(p, &end);
    if (end == p || *end != 'x') return false;
    p = end + 1;
    const double h = std::strtod(p, &end);
    if (end == p) return false;
    const std::string unit = end;
    double scale = 0;
    if (unit.empty() || unit == "mm")
        scale = 1;
    else if (unit == "cm")
        scale = 10;
    else if (unit == "in")
        scale = 25.4;
    else
        return false;
    if (!(w > 0) || !(h > 0) || !std::isfinite(w) || !std::isfinite(h)) {
        error = "page sides must be positive";
        return false;
    }
    setup.widthMm = w * scale;
    setup.heightMm = h * scale;
    error.clear();
    return true;
}

std::vector<Page::ShapeInfo> Page::Shapes(double widthMm, double heightMm) {
    const double W = widthMm * kUnitsPerMm, H = heightMm * kUnitsPerMm;
    struct Def {
        bool ellipse;
        double l, t, r, b;  // fractions of the page
        double turnDeg;     // about the box centre
        double shear;       // x shifted by shear * (y - centre)
        std::uint8_t fill[3], line[3];
    };
    // Dark and light fills alternate so that the 1-bit page shows both filled shapes and
    // outlines on paper; the circle is sized on the width so it stays round on any page.
    static const Def defs[] = {
        {true, 0.08, 0.05, 0.62, 0.33, 0, 0, {160, 200, 255}, {0, 0, 140}},
        {true, 0.46, 0.08, 0.94, 0.28, 30, 0, {200, 40, 40}, {0, 0, 0}},
        {true, 0.25, 0.31, 0.75, 0.35, -60, 0, {20, 20, 20}, {0, 0, 0}},
        {false, 0.08, 0.40, 0.44, 0.60, 0, 0, {70, 70, 70}, {0, 0, 0}},
        {false, 0.54, 0.40, 0.90, 0.57, -20, 0, {250, 220, 80}, {120, 80, 0}},
        {false, 0.14, 0.68, 0.48, 0.90, 0, 0.45, {40, 140, 60}, {0, 60, 0}},
        {true, 0.18, 0.44, 0.36, 0.56, 0, 0, {235, 235, 235}, {0, 0, 0}},
        {false, 0.58, 0.80, 0.92, 0.95, 12, 0.3, {120, 40, 160}, {20, 0, 40}},
    };
    std::vector<ShapeInfo> out;
    for (const Def& d : defs) {
        ShapeInfo s{};
        s.ellipse = d.ellipse;
        s.left = std::round(d.l * W);
        s.top = std::round(d.t * H);
        s.right = std::round(d.r * W);
        s.bottom = std::round(d.b * H);
        const double cx = (s.left + s.right) / 2, cy = (s.top + s.bottom) / 2;
        if (d.shear != 0) s.local.Shear(0, d.shear, cx, cy);
        if (d.turnDeg != 0) s.local.Rotate(d.turnDeg * kPi / 180, cx, cy);
        std::memcpy(s.fill, d.fill, 3);
        std::memcpy(s.line, d.line, 3);
        out.push_back(s);
    }
    // A circle: equal sides in page units.
    ShapeInfo c{};
    c.ellipse = true;
    c.left = std::round(0.62 * W);
    c.right = std::round(0.90 * W);
    c.top = std::round(0.62 * H);
    c.bottom = c.top + (c.right - c.left);
    const std::uint8_t cf[3] = {255, 140, 0}, cl[3] = {90, 30, 0};
    std::memcpy(c.fill, cf, 3);
    std::memcpy(c.line, cl, 3);
    out.push_back(c);
    return out;
}

Page::Page(const PageSetup& setup) : m_depth(setup.depth) {
    if (!ValidDepth(setup.depth)) {
        m_error = "depth must be 1, 2, 4, 8 or 24";
        return;
    }
    const int w = ToNPIXEL(setup.widthMm, setup.dpi, RES_DPI, SIZE_MM);
    const int h = ToNPIXEL(setup.heightMm, setup.dpi, RES_DPI, SIZE_MM);
    // The LZW codec cannot code every row of 5 bytes or fewer, and a page of more than
    // 1 << 20 pixels a side is beyond any printer this drives.
    if (w < 48 || h < 1 || w > (1 << 20) || h > (1 << 20)) {
        m_error = "the page is " + std::to_string(w) + " x " + std::to_string(h) +
                  " pixels; it must be 48 to 1048576 pixels wide and up to 1048576 high";
        return;
    }
    m_width = static_cast<std::uint32_t>(w);
    m_height = static_cast<std::uint32_t>(h);
    const double scale = ToDPMM(setup.dpi, RES_DPI) / kUnitsPerMm;
    m_transform.Scaling(scale, scale, 0, 0);
    if (setup.angleDeg != 0) m_transform.Rotate(setup.angleDeg * kPi / 180, w / 2.0, h / 2.0);

    const std::uint8_t white[3] = {255, 255, 255};
    PixelValue(white, m_depth, m_paper);
    // A 24-bit row starts as a copy of this one: far faster than painting triples.
    if (m_depth == 24) m_paperRow.assign(std::size_t{m_width} * 3, 255);
    for (const ShapeInfo& s : Shapes(setup.widthMm, setup.heightMm)) {
        Painted p;
        ATransform t = s.local * m_transform;
        CArray<POINT> pts;
        if (s.ellipse) {
            const RECTD box{s.left, s.top, s.right, s.bottom};
            p.first = CEllipse::EllipseRasterLine(box, t, p.spans, nullptr);
            CEllipse::MidPointEllipse(box, t, pts);
        } else {
            const RECT box{static_cast<LONG>(s.left), static_cast<LONG>(s.top),
                           static_cast<LONG>(s.right), static_cast<LONG>(s.bottom)};
            p.first = CEllipse::RectRasterLine(box, t, p.spans, nullptr);
            CEllipse::MidPointRect(box, t, pts);
        }
        for (const POINT& q : SortByRow(pts)) {
            if (!p.outline.empty() && p.outline.back().y == q.y && p.outline.back().x1 + 1 >= q.x)
                p.outline.back().x1 = std::max<std::int32_t>(p.outline.back().x1, q.x);
            else
                p.outline.push_back({q.y, q.x, q.x});
        }
        PixelValue(s.fill, m_depth, p.fill);
        PixelValue(s.line, m_depth, p.line);
        m_shapes.push_back(std::move(p));
    }
}

void Page::Rewind() {
    for (Painted& p : m_shapes) p.cursor = 0;
    m_lastRow = 0;
}

void Page::Paint(std::uint8_t* row, std::int32_t x0, std::int32_t x1,
                 const std::uint8_t* value) const {
    x0 = std::max<std::int32_t>(x0, 0);
    x1 = std::min<std::int32_t>(x1, static_cast<std::int32_t>(m_width) - 1);
    if (x0 > x1) return;
    const auto n = static_cast<std::size_t>(x1 - x0 + 1);
    if (m_depth != 24) {
        std::memset(row + x0, value[0], n);
        return;
    }
    std::uint8_t* p = row + 3 * static_cast<std::size_t>(x0);
    for (std::size_t i = 0; i < n; ++i, p += 3) {
        p[0] = value[0];
        p[1] = value[1];
        p[2] = value[2];
    }
}

void Page::RasteriseRow(std::uint32_t y, std::uint8_t* row) {
    if (y < m_lastRow) Rewind();
    m_lastRow = y;
    if (m_depth == 24)
        std::memcpy(row, m_paperRow.data(), m_paperRow.size());
    else
        std::memset(row, m_paper[0], m_width);
    const auto yy = static_cast<std::int64_t>(y);
    for (Painted& p : m_shapes) {
        const std::int64_t i = yy - p.first;
        if (i >= 0 && i < p.spans.GetSize()) {
            const POINT& s = p.spans.GetData()[i];
            Paint(row, s.x, s.y, p.fill);
        }
        while (p.cursor < p.outline.size() && p.outline[p.cursor].y < yy) ++p.cursor;
        for (std::size_t k = p.cursor; k < p.outline.size() && p.outline[k].y == yy; ++k)
            Paint(row, p.outline[k].x0, p.outline[k].x1, p.line);
    }
}

}  // namespace kxprint
