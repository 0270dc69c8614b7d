#include "terminal/terminal_output.h"

namespace velorn {

namespace {

constexpr char backspace = 8;
constexpr char line_feed = 10;
constexpr char carriage_return = 13;

struct Rubbed {
    std::string text;
    bool leading = false; // a backspace stood at the beginning
};

// Each backspace takes the character before it, from the first on. One that stands at the beginning, however
// many follow it there, marks the last character of the screen.
Rubbed rub_out(std::string_view text) {
    Rubbed result;
    result.text.reserve(text.size());
    for (const char c : text) {
        if (c != backspace) {
            result.text += c;
        } else if (result.text.empty()) {
            result.leading = true;
        } else {
            result.text.pop_back();
        }
    }
    return result;
}

std::string with_line_ends(std::string_view text, std::string_view after_cr) {
    std::string result;
    result.reserve(text.size() + 64);
    std::size_t begin = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == line_feed) {
            result.append(text, begin, i - begin);
            begin = i + 1;
        } else if (text[i] == carriage_return) {
            result.append(text, begin, i + 1 - begin);
            result += after_cr;
            begin = i + 1;
        }
    }
    result.append(text, begin);
    return result;
}

} // namespace

void TerminalOutput::terminalausgabe(std::string_view text) {
    RichTextBox& txtterm = frmTerminal_.txtterm;
    txtterm.SelColor = colour::blue;
    if (txtterm.length() > most_characters) txtterm.remove_front(49'999);
    txtterm.select(txtterm.length());

    std::string rubbed_text;
    if (text.find(backspace) != std::string_view::npos) {
        Rubbed rubbed = rub_out(text);
        if (rubbed.leading && txtterm.length() > 0) txtterm.select(txtterm.length() - 1, 1);
        rubbed_text = std::move(rubbed.text);
        text = rubbed_text;
    }
    std::string after_cr = "\n";
    if (frmTerminal_.uhrzeitan) after_cr += time_text(loop_.local_time());
    const std::string prepared = with_line_ends(text, after_cr);

    if (frmTerminal_.termecho) txtterm.set_SelText(prepared);
    if (frmTerminal_.uhrzeitan && frmTerminal_.logdatei != 0) events_.log_text(prepared);
    txtterm.select(txtterm.length());
}

} // namespace velorn
