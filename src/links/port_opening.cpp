#include "links/port_opening.h"

#include "runtime/text.h"

namespace velorn {

namespace {

constexpr int watch_ms = 500;
constexpr std::string_view cannot_open = "Com-Port läßt sich nicht öffnen, Einstellungen überprüfen"_w;

} // namespace

PortOpening::PortOpening(EventLoop& loop, Dialogs& dialogs, Module1& module1, const Settings& settings,
                         FrmTerminal& frmTerminal, MSComm& MSComm1)
    : loop_(loop),
      dialogs_(dialogs),
      module1_(module1),
      settings_(settings),
      frmTerminal_(frmTerminal),
      MSComm1_(MSComm1),
      watch_(loop, watch_ms) {
    frmTerminal_.mnuOpen.Click = [this] { mnuOpen_Click(); };
    frmTerminal_.imgConnected.Click = frmTerminal_.imgNotConnected.Click = [this] { mnuOpen_Click(); };
    frmTerminal_.Label4.Click = [this] { mnuOpen_Click(); };
    frmTerminal_.Picture5.Click = [this] { mnuOpen_Click(); };
    frmTerminal_.Timer26.Tick = [this] { Timer26_Tick(); };
    watch_.Tick = [this] { watch(); };
    MSComm1_.lost = [this] {
        waits_for_return_ = true;
        show_state();
    };
}

void PortOpening::mnuOpen_Click() {
    waits_for_return_ = false;
    const Outcome toggled = MSComm1_.set_PortOpen(!MSComm1_.PortOpen());
    if (!toggled && !(settings_.lanaktiv == Variant(std::int16_t{1}))) {
        dialogs_.message_box(toggled.failure().text, 48);
        if (loop_.ended()) return;
    }
    show_state();
}

void PortOpening::show_state() {
    const bool open = MSComm1_.PortOpen();
    frmTerminal_.mnuOpen.Checked = open;
    frmTerminal_.tbrToolBar("TransmitTextFile").Enabled = open;
    frmTerminal_.mnutelefonbuch.Enabled = true; // closed too: the phone book also serves TCP
    frmTerminal_.tbrToolBar("DialPhoneNumber").Enabled = true;
    frmTerminal_.imgConnected.Visible = open;
    frmTerminal_.imgNotConnected.Visible = !open;
    frmTerminal_.Picture5.BackColor = open ? colour::green : colour::red;
    frmTerminal_.Label4.Caption = open ? "COM geöffnet"_w : "COM geschlossen"_w;
    show_settings();
    frmTerminal_.Timer1.Enabled = open;
    if (open) {
        frmTerminal_.mnuHangUp.Enabled = true;
        frmTerminal_.tbrToolBar("HangUpPhone").Enabled = true;
        frmTerminal_.verbindungszeit = loop_.local_time();
    } else {
        frmTerminal_.sbrStatus.ConnectTime.Text = "";
        module1_.abbruch = true;
    }
    watch_.Enabled = open || waits_for_return_;
}

void PortOpening::show_settings() {
    std::string text = "Einstellungen: ";
    if (MSComm1_.PortOpen()) text += "Com" + std::to_string(MSComm1_.CommPort()) + "  " + MSComm1_.Settings();
    frmTerminal_.sbrStatus.Settings.Text = text;
}

bool PortOpening::open_again() {
    mnuOpen_Click();
    if (!loop_.ended() && !MSComm1_.PortOpen()) mnuOpen_Click();
    return !loop_.ended();
}

void PortOpening::tell_if_closed() {
    if (!MSComm1_.PortOpen() && !(settings_.lanaktiv == Variant(std::int16_t{1})))
        dialogs_.message_box(cannot_open, 48);
}

void PortOpening::Timer26_Tick() {
    if (++frmTerminal_.ticks26 != 4) return;
    if (!open_again()) return;
    (void)MSComm1_.set_InputLen(0);
    if (!(settings_.neustartzaehler < Variant(std::int16_t{1}))) {
        tell_if_closed();
        if (loop_.ended()) return;
        frmTerminal_.sbrStatus.projekt.Text = "offline";
    }
    frmTerminal_.Timer26.Enabled = false;
}

void PortOpening::watch() {
    if (MSComm1_.PortOpen()) {
        if (MSComm1_.is_there()) return;
        (void)MSComm1_.set_PortOpen(false);
        waits_for_return_ = true;
        show_state();
    } else if (waits_for_return_ && MSComm1_.is_there() && MSComm1_.set_PortOpen(true).ok()) {
        waits_for_return_ = false;
        show_state();
    }
}

} // namespace velorn
