// Reaching the selected site, on one of three routes: the local modem dials its number; a TCP connection goes
// to its address; or a TCP connection goes to a gateway with two modems, and the first that answers dials the
// number. What comes of it is told by the links: TcpLink watches the connection and the gateway's attempts,
// the receive path sees the modem's answers.
#pragma once

#include "core/events.h"
#include "core/frm_terminal.h"
#include "core/gateway.h"
#include "core/module1.h"
#include "core/settings.h"
#include "core/telefonbuch.h"
#include "links/mscomm.h"
#include "links/output.h"
#include "links/tcp_link.h"
#include "links/winsock.h"
#include "phonebook/frm_telefon.h"
#include "phonebook/phonebook_window.h"
#include "runtime/event_loop.h"
#include "runtime/outside.h"
#include "terminal/protocol_file.h"

#include <string>
#include <string_view>

namespace velorn {

// The port of the direct route, 1 to 65535, by the keywords of the remark; else the standard port, a text.
// Error 380 where that is no port number.
Result<int> port_of(std::string_view bemerkung, std::string_view standard);

class Dialling {
  public:
    Dialling(const EventLoop& loop, Dialogs& dialogs, Events& events, const Gateway& gateway,
             Module1& module1, Settings& settings, const Telefonbuch& book, FrmTerminal& frmTerminal,
             FrmTelefon& frmtelefon, MSComm& MSComm1, Winsock& Winsock1, Output& output, TcpLink& tcp_link,
             ProtocolFile& protocol_file, PhonebookWindow& window);

    // Dials the selected entry. With none selected it is told, and nothing is dialled.
    void Command1_Click();
    // Connects to the gateway's second modem.
    void ZWEITESMODEM();
    // Dials through the gateway's modem that has answered.
    void DIALTELNET();

    static constexpr int seconds_to_connect = 10;
    static constexpr std::int16_t login_ticks = 80; // of 100 ms

  private:
    struct Endpoint {
        int port;
        std::string_view label;
    };

    const PhoneEntry& entry() const;
    void work_out_istip();
    void end_former_attempt();
    void tell(std::string_view text);
    void set_speed(std::string_view bemerkung);
    bool connect_directly();
    void dial_with_modem();
    void reach_gateway(const Endpoint& modem);
    void enter_protocol(std::string_view what);
    void name_site();
    void close_window();
    void Timer4_Tick();
    void Timer20_Tick();

    const EventLoop& loop_;
    Dialogs& dialogs_;
    const Gateway& gateway_;
    Module1& module1_;
    Settings& settings_;
    const Telefonbuch& book_;
    FrmTerminal& frmTerminal_;
    FrmTelefon& frmtelefon_;
    MSComm& MSComm1_;
    Winsock& Winsock1_;
    Output& output_;
    TcpLink& tcp_link_;
    ProtocolFile& protocol_file_;
    PhonebookWindow& window_;
    std::int16_t called_ = -1;  // the entry that was selected when the present attempt began
    bool login_wanted_ = false; // the present direct attempt goes to the port that asks for a login
};

} // namespace velorn
