#include "desktop/parity_marks.h"

namespace velorn {

namespace {
constexpr char mark = '\xFF';
} // namespace

void ParityMarks::set_replacement(std::optional<char> with) {
    replacement_ = with;
    at_ = At::text;
}

void ParityMarks::decode(std::string_view bytes, std::string& out) {
    if (!replacement_) {
        out += bytes;
        return;
    }
    for (const char byte : bytes) {
        switch (at_) {
        case At::text:
            if (byte == mark) {
                at_ = At::after_ff;
            } else {
                out += byte;
            }
            break;
        case At::after_ff:
            if (byte == '\0') {
                at_ = At::after_ff_00;
                break;
            }
            // A single FF can only have come before the marking was on.
            out += mark;
            if (byte != mark) out += byte;
            at_ = At::text;
            break;
        case At::after_ff_00:
            out += *replacement_;
            at_ = At::text;
            break;
        }
    }
}

} // namespace velorn
