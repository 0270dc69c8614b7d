// The receive path alone, between two links in memory: nothing above it listens but a log of what it raises,
// and two stand-ins for the capture that switch `protokollaktiv` as its marks ask.
#pragma once

#include "core/events.h"
#include "core/frm_terminal.h"
#include "core/module1.h"
#include "core/settings.h"
#include "links/mscomm.h"
#include "links/output.h"
#include "links/winsock.h"
#include "runtime/virtual_event_loop.h"
#include "support/fake_serial_port.h"
#include "support/fake_tcp_client.h"
#include "support/memory_files.h"
#include "terminal/receive.h"

#include <string>
#include <vector>

namespace velorn::test {

struct ReceiveRig {
    VirtualEventLoop loop;
    MemoryFiles files;
    FakeSerialPort serial{loop};
    FakeTcpClient tcp{loop};
    Events events;
    Module1 module1;
    Settings settings;
    FrmTerminal frmTerminal{loop};
    MSComm MSComm1{loop, serial};
    Winsock Winsock1{tcp};
    Output output{module1, frmTerminal, MSComm1, Winsock1};
    Receive receive{loop, files, events, module1, settings, frmTerminal, MSComm1, Winsock1, output};

    // What was raised and sent, in order: "log:...", "mark:...", "closelog", "serial:...", "screen:..." and
    // so on.
    std::vector<std::string> news;

    static constexpr const char* collection_log = "c:\\abholung.log";

    ReceiveRig() {
        module1.txtanrufer = "Benutzer";
        settings.autoholpfad = collection_log;
        (void)MSComm1.set_InputLen(0);
        (void)MSComm1.set_PortOpen(true);
        serial.on_write = [this](std::string_view bytes) { tell("serial:", bytes); };
        frmTerminal.mnuCloseLog.Click = [this] { tell("closelog", {}); };
        events.log_text.connect([this](std::string_view text) { tell("log:", text); });
        events.protocol_mark.connect([this](std::string_view text) { tell("mark:", text); });

        ReceiveEvents& up = receive.receive_events;
        up.screen_input.connect([this](std::string_view text, bool over_tcp, bool) {
            tell(over_tcp ? "tcp screen:" : "screen:", text);
        });
        up.visual_input.connect([this](std::string_view text, bool over_tcp) {
            tell(over_tcp ? "tcp visual:" : "visual:", text);
        });
        up.download_input.connect([this](std::string_view text, bool emptied) {
            tell(emptied ? "emptied download:" : "download:", text);
        });
        up.capture_begins.connect([this] {
            tell("capture begins", {});
            module1.protokollaktiv = true;
        });
        up.capture_input.connect([this](SearchWindow& ziel) {
            tell("capture:", ziel.text());
            const std::size_t p = ziel.find(Keyword::capture_ends);
            if (p == 0) return;
            ziel.cut_to(p + 3);
            module1.protokollaktiv = false;
        });
        up.block_input.connect([this](SearchWindow& ziel) { tell("block:", ziel.text()); });
    }

    void receive_serial(std::string_view chunk) {
        serial.arrives(chunk);
        loop.settle();
    }
    void receive_tcp(std::string_view chunk) {
        tcp.arrives(chunk);
        loop.settle();
    }

    std::string window() const { return std::string(receive.txtvergl.text()); }
    const std::string& terminal() const { return frmTerminal.txtterm.Text(); }
    std::string sent() { return serial.take_written(); }
    std::vector<std::string> take_news() { return std::exchange(news, {}); }

  private:
    void tell(std::string what, std::string_view text) {
        what += text;
        news.push_back(std::move(what));
    }
};

} // namespace velorn::test
