#include "support/receive_pair.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <utility>

namespace velorn::test {

namespace {

using namespace std::string_literals;

class Chunks {
  public:
    explicit Chunks(unsigned seed) : random_(seed) {}

    int below(int n) { return static_cast<int>(random_() % static_cast<unsigned>(n)); }
    bool one_in(int n) { return below(n) == 0; }

    // A few pieces, often with a cut somewhere: its rest comes with the next chunk, or never.
    std::string next() {
        if (one_in(60)) return std::string(static_cast<std::size_t>(1 + below(3)), '\0');
        std::string chunk = std::exchange(rest_, {});
        for (int pieces = 1 + below(3); pieces > 0; --pieces) chunk += piece();
        if (chunk.size() > 1 && one_in(3)) {
            const auto cut = static_cast<std::size_t>(1 + below(static_cast<int>(chunk.size()) - 1));
            if (!one_in(4)) rest_ = chunk.substr(cut);
            chunk.resize(cut);
        }
        return chunk;
    }

    std::string plain(std::size_t length) {
        std::string text;
        for (std::size_t i = 0; i < length; ++i) text += static_cast<char>('a' + below(26));
        return text;
    }

  private:
    std::string piece() {
        static const std::string pieces[] = {
            "*FERNBED",
            "*EDINFO",
            " - OFFLINE - ",
            "   Fernbedienung beendet   ",
            " Ende: <E>      Invers: <I>             ",
            "Fernbedienung: Ausstieg mit ",
            "..................................",
            "....................................",
            "  ................................",
            "OK",
            "OKK",
            "\n",
            "\r\n",
            "CONNECT",
            "CONNECT 9600\r\n",
            "<",
            "Username:",
            "Password:",
            "ERR",
            "NEUV2.0",
            "00012345Fortsetzung Datei",
            "12Fortsetzung Datei",
            "-1.5e3 Fortsetzung Datei",
            "Fortsetzung Datei",
            "\x1b\x1b\x45",
            "\x1b\x1b\x50",
            "\x1b\x1b\x4f",
            "\x1b\x1b\x62\x31",
            "\x1b",
            "\b",
            "\b\b",
            "abc\b\b",
            "\r",
            "\x81\x84\x8e\x94\x99\x9a\xe1",
            "\0"s,
            "a\0b"s,
            ".",
            " ",
        };
        switch (below(8)) {
        case 0: return plain(static_cast<std::size_t>(below(90)));
        case 1: return std::string(static_cast<std::size_t>(below(50)), one_in(2) ? '.' : ' ');
        case 2: {
            std::string bytes;
            for (int i = below(20); i > 0; --i) bytes += static_cast<char>(below(256));
            return bytes;
        }
        default: return pieces[static_cast<std::size_t>(below(static_cast<int>(std::size(pieces))))];
        }
    }

    std::mt19937 random_;
    std::string rest_;
};

// 0, or with --gtest_shuffle the seed of the run: --gtest_shuffle --gtest_repeat=10 gives a million chunks.
unsigned seed() { return static_cast<unsigned>(::testing::UnitTest::GetInstance()->random_seed()); }

void switch_some(ReceivePair& pair, Chunks& chunks) {
    pair.model_takes_state();
    ReceiveState& s = pair.model.state;
    bool* const switches[] = {
        &s.warteok,        &s.wartelf,           &s.warteantwort,    &s.wartefortsetzung,
        &s.smsprompt,      &s.usernamegesehen,   &s.passwordgesehen, &s.protokollan,
        &s.autoverbindung, &s.autolog,           &s.empfleeren,      &s.trace,
        &s.tcpoffen,       &s.gatewayoffen,      &s.fbpause,         &s.visaktiv,
        &s.termecho,       &s.uhrzeitan,         &s.batempfang,      &s.timer24,
        &s.capture_shown,  &s.interruption_shown};
    for (bool* on : switches) {
        if (chunks.one_in(3)) *on = chunks.one_in(2);
    }
    s.fernbedaktiv = chunks.one_in(4);
    s.protokollaktiv = chunks.one_in(4);
    s.empfgrafick = chunks.one_in(12);
    s.timer3 = s.timer4 = s.timer7 = s.timer8 = false;
    s.picture4 = s.picture7 = s.picture8 = colour::green;
    s.logdatei = chunks.one_in(2) ? std::int16_t{0} : std::int16_t{1};
    s.dialalter = static_cast<std::int16_t>(28 + chunks.below(6));
    s.loginalter = static_cast<std::int16_t>(12 + chunks.below(6));
    s.protbytes = static_cast<std::int16_t>(chunks.below(3));
    pair.real_takes_state();
    pair.set_tcp_state(chunks.one_in(3) ? TcpState::closing : TcpState::connected);
    pair.set_port_open(!chunks.one_in(10));
}

} // namespace

TEST(ReceiveModel, agreesOverALongDialogueWithAllSwitches) {
    Chunks chunks(seed());
    ReceivePair pair;
    for (int i = 0; i < 100'000; ++i) {
        if (i % 7 == 0) switch_some(pair, chunks);
        if (i % 97 == 0) pair.pass_seconds(1);
        if (pair.model.window.size() > 600 && chunks.one_in(20)) pair.clear_window();
        if (pair.model.terminal.size() > 3000) pair.clear_terminal();
        const std::string chunk = chunks.next();
        const std::string differences = pair.chunk(chunk, chunks.one_in(2));
        ASSERT_EQ(differences, "") << "after chunk " << i << ": \"" << chunk << '"';
    }
}

TEST(ReceiveModel, agreesWithAFullWindowAndAFullTerminal) {
    Chunks chunks(seed());
    ReceivePair pair;
    const std::string filling = chunks.plain(16'000);
    pair.model.terminal = std::string(545'000, 'x');
    pair.real.frmTerminal.txtterm.set_Text(pair.model.terminal);
    std::size_t longest_window = 0;
    std::size_t longest_terminal = 0;
    for (int i = 0; i < 300; ++i) {
        if (i % 5 == 0) switch_some(pair, chunks);
        const bool fills = pair.model.window.size() <= 50'000 && !chunks.one_in(4);
        const std::string differences = pair.chunk(fills ? filling : chunks.next(), false);
        ASSERT_EQ(differences, "") << "after chunk " << i;
        longest_window = std::max(longest_window, pair.model.window.size());
        longest_terminal = std::max(longest_terminal, pair.model.terminal.size());
    }
    EXPECT_GT(longest_window, 50'000U);
    EXPECT_GT(longest_terminal, 550'000U);
}

} // namespace velorn::test
