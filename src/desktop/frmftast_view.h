// The window that edits the function keys' texts, on screen.
#pragma once

#include "terminal/frmftast.h"

#include <QDialog>

#include <functional>

class QGridLayout;
class QLineEdit;

namespace velorn {

class FrmftastView : public QDialog {
  public:
    // Follows form.Visible: shown modally over `owner`, closed when it is hidden. `later` queues what the
    // person asks for in the event loop.
    FrmftastView(Frmftast& frmftast, std::function<void(std::function<void()>)> later, QWidget* owner);
    ~FrmftastView() override;

  protected:
    void closeEvent(QCloseEvent* event) override;
    void reject() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void build();
    QLineEdit* add_box(QGridLayout* grid, TextBox& box, int row, int column, const QString& name,
                       const QString& what);
    void show_form();

    Frmftast& frmftast_;
    std::function<void(std::function<void()>)> later_;
    bool built_ = false; // made when it is first wanted
};

} // namespace velorn
