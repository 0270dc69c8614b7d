#include "links/port_commands.h"

#include "core/modal.h"
#include "runtime/number_picture.h"
#include "runtime/text.h"

#include <limits>
#include <string>

namespace velorn {

// A command that asks for a property's new number.
struct PortCommands::Number {
    MenuItem FrmTerminal::*item;
    std::string_view title, prompt;
    int (MSComm::*value)() const;
    Outcome (MSComm::*set)(int);
};

// A command that shows the state of a line.
struct PortCommands::Line {
    MenuItem FrmTerminal::*item;
    std::string_view name;
    bool (MSComm::*holding)();
};

PortCommands::PortCommands(EventLoop& loop, Dialogs& dialogs, ScreenSize screen,
                           SettingsFiles& settings_files, FrmTerminal& frmTerminal, MSComm& MSComm1,
                           PortOpening& port_opening, FrmProperties& frmProperties)
    : loop_(loop),
      dialogs_(dialogs),
      screen_(screen),
      settings_files_(settings_files),
      frmTerminal_(frmTerminal),
      MSComm1_(MSComm1),
      port_opening_(port_opening),
      frmProperties_(frmProperties) {
    static constexpr Number numbers[] = {
        {&FrmTerminal::mnuInputLen, "InputLen", "Geben Sie die neue Eingabelänge (InputLen) ein:"_w,
         &MSComm::InputLen, &MSComm::set_InputLen},
        {&FrmTerminal::mnuRThreshold, "Empfangslimit (RThreshold)",
         "Geben Sie einen neuen Wert für die maximal gepufferte Anzahl der empfangenen Bytes ein:"_w,
         &MSComm::RThreshold, &MSComm::set_RThreshold},
        {&FrmTerminal::mnuSThreshold, "Sendelimit (SThreshold)",
         "Geben Sie einen neuen Wert für die maximal gepufferte Anzahl der Sendebytes ein:"_w,
         &MSComm::SThreshold, &MSComm::set_SThreshold},
    };
    static constexpr Line lines[] = {
        {&FrmTerminal::mnuHCD, "CDHolding", &MSComm::CDHolding},
        {&FrmTerminal::mnuHCTS, "CTSHolding", &MSComm::CTSHolding},
        {&FrmTerminal::mnuHDSR, "DSRHolding", &MSComm::DSRHolding},
    };
    for (const Number& row : numbers) (frmTerminal_.*row.item).Click = [this, &row] { ask_number(row); };
    for (const Line& row : lines) {
        (frmTerminal_.*row.item).Click = [this, &row] {
            const bool holding = (MSComm1_.*row.holding)();
            dialogs_.message_box(std::string(row.name) + " = " + (holding ? "True" : "False"), 0);
        };
    }
    frmTerminal_.mnuParRep.Click = [this] { mnuParRep_Click(); };
    frmTerminal_.mnuDTREnable.Click = [this] { mnuDTREnable_Click(); };
    frmTerminal_.mnuDTREnable.Checked = MSComm1_.DTREnable();
    frmTerminal_.mnuProperties.Click = [this] { mnuProperties_Click(); };
    frmTerminal_.tbrToolBar("Properties").Click = [this] { mnuProperties_Click(); };
}

void PortCommands::mnuProperties_Click() {
    frmProperties_.Form_Load(screen_);
    if (!show_modally(loop_, frmProperties_.form)) return;
    settings_files_.saveeinst();
    if (loop_.ended() || !port_opening_.open_again()) return;
    port_opening_.tell_if_closed();
}

void PortCommands::ask_number(const Number& row) {
    const std::string now = std::to_string((MSComm1_.*row.value)());
    const auto answer = dialogs_.input_box(row.prompt, row.title, now);
    if (!answer || answer->empty()) return;
    const auto number = number_of(*answer);
    Outcome set;
    if (!number) {
        set = failure(RunTimeError::type_mismatch);
    } else if (const double whole = round_to_even(*number);
               whole < std::numeric_limits<std::int16_t>::min() ||
               whole > std::numeric_limits<std::int16_t>::max()) {
        set = failure(RunTimeError::overflow);
    } else {
        set = (MSComm1_.*row.set)(static_cast<int>(whole));
    }
    if (!set) dialogs_.message_box(set.failure().text, 48);
}

void PortCommands::mnuParRep_Click() {
    const auto answer = dialogs_.input_box(
        "Geben Sie das Ersetzungszeichen ein:", "Ersetzen bei Paritätsfehler"_w, MSComm1_.ParityReplace());
    if (!answer) return;
    // An empty answer is applied too: nothing is replaced any more.
    if (const Outcome set = MSComm1_.set_ParityReplace(answer->substr(0, 1)); !set)
        dialogs_.message_box(set.failure().text, 48);
}

void PortCommands::mnuDTREnable_Click() {
    MSComm1_.set_DTREnable(!MSComm1_.DTREnable());
    frmTerminal_.mnuDTREnable.Checked = MSComm1_.DTREnable();
}

} // namespace velorn
