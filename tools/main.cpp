// kxbase: the command-line face of kxBaseCommon. See `kxbase --help`.
#include <algorithm>
#include <csignal>
#include <iostream>
#include <map>
#include <memory>

#include <kxbase/version.h>

#include "command.h"

namespace kxtool {

std::vector<Entry>& commands() {
    static std::vector<Entry> list;
    return list;
}

Command::Command(std::string name, std::string help, Setup setup) {
    commands().push_back({std::move(name), std::move(help), std::move(setup)});
}

}  // namespace kxtool

int main(int argc, char** argv) {
    // Past the file-size limit (RLIMIT_FSIZE) the kernel would end the process with SIGXFSZ
    // and no word; ignored, the write fails with EFBIG and the command reports it. (Windows
    // has no such signal.)
#ifdef SIGXFSZ
    std::signal(SIGXFSZ, SIG_IGN);
#endif
    CLI::App app{"kxbase " KXBASE_VERSION_STRING " - tools over the kxBaseCommon library"};
    app.require_subcommand(1);
    app.set_version_flag("--version", KXBASE_VERSION_STRING);

    auto& list = kxtool::commands();
    std::sort(list.begin(), list.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
    std::map<CLI::App*, kxtool::Run> runs;
    for (const auto& c : list) {
        CLI::App* sub = app.add_subcommand(c.name, c.help);
        runs[sub] = c.setup(*sub);
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        // Help and version exit 0; every usage error exits 2 with CLI11's message.
        return app.exit(e) == 0 ? 0 : 2;
    }
    for (CLI::App* sub : app.get_subcommands()) {
        const auto it = runs.find(sub);
        if (it != runs.end() && it->second) return it->second();
    }
    return 0;
}
