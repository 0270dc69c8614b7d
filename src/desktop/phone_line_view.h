// One of the phone book's ten lines on screen: its position, three boxes, the button that chooses a file and
// two small pictures. The line itself is its click area: what the boxes leave free of it selects it.
#pragma once

#include "desktop/control_widgets.h"
#include "phonebook/frm_telefon.h"

#include <QWidget>

#include <array>
#include <functional>

class QHBoxLayout;

namespace velorn {

// What stands in the columns of a line, from left to right.
struct LineColumns {
    QWidget *nr, *nam1, *num1, *txtversch, *Comausw, *visthumb, *viertthumb;
};

// Lines and heads that are laid out by this stand exactly below each other.
void lay_out(QHBoxLayout& row, const LineColumns& columns);

class PhoneLineView : public QWidget {
  public:
    PhoneLineView(PhoneLine& line, int row, ControlWidgets& widgets, QWidget* parent);

    // What has been typed into the boxes can't be undone into another entry.
    void forget_edits();

    // Keys of the line, while it has the focus.
    std::function<void(int keycode)> key;
    std::function<void()> enter;
    // The line is the selected one now.
    std::function<void()> marked;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void build(int row);

    PhoneLine& line_;
    ControlWidgets& widgets_;
    std::array<QLineEdit*, 3> edits_{};
};

} // namespace velorn
