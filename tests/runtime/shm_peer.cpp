// Second process of the two-process channel test. Usage:
//   kxbase_shm_peer NAME "WINDOW CHUNK DATASIZE READ_FD WRITE_FD"
// Opens the area as a client and plays writer 2 of shmtest::Side against the test process;
// exits 0 only if every byte the test process wrote matched.
#include <cstdio>

#include "shm_pattern.h"

int main(int argc, char** argv) {
    unsigned window = 0, chunk = 0;
    unsigned long long size = 0;
    int in = -1, out = -1;
    if (argc != 3 ||
        std::sscanf(argv[2], "%u %u %llu %d %d", &window, &chunk, &size, &in, &out) != 5)
        return 2;
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
