#include "evaluation/view_choice.h"

#include "evaluation/evaluation_calendar.h"
#include "evaluation/track_looks.h"
#include "runtime/number_picture.h"

#include <array>
#include <cmath>
#include <optional>
#include <utility>

namespace velorn {

namespace {

constexpr Colour chosen_colour = colour::rgb(255, 128, 128);
constexpr Colour other_colour = colour::rgb(224, 224, 224);
constexpr double least_left_minimum = 0.001; // from here on the zero lines don't meet

} // namespace

ViewChoice::ViewChoice(FrmGrafick& frmgrafick, EvaluationControls& controls, EvaluationEvents& events,
                       Archive& archive)
    : frmgrafick_(frmgrafick), controls_(controls), events_(events), archive_(archive) {
    EvaluationControls& c = controls_;
    int ansicht = 0;
    for (ColourButton* button : {&c.comtag, &c.comwoch, &c.commonat, &c.comjahr}) {
        ++ansicht;
        button->Click = [this, ansicht] { choose(ansicht); };
    }
    c.comdauer.Click = [this] { toggle(controls_.dauermodus, controls_.schnittmodus); };
    c.comtagschnitt.Click = [this] { toggle(controls_.schnittmodus, controls_.dauermodus); };

    struct Step {
        Button& button;
        int days, months, years;
    };
    for (const Step& step :
         {Step{c.minustag, -1, 0, 0}, Step{c.plustag, 1, 0, 0}, Step{c.minuswoche, -7, 0, 0},
          Step{c.pluswoche, 7, 0, 0}, Step{c.minusmonat, 0, -1, 0}, Step{c.plusmonat, 0, 1, 0},
          Step{c.minusjahr, 0, 0, -1}, Step{c.plusjahr, 0, 0, 1}}) {
        step.button.Click = [this, days = step.days, months = step.months, years = step.years] {
            move(days, months, years);
        };
    }
    c.checkviertel.Click = [this] {
        controls_.viertelmodus = controls_.checkviertel.Value ? 1 : 0;
        events_.neuzeichnen();
    };
    c.openyskala.Click = [this] { openyskala_Click(); };
    c.closepicy.Click = [this] { closepicy_Click(); };
    c.txyremax.Change = [this] { txyremax_Change(); };
}

void ViewChoice::build() {
    controls_.picyskala.Visible = false;
    paint_buttons();
}

// ---- views ----

void ViewChoice::choose(int ansicht) {
    if (!(archive_.ansicht == Variant(static_cast<std::int16_t>(ansicht))))
        archive_.ansicht = static_cast<std::int16_t>(ansicht);
    paint_buttons();
    events_.neuzeichnen();
}

void ViewChoice::paint_buttons() {
    const View chosen = view_of(archive_);
    EvaluationControls& c = controls_;
    int view = 0;
    for (ColourButton* button : {&c.comtag, &c.comwoch, &c.commonat, &c.comjahr})
        button->BackColor = static_cast<int>(chosen) == ++view ? chosen_colour : other_colour;
    c.comdauer.BackColor = c.dauermodus ? chosen_colour : other_colour;
    c.comtagschnitt.BackColor = c.schnittmodus ? chosen_colour : other_colour;
}

void ViewChoice::toggle(bool& chosen, bool& other) {
    chosen = !chosen;
    other = false;
    controls_.datexport.Enabled = !chosen;
    paint_buttons();
    events_.neuzeichnen();
}

// ---- date ----

void ViewChoice::wochentagrechnen() {
    const CalendarDay day =
        kalenderdatum({frmgrafick_.tagsel, frmgrafick_.monsel, frmgrafick_.jahrsel}, first_year(archive_));
    frmgrafick_.tagsel = day.tag;
    frmgrafick_.monsel = day.mon;
    frmgrafick_.jahrsel = day.jahr;
    controls_.wochentag = weekday_of(day);
}

void ViewChoice::move(int days, int months, int years) {
    frmgrafick_.tagsel = static_cast<std::int16_t>(frmgrafick_.tagsel + days);
    frmgrafick_.monsel = static_cast<std::int16_t>(frmgrafick_.monsel + months);
    frmgrafick_.jahrsel = static_cast<std::int16_t>(frmgrafick_.jahrsel + years);
    wochentagrechnen();
    events_.neuzeichnen();
}

// ---- axes ----

void ViewChoice::openyskala_Click() {
    filling_ = true;
    controls_.txylimax.Text = archive_.ylimax.text();
    controls_.txylimin.Text = archive_.ylimin.text();
    controls_.txylischr.Text = archive_.ylischritt.text();
    controls_.txyremax.Text = archive_.yremax.text();
    controls_.txyreschr.Text = archive_.yreschritt.text();
    filling_ = false;
    controls_.picyskala.Visible = true;
}

bool ViewChoice::store_axes() {
    const std::array<std::pair<const TextBox*, Variant*>, 5> axes{
        {{&controls_.txylimax, &archive_.ylimax},
         {&controls_.txylimin, &archive_.ylimin},
         {&controls_.txylischr, &archive_.ylischritt},
         {&controls_.txyremax, &archive_.yremax},
         {&controls_.txyreschr, &archive_.yreschritt}}};
    for (const auto& [box, value] : axes) {
        const std::optional<double> number = number_of(box->Text.get());
        if (!number || !std::isfinite(*number)) return false;
        // A value that stays keeps its tag, and its digits beyond those that the box shows.
        if (value->text() != number_text(*number)) *value = *number;
    }
    return true;
}

void ViewChoice::closepicy_Click() {
    if (!store_axes()) return;
    controls_.picyskala.Visible = false;
    events_.neuzeichnen();
}

// Zero stands at the same height on both axes when the left one begins at zero or below.
void ViewChoice::txyremax_Change() {
    if (filling_ || !store_axes()) return;
    if (archive_.ylimin.number() >= least_left_minimum || archive_.yremax.number() <= 0) return;
    const double steps = archive_.ylimax.number() / archive_.ylischritt.number();
    const double step = archive_.yremax.number() / steps;
    if (!std::isfinite(steps) || !std::isfinite(step)) return; // a division by nothing
    archive_.yreschritt = step;
    controls_.txyreschr.Text = number_text(step);
}

} // namespace velorn
