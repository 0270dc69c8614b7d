// The evaluation of a site's quarter-hour values: what the window `frmgrafick` shows of its archive while it
// is open. Everything that changes it ends in neuzeichnen().
#pragma once

#include "archive/archive.h"
#include "archive/frm_grafick.h"
#include "core/module1.h"
#include "evaluation/chart_print.h"
#include "evaluation/chart_surface.h"
#include "evaluation/evaluation_controls.h"
#include "evaluation/read_out.h"
#include "evaluation/time_curves.h"
#include "evaluation/track_list.h"
#include "evaluation/view_choice.h"
#include "runtime/outside.h"

namespace velorn {

class Evaluation {
  public:
    Evaluation(EventLoop& loop, Dialogs& dialogs, Printer& printer, ScreenSize screen, const Module1& module1,
               FrmGrafick& frmgrafick, Archive& archive);

    EvaluationControls controls;
    // For what is to draw or calculate on the same window.
    EvaluationEvents events;
    ChartSurface surface;
    TimeCurves curves;

    // Shows rows, figures and chart anew. Does nothing while the window isn't open.
    void neuzeichnen();

    // The window has an archive, or another one, and a little later has it no more.
    void archive_opened();
    void archive_closed();

  private:
    ScreenSize screen_;
    FrmGrafick& frmgrafick_;
    Archive& archive_;
    TrackList track_list_;
    ViewChoice view_choice_;
    ReadOut read_out_;
    ChartPrint chart_print_;
    // A drawing may be part of a paint or of a print, where no box may open: it is told of a moment later.
    Timer lost_;
};

} // namespace velorn
