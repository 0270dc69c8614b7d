// What a received chunk shows in the terminal.
#pragma once

#include "core/events.h"
#include "core/frm_terminal.h"
#include "runtime/event_loop.h"

#include <string>
#include <string_view>

namespace velorn {

class TerminalOutput {
  public:
    TerminalOutput(EventLoop& loop, const Events& events, FrmTerminal& frmTerminal)
        : loop_(loop), events_(events), frmTerminal_(frmTerminal) {}

    // The chunk with its backspaces carried out, line feeds removed and one put behind each CR, with the time
    // when time stamps are on. A backspace at its beginning takes the last character of the screen. Time
    // stamps on and a LOG file open: the prepared text also goes to the LOG.
    void terminalausgabe(std::string_view text);

    // Above this many characters the terminal loses its oldest ones, all before the 50000th.
    static constexpr std::size_t most_characters = 550'000;

  private:
    EventLoop& loop_;
    const Events& events_;
    FrmTerminal& frmTerminal_;
};

} // namespace velorn
