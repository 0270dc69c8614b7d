// The link to a site's visualisation program: it is started, gets what the controller sends while remote
// control is on, block by block, and talks back. The two programs share one text each way: txttovis goes to
// the visualisation, txttoterm comes from it.
#pragma once

#include "core/frm_terminal.h"
#include "core/module1.h"
#include "core/wait_counter.h"
#include "links/output.h"
#include "runtime/files.h"
#include "runtime/outside.h"
#include "terminal/receive.h"

#include <string>
#include <string_view>

namespace velorn {

class Visualisation {
  public:
    Visualisation(Files& files, Dialogs& dialogs, Processes& processes, VisualisationChannel& channel,
                  Module1& module1, FrmTerminal& frmTerminal, WaitCounter& waits, Output& output,
                  ReceiveEvents& receive_events);

    // Starts the site's program and begins to relay, a second later.
    void visustart();

    // What a block may hold before its end mark has come; of a longer one the beginning goes.
    static constexpr std::size_t longest_block = std::size_t{1} << 19;

  private:
    void take(std::string_view empfangen, bool over_tcp);
    bool hand_over_behind(std::string_view end_mark);
    void txttoterm_Change();
    void Timer28_Tick();

    Files& files_;
    Dialogs& dialogs_;
    Processes& processes_;
    VisualisationChannel& channel_;
    Module1& module1_;
    FrmTerminal& frmTerminal_;
    WaitCounter& waits_;
    Output& output_;
    std::string txttovis2_; // the block that is arriving
    TextBox txttoterm_;
    std::string last_words_; // the visualisation's text while nobody listens to it yet
    bool starting_ = false;  // the program has a second to come up
    int start_ = 0;          // which one it is
    bool linked_ = false;    // txttoterm follows the visualisation
};

} // namespace velorn
