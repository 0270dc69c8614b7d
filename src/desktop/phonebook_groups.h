// The groups below the phone book's lines: dialling, editing, this PC, messages by GSM modem.
#pragma once

#include "desktop/control_widgets.h"
#include "phonebook/frm_telefon.h"

namespace velorn {

QWidget* phonebook_groups(FrmTelefon& frmtelefon, ControlWidgets& widgets, QWidget* parent);

} // namespace velorn
