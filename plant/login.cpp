#include "plant/login.h"

#include <utility>

namespace velorn::plant {

namespace {

constexpr char backspace = 8;
constexpr std::string_view asks_name = "\r\nUsername: ";
constexpr std::string_view asks_password = "Password: ";

} // namespace

Login::Login(Credentials credentials, std::unique_ptr<Device> behind)
    : credentials_(std::move(credentials)), behind_(std::move(behind)) {
    // What the device says to nobody in particular is not for those who haven't passed.
    behind_->send = [this](std::string_view bytes) {
        if (state_ == State::through) say(bytes);
    };
    behind_->hung_up = [this](Ending ending) { leave(ending); };
    behind_->waiting = [this] { return unheard(); };
}

Login::~Login() { behind_->send = nullptr; }

void Login::connected() { say(asks_name); }

void Login::disconnected() {
    if (state_ == State::through) behind_->disconnected();
}

void Login::receive(std::string_view bytes) {
    while (!bytes.empty() && state_ != State::refused) {
        if (state_ == State::through) {
            behind_->receive(bytes);
            return;
        }
        take(bytes.front());
        bytes.remove_prefix(1);
    }
}

void Login::take(char byte) {
    const bool shown = state_ == State::name;
    if (byte == '\r') {
        say("\r\n");
        answered();
    } else if (byte == backspace || byte == 127) {
        if (answer_.empty()) return;
        answer_.pop_back();
        if (shown) say("\b \b");
    } else if (static_cast<unsigned char>(byte) >= 32 && answer_.size() < longest_answer) {
        answer_ += byte;
        if (shown) say({&byte, 1});
    }
}

void Login::answered() {
    if (state_ == State::name) {
        name_ = std::exchange(answer_, {});
        state_ = State::password;
        say(asks_password);
        return;
    }
    const bool right = name_ == credentials_.user && answer_ == credentials_.password;
    answer_.clear();
    if (right) {
        state_ = State::through;
        behind_->connected();
    } else if (++failed_ < attempts) {
        state_ = State::name;
        say("Anmeldung falsch\r\n");
        say(asks_name);
    } else {
        state_ = State::refused;
        say("Anmeldung falsch, Verbindung wird getrennt\r\n");
        leave(Ending::close);
    }
}

} // namespace velorn::plant
