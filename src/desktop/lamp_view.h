// A lamp with its label: a round light in the control's colour, in tones that can be told apart on light and
// dark grounds, and by people who don't tell red from green: a lamp that is red bears a bar.
#pragma once

#include "runtime/controls.h"

#include <QTimer>
#include <QWidget>

#include <functional>

namespace velorn {

class LampView : public QWidget {
  public:
    LampView(Lamp& lamp, Label& label, const char* lamp_name, const char* label_name, QWidget* parent);
    ~LampView() override;

    // The person clicked the lamp or its label.
    std::function<void()> lamp_clicked;
    std::function<void()> label_clicked;

    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    bool event(QEvent* event) override;

  private:
    void show_lamp();
    void show_colour();
    void show_label();
    QRect lamp_rect() const;

    Lamp& lamp_;
    Label& label_;
    Colour shown_ = colour::black; // none yet
    QTimer calm_;
    int widest_ = 0; // the label never shrinks, so that its neighbours stay where they are
};

} // namespace velorn
