// The list of the tracks beside the chart: 30 in one column or 60 in two, and the calculated ones below. All
// stands at fixed places, so that filling 60 rows anew lays out nothing. With Tab the keyboard comes to one
// row, with the arrows up and down to the others.
#pragma once

#include "evaluation/evaluation_controls.h"

#include <QWidget>

#include <array>
#include <functional>

class QCheckBox;
class QLabel;
class QPushButton;

namespace velorn {

class ControlWidgets;
class ElidedLabel;
class Swatch;

class TrackListView : public QWidget {
  public:
    TrackListView(EvaluationControls& controls, ControlWidgets& widgets, QWidget* parent);

    // A track's popup, and that of a calculated one, may have been opened from `caller`.
    std::function<void(QWidget& caller)> popup_asked;

    QSize sizeHint() const override { return extent_; }
    QSize minimumSizeHint() const override { return extent_; }

  protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    struct Row {
        ElidedLabel* name = nullptr;
        Swatch* colour = nullptr;
        QCheckBox *left = nullptr, *right = nullptr;
        QLabel *mean = nullptr, *sum = nullptr;
    };
    struct Controls {
        Label& name;
        ColourButton& colour;
        CheckBox &left, &right;
        Label &mean, &sum;
    };
    // Widths and heights, logical pixels.
    struct Measures {
        int row = 0, head = 0;
        int name = 0, prefix = 0, swatch = 0, box = 0, mean = 0, sum = 0;
        int column = 0, between = 0;
    };

    void measure();
    void build_heads();
    void build_calculated_heads();
    Row build_row(const Controls& controls, const QString& suffix, const QString& what);
    QLabel* figure(Label& control, const QString& name);
    QLabel* text(const QString& text, Qt::Alignment alignment);
    void build_rows(int first, int last);
    void arrange_if_needed();
    void arrange();
    void place_heads(int column, bool shown);
    void place_row(const Row& row, int left, int top, int indent) const;
    void set_current(int index);
    bool is_there(int index) const;

    EvaluationControls& controls_;
    ControlWidgets& widgets_;
    Measures m_;
    std::array<Row, most_rows + 1> rows_{};
    std::array<Row, calculated_rows> calculated_{};
    std::array<std::array<QLabel*, 5>, 2> heads_{};
    QLabel* time_ = nullptr;
    QPushButton *block_ = nullptr, *formula_1_ = nullptr, *formula_2_ = nullptr;
    QLabel *calculated_head_ = nullptr, *prefix_1_ = nullptr, *prefix_2_ = nullptr;
    ElidedLabel *title_1_ = nullptr, *title_2_ = nullptr;
    int built_ = 0;         // rows
    int shown_columns_ = 0; // as arranged
    bool one_row_for_both_ = false;
    int current_ = 1; // of rows_, and behind them of calculated_: where Tab comes to
    QSize extent_;
};

} // namespace velorn
