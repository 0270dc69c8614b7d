// Keys typed in the main window: to the link as they are, a few mapped to the controller's codes, function
// keys to their stored texts. A view hands on each stroke once, wherever the focus stands.
#pragma once

#include "core/frm_terminal.h"
#include "core/settings.h"
#include "core/wait_counter.h"
#include "links/output.h"
#include "runtime/event.h"

#include <string_view>

namespace velorn {

class Keys {
  public:
    // Bits of `shift`.
    static constexpr int shift_key = 1;
    static constexpr int ctrl_key = 2;
    static constexpr int alt_key = 4;

    Keys(FrmTerminal& frmTerminal, const Settings& settings, WaitCounter& waits, Output& output)
        : frmTerminal_(frmTerminal), settings_(settings), waits_(waits), output_(output) {}

    // A key goes down, by its virtual key code (65 "A", 112 F1). True: the stroke is used up and types
    // nothing.
    bool key_down(int keycode, int shift);

    // A character was typed, cp1252.
    void Form_KeyPress(unsigned char code);

    // The reading of parameter memory is given up; its file is to be closed.
    Event<> batempfang_given_up;

  private:
    void Form_KeyDown(int keycode, int shift);
    void function_key(const Variant& stored);
    void send_if_open(std::string_view text);

    FrmTerminal& frmTerminal_;
    const Settings& settings_;
    WaitCounter& waits_;
    Output& output_;
};

} // namespace velorn
