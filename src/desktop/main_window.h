// The main window on screen: menu and toolbar above, the terminal in the middle, lamps and panels below. It
// shows what FrmTerminal holds and hands on what the person does; no rule of the system lives here. What the
// person does is queued in the event loop, so that no procedure of the system ever waits inside a toolkit's
// event.
#pragma once

#include "app/program.h"

#include <QMainWindow>

#include <array>
#include <vector>

class QLabel;
class QSplitter;
class QToolBar;

namespace velorn {

class LampView;
class SearchField;
class TerminalView;

class MainWindow : public QMainWindow {
  public:
    explicit MainWindow(Program& program);
    ~MainWindow() override;

    TerminalView& terminal() { return *terminal_; }

  protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void build_menu();
    void build_toolbar();
    void build_middle();
    void build_display(QSplitter& middle);
    void build_snapshots(QSplitter& middle);
    TerminalView* add_pane(RichTextBox& text, const char* name, const QString& what, QWidget& parent);
    void build_lamps();
    void build_status_bar();
    void show_form();
    void set_icons();
    // Runs what the person asked for from the event loop, not from inside the toolkit's event.
    void later(std::function<void()> what);

    Program& program_;
    QToolBar* toolbar_ = nullptr;
    TerminalView* terminal_ = nullptr;
    SearchField* search_ = nullptr;
    std::vector<QAction*> tool_actions_; // in the order of toolbar_rows()
    QAction* search_action_ = nullptr;
    bool placed_ = false;
};

} // namespace velorn
