// The receive path and its plain model side by side: what is done to one is done to the other, and their
// differences are told.
#pragma once

#include "support/naive_receive.h"
#include "support/receive_rig.h"

#include <string>
#include <string_view>

namespace velorn::test {

struct ReceivePair {
    ReceiveRig real;
    NaiveReceive model;

    ReceivePair();

    // The chunk over one of the links, to both. Their differences, empty if they agree.
    std::string chunk(std::string_view bytes, bool over_tcp);

    // The state as it now stands in the real one goes to the model, or the other way.
    void model_takes_state();
    void real_takes_state();

    void set_tcp_state(TcpState state);
    void set_port_open(bool open);
    void clear_terminal();
    void clear_window();
    void pass_seconds(int seconds);

  private:
    std::string differences();
};

} // namespace velorn::test
