// A growable in-memory file for libtiff's TIFFClientOpen, shared by the benchmarks that use
// libtiff as the peer codec: the TIFF is written into and read from `buf`, so no file system
// time enters the figures.
#pragma once

#include <algorithm>
#include <cstring>
#include <vector>

#include <tiffio.h>

namespace kxbench {

struct TiffMemFile {
    std::vector<unsigned char> buf;
    toff_t pos = 0;

    /// Opens the buffer as a TIFF from its start ("w" also needs `buf` cleared first).
    TIFF* Open(const char* mode) {
        pos = 0;
        return TIFFClientOpen("bench", mode, this, Read, Write, Seek, Close, Size, Map, Unmap);
    }

private:
    static TiffMemFile* Of(thandle_t h) { return static_cast<TiffMemFile*>(h); }
    static tmsize_t Read(thandle_t h, void* p, tmsize_t n) {
        TiffMemFile* f = Of(h);
        const auto avail = static_cast<tmsize_t>(f->buf.size()) - static_cast<tmsize_t>(f->pos);
        const tmsize_t k = std::max<tmsize_t>(0, std::min(n, avail));
        if (k) std::memcpy(p, f->buf.data() + f->pos, static_cast<std::size_t>(k));
        f->pos += static_cast<toff_t>(k);
        return k;
    }
    static tmsize_t Write(thandle_t h, void* p, tmsize_t n) {
        TiffMemFile* f = Of(h);
        if (f->pos + static_cast<toff_t>(n) > f->buf.size())
            f->buf.resize(f->pos + static_cast<toff_t>(n));
        std::memcpy(f->buf.data() + f->pos, p, static_cast<std::size_t>(n));
        f->pos += static_cast<toff_t>(n);
        return n;
    }
    static toff_t Seek(thandle_t h, toff_t off, int whence) {
        TiffMemFile* f = Of(h);
        f->pos = whence == SEEK_SET ? off : whence == SEEK_CUR ? f->pos + off : f->buf.size() + off;
        return f->pos;
    }
    static int Close(thandle_t) { return 0; }
    static toff_t Size(thandle_t h) { return Of(h)->buf.size(); }
    static int Map(thandle_t, void**, toff_t*) { return 0; }
    static void Unmap(thandle_t, void*, toff_t) {}
};

}  // namespace kxbench
