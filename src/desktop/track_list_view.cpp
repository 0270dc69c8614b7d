#include "desktop/track_list_view.h"

#include "desktop/control_widgets.h"
#include "desktop/style.h"
#include "desktop/text_rim.h"
#include "desktop/track_widgets.h"

#include <QCheckBox>
#include <QKeyEvent>
#include <QPainter>
#include <QPushButton>
#include <QStyle>

#include <algorithm>

namespace velorn {

namespace {

constexpr int rows_of_a_column = 30;
constexpr int least_row = 17;
constexpr auto widest_name = "00: Wärmemenge Netz (kWh)";
constexpr auto widest_mean = "-99999,99";
constexpr auto widest_sum = "999999999,9";

std::size_t at(int row) { return static_cast<std::size_t>(row); }

} // namespace

TrackListView::TrackListView(EvaluationControls& controls, ControlWidgets& widgets, QWidget* parent)
    : QWidget(parent), controls_(controls), widgets_(widgets) {
    setObjectName(QStringLiteral("trackliste"));
    measure();
    build_heads();
    build_rows(1, rows_of_a_column);
    build_calculated_heads();
    for (int row = 0; row < calculated_rows; ++row) {
        const Controls c{controls_.txkanalb[at(row)],      controls_.Commandkanalb[at(row)],
                         controls_.kanallinksb[at(row)],   controls_.kanalrechtsb[at(row)],
                         controls_.schnittkanalb[at(row)], controls_.summkanalb[at(row)]};
        calculated_[at(row)] =
            build_row(c, QStringLiteral("b_%1").arg(row), QStringLiteral("Berechnung %1").arg(row + 1));
    }
    arrange();
    set_current(current_);
    // Whether there is a second column shows in its first row.
    widgets_.show(controls_.txkanal[rows_of_a_column + 1], [this] { arrange_if_needed(); });
}

void TrackListView::measure() {
    const QFontMetrics metrics = fontMetrics();
    const auto width = [&metrics](const char* text) {
        return metrics.horizontalAdvance(QString::fromUtf8(text)) + space::small;
    };
    m_.row = std::max(least_row, metrics.height() + 1);
    m_.head = metrics.height() + 2 * space::small;
    m_.name = width(widest_name);
    m_.prefix = width("B1: ");
    m_.swatch = m_.row + space::medium;
    m_.box = style()->pixelMetric(QStyle::PM_IndicatorWidth) + space::medium;
    m_.mean = width(widest_mean);
    m_.sum = width(widest_sum) + space::small;
    m_.between = space::wide;
    m_.column = m_.name + space::small + m_.swatch + 2 * m_.box + m_.mean + m_.sum;
}

// ---- building ----

QLabel* TrackListView::text(const QString& text, Qt::Alignment alignment) {
    auto* label = new QLabel(text, this);
    label->setAlignment(alignment | Qt::AlignVCenter);
    return label;
}

void TrackListView::build_heads() {
    const QString tips[] = {
        QString(), QStringLiteral("linke Y-Skala"), QStringLiteral("rechte Y-Skala"),
        QStringLiteral("Mittelwert des gezeigten Zeitraums, oder der Wert unter dem Zeiger"),
        QStringLiteral("Summe des gezeigten Zeitraums")};
    for (auto& heads : heads_) {
        heads = {text(QStringLiteral("Y-Skala"), Qt::AlignRight),
                 text(QStringLiteral("li"), Qt::AlignHCenter), text(QStringLiteral("re"), Qt::AlignHCenter),
                 text(QStringLiteral("ø"), Qt::AlignRight), text(QStringLiteral("Summe"), Qt::AlignRight)};
        for (std::size_t i = 0; i < heads.size(); ++i) heads[i]->setToolTip(tips[i]);
    }
    time_ = text({}, Qt::AlignRight);
    time_->setObjectName(QStringLiteral("Label55"));
    time_->setToolTip(QStringLiteral("Zeit unter dem Zeiger"));
    // While the values under the pointer are told there are no sums: the moment takes their head's place.
    widgets_.show(controls_.Label55, [this] {
        time_->setText(to_qstring(controls_.Label55.Caption.get()));
        time_->setVisible(controls_.Label55.Visible);
        heads_[0][4]->setVisible(!controls_.Label55.Visible);
    });
    block_ = widgets_.button(controls_.com1bis30, QStringLiteral("com1bis30"),
                             QStringLiteral("Zeigt die nächsten Spuren in der Liste"), this);
    widgets_.show(controls_.com1bis30, [this, show = controls_.com1bis30.on_change] {
        show();
        block_->resize(block_->sizeHint().width(), m_.head);
    });
}

void TrackListView::build_rows(int first, int last) {
    for (int row = first; row <= last; ++row) {
        const Controls c{controls_.txkanal[at(row)],      controls_.Commandkanal[at(row)],
                         controls_.kanallinks[at(row)],   controls_.kanalrechts[at(row)],
                         controls_.schnittkanal[at(row)], controls_.summkanal[at(row)]};
        rows_[at(row)] = build_row(c, QStringLiteral("_%1").arg(row), QStringLiteral("Zeile %1").arg(row));
    }
    built_ = last;
}

TrackListView::Row TrackListView::build_row(const Controls& c, const QString& suffix, const QString& what) {
    Row row;
    row.name = new ElidedLabel(this);
    row.name->setObjectName(QStringLiteral("txkanal") + suffix);
    row.name->setTextFormat(Qt::PlainText);
    row.colour = new Swatch(this);
    row.colour->setObjectName(QStringLiteral("Commandkanal") + suffix);
    row.colour->setAccessibleName(what + QStringLiteral(": darstellen, Farbe, Name"));
    row.colour->setToolTip(QStringLiteral("Darstellen, Farbe und Name (Leertaste)"));
    row.left = widgets_.check_box(c.left, QStringLiteral("kanallinks") + suffix,
                                  QStringLiteral("linke Y-Skala"), this);
    row.left->setAccessibleName(what + QStringLiteral(": linke Y-Skala"));
    row.right = widgets_.check_box(c.right, QStringLiteral("kanalrechts") + suffix,
                                   QStringLiteral("rechte Y-Skala"), this);
    row.right->setAccessibleName(what + QStringLiteral(": rechte Y-Skala"));
    row.mean = figure(c.mean, QStringLiteral("schnittkanal") + suffix);
    row.sum = figure(c.sum, QStringLiteral("summkanal") + suffix);
    for (QWidget* const widget : {static_cast<QWidget*>(row.colour), static_cast<QWidget*>(row.left),
                                  static_cast<QWidget*>(row.right)}) {
        widget->setFocusPolicy(Qt::ClickFocus);
        widget->installEventFilter(this);
    }
    widgets_.show(c.name, [this, &control = c.name, name = row.name] {
        name->set_text(to_qstring(control.Caption.get()));
        name->setVisible(control.Visible);
        arrange_if_needed();
    });
    widgets_.show(c.colour, [&control = c.colour, swatch = row.colour] {
        swatch->set_colour(control.BackColor);
        swatch->setVisible(control.Visible);
        swatch->setEnabled(control.Enabled && control.Click);
    });
    connect(row.colour, &Swatch::clicked, this, [this, &control = c.colour, swatch = row.colour] {
        widgets_.ask([this, &control, swatch] {
            control.Click();
            if (popup_asked) popup_asked(*swatch);
        });
    });
    return row;
}

QLabel* TrackListView::figure(Label& control, const QString& name) {
    QLabel* const label = text({}, Qt::AlignRight);
    label->setObjectName(name);
    widgets_.show(control, [&control, label] {
        label->setText(to_qstring(control.Caption.get()));
        label->setVisible(control.Visible);
    });
    return label;
}

void TrackListView::build_calculated_heads() {
    calculated_head_ = text(QStringLiteral("Berechnungen"), Qt::AlignLeft);
    formula_1_ = widgets_.button(controls_.openformel, QStringLiteral("openformel"), QString(), this);
    formula_2_ = widgets_.button(controls_.openformel2, QStringLiteral("openformel2"), QString(), this);
    prefix_1_ = widgets_.label(controls_.Label101, QStringLiteral("Label101"), QStringLiteral("%1"), this);
    prefix_2_ = text(QStringLiteral("B2:"), Qt::AlignLeft);
    title_1_ = new ElidedLabel(this);
    title_1_->setObjectName(QStringLiteral("txberech1"));
    title_2_ = new ElidedLabel(this);
    title_2_->setObjectName(QStringLiteral("txberech2"));
    const auto titles = [this] {
        // One row for both shows the one that its prefix names.
        const bool second = controls_.calculated_of_row(0) == 1;
        const Label& first = second ? controls_.txberech2 : controls_.txberech1;
        title_1_->set_text(to_qstring(first.Caption.get()));
        title_2_->set_text(to_qstring(controls_.txberech2.Caption.get()));
    };
    widgets_.show(controls_.txberech1, titles);
    widgets_.show(controls_.txberech2, titles);
    widgets_.show(controls_.Label101, [this, titles] {
        prefix_1_->setText(to_qstring(controls_.Label101.Caption.get()));
        titles();
    });
}

// ---- places ----

void TrackListView::arrange_if_needed() {
    const int columns = controls_.breitbild && controls_.txkanal[rows_of_a_column + 1].Visible ? 2 : 1;
    const bool one_row = controls_.calculated_of_row(1) < 0;
    if (columns == shown_columns_ && one_row == one_row_for_both_) return;
    if (shown_columns_ != 0) arrange();
}

void TrackListView::arrange() {
    shown_columns_ = controls_.breitbild && controls_.txkanal[rows_of_a_column + 1].Visible ? 2 : 1;
    one_row_for_both_ = controls_.calculated_of_row(1) < 0;
    if (shown_columns_ == 2 && built_ < most_rows) build_rows(rows_of_a_column + 1, most_rows);
    // Tab must not end at a row that is gone.
    const bool gone = shown_columns_ == 1 && current_ > rows_of_a_column && current_ <= most_rows;
    if (gone) set_current(1);

    block_->setGeometry(0, 0, block_->sizeHint().width(), m_.head);
    for (int column = 0; column < 2; ++column) place_heads(column, column < shown_columns_);
    const int rows_top = m_.head + space::small;
    for (int row = 1; row <= built_; ++row) {
        const int column = (row - 1) / rows_of_a_column;
        place_row(rows_[at(row)], column * (m_.column + m_.between),
                  rows_top + (row - 1) % rows_of_a_column * m_.row, 0);
    }

    int top = rows_top + rows_of_a_column * m_.row + space::medium;
    calculated_head_->setGeometry(0, top, calculated_head_->sizeHint().width(), m_.head);
    int left = calculated_head_->sizeHint().width() + space::medium;
    for (QPushButton* const button : {formula_1_, formula_2_}) {
        button->setGeometry(left, top, button->sizeHint().width(), m_.head);
        left += button->width() + space::small;
    }
    const int right_of_buttons = left;
    top += m_.head + space::small;
    for (int row = 0; row < calculated_rows; ++row) {
        const bool titled = row < 2;
        const bool shown = controls_.calculated_of_row(row) >= 0;
        if (titled) {
            QLabel* const prefix = row == 0 ? prefix_1_ : prefix_2_;
            ElidedLabel* const title = row == 0 ? title_1_ : title_2_;
            prefix->setGeometry(0, top, m_.prefix, m_.row);
            title->setGeometry(m_.prefix, top, (m_.name - m_.prefix) / 2 - space::small, m_.row);
            prefix->setVisible(shown);
            title->setVisible(shown);
        }
        if (!shown) continue;
        place_row(calculated_[at(row)], 0, top, titled ? m_.prefix + (m_.name - m_.prefix) / 2 : 0);
        top += m_.row;
    }
    const int width = shown_columns_ * (m_.column + m_.between) - m_.between;
    extent_ = {std::max(width, right_of_buttons), top};
    setFixedSize(extent_);
    updateGeometry();
    update();
}

void TrackListView::place_heads(int column, bool shown) {
    int left = column * (m_.column + m_.between);
    const int widths[] = {m_.name + space::small + m_.swatch, m_.box, m_.box, m_.mean, m_.sum};
    auto& heads = heads_[at(column)];
    for (std::size_t i = 0; i < heads.size(); ++i) {
        // The first head leaves the place at its left to the button for the next block.
        const int from = i == 0 ? left + widths[0] - heads[0]->sizeHint().width() - space::medium : left;
        heads[i]->setGeometry(from, 0, left + widths[i] - from - (i == 0 ? space::medium : 0), m_.head);
        heads[i]->setVisible(shown);
        left += widths[i];
    }
    if (column != 0) return;
    time_->setGeometry(heads[4]->geometry());
    heads[4]->setVisible(!controls_.Label55.Visible);
}

void TrackListView::place_row(const Row& row, int left, int top, int indent) const {
    row.name->setGeometry(left + indent, top, m_.name - indent, m_.row);
    left += m_.name + space::small;
    row.colour->setGeometry(left, top, m_.swatch, m_.row);
    left += m_.swatch;
    const int in_the_middle = space::small;
    row.left->setGeometry(left + in_the_middle, top, m_.box - in_the_middle, m_.row);
    left += m_.box;
    row.right->setGeometry(left + in_the_middle, top, m_.box - in_the_middle, m_.row);
    left += m_.box;
    row.mean->setGeometry(left, top, m_.mean, m_.row);
    row.sum->setGeometry(left + m_.mean, top, m_.sum, m_.row);
}

// Every other row on its own ground, so that the eye finds from the name to the sum.
void TrackListView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    const QColor ground = palette().color(QPalette::AlternateBase);
    for (int column = 0; column < shown_columns_; ++column) {
        for (int row = 0; row < rows_of_a_column; row += 2) {
            const QRect strip(column * (m_.column + m_.between) - space::small,
                              m_.head + space::small + row * m_.row, m_.column + space::small, m_.row);
            if (strip.intersects(event->rect())) painter.fillRect(strip, ground);
        }
    }
}

// ---- keyboard ----

bool TrackListView::is_there(int index) const {
    const bool of_tracks = index >= 1 && index <= most_rows;
    const int calculated = index - most_rows - 1;
    if (!of_tracks && (calculated < 0 || calculated >= calculated_rows)) return false;
    const Row& row = of_tracks ? rows_[at(index)] : calculated_[at(calculated)];
    return row.colour != nullptr && !row.colour->isHidden();
}

void TrackListView::set_current(int index) {
    const auto take_tab = [this](int which, Qt::FocusPolicy policy) {
        const Row& row = which <= most_rows ? rows_[at(which)] : calculated_[at(which - most_rows - 1)];
        for (QWidget* const widget : {static_cast<QWidget*>(row.colour), static_cast<QWidget*>(row.left),
                                      static_cast<QWidget*>(row.right)})
            widget->setFocusPolicy(policy);
    };
    take_tab(current_, Qt::ClickFocus);
    current_ = index;
    take_tab(current_, Qt::StrongFocus);
}

bool TrackListView::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::FocusIn && event->type() != QEvent::KeyPress) return false;
    int index = 0;
    int column = -1;
    for (int i = 1; i <= most_rows + calculated_rows && column < 0; ++i) {
        const Row& row = i <= most_rows ? rows_[at(i)] : calculated_[at(i - most_rows - 1)];
        column = watched == row.colour ? 0 : watched == row.left ? 1 : watched == row.right ? 2 : -1;
        index = i;
    }
    if (column < 0) return false;
    if (event->type() == QEvent::FocusIn) {
        if (index != current_) set_current(index);
        return false;
    }
    const int key = static_cast<const QKeyEvent*>(event)->key();
    if (key != Qt::Key_Up && key != Qt::Key_Down) return false;
    const int step = key == Qt::Key_Up ? -1 : 1;
    for (index += step; index >= 1 && index <= most_rows + calculated_rows; index += step) {
        if (!is_there(index)) continue;
        const Row& row = index <= most_rows ? rows_[at(index)] : calculated_[at(index - most_rows - 1)];
        QWidget* const next = column == 0   ? static_cast<QWidget*>(row.colour)
                              : column == 1 ? static_cast<QWidget*>(row.left)
                                            : static_cast<QWidget*>(row.right);
        next->setFocus(Qt::TabFocusReason);
        break;
    }
    return true;
}

} // namespace velorn
