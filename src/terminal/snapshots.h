// Snapshots: the text of the mirrored screen, kept for the record in `txtsnapshot` or, where the site has a
// protocol file, in that file; shown and printed.
#pragma once

#include "core/events.h"
#include "core/frm_terminal.h"
#include "core/module1.h"
#include "runtime/event_loop.h"
#include "runtime/outside.h"
#include "terminal/protocol_file.h"

#include <string>

namespace velorn {

// The screen's rows as lines of text: four blanks before each, no blanks at their ends, empty rows only where
// a row with text follows.
std::string text_of(const Schirm& schirm);

class Snapshots {
  public:
    Snapshots(const EventLoop& loop, Dialogs& dialogs, Printer& printer, const Events& events,
              Module1& module1, FrmTerminal& frmTerminal, ProtocolFile& protocol_file);

    // The text that a site keeps: longer than this, its beginning goes.
    static constexpr std::size_t longest = 20'000;

  private:
    void snapshot_Click();
    void looksnap_Click();
    void drucken_Click();

    const EventLoop& loop_;
    Dialogs& dialogs_;
    Printer& printer_;
    const Events& events_;
    Module1& module1_;
    FrmTerminal& frmTerminal_;
    ProtocolFile& protocol_file_;
    bool printing_ = false; // its dialog is open
};

} // namespace velorn
