// kxbase_conformance: runs golden vectors against the library.
//
//   kxbase_conformance [--vectors DIR]... [--families a,b] [--list] [FILE.json ...]
//
// --list prints every bound operation name. --vectors may be given more than once.
//
// Prints one line per family, "FAMILY: N passed, M failed, K unsupported", then the first
// five failures. Exits 1 when any vector of a family that was run fails or is unsupported.
// --families limits the run to the families of the subsystems a build holds.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "conformance.h"
#ifdef KXBASE_ALLOC_SWEEP
#include "alloc_sweep.h"
#endif

namespace fs = std::filesystem;
using conf::json;

namespace {

// disputed.txt lines: "family | index-or-why | reason"; '#' starts a comment.
using Disputed = std::map<std::pair<std::string, std::string>, std::string>;

std::string Trim(std::string s) {
    s.erase(0, s.find_first_not_of(" \t"));
    s.erase(s.find_last_not_of(" \t\r") + 1);
    return s;
}

Disputed LoadDisputed(const fs::path& file) {
    Disputed d;
    std::ifstream in(file);
    for (std::string line; std::getline(in, line);) {
        const auto a = line.find('|'), b = line.find('|', a + 1);
        if (line.empty() || line[0] == '#' || b == std::string::npos) continue;
        d[{Trim(line.substr(0, a)), Trim(line.substr(a + 1, b - a - 1))}] =
            Trim(line.substr(b + 1));
    }
    return d;
}

const std::string* FindDisputed(const Disputed& d, const std::string& family, std::size_t index,
                                const std::string& why) {
    for (const auto& key :
         {std::make_pair(family, std::to_string(index)), std::make_pair(family, why)})
        if (const auto it = d.find(key); it != d.end()) return &it->second;
    return nullptr;
}

struct Tally {
    int passed = 0, failed = 0, unsupported = 0, disputed = 0;
    std::vector<std::string> notes;
};

json run_one(const json& v, std::string& problem) {
    const std::string fn = v.at("fn").get<std::string>();
    const conf::Handler* h = conf::find_handler(fn);
    if (!h) throw conf::Unsupported("no handler for " + fn);
    try {
        return (*h)(v.at("args"));
    } catch (const std::invalid_argument&) {
        return json{{"exception", "invalid_argument"}};
    } catch (const conf::Unsupported&) {
        throw;
    } catch (const std::exception& e) {
        problem = std::string("handler threw: ") + e.what();
        return json();
    }
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<fs::path> dirs;
    std::set<std::string> families;
    std::vector<fs::path> files;
    const std::size_t show = 5;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        auto value = [&]() -> std::string {
            if (i + 1 >= argc) {
                std::cerr << arg << " needs a value\n";
                std::exit(2);
            }
            return argv[++i];
        };
        if (arg == "--vectors") {
            dirs.emplace_back(value());
        } else if (arg == "--families") {
            std::stringstream ss(value());
            for (std::string f; std::getline(ss, f, ',');)
                if (!f.empty()) families.insert(f);
        } else if (arg == "--list") {
            for (const auto& fn : conf::handler_names()) std::cout << fn << "\n";
            return 0;
#ifdef KXBASE_ALLOC_SWEEP
        } else if (arg == "--all-swept") {
            conf::sweep::require_all_swept(value());
#endif
        } else {
            files.emplace_back(arg);
        }
    }
    if (files.empty()) {
        if (dirs.empty()) dirs.emplace_back(KXBASE_VECTOR_DIR);
        for (const auto& dir : dirs) {
            if (!fs::is_directory(dir)) {
                std::cerr << "no vector folder " << dir << "\n";
                return 2;
            }
            const std::size_t first = files.size();
            for (const auto& e : fs::directory_iterator(dir))
                if (e.path().extension() == ".json") files.push_back(e.path());
            std::sort(files.begin() + static_cast<std::ptrdiff_t>(first), files.end());
        }
    }
    const Disputed disputed = LoadDisputed(KXBASE_DISPUTED_FILE);
#ifdef KXBASE_ALLOC_SWEEP
    conf::sweep::load_propagates(KXBASE_PROPAGATES_FILE);
#endif

    std::map<std::string, Tally> tallies;
    std::set<std::string> seen;
    for (const auto& file : files) {
        json doc;
        try {
            std::ifstream in(file);
            doc = json::parse(in);
        } catch (const std::exception& e) {
            std::cerr << file << ": " << e.what() << "\n";
            return 2;
        }
        const std::string family = doc.value("family", file.stem().string());
        if (!families.empty() && !families.count(family)) continue;
        seen.insert(family);
        Tally& t = tallies[family];
        const auto& vectors = doc.at("vectors");
        for (std::size_t i = 0; i < vectors.size(); ++i) {
            const json& v = vectors[i];
            const std::string why = v.value("why", "");
            std::string problem, mismatch;
            json got;
            try {
                got = run_one(v, problem);
            } catch (const conf::Unsupported& e) {
                ++t.unsupported;
                if (t.notes.size() < show)
                    t.notes.push_back("  #" + std::to_string(i) + " unsupported: " + e.what());
                continue;
            }
#ifdef KXBASE_ALLOC_SWEEP
            if (std::string s; problem.empty() && !(s = conf::sweep::vector(v, got)).empty()) {
                ++t.failed;
                if (t.notes.size() < show)
                    t.notes.push_back("  #" + std::to_string(i) + " " +
                                      v.at("fn").get<std::string>() + ": " + s);
                continue;
            }
#endif
            // An argument set without a result (sweep_args/) is there for the allocation
            // sweep, which compares every failed run with the plain one.
            if (!v.contains("expect")) {
#ifdef KXBASE_ALLOC_SWEEP
                ++t.passed;
#else
                ++t.unsupported;
                if (t.notes.size() < show)
                    t.notes.push_back("  #" + std::to_string(i) + " has no expected result");
#endif
                continue;
            }
            const json* tol = v.contains("tol") ? &v["tol"] : nullptr;
            const bool ok =
                problem.empty() &&
                conf::matches(got, v.at("expect"), v.value("cmp", "exact"), tol, mismatch);
            if (const std::string* reason = FindDisputed(disputed, family, i, why)) {
                ++t.disputed;
                t.notes.push_back("  #" + std::to_string(i) + " disputed (" +
                                  (ok ? "passes" : "differs") + "): " + *reason);
                continue;
            }
            if (ok) {
                ++t.passed;
                continue;
            }
            ++t.failed;
            if (t.notes.size() < show) {
                t.notes.push_back("  #" + std::to_string(i) + " " + v.at("fn").get<std::string>() +
                                  " (" + why + ")\n      args " +
                                  v.at("args").dump().substr(0, 300) + "\n      " +
                                  (problem.empty() ? mismatch : problem).substr(0, 600));
            }
        }
    }
    // A folder of extra vectors need not hold every family that a build selects.
    for (const auto& f : families)
        if (!seen.count(f)) std::cout << f << ": no vectors in this folder\n";

    bool bad = false;
    for (const auto& [family, t] : tallies) {
        std::cout << family << ": " << t.passed << " passed, " << t.failed << " failed, "
                  << t.unsupported << " unsupported";
        if (t.disputed) std::cout << ", " << t.disputed << " disputed";
        std::cout << "\n";
        for (const auto& n : t.notes) std::cout << n << "\n";
        bad = bad || t.failed || t.unsupported;
    }
#ifdef KXBASE_ALLOC_SWEEP
    if (!conf::sweep::report()) bad = true;
#endif
    return bad ? 1 : 0;
}
