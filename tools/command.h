// Subcommand registry of the kxbase tool. A command file defines
//   static kxtool::Command cmd{"name", "one-line help", [](CLI::App& sub) { ... return run; }};
// where the setup function declares the subcommand's options and returns the function to
// run when the subcommand is chosen (its result is the exit status).
#pragma once

#include <functional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace kxtool {

using Run = std::function<int()>;
using Setup = std::function<Run(CLI::App& sub)>;

struct Command {
    Command(std::string name, std::string help, Setup setup);
};

struct Entry {
    std::string name, help;
    Setup setup;
};
std::vector<Entry>& commands();

}  // namespace kxtool
