// velorn-plant: serves simulated controllers and modems on pseudo terminals and TCP ports.

#include "plant/demo_archives.h"
#include "plant/demo_book.h"
#include "plant/options.h"
#include "plant/plant.h"
#include "plant/poll_event_loop.h"
#include "runtime/text.h"

#include <csignal>
#include <cstdio>
#include <poll.h>
#include <string>
#include <string_view>
#include <sys/signalfd.h>
#include <unistd.h>
#include <vector>

namespace {

using namespace velorn;
using namespace velorn::plant;

void print(std::FILE* where, std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), where);
    std::fflush(where);
}

// Ctrl+C and the wish to terminate arrive as readable bytes, so that the end comes from the loop and in
// order.
class Signals {
  public:
    explicit Signals(PollEventLoop& loop) : loop_(loop) {
        sigset_t wanted;
        sigemptyset(&wanted);
        sigaddset(&wanted, SIGINT);
        sigaddset(&wanted, SIGTERM);
        sigaddset(&wanted, SIGHUP);
        sigprocmask(SIG_BLOCK, &wanted, nullptr);
        std::signal(SIGPIPE, SIG_IGN);
        descriptor_ = ::signalfd(-1, &wanted, SFD_CLOEXEC | SFD_NONBLOCK);
        loop_.watch(descriptor_, POLLIN, [this](short) { loop_.end(); });
    }
    ~Signals() {
        loop_.unwatch(descriptor_);
        ::close(descriptor_);
    }
    Signals(const Signals&) = delete;
    Signals& operator=(const Signals&) = delete;

  private:
    PollEventLoop& loop_;
    int descriptor_ = -1;
};

bool write_book(const EventLoop& loop, const Options& options) {
    const auto told = [](const Result<std::vector<std::string>>& written) {
        if (!written) {
            print(stderr, "velorn-plant: " + utf8_from_cp1252(written.failure().text) + "\n");
            return false;
        }
        for (const std::string& path : *written) print(stdout, "geschrieben: " + path + "\n");
        return true;
    };
    const Directory directory = demo_directory(options.faults.seed);
    const DateTime today = loop.local_time();
    const bool with_archives = !options.archives.empty();
    const BookOrder order{*options.phone_book, options.protocols, options.visualisation, with_archives};
    return told(write_phone_book(directory, order, today)) &&
           (!with_archives || told(write_archives(directory, options.archives, today)));
}

int serve(const Options& options) {
    PollEventLoop loop(options.speed);
    if (options.phone_book && !write_book(loop, options)) return 1;
    if (!options.serves()) return 0;
    const Signals signals(loop);
    Plant plant(loop, options);
    plant.announce = [](const std::string& line) { print(stdout, line + "\n"); };
    plant.complain = [](const std::string& line) { print(stderr, "velorn-plant: " + line + "\n"); };
    plant.log = [](const std::string& line) { print(stderr, line + "\n"); };
    plant.finished = [&] { loop.end(); };
    if (!plant.open()) return 1;
    loop.run();
    return 0;
}

} // namespace

int main(int count, char** values) {
    const std::vector<std::string_view> arguments(values + (count > 0 ? 1 : 0), values + count);
    const auto parsed = options_from(arguments);
    if (const auto* const mistake = std::get_if<std::string>(&parsed)) {
        print(stderr, "velorn-plant: " + *mistake + "\nMehr sagt: velorn-plant --help\n");
        return 2;
    }
    const auto& options = std::get<Options>(parsed);
    if (options.help) {
        print(stdout, help_text());
        return 0;
    }
    return serve(options);
}
