// Second process of the two-process channel test. Usage:
//   kxbase_shm_peer NAME "WINDOW CHUNK DATASIZE READ_FD WRITE_FD"
// Opens the area as a client and plays writer 2 of shmtest::Side against the test process;
// exits 0 only if every byte the test process wrote matched. On Windows READ_FD and WRITE_FD
// are the values of inherited pipe handles.
//   kxbase_shm_peer --crash NAME
// Creates the area NAME, writes to it and ends the process without closing it (exit 0 when
// the area was made), as a server that crashes would.
#include <cstdio>
#include <cstdlib>

#include "shm_pattern.h"

#if defined(_WIN32)
#include <fcntl.h>
#endif

int main(int argc, char** argv) {
    if (argc == 3 && std::string(argv[1]) == "--crash") {
        auto* server = new CShareMemoryServer;  // never deleted: the process just ends
        BYTE b = 0x5A;
        std::_Exit(server->CreateMap(argv[2], 1 << 20, 0) && server->WriteData(0, &b, 1) ? 0 : 1);
    }
    unsigned window = 0, chunk = 0;
    unsigned long long size = 0;
    long long inValue = -1, outValue = -1;
    if (argc != 3 || std::sscanf(argv[2], "%u %u %llu %lld %lld", &window, &chunk, &size, &inValue,
                                 &outValue) != 5)
        return 2;
#if defined(_WIN32)
    const int in = _open_osfhandle(static_cast<intptr_t>(inValue), _O_RDONLY);
    const int out = _open_osfhandle(static_cast<intptr_t>(outValue), 0);
#else
    const int in = static_cast<int>(inValue), out = static_cast<int>(outValue);
#endif
    CShareMemoryClient client;
    std::string error;
    if (!client.OpenMap(argv[1], window))
        error = "open failed: " + shmtest::ErrorOf(client);
    else if (client.GetMapSize() != size)
        error = "data size " + std::to_string(client.GetMapSize());
    else
        error = shmtest::Side(client, size, 2, chunk, in, out);
    if (error.empty()) return 0;
    std::fprintf(stderr, "peer: %s\n", error.c_str());
    return 1;
}
