// The producer process of `kxbase print`: starts the printer, rasterises and compresses the
// pages row by row, fills bands into the ring, and reports.
#include "print_job.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <vector>

#include <kxbase/runtime/share_memory.h>

#include "band_ring.h"
#include "image_writers.h"
#include "progress.h"

extern char** environ;

namespace kxprint {

namespace {

volatile sig_atomic_t g_stop = 0;
void OnStop(int) {
    g_stop = 1;
}

int Fail(const std::string& message, int status = 1) {
    std::fprintf(stderr, "kxbase print: %s\n", message.c_str());
    return status;
}

std::string DescribeExit(int status) {
    if (WIFSIGNALED(status)) {
        const int sig = WTERMSIG(status);
        return "was killed by signal " + std::to_string(sig) + " (" + strsignal(sig) + ")";
    }
    if (WIFEXITED(status)) return "stopped with exit status " + std::to_string(WEXITSTATUS(status));
    return "stopped";
}

class Job {
public:
    explicit Job(const PrintOptions& o) : m_o(o) {}
    ~Job();
    int Run();

private:
    int Start(std::uint32_t rowBound);
    int Publish(const BandHeader& header);
    int WaitForSlot();
    int TakeAck(const Token& token);
    int PrinterLost(const char* when);

    const PrintOptions& m_o;
    std::string m_area;
    pid_t m_printer = -1;
    int m_tokenFd = -1, m_ackFd = -1;
    CShareMemoryServer m_server;
    std::uint32_t m_slotBytes = 0;
    std::vector<std::uint8_t> m_band;
    std::uint64_t m_published = 0, m_acked = 0;
    std::vector<std::uint32_t> m_rowsInSlot;  // rows of the band each slot holds
    std::uint64_t m_pageRowsDone = 0;
    std::uint32_t m_currentPage = 0, m_pageHeight = 0;
    ProgressBar m_progress;
    Summary m_sum;
};

Job::~Job() {
    if (m_printer > 0) {
        // Only reached on a failure path (a bad row, Ctrl-C): the printer may still run. End
        // it before closing the pipes, or it would report a vanished producer as well.
        ::kill(m_printer, SIGTERM);
        int status = 0;
        ::waitpid(m_printer, &status, 0);
    }
    if (m_tokenFd >= 0) ::close(m_tokenFd);
    if (m_ackFd >= 0) ::close(m_ackFd);
    m_server.DeleteMap();
}

int Job::PrinterLost(const char* when) {
    m_progress.Finish();
    int status = 0;
    std::string how = "stopped";
    if (::waitpid(m_printer, &status, 0) == m_printer) how = DescribeExit(status);
    m_printer = -1;
    return Fail("the printer process " + how + " " + when + "; the job is abandoned");
}

int Job::Start(std::uint32_t rowBound) {
    m_slotBytes = static_cast<std::uint32_t>(std::min<std::uint64_t>(
        (m_o.areaBytes > kControlBytes ? m_o.areaBytes - kControlBytes : 0) / m_o.slots,
        0xFFFF0000u));
    m_slotBytes &= ~7u;
    if (std::uint64_t{m_slotBytes} < sizeof(BandHeader) + sizeof(LineRecord) + rowBound)
        return Fail("a slot of " + std::to_string(m_slotBytes) + " bytes cannot hold one row (" +
                        std::to_string(sizeof(LineRecord) + rowBound) +
                        " bytes at worst): give a larger --area-size or fewer --slots",
                    2);
    const uid_t uid = ::getuid();
    m_area = m_o.area.empty() ? "kxbase-print-" + std::to_string(uid) : m_o.area;
    // A live area of that name belongs to a job that is still running: leave it alone. A
    // stale one (its producer died) refuses to open and is simply taken over below.
    {
        CShareMemoryClient probe;
        if (probe.OpenMap(m_area.c_str(), 4096))
            return Fail("the area '" + m_area +
                        "' is in use by another print job (give --area NAME)");
    }

    int tokens[2], acks[2];
    if (::pipe2(tokens, O_CLOEXEC) != 0) return Fail("cannot create a pipe");
    if (::pipe2(acks, O_CLOEXEC) != 0) {
        ::close(tokens[0]);
        ::close(tokens[1]);
        return Fail("cannot create a pipe");
    }
    // The printer is started before the area exists, so it cannot inherit the area's
    // descriptor: the producer alone is the area's server.
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, tokens[0], kTokenFd);
    posix_spawn_file_actions_adddup2(&actions, acks[1], kAckFd);
    std::vector<std::string> args = {"kxbase", "print", "--printer", m_area};
    if (!m_o.png.empty()) args.insert(args.end(), {"--png", m_o.png});
    if (!m_o.tiff.empty()) args.insert(args.end(), {"--tiff", m_o.tiff});
    if (!m_o.stall.empty()) args.insert(args.end(), {"--stall", m_o.stall});
    std::vector<char*> argv;
    for (std::string& a : args) argv.push_back(a.data());
    argv.push_back(nullptr);
    const int rc =
        posix_spawn(&m_printer, "/proc/self/exe", &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    ::close(tokens[0]);
    ::close(acks[1]);
    m_tokenFd = tokens[1];
    m_ackFd = acks[0];
    if (rc != 0) {
        m_printer = -1;
        return Fail(std::string("cannot start the printer process: ") + std::strerror(rc));
    }

    const std::uint64_t size = AreaBytes(m_o.slots, m_slotBytes);
    const auto window = static_cast<DWORD>(std::min<std::uint64_t>(size, 64u << 20));
    if (!m_server.CreateMap(m_area.c_str(), size, window))
        return Fail("cannot create the area '" + m_area + "': " + ChannelError(m_server));
    RingControl control;
    control.slotCount = m_o.slots;
    control.slotBytes = m_slotBytes;
    if (!m_server.WriteData(0, &control, sizeof control))
        return Fail("cannot write the area: " + ChannelError(m_server));
    // A band never holds more than bandRows rows, so a large slot need not be mirrored in
    // full on the heap.
    m_band.resize(static_cast<std::size_t>(std::min<std::uint64_t>(
        m_slotBytes,
        sizeof(BandHeader) + std::uint64_t{m_o.bandRows} * (sizeof(LineRecord) + rowBound))));
    m_rowsInSlot.assign(m_o.slots, 0);
    return 0;
}

int Job::TakeAck(const Token& token) {
    if (token.kind != TokenKind::Ack || token.seq != m_acked)
        return Fail("the printer answered out of turn");
    m_pageRowsDone += m_rowsInSlot[token.seq % m_o.slots];
    ++m_acked;
    m_progress.Show(m_currentPage, m_o.pages, m_pageRowsDone, m_pageHeight);
    return 0;
}

// Blocks until the oldest band is acknowledged when the ring is full, and takes any
// acknowledgement already waiting otherwise, so the progress bar keeps up.
int Job::WaitForSlot() {
    for (;;) {
        const bool full = m_published - m_acked >= m_o.slots;
        if (!full && m_published == m_acked) return 0;
        Token token;
        const auto t0 = Clock::now();
        const PipeResult r = ReadToken(m_ackFd, token, &g_stop, full ? -1 : 0);
        m_sum.producerWaitNs += Ns(t0, Clock::now());
        if (r == PipeResult::Ok) {
            if (const int rc = TakeAck(token)) return rc;
            continue;
        }
        if (r == PipeResult::Interrupted && !g_stop) return 0;  // nothing waiting yet
        if (r == PipeResult::Interrupted) return Fail("interrupted", 130);
        return PrinterLost("in the middle of the job");
    }
}

int Job::Publish(const BandHeader& header) {
    if (const int rc = WaitForSlot()) return rc;
    const auto slot = static_cast<std::uint32_t>(header.seq % m_o.slots);
    std::memcpy(m_band.data(), &header, sizeof header);
    const auto t0 = Clock::now();
    std::uint64_t published = header.seq + 1;
    if (!m_server.WriteData(SlotOffset(slot, m_slotBytes), m_band.data(),
                            static_cast<DWORD>(sizeof header + header.payloadBytes)) ||
        !m_server.WriteData(offsetof(RingControl, published), &published, sizeof published))
        return Fail("cannot write band " + std::to_string(header.seq) + ": " +
                    ChannelError(m_server));
    m_sum.transferNs += Ns(t0, Clock::now());
    m_rowsInSlot[slot] = header.rows;
    m_published = published;
    ++m_sum.bands;
    if (WriteToken(m_tokenFd, Token{TokenKind::Band, 0, header.seq}) != PipeResult::Ok)
        return PrinterLost("before the band was handed over");
    if (m_o.stall == "producer") {
        // Stall once the printer has the band, so that it is in the middle of the page.
        Token token;
        if (ReadToken(m_ackFd, token, &g_stop) != PipeResult::Ok || TakeAck(token) != 0) return 1;
        std::fprintf(stderr, "kxbase print: producer stalls in process %d (test hook)\n",
                     static_cast<int>(getpid()));
        for (;;) pause();
    }
    return 0;
}

int Job::Run() {
    const auto wall0 = Clock::now();
    const auto build0 = Clock::now();
    Page page(m_o.setup);
    if (!page.Ok()) return Fail(page.Error(), 2);
    LineEncoder encoder(page.Width(), page.Depth(), m_o.codec);
    m_sum.rasteriseNs += Ns(build0, Clock::now());
    if (const int rc = Start(encoder.StreamBound())) return rc;

    std::vector<std::uint8_t> row(static_cast<std::size_t>(page.Width()) *
                                  static_cast<std::size_t>(ExpandedBytesPerPixel(page.Depth())));
    for (std::uint32_t p = 0; p < m_o.pages; ++p) {
        m_currentPage = p;
        m_pageHeight = page.Height();
        m_pageRowsDone = 0;
        page.Rewind();
        BandHeader h;
        h.page = p;
        h.pages = m_o.pages;
        h.width = page.Width();
        h.height = page.Height();
        h.depth = static_cast<std::uint32_t>(page.Depth());
        h.codec = static_cast<std::uint32_t>(m_o.codec);
        h.dpiMilli = static_cast<std::uint32_t>(m_o.setup.dpi * 1000 + 0.5);
        std::uint32_t at = sizeof h;  // write position in m_band
        for (std::uint32_t y = 0; y < page.Height(); ++y) {
            if (g_stop) return Fail("interrupted", 130);
            const auto t0 = Clock::now();
            page.RasteriseRow(y, row.data());
            const auto t1 = Clock::now();
            LineRecord rec;
            if (!encoder.Encode(row.data(), m_band.data() + at + sizeof rec, rec.length, rec.crc))
                return Fail("row " + std::to_string(y) + " cannot be coded");
            if (m_o.corrupt && y == 0) rec.crc ^= 1;
            std::memcpy(m_band.data() + at, &rec, sizeof rec);
            at += static_cast<std::uint32_t>(sizeof rec) + rec.length;
            m_sum.compressNs += Ns(t1, Clock::now());
            m_sum.rasteriseNs += Ns(t0, t1);
            m_sum.packedBytes += encoder.PackedBytes();
            m_sum.streamBytes += rec.length;
            ++h.rows;
            const bool last = y + 1 == page.Height();
            if (last || h.rows == m_o.bandRows ||
                m_band.size() - at < sizeof(LineRecord) + encoder.StreamBound()) {
                h.seq = m_published;
                h.payloadBytes = at - static_cast<std::uint32_t>(sizeof h);
                if (const int rc = Publish(h)) return rc;
                h.firstRow = y + 1;
                h.rows = 0;
                at = sizeof h;
            }
        }
        // The page's bar ends when the printer has it all.
        while (m_pageRowsDone < m_pageHeight) {
            Token token;
            const PipeResult r = ReadToken(m_ackFd, token, &g_stop);
            if (r == PipeResult::Interrupted) return Fail("interrupted", 130);
            if (r != PipeResult::Ok) return PrinterLost("before the page was printed");
            if (const int rc = TakeAck(token)) return rc;
        }
        m_progress.Finish();
    }
    if (WriteToken(m_tokenFd, Token{TokenKind::End, 0, m_published}) != PipeResult::Ok)
        return PrinterLost("at the end of the job");
    Token done;
    const PipeResult r = ReadToken(m_ackFd, done, &g_stop);
    if (r == PipeResult::Interrupted) return Fail("interrupted", 130);
    if (r != PipeResult::Ok || done.kind != TokenKind::Done)
        return PrinterLost("while finishing the files");
    int status = 0;
    ::waitpid(m_printer, &status, 0);
    m_printer = -1;
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
        return Fail("the printer process " + DescribeExit(status));
    RingControl control;
    if (!m_server.ReadData(0, &control, sizeof control))
        return Fail("cannot read the printer's figures: " + ChannelError(m_server));
    m_server.DeleteMap();
    m_sum.wallNs = Ns(wall0, Clock::now());

    const PrinterFigures& f = control.figures;
    m_sum.transferNs += f.transferNs;
    m_sum.decompressNs = f.decompressNs;
    m_sum.writeNs = f.writeNs;
    m_sum.tiffBytes = f.tiffStripBytes;
    char page_text[160];
    std::snprintf(page_text, sizeof page_text,
                  "%s (%.1f x %.1f mm) at %.6g dpi, turned %.6g degrees", m_o.sizeText.c_str(),
                  m_o.setup.widthMm, m_o.setup.heightMm, m_o.setup.dpi, m_o.setup.angleDeg);
    m_sum.page = page_text;
    m_sum.width = page.Width();
    m_sum.height = page.Height();
    m_sum.pages = m_o.pages;
    m_sum.depth = page.Depth();
    m_sum.codec = CodecName(m_o.codec, page.Depth());
    m_sum.slots = m_o.slots;
    m_sum.slotBytes = m_slotBytes;
    std::string outputs;
    if (!m_o.png.empty())
        outputs = m_o.pages == 1 ? m_o.png
                                 : PagePath(m_o.png, 0, m_o.pages) + " .. " +
                                       PagePath(m_o.png, m_o.pages - 1, m_o.pages);
    if (!m_o.tiff.empty()) outputs += (outputs.empty() ? "" : ", ") + m_o.tiff;
    m_sum.outputs = outputs;
    PrintSummary(stdout, m_sum);
    return 0;
}

}  // namespace

int RunPrint(const PrintOptions& options) {
    struct sigaction sa {};
    sa.sa_handler = OnStop;
    sigaction(SIGINT, &sa, nullptr);
    sigaction(SIGTERM, &sa, nullptr);
    signal(SIGPIPE, SIG_IGN);
    Job job(options);
    return job.Run();
}

}  // namespace kxprint
