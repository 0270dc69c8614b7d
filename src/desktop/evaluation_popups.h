// The three small windows of the evaluation: a track's choices, those of a calculated one, and the axes.
#pragma once

#include "evaluation/evaluation_controls.h"

class QWidget;

namespace velorn {

class ControlWidgets;
class PopupView;

struct EvaluationPopups {
    EvaluationPopups(EvaluationControls& controls, ControlWidgets& widgets, QWidget& window);

    PopupView* pickanal;
    PopupView* pickanalb;
    PopupView* picyskala;
};

} // namespace velorn
