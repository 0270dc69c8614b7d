// Makes the widgets that show a window's controls. Each bears its control's name, shows what its control
// holds, and hands on what the person does: commands through the event loop, and only while they can be
// given; a typed text at once. Filling a widget from its control never writes back.
#pragma once

#include "runtime/controls.h"

#include <QString>

#include <functional>
#include <vector>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QWidget;

namespace velorn {

struct Ground;

class ControlWidgets {
  public:
    // `later` queues in the event loop.
    ControlWidgets(QWidget& window, std::function<void(std::function<void()>)> later);
    ControlWidgets(const ControlWidgets&) = delete;
    ControlWidgets& operator=(const ControlWidgets&) = delete;
    // The controls outlive their widgets.
    ~ControlWidgets();

    // Queued, and dropped if by then the window is hidden or another one stands before it: a command counts
    // where the person has seen it.
    void ask(std::function<void()> what) const;

    // Runs `show` now and each time the control changes.
    void show(Control& control, std::function<void()> show);
    // Shows all controls anew, after a change of the palette.
    void show_again() const;

    QPushButton* button(Button& button, const QString& name, const QString& tip, QWidget* parent);
    // `what` is its name for a screen reader.
    QLineEdit* text_box(TextBox& box, const QString& name, const QString& what, const QString& tip,
                        QWidget* parent);
    QCheckBox* check_box(CheckBox& box, const QString& name, const QString& tip, QWidget* parent);
    // One button for each caption, in a group of their own; each bears `name` and its index.
    std::vector<QRadioButton*> options(OptionGroup& group, const QString& name, QWidget* parent);
    // `frame` has %1 in the caption's place.
    QLabel* label(Label& label, const QString& name, const QString& frame, QWidget* parent);

    // Ground and text of a widget, in the window's palette.
    void set_ground(QWidget& widget, Colour colour) const;

  private:
    QWidget& window_;
    std::function<void(std::function<void()>)> later_;
    std::vector<Control*> shown_;
};

// Makes a text of one line: line ends that came with a paste go from its end, and become blanks elsewhere.
QString one_line(const QString& text);

// Nothing that was typed before comes back with undo.
void forget_edits(QLineEdit& edit);

} // namespace velorn
