// kxbase compress --codec NAME [--width N] IN OUT: compresses a file with one of the library's
// codecs into the container described in codec_container.h.
// kxbase decompress IN OUT: restores such a file; the container names the codec.
//
// Exit status: 0 done; 1 OUT could not be created or written (a full disk, the file-size
// limit, a folder that cannot be written); 2 a usage error, an IN that cannot be read, data
// the codec cannot take (a zero byte for base64, a pixel value too large for its depth), or
// a foreign, damaged, truncated or empty compressed file. OUT is written whole or not at
// all: a failed command leaves an existing OUT as it was and creates none.

#include <cerrno>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "codec_container.h"
#include "command.h"
#include "out_file.h"

namespace {

namespace codec = kxtool::codec;

// Inputs above this size show a progress bar on stderr.
constexpr std::uint64_t kProgressFrom = 4u << 20;

class ProgressBar {
public:
    ProgressBar(const char* what, std::uint64_t total, bool show)
        : m_what(what), m_total(total), m_show(show && total > kProgressFrom) {}
    void operator()(std::uint64_t done) {
        if (!m_show) return;
        const int percent = m_total ? static_cast<int>(done * 100 / m_total) : 100;
        if (percent == m_last) return;
        m_last = percent;
        char bar[41];
        for (int i = 0; i < 40; ++i) bar[i] = i < percent * 40 / 100 ? '#' : '.';
        bar[40] = '\0';
        std::fprintf(stderr, "\r%s [%s] %3d%%  %.1f / %.1f MB", m_what, bar, percent,
                     static_cast<double>(done) / 1e6, static_cast<double>(m_total) / 1e6);
        if (done >= m_total) std::fputc('\n', stderr);
        std::fflush(stderr);
    }

private:
    const char* m_what;
    std::uint64_t m_total;
    bool m_show;
    int m_last = -1;
};

// Owns the two files of a command. A failed command removes its output when that is a
// regular file (never a device such as /dev/null, nor a pipe).
class Files {
public:
    ~Files() {
        if (m_in) std::fclose(m_in);
    }
    // Opens both files; prints the reason and returns the exit status on failure (2 when
    // OUT would overwrite IN or IN cannot be read, 1 when OUT cannot be created), 0 on
    // success. OUT is written to a temporary file that only a successful Close() renames.
    int Open(const std::string& in, const std::string& out) {
        std::error_code ec;
        if (std::filesystem::exists(out, ec) && std::filesystem::equivalent(in, out, ec)) {
            std::fprintf(stderr, "kxbase: IN and OUT are the same file: %s\n", in.c_str());
            return 2;
        }
        m_in = std::fopen(in.c_str(), "rb");
        if (!m_in) {
            Fail("cannot open", in);
            return 2;
        }
        m_outPath = out;
        std::string error;
        if (!m_out.Open(out, error)) {
            std::fprintf(stderr, "kxbase: %s\n", error.c_str());
            return 1;
        }
        return 0;
    }
    // Prints why a file operation failed; returns the exit status 1.
    static int Fail(const char* what, const std::string& path) {
        std::fprintf(stderr, "kxbase: %s %s: %s\n", what, path.c_str(), std::strerror(errno));
        return 1;
    }
    codec::Read Reader() {
        return [this](std::uint8_t* p, std::size_t n) { return std::fread(p, 1, n, m_in); };
    }
    codec::Write Writer() {
        return [this](const std::uint8_t* p, std::size_t n) {
            m_written += n;
            if (std::fwrite(p, 1, n, m_out.File()) == n) return true;
            m_writeErrno = errno;
            return false;
        };
    }
    // Flushes and closes the output; false (with the reason printed) when that fails.
    bool Close() {
        std::string error;
        if (m_out.Commit(error)) return true;
        std::fprintf(stderr, "kxbase: %s\n", error.c_str());
        return false;
    }
    // Reports the failed write (the temporary file is discarded with the object).
    int WriteFailed() const {
        std::fprintf(stderr, "kxbase: %s\n",
                     kxtool::WriteError(m_outPath, m_writeErrno ? m_writeErrno : EIO).c_str());
        return 1;
    }
    bool ReadFailed() const { return m_in && std::ferror(m_in); }
    std::uint64_t Written() const { return m_written; }
    const std::string& OutPath() const { return m_outPath; }

private:
    std::FILE* m_in = nullptr;
    kxtool::OutFile m_out;
    std::string m_outPath;
    std::uint64_t m_written = 0;
    int m_writeErrno = 0;
};

std::string CodecNames() {
    std::string names;
    for (const auto& c : codec::kCodecs) names += (names.empty() ? "" : "|") + std::string(c.name);
    return names;
}

// Maps a container result to the exit status, printing the reason.
int Finish(codec::Result r, const std::string& error, Files& files, const std::string& in) {
    switch (r) {
        case codec::Result::Ok:
            return files.Close() ? 0 : 1;
        case codec::Result::BadInput:
            std::fprintf(stderr, "kxbase: %s: %s\n", in.c_str(), error.c_str());
            return 2;
        case codec::Result::ReadError:
            if (files.ReadFailed())
                Files::Fail("cannot read", in);
            else
                std::fprintf(stderr, "kxbase: %s: %s\n", in.c_str(), error.c_str());
            return 2;
        case codec::Result::WriteError:
            return files.WriteFailed();
    }
    return 1;
}

struct CompressArgs {
    std::string codec, in, out;
    std::uint32_t width = 0;
    bool quiet = false;
};

int RunCompress(const CompressArgs& a) {
    const codec::CodecInfo* c = codec::FindCodec(a.codec);
    if (!c) {
        std::fprintf(stderr, "kxbase: unknown codec \"%s\" (%s)\n", a.codec.c_str(),
                     CodecNames().c_str());
        return 2;
    }
    std::error_code ec;
    const std::uint64_t length = std::filesystem::file_size(a.in, ec);
    if (ec) {
        std::fprintf(stderr, "kxbase: cannot read %s: %s\n", a.in.c_str(), ec.message().c_str());
        return 2;
    }
    // Check the options before OUT is created.
    codec::Header h;
    std::string error;
    if (!codec::MakeHeader(*c, a.width, length, h, error)) {
        std::fprintf(stderr, "kxbase: %s\n", error.c_str());
        return 2;
    }
    Files files;
    if (const int status = files.Open(a.in, a.out)) return status;
    ProgressBar bar("compress", length, !a.quiet);
    std::uint64_t stored = 0;
    const auto r = codec::Encode(*c, a.width, length, files.Reader(), files.Writer(), error,
                                 std::ref(bar), &stored);
    const int status = Finish(r, error, files, a.in);
    if (status == 0 && !a.quiet) {
        std::printf("%s: %" PRIu64 " -> %" PRIu64 " bytes (%.1f %%), %" PRIu64
                    " %s of %u bytes, %" PRIu64 " stored as is\n",
                    c->name, length, files.Written(),
                    length
                        ? 100.0 * static_cast<double>(files.Written()) / static_cast<double>(length)
                        : 0.0,
                    h.Blocks(), c->depth ? "lines" : "blocks", h.block, stored);
    }
    return status;
}

struct DecompressArgs {
    std::string in, out;
    bool quiet = false;
};

int RunDecompress(const DecompressArgs& a) {
    std::error_code ec;
    const std::uint64_t size = std::filesystem::file_size(a.in, ec);
    if (ec) {
        std::fprintf(stderr, "kxbase: cannot read %s: %s\n", a.in.c_str(), ec.message().c_str());
        return 2;
    }
    Files files;
    if (const int status = files.Open(a.in, a.out)) return status;
    // The original length is known once the header is read; the bar follows the output.
    codec::Header h;
    ProgressBar bar("decompress", 0, false);
    bool barReady = false;
    auto progress = [&](std::uint64_t done) {
        if (!barReady) {
            bar = ProgressBar("decompress", h.length, !a.quiet && size > 0);
            barReady = true;
        }
        bar(done);
    };
    std::string error;
    const auto r =
        codec::Decode(files.Reader(), files.Writer(), error, codec::kMaxBlock, progress, &h);
    const int status = Finish(r, error, files, a.in);
    if (status == 0 && !a.quiet)
        std::printf("%s: %" PRIu64 " -> %" PRIu64 " bytes\n", h.codec->name, size, h.length);
    return status;
}

kxtool::Command compress{
    "compress",
    "Compress a file with a library codec (lzw, rle, rle4, rle8, rle24, pack1, pack2, base64)",
    [](CLI::App& sub) {
        auto a = std::make_shared<CompressArgs>();
        sub.add_option("--codec", a->codec, "Codec: " + CodecNames())->required();
        sub.add_option("--width", a->width,
                       "Pixels per line for rle4, rle8, rle24, pack1, pack2 (one byte per pixel, "
                       "three for rle24; required); block length in bytes for lzw, rle, base64 "
                       "(default 1 MiB)");
        sub.add_flag("-q,--quiet", a->quiet, "No summary line and no progress bar");
        sub.add_option("IN", a->in, "File to compress")->required();
        sub.add_option("OUT", a->out, "Compressed file to write")->required();
        sub.footer(
            "Exit status: 0 done, 1 OUT cannot be written, 2 usage error, unreadable IN or data "
            "the codec cannot take.");
        return [a] { return RunCompress(*a); };
    }};

kxtool::Command decompress{
    "decompress", "Restore a file written by `kxbase compress`", [](CLI::App& sub) {
        auto a = std::make_shared<DecompressArgs>();
        sub.add_flag("-q,--quiet", a->quiet, "No summary line and no progress bar");
        sub.add_option("IN", a->in, "Compressed file")->required();
        sub.add_option("OUT", a->out, "Restored file to write")->required();
        sub.footer(
            "Exit status: 0 done, 1 OUT cannot be written, 2 usage error, unreadable IN or a "
            "foreign, damaged or truncated file.");
        return [a] { return RunDecompress(*a); };
    }};

}  // namespace
