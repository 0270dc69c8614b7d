// The weekly calendar in the mirrored display's place: its labels around the graphic, and a ruler of hours
// that stands above the graphic's columns.
#pragma once

#include "core/frm_terminal.h"

#include <QWidget>

#include <functional>

namespace velorn {

class PictureView;

class CalendarPane : public QWidget {
  public:
    CalendarPane(FrmTerminal& frmTerminal, QWidget* parent);
    ~CalendarPane() override;

    PictureView& picture() { return *picture_; }

  private:
    FrmTerminal& frmTerminal_;
    PictureView* picture_ = nullptr;
};

} // namespace velorn
