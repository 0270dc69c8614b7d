// The LOG file: everything that is received, in a file that the person opens by hand.
//
// Not a byte is lost without the person's word. Where it can't be written, a box asks whether to try again or
// to give up; what arrives while it is open waits in order and goes behind. A file that was deleted while it
// was open is put together again from what is still held of it.
#pragma once

#include "core/events.h"
#include "core/frm_terminal.h"
#include "core/settings.h"
#include "core/settings_files.h"
#include "runtime/files.h"
#include "runtime/outside.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace velorn {

class LogFile {
  public:
    LogFile(EventLoop& loop, Files& files, Dialogs& dialogs, Events& events, Settings& settings,
            SettingsFiles& settings_files, FrmTerminal& frmTerminal);

    void mnuOpenLog_Click();
    void mnuCloseLog_Click();

    // What waits behind an open box at most; what goes beyond it is dropped.
    static constexpr std::size_t most_waiting = std::size_t{64} << 20U;

  private:
    // The name that the person chose, free to be written; nothing: no LOG.
    std::optional<std::string> chosen_name();
    void write(std::string_view text);
    Outcome write_waiting();
    void write_what_waits_for_the_last_time();
    // After a failure: the file by its name, with all that was written before.
    Outcome open_anew(const Failure& why);
    void show_open(bool open);

    EventLoop& loop_;
    Files& files_;
    Dialogs& dialogs_;
    Settings& settings_;
    SettingsFiles& settings_files_;
    FrmTerminal& frmTerminal_;

    std::unique_ptr<BinaryFile> file_;
    std::string path_;
    std::int64_t position_ = 1; // where the next byte goes
    int opened_ = 0;            // which LOG it is, since another one may be open when a box is answered
    std::string waiting_;
    bool asking_ = false;
    bool fblogmerk_ = false; // remote control was left for the LOG and comes back after it
};

} // namespace velorn
