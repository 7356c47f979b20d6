// The rows every sort benchmark uses: column 0 is mixed text (words, numbers, case, blanks,
// punctuation), column 1 a distinct number in random order. Each run first sorts by column 1
// (untimed) to shuffle the rows, then times the sort by column 0.
#pragma once

#include <algorithm>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

namespace bench_rows {

constexpr int kRows = 100000;

inline const std::vector<std::pair<std::string, std::string>>& Rows() {
    static const std::vector<std::pair<std::string, std::string>> rows = [] {
        static const char* words[] = {"Job",   "proof", "Printer", "CMYK",   "report", "Zeta",
                                      "alpha", "Layer", "scan",    "Output", "tile",   "Poster"};
        std::mt19937 rng(20261124);
        std::vector<int> order(kRows);
        for (int i = 0; i < kRows; ++i) order[static_cast<std::size_t>(i)] = i;
        std::shuffle(order.begin(), order.end(), rng);
        std::vector<std::pair<std::string, std::string>> out;
        out.reserve(kRows);
        char key[16];
        for (int i = 0; i < kRows; ++i) {
            std::string text = words[rng() % 12];
            switch (rng() % 4) {
                case 0:
                    text += " " + std::to_string(rng() % 100000);
                    break;
                case 1:
                    text += "-" + std::string(1, static_cast<char>('A' + rng() % 26)) + ".tif";
                    break;
                case 2:
                    text = std::to_string(rng() % 1000) + " " + text;
                    break;
                default:
                    text += "_v" + std::to_string(rng() % 50);
                    break;
            }
            std::snprintf(key, sizeof key, "%08d", order[static_cast<std::size_t>(i)]);
            out.emplace_back(std::move(text), key);
        }
        return out;
    }();
    return rows;
}

}  // namespace bench_rows
