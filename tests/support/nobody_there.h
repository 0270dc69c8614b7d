// A person who answers nothing: every box and dialog is called off at once.
#pragma once

#include "runtime/message_boxes.h"
#include "runtime/outside.h"

namespace velorn::test {

class NobodyThere : public Dialogs {
  public:
    Answer message_box(std::string_view, int code, std::string_view) override {
        return cancelling_answer(code);
    }
    std::optional<std::string> input_box(std::string_view, std::string_view, std::string_view) override {
        return std::nullopt;
    }
    Result<std::string> choose_file(const FileQuestion&) override {
        return failure(RunTimeError::dialog_cancelled);
    }
    Result<FontChoice> choose_font(const FontChoice&) override {
        return failure(RunTimeError::dialog_cancelled);
    }
    Result<Colour> choose_colour(Colour) override { return failure(RunTimeError::dialog_cancelled); }
};

} // namespace velorn::test
