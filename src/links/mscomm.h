// The serial port control MSComm1: the properties that the system knows, over a port of the machine.
//
// Properties that can refuse a value are set by functions that return an Outcome; what was refused changes
// nothing.
#pragma once

#include "runtime/event_loop.h"
#include "runtime/outside.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace velorn {

// "19200,n,8,1": speed, parity letter in any case, data bits, stop bits. Nothing for a malformed text.
std::optional<SerialSettings> parse_serial_settings(std::string_view text);

// The same form back, the parity letter always in lower case.
std::string serial_settings_text(const SerialSettings& settings);

// Values of CommEvent.
enum class CommEvent { none = 0, send = 1, receive = 2, cts = 3, dsr = 4, cd = 5, ring = 6, eof = 7 };

class MSComm {
  public:
    MSComm(EventLoop& loop, SerialPort& port);

    // 1 to 255, else error 380. Error 8005 while the port is open.
    int CommPort() const { return comm_port_; }
    Outcome set_CommPort(int number);

    // Error 380 for a malformed text and for what the system can't do.
    std::string Settings() const { return serial_settings_text(settings_); }
    Outcome set_Settings(std::string_view text);

    // 0 none, 1 XON/XOFF, 2 RTS, 3 XON and RTS; else error 380.
    int Handshaking() const { return static_cast<int>(handshake_); }
    Outcome set_Handshaking(int number);

    bool PortOpen() const { return port_.is_open(); }
    // Opening fails with 8002 (not there), 8005 (in use or open already), 70 or 57; the text says why.
    // Closing what is closed does nothing.
    Outcome set_PortOpen(bool open);

    // The input buffer as bytes: the whole of it with InputLen 0, else the oldest InputLen bytes.
    std::string Input();
    int InputLen() const { return input_len_; }
    Outcome set_InputLen(int bytes); // 0 or more, else error 380
    static constexpr int InBufferSize = 16384;
    int InBufferCount() const; // at most InBufferSize; what is beyond waits in the machine

    void Output(std::string_view bytes);
    static constexpr int OutBufferSize = 256;
    // What has not yet left the machine, the driver's queue included where the system tells it.
    int OutBufferCount() const;
    void drop_output(); // OutBufferCount = 0

    // OnComm is raised for received data when at least this many bytes are there; 0 never.
    int RThreshold() const { return r_threshold_; }
    Outcome set_RThreshold(int bytes);
    // OnComm is raised when OutBufferCount falls from this number or more to below it; 0 never.
    int SThreshold() const { return s_threshold_; }
    Outcome set_SThreshold(int bytes);

    // The first character takes the place of one with a parity error; empty: nothing is replaced.
    const std::string& ParityReplace() const { return parity_replace_; }
    Outcome set_ParityReplace(std::string_view text);

    bool DTREnable() const { return dtr_enable_; }
    void set_DTREnable(bool on);
    bool CDHolding() { return port_.lines().carrier; }
    bool CTSHolding() { return port_.lines().clear_to_send; }
    bool DSRHolding() { return port_.lines().data_set_ready; }

    velorn::CommEvent CommEvent() const { return comm_event_; }
    std::function<void()> OnComm;

    // The open port has gone away (an adapter was unplugged); PortOpen is false.
    std::function<void()> lost;

    // Whether the device of CommPort is there.
    bool is_there() const { return port_.is_there(comm_port_); }

  private:
    void data_arrived();
    void queue_shrank();
    void raise(velorn::CommEvent event);

    EventLoop& loop_;
    SerialPort& port_;
    int comm_port_ = 1;
    SerialSettings settings_;
    Handshake handshake_ = Handshake::none;
    int input_len_ = 32;
    int r_threshold_ = 1;
    int s_threshold_ = 0;
    std::string parity_replace_ = "?";
    bool dtr_enable_ = true;
    velorn::CommEvent comm_event_ = velorn::CommEvent::none;
    int last_out_count_ = 0;
};

} // namespace velorn
