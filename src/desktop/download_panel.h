// The panel of the evaluation window that fetches quarter-hour values over the standing connection: the
// range, the kind of packets, how far it has come.
#pragma once

#include "archive/frm_grafick.h"
#include "desktop/control_widgets.h"

#include <QGroupBox>

class QComboBox;
class QHBoxLayout;

namespace velorn {

class DownloadPanel : public QGroupBox {
  public:
    // Follows picdownload.Visible.
    DownloadPanel(FrmGrafick& frmgrafick, ControlWidgets& widgets, QWidget* parent);

  private:
    QHBoxLayout* range();
    QHBoxLayout* options();
    QHBoxLayout* buttons();
    QComboBox* list(ComboBox& box, const char* name, const QString& what);

    FrmGrafick& frmgrafick_;
    ControlWidgets& widgets_;
};

} // namespace velorn
