// A printer that keeps what it was given.
#pragma once

#include "runtime/outside.h"

#include <optional>
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
    std::optional<RunTimeError> fails_with;

    Outcome print_text(std::string_view text, std::string_view title) override {
        if (fails_with) return failure(*fails_with);
        printed.push_back({std::string(text), std::string(title)});
        return {};
    }
};

} // namespace velorn::test
