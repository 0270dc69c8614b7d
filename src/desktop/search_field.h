// The field that searches the terminal: text, upper and lower case, back and on, how many. Enter goes on,
// Shift+Enter back, Esc closes.
#pragma once

#include <QWidget>

#include <functional>

class QLabel;
class QLineEdit;
class QToolButton;

namespace velorn {

class TerminalView;

class SearchField : public QWidget {
  public:
    // Takes the view's search_wanted and search_changed. Hidden until it is opened.
    explicit SearchField(TerminalView& view, QWidget* parent = nullptr);

    // After it was shown or hidden, for an owner that keeps it in a tool bar.
    std::function<void(bool shown)> toggled;

    // Shows the field with the selected text, if that is a short one.
    void open();
    void close_search();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void search();
    void show_count();

    TerminalView& view_;
    QLineEdit* text_;
    QToolButton* case_;
    QLabel* count_;
};

} // namespace velorn
