// What stands below the phone book's lines: the groups of its buttons and settings, and in their place the
// panels that come and go. The lines above stay in sight and in reach while a panel waits for one of them.
#pragma once

#include "desktop/control_widgets.h"
#include "phonebook/frm_telefon.h"

#include <QStackedWidget>

#include <functional>

namespace velorn {

class PhonebookPanels : public QStackedWidget {
  public:
    PhonebookPanels(FrmTelefon& frmtelefon, ControlWidgets& widgets, QWidget* parent);

    // The focus has to go to the lines, because the place where it is goes.
    std::function<void()> leave;

  private:
    QWidget* swap_panel();
    QWidget* flag_panel();
    QWidget* collection_panel();
    void show_panel();

    FrmTelefon& frmtelefon_;
    ControlWidgets& widgets_;
};

} // namespace velorn
