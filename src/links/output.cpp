#include "links/output.h"

#include "core/trace.h"

namespace velorn {

void Output::sendetext(std::string_view text) {
    if (module1_.trace) trace_bytes(frmTerminal_, sent_prefix, text);
    send(text);
}

void Output::send_secret(std::string_view text) {
    if (module1_.trace) trace_bytes(frmTerminal_, sent_prefix, "***");
    send(text);
}

void Output::send(std::string_view text) {
    if (module1_.tcpoffen) {
        if (Winsock1_.State() == TcpState::connected) {
            Winsock1_.SendData(text);
            frmTerminal_.Picture8.BackColor = colour::red;
            frmTerminal_.Timer8.Enabled = true;
        } else {
            frmTerminal_.picipunterbr.Visible = true;
        }
    } else if (MSComm1_.PortOpen()) {
        MSComm1_.Output(text);
    }
}

} // namespace velorn
