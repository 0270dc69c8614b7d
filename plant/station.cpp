#include "plant/station.h"

#include "runtime/text.h"

#include <utility>

namespace velorn::plant {

Station::Station(PollEventLoop& loop, StationSettings settings, MakeDevice make)
    : loop_(loop), settings_(std::move(settings)), make_(std::move(make)) {}

Station::~Station() { loop_.cancel(next_); }

Outcome Station::open() {
    auto opened = PseudoTerminal::open(loop_, settings_.link);
    if (!opened) return opened.failure();
    std::unique_ptr<Device> device = make_();
    if (!device) return failure(RunTimeError::port_already_open);
    terminal_ = std::move(opened).value();
    if (announce) {
        announce(settings_.name + ": " + terminal_->device() +
                 (settings_.link.empty() ? std::string() : " (" + settings_.link + ")"));
    }
    session_ = std::make_unique<Session>(loop_, *terminal_, std::move(device), settings_.faults);
    session_->log = log;
    session_->over = [this](Ending ending) {
        if (ending != Ending::half_close) hang_up();
    };
    session_->begin(settings_.name);
    return {};
}

void Station::hang_up() {
    if (announce) announce(settings_.name + ": aufgelegt");
    loop_.cancel(next_);
    next_ = loop_.post([this] {
        session_.reset();
        terminal_.reset();
        next_ = loop_.post_at(loop_.now_ms() + settings_.away_ms, [this] { reopen(); });
    });
}

void Station::reopen() {
    if (const Outcome opened = open(); !opened) {
        if (announce) announce(settings_.name + ": " + utf8_from_cp1252(opened.failure().text));
        next_ = loop_.post_at(loop_.now_ms() + settings_.away_ms, [this] { reopen(); });
    }
}

} // namespace velorn::plant
