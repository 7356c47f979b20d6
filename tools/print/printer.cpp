// The printer process: takes the bands out of the ring, decodes every row, checks it against
// the producer's CRC-32 and writes the pages.
#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

#include <kxbase/compress/compress.h>
#include <kxbase/runtime/share_memory.h>

#include "band_ring.h"
#include "image_writers.h"
#include "print_job.h"
#include "progress.h"

namespace kxprint {

namespace {

pid_t g_producer = -1;  // the process that started this printer

int Fail(const std::string& message) {
    std::fprintf(stderr, "kxbase print: printer: %s\n", message.c_str());
    return 1;
}

// The producer died without deleting its area: take the stale area over as its server and
// delete it, so that nothing is left in the shared memory file system. The pipe reports the
// death as soon as the producer's descriptors close, which can be before the kernel has
// released the area's descriptor, and with it the mark that keeps a live server's area from
// being removed. A dead process is reparented only once all its files are released, so
// waiting for that (at most a second) makes the removal sure.
void RemoveStaleArea(const std::string& area) {
    for (int i = 0; i < 100 && ::getppid() == g_producer; ++i) ::usleep(10000);
    CShareMemoryServer server;
    if (server.CreateMap(area.c_str(), kControlBytes, kControlBytes))
        server.DeleteMap();
    else
        std::fprintf(stderr, "kxbase print: printer: cannot remove the area '%s': %s\n",
                     area.c_str(), ChannelError(server).c_str());
}

class Printer {
public:
    Printer(std::string area, std::string png, std::string tiff)
        : m_area(std::move(area)), m_png(std::move(png)), m_tiff(std::move(tiff)) {}

    int Run(bool stall);

private:
    bool Open(std::string& error);
    bool TakeBand(const Token& token, std::string& error);
    bool BeginPage(const BandHeader& h, std::string& error);
    bool EndPage(std::string& error);

    std::string m_area, m_png, m_tiff;
    CShareMemoryClient m_client;
    RingControl m_control;
    std::vector<std::uint8_t> m_band;
    std::uint64_t m_nextSeq = 0;

    // The page being received.
    bool m_inPage = false;
    BandHeader m_page;
    std::uint32_t m_nextRow = 0;
    std::unique_ptr<LineDecoder> m_decoder;
    std::vector<std::uint8_t> m_lzw;
    PngPageWriter m_pngWriter;
    TiffJobWriter m_tiffWriter;
    PrinterFigures m_figures;
};

bool Printer::Open(std::string& error) {
    if (!m_client.OpenMap(m_area.c_str())) {
        error = "cannot open area '" + m_area + "': " + ChannelError(m_client);
        return false;
    }
    if (!m_client.ReadData(0, &m_control, sizeof m_control) || m_control.magic != kRingMagic ||
        m_control.slotCount == 0 || m_control.slotBytes < sizeof(BandHeader) ||
        AreaBytes(m_control.slotCount, m_control.slotBytes) > m_client.GetMapSize()) {
        error = "area '" + m_area + "' does not hold a band ring";
        return false;
    }
    return true;
}

bool Printer::BeginPage(const BandHeader& h, std::string& error) {
    // The producer's own limits: a page of more than 1 << 20 pixels a side is refused there.
    if (h.firstRow != 0 || !ValidDepth(static_cast<int>(h.depth)) || h.width == 0 ||
        h.height == 0 || h.width > (1u << 20) || h.height > (1u << 20) ||
        (h.codec != static_cast<std::uint32_t>(Codec::Pack) &&
         h.codec != static_cast<std::uint32_t>(Codec::Lzw))) {
        error = "band " + std::to_string(h.seq) + " does not start a valid page";
        return false;
    }
    m_page = h;
    m_inPage = true;
    m_nextRow = 0;
    m_decoder = std::make_unique<LineDecoder>(h.width, static_cast<int>(h.depth),
                                              static_cast<Codec>(h.codec));
    m_lzw.resize(static_cast<std::size_t>(ACompress::LzwCompressBound(m_decoder->PackedBytes())));
    const PageFormat format{h.width, h.height, static_cast<int>(h.depth), h.dpiMilli / 1000.0};
    const auto t0 = Clock::now();
    bool ok = true;
    if (!m_png.empty()) ok = m_pngWriter.Begin(PagePath(m_png, h.page, h.pages), format, error);
    if (ok && !m_tiff.empty()) ok = m_tiffWriter.BeginPage(m_tiff, format, error);
    m_figures.writeNs += Ns(t0, Clock::now());
    return ok;
}

bool Printer::EndPage(std::string& error) {
    const auto t0 = Clock::now();
    bool ok = true;
    if (!m_png.empty()) ok = m_pngWriter.End(error);
    if (ok && !m_tiff.empty()) ok = m_tiffWriter.EndPage(error);
    m_figures.writeNs += Ns(t0, Clock::now());
    m_inPage = false;
    ++m_figures.pages;
    return ok;
}

bool Printer::TakeBand(const Token& token, std::string& error) {
    if (token.seq != m_nextSeq) {
        error = "expected band " + std::to_string(m_nextSeq) + ", was told " +
                std::to_string(token.seq);
        return false;
    }
    const auto slot = static_cast<std::uint32_t>(token.seq % m_control.slotCount);
    const auto t0 = Clock::now();
    BandHeader h;
    std::uint64_t published = 0;
    if (!m_client.ReadData(offsetof(RingControl, published), &published, sizeof published) ||
        !m_client.ReadData(SlotOffset(slot, m_control.slotBytes), &h, sizeof h)) {
        error = "cannot read band " + std::to_string(token.seq) + ": " + ChannelError(m_client);
        return false;
    }
    if (published <= token.seq || h.seq != token.seq ||
        h.payloadBytes > m_control.slotBytes - sizeof h) {
        error = "slot " + std::to_string(slot) + " does not hold band " + std::to_string(token.seq);
        return false;
    }
    if (m_band.size() < h.payloadBytes) m_band.resize(h.payloadBytes);
    if (h.payloadBytes && !m_client.ReadData(SlotOffset(slot, m_control.slotBytes) + sizeof h,
                                             m_band.data(), h.payloadBytes)) {
        error = "cannot read band " + std::to_string(token.seq) + ": " + ChannelError(m_client);
        return false;
    }
    m_figures.transferNs += Ns(t0, Clock::now());

    if (!m_inPage && !BeginPage(h, error)) return false;
    if (h.page != m_page.page || h.width != m_page.width || h.height != m_page.height ||
        h.depth != m_page.depth || h.codec != m_page.codec || h.firstRow != m_nextRow ||
        h.rows > m_page.height - m_nextRow) {
        error = "band " + std::to_string(h.seq) + " does not continue page " +
                std::to_string(m_page.page + 1) + " at row " + std::to_string(m_nextRow);
        return false;
    }
    const bool lzwStream = h.codec == static_cast<std::uint32_t>(Codec::Lzw);
    std::uint32_t at = 0;
    for (std::uint32_t r = 0; r < h.rows; ++r) {
        const std::uint32_t row = h.firstRow + r;
        LineRecord rec;
        if (h.payloadBytes - at < sizeof rec) {
            error = "band " + std::to_string(h.seq) + " ends before row " + std::to_string(row);
            return false;
        }
        std::memcpy(&rec, m_band.data() + at, sizeof rec);
        at += sizeof rec;
        if (rec.length > h.payloadBytes - at) {
            error = "row " + std::to_string(row) + " runs past its band";
            return false;
        }
        const std::uint8_t* stream = m_band.data() + at;
        at += rec.length;

        const auto d0 = Clock::now();
        const std::uint8_t* packed = m_decoder->Decode(stream, rec.length, error);
        if (!packed) {
            error =
                "page " + std::to_string(h.page + 1) + " row " + std::to_string(row) + ": " + error;
            return false;
        }
        if (Crc32(packed, m_decoder->PackedBytes()) != rec.crc) {
            error = "page " + std::to_string(h.page + 1) + " row " + std::to_string(row) +
                    ": checksum mismatch (the row arrived damaged)";
            return false;
        }
        const auto d1 = Clock::now();
        m_figures.decompressNs += Ns(d0, d1);

        if (!m_png.empty() && !m_pngWriter.Row(packed, error)) return false;
        if (!m_tiff.empty()) {
            const std::uint8_t* strip = stream;
            ULONG length = rec.length;
            // A run-length page is coded once more for the TIFF; an LZW page's streams
            // already are the strips.
            if (!lzwStream && !ACompress::Comp_LZW(packed, m_decoder->PackedBytes(), m_lzw.data(),
                                                   static_cast<ULONG>(m_lzw.size()), length)) {
                error = "row " + std::to_string(row) + ": LZW coding for the TIFF failed";
                return false;
            }
            if (!lzwStream) strip = m_lzw.data();
            if (!m_tiffWriter.Row(row, strip, static_cast<std::uint32_t>(length), error))
                return false;
            m_figures.tiffStripBytes += length;
        }
        m_figures.writeNs += Ns(d1, Clock::now());
        ++m_figures.rows;
    }
    m_nextRow += h.rows;
    ++m_nextSeq;
    if (m_nextRow == m_page.height && !EndPage(error)) return false;
    return true;
}

int Printer::Run(bool stall) {
    std::string error;
    bool open = false;
    for (;;) {
        Token token;
        const PipeResult r = ReadToken(kTokenFd, token, nullptr);
        if (r != PipeResult::Ok) {
            if (open) m_client.DeleteMap();
            RemoveStaleArea(m_area);
            if (m_inPage)
                return Fail("the producer ended in the middle of page " +
                            std::to_string(m_page.page + 1) + " (row " + std::to_string(m_nextRow) +
                            " of " + std::to_string(m_page.height) + "); the page is incomplete");
            return Fail("the producer ended before the job was complete");
        }
        if (!open) {
            if (!Open(error)) {
                RemoveStaleArea(m_area);
                return Fail(error);
            }
            open = true;
        }
        if (token.kind == TokenKind::End) {
            if (m_inPage) return Fail("the job ended in the middle of a page");
            if (!m_tiff.empty() && !m_tiffWriter.Close(error)) return Fail(error);
            m_control.figures = m_figures;
            if (!m_client.WriteData(offsetof(RingControl, figures), &m_control.figures,
                                    sizeof m_control.figures))
                return Fail("cannot report to the producer: " + ChannelError(m_client));
            WriteToken(kAckFd, Token{TokenKind::Done, 0, m_nextSeq});
            return 0;
        }
        if (token.kind != TokenKind::Band) return Fail("unexpected token from the producer");
        if (stall) {
            std::fprintf(stderr, "kxbase print: printer stalls in process %d (test hook)\n",
                         static_cast<int>(getpid()));
            for (;;) pause();
        }
        if (!TakeBand(token, error)) return Fail(error);
        const std::uint64_t consumed = m_nextSeq;
        if (!m_client.WriteData(offsetof(RingControl, consumed),
                                const_cast<std::uint64_t*>(&consumed), sizeof consumed))
            return Fail("cannot acknowledge band: " + ChannelError(m_client));
        if (WriteToken(kAckFd, Token{TokenKind::Ack, 0, token.seq}) != PipeResult::Ok) {
            RemoveStaleArea(m_area);
            return Fail("the producer is gone");
        }
    }
}

}  // namespace

int RunPrinter(const std::string& area, const std::string& png, const std::string& tiff,
               const std::string& stall) {
    // Ctrl-C on a terminal reaches both processes; the producer decides and closes the pipe.
    signal(SIGINT, SIG_IGN);
    signal(SIGPIPE, SIG_IGN);
    g_producer = ::getppid();
    Printer printer(area, png, tiff);
    return printer.Run(stall == "printer");
}

}  // namespace kxprint
