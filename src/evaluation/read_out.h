// Reading off what the pointer stands on: in the day's view the values of its quarter-hour in the list, in
// the others a box beside the pointer.
#pragma once

#include "archive/archive.h"
#include "archive/frm_grafick.h"
#include "evaluation/evaluation_controls.h"
#include "evaluation/time_curves.h"

namespace velorn {

class ReadOut {
  public:
    ReadOut(FrmGrafick& frmgrafick, EvaluationControls& controls, EvaluationEvents& events, Archive& archive,
            const TimeCurves& curves);

    // What was read off is no longer shown.
    void forget();

    // The chart was drawn anew: what is read off under the pointer is what stands there now.
    void follow();

  private:
    bool has_order_of_time() const; // what the chart shows
    void over_chart(double x, double y);
    void over_ground(double x);
    void read_day(double x);
    void read_period(double x);
    std::string moment_of(const PlotStep& step) const;

    FrmGrafick& frmgrafick_;
    EvaluationControls& controls_;
    EvaluationEvents& events_;
    Archive& archive_;
    const TimeCurves& curves_;
    // Where the day was read off, and where the box was asked for.
    double day_x_ = 0;
    double period_x_ = 0;
};

} // namespace velorn
