#include "plant/screen_writer.h"

#include "plant/wording.h"

#include <algorithm>
#include <utility>

namespace velorn::plant {

namespace {

std::string place(int row, int column) {
    return {static_cast<char>(31 + std::clamp(row, 1, ScreenWriter::rows)),
            static_cast<char>(31 + std::clamp(column, 1, ScreenWriter::columns))};
}

} // namespace

std::string ScreenWriter::take() { return std::exchange(out_, {}); }

void ScreenWriter::clear() { out_ += "\x1b@\x1bI\x1b@\x1bN\x1b@\x1bH\x1b "; }

void ScreenWriter::at(int row, int column) { out_ += "\x1bY" + place(row, column); }

void ScreenWriter::text(std::string_view utf8) { out_ += cp437_from_utf8(utf8); }

void ScreenWriter::text_at(int row, int column, std::string_view utf8) {
    at(row, column);
    text(utf8);
}

void ScreenWriter::inverse(std::string_view utf8) {
    // Behind "inverse off" an escape would begin something else, and a blank would take a cell; "home"
    // doesn't.
    out_ += "\x1bG4" + cp437_from_utf8(utf8) + "\x1bG0\x1e";
}

void ScreenWriter::red(std::string_view utf8) {
    out_ += "\x1b\x1f";
    out_ += "m" + cp437_from_utf8(utf8) + "\x1b\x1e";
    out_ += "m";
}

void ScreenWriter::select_nothing() { out_ += "\x1bG0\x1e"; }

void ScreenWriter::select(int row, int from, int to) {
    select_nothing();
    at(row, to + 1);
    out_ += "\x1bG0\x1bY" + place(row, from - 1) + "\x1bG4";
}

void ScreenWriter::bar(int row, int column, int length, int whole) {
    const int filled_cells = std::clamp(length, 0, whole);
    out_ += "\x1bI\x1b=" + place(row, column) + std::string(static_cast<std::size_t>(filled_cells), '%') +
            std::string(static_cast<std::size_t>(whole - filled_cells), ' ') + "\x1b ";
}

void ScreenWriter::cursor(bool shown) { out_ += shown ? "\x1b.3" : "\x1b.0"; }

void ScreenWriter::line(int x1, int y1, int x2, int y2) {
    const auto held = [](int value) { return std::clamp(value, 0, 999); };
    out_ += "\x1b\x1bQ" + filled("%03d%03d%03d%03d1", held(x1), held(y1), held(x2), held(y2));
}

void ScreenWriter::calendar() { out_ += "\x1b\x1bG8"; }

} // namespace velorn::plant
