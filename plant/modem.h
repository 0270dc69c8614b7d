// A modem with AT commands, as it hangs on a serial port or stands in a gateway. Bytes in, bytes out.
//
// It hunts for "AT" in what it hears, whatever came before it, and runs the line on CR. A line may hold
// several commands; the first one that is wrong ends it with ERROR, so that a wrong initialisation shows.
// After CONNECT bytes pass to the far end and back. "+++" with silence before and behind (register 12,
// fiftieths of a second) comes back to the commands while the call is held; "ATH" ends it, "ATO" goes back to
// it. Any character while it dials gives the call up.
//
// Memory is bounded: a line holds 200 characters (a longer one is answered with ERROR), and what the far end
// says while the commands are open is kept up to 4096 bytes.
#pragma once

#include "plant/device.h"
#include "plant/exchange.h"
#include "runtime/event_loop.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace velorn::plant {

class Modem final : public Device {
  public:
    static constexpr std::size_t longest_line = 200;
    static constexpr std::size_t longest_message = 512;
    static constexpr std::size_t most_held = 4096;

    // `exchange` outlives the modem.
    Modem(EventLoop& loop, Exchange& exchange);
    ~Modem() override;

    void disconnected() override; // hangs up and forgets all settings
    void receive(std::string_view bytes) override;

    bool in_call() const { return far_ != nullptr; }
    bool online() const { return state_ == State::online; }

  private:
    enum class State { command, dialling, online, message };
    enum class Hunt { for_a, for_t, whole_line };
    enum class Result { ok, connect, no_carrier = 3, error, no_dialtone = 6, busy, no_answer };
    enum class Verdict { ok, wrong, silent }; // silent: the answer comes later or has been given

    struct Settings {
        bool echo = true;
        bool quiet = false;
        bool verbose = true;
        unsigned level = 4; // of the result codes: X
        std::array<unsigned, 64> registers{};
    };
    class Reader;

    static Settings factory_settings();

    void take_command(char byte);
    void take_message(char byte);
    void watch_for_escape(std::string_view bytes);
    void run_line();
    Verdict run_command(Reader& reader);
    Verdict run_register(Reader& reader);
    Verdict run_extended(Reader& reader);
    Verdict dial(Reader& reader);
    Verdict go_online();
    void call_ends(Call& call, bool wants_answer);
    void connect(std::shared_ptr<Device> far);
    void far_says(std::string_view bytes);
    void far_left();
    void drop_call();
    void report(Result result);
    void write(std::string_view text); // one line of information
    std::int64_t guard_ms() const { return settings_.registers[12] * 20; }

    EventLoop& loop_;
    Exchange& exchange_;
    Settings settings_ = factory_settings();
    State state_ = State::command;
    Hunt hunt_ = Hunt::for_a;
    std::string line_;
    bool too_long_ = false;
    std::string last_line_; // for "A/"
    std::shared_ptr<Device> far_;
    bool far_gone_ = false;
    std::string held_;
    std::size_t message_ = 0; // characters of the message being typed
    int messages_ = 0;
    int pluses_ = 0;
    std::int64_t last_byte_ms_ = 0;
    EventLoop::TaskId escape_;
    EventLoop::TaskId dialling_;
    EventLoop::TaskId clearing_;
};

} // namespace velorn::plant
