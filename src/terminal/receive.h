// The receive pipeline: everything that arrives on either link comes through here.
//
// There is no framing and no line buffer. Each chunk is appended to the search window `txtvergl`, and after
// each append the whole window is searched for a fixed list of keywords in a fixed order. A hit sets a flag,
// starts a timer or sends an answer, and mostly empties the window, so that what stood behind the keyword in
// that chunk is lost for the keywords still to come. Long operations elsewhere set a flag and wait until the
// scanner clears it.
//
// A pass keeps its own chunk: one that runs inside another's dialog doesn't replace it.
#pragma once

#include "core/events.h"
#include "core/module1.h"
#include "core/settings.h"
#include "links/output.h"
#include "runtime/files.h"
#include "terminal/search_window.h"
#include "terminal/terminal_output.h"

#include <string>
#include <string_view>

namespace velorn {

// What the pipeline has for those above it.
struct ReceiveEvents {
    // The mirrored display is on and takes the chunk; over_tcp tells which link it came from, capture_taken
    // that the scanner has already begun a capture for a start mark of this pass.
    Event<std::string_view, bool, bool> screen_input;
    // The same while a visualisation is attached.
    Event<std::string_view, bool> visual_input;
    // A download has claimed the stream: the chunk goes behind the text of its window, which is emptied first
    // if `emptied` is set.
    Event<std::string_view, bool> download_input;
    // The controller starts a capture into the protocol file.
    Event<> capture_begins;
    // A capture is running: look at the window, write what it may, find its end.
    Event<SearchWindow&> capture_input;
    // Parameter memory is being read: look at the window.
    Event<SearchWindow&> block_input;
};

class Receive {
  public:
    Receive(EventLoop& loop, Files& files, const Events& events, Module1& module1, const Settings& settings,
            FrmTerminal& frmTerminal, MSComm& MSComm1, Winsock& Winsock1, Output& output);

    ReceiveEvents receive_events;
    SearchWindow txtvergl;

    void MSComm1_OnComm();
    void Winsock1_DataArrival();

    // Steps 1 to 25 on the chunk; `empfangen` loses its NULs and takes cp1252 umlauts on the way. True: a
    // capture's start mark was taken in this pass.
    bool empfangauswerten(std::string& empfangen, SearchWindow& ziel);

    // The window is trimmed before the append where it is longer than this.
    static constexpr std::size_t most_searched = 50'000;

  private:
    void take(std::string& empfangen, bool over_tcp);
    void trim(SearchWindow& ziel) const;
    void remote_control_ended(SearchWindow& ziel);
    void banner(SearchWindow& ziel, Keyword keyword, std::size_t name_at, std::size_t length_above);
    void name_prompt(SearchWindow& ziel, Keyword keyword, std::size_t length_above);
    void connected(SearchWindow& ziel);
    void append_collection_log();
    void login(SearchWindow& ziel);
    void answers(SearchWindow& ziel);
    void continuation(SearchWindow& ziel);

    EventLoop& loop_;
    Files& files_;
    const Events& events_;
    Module1& module1_;
    const Settings& settings_;
    FrmTerminal& frmTerminal_;
    MSComm& MSComm1_;
    Winsock& Winsock1_;
    Output& output_;
    TerminalOutput terminal_output_;
    std::string line_event_; // what the line last told; shown nowhere
};

} // namespace velorn
