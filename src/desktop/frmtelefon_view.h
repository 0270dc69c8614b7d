// The phone book's window on screen.
#pragma once

#include "core/module1.h"
#include "desktop/control_widgets.h"
#include "phonebook/frm_telefon.h"

#include <QDialog>

#include <functional>

class QMenu;

namespace velorn {

class PhoneLinesView;

class FrmtelefonView : public QDialog {
  public:
    // Follows form.Visible: shown modally over `owner`, closed when it is hidden. `module1` tells which entry
    // is selected. `later` queues what the person asks for in the event loop.
    FrmtelefonView(FrmTelefon& frmtelefon, const Module1& module1,
                   std::function<void(std::function<void()>)> later, QWidget* owner);
    ~FrmtelefonView() override;

  protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void reject() override;

  private:
    void show_form();
    void build();
    void build_menu();
    void build_shortcuts();
    void add_action(QMenu& menu, MenuItem& item, const char* name);

    FrmTelefon& frmtelefon_;
    const Module1& module1_;
    ControlWidgets widgets_;
    PhoneLinesView* lines_ = nullptr; // made, like all else, when it is first wanted
};

} // namespace velorn
