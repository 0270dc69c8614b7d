// The parser of the mirrored display's stream: reads what the controller's display shows into `schirm`.
//
// What a sequence asks for happens at its character, not after the chunk. A chunk that ends in the middle of
// a sequence continues in the next one. Where an action opens a dialog, the state is set first, so what
// arrives meanwhile is read as new.
#pragma once

#include "core/frm_terminal.h"
#include "runtime/event.h"
#include "terminal/screen_table.h"

#include <cstdint>
#include <string_view>

namespace velorn {

struct ScreenState {
    std::int16_t merkzeile = 1, merkspalte = 1; // the cursor that was kept
    std::int32_t aenderungen = 0;               // cells changed since the last paint
    std::int16_t maxzeile = 0;                  // highest row reached, statistics only
    bool blockmarke = false;                    // block-inverse cells exist
    bool kalender = false;                      // the weekly calendar is on
    std::int16_t rotan = 0;                     // 1: red text
    std::int16_t rotgenutzt = 0;                // 1: red was used, cells are coloured one by one
    bool inversan = false;                      // inverse text
    bool graph96an = false;                     // a day graph's text is arriving
    std::int16_t linienpos = 0;                 // digits of the line command so far, up to 13
    std::int16_t rx1 = 0, ry1 = 0, rx2 = 0, ry2 = 0, linienart = 0; // what they say, 0 to 999; 0 to 9
};

// What the stream asks of others, each at its character.
struct ScreenEvents {
    // A line from (x1, y1) to (x2, y2), as the stream says them: 0 to 999; drawn or rubbed out.
    Event<int, int, int, int, bool> line;
    Event<> new_screen; // the display is back in its normal size, without a calendar
    Event<> calendar;   // the weekly calendar begins
    Event<> capture_begins;
    Event<bool> log_wanted; // open the LOG file and acknowledge; true: it came over TCP
    Event<> evaluation_wanted;
    Event<std::string_view> day_graph; // its text, complete
};

class ScreenParser {
  public:
    ScreenParser(const EventLoop& loop, FrmTerminal& frmTerminal) : loop_(loop), frmTerminal_(frmTerminal) {}

    ScreenEvents screen_events;
    ScreenState state;

    // over_tcp: which link the chunk came from. capture_taken: a capture has been begun already for a start
    // mark in this chunk.
    void feed(std::string_view text, bool over_tcp, bool capture_taken = false);

    // A day graph's text beyond this is dropped.
    static constexpr std::size_t longest_graph_text = 65'536;

  private:
    struct Pass {
        bool over_tcp;
        bool capture_taken;
    };

    void store(std::string_view text);
    void store(char c);
    void take(char c, Pass& pass);
    void run(screen::Act act, char c, Pass& pass);
    void clear();
    void next_line();
    void scroll();
    void blank_row_below();
    void keep_and_set_row(unsigned char n);
    void set_column(unsigned char n);
    void mark_cell(char attribute);
    void invloeschen();
    void block_run();
    void rub_out();
    void begin_line();
    void collect(char c);
    void line_is_complete();
    void keep_graph_text(std::string_view text);
    void graph_ends();
    void mark_cursor();

    const EventLoop& loop_;
    FrmTerminal& frmTerminal_;
    bool beyond_last_column_ = false; // marks of a bar have run over the edge
};

} // namespace velorn
