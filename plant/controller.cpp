#include "plant/controller.h"

#include "plant/wording.h"

#include <algorithm>
#include <array>

namespace velorn::plant {

namespace {

constexpr char soh = 1;
constexpr char bell = 7;
constexpr char backspace = 8;

constexpr std::int64_t thinking_ms = 30; // before the first word of every answer
constexpr std::int64_t restart_ms = 4000;
constexpr std::int64_t idle_ms = 10 * 60'000;
constexpr std::int64_t attention_ms = 5000; // for the order after SOH

constexpr std::array<std::string_view, 3> orders_to_display = {"DUE3\r", "DUE4\r", "DUE5\r"};

bool printable(char byte) { return static_cast<unsigned char>(byte) >= 32 && byte != 127; }

} // namespace

Controller::Controller(EventLoop& loop, std::uint64_t seed)
    : loop_(loop), machine_(loop, seed), display_(loop, machine_), recording_{seed}, download_(loop) {
    machine_.reset = [this] { restart(); };
    display_.send = [this](std::string_view bytes) {
        if (send) send(bytes);
    };
    display_.ended = [this] {
        ready();
        flush();
    };
    download_.send = [this](std::string_view bytes) {
        if (send) send(bytes);
    };
    download_.waiting = [this] { return not_carried ? not_carried() : 0; };
    download_.ended = [this](bool by_pc) { download_ended(by_pc); };
    download_.hung_up = [this] {
        download_ended(false);
        if (hang_up) hang_up();
    };
}

Controller::~Controller() {
    loop_.cancel(pending_);
    loop_.cancel(idle_);
}

void Controller::receive(std::string_view bytes) {
    for (const char byte : bytes) {
        if (state_ == State::restarting) continue;
        if (byte == soh) {
            interrupt();
        } else if (state_ == State::display) {
            display_.receive({&byte, 1});
        } else if (state_ == State::attention) {
            heed(byte);
        } else if (state_ == State::download) {
            download_.receive({&byte, 1});
        } else if (state_ != State::busy) {
            take(byte);
        } else if (typed_ahead_.size() < type_ahead) {
            typed_ahead_ += byte;
        }
    }
    if (state_ == State::prompt) begin_idle_time();
    flush();
}

void Controller::interrupt() {
    download_.stop();
    if (display_.is_on()) {
        begin_attention();
        return;
    }
    if (state_ == State::busy) loop_.cancel(pending_);
    to_run_.clear();
    answer_.clear();
    typed_ahead_.clear();
    line_.clear();
    state_ = State::prompt;
    say("\r\n*");
}

void Controller::begin_attention() {
    if (state_ == State::display) display_.hold();
    loop_.cancel(pending_);
    attention_.clear();
    state_ = State::attention;
    pending_ = loop_.post_at(loop_.now_ms() + attention_ms, [this] { end_attention(); });
}

void Controller::heed(char byte) {
    attention_ += byte;
    const std::string words = upper_case(attention_);
    const auto begun = std::find_if(orders_to_display.begin(), orders_to_display.end(),
                                    [&](std::string_view order) { return order.starts_with(words); });
    if (begun == orders_to_display.end()) {
        end_attention();
    } else if (words == *begun) {
        loop_.cancel(pending_);
        begin_download(*DownloadDialogue::kind_of(begun->substr(0, begun->size() - 1)));
    }
}

// It was meant for the display after all.
void Controller::end_attention() {
    loop_.cancel(pending_);
    state_ = State::display;
    display_.go_on(false);
    std::string words;
    words.swap(attention_);
    receive(words);
}

void Controller::begin_download(DownloadDialogue::Kind kind) {
    state_ = State::download;
    download_.begin(kind, recording_);
}

void Controller::download_ended(bool by_pc) {
    if (display_.is_on()) {
        state_ = State::display;
        display_.go_on(true);
        return;
    }
    // What still comes of the dialogue is not for the shell: an answer that is echoed now could be taken for
    // a modem's.
    state_ = State::asleep;
    if (by_pc) say("\r\n*");
    flush();
}

void Controller::caller_is_gone() {
    if (!download_.is_on()) return;
    download_.stop();
    download_ended(false);
}

void Controller::take(char byte) {
    if (state_ == State::asleep) {
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
        if (const auto kind = DownloadDialogue::kind_of(command)) {
            to_run_.clear();
            typed_ahead_.clear();
            begin_download(*kind);
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
    download_.stop();
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
