// A controller of a combined heat and power unit, as it is met at the other end of a line: the shell of its
// real-time operating system. Bytes in, bytes out.
//
// The shell sleeps and hears nothing until SOH (1) wakes it with CR LF '*'. It echoes what is typed, rubs out
// on backspace (8), runs the line on CR, and answers in code page 437 with lines ending in CR LF, then '*'
// again. "--" puts several commands on one line. After ten minutes without a byte it falls asleep again.
// "FERNBED" hands the line to the operator display (display.h) until that ends.
//
// "DUE3", "DUE4" and "DUE5" hand it to a download of quarter-hour values (download_dialogue.h). SOH takes the
// line back at any time: a command that is talking falls silent, a download ends, and the display keeps quiet
// and goes on where it was unless such an order follows; after the download its page comes anew.
//
// Memory is bounded whatever arrives: a line holds 200 characters, and what is typed while a command runs
// goes to a buffer of 256 bytes; the rest is lost, as on the real thing.
#pragma once

#include "plant/commands.h"
#include "plant/display.h"
#include "plant/download_dialogue.h"
#include "plant/machine.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace velorn::plant {

class Controller {
  public:
    static constexpr std::size_t longest_line = 200;
    static constexpr std::size_t type_ahead = 256;

    Controller(EventLoop& loop, std::uint64_t seed);
    ~Controller();
    Controller(const Controller&) = delete;
    Controller& operator=(const Controller&) = delete;

    // What the controller says; called from receive() and from the loop.
    std::function<void(std::string_view)> send;

    // Bytes that were said and that the line hasn't carried yet.
    std::function<std::size_t()> not_carried;

    // The controller hangs up; called from the loop.
    std::function<void()> hang_up;

    void receive(std::string_view bytes);
    // Nobody hears a download any more.
    void caller_is_gone();

    Machine& machine() { return machine_; }
    // The site's name, UTF-8, as the display's head shows it.
    void set_site(std::string name) { site_ = std::move(name); }
    // Whether the display asks for the caller's name before its first page; it does at first.
    void set_asks_for_name(bool on) { asks_for_name_ = on; }
    const Display& display() const { return display_; }

    // What it has recorded, with the seed that it was made with.
    const Recording& recording() const { return recording_; }
    void set_tracks(int tracks) { recording_.tracks = tracks; }
    DownloadDialogue& download() { return download_; }

  private:
    enum class State { asleep, prompt, busy, display, attention, download, restarting };

    void take(char byte);
    void interrupt();
    void begin_attention();
    void heed(char byte);
    void end_attention();
    void begin_download(DownloadDialogue::Kind kind);
    void download_ended(bool by_pc);
    void run_line();
    void run_next();
    void play(std::size_t step);
    void ready();
    void restart();
    void begin_idle_time();
    void say(std::string_view utf8);
    void flush();

    EventLoop& loop_;
    Machine machine_;
    Display display_;
    Recording recording_;
    DownloadDialogue download_;
    std::string site_ = "BHKW Gelmar, Heizzentrale";
    bool asks_for_name_ = true;
    State state_ = State::asleep;
    std::string line_;
    std::string typed_ahead_;
    std::string attention_; // what the display was kept from since SOH
    std::string out_;
    std::vector<std::string> to_run_; // the commands of one line, the next one last
    Answer answer_;
    EventLoop::TaskId pending_;
    EventLoop::TaskId idle_;
};

} // namespace velorn::plant
