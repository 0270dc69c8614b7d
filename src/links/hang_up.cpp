#include "links/hang_up.h"

#include "core/dial_boxes.h"
#include "links/ask_modem.h"
#include "runtime/text.h"

namespace velorn {

namespace {

constexpr int pause_ticks = 10;
constexpr int answer_ticks = 15;
constexpr int until_gateway_hung_up = 20;
constexpr int until_display_is_left = 20;
constexpr int silent_ticks = 50;
constexpr std::string_view ended = "\r\n\r\nVerbindung beendet";

const Variant zero{std::int16_t{0}};

} // namespace

HangUp::HangUp(EventLoop& loop, Dialogs& dialogs, const Events& events, Module1& module1,
               const Settings& settings, FrmTerminal& frmTerminal, WaitCounter& waits, Output& output,
               Winsock& Winsock1)
    : loop_(loop),
      dialogs_(dialogs),
      events_(events),
      module1_(module1),
      settings_(settings),
      frmTerminal_(frmTerminal),
      waits_(waits),
      output_(output),
      Winsock1_(Winsock1) {
    frmTerminal_.mnuHangUp.Click = [this] { mnuHangUp_Click(); };
    frmTerminal_.tbrToolBar("HangUpPhone").Click = [this] { HangUpPhone_Click(); };
    frmTerminal_.Timer3.Tick = [this] { Timer3_Tick(); };
    frmTerminal_.Timer20.Tick = [this] { Timer20_Tick(); };
    frmTerminal_.Timer31.Tick = [this] { Timer31_Tick(); };
}

// One step of hanging up. False: the program ends, or somebody dials anew meanwhile, and what is still to be
// sent would go to the new connection.
bool HangUp::goes_on(bool waited, int anrufnr) const { return waited && module1_.anrufnr == anrufnr; }

bool HangUp::mnuHangUp_Click() {
    const int call = module1_.anrufnr;
    if (frmTerminal_.fernbedaktiv) {
        for (int level = 0; level < 2; ++level) {
            output_.sendetext("E");
            if (!goes_on(waits_.warte(pause_ticks), call)) return false;
        }
    }
    if (!goes_on(waits_.warte(pause_ticks, [this] { return frmTerminal_.termecho; }), call)) return false;
    for (int attempt = 0; attempt < 2; ++attempt) {
        if (!goes_on(ask_modem(module1_, output_, waits_, "+++", answer_ticks), call)) return false;
        if (!module1_.warteok) break;
    }
    if (!goes_on(ask_modem(module1_, output_, waits_, "ATH\r", answer_ticks), call)) return false;
    if (module1_.warteok) return true;
    frmTerminal_.sbrStatus.projekt.Text = "offline";
    frmTerminal_.sbrStatus.projekt.Text = module1_.projektname; // kept: this is what stays
    if (module1_.protokollan) events_.protocol_mark("  AUFGELEGT ");
    return true;
}

// The same, and the gateway's own time to hang up behind it.
bool HangUp::hang_up_gateway() {
    const int call = module1_.anrufnr;
    return mnuHangUp_Click() && goes_on(waits_.warte(until_gateway_hung_up), call);
}

bool HangUp::is_automatic() const { return settings_.fbautostart > zero; }

bool HangUp::agreed(std::string_view question) {
    const int call = module1_.anrufnr;
    return dialogs_.message_box(question, 36) == Answer::yes && !loop_.ended() && module1_.anrufnr == call;
}

// Remote control has ended, and what arrives is shown again.
void HangUp::Timer3_Tick() {
    if (!auflegenstill_) {
        frmTerminal_.termecho = true;
        if (module1_.tcpoffen) {
            if (is_automatic() || agreed("Soll die TCP/IP Verbindung getrennt werden")) {
                end_tcp();
                write_terminal(frmTerminal_,
                               over_gateway(module1_)
                                   ? "\r\n\r\nVorgang abgeschlossen, Verbindung zum tarnwerk-Modem wieder "
                                     "unterbrochen!"
                                   : ended);
            }
        } else if (is_automatic() || agreed("Soll das Modem aufgelegt werden")) {
            mnuHangUp_Click();
        }
    }
    frmTerminal_.Timer3.Enabled = false;
}

// The end of an automatic download.
void HangUp::Timer20_Tick() {
    frmTerminal_.Timer20.Enabled = false;
    if (over_gateway(module1_)) {
        if (hang_up_gateway()) end_tcp();
    } else if (module1_.tcpoffen) {
        end_tcp();
        write_terminal(frmTerminal_, ended);
    } else {
        mnuHangUp_Click();
    }
}

// Hangs up by itself, and remote control's end asks nothing meanwhile.
void HangUp::Timer31_Tick() {
    auflegenstill_ = true;
    frmTerminal_.termecho = true;
    frmTerminal_.fernbedaktiv = false;
    frmTerminal_.txtterm.Visible = true;
    frmTerminal_.Picture1.Visible = false;
    if (mnuHangUp_Click()) (void)waits_.warte(silent_ticks);
    auflegenstill_ = false;
    frmTerminal_.Timer31.Enabled = false;
}

// A second click while the first one works would send its commands to the other link.
void HangUp::HangUpPhone_Click() {
    if (hanging_up_) return;
    hanging_up_ = true;
    const int call = module1_.anrufnr;
    if (over_gateway(module1_)) {
        if (hang_up_gateway()) give_up();
    } else if (!module1_.tcpoffen) {
        mnuHangUp_Click();
    } else {
        bool done = true;
        if (frmTerminal_.fernbedaktiv) {
            output_.sendetext("E");
            done = goes_on(waits_.warte(until_display_is_left), call);
        }
        if (done) give_up();
    }
    hanging_up_ = false;
}

// Ends a connection and an attempt at one, too: it would go on to the next modem.
void HangUp::give_up() {
    end_tcp();
    for (Timer* timer : {&frmTerminal_.Timer23, &frmTerminal_.Timer24, &frmTerminal_.Timer25})
        timer->Enabled = false;
    events_.attempt_given_up();
}

void HangUp::end_tcp() {
    Winsock1_.Close();
    module1_.tcpoffen = false;
}

} // namespace velorn
