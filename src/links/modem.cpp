#include "links/modem.h"

#include "links/ask_modem.h"
#include "runtime/text.h"

namespace velorn {

namespace {

constexpr int answer_ticks = 10;
constexpr std::string_view at = "AT\r";

std::string text_of(const Failure& failure) {
    if (failure.is(RunTimeError::invalid_port)) return std::string(" ungültige Anschlussnummer "_w);
    if (failure.is(RunTimeError::port_already_open)) return std::string(" Anschluß ist bereits geöffnet "_w);
    return " Fehler " + std::to_string(failure.number);
}

} // namespace

Modem::Modem(EventLoop& loop, Dialogs& dialogs, Module1& module1, Settings& settings,
             SettingsFiles& settings_files, FrmTerminal& frmTerminal, WaitCounter& waits, Output& output,
             MSComm& MSComm1, PortOpening& port_opening)
    : loop_(loop),
      dialogs_(dialogs),
      module1_(module1),
      settings_(settings),
      settings_files_(settings_files),
      frmTerminal_(frmTerminal),
      waits_(waits),
      output_(output),
      MSComm1_(MSComm1),
      port_opening_(port_opening) {
    frmTerminal_.modinit.Click = [this] { frmTerminal_.Timer6.Enabled = true; };
    frmTerminal_.modsearch.Click = [this] { frmTerminal_.Timer11.Enabled = true; };
    frmTerminal_.Timer6.Tick = [this] { Timer6_Tick(); };
    frmTerminal_.Timer11.Tick = [this] { Timer11_Tick(); };
}

void Modem::Timer6_Tick() {
    write_terminal(frmTerminal_, "\ninitialisiere Modem\r\r\n");
    const auto result = initialised();
    if (!result) return;
    write_terminal(frmTerminal_, std::string(*result) + "\r\n");
    frmTerminal_.Timer6.Enabled = false;
}

std::optional<std::string_view> Modem::initialised() {
    for (int i = 0; i < 2; ++i) {
        if (!ask_modem(module1_, output_, waits_, at, answer_ticks)) return std::nullopt;
    }
    if (module1_.warteok) {
        write_terminal(frmTerminal_, "\r\n");
        return "Modem meldet sich nicht";
    }
    const std::string command = "AT" + module1_.txtmodinit + "\r";
    if (!ask_modem(module1_, output_, waits_, command, answer_ticks)) return std::nullopt;
    return module1_.warteok ? "Modeminitialisierung falsch?" : "Modem ist initialisiert";
}

void Modem::Timer11_Tick() {
    write_terminal(frmTerminal_, "\nsuche Modem an COM1 - COM128\r\r\n");
    bool taken = false;
    for (int port = 1; port <= last_searched_port && !taken; ++port) {
        const std::optional<bool> over = try_port(port);
        if (!over) return;
        taken = *over;
    }
    if (!taken) {
        (void)MSComm1_.set_PortOpen(false);
        if (const Result<std::int16_t> stored = settings_.comport.as_i16())
            (void)MSComm1_.set_CommPort(*stored);
    }
    port_opening_.show_state();
    frmTerminal_.Timer11.Enabled = false;
}

std::optional<bool> Modem::try_port(int port) {
    write_terminal(frmTerminal_, "teste COM" + std::to_string(port));
    write_terminal(frmTerminal_, opened_for_search(port));
    // Kept: a port that doesn't exist is asked too, and the wait runs out.
    for (int attempt = 0; attempt < 2; ++attempt) {
        if (!ask_modem(module1_, output_, waits_, at, answer_ticks)) return std::nullopt;
        if (!module1_.warteok) break;
    }
    if (module1_.warteok) {
        write_terminal(frmTerminal_, "   kein Modem gefunden ");
    } else {
        const Answer answer =
            dialogs_.message_box("Modem gefunden, soll dieser Anschluß genutzt werden?"_w, 4, "Modemsuche");
        if (loop_.ended()) return std::nullopt;
        if (answer == Answer::yes) {
            settings_.comport = static_cast<std::int16_t>(port);
            settings_files_.saveeinst();
            return true;
        }
    }
    write_terminal(frmTerminal_, "\r\n");
    return false;
}

// What is to be said about the error that happened last, if any.
std::string Modem::opened_for_search(int port) {
    std::string said;
    const auto note = [&said](const Outcome& outcome) {
        if (!outcome) said = text_of(outcome.failure());
    };
    note(MSComm1_.set_PortOpen(false));
    note(MSComm1_.set_CommPort(port));
    note(MSComm1_.set_PortOpen(true));
    note(MSComm1_.set_Settings(settings_.comsettings.text()));
    if (const Result<std::int16_t> handshake = settings_.comhandshake.as_i16()) {
        note(MSComm1_.set_Handshaking(*handshake));
    } else {
        note(handshake.failure());
    }
    return said;
}

} // namespace velorn
