// The band ring: how the two processes of `kxbase print` hand a page over through one shared
// memory area without any lock.
//
// Roles. The producer (the process the user started) creates the area as its server; the
// printer (the same tool, started by the producer with `print --printer AREA`) opens it as a
// client. Besides the area they share two pipes: tokens go from the producer to the printer
// on one, acknowledgements come back on the other.
//
// Area layout (data offsets, little-endian as both processes run on one machine):
//   0      RingControl (kControlBytes): magic, slot count and size, the two sequence
//          counters, and the printer's figures for the summary
//   4096   slot 0, then slot 1 ... : kControlBytes + i * slotBytes
// A slot holds one band: a BandHeader, then its rows one after the other, each a LineRecord
// (stream length and CRC-32 of the packed row) followed by the row's stream.
//
// Protocol. Bands are numbered 0, 1, 2 ... (the sequence number); band s lives in slot
// s % slotCount. The producer owns a slot from the moment the printer acknowledged band
// s - slotCount until it publishes band s; the printer owns it from the band's token until
// it acknowledges it. So at most slotCount bands are in flight and a page of any size passes
// through the ring, each slot being reused every slotCount bands.
//   producer: wait (reading acks) until fewer than slotCount bands are unacknowledged;
//             copy header and rows into slot s % slotCount; store published = s + 1 in the
//             control block; write the token {Band, s} to the pipe.
//   printer:  read a token; check it names the next band and that the control block's
//             published counter and the slot header's sequence number agree with it; read
//             and decode the rows; store consumed = s + 1; write the ack {Ack, s}.
//   end:      after the last band the producer writes {End}; the printer closes its files,
//             stores its figures in the control block and answers {Done}.
// Pages follow each other in the same sequence: a band whose first row is 0 starts a page,
// and the page ends with the band that reaches its height.
// The area is only ever touched through the channel's copies (WriteData/ReadData), which hand
// out no pointers, so there is nothing to place an atomic on; the ordering comes from the
// pipe instead. write(2) on a pipe happens-before the read(2) that returns those bytes (the
// kernel takes the pipe's lock on both sides), so everything one process copied into the
// area before writing a token is visible to the other once it has read the token: the token
// is the release, reading it the acquire. The sequence numbers stored in the area are the
// check that both sides agree: a slot whose header carries another number than the token is
// a protocol fault and ends the job.
//
// Wake-up and liveness. Each side sleeps in poll(2) on its pipe with a 100 ms tick (to see
// a Ctrl-C). When the other process dies, the kernel closes its ends: the printer reads end
// of file, the producer sees POLLHUP or EPIPE; either reports it within milliseconds. The
// producer then reaps the printer (waitpid) and deletes the area; a printer whose producer
// died takes the stale area over as a server and deletes it, so no area is left behind.
#pragma once

#include <cstdint>
#include <string>

#include <kxbase/runtime/share_memory.h>

namespace kxprint {

constexpr std::uint64_t kRingMagic = 0x31544E4952505858ull;  // "XXPRINT1"
constexpr std::uint32_t kControlBytes = 4096;

/// Figures the printer leaves in the control block for the producer's summary.
struct PrinterFigures {
    std::uint64_t transferNs = 0, decompressNs = 0, writeNs = 0;
    std::uint64_t rows = 0, pages = 0;
    std::uint64_t tiffStripBytes = 0;  ///< bytes of LZW strips written to the TIFF
};

struct RingControl {
    std::uint64_t magic = kRingMagic;
    std::uint32_t slotCount = 0, slotBytes = 0;
    std::uint64_t published = 0;  ///< bands the producer has made available
    std::uint64_t consumed = 0;   ///< bands the printer has finished with
    PrinterFigures figures;
};
static_assert(sizeof(RingControl) <= kControlBytes);

struct BandHeader {
    std::uint64_t seq = 0;
    std::uint32_t page = 0, pages = 0;  ///< page index from 0, and the job's page count
    std::uint32_t width = 0, height = 0, depth = 0, codec = 0;
    std::uint32_t dpiMilli = 0;  ///< resolution in thousandths of a DPI (for the TIFF tags)
    std::uint32_t firstRow = 0, rows = 0;
    std::uint32_t payloadBytes = 0;  ///< bytes of line records after the header
};

struct LineRecord {
    std::uint32_t length = 0;  ///< stream bytes that follow
    std::uint32_t crc = 0;     ///< CRC-32 of the packed row
};

enum class TokenKind : std::uint32_t { Band = 1, End = 2, Ack = 3, Done = 4 };
struct Token {
    TokenKind kind = TokenKind::Band;
    std::uint32_t reserved = 0;
    std::uint64_t seq = 0;
};
static_assert(sizeof(Token) == 16);  // far below PIPE_BUF: a token is written atomically

inline std::uint64_t SlotOffset(std::uint32_t slot, std::uint32_t slotBytes) {
    return kControlBytes + std::uint64_t{slot} * slotBytes;
}
/// Data size of an area with `slots` slots of `slotBytes` bytes.
inline std::uint64_t AreaBytes(std::uint32_t slots, std::uint32_t slotBytes) {
    return SlotOffset(slots, slotBytes);
}

enum class PipeResult { Ok, Closed, Interrupted, Failed };

/// Writes one token; Closed when the reader is gone (EPIPE; SIGPIPE must be ignored).
PipeResult WriteToken(int fd, const Token& token);
/// Waits for one token. Closed on end of file or a hang-up, Interrupted when *stop becomes
/// true while waiting (checked every 100 ms), Failed on a short or failed read.
/// timeoutMs < 0 waits for ever; 0 only looks (Interrupted when nothing is there).
PipeResult ReadToken(int fd, Token& token, const volatile int* stop, int timeoutMs = -1);

/// The channel's last error on one line.
std::string ChannelError(CShareMemoryBase& area);

}  // namespace kxprint
