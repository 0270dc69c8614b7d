// The place of a PictureBox in a window: its ground in the control's colour.
#pragma once

#include "runtime/canvas.h"

#include <QWidget>

#include <functional>

namespace velorn {

class PictureView : public QWidget {
  public:
    explicit PictureView(PictureBox& picture, QWidget* parent);
    ~PictureView() override;

    std::function<void()> shown_or_hidden;

    // While the picture is shown in its place, what is typed goes where the hidden one's keys go.
    void grab_keys(QWidget& keys_go_to);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool next) override;

  private:
    PictureBox& picture_;
    QWidget* keys_go_to_ = nullptr;
};

} // namespace velorn
