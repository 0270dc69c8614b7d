#include "terminal/display_looks.h"

#include "runtime/number_picture.h"
#include "runtime/text.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace velorn {

namespace {

const Variant zero{std::int16_t{0}};
constexpr double small_points = 3;
constexpr double largest_points = 2160; // above it the control takes its largest

// What a font property takes: a name that isn't empty, a size above 0.
Outcome set_font_name(Property<std::string>& property, const Variant& value) {
    const std::string name = value.text();
    if (name.empty()) return failure(RunTimeError::invalid_property);
    property = name;
    return {};
}

Outcome set_font_size(Property<double>& property, const Variant& value) {
    const Result<double> size = value.as_f64();
    if (!size) return size.failure();
    if (!(*size > 0)) return failure(RunTimeError::invalid_property);
    property = std::min(*size, largest_points);
    return {};
}

// Whole sizes are stored as integers, as they always were.
Variant stored_size(double points) {
    const bool whole = points == std::floor(points) && points <= std::numeric_limits<std::int16_t>::max();
    return whole ? Variant(static_cast<std::int16_t>(points)) : Variant(static_cast<float>(points));
}

} // namespace

DisplayLooks::DisplayLooks(Dialogs& dialogs, Settings& settings, SettingsFiles& settings_files,
                           FrmTerminal& frmTerminal)
    : dialogs_(dialogs), settings_(settings), settings_files_(settings_files), frmTerminal_(frmTerminal) {
    frmTerminal_.zeisa.Click = [this] { zeisa_Click(); };
    frmTerminal_.zeisa2.Click = [this] { zeisa2_Click(); };
    frmTerminal_.mnuzeiabst.Click = [this] { mnuzeiabst_Click(); };
    frmTerminal_.mnukorrinv.Click = [this] { mnukorrinv_Click(); };
    frmTerminal_.termfarb.Click = [this] { termfarb_Click(); };
}

Outcome DisplayLooks::apply_display_font(std::string& refused) {
    PictureBox& picture = frmTerminal_.Picture1;
    refused = "fbschrift";
    if (const Outcome set = set_font_name(picture.FontName, settings_.fbschrift); !set) return set;
    refused = "fbschriftgr";
    if (const Outcome set = set_font_size(picture.FontSize, settings_.fbschriftgr); !set) return set;
    measure_cells();
    return {};
}

Outcome DisplayLooks::apply_terminal_font(std::string& refused) {
    RichTextBox& txtterm = frmTerminal_.txtterm;
    refused = "termschrift";
    if (const Outcome set = set_font_name(txtterm.FontName, settings_.termschrift); !set) return set;
    refused = "termschriftgr";
    return set_font_size(txtterm.FontSize, settings_.termschriftgr);
}

void DisplayLooks::apply_display_colours() {
    PictureBox& picture = frmTerminal_.Picture1;
    const bool blue_and_yellow = settings_.fbfarbe > zero;
    const Colour ground = blue_and_yellow ? colour::rgb(0, 0, 192) : colour::rgb(192, 192, 255);
    picture.BackColor = ground;
    picture.FillColor = ground;
    picture.ForeColor = blue_and_yellow ? colour::rgb(255, 255, 0) : colour::black;
    frmTerminal_.termfarb.Checked = blue_and_yellow;
}

void DisplayLooks::measure_cells() {
    const double cell = settings_.zeichenabstand.number() * frmTerminal_.Picture1.FontSize;
    frmTerminal_.zeichenbreite = static_cast<int>(round_to_even(cell));
    frmTerminal_.zeilenhoehe = static_cast<int>(round_to_even(cell * 1.6));
    frmTerminal_.Picture1.changed(); // its view makes room for the cells
}

void DisplayLooks::take_small_font() {
    frmTerminal_.Picture1.FontSize = small_points;
    measure_cells();
}

void DisplayLooks::take_normal_font() {
    (void)set_font_size(frmTerminal_.Picture1.FontSize, settings_.fbschriftgr);
    measure_cells();
}

void DisplayLooks::display_changed() {
    if (changed) changed();
}

void DisplayLooks::zeisa_Click() {
    const Result<double> size = settings_.fbschriftgr.as_f64();
    const PictureBox& picture = frmTerminal_.Picture1;
    // While the calendar is on the picture's own font is the small one.
    const FontChoice now{picture.FontName, size ? *size : picture.FontSize.get()};
    if (const Result<FontChoice> chosen = dialogs_.choose_font(now)) {
        settings_.fbschrift = chosen->name;
        settings_.fbschriftgr = stored_size(chosen->points);
        std::string refused;
        if (const Outcome applied = apply_display_font(refused); !applied)
            dialogs_.message_box(applied.failure().text, 48);
        display_changed();
    }
    settings_files_.saveeinst();
}

void DisplayLooks::zeisa2_Click() {
    const RichTextBox& txtterm = frmTerminal_.txtterm;
    if (const Result<FontChoice> chosen = dialogs_.choose_font({txtterm.FontName, txtterm.FontSize})) {
        settings_.termschrift = chosen->name;
        settings_.termschriftgr = stored_size(chosen->points);
        std::string refused;
        if (const Outcome applied = apply_terminal_font(refused); !applied)
            dialogs_.message_box(applied.failure().text, 48);
    }
    settings_files_.saveeinst();
}

std::optional<double> DisplayLooks::asked_number(std::string_view prompt, std::string_view title,
                                                 const Variant& now) {
    const std::optional<std::string> answer = dialogs_.input_box(prompt, title, now.text());
    if (!answer || answer->empty()) return std::nullopt;
    const std::optional<double> number = number_of(*answer);
    if (!number) dialogs_.message_box(error_text(RunTimeError::type_mismatch), 48);
    return number;
}

void DisplayLooks::mnuzeiabst_Click() {
    const auto spacing = asked_number("Wert für Zeichenabstand Fernbedienung eingeben: (0,75 - 1,25)"_w,
                                      "Zeichenabstand Fernbedienung", settings_.zeichenabstand);
    if (spacing) {
        settings_.zeichenabstand = std::clamp(*spacing, 0.75, 1.25);
        measure_cells();
        display_changed();
    }
    settings_files_.saveeinst();
}

void DisplayLooks::mnukorrinv_Click() {
    const auto correction = asked_number("Koorekturwert für inverse Darstellung eingeben: (-5 bis +5)"_w,
                                         "Korrekturwert", settings_.korrinv);
    if (correction) {
        settings_.korrinv = static_cast<std::int16_t>(round_to_even(std::clamp(*correction, -5.0, 5.0)));
        display_changed();
    }
    settings_files_.saveeinst();
}

void DisplayLooks::termfarb_Click() {
    settings_.fbfarbe = static_cast<std::int16_t>(settings_.fbfarbe > zero ? 0 : 1);
    apply_display_colours();
    display_changed();
    settings_files_.saveeinst();
}

} // namespace velorn
