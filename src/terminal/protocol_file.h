// The site's protocol file: marks for connections, hang-ups and remote control, and captures.
//
// Writing begins at the position that equals the file's length, at least 1: the file's last byte is
// overwritten. Kept: the file always ends in the line end of its last entry. Nothing is reported: what can't
// be written is not written.
#pragma once

#include "core/events.h"
#include "core/frm_terminal.h"
#include "core/module1.h"
#include "runtime/event_loop.h"
#include "runtime/files.h"

#include <cstdint>
#include <memory>
#include <string_view>

namespace velorn {

class ProtocolFile {
  public:
    ProtocolFile(const EventLoop& loop, Files& files, Events& events, const Module1& module1,
                 FrmTerminal& frmTerminal);

    // CR LF, date and time, and a mark such as "  CONNECT ". While a capture runs it goes behind what was
    // captured.
    void write_mark(std::string_view mark);

    // Opens the file, writes and closes it.
    void append(std::string_view text);

    // A capture keeps the file open.
    void open();
    void write(std::string_view text);
    void close();

  private:
    const EventLoop& loop_;
    Files& files_;
    const Module1& module1_;
    FrmTerminal& frmTerminal_;
    std::unique_ptr<BinaryFile> file_;
    std::int64_t position_ = 1;
};

} // namespace velorn
