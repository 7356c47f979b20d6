// kxbase bspline: reads a B-spline control polygon and prints its cubic Bezier spans.
//
// Input (a file, or standard input when no file or "-" is given): numbers separated by blanks,
// commas, semicolons or brackets, taken in pairs as x y; '#' starts a comment to the end of
// the line. Output: one line per span with its four points; with --to-bspline (one Bezier
// segment of exactly four points back to B-spline control points) a single line.
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

#include <kxbase/separate/separate.h>

#include "command.h"

namespace {

// Parses the numbers of `text`; returns false (with a message) on a token that is not one.
bool ParseNumbers(const std::string& text, std::vector<double>& out) {
    std::size_t i = 0, line = 1;
    while (i < text.size()) {
        const char ch = text[i];
        if (ch == '#') {
            while (i < text.size() && text[i] != '\n') ++i;
        } else if (ch == '\n') {
            ++line;
            ++i;
        } else if (std::isspace(static_cast<unsigned char>(ch)) || ch == ',' || ch == ';' ||
                   ch == '(' || ch == ')' || ch == '[' || ch == ']') {
            ++i;
        } else {
            const char* start = text.c_str() + i;
            char* end = nullptr;
            errno = 0;
            const double v = std::strtod(start, &end);
            if (end == start) {
                int len = 0;
                while (len < 20 && start[len] &&
                       !std::isspace(static_cast<unsigned char>(start[len])))
                    ++len;
                std::fprintf(stderr, "bspline: line %zu: not a number: \"%.*s\"\n", line, len,
                             start);
                return false;
            }
            out.push_back(v);
            i += static_cast<std::size_t>(end - start);
        }
    }
    return true;
}

void PrintPoint(const POINTD& p) {
    std::printf("  %.12g %.12g", p.x, p.y);
}
void PrintPoint(const POINT& p) {
    // POINT's members are long on Windows, 32-bit on every system.
    std::printf("  %d %d", static_cast<int>(p.x), static_cast<int>(p.y));
}

template <class P>
int Run(const std::vector<P>& in, int mode) {
    const std::size_t n = in.size();
    std::vector<P> out(n < 2 ? 4 : 4 * (n - 1));
    int count = 0;
    if (!SEPARATE::BSplineToBezier(in.data(), static_cast<int>(n), out.data(), count, mode)) {
        std::fprintf(stderr,
                     mode ? "bspline: need at least 4 control points (got %zu)\n"
                          : "bspline: need exactly 4 Bezier points (got %zu)\n",
                     n);
        return 1;
    }
    for (int s = 0; s < count / 4; ++s) {
        std::printf("%d", s);
        for (int j = 0; j < 4; ++j) PrintPoint(out[static_cast<std::size_t>(4 * s + j)]);
        std::printf("\n");
    }
    return 0;
}

}  // namespace

static kxtool::Command cmd{
    "bspline", "Convert a cubic B-spline control polygon into Bezier spans", [](CLI::App& sub) {
        static std::string file;
        static bool integer = false, toBSpline = false;
        sub.add_option("file", file, "Control points as x y pairs (default: standard input)");
        sub.add_flag("--int", integer, "Integer points: coordinates rounded half away from zero");
        sub.add_flag("--to-bspline", toBSpline,
                     "Convert one Bezier segment (4 points) back to B-spline control points");
        return [] {
            std::string text;
            if (file.empty() || file == "-") {
                text.assign(std::istreambuf_iterator<char>(std::cin), {});
            } else {
                std::ifstream f(file, std::ios::binary);
                if (!f) {
                    std::fprintf(stderr, "bspline: cannot open %s\n", file.c_str());
                    return 1;
                }
                text.assign(std::istreambuf_iterator<char>(f), {});
            }
            std::vector<double> v;
            if (!ParseNumbers(text, v)) return 1;
            if (v.size() % 2) {
                std::fprintf(stderr, "bspline: odd count of numbers (%zu): x without y\n",
                             v.size());
                return 1;
            }
            if (v.size() / 2 > static_cast<std::size_t>(SEPARATE::kMaxControlPoints)) {
                std::fprintf(stderr, "bspline: too many control points\n");
                return 1;
            }
            const int mode = toBSpline ? 0 : 1;
            if (integer) {
                std::vector<POINT> p;
                for (std::size_t i = 0; i < v.size(); i += 2) {
                    const double x = v[i], y = v[i + 1];
                    if (!(x >= -2147483648.0 && x <= 2147483647.0 && y >= -2147483648.0 &&
                          y <= 2147483647.0)) {
                        std::fprintf(stderr, "bspline: coordinate outside the 32-bit range\n");
                        return 1;
                    }
                    p.push_back({static_cast<LONG>(x), static_cast<LONG>(y)});
                }
                return Run(p, mode);
            }
            std::vector<POINTD> p;
            for (std::size_t i = 0; i < v.size(); i += 2) p.emplace_back(v[i], v[i + 1]);
            return Run(p, mode);
        };
    }};
