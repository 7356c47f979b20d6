// Shared memory between two processes. Run without arguments: this process becomes the
// server, creates the area, writes a request into it and starts a second copy of itself as
// the client, which opens the area by name, reads the request and writes its answer behind
// it. The area carries no lock: here the server simply waits for the client to exit.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include <kxbase/runtime.h>

namespace {

constexpr UINT64 kRequestAt = 0;
constexpr UINT64 kAnswerAt = 1 << 20;  // 1 MiB into the data part
constexpr DWORD kTextSize = 64;

int Client(const char* name) {
    CShareMemoryClient client;
    CString error;
    if (!client.OpenMap(name)) {
        client.GetLastErrorInfo(error);
        std::fprintf(stderr, "client: %s\n", error.GetString());
        return 1;
    }
    char request[kTextSize] = {};
    if (!client.ReadData(kRequestAt, request, kTextSize)) return 1;
    std::printf("client read \"%s\" from an area of %llu bytes\n", request,
                static_cast<unsigned long long>(client.GetMapSize()));
    char answer[kTextSize] = {};
    std::snprintf(answer, sizeof answer, "%zu characters", std::strlen(request));
    return client.WriteData(kAnswerAt, answer, kTextSize) ? 0 : 1;
}

int Server(const char* self) {
    // A name of this run only, so two runs at once do not meet.
    const std::string name =
        "kxbase-example-" +
        std::to_string(std::chrono::steady_clock::now().time_since_epoch().count());

    CShareMemoryServer server;
    CString error;
    if (!server.CreateMap(name.c_str(), 4 << 20)) {  // 4 MiB of data; pages cost only when used
        server.GetLastErrorInfo(error);
        std::fprintf(stderr, "server: %s\n", error.GetString());
        return 1;
    }
    char request[kTextSize] = "hello from the server";
    if (!server.WriteData(kRequestAt, request, kTextSize)) return 1;

    const std::string command = "\"" + std::string(self) + "\" client " + name;
    if (std::system(command.c_str()) != 0) return 1;

    char answer[kTextSize] = {};
    if (!server.ReadData(kAnswerAt, answer, kTextSize)) return 1;
    std::printf("server read the answer \"%s\"\n", answer);
    // The destructor (or DeleteMap) removes the name.
    return std::strcmp(answer, "21 characters") == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 3 && std::strcmp(argv[1], "client") == 0) return Client(argv[2]);
    return Server(argv[0]);
}
