#include "app/program_start.h"

#include "core/dial_boxes.h"
#include "runtime/number_picture.h"
#include "runtime/text.h"

#include <algorithm>

namespace velorn {

namespace {

const Variant zero{std::int16_t{0}};

} // namespace

ProgramStart::ProgramStart(World& world, const Events& events, Module1& module1, Settings& settings,
                           SettingsFiles& settings_files, FrmTerminal& frmTerminal, WaitCounter& waits,
                           MSComm& MSComm1, DisplayLooks& looks, ArchiveWindow& archive_window)
    : world_(world),
      events_(events),
      module1_(module1),
      settings_(settings),
      settings_files_(settings_files),
      frmTerminal_(frmTerminal),
      waits_(waits),
      MSComm1_(MSComm1),
      looks_(looks),
      archive_window_(archive_window) {
    frmTerminal_.Timerglobal.Tick = [this] { Timerglobal_Tick(); };
    frmTerminal_.Timer2.Tick = [this] { frmTerminal_.Timer2.Enabled = false; };
    frmTerminal_.Timer9.Tick = [this] { Timer9_Tick(); };
    frmTerminal_.Timer27.Tick = [this] { Timer27_Tick(); };
}

void ProgramStart::Form_Load() {
    module1_.globalsek = 0;
    refused_in_this_start_.clear();
    settings_files_.begin_start();
    while (!load_settings_once()) {
        if (world_.loop.ended()) return;
    }
    settings_files_.end_start();
    fill_boxes(module1_, settings_);
    frmTerminal_.schirm.blank();
    frmTerminal_.zeile = 1;
    frmTerminal_.spalte = 1;
    frmTerminal_.fernbedaktiv = false;
    frmTerminal_.termecho = true;
    frmTerminal_.ticks26 = 0;
    frmTerminal_.Timer26.Enabled = true;
    count_start();
    if (settings_.autoholnr > zero) {
        frmTerminal_.ticks27 = 0;
        frmTerminal_.Timer27.Enabled = true;
    }
    frmTerminal_.ticks28 = 0;
    frmTerminal_.Timer28.Enabled = true;
    frmTerminal_.form.Visible = true;
}

// One pass from the restart point on. False: start over, after an upgrade step or a recovery.
bool ProgramStart::load_settings_once() {
    frmTerminal_.txtterm.set_Text({});
    frmTerminal_.txtterm.SelColor = colour::blue;
    frmTerminal_.txtterm.Visible = true;
    frmTerminal_.imgConnected.Visible = false;
    frmTerminal_.imgNotConnected.Visible = true;
    lay_out_window();

    module1_.apppfad = world_.program_folder;
    const Result<SettingsFiles::Pass> pass = settings_files_.read({
        .colours = [this] { looks_.apply_display_colours(); },
        .autostart = [this] { frmTerminal_.fernbedauto.Checked = settings_.fbautostart > zero; },
    });
    if (pass && *pass == SettingsFiles::Pass::rewritten) return false;
    if (!pass && !refused_in_this_start_.contains("file")) {
        recover("file");
        return false;
    }
    // A file that can't be read twice: go on with what there is.
    frmTerminal_.form.Caption = "Velorn  V72";
    module1_.gatewayoffen = true;
    std::string refused;
    if (const Outcome applied = apply_to_controls(refused); !applied) {
        recover(refused);
        return false;
    }
    return true;
}

void ProgramStart::lay_out_window() {
    Form& form = frmTerminal_.form;
    form.Width = world_.screen.width;
    form.Height = world_.screen.height;
    form.Left = (world_.screen.width - form.Width) / 2;
    form.Top = (world_.screen.height - form.Height) / 2;
    const double share = form.Height > 650 ? 0.8 : form.Height > 590 ? 0.77 : 0.7;
    const auto width = static_cast<int>(round_to_even(form.Width * 0.99));
    const auto height = static_cast<int>(round_to_even(form.Height * share));
    frmTerminal_.txtterm_width = frmTerminal_.Picture1.Width = width;
    frmTerminal_.txtterm_height = frmTerminal_.Picture1.Height = height;
}

Outcome ProgramStart::apply_to_controls(std::string& refused) {
    if (const Outcome set = looks_.apply_display_font(refused); !set) return set;
    if (const Outcome set = looks_.apply_terminal_font(refused); !set) return set;
    refused = "comsettings";
    if (const Outcome set = MSComm1_.set_Settings(settings_.comsettings.text()); !set) return set;

    struct Number {
        std::string_view field;
        const Variant& value;
        Outcome (MSComm::*set)(int);
    };
    const Number numbers[] = {{"comport", settings_.comport, &MSComm::set_CommPort},
                              {"comhandshake", settings_.comhandshake, &MSComm::set_Handshaking}};
    for (const Number& number : numbers) {
        refused = number.field;
        const Result<std::int16_t> value = number.value.as_i16();
        if (!value) return value.failure();
        if (const Outcome set = (MSComm1_.*number.set)(*value); !set) return set;
    }
    refused.clear();
    return {};
}

void ProgramStart::recover(const std::string& refused) {
    struct Field {
        std::string_view name;
        Variant Settings::*value;
    };
    // These the recovery itself leaves as they were read.
    constexpr Field kept[] = {{"termschrift", &Settings::termschrift},
                              {"termschriftgr", &Settings::termschriftgr}};

    set_recovery_values(settings_, module1_.apppfad);
    if (!refused_in_this_start_.insert(refused).second) {
        for (const Field& field : kept) {
            if (field.name == refused) settings_.*field.value = default_of(refused);
        }
    }
    settings_files_.saveeinst();
}

void ProgramStart::count_start() {
    Variant& starts = settings_.neustartzaehler;
    const std::int16_t most = 30000;
    if (starts < zero || starts > Variant(most)) starts = std::int16_t{10};
    if (starts < Variant(most)) starts = static_cast<std::int16_t>(round_to_even(starts.number()) + 1);
}

void ProgramStart::Form_QueryUnload() {
    if (!archive_window_.close(ArchiveWindow::Closing::saving) || world_.loop.ended()) return;
    write_terminal(frmTerminal_, "ENDE!!!!! \r\n");
    module1_.globalsek = 0;
    // A clean end never resumes a collection.
    settings_.autoholnr = std::int16_t{0};
    settings_.autoholpfad = "";
    if (!waits_.warte(5)) return;
    settings_files_.saveeinst();
    if (world_.loop.ended()) return;
    bool Cancel = false;
    Form_Unload(Cancel);
}

void ProgramStart::Form_Unload(bool& Cancel) {
    constexpr std::int64_t patience_ms = 10'000;
    EventLoop& loop = world_.loop;
    if (MSComm1_.PortOpen()) {
        for (bool waiting = true; waiting && MSComm1_.OutBufferCount() != 0;) {
            const std::int64_t limit = loop.now_ms() + patience_ms;
            const EventLoop::TaskId alarm = loop.post_at(limit, [] {});
            const bool goes_on =
                loop.wait_until([&] { return MSComm1_.OutBufferCount() == 0 || loop.now_ms() >= limit; });
            loop.cancel(alarm);
            if (!goes_on) return;
            if (MSComm1_.OutBufferCount() == 0) break;
            switch (world_.dialogs.message_box("Daten können nicht gesendet werden"_w, 34)) {
            case Answer::abort: Cancel = true; return;
            case Answer::retry: break;
            default: waiting = false;
            }
            if (loop.ended()) return;
        }
    }
    (void)MSComm1_.set_PortOpen(false);
    if (frmTerminal_.logdatei != 0) press(frmTerminal_.mnuCloseLog);
    loop.end();
}

void ProgramStart::Timerglobal_Tick() {
    ++module1_.globalsek;
    frmTerminal_.txttest3.Text = std::to_string(module1_.globalsek);
}

void ProgramStart::Timer9_Tick() {
    for (std::int16_t* age : {&module1_.dialalter, &module1_.loginalter}) {
        if (*age < 1000) ++*age;
    }
}

void ProgramStart::Timer27_Tick() {
    // An i16: it keeps counting after its work is done, and stays at its end.
    std::int16_t& ticks = frmTerminal_.ticks27;
    if (ticks < 32767) ++ticks;
    if (ticks == 1) {
        write_terminal(frmTerminal_, "Fortsetzung autom. Datenabholung (Abbrechen mit Velorn beenden) ");
    }
    if (ticks < 20) write_terminal(frmTerminal_, ".");
    if (ticks == 10 && MSComm1_.PortOpen()) press(frmTerminal_.mnuHangUp);
    if (ticks == 15 && MSComm1_.PortOpen()) frmTerminal_.Timer6.Enabled = true;
    if (ticks == 20) {
        events_.weiterholen();
        frmTerminal_.Timer26.Enabled = false; // kept: 26, not 27; 27 runs on without effect
    }
}

} // namespace velorn
