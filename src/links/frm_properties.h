// The window that sets the serial port.
#pragma once

#include "core/frm_terminal.h"
#include "core/settings.h"
#include "links/mscomm.h"
#include "runtime/controls.h"
#include "runtime/outside.h"

namespace velorn {

class FrmProperties {
  public:
    FrmProperties(Dialogs& dialogs, const SerialPort& machine, Settings& settings, FrmTerminal& frmTerminal,
                  MSComm& MSComm1);

    Form form;
    ComboBox cboPort; // "Com1" to "Com255"; those that are there bear their adapter's name as a note
    ComboBox cboSpeed{true};
    ComboBox cboDataBits;
    ComboBox cboParity; // sorted: Even 0, Mark 1, None 2, Odd 3, Space 4
    ComboBox cboStopBits;
    OptionGroup optFlow;
    OptionGroup optEcho;
    Button cmdOK{"OK"};
    Button cmdCancel{"Abbrechen"};

    // Centred on a screen of this size, filled from the port.
    void Form_Load(ScreenSize screen);
    void LoadPropertySettings();

    // Applies port, settings and handshake in this order; the first that is refused is told, and the window
    // stays open.
    void cmdOK_Click();
    void cmdCancel_Click();

  private:
    bool apply_port();
    bool apply_settings();
    bool apply_handshake();
    bool told(const Outcome& outcome);

    Dialogs& dialogs_;
    const SerialPort& machine_;
    Settings& settings_;
    FrmTerminal& frmTerminal_;
    MSComm& MSComm1_;
    int flow_ = 0;
    bool echo_ = false;
};

} // namespace velorn
