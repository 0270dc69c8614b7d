// The chart on paper, with a legend of the tracks that it shows.
#pragma once

#include "archive/archive.h"
#include "archive/frm_grafick.h"
#include "core/module1.h"
#include "evaluation/chart_surface.h"
#include "evaluation/evaluation_controls.h"
#include "evaluation/time_curves.h"
#include "runtime/outside.h"

namespace velorn {

class ChartPrint {
  public:
    ChartPrint(Printer& printer, const Module1& module1, const FrmGrafick& frmgrafick,
               EvaluationControls& controls, EvaluationEvents& events, Archive& archive,
               ChartSurface& surface, const TimeCurves& curves);

    // Shows the printer dialog and draws chart and legend on a page. A dialog that is cancelled and a printer
    // that fails end it without a word. Where the window was closed or opened anew behind the dialog, the
    // page stays empty.
    void plott_Click();

  private:
    struct Row {
        std::string name, unit;
        Colour colour;
        bool right;
        float mean, sum;
        bool has_sum;
    };
    void legend();
    void legend_row(const Row& row);
    void write(int x, int y, std::string_view text, int size);

    Printer& printer_;
    const Module1& module1_;
    const FrmGrafick& frmgrafick_;
    EvaluationControls& controls_;
    EvaluationEvents& events_;
    Archive& archive_;
    ChartSurface& surface_;
    const TimeCurves& curves_;
    int line_ = 0; // of the legend, 20 units each, downwards from the axis
};

} // namespace velorn
