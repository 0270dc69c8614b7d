#include "support/scripted_dialogs.h"

#include "runtime/message_boxes.h"

#include <gtest/gtest.h>

namespace velorn::test {

ScriptedDialogs::~ScriptedDialogs() {
    for (const Box& box : boxes_) ADD_FAILURE() << "this box never came: " << box.text;
    for (const Input& input : inputs_) ADD_FAILURE() << "this input box never came: " << input.prompt;
    for (const File& file : files_) ADD_FAILURE() << "this file dialog never came: " << file.title;
    for (const Font& font : fonts_) ADD_FAILURE() << "this font dialog never came: " << font.proposal.name;
}

void ScriptedDialogs::expect(std::string text, int code, Answer answer, std::function<void()> meanwhile,
                             int open_ms) {
    boxes_.push_back({std::move(text), code, answer, std::move(meanwhile), open_ms});
}

void ScriptedDialogs::expect_input(std::string prompt, std::optional<std::string> answer) {
    inputs_.push_back({std::move(prompt), std::move(answer)});
}

void ScriptedDialogs::expect_file(std::string title, Result<std::string> answer) {
    files_.push_back({std::move(title), std::move(answer)});
}

void ScriptedDialogs::expect_font(FontChoice proposal, Result<FontChoice> answer) {
    fonts_.push_back({std::move(proposal), std::move(answer)});
}

Answer ScriptedDialogs::message_box(std::string_view text, int code, std::string_view title) {
    last_box_title = title;
    shown_.emplace_back(text);
    if (boxes_.empty()) {
        ADD_FAILURE() << "unexpected box, code " << code << ": " << text;
        return Answer::cancel;
    }
    const Box box = boxes_.front();
    boxes_.pop_front();
    EXPECT_NE(text.find(box.text), std::string_view::npos) << "shown: " << text << "\nexpected: " << box.text;
    EXPECT_EQ(code, box.code) << text;
    if (box.meanwhile) box.meanwhile();
    if (box.open_ms > 0) {
        const std::int64_t until = loop_.now_ms() + box.open_ms;
        loop_.post_at(until, [] {});
        if (!loop_.wait_until([&] { return loop_.now_ms() >= until; })) return Answer::cancel;
    }
    return box.answer;
}

Answer ScriptedDialogs::message_box_for(int seconds, std::string_view text, int code) {
    if (!boxes_.empty()) return message_box(text, code, "Velorn");
    shown_.emplace_back(text);
    const std::int64_t until = loop_.now_ms() + std::int64_t{1000} * seconds;
    loop_.post_at(until, [] {});
    (void)loop_.wait_until([&] { return loop_.now_ms() >= until; });
    return cancelling_answer(code);
}

std::optional<std::string> ScriptedDialogs::input_box(std::string_view prompt, std::string_view title,
                                                      std::string_view proposal) {
    last_title = title;
    last_proposal = proposal;
    shown_.emplace_back(prompt);
    if (inputs_.empty()) {
        ADD_FAILURE() << "unexpected input box: " << prompt;
        return std::nullopt;
    }
    const Input input = inputs_.front();
    inputs_.pop_front();
    EXPECT_NE(prompt.find(input.prompt), std::string_view::npos) << prompt;
    return input.answer;
}

Result<std::string> ScriptedDialogs::choose_file(const FileQuestion& question) {
    shown_.push_back(question.title);
    last_question = question;
    if (files_.empty()) {
        ADD_FAILURE() << "unexpected file dialog: " << question.title;
        return failure(RunTimeError::dialog_cancelled);
    }
    const File file = files_.front();
    files_.pop_front();
    EXPECT_EQ(question.title, file.title);
    return file.answer;
}

Result<FontChoice> ScriptedDialogs::choose_font(const FontChoice& proposal) {
    shown_.push_back(proposal.name);
    if (fonts_.empty()) {
        ADD_FAILURE() << "unexpected font dialog: " << proposal.name;
        return failure(RunTimeError::dialog_cancelled);
    }
    const Font font = fonts_.front();
    fonts_.pop_front();
    EXPECT_EQ(proposal, font.proposal);
    return font.answer;
}

void ScriptedDialogs::expect_colour(Colour proposal, Result<Colour> answer) {
    colours_.push_back({proposal, std::move(answer)});
}

Result<Colour> ScriptedDialogs::choose_colour(Colour proposal) {
    if (colours_.empty()) {
        ADD_FAILURE() << "unexpected colour dialog: " << proposal;
        return failure(RunTimeError::dialog_cancelled);
    }
    const ColourQuestion question = colours_.front();
    colours_.pop_front();
    EXPECT_EQ(proposal, question.proposal);
    return question.answer;
}

} // namespace velorn::test
