#include "links/lamps.h"

#include "runtime/text.h"

namespace velorn {

namespace {

struct TcpRow {
    TcpState state;
    std::string_view text;
    Colour colour;
    bool hides_interruption;
};

constexpr TcpRow tcp_rows[] = {
    {TcpState::closed, "TCP/IP geschl. (0)", colour::red, true},
    {TcpState::open, "TCP/IP offen (1)", colour::red, false},
    {TcpState::listening, "TCP/IP lauschen (2)", colour::red, false},
    {TcpState::pending, "TCP/IP Verb. anstehend (3)", colour::red, false},
    {TcpState::resolving, "TCP/IP Host Name auflösen (4)"_w, colour::red, false},
    {TcpState::resolved, "TCP/IP Host Name aufgelöst (5)"_w, colour::red, false},
    {TcpState::connecting, "TCP/IP connecting (6)", colour::red, false},
    {TcpState::connected, "TCP/IP verbunden (7)", colour::green, true},
    {TcpState::closing, "TCP/IP Partner beendet (8)", colour::red, false},
    {TcpState::error, "TCP/IP Fehler (9)", colour::red, false},
};

} // namespace

Lamps::Lamps(FrmTerminal& frmTerminal, Winsock& Winsock1) : frmTerminal_(frmTerminal), Winsock1_(Winsock1) {
    frmTerminal_.Timer7.Tick = [this] { Timer7_Tick(); };
    frmTerminal_.Timer8.Tick = [this] { Timer8_Tick(); };
    frmTerminal_.Timer12.Tick = [this] { Timer12_Tick(); };
}

void Lamps::Timer7_Tick() {
    frmTerminal_.Picture4.BackColor = colour::green;
    frmTerminal_.Picture7.BackColor = colour::green;
    frmTerminal_.Timer7.Enabled = false;
}

void Lamps::Timer8_Tick() {
    frmTerminal_.Picture3.BackColor = colour::green;
    frmTerminal_.Picture8.BackColor = colour::green;
    frmTerminal_.Timer8.Enabled = false;
}

void Lamps::Timer12_Tick() {
    const TcpState state = Winsock1_.State();
    for (const TcpRow& row : tcp_rows) {
        if (row.state != state) continue;
        frmTerminal_.Label5.Caption = row.text;
        frmTerminal_.Picture6.BackColor = row.colour;
        if (row.hides_interruption) frmTerminal_.picipunterbr.Visible = false;
    }
}

} // namespace velorn
