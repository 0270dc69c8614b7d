#include "terminal/screen_parser.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace velorn {

using screen::Act;

namespace {

constexpr int last_row_by_escape = 24;
constexpr int scrolls_from = 29; // the row that scrolls
constexpr int scrolled_to = 24;
constexpr int scrolled_by = 5;
constexpr std::int16_t line_digits = 13;
constexpr int cells = Schirm::columns * Schirm::rows;

bool is_printable(char c) { return static_cast<unsigned char>(c) >= 32; }

// How many characters at the beginning are 32 or above; eight at a time.
std::size_t printable_run(std::string_view text) {
    constexpr std::uint64_t ones = 0x0101010101010101U;
    std::size_t i = 0;
    for (; i + 8 <= text.size(); i += 8) {
        std::uint64_t eight;
        std::memcpy(&eight, text.data() + i, 8);
        if (((eight - ones * 32) & ~eight & (ones * 128)) != 0) break;
    }
    while (i < text.size() && is_printable(text[i])) ++i;
    return i;
}

// A blank counts as a zero.
void add_digit(std::int16_t& number, char c) {
    number = static_cast<std::int16_t>(number * 10 + (c == ' ' ? 0 : c - '0'));
}

} // namespace

void ScreenParser::feed(std::string_view text, bool over_tcp, bool capture_taken) {
    Pass pass{over_tcp, capture_taken};
    const std::size_t size = text.size();
    for (std::size_t i = 0; i < size;) {
        if (frmTerminal_.fbzustand == 0 && is_printable(text[i])) {
            const bool alone = i + 1 == size || !is_printable(text[i + 1]);
            const std::size_t length = alone ? 1 : printable_run(text.substr(i));
            if (state.graph96an) keep_graph_text(text.substr(i, length));
            if (alone) {
                store(text[i]);
            } else {
                store(text.substr(i, length));
            }
            i += length;
            continue;
        }
        const char c = text[i++];
        if (state.graph96an) keep_graph_text({&c, 1});
        take(c, pass);
        if (loop_.ended()) return;
    }
    if (frmTerminal_.cursorinv && size > 0) mark_cursor();
}

// A run of printable characters in state 0.
void ScreenParser::store(std::string_view text) {
    const std::size_t length = text.size();
    const auto column = static_cast<std::size_t>(frmTerminal_.spalte);
    const int row = frmTerminal_.zeile;
    const std::size_t room = Schirm::columns + 1 - column;
    const std::size_t stored = std::min(length, room);

    char* const characters = frmTerminal_.schirm.characters(row).data() + column;
    std::memcpy(characters, text.data(), stored);
    // What doesn't fit goes through the last column, one character over the other.
    if (length > room) characters[room - 1] = text[length - 1];
    std::memset(frmTerminal_.schirm.change_line(Schirm::mark, row).data() + column, Schirm::changed, stored);

    // Whether block-inverse cells are in a row doesn't change here, so nothing has to be noted.
    char* const attributes = frmTerminal_.schirm.attributes(row).data() + column;
    if (state.inversan || state.rotan >= 1) {
        std::memset(attributes, state.inversan ? Schirm::inverse : Schirm::red, stored);
    } else {
        for (std::size_t k = 0; k < stored; ++k) {
            const char a = attributes[k];
            attributes[k] = a == Schirm::red || a == Schirm::inverse ? Schirm::normal : a;
        }
    }
    state.aenderungen += static_cast<std::int32_t>(length);
    frmTerminal_.spalte = static_cast<std::int16_t>(std::min<std::size_t>(column + length, Schirm::columns));
}

// One of them, as it comes on a slow line.
void ScreenParser::store(char c) {
    Schirm& schirm = frmTerminal_.schirm;
    const int column = frmTerminal_.spalte;
    const int row = frmTerminal_.zeile;
    schirm.set_character(column, row, c);
    schirm.set_mark(column, row);
    char& attribute = schirm.attributes(row)[static_cast<std::size_t>(column)];
    if (state.inversan || state.rotan >= 1) {
        attribute = state.inversan ? Schirm::inverse : Schirm::red;
    } else if (attribute == Schirm::red || attribute == Schirm::inverse) {
        attribute = Schirm::normal;
    }
    ++state.aenderungen;
    if (column < Schirm::columns) ++frmTerminal_.spalte;
}

void ScreenParser::take(char c, Pass& pass) {
    const auto state_number = static_cast<std::size_t>(frmTerminal_.fbzustand);
    const screen::Step& step = screen::step(state_number, static_cast<unsigned char>(c));
    frmTerminal_.fbzustand = step.next;
    run(step.act, c, pass);
    if (step.again) take(c, pass); // in state 0, where nothing is taken again
}

void ScreenParser::run(Act act, char c, Pass& pass) {
    switch (act) {
    case Act::nothing: break;
    case Act::store: store(c); break;
    case Act::clear: clear(); break;
    case Act::home: frmTerminal_.zeile = frmTerminal_.spalte = 1; break;
    case Act::next_line: next_line(); break;
    case Act::blank_row_below: blank_row_below(); break;
    case Act::keep_and_set_row: keep_and_set_row(static_cast<unsigned char>(c)); break;
    case Act::set_column: set_column(static_cast<unsigned char>(c)); break;
    case Act::go_back:
        frmTerminal_.zeile = state.merkzeile;
        frmTerminal_.spalte = state.merkspalte;
        break;
    case Act::inverse_off: state.inversan = false; break;
    case Act::inverse_on: state.inversan = true; break;
    case Act::remove_blocks: invloeschen(); break;
    case Act::block_run: block_run(); break;
    case Act::mark_block: mark_cell(Schirm::block); break;
    case Act::mark_normal: mark_cell(Schirm::normal); break;
    case Act::cursor_on: frmTerminal_.cursorinv = true; break;
    case Act::cursor_off: frmTerminal_.cursorinv = false; break;
    case Act::new_screen:
        clear();
        state.kalender = false;
        screen_events.new_screen();
        break;
    case Act::rub_out: rub_out(); break;
    case Act::begin_line: begin_line(); break;
    case Act::collect: collect(c); break;
    case Act::capture:
        // The scanner reads each chunk first and may have begun this one already.
        if (!std::exchange(pass.capture_taken, false)) screen_events.capture_begins();
        break;
    case Act::open_log: screen_events.log_wanted(pass.over_tcp); break;
    case Act::evaluation:
        if (pass.over_tcp) {
            screen_events.evaluation_wanted();
        } else {
            frmTerminal_.fbzustand = 0;
        }
        break;
    case Act::graph_begins: state.graph96an = true; break;
    case Act::graph_ends: graph_ends(); break;
    case Act::calendar:
        state.kalender = true;
        screen_events.calendar();
        break;
    case Act::red_off: state.rotan = 0; break;
    case Act::red_on: state.rotan = state.rotgenutzt = 1; break;
    }
}

void ScreenParser::clear() {
    frmTerminal_.schirm.blank();
    state.aenderungen += cells;
    state.blockmarke = false;
    frmTerminal_.zeile = frmTerminal_.spalte = 1;
}

void ScreenParser::next_line() {
    ++frmTerminal_.zeile;
    frmTerminal_.spalte = 1;
    if (frmTerminal_.zeile >= scrolls_from) scroll();
}

void ScreenParser::scroll() {
    Schirm& schirm = frmTerminal_.schirm;
    state.maxzeile = std::max(state.maxzeile, frmTerminal_.zeile);
    frmTerminal_.zeile = scrolled_to;
    for (int row = 1; row < scrolled_to; ++row) {
        const int below = row + scrolled_by;
        for (const auto plane : {Schirm::character, Schirm::attribute}) {
            schirm.change_line(plane, row) = schirm.line(plane, below);
            schirm.change_line(plane, below).fill(' ');
        }
        for (const int changed : {row, below}) {
            Schirm::Line& marks = schirm.change_line(Schirm::mark, changed);
            std::fill(marks.begin() + 1, marks.end(), Schirm::changed);
        }
    }
    for (int row = scrolled_to + 1; row <= Schirm::rows; ++row) {
        for (const auto plane : {Schirm::character, Schirm::attribute, Schirm::mark})
            schirm.change_line(plane, row).fill(' ');
    }
}

void ScreenParser::blank_row_below() {
    const int row = frmTerminal_.zeile + 1;
    frmTerminal_.schirm.characters(row).fill(' ');
    frmTerminal_.schirm.change_line(Schirm::mark, row).fill(Schirm::changed);
}

void ScreenParser::keep_and_set_row(unsigned char n) {
    state.merkzeile = frmTerminal_.zeile;
    state.merkspalte = frmTerminal_.spalte;
    frmTerminal_.zeile = static_cast<std::int16_t>(std::clamp(n - 31, 1, last_row_by_escape));
}

void ScreenParser::set_column(unsigned char n) {
    frmTerminal_.spalte = static_cast<std::int16_t>(std::clamp(n - 31, 1, Schirm::columns));
    beyond_last_column_ = false;
}

// A cell of a bar. Those beyond the last column are counted only.
void ScreenParser::mark_cell(char attribute) {
    if (!beyond_last_column_) {
        frmTerminal_.schirm.set_attribute(frmTerminal_.spalte, frmTerminal_.zeile, attribute);
        frmTerminal_.schirm.set_mark(frmTerminal_.spalte, frmTerminal_.zeile);
    }
    ++state.aenderungen;
    if (frmTerminal_.spalte < Schirm::columns) {
        ++frmTerminal_.spalte;
    } else {
        beyond_last_column_ = true;
    }
}

void ScreenParser::invloeschen() {
    Schirm& schirm = frmTerminal_.schirm;
    schirm.take_block_rows([&schirm](int row) {
        const Schirm::Line& attributes = schirm.line(Schirm::attribute, row);
        for (int column = 1; column <= Schirm::columns; ++column) {
            if (attributes[static_cast<std::size_t>(column)] != Schirm::block) continue;
            schirm.set_attribute(column, row, Schirm::normal);
            schirm.set_mark(column, row);
        }
    });
    state.blockmarke = false;
    state.rotgenutzt = 0;
}

void ScreenParser::block_run() {
    Schirm& schirm = frmTerminal_.schirm;
    int column = frmTerminal_.spalte + 1;
    if (column < 4 && state.merkspalte >= 9) column = 1;
    do {
        if (column <= Schirm::columns) {
            schirm.set_attribute(column, frmTerminal_.zeile, Schirm::block);
            schirm.set_mark(column, frmTerminal_.zeile);
        }
        ++state.aenderungen;
        ++column;
    } while (column < state.merkspalte);
    state.blockmarke = true;
}

void ScreenParser::rub_out() {
    if (frmTerminal_.spalte > 1) --frmTerminal_.spalte;
    frmTerminal_.schirm.set_character(frmTerminal_.spalte, frmTerminal_.zeile, ' ');
    frmTerminal_.schirm.set_mark(frmTerminal_.spalte, frmTerminal_.zeile);
    ++state.aenderungen;
}

void ScreenParser::begin_line() {
    state.linienpos = 0;
    state.rx1 = state.ry1 = state.rx2 = state.ry2 = state.linienart = 0;
}

void ScreenParser::collect(char c) {
    constexpr std::int16_t ScreenState::*fields[] = {&ScreenState::rx1, &ScreenState::ry1, &ScreenState::rx2,
                                                     &ScreenState::ry2, &ScreenState::linienart};
    add_digit(state.*fields[state.linienpos / 3], c);
    if (++state.linienpos == line_digits) line_is_complete();
}

void ScreenParser::line_is_complete() {
    frmTerminal_.fbzustand = 0;
    state.linienpos = 0;
    state.aenderungen = 0;
    screen_events.line(state.rx1, state.ry1, state.rx2, state.ry2, state.linienart == 1);
}

void ScreenParser::keep_graph_text(std::string_view text) {
    std::string& kept = frmTerminal_.txttograph96;
    kept += text.substr(0, longest_graph_text - std::min(longest_graph_text, kept.size()));
}

void ScreenParser::graph_ends() {
    if (!std::exchange(state.graph96an, false)) return;
    const std::string graph = std::exchange(frmTerminal_.txttograph96, {});
    screen_events.day_graph(graph);
}

void ScreenParser::mark_cursor() {
    invloeschen();
    frmTerminal_.schirm.set_attribute(frmTerminal_.spalte, frmTerminal_.zeile, Schirm::block);
    frmTerminal_.schirm.set_mark(frmTerminal_.spalte, frmTerminal_.zeile);
    ++state.aenderungen;
}

} // namespace velorn
