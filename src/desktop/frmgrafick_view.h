// The evaluation window on screen: for now its archive, the download and the ways to close it.
#pragma once

#include "archive/frm_grafick.h"
#include "desktop/control_widgets.h"

#include <QWidget>

#include <functional>

namespace velorn {

class FrmgrafickView : public QWidget {
  public:
    // Follows form.Visible; a window of its own beside the main one. `later` queues what the person asks for
    // in the event loop.
    FrmgrafickView(FrmGrafick& frmgrafick, std::function<void(std::function<void()>)> later, QWidget* owner);
    ~FrmgrafickView() override;

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void show_form();
    void build();

    FrmGrafick& frmgrafick_;
    ControlWidgets widgets_;
    bool built_ = false;
};

} // namespace velorn
