#include "terminal/capture.h"

#include "runtime/text.h"

#include <algorithm>
#include <limits>
#include <string>

namespace velorn {

namespace {

constexpr std::size_t written_above = 52;
constexpr std::size_t kept = 28; // in which an end mark may be cut in two
constexpr std::string_view two_line_ends = "\r\n\r\n";
constexpr std::string_view acknowledged = "\x08";
constexpr std::string_view key = "protokoll";

} // namespace

Capture::Capture(Module1& module1, FrmTerminal& frmTerminal, Output& output, Receive& receive,
                 ProtocolFile& protocol_file)
    : module1_(module1),
      frmTerminal_(frmTerminal),
      output_(output),
      txtvergl_(receive.txtvergl),
      protocol_file_(protocol_file) {
    receive.receive_events.capture_begins.connect([this] { begin(); });
    receive.receive_events.capture_input.connect([this](SearchWindow& ziel) { take(ziel); });
    frmTerminal_.Timer10.Tick = [this] { Timer10_Tick(); };
    frmTerminal_.tbrToolBar(key).Click = [this] { protokoll_Click(); };
}

void Capture::begin(std::int16_t seconds) {
    if (!module1_.protokollan) {
        frmTerminal_.txtprotwarn.Visible = true;
        prottakte_ = seconds_of_warning;
    } else if (!module1_.protokollaktiv) {
        module1_.protokollaktiv = true;
        frmTerminal_.protbytes = 0;
        protocol_file_.open();
        frmTerminal_.txtprotschreib.Visible = true;
        prottakte_ = seconds;
        frmTerminal_.tbrToolBar(key).Pressed = true;
        protknopf_ = true;
    } else {
        return;
    }
    frmTerminal_.Timer10.Enabled = true;
    show_seconds();
}

void Capture::show_seconds() {
    const std::string left = std::to_string(prottakte_);
    frmTerminal_.txtprotschreib.Text = "Protokoll wird in Datei geschrieben   " + left;
    frmTerminal_.txtprotwarn.Text = std::string("ACHTUNG!!!  keine Protokolldatei ausgewählt   "_w) + left;
}

void Capture::take(SearchWindow& ziel) {
    if (ziel.length() > written_above) {
        const std::size_t count = ziel.length() - kept;
        constexpr std::size_t most = std::numeric_limits<std::int16_t>::max();
        const std::size_t written = static_cast<std::size_t>(frmTerminal_.protbytes) + count;
        frmTerminal_.protbytes = static_cast<std::int16_t>(std::min(most, written));
        protocol_file_.write(ziel.text().substr(0, count));
        ziel.keep_last(kept);
    }
    if (const std::size_t p = ziel.find(Keyword::capture_ends); p > 0) {
        protocol_file_.write(ziel.text().substr(0, p - 1));
        ziel.cut_to(p + text_of(Keyword::capture_ends).size());
        end_by_controller();
    } else if (frmTerminal_.protbytes > most_characters) {
        end_by_controller();
    }
}

void Capture::close_file() {
    module1_.protokollaktiv = false;
    protocol_file_.write(two_line_ends);
    protocol_file_.close();
}

void Capture::end_notices() {
    frmTerminal_.Timer10.Enabled = false;
    frmTerminal_.tbrToolBar(key).Pressed = false;
    protknopf_ = false;
}

void Capture::end_by_controller() {
    close_file();
    output_.sendetext(acknowledged);
    end_notices();
}

void Capture::protokoll_Click() {
    if (!protknopf_) {
        // It begins with what arrives from now on.
        if (module1_.protokollan) txtvergl_.clear();
        begin(seconds_by_button);
        return;
    }
    if (module1_.protokollaktiv) close_file();
    end_notices();
    frmTerminal_.txtprotschreib.Visible = false;
    frmTerminal_.txtprotwarn.Visible = false;
}

void Capture::Timer10_Tick() {
    if (--prottakte_ >= 1) {
        show_seconds();
        return;
    }
    frmTerminal_.txtprotwarn.Visible = false;
    frmTerminal_.txtprotschreib.Visible = false;
    if (module1_.protokollaktiv) close_file();
    output_.sendetext(acknowledged); // kept: whether or not anything was captured
    end_notices();
}

} // namespace velorn
