#include "core/trace.h"

#include <string>

namespace velorn {

namespace {

constexpr std::size_t most_characters = 550'000;
constexpr std::size_t dropped_at_once = 50'000;

} // namespace

void trace_bytes(FrmTerminal& frmTerminal, std::string_view prefix, std::string_view bytes) {
    std::string lines;
    lines.reserve(bytes.size() * (prefix.size() + 7));
    for (const char c : bytes) {
        const auto code = static_cast<unsigned char>(c);
        lines += prefix;
        lines += std::to_string(code);
        if (code > 31) {
            lines += ' ';
            lines += c;
        }
        lines += "\r\n";
    }
    RichTextBox& box = frmTerminal.txttest10;
    if (box.length() > most_characters) box.remove_front(box.length() - most_characters + dropped_at_once);
    box.set_SelText(lines);
}

} // namespace velorn
