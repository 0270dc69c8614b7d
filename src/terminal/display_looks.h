// Fonts, cell size and colours of the mirrored display and the terminal: from the settings to the controls,
// and the commands of the menu "Darstellung" that change them.
#pragma once

#include "core/frm_terminal.h"
#include "core/settings.h"
#include "core/settings_files.h"
#include "runtime/failure.h"
#include "runtime/outside.h"

#include <functional>
#include <optional>
#include <string>

namespace velorn {

class DisplayLooks {
  public:
    DisplayLooks(Dialogs& dialogs, Settings& settings, SettingsFiles& settings_files,
                 FrmTerminal& frmTerminal);

    // Font and cell size of the mirrored display; error 380 for what the control refuses, 13 for a size that
    // is no number, with the field's name in `refused`.
    Outcome apply_display_font(std::string& refused);
    // The same for the terminal.
    Outcome apply_terminal_font(std::string& refused);
    // The display's colours by `fbfarbe`.
    void apply_display_colours();

    // zeichenbreite and zeilenhoehe from the font size that Picture1 has now.
    void measure_cells();

    // The calendar's small font, and back to the stored one.
    void take_small_font();
    void take_normal_font();

    // The display has another look now and is to be painted anew.
    std::function<void()> changed;

  private:
    void zeisa_Click();
    void zeisa2_Click();
    void mnuzeiabst_Click();
    void mnukorrinv_Click();
    void termfarb_Click();
    template <class Control>
    bool take_font(Control& control, const FontChoice& chosen, Variant& name, Variant& size);
    // Nothing when the person called it off, or after the box that says why it can't be taken.
    std::optional<double> asked_number(std::string_view prompt, std::string_view title, const Variant& now);
    void display_changed();

    Dialogs& dialogs_;
    Settings& settings_;
    SettingsFiles& settings_files_;
    FrmTerminal& frmTerminal_;
};

} // namespace velorn
