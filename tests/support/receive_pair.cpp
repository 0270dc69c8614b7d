#include "support/receive_pair.h"

#include "runtime/number_picture.h"

#include <type_traits>

namespace velorn::test {

namespace {

// Each part of the state: where it stands in the program, and in the model.
template <class Visitor>
void visit_state(ReceiveRig& rig, ReceiveState& s, Visitor visit) {
    Module1& m = rig.module1;
    FrmTerminal& f = rig.frmTerminal;
#define SHARED(name) visit(#name, m.name, s.name)
#define WINDOW(name) visit(#name, f.name, s.name)
    SHARED(warteok);
    SHARED(wartelf);
    SHARED(warteantwort);
    SHARED(wartefortsetzung);
    SHARED(smsprompt);
    SHARED(usernamegesehen);
    SHARED(passwordgesehen);
    SHARED(protokollan);
    SHARED(protokollaktiv);
    SHARED(autoverbindung);
    SHARED(autolog);
    SHARED(empfgrafick);
    SHARED(empfleeren);
    SHARED(trace);
    SHARED(tcpoffen);
    SHARED(gatewayoffen);
    SHARED(antwortcode);
    SHARED(loginalter);
    SHARED(dialalter);
    SHARED(dateipos);
    SHARED(projektname);
    SHARED(letzteip);
    WINDOW(fernbedaktiv);
    WINDOW(fbpause);
    WINDOW(visaktiv);
    WINDOW(termecho);
    WINDOW(uhrzeitan);
    WINDOW(cursorinv);
    WINDOW(batempfang);
    WINDOW(logdatei);
    WINDOW(fbzustand);
    WINDOW(zeile);
    WINDOW(spalte);
    WINDOW(protbytes);
    WINDOW(tastenrest);
#undef SHARED
#undef WINDOW
    visit("txtterm.Visible", f.txtterm.Visible, s.terminal_shown);
    visit("Picture1.Visible", f.Picture1.Visible, s.picture_shown);
    visit("txtprotschreib.Visible", f.txtprotschreib.Visible, s.capture_shown);
    visit("picipunterbr.Visible", f.picipunterbr.Visible, s.interruption_shown);
    visit("Timer3", f.Timer3.Enabled, s.timer3);
    visit("Timer4", f.Timer4.Enabled, s.timer4);
    visit("Timer7", f.Timer7.Enabled, s.timer7);
    visit("Timer8", f.Timer8.Enabled, s.timer8);
    visit("Timer24", f.Timer24.Enabled, s.timer24);
    visit("Picture3", f.Picture3.BackColor, s.picture3);
    visit("Picture4", f.Picture4.BackColor, s.picture4);
    visit("Picture7", f.Picture7.BackColor, s.picture7);
    visit("Picture8", f.Picture8.BackColor, s.picture8);
    visit("projekt", f.sbrStatus.projekt.Text, s.projekt_panel);
    visit("txttovis", f.txttovis.Text, s.txttovis);
}

std::string shown(const std::string& value) { return value; }
template <class T>
std::string shown(const T& value) {
    return std::to_string(value);
}

// The place where two long texts part, with what follows it.
std::string parting(const char* name, std::string_view real, std::string_view model) {
    if (real == model) return {};
    std::size_t at = 0;
    while (at < real.size() && at < model.size() && real[at] == model[at]) ++at;
    return std::string(name) + " parts at " + std::to_string(at) + " (" + std::to_string(real.size()) + ", " +
           std::to_string(model.size()) + "): real \"" + std::string(real.substr(at, 60)) + "\", model \"" +
           std::string(model.substr(at, 60)) + "\"\n";
}

} // namespace

ReceivePair::ReceivePair() { model_takes_state(); }

std::string ReceivePair::chunk(std::string_view bytes, bool over_tcp) {
    model.clock = format(real.loop.local_time(), "hh:mm:ss");
    if (over_tcp) {
        real.receive_tcp(bytes);
        model.tcp(std::string(bytes));
    } else if (real.MSComm1.PortOpen()) {
        real.receive_serial(bytes);
        if (!bytes.empty()) model.serial(std::string(bytes));
    }
    return differences();
}

std::string ReceivePair::differences() {
    std::string told;
    visit_state(real, model.state, [&](const char* name, auto& in_program, auto& in_model) {
        using Value = std::remove_reference_t<decltype(in_model)>;
        const Value value = in_program;
        if (value == in_model) return;
        told += std::string(name) + ": real " + shown(value) + ", model " + shown(in_model) + "\n";
    });
    told += parting("window", real.receive.txtvergl.text(), model.window);
    told += parting("terminal", real.terminal(), model.terminal);
    told += parting("trace", real.frmTerminal.txttest10.Text(), model.trace);
    told += parting("over tcp", real.tcp.take_written(), std::exchange(model.tcp_sent, {}));
    told += parting("collection", real.files.content(ReceiveRig::collection_log), model.collection);
    const std::vector<std::string> raised = real.take_news();
    const std::vector<std::string> expected = std::exchange(model.news, {});
    (void)real.serial.take_written(); // is among the news
    for (std::size_t i = 0; i < std::max(raised.size(), expected.size()); ++i) {
        told += parting("news", i < raised.size() ? raised[i] : "(none)",
                        i < expected.size() ? expected[i] : "(none)");
    }
    if (real.frmTerminal.txttest10.length() > 4000) {
        real.frmTerminal.txttest10.set_Text({});
        model.trace.clear();
    }
    if (model.collection.size() > 400) {
        (void)real.files.remove(ReceiveRig::collection_log);
        model.collection.clear();
    }
    return told;
}

void ReceivePair::model_takes_state() {
    visit_state(real, model.state,
                [](const char*, auto& in_program, auto& in_model) { in_model = in_program; });
}

void ReceivePair::real_takes_state() {
    visit_state(real, model.state,
                [](const char*, auto& in_program, auto& in_model) { in_program = in_model; });
}

void ReceivePair::set_tcp_state(TcpState state) {
    real.tcp.current = state;
    model.tcp_state = static_cast<int>(state);
}

void ReceivePair::set_port_open(bool open) {
    if (real.MSComm1.PortOpen() != open) (void)real.MSComm1.set_PortOpen(open);
    model.port_open = open;
}

void ReceivePair::clear_terminal() {
    real.frmTerminal.txtterm.set_Text({});
    model.terminal.clear();
}

void ReceivePair::clear_window() {
    real.receive.txtvergl.clear();
    model.window.clear();
}

void ReceivePair::pass_seconds(int seconds) {
    real.loop.pass(seconds * 1000);
    model_takes_state();
}

} // namespace velorn::test
