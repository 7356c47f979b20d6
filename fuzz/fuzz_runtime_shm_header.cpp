// A client opening areas whose header and size come from the input, then running transfers
// at offsets and lengths from the input. Nothing may fault: a header that does not describe
// the object must be refused, and transfers must stay inside the area.
//
// Input: [0,16) header bytes at object offset 0; [16,20) object size (capped at 1 MB);
// [20,24) client window size; [24] bit 0: a live server holds the area; then 8-byte
// operations: offset (u32, data part), length (u16), direction (u8), unused (u8).
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <string>

#include <kxbase/runtime/share_memory.h>

#include "platform/shm_p.h"

namespace {

std::uint32_t Le32(const std::uint8_t* p) {
    return std::uint32_t{p[0]} | std::uint32_t{p[1]} << 8 | std::uint32_t{p[2]} << 16 |
           std::uint32_t{p[3]} << 24;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 25) return 0;
    static const std::string name = "kxfuzz-shm-" + std::to_string(getpid());
    static const std::string object = kxbase::detail::ShmObjectName(name);
    const std::uint32_t objectSize = Le32(data + 16) % (1u << 20);
    const std::uint32_t window = Le32(data + 20);
    const bool live = (data[24] & 1) != 0;

    const int fd = shm_open(object.c_str(), O_RDWR | O_CREAT | O_TRUNC, 0600);
    if (fd < 0) return 0;
    if (ftruncate(fd, objectSize) == 0 && objectSize >= 16) (void)!pwrite(fd, data, 16, 0);
    if (live) {
        // Hold the same mark a server holds, so the client takes the area as live.
        struct flock mark {};
        mark.l_type = F_RDLCK;
        mark.l_whence = SEEK_SET;
        mark.l_len = 1;
        fcntl(fd, F_OFD_SETLK, &mark);
    }
    static std::uint8_t buffer[65536];
    {
        CShareMemoryClient client;
        if (client.OpenMap(name.c_str(), window)) {
            const UINT64 dataSize = client.GetMapSize();
            for (std::size_t at = 25; at + 8 <= size; at += 8) {
                const std::uint32_t offset = Le32(data + at);
                const DWORD length = std::uint32_t{data[at + 4]} | std::uint32_t{data[at + 5]} << 8;
                const int ok = data[at + 6] & 1 ? client.WriteData(offset, buffer, length)
                                                : client.ReadData(offset, buffer, length);
                if (ok && offset >= dataSize) __builtin_trap();  // must refuse past the end
            }
        }
        CString text;
        client.GetLastErrorInfo(text);
    }
    close(fd);
    shm_unlink(object.c_str());
    return 0;
}
