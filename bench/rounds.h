// Measuring in rounds: in each round every case runs once, and a case's ratio to its reference is taken
// within the round, since absolute figures of a shared machine say little. Prints medians.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace velorn::bench {

inline double seconds_now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

struct Case {
    std::string name;
    std::string unit;            // such as "MB/s"
    std::function<double()> run; // gives the figure of one round
    std::string reference = {};  // a case before this one
    double goal = 0;             // the ratio that is aimed at; 0 for none
    std::vector<double> figures = {};
};

inline double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values.empty() ? 0 : values[values.size() / 2];
}

inline void run(std::vector<Case> cases, int rounds) {
    for (int round = 0; round < rounds; ++round) {
        for (Case& one : cases) one.figures.push_back(one.run());
    }
    for (const Case& one : cases) {
        std::printf("%-44s %12.2f %s", one.name.c_str(), median(one.figures), one.unit.c_str());
        for (const Case& other : cases) {
            if (other.name != one.reference) continue;
            std::vector<double> ratios;
            for (std::size_t i = 0; i < one.figures.size(); ++i)
                ratios.push_back(one.figures[i] / other.figures[i]);
            std::printf("   %8.3f x %s", median(ratios), other.name.c_str());
            if (one.goal > 0) std::printf(" (goal %g)", one.goal);
        }
        std::printf("\n");
    }
}

} // namespace velorn::bench
