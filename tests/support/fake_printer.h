// A printer that keeps what it was given.
#pragma once

#include "runtime/canvas.h"
#include "runtime/outside.h"

#include <functional>
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
    struct Drawing {
        std::vector<std::string> strokes; // as a RecorderCanvas words them, in twips
        std::string title;
    };
    std::vector<Drawing> drawn;
    std::optional<RunTimeError> fails_with;
    std::function<void()> behind_dialog; // while the dialog of a page stands

    Outcome print_text(std::string_view text, std::string_view title) override {
        if (fails_with) return failure(*fails_with);
        printed.push_back({std::string(text), std::string(title)});
        return {};
    }

    Outcome print_page(std::string_view title, const std::function<void(Canvas&)>& draw) override {
        if (behind_dialog) behind_dialog();
        if (fails_with) return failure(*fails_with);
        RecorderCanvas canvas;
        draw(canvas);
        drawn.push_back({canvas.strokes(), std::string(title)});
        return {};
    }
};

} // namespace velorn::test
