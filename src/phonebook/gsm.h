// A GSM modem on the open link: setting it up, and sending a text message through it. The modem's answers go
// to the terminal and are not looked at; only the prompt of the send command is waited for. With no link open
// the lines are lost, and the commands take their time all the same.
#pragma once

#include "core/module1.h"
#include "links/output.h"
#include "phonebook/frm_telefon.h"
#include "runtime/event_loop.h"

namespace velorn {

class Gsm {
  public:
    Gsm(EventLoop& loop, Module1& module1, FrmTelefon& frmtelefon, Output& output);

  private:
    void Command10_Click();
    void Command9_Click();
    void Timer5_Tick();
    void send_message();
    bool wait(std::int16_t steps);
    bool wait(std::int16_t steps, const EventLoop::Condition& leave);

    EventLoop& loop_;
    Module1& module1_;
    FrmTelefon& frmtelefon_;
    Output& output_;
    bool busy_ = false; // one of the two is at it
};

} // namespace velorn
