// The evaluation window on screen: the chart, large; the track list beside it; views above, dates and the
// archive below. The chart steps with the keyboard, one picture for each step that is shown.
#pragma once

#include "archive/frm_grafick.h"
#include "desktop/control_widgets.h"
#include "desktop/evaluation_bars.h"
#include "evaluation/evaluation_controls.h"

#include <QWidget>

#include <functional>
#include <memory>

class QLayout;

namespace velorn {

class ChartView;
class TrackListView;

class FrmgrafickView : public QWidget {
  public:
    // Follows form.Visible; a window of its own beside the main one. `later` queues what the person asks for
    // in the event loop.
    FrmgrafickView(FrmGrafick& frmgrafick, EvaluationControls& controls,
                   std::function<void(std::function<void()>)> later, QWidget* owner);
    ~FrmgrafickView() override;

  protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool event(QEvent* event) override;

  private:
    class ListArea;

    void show_form();
    void build();
    void build_popups();
    void build_shortcuts();
    // As its button, and what else comes before it is done is dropped: a key that is held down is a film.
    void press(Button& button);

    FrmGrafick& frmgrafick_;
    EvaluationControls& controls_;
    std::function<void(std::function<void()>)> later_;
    ControlWidgets widgets_;
    std::unique_ptr<EvaluationBars> bars_;
    ChartView* chart_ = nullptr; // made, like all else, when it is first wanted
    TrackListView* list_ = nullptr;
    ListArea* area_ = nullptr; // of the list
    QLayout* left_ = nullptr;  // all beside it
    bool pressed_ = false;
};

} // namespace velorn
