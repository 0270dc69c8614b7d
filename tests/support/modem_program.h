// A program with a terminal and a protocol file's marks to read, and a modem that answers when it is told to.
#pragma once

#include "support/sent_at.h"

#include <set>
#include <string>
#include <utility>
#include <vector>

namespace velorn::test {

struct ModemProgram : TestProgram {
    std::vector<std::string> marks;

    ModemProgram() {
        start();
        module1.txtmodinit = "e1";
        frmTerminal.txtterm.set_Text({});
        program.events.protocol_mark.connect([this](std::string_view mark) { marks.emplace_back(mark); });
    }
    // A modem answers "OK" 300 ms after each of these, the n-th one counted from 1.
    void answers(SentAt& sent, std::set<int> to) {
        sent.on_sent = [this, to = std::move(to), count = 0](std::string_view) mutable {
            if (!to.contains(++count)) return;
            loop.post_at(loop.now_ms() + 300, [this] { serial.arrives("OK\r\n"); });
        };
    }
    std::string own_words() const {
        std::string text = terminal();
        for (std::size_t at = 0; (at = text.find("OK\r\n")) != std::string::npos;) text.erase(at, 4);
        return text;
    }
};

} // namespace velorn::test
