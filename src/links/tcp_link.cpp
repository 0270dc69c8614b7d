#include "links/tcp_link.h"

#include "core/dial_boxes.h"
#include "runtime/text.h"

namespace velorn {

namespace {

constexpr int refused = 10061;
constexpr std::int16_t beyond_the_limit = 12;
constexpr int until_gateway_listens = 10; // ticks
constexpr int fresh_dial = 31;            // ticks of dialalter, about a minute
constexpr std::string_view xon = "\x11";
constexpr std::string_view hello = "\x08";
constexpr std::string_view failed = "\r\nVersuch fehlgeschlagen";

} // namespace

TcpLink::TcpLink(const Events& events, Module1& module1, FrmTerminal& frmTerminal, WaitCounter& waits,
                 Output& output, Winsock& Winsock1)
    : events_(events),
      module1_(module1),
      frmTerminal_(frmTerminal),
      waits_(waits),
      output_(output),
      Winsock1_(Winsock1) {
    Winsock1_.Connected = [this] { Winsock1_Connect(); };
    Winsock1_.Error = [this](int number, const std::string& description) {
        Winsock1_Error(number, description);
    };
    frmTerminal_.Timer23.Tick = [this] { Timer23_Tick(); };
    frmTerminal_.Timer24.Tick = [this] { Timer24_Tick(); };
    frmTerminal_.Timer25.Tick = [this] { Timer25_Tick(); };
}

void TcpLink::begin_attempt(std::string host, int port) {
    stop_attempt();
    ++attempt_;
    ++module1_.anrufnr;
    module1_.tcpoffen = false;
    module1_.gatewayoffen = false;
    frmTerminal_.Timer24.Enabled = false;
    module1_.verbindungticks = 0;
    Winsock1_.RemoteHost = std::move(host);
    Winsock1_.RemotePort = port;
    Winsock1_.Connect();
}

void TcpLink::stop_attempt() {
    frmTerminal_.Timer23.Enabled = false;
    frmTerminal_.Timer25.Enabled = false;
    events_.direct_attempt_over();
}

void TcpLink::Winsock1_Connect() {
    stop_attempt();
    const int attempt = ++attempt_;
    module1_.tcpoffen = true;
    if (over_gateway(module1_)) {
        write_terminal(frmTerminal_, "\n\r\nVerbindung zum tarnwerk-Modem hergestellt!");
        output_.sendetext(xon);
        if (module1_.protokollan) events_.protocol_mark("  CONNECT ");
        if (!waits_.warte(until_gateway_listens)) return;
        // It may have been lost or given up meanwhile; the number would then go to the serial port, or to
        // another partner.
        if (!module1_.tcpoffen || attempt_ != attempt) return;
        module1_.gatewayoffen = true;
        events_.gateway_ready();
        return;
    }
    output_.sendetext(hello);
    write_terminal(frmTerminal_, "\n\r\nVerbindung hergestellt");
    module1_.gatewayoffen = true;
    const bool logged_in = module1_.usernamegesehen && module1_.passwordgesehen;
    if (module1_.dialalter < fresh_dial && !module1_.wiederverbinden && !module1_.autoverbindung && logged_in)
        frmTerminal_.Timer4.Enabled = true;
    module1_.autoverbindung = false;
    if (module1_.protokollan) events_.protocol_mark("  CONNECT ");
}

void TcpLink::Winsock1_Error(int number, const std::string& description) {
    if (over_gateway(module1_) && number == refused) {
        module1_.verbindungticks = beyond_the_limit; // Timer23 ends the attempt at its next tick
        return;
    }
    write_terminal(frmTerminal_, "\n\r\nWinsock Fehler " + std::to_string(number) + ' ' + description +
                                     "\r\nVerbindung wird getrennt");
    Winsock1_.Close();
    module1_.tcpoffen = false;
}

// A second of an attempt has gone by.
bool TcpLink::is_given_up(int seconds) {
    ++module1_.verbindungticks;
    write_terminal(frmTerminal_, ".");
    if (module1_.verbindungticks < seconds) return false;
    Winsock1_.Close();
    return true;
}

// The gateway's modem is being reached.
void TcpLink::Timer23_Tick() {
    if (!is_given_up(seconds_to_connect)) return;
    write_terminal(frmTerminal_, failed);
    frmTerminal_.Timer23.Enabled = false;
    if (module1_.modem2versucht) {
        write_terminal(frmTerminal_, "  Bitte nochmal versuchen");
    } else {
        module1_.modem2versucht = true;
        events_.second_gateway_modem();
    }
}

// The gateway dials the site.
void TcpLink::Timer24_Tick() {
    if (!is_given_up(seconds_to_dial)) return;
    write_terminal(frmTerminal_, "\r\nModemeinwahl fehlgeschlagen (besetzt,...)");
    if (module1_.modem2versucht) write_terminal(frmTerminal_, "\r\n  Bitte nochmal versuchen\r\n");
    module1_.tcpoffen = false;
    frmTerminal_.Timer24.Enabled = false;
}

// Kept: nobody enables it, the direct route counts on its own.
void TcpLink::Timer25_Tick() {
    if (!is_given_up(seconds_to_connect)) return;
    write_terminal(frmTerminal_, failed);
    frmTerminal_.Timer23.Enabled = false;
    frmTerminal_.Timer25.Enabled = false;
}

} // namespace velorn
