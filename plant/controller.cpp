#include "plant/controller.h"

#include "plant/wording.h"

#include <algorithm>

namespace velorn::plant {

namespace {

constexpr char soh = 1;
constexpr char bell = 7;
constexpr char backspace = 8;

constexpr std::int64_t thinking_ms = 30; // before the first word of every answer
constexpr std::int64_t restart_ms = 4000;
constexpr std::int64_t idle_ms = 10 * 60'000;

bool printable(char byte) { return static_cast<unsigned char>(byte) >= 32 && byte != 127; }

} // namespace

Controller::Controller(EventLoop& loop, std::uint64_t seed)
    : loop_(loop), machine_(loop, seed), display_(loop, machine_) {
    machine_.reset = [this] { restart(); };
    display_.send = [this](std::string_view bytes) {
        if (send) send(bytes);
    };
    display_.ended = [this] {
        ready();
        flush();
    };
}

Controller::~Controller() {
    loop_.cancel(pending_);
    loop_.cancel(idle_);
}

void Controller::receive(std::string_view bytes) {
    for (const char byte : bytes) {
        if (state_ == State::restarting) continue;
        if (state_ == State::display) {
            display_.receive({&byte, 1});
            continue;
        }
        if (state_ != State::busy) {
            take(byte);
        } else if (typed_ahead_.size() < type_ahead) {
            typed_ahead_ += byte;
        }
    }
    if (state_ == State::prompt) begin_idle_time();
    flush();
}

void Controller::take(char byte) {
    if (byte == soh) {
        line_.clear();
        state_ = State::prompt;
        say("\r\n*");
    } else if (state_ == State::asleep) {
        return;
    } else if (byte == '\r') {
        say("\r\n");
        run_line();
    } else if (byte == backspace) {
        if (line_.empty()) return;
        line_.pop_back();
        say("\b \b");
    } else if (printable(byte)) {
        if (line_.size() >= longest_line) {
            out_ += bell;
            return;
        }
        line_ += byte;
        out_ += byte;
    }
}

void Controller::run_line() {
    loop_.cancel(idle_);
    to_run_ = parted(line_);
    std::reverse(to_run_.begin(), to_run_.end());
    line_.clear();
    state_ = State::busy;
    run_next();
}

void Controller::run_next() {
    if (to_run_.empty()) {
        ready();
        return;
    }
    pending_ = loop_.post_at(loop_.now_ms() + thinking_ms, [this] {
        const std::string command = std::move(to_run_.back());
        to_run_.pop_back();
        if (upper_case(command) == "FERNBED") {
            to_run_.clear();
            state_ = State::display;
            display_.begin(site_, asks_for_name_);
            return;
        }
        answer_ = run_command(machine_, command);
        // A command that restarts the system has nobody left to answer.
        if (state_ == State::busy) play(0);
    });
}

void Controller::play(std::size_t step) {
    if (step >= answer_.size()) {
        answer_.clear();
        run_next();
        return;
    }
    const std::int64_t due = loop_.now_ms() + answer_[step].after_ms;
    pending_ = loop_.post_at(due, [this, step] {
        say(answer_[step].text);
        flush();
        play(step + 1);
    });
}

void Controller::ready() {
    state_ = State::prompt;
    say("*");
    std::string waiting;
    waiting.swap(typed_ahead_);
    receive(waiting);
}

void Controller::restart() {
    loop_.cancel(pending_);
    loop_.cancel(idle_);
    display_.stop();
    state_ = State::restarting;
    line_.clear();
    typed_ahead_.clear();
    to_run_.clear();
    answer_.clear();
    machine_.restart();
    say("\r\n*** SYSTEM-RESET ***\r\n");
    flush();
    pending_ = loop_.post_at(loop_.now_ms() + restart_ms, [this] {
        say(filled("\r\nSpeichertest 8192 KByte in Ordnung\r\nBetriebssystem gestartet\r\n"
                   "BHKW-Regelung Version 7.42 läuft an, Neustart Nr. %d\r\n",
                   machine_.restarts()));
        state_ = State::asleep;
        flush();
    });
}

void Controller::begin_idle_time() {
    loop_.cancel(idle_);
    idle_ = loop_.post_at(loop_.now_ms() + idle_ms, [this] {
        state_ = State::asleep;
        line_.clear();
    });
}

void Controller::say(std::string_view utf8) { out_ += cp437_from_utf8(utf8); }

void Controller::flush() {
    if (out_.empty()) return;
    std::string saying;
    saying.swap(out_);
    if (send) send(saying);
}

} // namespace velorn::plant
