#include "links/frm_properties.h"

#include "runtime/text.h"

#include <algorithm>
#include <cctype>

namespace velorn {

namespace {

constexpr int last_port = 255;
constexpr int window_width = 420;
constexpr int window_height = 440;
constexpr std::string_view parity_letters = "emnos"; // in the order of the sorted list

std::vector<ComboBox::Item> items(std::initializer_list<const char*> texts) {
    std::vector<ComboBox::Item> list;
    for (const char* const text : texts) list.push_back({text, {}});
    return list;
}

std::string trimmed(const std::string& text) {
    const std::size_t from = text.find_first_not_of(' ');
    if (from == std::string::npos) return {};
    return text.substr(from, text.find_last_not_of(' ') - from + 1);
}

} // namespace

FrmProperties::FrmProperties(Dialogs& dialogs, const SerialPort& machine, Settings& settings,
                             FrmTerminal& frmTerminal, MSComm& MSComm1)
    : optFlow({"Kein", "Xon/Xoff", "RTS", "Xon/RTS"}),
      optEcho({"Aus", "Ein"}),
      dialogs_(dialogs),
      machine_(machine),
      settings_(settings),
      frmTerminal_(frmTerminal),
      MSComm1_(MSComm1) {
    form.Caption = "COM-Anschluß-Einstellungen"_w;
    optFlow.Click = [this](int index) { flow_ = index; };
    optEcho.Click = [this](int index) { echo_ = index == 1; };
    cmdOK.Click = [this] { cmdOK_Click(); };
    cmdCancel.Click = [this] { cmdCancel_Click(); };
}

void FrmProperties::Form_Load(ScreenSize screen) {
    form.Width = window_width;
    form.Height = window_height;
    form.Left = (screen.width - window_width) / 2;
    form.Top = (screen.height - window_height) / 2;
    LoadPropertySettings();
}

void FrmProperties::LoadPropertySettings() {
    std::vector<ComboBox::Item> ports;
    for (int number = 1; number <= last_port; ++number) ports.push_back({"Com" + std::to_string(number), {}});
    for (const SerialPort::There& there : machine_.ports_there()) {
        if (there.com_port >= 1 && there.com_port <= last_port)
            ports[static_cast<std::size_t>(there.com_port - 1)].note =
                there.adapter.empty() ? "vorhanden" : there.adapter;
    }
    cboPort.set_List(std::move(ports));
    cboSpeed.set_List(items({"300", "1200", "2400", "4800", "9600", "19200", "38400", "57600", "115200"}));
    cboDataBits.set_List(items({"4", "5", "6", "7", "8"}));
    cboParity.set_List(items({"Even", "Mark", "None", "Odd", "Space"}));
    cboStopBits.set_List(items({"1", "1.5", "2"}));

    // "19200,n,8,1", or with "1.5" two characters longer.
    const std::string s = MSComm1_.Settings();
    const std::size_t o = s.find('.') == std::string::npos ? 0 : 2;
    cboSpeed.set_Text(s.substr(0, s.size() - 6 - o));
    const std::size_t parity = parity_letters.find(s[s.size() - 5 - o]);
    if (parity != std::string_view::npos) cboParity.set_ListIndex(static_cast<int>(parity));
    cboDataBits.set_Text(s.substr(s.size() - 3 - o, 1));
    cboStopBits.set_Text(s.substr(s.size() - 1 - o));

    cboPort.set_ListIndex(MSComm1_.CommPort() - 1);
    optFlow.select(MSComm1_.Handshaking());
    optEcho.select(settings_.comecho.number() != 0 ? 1 : 0);
}

void FrmProperties::cmdOK_Click() {
    settings_.comecho = echo_;
    if (!apply_port() || !apply_settings() || !apply_handshake()) return;
    frmTerminal_.sbrStatus.Settings.Text =
        "Einstellungen: Com" + settings_.comport.text() + "  " + MSComm1_.Settings();
    form.Visible = false;
}

void FrmProperties::cmdCancel_Click() { form.Visible = false; }

bool FrmProperties::told(const Outcome& outcome) {
    if (outcome) return false;
    dialogs_.message_box(outcome.failure().text, 48);
    return true;
}

bool FrmProperties::apply_port() {
    const int before = MSComm1_.CommPort();
    const int wanted = cboPort.ListIndex() + 1;
    if (wanted != before) {
        const bool was_open = MSComm1_.PortOpen();
        if (was_open) (void)MSComm1_.set_PortOpen(false);
        Outcome changed = MSComm1_.set_CommPort(wanted);
        if (changed && was_open) {
            changed = MSComm1_.set_PortOpen(true);
            frmTerminal_.mnuOpen.Checked = MSComm1_.PortOpen();
        }
        if (told(changed)) {
            (void)MSComm1_.set_CommPort(before);
            return false;
        }
    }
    settings_.comport = static_cast<std::int16_t>(MSComm1_.CommPort());
    return true;
}

bool FrmProperties::apply_settings() {
    const std::string parity = cboParity.Text().substr(0, 1); // a capital; the control hands a small one back
    const Outcome set =
        MSComm1_.set_Settings(trimmed(cboSpeed.Text()) + ',' + parity + ',' + trimmed(cboDataBits.Text()) +
                              ',' + trimmed(cboStopBits.Text()));
    settings_.comsettings = MSComm1_.Settings();
    return !told(set);
}

bool FrmProperties::apply_handshake() {
    const Outcome set = MSComm1_.set_Handshaking(flow_);
    settings_.comhandshake = static_cast<std::int16_t>(MSComm1_.Handshaking());
    return !told(set);
}

} // namespace velorn
