// A lamp with its label: a round light in the control's colour, in tones that can be told apart on light and
// dark grounds, and by people who don't tell red from green: a lamp that is red bears a bar.
#pragma once

#include "runtime/controls.h"

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
    QRect lamp_rect() const;

    Lamp& lamp_;
    Label& label_;
    int widest_ = 0; // the label never shrinks, so that its neighbours stay where they are
};

} // namespace velorn
