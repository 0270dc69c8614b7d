// A printer that keeps what it was given.
#pragma once

#include "runtime/outside.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velorn::test {

class FakePrinter : public Printer {
  public:
    struct Page {
        std::string text;
        std::string title;
    };
    std::vector<Page> printed;
    bool cancels = false; // the person calls the printer dialog off

    Outcome print_text(std::string_view text, std::string_view title) override {
        if (cancels) return failure(RunTimeError::dialog_cancelled);
        printed.push_back({std::string(text), std::string(title)});
        return {};
    }
};

} // namespace velorn::test
