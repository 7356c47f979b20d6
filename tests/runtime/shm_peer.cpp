// Second process of the two-process channel test. Usage:
//   kxbase_shm_peer NAME WINDOW CHUNK DATASIZE READ_FD WRITE_FD
// Opens the area as a client, writes its own ranges (writer 2) while the test process writes
// its ranges, reports "w" on WRITE_FD, waits for the test's "w" on READ_FD, checks the test's
// ranges (writer 1), and exits 0 only if every byte matched.
#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>

#include "shm_pattern.h"

int main(int argc, char** argv) {
    if (argc != 7) return 2;
    const char* name = argv[1];
    const auto window = static_cast<DWORD>(std::strtoul(argv[2], nullptr, 10));
    const auto chunk = static_cast<std::uint32_t>(std::strtoul(argv[3], nullptr, 10));
    const std::uint64_t size = std::strtoull(argv[4], nullptr, 10);
    const int in = std::atoi(argv[5]), out = std::atoi(argv[6]);

    CShareMemoryClient client;
    if (!client.OpenMap(name, window)) {
        CString e;
        client.GetLastErrorInfo(e);
        std::fprintf(stderr, "peer: open failed: %s\n", e.GetString());
        return 3;
    }
    if (client.GetMapSize() != size) {
        std::fprintf(stderr, "peer: data size %llu, expected %llu\n",
                     static_cast<unsigned long long>(client.GetMapSize()),
                     static_cast<unsigned long long>(size));
        return 4;
    }
    std::string err = shmtest::Exchange(client, shmtest::Plan(size, 2, 300000), 2, chunk, true);
    if (!err.empty()) {
        std::fprintf(stderr, "peer: %s\n", err.c_str());
        return 5;
    }
    char c = 'w';
    if (write(out, &c, 1) != 1 || read(in, &c, 1) != 1 || c != 'w') return 6;
    err = shmtest::Exchange(client, shmtest::Plan(size, 1, 300000), 1, chunk, false);
    if (!err.empty()) {
        std::fprintf(stderr, "peer: %s\n", err.c_str());
        return 7;
    }
    return 0;
}
