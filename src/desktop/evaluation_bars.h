// The rows of buttons and figures above and below the evaluation's chart.
#pragma once

#include "archive/frm_grafick.h"
#include "evaluation/evaluation_controls.h"

#include <QKeySequence>

#include <vector>

class QLayout;
class QWidget;

namespace velorn {

class ControlWidgets;

// What a key of the keyboard does besides its button; the tooltips name it.
struct StepKey {
    Button& button;
    QKeySequence key;
};
std::vector<StepKey> step_keys(EvaluationControls& controls);

class EvaluationBars {
  public:
    EvaluationBars(FrmGrafick& frmgrafick, EvaluationControls& controls, ControlWidgets& widgets,
                   QWidget* parent);

    QLayout* views();      // which curve
    QLayout* navigation(); // which days, axes, print
    QLayout* figures();    // how many values, the newest day, the pointer's place
    QLayout* actions();    // archive, export, closing

  private:
    QWidget* step(Button& minus, const char* minus_name, Button& plus, const char* plus_name,
                  const QString& minus_tip, const QString& plus_tip);
    QWidget* coloured(ColourButton& button, const char* name);
    QWidget* small_label(Label& label, const char* name, const QString& tip);
    QWidget* coloured_label(ColourLabel& label, const char* name, const QString& tip);
    QWidget* in_a_row(std::initializer_list<QWidget*> widgets, int spacing);

    FrmGrafick& f_;
    EvaluationControls& c_;
    ControlWidgets& widgets_;
    QWidget* parent_;
};

} // namespace velorn
