#include "terminal/receive.h"

#include "core/trace.h"
#include "runtime/number_picture.h"
#include "runtime/text.h"

#include <algorithm>
#include <utility>

namespace velorn {

namespace {

constexpr std::string_view xon = "\x11";
constexpr std::string_view cr = "\r";
constexpr std::size_t name_length = 40;

void remove_nuls(std::string& text) {
    if (text.find('\0') != std::string::npos) std::erase(text, '\0');
}

} // namespace

Receive::Receive(EventLoop& loop, Files& files, const Events& events, Module1& module1,
                 const Settings& settings, FrmTerminal& frmTerminal, MSComm& MSComm1, Winsock& Winsock1,
                 Output& output)
    : loop_(loop),
      files_(files),
      events_(events),
      module1_(module1),
      settings_(settings),
      frmTerminal_(frmTerminal),
      MSComm1_(MSComm1),
      Winsock1_(Winsock1),
      output_(output),
      terminal_output_(loop, events, frmTerminal) {
    MSComm1_.OnComm = [this] { MSComm1_OnComm(); };
    Winsock1_.DataArrival = [this] { Winsock1_DataArrival(); };
}

void Receive::MSComm1_OnComm() {
    switch (MSComm1_.CommEvent()) {
    case CommEvent::receive: {
        frmTerminal_.Picture4.BackColor = colour::red;
        frmTerminal_.Timer7.Enabled = true;
        std::string empfangen = MSComm1_.Input();
        take(empfangen, false);
        break;
    }
    case CommEvent::send:
        frmTerminal_.Picture3.BackColor = colour::red;
        frmTerminal_.Timer8.Enabled = true;
        break;
    case CommEvent::cts: line_event_ = "CTS geändert"_w; break;
    case CommEvent::dsr: line_event_ = "DSR geändert"_w; break;
    case CommEvent::cd: line_event_ = "CD geändert"_w; break;
    case CommEvent::ring: line_event_ = "Das Telefon klingelt."; break;
    case CommEvent::eof: line_event_ = "Dateiende erkannt."; break;
    case CommEvent::none: break;
    }
}

void Receive::Winsock1_DataArrival() {
    std::string empfangen = Winsock1_.GetData();
    frmTerminal_.Picture7.BackColor = colour::red;
    frmTerminal_.Timer7.Enabled = true;
    module1_.letzteip = empfangen;
    take(empfangen, true);
}

// Both links from here on. They differ in one thing: over TCP nothing is shown while a connection is being
// built up through a gateway.
void Receive::take(std::string& empfangen, bool over_tcp) {
    if (module1_.empfgrafick) {
        umlauts_from_cp437(empfangen);
        if (module1_.trace) trace_bytes(frmTerminal_, received_prefix, empfangen);
        const bool emptied = std::exchange(module1_.empfleeren, false);
        receive_events.download_input(empfangen, emptied);
        return;
    }
    if (module1_.trace) trace_bytes(frmTerminal_, received_prefix, empfangen);
    const bool capture_taken = empfangauswerten(empfangen, txtvergl);
    if (loop_.ended()) return;

    if (frmTerminal_.fernbedaktiv && !frmTerminal_.visaktiv) {
        receive_events.screen_input(empfangen, over_tcp, capture_taken);
    } else if (frmTerminal_.fernbedaktiv) {
        receive_events.visual_input(empfangen, over_tcp);
    } else if (!over_tcp || module1_.gatewayoffen) {
        terminal_output_.terminalausgabe(empfangen);
    }
}

bool Receive::empfangauswerten(std::string& empfangen, SearchWindow& ziel) {
    remove_nuls(empfangen);
    if (!frmTerminal_.uhrzeitan && frmTerminal_.logdatei != 0) {
        // The LOG holds the controller's own codes. Its box may wait, and the program may end meanwhile.
        events_.log_text(empfangen);
        if (loop_.ended()) return false;
    }
    umlauts_from_cp437(empfangen);

    // Kept: searched before the chunk is in the window, so this sequence takes effect one chunk late.
    if (const std::size_t p = ziel.find(Keyword::close_log); p > 0) {
        ziel.cut_to(p + 3);
        press(frmTerminal_.mnuCloseLog);
        output_.sendetext(cr);
        output_.sendetext(cr);
    }
    trim(ziel);
    ziel.append(empfangen);

    if (ziel.find(Keyword::fernbed) > 0) {
        if (!frmTerminal_.fernbedaktiv) {
            show_mirrored_display(frmTerminal_, false);
            if (module1_.protokollan) events_.protocol_mark("  *FERNBED ");
        }
        ziel.clear();
    }
    if (ziel.find(Keyword::edinfo) > 0) {
        show_mirrored_display(frmTerminal_, true);
        ziel.clear();
    }
    if (ziel.find(Keyword::offline) > 0) remote_control_ended(ziel);
    if (ziel.find(Keyword::fernbed_ended) > 0) remote_control_ended(ziel);
    banner(ziel, Keyword::banner, 40, 79);
    banner(ziel, Keyword::banner_exit, 35, 70);
    name_prompt(ziel, Keyword::dots_34, 36);
    name_prompt(ziel, Keyword::dots_32, 20);
    if (module1_.warteok && ziel.find(Keyword::ok) > 0) {
        module1_.warteok = false;
        ziel.clear();
    }
    if (module1_.wartelf && ziel.find(Keyword::line_feed) > 0) {
        module1_.wartelf = false;
        ziel.clear();
    }
    if (ziel.find(Keyword::connect) > 0) connected(ziel);
    if (ziel.find(Keyword::sms_prompt) > 0) module1_.smsprompt = false;
    if (module1_.loginalter < 15) login(ziel);
    if (!module1_.protokollaktiv) answers(ziel);
    if (module1_.wartefortsetzung) continuation(ziel);
    bool capture_taken = false;
    if (const std::size_t p = ziel.find(Keyword::capture_begins); p > 0) {
        ziel.cut_to(p + 3);
        capture_taken = true;
        receive_events.capture_begins();
    }
    if (module1_.protokollaktiv) {
        receive_events.capture_input(ziel);
    } else {
        frmTerminal_.protbytes = 0;
        frmTerminal_.txtprotschreib.Visible = false;
    }
    if (frmTerminal_.batempfang) receive_events.block_input(ziel);
    return capture_taken;
}

// Kept: from the 500th character on. Chunks may be larger than what that takes away; then the oldest go.
void Receive::trim(SearchWindow& ziel) const {
    if (ziel.length() > most_searched) ziel.cut_to(500);
    if (ziel.length() > most_searched) ziel.keep_last(most_searched);
}

void Receive::remote_control_ended(SearchWindow& ziel) {
    frmTerminal_.sbrStatus.projekt.Text = "online mit: " + module1_.projektname;
    if (frmTerminal_.fernbedaktiv || frmTerminal_.fbpause) {
        frmTerminal_.termecho = false;
        frmTerminal_.Timer3.Enabled = true;
        frmTerminal_.txtterm.Visible = true;
        frmTerminal_.fernbedaktiv = false;
        frmTerminal_.Picture1.Visible = false;
        if (frmTerminal_.visaktiv) {
            frmTerminal_.visaktiv = false;
            frmTerminal_.txttovis.Text = "BEENDEN";
        }
    }
    ziel.clear();
}

// The site's name in the head of the mirrored display. The window isn't emptied: it is found anew with every
// chunk for as long as it stands there.
void Receive::banner(SearchWindow& ziel, Keyword keyword, std::size_t name_at, std::size_t length_above) {
    const std::size_t p = ziel.find(keyword);
    if (p < 1 || p > 40 || ziel.length() <= p + length_above) return;
    module1_.projektname = ziel.text().substr(p + name_at - 1, name_length);
    frmTerminal_.sbrStatus.projekt.Text = "Fernbed.: " + module1_.projektname;
    if (module1_.protokollan && !frmTerminal_.fernbedaktiv) events_.protocol_mark("  *FERNBED ");
}

void Receive::name_prompt(SearchWindow& ziel, Keyword keyword, std::size_t length_above) {
    const std::size_t p = ziel.find(keyword);
    if (p < 1 || ziel.length() <= p + length_above) return;
    output_.sendetext(module1_.txtanrufer);
    ziel.clear();
    frmTerminal_.tastenrest = 6;
}

void Receive::connected(SearchWindow& ziel) {
    frmTerminal_.Timer24.Enabled = false;
    output_.sendetext(xon);
    if (module1_.dialalter < 31 && !module1_.autoverbindung) {
        frmTerminal_.Timer4.Enabled = true;
        ziel.clear();
    } else if (module1_.autoverbindung) {
        ziel.clear();
        module1_.autoverbindung = false;
        if (module1_.autolog) append_collection_log();
    }
    if (module1_.protokollan) events_.protocol_mark("  CONNECT ");
}

void Receive::append_collection_log() {
    // Errors are ignored here: a run goes on without its log.
    (void)append_to(files_, settings_.autoholpfad.text(),
                    "\r\n\r\n" + time_text(loop_.local_time()) + " CONNECT  \r\n");
}

void Receive::login(SearchWindow& ziel) {
    if (ziel.find(Keyword::username) > 0) {
        module1_.usernamegesehen = true;
        ziel.clear();
    }
    if (ziel.find(Keyword::password) > 0) {
        module1_.passwordgesehen = true;
        ziel.clear();
    }
}

void Receive::answers(SearchWindow& ziel) {
    struct Row {
        Keyword keyword;
        std::int16_t antwortcode;
    };
    constexpr Row rows[] = {{Keyword::err, 1}, {Keyword::okk, 2}, {Keyword::neuv2, 10}};
    for (const Row& row : rows) {
        if (ziel.find(row.keyword) == 0) continue;
        module1_.antwortcode = row.antwortcode;
        module1_.warteantwort = false;
        ziel.clear();
    }
}

void Receive::continuation(SearchWindow& ziel) {
    const std::size_t p = ziel.find(Keyword::continuation);
    if (p == 0) return;
    constexpr std::size_t digits = 8;
    const std::size_t from = p - 1 < digits ? 0 : p - 1 - digits;
    const double position = val(ziel.text().substr(from, p - 1 - from));
    module1_.dateipos = static_cast<std::int32_t>(std::clamp(position, 0.0, 2147483647.0));
    module1_.wartefortsetzung = false;
}

} // namespace velorn
