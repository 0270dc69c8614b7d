// What period the chart shows, and between which limits: the buttons of the views, the steps in time, the
// dialog of the axes.
#pragma once

#include "archive/archive.h"
#include "archive/frm_grafick.h"
#include "evaluation/evaluation_controls.h"

namespace velorn {

class ViewChoice {
  public:
    ViewChoice(FrmGrafick& frmgrafick, EvaluationControls& controls, EvaluationEvents& events,
               Archive& archive);

    // For a newly opened archive.
    void build();

    // Brings the selected date into the calendar and finds its weekday.
    void wochentagrechnen();

  private:
    void choose(int ansicht);
    void paint_buttons();
    void toggle(bool& chosen, bool& other);
    void move(int days, int months, int years);
    void openyskala_Click();
    void closepicy_Click();
    void txyremax_Change();
    bool store_axes(); // false: one is no number; those before it are stored

    FrmGrafick& frmgrafick_;
    EvaluationControls& controls_;
    EvaluationEvents& events_;
    Archive& archive_;
    bool filling_ = false; // the boxes are filled from code
};

} // namespace velorn
