#include "support/naive_receive.h"

#include <cctype>
#include <cmath>
#include <cstdlib>

namespace velorn::test {

namespace {

void replace_all(std::string& text, unsigned from, unsigned to) {
    for (char& c : text) {
        if (static_cast<unsigned char>(c) == from) c = static_cast<char>(to);
    }
}

void umlauts(std::string& text) {
    replace_all(text, 129, 252);
    replace_all(text, 132, 228);
    replace_all(text, 142, 196);
    replace_all(text, 148, 246);
    replace_all(text, 153, 214);
    replace_all(text, 154, 220);
}

void add_trace(std::string& trace, const std::string& prefix, const std::string& text) {
    for (const char c : text) {
        const int code = static_cast<unsigned char>(c);
        trace += prefix + std::to_string(code);
        if (code > 31) trace += std::string(" ") + c;
        trace += "\r\n";
    }
}

// The number that the text begins with, blanks left out.
std::int32_t leading_number(const std::string& text) {
    std::string packed;
    for (const char c : text) {
        if (c != ' ') packed += c;
    }
    const auto digit = [&](std::size_t i) {
        return i < packed.size() && packed[i] >= '0' && packed[i] <= '9';
    };
    std::size_t i = 0;
    if (i < packed.size() && (packed[i] == '+' || packed[i] == '-')) ++i;
    bool any = false;
    for (; digit(i); ++i) any = true;
    if (i < packed.size() && packed[i] == '.') {
        ++i;
        for (; digit(i); ++i) any = true;
    }
    if (!any) return 0;
    if (i < packed.size() && (packed[i] == 'e' || packed[i] == 'E')) {
        std::size_t k = i + 1;
        if (k < packed.size() && (packed[k] == '+' || packed[k] == '-')) ++k;
        while (digit(k)) i = ++k;
    }
    const double number = std::strtod(packed.substr(0, i).c_str(), nullptr);
    if (number <= 0) return 0;
    if (number >= 2147483647.0) return 2147483647;
    return static_cast<std::int32_t>(number);
}

} // namespace

std::size_t NaiveReceive::find(const std::string& keyword) const {
    const std::size_t at = window.find(keyword);
    return at == std::string::npos ? 0 : at + 1;
}

void NaiveReceive::serial(std::string chunk) {
    state.picture4 = colour::red;
    state.timer7 = true;
    both(chunk, false);
}

void NaiveReceive::tcp(std::string chunk) {
    state.picture7 = colour::red;
    state.timer7 = true;
    state.letzteip = chunk;
    both(chunk, true);
}

void NaiveReceive::both(std::string& empfangen, bool over_tcp) {
    if (state.empfgrafick) {
        umlauts(empfangen);
        if (state.trace) add_trace(trace, "", empfangen);
        news.push_back((state.empfleeren ? "emptied download:" : "download:") + empfangen);
        state.empfleeren = false;
        return;
    }
    if (state.trace) add_trace(trace, "", empfangen);
    empfangauswerten(empfangen);
    const std::string link = over_tcp ? "tcp " : "";
    if (state.fernbedaktiv && !state.visaktiv) {
        news.push_back(link + "screen:" + empfangen);
    } else if (state.fernbedaktiv && state.visaktiv) {
        news.push_back(link + "visual:" + empfangen);
    } else if (!over_tcp || state.gatewayoffen) {
        terminalausgabe(empfangen);
    }
}

void NaiveReceive::empfangauswerten(std::string& empfangen) {
    for (std::size_t at = empfangen.find('\0'); at != std::string::npos; at = empfangen.find('\0')) {
        empfangen.erase(at, 1);
    }
    if (!state.uhrzeitan && state.logdatei != 0) news.push_back("log:" + empfangen);
    umlauts(empfangen);
    if (const std::size_t p = find("\x1b\x1b\x45"); p > 0) {
        window = window.substr(p + 2);
        news.push_back("closelog");
        sendetext("\r");
        sendetext("\r");
    }
    if (window.size() > 50000) window = window.substr(499);
    if (window.size() > 50000) window = window.substr(window.size() - 50000);
    window += empfangen;

    if (find("*FERNBED") > 0) {
        if (!state.fernbedaktiv) {
            mirrored(false);
            if (state.protokollan) mark("  *FERNBED ");
        }
        window = "";
    }
    if (find("*EDINFO") > 0) {
        mirrored(true);
        window = "";
    }
    if (find(" - OFFLINE - ") > 0) remote_control_ended();
    if (find("   Fernbedienung beendet   ") > 0) remote_control_ended();
    head(" Ende: <E>      Invers: <I>             ", 40, 79);
    head("Fernbedienung: Ausstieg mit ", 35, 70);
    dots(0, 34, 36);
    dots(2, 32, 20);
    if (state.warteok && find("OK") > 0) {
        state.warteok = false;
        window = "";
    }
    if (state.wartelf && find("\n") > 0) {
        state.wartelf = false;
        window = "";
    }
    if (find("CONNECT") > 0) {
        state.timer24 = false;
        sendetext("\x11");
        if (state.dialalter < 31 && !state.autoverbindung) {
            state.timer4 = true;
            window = "";
        } else if (state.autoverbindung) {
            window = "";
            state.autoverbindung = false;
            if (state.autolog) collection += "\r\n\r\n" + clock + " CONNECT  \r\n";
        }
        if (state.protokollan) mark("  CONNECT ");
    }
    if (find("<") > 0) state.smsprompt = false;
    if (state.loginalter < 15) {
        if (find("Username:") > 0) {
            state.usernamegesehen = true;
            window = "";
        }
        if (find("Password:") > 0) {
            state.passwordgesehen = true;
            window = "";
        }
    }
    if (!state.protokollaktiv) {
        const std::pair<const char*, std::int16_t> answers[] = {{"ERR", 1}, {"OKK", 2}, {"NEUV2.0", 10}};
        for (const auto& [text, code] : answers) {
            if (find(text) == 0) continue;
            state.antwortcode = code;
            state.warteantwort = false;
            window = "";
        }
    }
    if (state.wartefortsetzung) {
        if (const std::size_t p = find("Fortsetzung Datei"); p > 0) {
            const std::size_t before = p - 1;
            const std::size_t from = before > 8 ? before - 8 : 0;
            state.dateipos = leading_number(window.substr(from, before - from));
            state.wartefortsetzung = false;
        }
    }
    if (const std::size_t p = find("\x1b\x1b\x50"); p > 0) {
        window = window.substr(p + 2);
        news.push_back("capture begins");
        state.protokollaktiv = true;
    }
    if (state.protokollaktiv) {
        news.push_back("capture:" + window);
        if (const std::size_t p = find("\x1b\x1b\x4f"); p > 0) {
            window = window.substr(p + 2);
            state.protokollaktiv = false;
        }
    } else {
        state.protbytes = 0;
        state.capture_shown = false;
    }
    if (state.batempfang) news.push_back("block:" + window);
}

void NaiveReceive::mirrored(bool cursorinv) {
    state.fernbedaktiv = true;
    state.terminal_shown = false;
    state.picture_shown = true;
    state.cursorinv = cursorinv;
    state.fbzustand = 0;
    state.zeile = 1;
    state.spalte = 1;
}

void NaiveReceive::remote_control_ended() {
    state.projekt_panel = "online mit: " + state.projektname;
    if (state.fernbedaktiv || state.fbpause) {
        state.termecho = false;
        state.timer3 = true;
        state.terminal_shown = true;
        state.fernbedaktiv = false;
        state.picture_shown = false;
        if (state.visaktiv) {
            state.visaktiv = false;
            state.txttovis = "BEENDEN";
        }
    }
    window = "";
}

void NaiveReceive::head(const std::string& keyword, std::size_t name_at, std::size_t above) {
    const std::size_t p = find(keyword);
    if (!(p >= 1 && p <= 40 && window.size() > p + above)) return;
    state.projektname = window.substr(p + name_at - 1, 40);
    state.projekt_panel = "Fernbed.: " + state.projektname;
    if (state.protokollan && !state.fernbedaktiv) mark("  *FERNBED ");
}

void NaiveReceive::dots(std::size_t blanks, std::size_t count, std::size_t above) {
    const std::size_t p = find(std::string(blanks, ' ') + std::string(count, '.'));
    if (!(p > 0 && window.size() > p + above)) return;
    sendetext(anrufer);
    window = "";
    state.tastenrest = 6;
}

void NaiveReceive::sendetext(const std::string& text) {
    if (state.trace) add_trace(trace, "        out: ", text);
    if (state.tcpoffen) {
        if (tcp_state == 7) {
            tcp_sent += text;
            state.picture8 = colour::red;
            state.timer8 = true;
        } else {
            state.interruption_shown = true;
        }
    } else if (port_open) {
        news.push_back("serial:" + text);
    }
}

void NaiveReceive::terminalausgabe(std::string text) {
    if (terminal.size() > 550000) terminal = terminal.substr(49999);
    bool last_goes = false;
    for (std::size_t at = text.find('\b'); at != std::string::npos; at = text.find('\b')) {
        if (at == 0) {
            last_goes = true;
            text = text.substr(1);
        } else {
            text = text.substr(0, at - 1) + text.substr(at + 1);
        }
    }
    for (std::size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n')) text.erase(at, 1);
    for (std::size_t at = text.find('\r'); at != std::string::npos; at = text.find('\r', at + 1)) {
        text.insert(at + 1, state.uhrzeitan ? "\n" + clock : "\n");
    }
    if (state.termecho) {
        if (last_goes && !terminal.empty()) terminal.pop_back();
        terminal += text;
    }
    if (state.uhrzeitan && state.logdatei != 0) news.push_back("log:" + text);
}

} // namespace velorn::test
