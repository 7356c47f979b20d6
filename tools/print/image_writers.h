// The printer's outputs: a PNG per page (libpng) and one TIFF for the job, a page per
// directory, whose strips (one row each) are LZW streams of the packed rows with the LZW
// compression tag, so any TIFF reader opens them. Rows arrive as packed rows (the layout
// both formats store); 1-bit rows hold ink as 1.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace kxprint {

struct PageFormat {
    std::uint32_t width = 0, height = 0;
    int depth = 1;
    double dpi = 0;
};

/// "page.png" for a one-page job; "page-1.png", "page-2.png" ... otherwise.
std::string PagePath(const std::string& path, std::uint32_t page, std::uint32_t pages);

class PngPageWriter {
public:
    PngPageWriter();
    ~PngPageWriter();
    PngPageWriter(const PngPageWriter&) = delete;
    PngPageWriter& operator=(const PngPageWriter&) = delete;

    bool Begin(const std::string& path, const PageFormat& format, std::string& error);
    bool Row(const std::uint8_t* packed, std::string& error);
    bool End(std::string& error);

private:
    struct State;
    std::unique_ptr<State> m_state;
};

class TiffJobWriter {
public:
    TiffJobWriter();
    ~TiffJobWriter();
    TiffJobWriter(const TiffJobWriter&) = delete;
    TiffJobWriter& operator=(const TiffJobWriter&) = delete;

    /// Opens the file on the first page; each page becomes one directory.
    bool BeginPage(const std::string& path, const PageFormat& format, std::string& error);
    /// Writes row `row` as its own strip: `lzw` must be the Comp_LZW stream of the packed row.
    bool Row(std::uint32_t row, const std::uint8_t* lzw, std::uint32_t length, std::string& error);
    bool EndPage(std::string& error);
    bool Close(std::string& error);

private:
    struct State;
    std::unique_ptr<State> m_state;
};

}  // namespace kxprint
