// The mirrored display's parser beside a well-known terminal emulator's library with its screen layer, each
// on a stream of its own language and of the same density: text, cursor moves, attributes, line ends.
//     screen_bench [MEGABYTES] [ROUNDS]
#include "controller_stream.h"
#include "core/frm_terminal.h"
#include "rounds.h"
#include "runtime/virtual_event_loop.h"
#include "terminal/screen_parser.h"

#ifdef VELORN_HAS_VTERM
extern "C" {
#include <vterm.h>
}
#endif

#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

using namespace velorn;
using namespace velorn::bench;

namespace {

double parser(std::string_view stream, std::size_t chunk) {
    VirtualEventLoop loop;
    const auto frmTerminal = std::make_unique<FrmTerminal>(loop);
    ScreenParser screen(loop, *frmTerminal);
    const double begin = seconds_now();
    for (std::size_t i = 0; i < stream.size(); i += chunk) {
        screen.feed(stream.substr(i, chunk), false);
        screen.state.aenderungen = 0;
    }
    const double taken = seconds_now() - begin;
    if (frmTerminal->zeile > Schirm::rows) std::abort();
    return static_cast<double>(stream.size()) / taken / 1e6;
}

#ifdef VELORN_HAS_VTERM

std::string terminal_stream(std::size_t size) {
    Random random;
    std::string stream;
    stream.reserve(size + 100);
    while (stream.size() < size) {
        const unsigned piece = random.below(16);
        if (piece < 4) {
            stream += "\x1b[" + std::to_string(random.below(24) + 1) + ';' +
                      std::to_string(random.below(80) + 1) + 'H';
        } else if (piece < 6) {
            stream += random.below(2) != 0 ? "\x1b[7m" : "\x1b[0m";
        } else if (piece < 7) {
            stream += random.below(2) != 0 ? "\x1b[31m" : "\x1b[39m";
        } else if (piece < 8) {
            stream += random.below(32) == 0 ? "\x1b[2J" : "\x1b[K";
        } else {
            add_text(stream, random);
            if (piece % 2 != 0) stream += "\r\n";
        }
    }
    return stream;
}

double vterm(std::string_view stream, std::size_t chunk) {
    static VTermScreenCallbacks callbacks{};
    callbacks.damage = [](VTermRect, void*) { return 1; };
    VTerm* const terminal = vterm_new(24, 80);
    vterm_set_utf8(terminal, 0);
    VTermScreen* const screen = vterm_obtain_screen(terminal);
    vterm_screen_set_callbacks(screen, &callbacks, nullptr);
    vterm_screen_set_damage_merge(screen, VTERM_DAMAGE_SCROLL);
    vterm_screen_reset(screen, 1);
    const double begin = seconds_now();
    for (std::size_t i = 0; i < stream.size(); i += chunk) {
        const std::string_view part = stream.substr(i, chunk);
        vterm_input_write(terminal, part.data(), part.size());
        vterm_screen_flush_damage(screen);
    }
    const double taken = seconds_now() - begin;
    vterm_free(terminal);
    return static_cast<double>(stream.size()) / taken / 1e6;
}

#endif

} // namespace

int main(int argc, char** argv) {
    const auto bytes = static_cast<std::size_t>((argc > 1 ? std::atof(argv[1]) : 64) * 1e6);
    const int rounds = argc > 2 ? std::atoi(argv[2]) : 7;
    const std::string own = controller_stream(bytes);
    const std::string_view all = own;
    std::vector<Case> cases;
#ifdef VELORN_HAS_VTERM
    const std::string other = terminal_stream(bytes);
    const std::string_view theirs = other;
    cases.push_back({"vterm_1460", "MB/s", [&] { return vterm(theirs, 1460); }});
    cases.push_back({"vterm_1", "MB/s", [&] { return vterm(theirs.substr(0, bytes / 16), 1); }});
#else
    std::puts("Without libvterm there is nothing to compare with.");
#endif
    cases.push_back({"parser_1460", "MB/s", [&] { return parser(all, 1460); }, "vterm_1460", 6});
    cases.push_back({"parser_1", "MB/s", [&] { return parser(all.substr(0, bytes / 4), 1); }, "vterm_1", 3});
    run(std::move(cases), rounds);
    return 0;
}
