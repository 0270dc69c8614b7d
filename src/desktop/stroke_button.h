// A small button with a figure of strokes in place of a picture: 24-unit grid, 1.5-unit strokes, in the
// palette's colours and sharp at any scale.
#pragma once

#include <QAbstractButton>

namespace velorn {

class StrokeButton : public QAbstractButton {
  public:
    enum class Figure { up, down, to_end, close };

    // `name` is the tooltip and what a screen reader says. A round one lies above other things and has a
    // ground.
    StrokeButton(Figure figure, const QString& name, QWidget* parent, bool round = false);

    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

  private:
    Figure figure_;
    bool round_;
};

} // namespace velorn
