// A visualisation program as the test plays it, and the starting of programs.
#pragma once

#include "runtime/outside.h"

#include <string>
#include <vector>

namespace velorn::test {

struct FakeProcesses : Processes {
    std::vector<std::string> started;
    Outcome answer; // what the next start comes to

    Outcome start(std::string_view path) override {
        if (answer) started.emplace_back(path);
        return answer;
    }
};

struct FakeVisualisation : VisualisationChannel {
    bool is_open = false;
    std::string text;               // the text that it sees
    std::vector<std::string> texts; // all that it saw
    Outcome answer;                 // what the next open comes to

    Outcome open() override {
        is_open = answer.ok();
        return answer;
    }
    void set_text(std::string_view given) override {
        text = given;
        texts.emplace_back(given);
    }
    void says(const std::string& what) const {
        if (arrived) arrived(what);
    }
};

} // namespace velorn::test
