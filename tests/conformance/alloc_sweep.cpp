// The counting allocation hook and the sweep driver (see alloc_sweep.h).
//
// The hook replaces every form of the global operator new and delete. The library allocates
// only through operator new (its arrays, strings and codec results), so this one hook reaches
// every allocation it makes; it calls malloc/realloc nowhere. Allocations are counted only
// inside a conf::LibraryCall window, so the n-th counted allocation is the n-th one the
// library itself makes for the vector.
#include "alloc_sweep.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <map>
#include <new>
#include <set>

namespace {

std::int64_t g_count = 0;    // allocations seen inside the window in this run
std::int64_t g_failAt = -1;  // the one to fail; -1: none
bool g_hit = false;          // the failure was injected in this run

bool Inject() {
    if (conf::library_depth <= 0) return false;
    if (g_count++ != g_failAt) return false;
    g_hit = true;
    return true;
}

void* Alloc(std::size_t n) {
    return Inject() ? nullptr : std::malloc(n ? n : 1);
}

void* AllocAligned(std::size_t n, std::align_val_t a) {
    if (Inject()) return nullptr;
    std::size_t align = static_cast<std::size_t>(a);
    if (align < sizeof(void*)) align = sizeof(void*);
    void* p = nullptr;
    return posix_memalign(&p, align, n ? n : 1) == 0 ? p : nullptr;
}

void* OrThrow(void* p) {
    if (!p) throw std::bad_alloc();
    return p;
}

}  // namespace

void* operator new(std::size_t n) {
    return OrThrow(Alloc(n));
}
void* operator new[](std::size_t n) {
    return OrThrow(Alloc(n));
}
void* operator new(std::size_t n, const std::nothrow_t&) noexcept {
    return Alloc(n);
}
void* operator new[](std::size_t n, const std::nothrow_t&) noexcept {
    return Alloc(n);
}
void* operator new(std::size_t n, std::align_val_t a) {
    return OrThrow(AllocAligned(n, a));
}
void* operator new[](std::size_t n, std::align_val_t a) {
    return OrThrow(AllocAligned(n, a));
}
void* operator new(std::size_t n, std::align_val_t a, const std::nothrow_t&) noexcept {
    return AllocAligned(n, a);
}
void* operator new[](std::size_t n, std::align_val_t a, const std::nothrow_t&) noexcept {
    return AllocAligned(n, a);
}
void operator delete(void* p) noexcept {
    std::free(p);
}
void operator delete[](void* p) noexcept {
    std::free(p);
}
void operator delete(void* p, std::size_t) noexcept {
    std::free(p);
}
void operator delete[](void* p, std::size_t) noexcept {
    std::free(p);
}
void operator delete(void* p, const std::nothrow_t&) noexcept {
    std::free(p);
}
void operator delete[](void* p, const std::nothrow_t&) noexcept {
    std::free(p);
}
void operator delete(void* p, std::align_val_t) noexcept {
    std::free(p);
}
void operator delete[](void* p, std::align_val_t) noexcept {
    std::free(p);
}
void operator delete(void* p, std::size_t, std::align_val_t) noexcept {
    std::free(p);
}
void operator delete[](void* p, std::size_t, std::align_val_t) noexcept {
    std::free(p);
}
void operator delete(void* p, std::align_val_t, const std::nothrow_t&) noexcept {
    std::free(p);
}
void operator delete[](void* p, std::align_val_t, const std::nothrow_t&) noexcept {
    std::free(p);
}

namespace conf::sweep {
namespace {

// Vectors swept per operation: all of them (the whole sweep takes seconds).
// KXBASE_SWEEP_VECTORS=N limits it to the first N of each operation, for a quicker look.
int VectorsPerOp() {
    static const int n = [] {
        const char* e = std::getenv("KXBASE_SWEEP_VECTORS");
        const int v = e ? std::atoi(e) : 0;
        return v > 0 ? v : INT32_MAX;
    }();
    return n;
}
// A vector needing more allocations than this is a fault of its own (a runaway loop).
constexpr std::int64_t kMaxPoints = 20000;

struct OpStats {
    int vectors = 0;
    std::int64_t points = 0;  // allocation points failed, over the swept vectors
    std::int64_t propagated = 0, reported = 0, recovered = 0;
};

std::map<std::string, OpStats> g_ops;
std::map<std::string, std::string> g_propagates;
std::map<std::string, std::string> g_unswept;  // require_all_swept's list
bool g_requireAll = false;

std::string Trim(std::string s) {
    s.erase(0, s.find_first_not_of(" \t"));
    s.erase(s.find_last_not_of(" \t\r") + 1);
    return s;
}

bool IsZero(const json& v) {
    return v.is_null() || (v.is_boolean() && !v.get<bool>()) ||
           (v.is_number() && v.get<double>() == 0.0);
}

bool IsEmpty(const json& v) {
    return v.is_null() || (v.is_array() && v.empty()) ||
           (v.is_string() && v.get<std::string>().empty());
}

// A reported failure: a 0/false/null result, or a null or emptied output (array, bytes).
bool ReportsFailure(const json& got) {
    if (got.contains("value") && IsZero(got["value"])) return true;
    for (const auto& item : got.items())
        if (item.key() != "value" && IsEmpty(item.value())) return true;
    return false;
}

// Reads "fn | why" lines; '#' starts a comment.
std::map<std::string, std::string> LoadTable(const std::string& file) {
    std::ifstream in(file);
    if (!in) {
        std::cerr << "cannot read " << file << "\n";
        std::exit(2);
    }
    std::map<std::string, std::string> table;
    for (std::string line; std::getline(in, line);) {
        const auto bar = line.find('|');
        if (line.empty() || line[0] == '#' || bar == std::string::npos) continue;
        table[Trim(line.substr(0, bar))] = Trim(line.substr(bar + 1));
    }
    return table;
}

// The coverage of the bound operations: every one swept or listed with its reason. Returns
// false, after saying which, when one is neither, or when the unswept list is stale.
bool CheckAllSwept() {
    std::set<std::string> bound;
    int swept = 0, listed = 0, propagating = 0;
    std::string gaps, stale;
    for (const auto& fn : handler_names()) {
        bound.insert(fn);
        const auto it = g_ops.find(fn);
        const bool wasSwept = it != g_ops.end() && it->second.vectors > 0;
        if (wasSwept) ++swept;
        if (g_unswept.count(fn)) {
            if (wasSwept) stale += "\n    " + fn + " (listed as unswept, but swept)";
            ++listed;
        } else if (!wasSwept) {
            if (g_propagates.count(fn))
                ++propagating;
            else
                gaps += "\n    " + fn;
        }
    }
    for (const auto& [fn, why] : g_unswept)
        if (!bound.count(fn)) stale += "\n    " + fn + " (listed as unswept, but not bound)";
    std::cout << "sweep coverage: " << bound.size() << " bound operations, " << swept << " swept, "
              << listed << " listed unswept, " << propagating << " propagating without a vector\n";
    if (!gaps.empty())
        std::cout << "  bound, but neither swept nor listed with a reason:" << gaps << "\n";
    if (!stale.empty()) std::cout << "  stale entries of the unswept list:" << stale << "\n";
    return gaps.empty() && stale.empty();
}

}  // namespace

void load_propagates(const std::string& file) {
    g_propagates = LoadTable(file);
}

void require_all_swept(const std::string& file) {
    g_unswept = LoadTable(file);
    g_requireAll = true;
}

std::string vector(const json& v, const json& baseline) {
    const std::string fn = v.at("fn").get<std::string>();
    const Handler* h = find_handler(fn);
    OpStats& s = g_ops[fn];
    if (!h || s.vectors >= VectorsPerOp()) return {};
    ++s.vectors;
    const bool mayPropagate = g_propagates.count(fn) != 0;
    const std::string want = baseline.dump();
    for (std::int64_t n = 0;; ++n) {
        if (n > kMaxPoints)
            return "sweep: more than " + std::to_string(kMaxPoints) + " allocations";
        g_count = 0;
        g_failAt = n;
        g_hit = false;
        bool badAlloc = false;
        std::string other;
        json got;
        try {
            got = (*h)(v.at("args"));
        } catch (const std::bad_alloc&) {
            badAlloc = true;
        } catch (const std::invalid_argument&) {
            got = json{{"exception", "invalid_argument"}};
        } catch (const std::exception& e) {
            other = e.what();
        }
        g_failAt = -1;
        const std::string at = "sweep: allocation " + std::to_string(n) + ": ";
        if (!other.empty()) return at + "threw " + other;
        if (!g_hit) {
            // Past the last allocation: the run is a plain one and must give the plain result.
            if (badAlloc) return at + "std::bad_alloc without an injected failure";
            if (got.dump() != want) return at + "completed with " + got.dump().substr(0, 200);
            s.points += n;
            return {};
        }
        if (badAlloc) {
            if (!mayPropagate) return at + "std::bad_alloc escaped the library";
            ++s.propagated;
        } else if (got.dump() == want) {
            ++s.recovered;
        } else if (ReportsFailure(got)) {
            ++s.reported;
        } else {
            return at + "result is neither the full one nor a reported failure: " +
                   got.dump().substr(0, 300);
        }
    }
}

bool report() {
    std::int64_t points = 0, propagated = 0, reported = 0, recovered = 0;
    int vectors = 0, allocating = 0;
    for (const auto& [fn, s] : g_ops) {
        vectors += s.vectors;
        points += s.points;
        propagated += s.propagated;
        reported += s.reported;
        recovered += s.recovered;
        if (s.points) ++allocating;
    }
    std::cout << "allocation sweep: " << g_ops.size() << " operations (" << allocating
              << " allocate), " << vectors << " vectors, " << points
              << " allocation points failed: " << reported << " reported, " << recovered
              << " absorbed, " << propagated << " propagated\n";
    std::string unseen;
    for (const auto& [fn, why] : g_propagates) {
        const auto it = g_ops.find(fn);
        if (it == g_ops.end() || !it->second.propagated) unseen += " " + fn;
    }
    // Not a fault: short texts never allocate, and a vector folder need not hold every family.
    if (!unseen.empty())
        std::cout << "  listed as propagating, not seen to here:" << unseen << "\n";
    // Vectors swept without one failed allocation: the hook is not reached (a broken build).
    if (vectors > 0 && points == 0) {
        std::cout << "  no allocation was failed: the counting hook is not in effect\n";
        return false;
    }
    return !g_requireAll || CheckAllSwept();
}

}  // namespace conf::sweep
