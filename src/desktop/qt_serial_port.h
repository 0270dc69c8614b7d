// The serial port of the machine, over the toolkit's. Pseudo terminals and symbolic links to devices serve
// too; lines that a device doesn't have are ignored.
//
// All news comes through the event loop, so a callback may close the port or open it anew. What nobody takes
// stays in bounded buffers here (128 KiB) and after that with the system, which holds the sender back by its
// handshake.
#pragma once

#include "runtime/event_loop.h"
#include "runtime/outside.h"

#include <memory>

namespace velorn {

class QtSerialPort final : public SerialPort {
  public:
    // `device` gives the device of a port number, UTF-8; empty if there is none.
    QtSerialPort(EventLoop& loop, std::function<std::string(int)> device);
    ~QtSerialPort() override;

    Outcome open(int com_port, const SerialSettings& settings, Handshake handshake) override;
    void close() override;
    bool is_open() const override { return line_ != nullptr; }
    bool is_there(int com_port) const override;
    std::vector<There> ports_there() const override;

    bool can(const SerialSettings& settings) const override;
    Outcome apply(const SerialSettings& settings) override;
    Outcome apply(Handshake handshake) override;
    Outcome replace_parity_errors(std::optional<char> with) override;
    void set_dtr(bool on) override;
    Lines lines() override;

    void write(std::string_view bytes) override;
    std::size_t unsent() const override;
    void drop_unsent() override;
    std::size_t available() const override;
    std::string take(std::size_t most) override;

  private:
    struct Line; // one opening; news of an opening that is over comes to nothing

    void collect();
    void announce();
    void watch_sending();
    void look_whether_gone();
    void post(void (QtSerialPort::*news)());
    void news_arrived();
    void news_sent();
    void news_lost();
    bool restore_native();

    EventLoop& loop_;
    std::function<std::string(int)> device_;
    std::shared_ptr<Line> line_;
};

} // namespace velorn
