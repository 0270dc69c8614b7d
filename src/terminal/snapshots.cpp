#include "terminal/snapshots.h"

#include "runtime/text.h"

namespace velorn {

namespace {

constexpr std::string_view line_end = "\r\n";
constexpr std::size_t dropped = 999; // kept: the text from its 1000th character on stays

} // namespace

std::string text_of(const Schirm& schirm) {
    std::string text;
    int empty_rows = 0;
    for (int row = 1; row <= Schirm::rows; ++row) {
        std::string line(schirm.text(row, 1, Schirm::columns));
        const std::size_t last = line.find_last_not_of(' ');
        if (last == std::string::npos) {
            ++empty_rows;
            continue;
        }
        for (; empty_rows > 0; --empty_rows) text += line_end;
        line.resize(last + 1);
        umlauts_from_cp437(line);
        text.append("    ").append(line).append(line_end);
    }
    return text;
}

Snapshots::Snapshots(const EventLoop& loop, Dialogs& dialogs, Printer& printer, const Events& events,
                     Module1& module1, FrmTerminal& frmTerminal, ProtocolFile& protocol_file)
    : loop_(loop),
      dialogs_(dialogs),
      printer_(printer),
      events_(events),
      module1_(module1),
      frmTerminal_(frmTerminal),
      protocol_file_(protocol_file) {
    frmTerminal_.tbrToolBar("snapshot").Click = [this] { snapshot_Click(); };
    frmTerminal_.tbrToolBar("looksnap").Click = [this] { looksnap_Click(); };
    frmTerminal_.tbrToolBar("drucken").Click = [this] { drucken_Click(); };
    frmTerminal_.clrtxtsnap.Click = [this] { frmTerminal_.txtsnapshot.set_Text({}); };
}

void Snapshots::snapshot_Click() {
    RichTextBox& txtsnapshot = frmTerminal_.txtsnapshot;
    if (txtsnapshot.length() > longest) txtsnapshot.remove_front(dropped);
    // It goes to the file, not to the entry.
    if (module1_.protokollan) txtsnapshot.set_Text({});
    txtsnapshot.append("  " + std::string(83, '-') + "\r\n" + module1_.projektname + "  Displayaufnahme " +
                       date_and_time_text(loop_.local_time()) + "\r\n" + text_of(frmTerminal_.schirm) +
                       "\r\n\r\n");
    module1_.neuedispauf = true;
    if (module1_.protokollan) {
        protocol_file_.append("\r\n" + txtsnapshot.Text());
    } else {
        events_.snapshots_changed(txtsnapshot.Text());
    }
}

void Snapshots::looksnap_Click() {
    if (module1_.protokollan) {
        events_.edit_protocol_file();
        return;
    }
    const bool shown = !frmTerminal_.txtsnapshot.Visible;
    frmTerminal_.txtsnapshot.Visible = shown;
    frmTerminal_.clrtxtsnap.Visible = shown;
    frmTerminal_.tbrToolBar("looksnap").Pressed = shown;
}

void Snapshots::drucken_Click() {
    if (module1_.protokollan) {
        events_.edit_protocol_file();
        return;
    }
    if (printing_) return;
    printing_ = true;
    frmTerminal_.Richtxt.set_Text(frmTerminal_.txtsnapshot.Text());
    const std::string text = frmTerminal_.Richtxt.Text(); // the dialog stays open for as long as it likes
    const Outcome printed = printer_.print_text(text, "Displayaufnahmen " + module1_.projektname);
    printing_ = false;
    if (!printed && !printed.failure().is(RunTimeError::dialog_cancelled) && !loop_.ended())
        dialogs_.message_box(printed.failure().text, 48);
}

} // namespace velorn
