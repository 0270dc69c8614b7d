#include "plant/modem.h"

#include "plant/wording.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

namespace velorn::plant {

namespace {

constexpr char backspace = 8;
constexpr char send_message = 26;
constexpr char give_up_message = 27;

constexpr std::size_t far_end_waits = 1024 * 1024; // what a held call is told, so that it says no more

enum Register : std::size_t {
    escape_character = 2,
    carrier_wait_s = 7,
    comma_s = 8,
    guard_time = 12, // fiftieths of a second
};

bool control(char byte) { return static_cast<unsigned char>(byte) < 32; }

char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

bool digit(char c) { return c >= '0' && c <= '9'; }

// Settings that are accepted because every modem has them, and that change nothing here.
struct Accepted {
    std::string_view word;
    unsigned highest;
};

constexpr Accepted accepted[] = {
    {"B", 99},  {"F", 1},   {"L", 3},   {"M", 3},    {"N", 5},   {"P", 0},   {"T", 0},   {"W", 2},
    {"Y", 1},   {"&B", 1},  {"&C", 1},  {"&D", 3},   {"&G", 2},  {"&H", 3},  {"&I", 5},  {"&J", 1},
    {"&K", 6},  {"&L", 1},  {"&M", 5},  {"&N", 9},   {"&P", 3},  {"&Q", 9},  {"&R", 2},  {"&S", 2},
    {"&T", 8},  {"&U", 9},  {"&V", 1},  {"&W", 1},   {"&Y", 1},  {"\\A", 3}, {"\\G", 1}, {"\\J", 1},
    {"\\K", 5}, {"\\N", 7}, {"\\Q", 6}, {"\\T", 90}, {"\\V", 4}, {"\\X", 1}, {"%C", 3},  {"%E", 5},
};

// Words of radio modems. `answer` is what a question or a measuring command says before OK.
struct Word {
    std::string_view word;
    std::string_view answer;
};

constexpr Word words[] = {
    {"CBST", "7,0,1"}, {"CMEE", "0"},   {"CMGF", "1"},   {"CNMI", "0,0,0,0,0"}, {"COPS", "0,0,\"Netz\""},
    {"CPIN", "READY"}, {"CRC", "1"},    {"CREG", "0,1"}, {"CSCS", "\"GSM\""},   {"CSNS", "4"},
    {"CSQ", "21,99"},  {"FCLASS", "0"}, {"IFC", "2,2"},  {"IPR", "9600"},
};

} // namespace

// Reads a command line: blanks don't count, nor does the case.
class Modem::Reader {
  public:
    explicit Reader(std::string_view line) : line_(line) {}

    bool at_end() {
        while (!line_.empty() && line_.front() == ' ') line_.remove_prefix(1);
        return line_.empty();
    }
    char peek() { return at_end() ? '\0' : upper(line_.front()); }
    char take() {
        const char c = peek();
        if (!line_.empty()) line_.remove_prefix(1);
        return c;
    }
    bool takes(char wanted) {
        if (peek() != wanted || wanted == '\0') return false;
        take();
        return true;
    }
    // The number that stands here, 0 if none does; nothing if it is above `highest`.
    std::optional<unsigned> number(unsigned highest) {
        unsigned value = 0;
        while (digit(peek())) {
            value = std::min(value * 10 + static_cast<unsigned>(take() - '0'), 100'000U);
        }
        if (value > highest) return std::nullopt;
        return value;
    }
    // Up to the next ';' outside of quotes.
    void skip_arguments() {
        bool quoted = false;
        while (!line_.empty() && (quoted || line_.front() != ';')) {
            quoted = quoted != (line_.front() == '"');
            line_.remove_prefix(1);
        }
        takes(';');
    }
    void skip_all() { line_ = {}; }

  private:
    std::string_view line_;
};

Modem::Settings Modem::factory_settings() {
    Settings settings;
    auto& s = settings.registers;
    s[escape_character] = '+';
    s[3] = '\r';
    s[4] = '\n';
    s[5] = backspace;
    s[6] = 2;
    s[carrier_wait_s] = 45;
    s[comma_s] = 2;
    s[9] = 6;
    s[10] = 14;
    s[11] = 95;
    s[guard_time] = 50;
    return settings;
}

Modem::Modem(EventLoop& loop, Exchange& exchange) : loop_(loop), exchange_(exchange) {}

Modem::~Modem() {
    loop_.cancel(dialling_);
    drop_call();
}

void Modem::disconnected() {
    loop_.cancel(dialling_);
    drop_call();
    settings_ = factory_settings();
    state_ = State::command;
    hunt_ = Hunt::for_a;
    line_.clear();
    last_line_.clear();
}

void Modem::receive(std::string_view bytes) {
    while (!bytes.empty()) {
        const char byte = bytes.front();
        switch (state_) {
        case State::online:
            watch_for_escape(bytes);
            if (far_ && !far_gone_) far_->receive(bytes);
            return;
        case State::dialling:
            // Line feeds and flow control behind the dial command don't count as a person's key.
            if (!control(byte) || byte == '\r') {
                loop_.cancel(dialling_);
                state_ = State::command;
                report(Result::no_carrier);
            }
            break;
        case State::message: take_message(byte); break;
        case State::command: take_command(byte); break;
        }
        bytes.remove_prefix(1);
    }
}

void Modem::take_command(char byte) {
    if (control(byte) && byte != '\r' && byte != backspace) return;
    if (settings_.echo) say({&byte, 1});
    if (byte == '\r') {
        if (hunt_ == Hunt::whole_line) run_line();
        hunt_ = Hunt::for_a;
        return;
    }
    const char c = upper(byte);
    switch (hunt_) {
    case Hunt::for_a:
        if (c == 'A') hunt_ = Hunt::for_t;
        break;
    case Hunt::for_t:
        if (c == '/') {
            hunt_ = Hunt::for_a;
            line_ = last_line_;
            too_long_ = false;
            run_line();
        } else if (c == 'T') {
            hunt_ = Hunt::whole_line;
            line_.clear();
            too_long_ = false;
        } else if (c != 'A') {
            hunt_ = Hunt::for_a;
        }
        break;
    case Hunt::whole_line:
        if (byte == backspace) {
            if (!line_.empty()) line_.pop_back();
        } else if (line_.size() < longest_line) {
            line_ += byte;
        } else {
            too_long_ = true;
        }
        break;
    }
}

void Modem::run_line() {
    if (too_long_) {
        report(Result::error);
        return;
    }
    last_line_ = line_;
    Reader reader(last_line_);
    while (!reader.at_end()) {
        const Verdict verdict = run_command(reader);
        if (verdict == Verdict::silent) return;
        if (verdict == Verdict::wrong) {
            report(Result::error);
            return;
        }
    }
    report(Result::ok);
}

Modem::Verdict Modem::run_command(Reader& reader) {
    std::string word(1, reader.take());
    if (word == "D") return dial(reader);
    if (word == "S") return run_register(reader);
    if (word == "+") return run_extended(reader);
    if (word == "&" || word == "\\" || word == "%") word += reader.take();
    const auto value = reader.number(999);
    if (!value) return Verdict::wrong;
    const auto on_or_off = [&](bool& place) {
        if (*value > 1) return Verdict::wrong;
        place = *value == 1;
        return Verdict::ok;
    };
    if (word == "E") return on_or_off(settings_.echo);
    if (word == "Q") return on_or_off(settings_.quiet);
    if (word == "V") return on_or_off(settings_.verbose);
    if (word == "X") {
        if (*value > 4) return Verdict::wrong;
        settings_.level = *value;
        return Verdict::ok;
    }
    if (word == "H" && *value <= 1) {
        drop_call();
        return Verdict::ok;
    }
    if (word == "Z" && *value <= 1) {
        drop_call();
        settings_ = factory_settings();
        reader.skip_all();
        return Verdict::ok;
    }
    if (word == "&F" && *value <= 2) {
        settings_ = factory_settings();
        return Verdict::ok;
    }
    if (word == "I" && *value <= 9) {
        write("Anlagenmodem 33600");
        return Verdict::ok;
    }
    if (word == "O" && *value <= 1) return go_online();
    if (word == "A" && *value == 0 && !far_) { // nobody rings
        report(Result::no_carrier);
        return Verdict::silent;
    }
    const auto* const row = std::find_if(std::begin(accepted), std::end(accepted),
                                         [&](const Accepted& a) { return a.word == word; });
    return row != std::end(accepted) && *value <= row->highest ? Verdict::ok : Verdict::wrong;
}

Modem::Verdict Modem::run_register(Reader& reader) {
    const auto place = reader.number(static_cast<unsigned>(settings_.registers.size() - 1));
    if (!place) return Verdict::wrong;
    unsigned& content = settings_.registers[*place];
    if (reader.takes('?')) {
        write(filled("%03u", content));
    } else if (reader.takes('=')) {
        const auto value = reader.number(255);
        if (!value) return Verdict::wrong;
        content = *value;
    }
    return Verdict::ok;
}

Modem::Verdict Modem::run_extended(Reader& reader) {
    std::string word;
    while (reader.peek() >= 'A' && reader.peek() <= 'Z') word += reader.take();
    const bool assigns = reader.takes('=');
    const bool asks = reader.takes('?');
    if (word == "CMGS" && assigns && !asks) {
        state_ = State::message;
        message_ = 0;
        say("\r\n> ");
        return Verdict::silent;
    }
    const auto* const row =
        std::find_if(std::begin(words), std::end(words), [&](const Word& w) { return w.word == word; });
    if (row == std::end(words)) return Verdict::wrong;
    if (!assigns) write("+" + word + ": " + std::string(row->answer));
    reader.skip_arguments();
    return Verdict::ok;
}

void Modem::take_message(char byte) {
    if (byte == send_message) {
        state_ = State::command;
        if (message_ > longest_message) {
            report(Result::error);
            return;
        }
        write(filled("+CMGS: %d", ++messages_ % 256));
        report(Result::ok);
    } else if (byte == give_up_message) {
        state_ = State::command;
        report(Result::ok);
    } else {
        ++message_;
        if (settings_.echo) say({&byte, 1});
    }
}

Modem::Verdict Modem::dial(Reader& reader) {
    if (far_) return Verdict::wrong;
    std::string number;
    std::int64_t pause_ms = 0;
    bool wants_answer = false;
    while (!reader.at_end()) {
        const char c = reader.take();
        if (digit(c) || c == '*' || c == '#' || c == '+') {
            number += c;
        } else if (c == ',') {
            pause_ms += settings_.registers[comma_s] * 1000;
        } else if (c == '@') {
            wants_answer = true;
        } else if (std::string_view("TPW!-()/.").find(c) == std::string_view::npos) {
            return Verdict::wrong;
        }
    }
    state_ = State::dialling;
    dialling_ = loop_.post_at(loop_.now_ms() + pause_ms, [this, number, wants_answer] {
        Call call = exchange_.dial(number);
        call_ends(call, wants_answer);
    });
    return Verdict::silent;
}

// Without the ear for a busy tone or the dial tone the modem waits in vain.
void Modem::call_ends(Call& call, bool wants_answer) {
    const std::int64_t patience_ms = settings_.registers[carrier_wait_s] * 1000;
    const bool hears_busy = settings_.level >= 3;
    const bool hears_dial_tone = settings_.level == 2 || settings_.level == 4;
    std::int64_t after_ms = call.after_ms;
    Result result = Result::no_carrier;
    switch (call.outcome) {
    case Call::Outcome::connects: result = Result::connect; break;
    case Call::Outcome::unknown: break;
    case Call::Outcome::no_answer:
        after_ms = patience_ms;
        if (wants_answer) result = Result::no_answer;
        break;
    case Call::Outcome::busy:
        if (hears_busy)
            result = Result::busy;
        else
            after_ms = patience_ms;
        break;
    case Call::Outcome::no_dialtone:
        if (hears_dial_tone)
            result = Result::no_dialtone;
        else
            after_ms = patience_ms;
        break;
    }
    if (after_ms > patience_ms) {
        after_ms = patience_ms;
        result = Result::no_carrier;
    }
    const std::shared_ptr<Device> far = std::move(call.far);
    dialling_ = loop_.post_at(loop_.now_ms() + after_ms, [this, result, far] {
        if (result == Result::connect && far) {
            connect(far);
        } else {
            state_ = State::command;
            report(result);
        }
    });
}

void Modem::connect(std::shared_ptr<Device> far) {
    far_ = std::move(far);
    far_->send = [this](std::string_view bytes) { far_says(bytes); };
    far_->hung_up = [this](Ending ending) {
        if (ending != Ending::half_close) far_left();
    };
    far_->waiting = [this] { return state_ == State::online ? unheard() : far_end_waits; };
    go_online();
    far_->connected();
}

Modem::Verdict Modem::go_online() {
    if (!far_) return Verdict::wrong;
    state_ = State::online;
    pluses_ = 0;
    last_byte_ms_ = loop_.now_ms();
    report(Result::connect);
    std::string held;
    held.swap(held_);
    say(held);
    return Verdict::silent;
}

void Modem::watch_for_escape(std::string_view bytes) {
    loop_.cancel(escape_);
    for (const char byte : bytes) {
        const bool silence = loop_.now_ms() - last_byte_ms_ >= guard_ms();
        if (static_cast<unsigned char>(byte) != settings_.registers[escape_character]) {
            pluses_ = 0;
        } else if (silence) {
            pluses_ = 1;
        } else {
            pluses_ = pluses_ == 1 || pluses_ == 2 ? pluses_ + 1 : 0;
        }
        last_byte_ms_ = loop_.now_ms();
    }
    if (pluses_ != 3) return;
    escape_ = loop_.post_at(loop_.now_ms() + guard_ms(), [this] {
        state_ = State::command;
        hunt_ = Hunt::for_a;
        report(Result::ok);
    });
}

void Modem::far_says(std::string_view bytes) {
    if (state_ == State::online) {
        say(bytes);
    } else {
        held_ += bytes.substr(0, most_held - held_.size());
    }
}

// The far end is on the stack; it goes when its own work is done.
void Modem::far_left() {
    if (far_gone_) return;
    far_gone_ = true;
    clearing_ = loop_.post([this] {
        drop_call();
        report(Result::no_carrier);
    });
}

void Modem::drop_call() {
    loop_.cancel(escape_);
    loop_.cancel(clearing_);
    far_gone_ = false;
    held_.clear();
    if (state_ == State::online) {
        state_ = State::command;
        hunt_ = Hunt::for_a;
    }
    if (!far_) return;
    const std::shared_ptr<Device> far = std::move(far_);
    far->send = nullptr;
    far->hung_up = nullptr;
    far->disconnected();
}

void Modem::report(Result result) {
    struct Words {
        Result result;
        std::string_view text;
    };
    static constexpr Words texts[] = {
        {Result::ok, "OK"},
        {Result::connect, "CONNECT"},
        {Result::no_carrier, "NO CARRIER"},
        {Result::error, "ERROR"},
        {Result::no_dialtone, "NO DIALTONE"},
        {Result::busy, "BUSY"},
        {Result::no_answer, "NO ANSWER"},
    };
    if (settings_.quiet) return;
    const bool with_speed = result == Result::connect && settings_.level > 0;
    if (!settings_.verbose) {
        say(with_speed ? "12\r" : std::to_string(static_cast<int>(result)) + "\r");
        return;
    }
    const auto* const row =
        std::find_if(std::begin(texts), std::end(texts), [&](const Words& w) { return w.result == result; });
    say("\r\n" + std::string(row->text) + (with_speed ? " 9600" : "") + "\r\n");
}

void Modem::write(std::string_view text) { say("\r\n" + std::string(text) + "\r\n"); }

} // namespace velorn::plant
