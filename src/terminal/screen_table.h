// The screen stream's language: which character does what in which state of the parser.
//
// The controller's display speaks in short escape sequences without any frame. The table below is their whole
// grammar; the parser (screen_parser.h) only looks up what to do.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace velorn::screen {

enum class Act : std::uint8_t {
    nothing,
    store,            // a printable character at the cursor
    clear,            // blanks everything, cursor to 1, 1
    home,             // cursor to 1, 1
    next_line,        // cursor to the beginning of the next row
    blank_row_below,  // the row below the cursor
    keep_and_set_row, // the cursor is kept, its row becomes the character's
    set_column,       // the cursor's column becomes the character's
    go_back,          // to the cursor that was kept
    inverse_off,
    inverse_on,
    remove_blocks, // invloeschen
    block_run,     // block-inverse from behind the cursor to where it was kept
    mark_block,    // the cell at the cursor becomes block-inverse, the cursor moves on
    mark_normal,   // the same back to normal
    cursor_on,
    cursor_off,
    new_screen, // as clear, and the display is back in its normal size
    rub_out,    // the character before the cursor
    begin_line, // a line command begins
    collect,    // one of its digits
    capture,    // the controller starts a capture
    open_log,
    evaluation, // the controller wants the evaluation window; over TCP alone
    graph_begins,
    graph_ends,
    calendar,
    red_off,
    red_on,
};

struct Step {
    Act act = Act::nothing;
    std::uint8_t next = 0;
    bool again = false; // the same character once more, in state 0
};

inline constexpr std::size_t states = 92; // 0 to 91

using Table = std::array<std::array<Step, 256>, states>;
extern const Table table;

// state 0 to 91
inline const Step& step(std::size_t state, unsigned char character) { return table[state][character]; }

} // namespace velorn::screen
