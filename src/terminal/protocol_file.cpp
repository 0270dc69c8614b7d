#include "terminal/protocol_file.h"

#include <algorithm>
#include <string>

namespace velorn {

ProtocolFile::ProtocolFile(const EventLoop& loop, Files& files, Events& events, const Module1& module1,
                           FrmTerminal& frmTerminal)
    : loop_(loop), files_(files), module1_(module1), frmTerminal_(frmTerminal) {
    events.protocol_mark.connect([this](std::string_view mark) { write_mark(mark); });
}

void ProtocolFile::write_mark(std::string_view mark) {
    const std::string entry = "\r\n" + date_and_time_text(loop_.local_time()) + std::string(mark);
    if (file_) {
        write(entry);
    } else {
        append(entry);
    }
}

void ProtocolFile::append(std::string_view text) {
    if (file_) {
        write(text);
        return;
    }
    open();
    write(text);
    close();
}

void ProtocolFile::open() {
    close();
    auto opened = files_.open(module1_.protokollname, OpenMode::read_write);
    if (!opened) return;
    const Result<std::int64_t> length = (*opened)->length();
    if (!length) return;
    file_ = std::move(opened).value();
    position_ = std::max<std::int64_t>(1, *length);
    frmTerminal_.protdatei = frmTerminal_.logdatei == 1 ? 2 : 1;
}

void ProtocolFile::write(std::string_view text) {
    if (file_ && file_->write(position_, text).ok()) position_ += static_cast<std::int64_t>(text.size());
}

void ProtocolFile::close() {
    file_.reset();
    frmTerminal_.protdatei = 0;
}

} // namespace velorn
