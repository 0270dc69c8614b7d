// The window that sets the serial port, on screen.
#pragma once

#include "links/frm_properties.h"

#include <QDialog>

#include <functional>

class QComboBox;
class QGroupBox;

namespace velorn {

class FrmPropertiesView : public QDialog {
  public:
    // Follows form.Visible: shown modally over `owner`, closed when it is hidden. `later` queues what the
    // person asks for in the event loop.
    FrmPropertiesView(FrmProperties& frmProperties, std::function<void(std::function<void()>)> later,
                      QWidget* owner);
    ~FrmPropertiesView() override;

  protected:
    void closeEvent(QCloseEvent* event) override;
    void reject() override;

  private:
    void build();
    QComboBox* list(ComboBox& box, const char* name, const QString& tip);
    QGroupBox* options(OptionGroup& group, const char* name, const QString& title);
    void show_form();

    FrmProperties& frmProperties_;
    std::function<void(std::function<void()>)> later_;
    bool built_ = false; // made when it is first wanted
};

} // namespace velorn
