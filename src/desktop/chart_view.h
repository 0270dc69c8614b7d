// The evaluation's chart on screen, and the ground round it. The chart is drawn at the device's resolution
// and fills its place, its two scales nearly equal; a curve is drawn anew when its place or the look changes,
// never for a painting. The line under the pointer and the box beside it lie over the picture.
#pragma once

#include "desktop/image_canvas.h"
#include "evaluation/evaluation_controls.h"

#include <QTimer>
#include <QWidget>

#include <memory>

class QLabel;

namespace velorn {

class ControlWidgets;
class ReadOutView;

class ChartView : public QWidget {
  public:
    ChartView(EvaluationControls& controls, ControlWidgets& widgets, QWidget* parent);
    ~ChartView() override;

    // Where the chart stands, in this widget's logical pixels.
    QRectF chart() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;

  private:
    // Device pixels, and device pixels per unit of the chart.
    struct Place {
        double left = 0, top = 0;
        double scale_x = 1, scale_y = 1;
    };
    int units() const; // of the chart's width
    Place place() const;
    void fit();
    void draw_anew();
    void pointer_at(QPointF position);
    void place_overlays();
    double to_x(double left) const;

    EvaluationControls& controls_;
    ControlWidgets& widgets_;
    std::unique_ptr<ImageCanvas> canvas_;
    int drawn_units_ = 0; // what the canvas is as wide as
    QTimer fit_;          // several changes of size in one go are one drawing
    QLabel* time_ = nullptr;
    ReadOutView* box_ = nullptr;
    QPointF pointer_;
    double pointer_x_ = 0; // the last X at which the day was read
    int marker_ = -1;      // the line under the pointer, -1: none
};

} // namespace velorn
