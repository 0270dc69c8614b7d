// "Username:" and "Password:" in front of another device, as controllers ask on a network. The name is
// echoed, the password isn't; after three wrong attempts the login leaves. What comes behind the right
// password goes to the device.
//
// Memory is bounded: an answer holds 64 characters, the rest is lost.
#pragma once

#include "plant/device.h"

#include <memory>
#include <string>
#include <string_view>

namespace velorn::plant {

struct Credentials {
    std::string user;
    std::string password;
};

class Login final : public Device {
  public:
    static constexpr std::size_t longest_answer = 64;
    static constexpr int attempts = 3;

    Login(Credentials credentials, std::unique_ptr<Device> behind);
    ~Login() override;

    void connected() override;
    void disconnected() override;
    void receive(std::string_view bytes) override;

    bool passed() const { return state_ == State::through; }

  private:
    enum class State { name, password, through, refused };

    void take(char byte);
    void answered();

    Credentials credentials_;
    std::unique_ptr<Device> behind_;
    State state_ = State::name;
    std::string name_;
    std::string answer_;
    int failed_ = 0;
};

} // namespace velorn::plant
