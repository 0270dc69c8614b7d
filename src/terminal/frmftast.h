// The window that edits the texts of the function keys.
#pragma once

#include "core/settings.h"
#include "runtime/controls.h"
#include "runtime/outside.h"

#include <array>

namespace velorn {

class Frmftast {
  public:
    explicit Frmftast(Settings& settings);

    Form form; // caption "Velorn Funktionstastenbelegung"

    // Index 1 to 12 for F1 to F12; index 0 isn't shown.
    std::array<TextBox, 13> ftast;    // the key alone
    std::array<TextBox, 13> altftast; // with Ctrl held
    Button cmdOK, cmdCancel;

    // Fills the boxes and centres the dialog.
    void Form_Load(ScreenSize screen);
    void cmdOK_Click();     // stores all 24 texts and closes
    void cmdCancel_Click(); // closes

  private:
    void mark(TextBox& box);

    Settings& settings_;
};

} // namespace velorn
