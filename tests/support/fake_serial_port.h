// A serial port in memory that remembers what was done to it. The test plays the far end.
#pragma once

#include "runtime/event_loop.h"
#include "runtime/outside.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velorn::test {

class FakeSerialPort : public SerialPort {
  public:
    explicit FakeSerialPort(EventLoop& loop) : loop_(loop) {}

    // ---- the far end and the machine ----
    // Bytes come in; the port announces them from within the loop.
    void arrives(std::string_view bytes) {
        if (!open_) return;
        received_ += bytes;
        announce();
    }
    const std::string& written() const { return written_; } // everything that was ever sent
    std::string take_written() { return std::exchange(written_, {}); }
    std::function<void(std::string_view)> on_write;
    void device_goes() {
        there = false;
        if (!open_) return;
        open_ = false;
        received_.clear();
        loop_.post([this] {
            if (lost) lost();
        });
    }
    void set_unsent(std::size_t bytes) {
        unsent_ = bytes;
        if (sent) sent();
    }
    bool there = true;
    bool allows_one_and_a_half = false; // stop bits
    std::vector<There> adapters = {{1, "Schnittstelle im Speicher"}};
    std::optional<Failure> refuses_to_open;
    int opened = 0;
    int open_port = 0;
    SerialSettings settings;
    Handshake handshake = Handshake::none;
    std::optional<char> parity_replacement;
    bool dtr = false;
    Lines line_states;

    // ---- SerialPort ----
    Outcome open(int com_port, const SerialSettings& wanted, Handshake wanted_handshake) override {
        if (refuses_to_open) return *refuses_to_open;
        if (!there) return failure(RunTimeError::invalid_port, "COM" + std::to_string(com_port));
        open_ = true;
        ++opened;
        open_port = com_port;
        settings = wanted;
        handshake = wanted_handshake;
        return {};
    }
    void close() override {
        open_ = false;
        received_.clear();
        unsent_ = 0;
    }
    bool is_open() const override { return open_; }
    bool is_there(int) const override { return there; }
    std::vector<There> ports_there() const override { return there ? adapters : std::vector<There>{}; }
    bool can(const SerialSettings& wanted) const override {
        return wanted.data_bits >= 5 &&
               (allows_one_and_a_half || wanted.stop != SerialSettings::Stop::one_and_a_half);
    }
    Outcome apply(const SerialSettings& wanted) override {
        settings = wanted;
        return {};
    }
    Outcome apply(Handshake wanted) override {
        handshake = wanted;
        return {};
    }
    Outcome replace_parity_errors(std::optional<char> with) override {
        parity_replacement = with;
        return {};
    }
    void set_dtr(bool on) override { dtr = on; }
    Lines lines() override { return line_states; }
    void write(std::string_view bytes) override {
        if (!open_) return;
        written_ += bytes;
        if (on_write) on_write(bytes);
    }
    std::size_t unsent() const override { return unsent_; }
    void drop_unsent() override { unsent_ = 0; }
    std::size_t available() const override { return received_.size(); }
    std::string take(std::size_t most) override {
        std::string bytes = received_.substr(0, most);
        received_.erase(0, bytes.size());
        return bytes;
    }

  private:
    void announce() {
        loop_.post([this] {
            if (arrived) arrived();
        });
    }

    EventLoop& loop_;
    bool open_ = false;
    std::string received_;
    std::string written_;
    std::size_t unsent_ = 0;
};

} // namespace velorn::test
