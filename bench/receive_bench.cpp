// The receive pipeline without a display, beside a naive make of its searches and beside a single pass over
// the bytes that does as little as can be done. Usage: receive_bench [megabytes] [rounds]
#include "app/program.h"
#include "rounds.h"
#include "runtime/virtual_event_loop.h"
#include "support/fake_printer.h"
#include "support/fake_serial_port.h"
#include "support/fake_tcp_client.h"
#include "support/fake_visualisation.h"
#include "support/memory_files.h"
#include "support/nobody_there.h"

#include <queue>

#include <array>
#include <cstdlib>
#include <string>

using namespace velorn;
using namespace velorn::bench;

namespace {

// Lines of text as a controller's shell sends them, without a keyword in them.
std::string terminal_text(std::size_t size, bool mixed) {
    static constexpr std::string_view plain = "abcdefghijklmnopqrstuvwxyz0123456       ";
    static constexpr std::string_view rich = "etaoinshrdlu ETAOINSHRDLU 0123456789 .,:;-*/()[]=+\x84\x94\x81";
    const std::string_view letters = mixed ? rich : plain;
    std::string text;
    text.reserve(size + 80);
    unsigned random = 2463534242U;
    const auto next = [&random] {
        random ^= random << 13U;
        random ^= random >> 17U;
        random ^= random << 5U;
        return random;
    };
    while (text.size() < size) {
        for (unsigned left = next() % 60 + 4; left > 0; --left) text += letters[next() % letters.size()];
        text += "\r\n";
    }
    text.resize(size);
    return text;
}

struct Bench {
    VirtualEventLoop loop;
    velorn::test::MemoryFiles files;
    velorn::test::NobodyThere dialogs;
    velorn::test::FakeSerialPort serial{loop};
    velorn::test::FakeTcpClient tcp{loop};
    test::FakePrinter printer;
    test::FakeProcesses processes;
    test::FakeVisualisation visualisation;
    Program program{World{
        loop, files, dialogs, serial, tcp, printer, processes, visualisation, "c:\\velorn", {1366, 768}}};

    explicit Bench(const std::string& text) {
        program.module1.loginalter = 1000;
        program.module1.dialalter = 1000;
        std::string window = text.substr(0, Receive::most_searched);
        program.receive.empfangauswerten(window, program.receive.txtvergl);
    }

    // Bytes through the scanner and all it does, in MB/s.
    double scanner(std::string_view text, std::size_t chunk) {
        std::string empfangen;
        const double begin = seconds_now();
        for (std::size_t i = 0; i < text.size(); i += chunk) {
            empfangen.assign(text.substr(i, chunk));
            program.receive.empfangauswerten(empfangen, program.receive.txtvergl);
        }
        return static_cast<double>(text.size()) / (seconds_now() - begin) / 1e6;
    }

    // The same from the port on, terminal text included.
    double whole(std::string_view text, std::size_t chunk) {
        const double begin = seconds_now();
        for (std::size_t i = 0; i < text.size(); i += chunk) {
            serial.arrives(text.substr(i, chunk));
            loop.settle();
        }
        return static_cast<double>(text.size()) / (seconds_now() - begin) / 1e6;
    }
};

// The twenty searches that every chunk costs when the window is a plain text.
double naive(std::string_view text, std::size_t chunk) {
    std::string window(text.substr(0, Receive::most_searched));
    std::size_t found = 0;
    const double begin = seconds_now();
    for (std::size_t i = 0; i < text.size(); i += chunk) {
        if (window.size() > Receive::most_searched) window.erase(0, window.size() - Receive::most_searched);
        window.append(text.substr(i, chunk));
        for (std::size_t k = 0; k < 20; ++k)
            found += window.find(text_of(static_cast<Keyword>(k))) != std::string::npos;
    }
    const double rate = static_cast<double>(text.size()) / (seconds_now() - begin) / 1e6;
    if (found == 4711) std::puts("");
    return rate;
}

// Everything that has to be done with a byte, in one pass: drop NULs, log, translate, keep, run an automaton.
class OnePass {
  public:
    OnePass() {
        add_state();
        for (std::size_t k = 0; k < 20; ++k) {
            std::size_t state = 0;
            for (const char c : text_of(static_cast<Keyword>(k))) {
                const auto byte = static_cast<unsigned char>(c);
                if (go_[state][byte] == 0) {
                    const auto added = static_cast<std::uint16_t>(go_.size());
                    add_state();
                    go_[state][byte] = added;
                }
                state = go_[state][byte];
            }
            hit_[state] = true;
        }
        std::vector<std::size_t> fail(go_.size(), 0);
        std::queue<std::size_t> todo;
        for (const auto child : go_[0]) {
            if (child != 0) todo.push(child);
        }
        while (!todo.empty()) {
            const std::size_t state = todo.front();
            todo.pop();
            hit_[state] = hit_[state] || hit_[fail[state]];
            for (std::size_t b = 0; b < 256; ++b) {
                const auto child = go_[state][b];
                if (child != 0) {
                    fail[child] = go_[fail[state]][b];
                    todo.push(child);
                } else {
                    go_[state][b] = go_[fail[state]][b];
                }
            }
        }
        for (std::size_t i = 0; i < 256; ++i) table_[i] = static_cast<unsigned char>(i);
        for (const auto& [from, to] :
             {std::pair{129, 252}, {132, 228}, {142, 196}, {148, 246}, {153, 214}, {154, 220}}) {
            table_[static_cast<std::size_t>(from)] = static_cast<unsigned char>(to);
        }
    }

    double run(std::string_view text, std::size_t chunk) {
        std::size_t state = 0;
        std::size_t logged = 0;
        std::size_t kept = 0;
        const double begin = seconds_now();
        for (std::size_t i = 0; i < text.size(); i += chunk) {
            for (const char c : text.substr(i, chunk)) {
                const auto byte = static_cast<unsigned char>(c);
                if (byte == 0) continue;
                log_[logged++ & (log_.size() - 1)] = byte;
                const unsigned char letter = table_[byte];
                ring_[kept++ & (ring_.size() - 1)] = letter;
                state = go_[state][letter];
                if (hit_[state]) [[unlikely]]
                    ++found_;
            }
        }
        return static_cast<double>(text.size()) / (seconds_now() - begin) / 1e6;
    }

    std::size_t found_ = 0;

  private:
    void add_state() {
        go_.emplace_back().fill(0);
        hit_.push_back(0);
    }

    std::vector<std::array<std::uint16_t, 256>> go_;
    std::vector<char> hit_;
    std::array<unsigned char, 256> table_{};
    std::vector<unsigned char> log_ = std::vector<unsigned char>(1U << 20U);
    std::vector<unsigned char> ring_ = std::vector<unsigned char>(1U << 16U);
};

} // namespace

int main(int argc, char** argv) {
    const auto bytes = static_cast<std::size_t>((argc > 1 ? std::atof(argv[1]) : 64) * 1e6);
    const int rounds = argc > 2 ? std::atoi(argv[2]) : 7;
    for (const bool mixed : {false, true}) {
        const std::string text = terminal_text(bytes, mixed);
        const std::string_view all = text;
        Bench bench(text);
        OnePass one_pass;
        std::printf("%s, %zu MB\n", mixed ? "mixed text" : "plain lower-case text", bytes / 1'000'000);
        run(
            {
                {"one_pass_1460", "MB/s", [&] { return one_pass.run(all, 1460); }},
                {"naive_1460", "MB/s", [&] { return naive(all.substr(0, bytes / 32), 1460); }},
                {"scanner_1460", "MB/s", [&] { return bench.scanner(all, 1460); }, "one_pass_1460", 0.6},
                {"scanner_1460_beside_naive", "MB/s", [&] { return bench.scanner(all, 1460); }, "naive_1460",
                 25},
                {"one_pass_1", "MB/s", [&] { return one_pass.run(all.substr(0, bytes / 4), 1); }},
                {"scanner_1", "MB/s", [&] { return bench.scanner(all.substr(0, bytes / 4), 1); },
                 "one_pass_1", 0.05},
            },
            rounds);
        bench.program.start.Form_Load();
        bench.loop.pass(2000);
        run({{"port_to_terminal_1460", "MB/s", [&] { return bench.whole(all, 1460); }},
             {"port_to_terminal_1", "MB/s", [&] { return bench.whole(all.substr(0, bytes / 64), 1); }}},
            rounds);
        if (one_pass.found_ == 4711) std::puts("");
    }
    return 0;
}
