#include "image_writers.h"

#include <cerrno>
#include <csetjmp>
#include <cstdio>
#include <vector>

#include <png.h>
#include <tiffio.h>
#include <unistd.h>

#include "../out_file.h"

namespace kxprint {

std::string PagePath(const std::string& path, std::uint32_t page, std::uint32_t pages) {
    if (pages <= 1) return path;
    std::string number = std::to_string(page + 1);
    number.insert(number.begin(), '-');  // (GCC 12 warns falsely on "-" + string)
    const auto slash = path.find_last_of('/');
    const auto dot = path.find_last_of('.');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash) || dot == 0)
        return path + number;
    return path.substr(0, dot) + number + path.substr(dot);
}

// ---- PNG ------------------------------------------------------------------------------------

struct PngPageWriter::State {
    kxtool::OutFile out;  // the page appears under its name only once it is complete
    std::FILE* file = nullptr;
    png_structp png = nullptr;
    png_infop info = nullptr;
    std::string message;

    static void OnError(png_structp png, png_const_charp text) {
        static_cast<State*>(png_get_error_ptr(png))->message = text;
        png_longjmp(png, 1);
    }
    static void OnWarning(png_structp, png_const_charp) {}

    void Reset() {
        if (png) png_destroy_write_struct(&png, info ? &info : nullptr);
        png = nullptr;
        info = nullptr;
        out.Discard();
        file = nullptr;
    }
    // The reason of a failed libpng call: the file's write error when there is one.
    std::string Why(int err) const {
        return file && std::ferror(file) ? kxtool::WriteError(out.Target(), err)
                                         : "PNG " + out.Target() + ": " + message;
    }
    // Runs libpng calls with the error jump point in this frame, which stays live while they
    // run: a libpng error jumps back here, becomes `error`, and the writer is reset.
    template <class Calls>
    bool Guarded(std::string& error, Calls calls) {
        if (!png) {
            error = "PNG writer not open";
            return false;
        }
        if (setjmp(png_jmpbuf(png))) {
            error = Why(errno);
            Reset();
            return false;
        }
        calls();
        return true;
    }
};

PngPageWriter::PngPageWriter() : m_state(std::make_unique<State>()) {}
PngPageWriter::~PngPageWriter() {
    m_state->Reset();
}

bool PngPageWriter::Begin(const std::string& path, const PageFormat& f, std::string& error) {
    State& s = *m_state;
    s.Reset();
    if (!s.out.Open(path, error)) return false;
    s.file = s.out.File();
    s.png = png_create_write_struct(PNG_LIBPNG_VER_STRING, &s, State::OnError, State::OnWarning);
    s.info = s.png ? png_create_info_struct(s.png) : nullptr;
    if (!s.info) {
        error = "out of memory for the PNG writer";
        s.Reset();
        return false;
    }
    return s.Guarded(error, [&] {
        png_init_io(s.png, s.file);
        const bool rgb = f.depth == 24;
        png_set_IHDR(s.png, s.info, f.width, f.height, rgb ? 8 : f.depth,
                     rgb ? PNG_COLOR_TYPE_RGB : PNG_COLOR_TYPE_GRAY, PNG_INTERLACE_NONE,
                     PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
        const auto ppm = static_cast<png_uint_32>(f.dpi / 0.0254 + 0.5);
        png_set_pHYs(s.png, s.info, ppm, ppm, PNG_RESOLUTION_METER);
        // Speed over size: the page is written as fast as it arrives.
        png_set_compression_level(s.png, 1);
        png_set_filter(s.png, 0, rgb ? PNG_FILTER_SUB : PNG_FILTER_NONE);
        png_write_info(s.png, s.info);
        // PNG grey 0 is black; 1-bit rows carry ink as 1.
        if (f.depth == 1) png_set_invert_mono(s.png);
    });
}

bool PngPageWriter::Row(const std::uint8_t* packed, std::string& error) {
    State& s = *m_state;
    return s.Guarded(error, [&] { png_write_row(s.png, packed); });
}

bool PngPageWriter::End(std::string& error) {
    State& s = *m_state;
    if (!s.Guarded(error, [&] { png_write_end(s.png, nullptr); })) return false;
    png_destroy_write_struct(&s.png, &s.info);
    s.file = nullptr;
    return s.out.Commit(error);
}

// ---- TIFF -----------------------------------------------------------------------------------

struct TiffJobWriter::State {
    kxtool::OutFile out;  // the job's file appears under its name only once Close() succeeds
    TIFF* tif = nullptr;
    std::string path;
};

TiffJobWriter::TiffJobWriter() : m_state(std::make_unique<State>()) {}
TiffJobWriter::~TiffJobWriter() {
    if (m_state->tif) TIFFClose(m_state->tif);
}

namespace {
// libtiff reports a failed write without its reason; errno still holds it.
std::string TiffWhy(const std::string& path, const std::string& what, int err) {
    return err == ENOSPC || err == EFBIG || err == EDQUOT || err == EIO
               ? kxtool::WriteError(path, err)
               : "TIFF " + path + ": " + what;
}
}  // namespace

namespace {
// libtiff prints its complaints to stderr by default; the printer reports its own.
void Quiet(const char*, const char*, va_list) {}
}  // namespace

bool TiffJobWriter::BeginPage(const std::string& path, const PageFormat& f, std::string& error) {
    State& s = *m_state;
    if (!s.tif) {
        TIFFSetWarningHandler(Quiet);
        TIFFSetErrorHandler(Quiet);
        s.path = path;
        if (!s.out.Open(path, error)) return false;
        // libtiff closes the descriptor it is given; the file object keeps its own.
        const int fd = dup(fileno(s.out.File()));
        s.tif = fd >= 0 ? TIFFFdOpen(fd, path.c_str(), "w") : nullptr;
        if (!s.tif) {
            if (fd >= 0) close(fd);
            s.out.Discard();
            error = "cannot write " + path;
            return false;
        }
    }
    TIFF* t = s.tif;
    const bool rgb = f.depth == 24;
    const bool ok = TIFFSetField(t, TIFFTAG_IMAGEWIDTH, f.width) &&
                    TIFFSetField(t, TIFFTAG_IMAGELENGTH, f.height) &&
                    TIFFSetField(t, TIFFTAG_BITSPERSAMPLE, rgb ? 8 : f.depth) &&
                    TIFFSetField(t, TIFFTAG_SAMPLESPERPIXEL, rgb ? 3 : 1) &&
                    TIFFSetField(t, TIFFTAG_PHOTOMETRIC,
                                 rgb            ? PHOTOMETRIC_RGB
                                 : f.depth == 1 ? PHOTOMETRIC_MINISWHITE
                                                : PHOTOMETRIC_MINISBLACK) &&
                    TIFFSetField(t, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) &&
                    TIFFSetField(t, TIFFTAG_COMPRESSION, COMPRESSION_LZW) &&
                    TIFFSetField(t, TIFFTAG_ROWSPERSTRIP, 1) &&
                    TIFFSetField(t, TIFFTAG_XRESOLUTION, f.dpi) &&
                    TIFFSetField(t, TIFFTAG_YRESOLUTION, f.dpi) &&
                    TIFFSetField(t, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH) &&
                    TIFFSetField(t, TIFFTAG_SOFTWARE, "kxbase print");
    if (!ok) error = "TIFF " + s.path + ": cannot set the page's tags";
    return ok;
}

bool TiffJobWriter::Row(std::uint32_t row, const std::uint8_t* lzw, std::uint32_t length,
                        std::string& error) {
    State& s = *m_state;
    errno = 0;
    if (!s.tif || TIFFWriteRawStrip(s.tif, row, const_cast<std::uint8_t*>(lzw), length) < 0) {
        error = TiffWhy(s.path, "cannot write strip " + std::to_string(row), errno);
        return false;
    }
    return true;
}

bool TiffJobWriter::EndPage(std::string& error) {
    State& s = *m_state;
    errno = 0;
    if (!s.tif || !TIFFWriteDirectory(s.tif)) {
        error = TiffWhy(s.path, "cannot write the page directory", errno);
        return false;
    }
    return true;
}

bool TiffJobWriter::Close(std::string& error) {
    State& s = *m_state;
    if (!s.tif) return true;
    errno = 0;
    const bool flushed = TIFFFlush(s.tif) == 1;
    const int err = errno;
    TIFFClose(s.tif);
    s.tif = nullptr;
    if (!flushed) {
        error = TiffWhy(s.path, "cannot complete the file", err);
        s.out.Discard();
        return false;
    }
    return s.out.Commit(error);
}

}  // namespace kxprint
