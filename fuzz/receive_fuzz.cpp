// Any bytes as chunks over both links, with any switches: the receive path and its plain model must agree.
//
// The input is read as commands: a byte that says what, then what it needs.
#include "support/receive_pair.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace velorn::test {

namespace {

class Input {
  public:
    explicit Input(std::string_view bytes) : bytes_(bytes) {}

    bool more() const { return !bytes_.empty(); }
    unsigned byte() {
        if (bytes_.empty()) return 0;
        const auto value = static_cast<unsigned char>(bytes_.front());
        bytes_.remove_prefix(1);
        return value;
    }
    std::string_view take(std::size_t most) {
        const std::string_view taken = bytes_.substr(0, most);
        bytes_.remove_prefix(taken.size());
        return taken;
    }

  private:
    std::string_view bytes_;
};

void check(const std::string& differences) {
    if (differences.empty()) return;
    std::fputs(differences.c_str(), stderr);
    std::abort();
}

void switch_one(ReceivePair& pair, Input& input) {
    pair.model_takes_state();
    ReceiveState& s = pair.model.state;
    bool* const switches[] = {
        &s.warteok,         &s.wartelf,         &s.warteantwort,   &s.wartefortsetzung, &s.smsprompt,
        &s.usernamegesehen, &s.passwordgesehen, &s.protokollan,    &s.autoverbindung,   &s.autolog,
        &s.empfleeren,      &s.trace,           &s.tcpoffen,       &s.gatewayoffen,     &s.fbpause,
        &s.visaktiv,        &s.termecho,        &s.uhrzeitan,      &s.batempfang,       &s.timer24,
        &s.capture_shown,   &s.fernbedaktiv,    &s.protokollaktiv, &s.empfgrafick,
    };
    const unsigned which = input.byte();
    if (which < std::size(switches)) {
        *switches[which] = !*switches[which];
    } else {
        const auto value = static_cast<std::int16_t>(input.byte());
        switch (which % 3) {
        case 0: s.dialalter = value; break;
        case 1: s.loginalter = value; break;
        default: s.logdatei = value; break;
        }
    }
    pair.real_takes_state();
}

void run(std::string_view bytes) {
    ReceivePair pair;
    Input input(bytes);
    while (input.more()) {
        const unsigned what = input.byte();
        switch (what % 8) {
        case 0:
        case 1: check(pair.chunk(input.take(input.byte()), false)); break;
        case 2: check(pair.chunk(input.take(input.byte()), true)); break;
        case 3: // a keyword, or what is left of it behind a cut
        case 4: {
            const std::string_view word = text_of(static_cast<Keyword>(input.byte() % keyword_count));
            const std::size_t cut = what >= 128 ? input.byte() % word.size() : 0;
            std::string chunk(word.substr(cut));
            chunk += input.take(what / 8 % 4);
            check(pair.chunk(chunk, what % 8 == 4));
            break;
        }
        case 5: switch_one(pair, input); break;
        case 6: // much of the same, so that the limits are met
            check(pair.chunk(std::string(16'000, static_cast<char>(input.byte())), what >= 128));
            break;
        default:
            pair.set_tcp_state(static_cast<TcpState>(input.byte() % 10));
            pair.set_port_open(what < 128);
            break;
        }
    }
}

} // namespace

} // namespace velorn::test

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    velorn::test::run({reinterpret_cast<const char*>(data), size});
    return 0;
}
