#include "plant/station.h"

#include "plant/wording.h"
#include "runtime/calendar.h"
#include "runtime/text.h"

#include <utility>

namespace velorn::plant {

namespace {

constexpr std::size_t most_on_the_way = 16 * 1024;

std::string shown(std::string_view bytes) {
    std::string out;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 32 || byte > 126) {
            out += filled("<%02X>", byte);
        } else {
            out += c;
        }
    }
    return out;
}

} // namespace

Station::Station(PollEventLoop& loop, StationSettings settings)
    : loop_(loop), settings_(std::move(settings)) {}

Station::~Station() { loop_.cancel(next_); }

Outcome Station::open() {
    auto opened = PseudoTerminal::open(loop_, settings_.link);
    if (!opened) return opened.failure();
    terminal_ = std::move(opened).value();
    line_ = std::make_unique<Line>(loop_, settings_.faults);
    line_->at_outside = [this](std::string_view bytes) {
        note("sendet   ", bytes);
        terminal_->send(bytes);
        keep_reading_in_bounds();
    };
    line_->hung_up = [this] { hang_up(); };
    terminal_->received = [this](std::string_view bytes) {
        note("empfängt ", bytes);
        line_->from_outside(bytes);
        keep_reading_in_bounds();
    };
    if (announce) {
        announce(settings_.name + ": " + terminal_->device() +
                 (settings_.link.empty() ? std::string() : " (" + settings_.link + ")"));
    }
    if (settings_.source) {
        source_.emplace(settings_.faults.seed, *settings_.source);
        line_->at_controller = [this](std::string_view) { keep_reading_in_bounds(); };
        pump();
    } else {
        controller_ = std::make_unique<Controller>(loop_, settings_.faults.seed);
        controller_->send = [this](std::string_view bytes) { line_->from_controller(bytes); };
        line_->at_controller = [this](std::string_view bytes) {
            controller_->receive(bytes);
            keep_reading_in_bounds();
        };
    }
    return {};
}

void Station::note(std::string_view direction, std::string_view bytes) {
    if (!log) return;
    const DateTime now = loop_.local_time();
    log(time_text(now) + filled(",%03d  ", now.millisecond) + settings_.name + " " + std::string(direction) +
        shown(bytes));
}

void Station::keep_reading_in_bounds() {
    terminal_->pause(line_->waiting_inward() > most_on_the_way || line_->waiting_outward() > most_on_the_way);
}

void Station::hang_up() {
    if (announce) announce(settings_.name + ": aufgelegt");
    loop_.cancel(next_);
    // The line is on the stack; it goes when its own work is done.
    next_ = loop_.post([this] {
        controller_.reset();
        line_.reset();
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

void Station::pump() {
    const bool room = line_->waiting_outward() < most_on_the_way && terminal_->queued() < most_on_the_way;
    if (room && !source_->empty()) line_->from_controller(source_->next(4096));
    if (source_->empty()) {
        await_reader(false);
        return;
    }
    // A hang-up may have come out of the line meanwhile; it cancels this.
    next_ = loop_.post_at(loop_.now_ms() + (room ? 0 : 1), [this] { pump(); });
}

// Twice in a row there has to be nothing left: between the system's buffers bytes are out of sight for a
// moment.
void Station::await_reader(bool was_empty) {
    const bool empty = line_->waiting_outward() == 0 && terminal_->queued() == 0 && terminal_->unread() == 0;
    if (empty && was_empty) {
        if (finished) finished();
        return;
    }
    next_ = loop_.post_at(loop_.now_ms() + 50, [this, empty] { await_reader(empty); });
}

} // namespace velorn::plant
