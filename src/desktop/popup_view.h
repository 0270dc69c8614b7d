// A small framed window within a window, such as a track's choices. It opens beside what called it and never
// leaves its window; it is dragged with the left button, and moves by what its model moves.
#pragma once

#include "evaluation/evaluation_controls.h"

#include <QFrame>

#include <functional>

class QPushButton;

namespace velorn {

class ControlWidgets;

class PopupView : public QFrame {
  public:
    PopupView(Popup& popup, const QString& name, ControlWidgets& widgets, QWidget* window);

    // What it holds below its caption, the widget that has the keyboard first, and the button for Enter.
    void set_content(QLayout* content, QWidget* first, QPushButton* enter);
    // For Escape.
    std::function<void()> escape;
    // It begins to be shown: the time to place it.
    std::function<void()> opened;

    // Beside `caller`, where there is room.
    void place_near(const QWidget& caller);

  protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override; // of its window: it may get smaller

  private:
    void follow();
    void move_to_model();
    // The pointer from the model's corner, which the widget stays behind at the window's edge.
    QPoint from_model(const QMouseEvent& event) const;
    QPoint wanted() const { return QPoint(popup_.Left, popup_.Top) + offset_; }

    Popup& popup_;
    QWidget* first_ = nullptr;
    QPushButton* enter_ = nullptr;
    QWidget* before_ = nullptr; // had the keyboard; compared and found anew before it gets it back
    QPoint offset_;             // from the model's place to the widget's
};

} // namespace velorn
