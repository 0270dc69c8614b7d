// The person, as a script: the questions that are expected, in order, with their answers. A question that
// nobody expects fails the test, and so does an expected one that never comes.
#pragma once

#include "runtime/event_loop.h"
#include "runtime/outside.h"

#include <deque>
#include <functional>
#include <string>
#include <vector>

namespace velorn::test {

class ScriptedDialogs : public Dialogs {
  public:
    explicit ScriptedDialogs(EventLoop& loop) : loop_(loop) {}
    ~ScriptedDialogs() override;

    // A message box that holds `text`, with this code. `meanwhile` runs while the box is open; the loop turns
    // for `open_ms` before it is answered.
    void expect(std::string text, int code, Answer answer, std::function<void()> meanwhile = {},
                int open_ms = 0);
    void expect_input(std::string prompt, std::optional<std::string> answer);
    void expect_file(std::string title, Result<std::string> answer);
    void expect_font(FontChoice proposal, Result<FontChoice> answer);
    void expect_colour(Colour proposal, Result<Colour> answer);

    Answer message_box(std::string_view text, int code, std::string_view title) override;
    // Where none is expected nobody is there, and it answers itself.
    Answer message_box_for(int seconds, std::string_view text, int code) override;
    std::optional<std::string> input_box(std::string_view prompt, std::string_view title,
                                         std::string_view proposal) override;
    Result<std::string> choose_file(const FileQuestion& question) override;
    Result<FontChoice> choose_font(const FontChoice& proposal) override;
    Result<Colour> choose_colour(Colour proposal) override;

    // The file dialog that came last.
    FileQuestion last_question;
    // What the input box that came last proposed, and its title.
    std::string last_proposal;
    std::string last_title;
    // The title of the box that came last.
    std::string last_box_title;

    // What was shown so far, texts of boxes and prompts.
    const std::vector<std::string>& shown() const { return shown_; }

  private:
    struct Box {
        std::string text;
        int code;
        Answer answer;
        std::function<void()> meanwhile;
        int open_ms;
    };
    struct Input {
        std::string prompt;
        std::optional<std::string> answer;
    };
    struct File {
        std::string title;
        Result<std::string> answer;
    };

    struct Font {
        FontChoice proposal;
        Result<FontChoice> answer;
    };

    struct ColourQuestion {
        Colour proposal;
        Result<Colour> answer;
    };

    EventLoop& loop_;
    std::deque<ColourQuestion> colours_;
    std::deque<Font> fonts_;
    std::deque<Box> boxes_;
    std::deque<Input> inputs_;
    std::deque<File> files_;
    std::vector<std::string> shown_;
};

} // namespace velorn::test
