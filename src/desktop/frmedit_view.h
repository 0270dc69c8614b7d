// The window that edits the site's protocol file, on screen.
#pragma once

#include "accessories/frmedit.h"

#include <QDialog>

#include <functional>

class QLabel;
class QLineEdit;
class QPushButton;

namespace velorn {

class ByteTextEdit;

class FrmeditView : public QDialog {
  public:
    // Follows form.Visible: shown modally over `owner`, closed when it is hidden. `later` queues what the
    // person asks for in the event loop.
    FrmeditView(Frmedit& frmedit, std::function<void(std::function<void()>)> later, QWidget* owner);
    ~FrmeditView() override;

  protected:
    void closeEvent(QCloseEvent* event) override;
    void reject() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void build();
    void build_search();
    QPushButton* add_button(Button& button, const char* name, const QString& tip);
    void show_form();
    void place();
    void open_search();
    void close_search();
    void find_next(bool back);
    void notice(const QString& text);

    Frmedit& frmedit_;
    std::function<void(std::function<void()>)> later_;
    ByteTextEdit* text_ = nullptr; // made, like all else, when it is first wanted
    QWidget* search_ = nullptr;
    QLineEdit* pattern_ = nullptr;
    QLabel* notice_ = nullptr;
};

} // namespace velorn
