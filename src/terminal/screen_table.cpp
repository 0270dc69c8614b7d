#include "terminal/screen_table.h"

namespace velorn::screen {

namespace {

constexpr int any = -1;     // every character that has no row of its own
constexpr int control = -2; // every one below 32
constexpr int digit = -3;   // 0 to 9 and the blank
constexpr int esc = 27;

struct Row {
    std::uint8_t state;
    int input;
    Act act;
    std::uint8_t next;
    bool again = false;
};

// A later row goes before an earlier one of the same state.
constexpr Row rows[] = {
    // plain text
    {0, any, Act::store, 0},
    {0, control, Act::nothing, 0},
    {0, esc, Act::nothing, 1},
    {0, 26, Act::clear, 0},
    {0, 30, Act::home, 0},
    {0, '\r', Act::next_line, 0}, // kept: there is no line feed, 10 is ignored
    {0, 8, Act::nothing, 70},

    // behind an escape
    {1, any, Act::nothing, 0},
    {1, 'Y', Act::nothing, 2},
    {1, '=', Act::nothing, 2},
    {1, 'G', Act::nothing, 10},
    {1, '.', Act::nothing, 40},
    {1, '@', Act::nothing, 50},
    {1, 'I', Act::nothing, 20},
    {1, 'T', Act::blank_row_below, 0},
    {1, esc, Act::nothing, 80},
    {1, 30, Act::nothing, 90},
    {1, 31, Act::nothing, 91},

    // the cursor
    {2, any, Act::keep_and_set_row, 3},
    {3, any, Act::set_column, 0},

    // inverse text, and with it runs of block-inverse cells
    {10, any, Act::nothing, 0},
    {10, '0', Act::inverse_off, 11},
    {10, '4', Act::inverse_on, 0},
    {11, any, Act::remove_blocks, 0, true},
    {11, esc, Act::nothing, 12},
    {12, any, Act::remove_blocks, 0},
    {12, 'Y', Act::nothing, 13},
    {12, '=', Act::nothing, 13},
    {12, 'G', Act::remove_blocks, 10},
    {12, '.', Act::remove_blocks, 40},
    {13, any, Act::keep_and_set_row, 14},
    {14, any, Act::set_column, 15},
    {15, any, Act::remove_blocks, 0, true},
    {15, esc, Act::nothing, 16},
    {16, any, Act::remove_blocks, 1}, // kept: this one is dropped, the next is read as behind an escape
    {16, 'G', Act::nothing, 17},
    {16, '.', Act::remove_blocks, 40},
    {17, any, Act::nothing, 0},
    {17, '4', Act::block_run, 0},
    {17, '0', Act::remove_blocks, 11},

    // bars
    {20, any, Act::nothing, 0},
    {20, esc, Act::nothing, 21},
    {21, any, Act::nothing, 0},
    {21, '=', Act::nothing, 22},
    {21, 'Y', Act::nothing, 22},
    {21, '@', Act::nothing, 30},
    {22, any, Act::keep_and_set_row, 23},
    {23, any, Act::set_column, 24},
    {24, any, Act::nothing, 0},
    {24, esc, Act::go_back, 25},
    {24, '%', Act::mark_block, 24},
    {24, 'U', Act::mark_block, 24},
    {24, '(', Act::mark_block, 24},
    {24, ' ', Act::mark_normal, 24},
    {25, any, Act::nothing, 0},
    {30, any, Act::nothing, 0},
    {30, esc, Act::remove_blocks, 31},
    {31, any, Act::nothing, 0},

    // the cursor's look
    {40, any, Act::cursor_off, 0},
    {40, '3', Act::cursor_on, 0},

    // a new screen; what follows it is only read over
    {50, any, Act::nothing, 0},
    {50, esc, Act::new_screen, 51},
    {51, any, Act::nothing, 0},
    {51, 'I', Act::nothing, 52},
    {52, any, Act::nothing, 0},
    {52, esc, Act::nothing, 53},
    {53, any, Act::nothing, 0},
    {53, '@', Act::nothing, 54},
    {54, any, Act::nothing, 0},
    {54, esc, Act::nothing, 55},
    {55, any, Act::nothing, 0},
    {55, 'N', Act::nothing, 56},
    {56, any, Act::nothing, 0},
    {56, esc, Act::nothing, 57},
    {57, any, Act::nothing, 0},
    {57, '@', Act::nothing, 58},
    {58, any, Act::nothing, 0},
    {58, esc, Act::nothing, 59},
    {59, any, Act::nothing, 0},
    {59, 'H', Act::nothing, 60},
    {60, any, Act::nothing, 0},
    {60, esc, Act::nothing, 61},
    {61, any, Act::nothing, 0},

    // backspace, blank, backspace rubs out
    {70, any, Act::nothing, 0},
    {70, ' ', Act::nothing, 71},
    {71, any, Act::nothing, 0},
    {71, 8, Act::rub_out, 0},

    // behind two escapes
    {80, any, Act::nothing, 0},
    {80, 'Q', Act::begin_line, 82},
    {80, 'P', Act::capture, 0},
    {80, 'G', Act::nothing, 81},
    {80, 'R', Act::open_log, 0},
    {80, 'q', Act::evaluation, 80}, // kept: the state stays
    {81, any, Act::nothing, 0},
    {81, '1', Act::graph_begins, 0},
    {81, '0', Act::graph_ends, 0},
    {81, '8', Act::calendar, 0},
    {82, any, Act::nothing, 0},
    {82, digit, Act::collect, 82},

    // red text
    {90, any, Act::nothing, 0},
    {90, 'm', Act::red_off, 0},
    {91, any, Act::nothing, 0},
    {91, 'm', Act::red_on, 0},
};

constexpr bool matches(int input, unsigned character) {
    switch (input) {
    case any: return true;
    case control: return character < 32;
    case digit: return character == ' ' || (character >= '0' && character <= '9');
    default: return character == static_cast<unsigned>(input);
    }
}

constexpr Table built() {
    Table result{};
    for (const Row& row : rows) {
        for (unsigned character = 0; character < 256; ++character) {
            if (matches(row.input, character)) result[row.state][character] = {row.act, row.next, row.again};
        }
    }
    return result;
}

} // namespace

constinit const Table table = built();

} // namespace velorn::screen
