#include "terminal/remote_control.h"

namespace velorn {

namespace {

constexpr std::string_view soh = "\x01";
constexpr std::string_view cr = "\r";
constexpr int until_shell_answers = 22; // ticks
constexpr int after_leaving = 10;

const Variant zero{std::int16_t{0}};

} // namespace

RemoteControl::RemoteControl(EventLoop& loop, Dialogs& dialogs, const Events& events, Module1& module1,
                             Settings& settings, SettingsFiles& settings_files, FrmTerminal& frmTerminal,
                             WaitCounter& waits, Output& output, MSComm& MSComm1,
                             ReceiveEvents& receive_events, DisplayLooks& looks)
    : parser(loop, frmTerminal),
      loop_(loop),
      dialogs_(dialogs),
      events_(events),
      module1_(module1),
      settings_(settings),
      settings_files_(settings_files),
      frmTerminal_(frmTerminal),
      waits_(waits),
      output_(output),
      MSComm1_(MSComm1),
      painter_(frmTerminal, settings, parser),
      calendar_(frmTerminal) {
    receive_events.screen_input.connect([this](std::string_view text, bool over_tcp, bool capture_taken) {
        screen_input(text, over_tcp, capture_taken);
    });
    looks.changed = [this] { painter_.paint_anew(); };
    parser.screen_events.new_screen.connect([this, &looks] {
        calendar_.hide();
        looks.take_normal_font();
    });
    parser.screen_events.calendar.connect([this, &looks] {
        calendar_.show();
        looks.take_small_font();
    });
    parser.screen_events.log_wanted.connect([this](bool over_tcp) { log_wanted(over_tcp); });
    parser.screen_events.evaluation_wanted.connect([this] {
        module1_.grafikfern = true;
        events_.evaluation_wanted();
    });
    parser.screen_events.day_graph.connect([this](std::string_view text) { events_.day_graph(text); });

    frmTerminal_.Timer4.Tick = [this] { Timer4_Tick(); };
    frmTerminal_.Timer30.Tick = [this] {
        frmTerminal_.fbpause = false;
        frmTerminal_.Timer30.Enabled = false;
    };
    frmTerminal_.tbrToolBar("fernbed").Click = [this] { fernbedstart(); };
    frmTerminal_.tbrToolBar("notfernbed").Click = [this] { notfernbed_Click(); };
    frmTerminal_.tbrToolBar("bildumschalt").Click = [this] { bildumschalt_Click(); };
    frmTerminal_.fernbedauto.Click = [this] { fernbedauto_Click(); };
}

void RemoteControl::screen_input(std::string_view text, bool over_tcp, bool capture_taken) {
    parser.feed(text, over_tcp, capture_taken);
    if (loop_.ended()) return;
    painter_.paint();
    if (parser.state.kalender) calendar_.paint();
}

void RemoteControl::log_wanted(bool over_tcp) {
    press(frmTerminal_.mnuOpenLog);
    if (loop_.ended()) return;
    // Kept: on the serial link past sendetext, so that the trace doesn't show it.
    if (over_tcp) {
        output_.sendetext(cr);
    } else {
        MSComm1_.Output(cr);
    }
}

void RemoteControl::fernbedstart() {
    show_mirrored_display(frmTerminal_, false);
    output_.sendetext(soh);
    if (!waits_.warte(until_shell_answers)) return;
    output_.sendetext("FERNBED\r");
    if (module1_.protokollan) events_.protocol_mark("  *FERNBED ");
}

void RemoteControl::Timer4_Tick() {
    if (module1_.autoholen) {
        // A CONNECT too many within a download; the controller is busy with it.
        frmTerminal_.Timer4.Enabled = false;
        return;
    }
    if (settings_.fbautostart > zero) {
        fernbedstart();
    } else if (dialogs_.message_box("Soll die Fernbedienung gestartet werden", 36) == Answer::yes) {
        if (loop_.ended()) return;
        fernbedstart();
    }
    frmTerminal_.Timer4.Enabled = false;
}

// Leaves for the terminal without ending the connection.
void RemoteControl::notfernbed_Click() {
    for (int level = 0; level < 2; ++level) {
        output_.sendetext("E");
        if (!waits_.warte(after_leaving)) return;
    }
    frmTerminal_.fernbedaktiv = false;
    frmTerminal_.fbpause = true;
    frmTerminal_.Timer30.Enabled = true;
    frmTerminal_.txtterm.Visible = true;
    frmTerminal_.Picture1.Visible = false;
}

// Changes between terminal and mirrored display without sending anything.
void RemoteControl::bildumschalt_Click() {
    if (!frmTerminal_.fernbedaktiv) {
        show_mirrored_display(frmTerminal_, false);
        return;
    }
    frmTerminal_.fernbedaktiv = false;
    frmTerminal_.txtterm.Visible = true;
    frmTerminal_.Picture1.Visible = false;
    frmTerminal_.cursorinv = false;
    calendar_.hide();
}

void RemoteControl::fernbedauto_Click() {
    settings_.fbautostart = static_cast<std::int16_t>(settings_.fbautostart > zero ? 0 : 1);
    frmTerminal_.fernbedauto.Checked = settings_.fbautostart > zero;
    settings_files_.saveeinst();
}

} // namespace velorn
