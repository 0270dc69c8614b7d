// What an unattended run tells: in the terminal, and in the log file of the run where there is one. Errors of
// the log are ignored: a run goes on without it.
#pragma once

#include "core/frm_terminal.h"
#include "core/module1.h"
#include "core/settings.h"
#include "runtime/event_loop.h"
#include "runtime/files.h"

#include <string_view>

namespace velorn {

// What a run has come to so far.
struct CollectionTally {
    int asked = 0;    // sites whose turn it was
    int reached = 0;  // connections that came about
    int finished = 0; // downloads that went to their end and were saved
    long values = 0;  // data sets saved
};

class CollectionLog {
  public:
    CollectionTally tally;

    CollectionLog(const EventLoop& loop, Files& files, const Module1& module1, const Settings& settings,
                  FrmTerminal& frmTerminal)
        : loop_(loop), files_(files), module1_(module1), settings_(settings), frmTerminal_(frmTerminal) {}

    // A line of its own with the time in front, "hh:mm:ss KEIN CONNECT", to both; `log_only` follows in the
    // log alone.
    void tell(std::string_view what, std::string_view log_only = {});

    // As it stands, to one of the two.
    void to_terminal(std::string_view text);
    void to_log(std::string_view text);

  private:
    const EventLoop& loop_;
    Files& files_;
    const Module1& module1_;
    const Settings& settings_;
    FrmTerminal& frmTerminal_;
};

} // namespace velorn
