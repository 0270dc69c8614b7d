#include "phonebook/gsm.h"

#include <string>
#include <utility>

namespace velorn {

namespace {

// Steps of 200 ms.
constexpr std::int16_t steps_behind_a_line = 10;
constexpr std::int16_t steps_for_the_prompt = 20;

constexpr std::string_view set_up[] = {
    "ATE1&D0",     "AT+CPIN?", "AT+CRC=1", "AT+CBST=7,0,1", "AT+CSNS=4,2",
    "AT+FCLASS=0", "ATS0=1",   "AT+CSQ",   "AT&D0",         "AT&W0",
};

} // namespace

Gsm::Gsm(EventLoop& loop, Module1& module1, FrmTelefon& frmtelefon, Output& output)
    : loop_(loop), module1_(module1), frmtelefon_(frmtelefon), output_(output) {
    frmtelefon_.Command10.Click = [this] { Command10_Click(); };
    frmtelefon_.Command9.Click = [this] { Command9_Click(); };
    frmtelefon_.Timer5.Tick = [this] { Timer5_Tick(); };
}

void Gsm::Timer5_Tick() {
    if (--frmtelefon_.gsmzaehler < 1) frmtelefon_.Timer5.Enabled = false;
}

// False: the program ends, or somebody dials meanwhile, and the rest would go to the new connection.
bool Gsm::wait(std::int16_t steps, const EventLoop::Condition& leave) {
    const int call = module1_.anrufnr;
    frmtelefon_.gsmzaehler = steps;
    frmtelefon_.Timer5.Enabled = true;
    return loop_.wait_until([&] { return frmtelefon_.gsmzaehler < 1 || leave(); }) &&
           module1_.anrufnr == call;
}

bool Gsm::wait(std::int16_t steps) {
    return wait(steps, [] { return false; });
}

void Gsm::Command10_Click() {
    if (std::exchange(busy_, true)) return;
    for (const std::string_view line : set_up) {
        output_.sendetext(std::string(line) + '\r');
        if (!wait(steps_behind_a_line)) break;
    }
    busy_ = false;
}

void Gsm::Command9_Click() {
    if (std::exchange(busy_, true)) return;
    send_message();
    busy_ = false;
}

void Gsm::send_message() {
    output_.sendetext("AT+CMGF=1\r");
    if (!wait(steps_behind_a_line)) return;
    module1_.smsprompt = true;
    output_.sendetext("AT+CMGS=\"" + frmtelefon_.smsnr.Text.get() + "\"\r");
    if (!wait(steps_for_the_prompt, [this] { return !module1_.smsprompt; })) return;
    output_.sendetext(frmtelefon_.smstxt.Text.get() + '\x1a');
}

} // namespace velorn
