// The dialogs, for hours when nobody may be there: while an unattended run has a site in work, each message
// box answers itself after a minute as if it were cancelled. What waits behind an open box would wait till
// morning, and the run with it.
#pragma once

#include "core/module1.h"
#include "runtime/outside.h"

#include <optional>
#include <string>
#include <string_view>

namespace velorn {

class UnattendedDialogs final : public Dialogs {
  public:
    UnattendedDialogs(Dialogs& screen, const Module1& module1) : screen_(screen), module1_(module1) {}

    static constexpr int seconds_of_a_box = 60;

    Answer message_box(std::string_view text, int code, std::string_view title) override {
        return module1_.autoholen ? screen_.message_box_for(seconds_of_a_box, text, code)
                                  : screen_.message_box(text, code, title);
    }
    Answer message_box_for(int seconds, std::string_view text, int code) override {
        return screen_.message_box_for(seconds, text, code);
    }
    std::optional<std::string> input_box(std::string_view prompt, std::string_view title,
                                         std::string_view proposal) override {
        return screen_.input_box(prompt, title, proposal);
    }
    Result<std::string> choose_file(const FileQuestion& question) override {
        return screen_.choose_file(question);
    }
    Result<FontChoice> choose_font(const FontChoice& proposal) override {
        return screen_.choose_font(proposal);
    }
    Result<Colour> choose_colour(Colour proposal) override { return screen_.choose_colour(proposal); }

  private:
    Dialogs& screen_;
    const Module1& module1_;
};

} // namespace velorn
