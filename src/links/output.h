// The one way out: all text that goes to the controller or to a modem leaves through sendetext.
#pragma once

#include "core/frm_terminal.h"
#include "core/module1.h"
#include "links/mscomm.h"
#include "links/winsock.h"

#include <string_view>

namespace velorn {

class Output {
  public:
    Output(Module1& module1, FrmTerminal& frmTerminal, MSComm& MSComm1, Winsock& Winsock1)
        : module1_(module1), frmTerminal_(frmTerminal), MSComm1_(MSComm1), Winsock1_(Winsock1) {}

    // Bytes as they are; adds nothing, waits for nothing. Takes TCP if `tcpoffen` is set, else the serial
    // port. On a link that is closed or broken the text is lost; on TCP picipunterbr then shows.
    void sendetext(std::string_view text);

    // The same for a password: the byte trace shows stars in its place.
    void send_secret(std::string_view text);

    // Either way out is open, as far as keys are concerned.
    bool link_is_open() const { return MSComm1_.PortOpen() || module1_.tcpoffen; }

  private:
    void send(std::string_view text);

    Module1& module1_;
    FrmTerminal& frmTerminal_;
    MSComm& MSComm1_;
    Winsock& Winsock1_;
};

} // namespace velorn
