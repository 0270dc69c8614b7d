#include "terminal/visualisation.h"

#include "runtime/text.h"

namespace velorn {

namespace {

constexpr std::string_view no_program = "keine Visualisierungsdatei ausgewählt!"_w;
constexpr std::string_view start_visualisation = "v";
constexpr std::string_view leave_visualisation = "\x08";
constexpr std::string_view block_end = "VISEND";
constexpr std::string_view other_block_end = "\x1b\x1bv";
constexpr std::int16_t sign_of_life = 6; // seconds
constexpr std::int16_t surely_alive = 2;
constexpr int until_program_is_up = 10; // ticks
constexpr int until_program_is_down = 25;

} // namespace

Visualisation::Visualisation(Files& files, Dialogs& dialogs, Processes& processes,
                             VisualisationChannel& channel, Module1& module1, FrmTerminal& frmTerminal,
                             WaitCounter& waits, Output& output, ReceiveEvents& receive_events)
    : files_(files),
      dialogs_(dialogs),
      processes_(processes),
      channel_(channel),
      module1_(module1),
      frmTerminal_(frmTerminal),
      waits_(waits),
      output_(output) {
    frmTerminal_.tbrToolBar("visualstart").Click = [this] { visustart(); };
    frmTerminal_.txttovis.Change = [this] { channel_.set_text(frmTerminal_.txttovis.Text.get()); };
    frmTerminal_.Timer28.Tick = [this] { Timer28_Tick(); };
    txttoterm_.Change = [this] { txttoterm_Change(); };
    channel_.arrived = [this](const std::string& text) {
        last_words_ = text;
        if (linked_) txttoterm_.Text = text;
    };
    receive_events.visual_input.connect(
        [this](std::string_view empfangen, bool over_tcp) { take(empfangen, over_tcp); });
}

void Visualisation::visustart() {
    const std::string path = module1_.visdatei;
    if (path.empty() || !files_.open(path, OpenMode::read)) {
        dialogs_.message_box(no_program, 48);
        return;
    }
    if (module1_.vislebt >= surely_alive || starting_) {
        dialogs_.message_box("Visualisierung läuft bereits!!"_w, 48);
        return;
    }
    // Open before the program is up, so that it finds its partner at once.
    if (const Outcome opened = channel_.open(); !opened) {
        write_terminal(frmTerminal_,
                       "\r\nKeine Verbindung zur Visualisierung: " + opened.failure().text + "\r\n");
    }
    if (const Outcome started = processes_.start(path); !started) {
        dialogs_.message_box("Die Visualisierungsdatei läßt sich nicht ausführen"_w, 48);
        return;
    }
    frmTerminal_.txttovis.Text = "";
    txttovis2_.clear();
    txttoterm_.Text = "";
    last_words_.clear();
    linked_ = false;
    starting_ = true;
    ++start_;
    if (!waits_.warte(until_program_is_up)) return;
    starting_ = false;
    frmTerminal_.visaktiv = true;
    output_.sendetext(start_visualisation);
    linked_ = true;
    txttoterm_.Text = last_words_;
}

void Visualisation::take(std::string_view empfangen, bool over_tcp) {
    txttovis2_ += empfangen;
    if (txttovis2_.size() > longest_block) txttovis2_.erase(0, txttovis2_.size() - longest_block);
    if (!hand_over_behind(block_end)) (void)hand_over_behind(other_block_end);
    constexpr std::uint16_t highest = 30'000;
    if (over_tcp && module1_.viszaehler > highest) module1_.viszaehler = 20'000;
}

// The number behind the block tells the reader that it is another one.
bool Visualisation::hand_over_behind(std::string_view end_mark) {
    if (txttovis2_.find(end_mark) == std::string::npos) return false;
    ++module1_.viszaehler;
    frmTerminal_.txttovis.Text = txttovis2_ + std::to_string(module1_.viszaehler);
    txttovis2_.clear();
    return true;
}

void Visualisation::txttoterm_Change() {
    const std::string text = txttoterm_.Text.get();
    if (instr(text, "neuanf") > 0) {
        output_.sendetext(start_visualisation);
        module1_.vislebt = sign_of_life;
    }
    if (instr(text, "ENDE") > 0) {
        const int start = start_;
        if (!waits_.warte(until_program_is_down) || start_ != start) return;
        frmTerminal_.visaktiv = false;
        output_.sendetext(leave_visualisation);
    }
}

void Visualisation::Timer28_Tick() {
    if (module1_.vislebt > 0) --module1_.vislebt;
}

} // namespace velorn
