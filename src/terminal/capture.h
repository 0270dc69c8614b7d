// Captures: a stretch of what is received, written into the site's protocol file. The controller starts and
// ends one by its marks, the person by the toolbar; it also ends after its time and at its greatest length.
#pragma once

#include "core/frm_terminal.h"
#include "core/module1.h"
#include "links/output.h"
#include "terminal/protocol_file.h"
#include "terminal/receive.h"

#include <cstdint>

namespace velorn {

class Capture {
  public:
    Capture(Module1& module1, FrmTerminal& frmTerminal, Output& output, Receive& receive,
            ProtocolFile& protocol_file);

    // The controller's start mark was found.
    void begin() { begin(seconds_by_controller); }

    static constexpr std::int16_t most_characters = 8000;
    static constexpr std::int16_t seconds_by_controller = 50;
    static constexpr std::int16_t seconds_by_button = 900;
    static constexpr std::int16_t seconds_of_warning = 10;

  private:
    void begin(std::int16_t seconds);
    void take(SearchWindow& ziel);
    void protokoll_Click();
    void Timer10_Tick();
    void show_seconds();
    void close_file();
    void end_notices();
    void end_by_controller();

    Module1& module1_;
    FrmTerminal& frmTerminal_;
    Output& output_;
    SearchWindow& txtvergl_;
    ProtocolFile& protocol_file_;
    std::int16_t prottakte_ = 0; // seconds left of the notices
    bool protknopf_ = false;     // the toolbar's button is down
};

} // namespace velorn
