#include "support/plain_screen.h"

#include <algorithm>
#include <cmath>

namespace velorn::test {

namespace {

int held(int value, int low, int high) { return value < low ? low : value > high ? high : value; }

int half_even(double value) { return static_cast<int>(std::nearbyint(value)); }

} // namespace

void PlainScreen::feed(std::string_view chunk, bool over_tcp, bool capture_taken) {
    for (std::size_t i = 0; i < chunk.size(); ++i) {
        one(chunk[i], over_tcp, capture_taken);
        if (row > 28) scroll();
        if (cursor_shown && i + 1 == chunk.size()) {
            remove_blocks();
            cells_[1][row][column] = 'i';
            cells_[2][row][column] = 'a';
            ++changes;
        }
    }
}

void PlainScreen::one(char c, bool over_tcp, bool& capture_taken) {
    const int n = static_cast<unsigned char>(c);
    if (graph && graph_text_.size() < 65'536) graph_text_ += c;
    const int now = state;
    state = 0;
    switch (now) {
    case 0: plain(c); return;
    case 1:
        if (c == 'Y' || c == '=') state = 2;
        if (c == 'G') state = 10;
        if (c == '.') state = 40;
        if (c == '@') state = 50;
        if (c == 'I') state = 20;
        if (n == 27) state = 80;
        if (n == 30) state = 90;
        if (n == 31) state = 91;
        if (c == 'T') {
            for (int k = 0; k <= 80; ++k) {
                cells_[0][row + 1][k] = ' ';
                cells_[2][row + 1][k] = 'a';
            }
        }
        return;
    case 2:
        place_row(n);
        state = 3;
        return;
    case 3: column = held(n - 31, 1, 80); return;
    case 10:
        if (c == '0') {
            inverse = false;
            state = 11;
        }
        if (c == '4') inverse = true;
        return;
    case 11:
    case 15:
        if (n == 27) {
            state = now + 1;
            return;
        }
        remove_blocks();
        plain(c);
        return;
    case 12:
        if (c == 'Y' || c == '=') {
            state = 13;
            return;
        }
        remove_blocks();
        if (c == 'G') state = 10;
        if (c == '.') state = 40;
        return;
    case 13:
        place_row(n);
        state = 14;
        return;
    case 14:
        column = held(n - 31, 1, 80);
        state = 15;
        return;
    case 16:
        if (c == 'G') {
            state = 17;
            return;
        }
        remove_blocks();
        state = c == '.' ? 40 : 1;
        return;
    case 17:
        if (c == '4') block_run();
        if (c == '0') {
            remove_blocks();
            state = 11;
        }
        return;
    case 20:
        if (n == 27) state = 21;
        return;
    case 21:
        if (c == '=' || c == 'Y') state = 22;
        if (c == '@') state = 30;
        return;
    case 22:
        place_row(n);
        state = 23;
        return;
    case 23:
        column = held(n - 31, 1, 80);
        beyond_ = false;
        state = 24;
        return;
    case 24:
        if (n == 27) {
            row = kept_row;
            column = kept_column;
            state = 25;
        } else if (c == '%' || c == 'U' || c == '(' || c == ' ') {
            if (!beyond_) {
                cells_[1][row][column] = c == ' ' ? ' ' : 'i';
                cells_[2][row][column] = 'a';
            }
            ++changes;
            if (column == 80) beyond_ = true;
            column = std::min(80, column + 1);
            state = 24;
        }
        return;
    case 30:
        if (n == 27) {
            remove_blocks();
            state = 31;
        }
        return;
    case 40: cursor_shown = c == '3'; return;
    case 50:
        if (n == 27) {
            clear();
            calendar = false;
            asked.emplace_back("new screen");
            state = 51;
        }
        return;
    case 51: state = c == 'I' ? 52 : 0; return;
    case 53:
    case 57: state = c == '@' ? now + 1 : 0; return;
    case 55: state = c == 'N' ? 56 : 0; return;
    case 59: state = c == 'H' ? 60 : 0; return;
    case 52:
    case 54:
    case 56:
    case 58:
    case 60: state = n == 27 ? now + 1 : 0; return;
    case 70: state = n == 32 ? 71 : 0; return;
    case 71:
        if (n == 8) {
            if (column > 1) --column;
            cells_[0][row][column] = ' ';
            cells_[2][row][column] = 'a';
            ++changes;
        }
        return;
    case 80:
        if (c == 'Q') {
            digits_.clear();
            state = 82;
        }
        if (c == 'P') {
            if (!capture_taken) asked.emplace_back("capture");
            capture_taken = false;
        }
        if (c == 'G') state = 81;
        if (c == 'R') asked.emplace_back(over_tcp ? "log over tcp" : "log");
        if (c == 'q' && over_tcp) {
            asked.emplace_back("evaluation");
            state = 80;
        }
        return;
    case 81:
        if (c == '1') graph = true;
        if (c == '0' && graph) {
            graph = false;
            asked.push_back("graph:" + graph_text_);
            graph_text_.clear();
        }
        if (c == '8') {
            calendar = true;
            asked.emplace_back("calendar");
        }
        return;
    case 82:
        if (c == ' ' || (c >= '0' && c <= '9')) {
            state = 82;
            line_digit(c);
        }
        return;
    case 90:
        if (c == 'm') red = 0;
        return;
    case 91:
        if (c == 'm') red = red_used = 1;
        return;
    default: return; // 25, 31, 61: anything ends them
    }
}

void PlainScreen::plain(char c) {
    const int n = static_cast<unsigned char>(c);
    if (n == 27) {
        state = 1;
    } else if (n == 26) {
        clear();
    } else if (n == 30) {
        row = column = 1;
    } else if (n == 13) {
        ++row;
        column = 1;
    } else if (n == 8) {
        state = 70;
    } else if (n >= 32) {
        cells_[0][row][column] = c;
        cells_[2][row][column] = 'a';
        char& attribute = cells_[1][row][column];
        if (red >= 1) {
            attribute = 'r';
        } else if (attribute == 'r') {
            attribute = ' ';
        }
        if (inverse) {
            attribute = 'I';
        } else if (attribute == 'I') {
            attribute = ' ';
        }
        ++changes;
        column = std::min(80, column + 1);
    }
}

void PlainScreen::blank() {
    for (auto& plane : cells_) {
        for (auto& line : plane) {
            for (char& cell : line) cell = ' ';
        }
    }
}

void PlainScreen::clear() {
    blank();
    changes += 80 * 29;
    blocks = false;
    row = column = 1;
}

void PlainScreen::remove_blocks() {
    for (int r = 1; r <= 29; ++r) {
        for (int c = 1; c <= 80; ++c) {
            if (cells_[1][r][c] != 'i') continue;
            cells_[1][r][c] = ' ';
            cells_[2][r][c] = 'a';
        }
    }
    blocks = false;
    red_used = 0;
}

void PlainScreen::place_row(int n) {
    kept_row = row;
    kept_column = column;
    row = held(n - 31, 1, 24);
}

void PlainScreen::block_run() {
    int at = column + 1;
    if (at < 4 && kept_column >= 9) at = 1;
    for (bool first = true; first || at < kept_column; first = false) {
        if (at <= 80) {
            cells_[1][row][at] = 'i';
            cells_[2][row][at] = 'a';
        }
        ++changes;
        ++at;
    }
    blocks = true;
}

void PlainScreen::line_digit(char c) {
    digits_ += c == ' ' ? '0' : c;
    if (digits_.size() < 13) return;
    const auto number = [this](std::size_t from) { return std::stoi(digits_.substr(from, 3)) / 1000.0; };
    const int x1 = half_even(number(0) * cell_width * 40 + cell_width * 1.2);
    int y1 = half_even(number(3) * cell_height * 16 + cell_height * 1.1);
    const int x2 = half_even(number(6) * cell_width * 40 + cell_width * 1.2);
    int y2 = half_even(number(9) * cell_height * 16 + cell_height * 1.1);
    if (x1 == x2 && y1 == y2) {
        --y1;
        ++y2;
    }
    asked.push_back("line " + std::to_string(x1) + ' ' + std::to_string(y1) + ' ' + std::to_string(x2) + ' ' +
                    std::to_string(y2) + ' ' + (digits_.back() == '1' ? "1" : "0"));
    changes = 0;
    state = 0;
}

void PlainScreen::scroll() {
    highest_row = std::max(highest_row, row);
    row = 24;
    for (int r = 1; r <= 23; ++r) {
        for (int c = 1; c <= 80; ++c) {
            for (int plane = 0; plane < 2; ++plane) {
                cells_[plane][r][c] = cells_[plane][r + 5][c];
                cells_[plane][r + 5][c] = ' ';
            }
            cells_[2][r][c] = cells_[2][r + 5][c] = 'a';
        }
    }
    for (int r = 25; r <= 29; ++r) {
        for (auto& plane : cells_) {
            for (char& cell : plane[r]) cell = ' ';
        }
    }
}

void PlainScreen::painted() {
    for (int r = 1; r <= 29; ++r) {
        for (int c = 1; c <= 80; ++c) cells_[2][r][c] = ' ';
    }
    changes = 0;
}

std::string PlainScreen::text(int number) const {
    std::string line(&cells_[0][number][1], 80);
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
}

std::string PlainScreen::inverse_text(int number) const {
    std::string line;
    for (int c = 1; c <= 80; ++c) {
        const char a = cells_[1][number][c];
        line += a == 'i' || a == 'I' ? cells_[0][number][c] : ' ';
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
}

} // namespace velorn::test
