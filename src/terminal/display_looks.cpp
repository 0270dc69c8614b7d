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

// What a font property takes: a size above 0, and below a name that isn't empty.
Outcome set_font_size(Property<double>& property, const Variant& value) {
    const Result<double> size = value.as_f64();
    if (!size) return size.failure();
    if (!(*size > 0)) return failure(RunTimeError::invalid_property);
    property = std::min(*size, largest_points);
    return {};
}

// Both, or none of them: `size_refused` tells which one it was.
template <class Control>
Outcome set_font(Control& control, const Variant& name, const Variant& size, bool& size_refused) {
    size_refused = false;
    if (name.text().empty()) return failure(RunTimeError::invalid_property);
    if (const Outcome set = set_font_size(control.FontSize, size); !set) {
        size_refused = true;
        return set;
    }
    control.FontName = name.text();
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
    bool size_refused = false;
    const Outcome set =
        set_font(frmTerminal_.Picture1, settings_.fbschrift, settings_.fbschriftgr, size_refused);
    refused = size_refused ? "fbschriftgr" : "fbschrift";
    if (set) measure_cells();
    return set;
}

Outcome DisplayLooks::apply_terminal_font(std::string& refused) {
    bool size_refused = false;
    const Outcome set =
        set_font(frmTerminal_.txtterm, settings_.termschrift, settings_.termschriftgr, size_refused);
    refused = size_refused ? "termschriftgr" : "termschrift";
    return set;
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

// Stores a font only when the control has taken it, so that the next start finds no font it must refuse.
template <class Control>
bool DisplayLooks::take_font(Control& control, const FontChoice& chosen, Variant& name, Variant& size) {
    const Variant points = stored_size(chosen.points);
    bool size_refused = false;
    if (const Outcome set = set_font(control, chosen.name, points, size_refused); !set) {
        dialogs_.message_box(set.failure().text, 48);
        return false;
    }
    name = chosen.name;
    size = points;
    return true;
}

void DisplayLooks::zeisa_Click() {
    const Result<double> size = settings_.fbschriftgr.as_f64();
    PictureBox& picture = frmTerminal_.Picture1;
    // While the calendar is on the picture's own font is the small one.
    const FontChoice now{picture.FontName, size ? *size : picture.FontSize.get()};
    if (const Result<FontChoice> chosen = dialogs_.choose_font(now)) {
        if (take_font(picture, *chosen, settings_.fbschrift, settings_.fbschriftgr)) {
            measure_cells();
            display_changed();
        }
    }
    settings_files_.saveeinst();
}

void DisplayLooks::zeisa2_Click() {
    RichTextBox& txtterm = frmTerminal_.txtterm;
    if (const Result<FontChoice> chosen = dialogs_.choose_font({txtterm.FontName, txtterm.FontSize})) {
        (void)take_font(txtterm, *chosen, settings_.termschrift, settings_.termschriftgr);
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
