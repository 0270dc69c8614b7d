#include "desktop/phone_lines_view.h"

#include "desktop/bind.h"
#include "desktop/phone_line_view.h"
#include "desktop/style.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QScrollBar>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <algorithm>

namespace velorn {

namespace {

constexpr int notch = 120;
constexpr int lines_a_notch = 3;
constexpr int group_bar_width = 160;

// The widest caption that a neighbour of the changing column has.
constexpr const char* widest_neighbour = "Visualisierungsdatei --->";

class ClickLabel final : public QLabel {
  public:
    using QLabel::QLabel;
    std::function<void()> clicked;

  protected:
    void mousePressEvent(QMouseEvent* event) override {
        if (event->button() == Qt::LeftButton && !text().isEmpty() && clicked) clicked();
    }
};

QScrollBar* scroll_bar(ScrollBar& control, Qt::Orientation orientation, const QString& name,
                       ControlWidgets& widgets, QWidget* parent) {
    auto* bar = new QScrollBar(orientation, parent);
    bar->setObjectName(name);
    bar->setRange(control.Min, control.Max);
    bar->setSingleStep(control.SmallChange);
    bar->setPageStep(control.LargeChange);
    // Where it stands by then: while it is being drawn, several changes may be queued.
    QObject::connect(bar, &QScrollBar::valueChanged, bar, [bar, &control, &widgets] {
        widgets.ask([bar, &control] { control.set_Value(bar->value()); });
    });
    return bar;
}

void show_value(QScrollBar& bar, const ScrollBar& control) {
    const QSignalBlocker quiet(&bar);
    bar.setValue(control.Value());
    show_common(control, bar);
}

} // namespace

PhoneLinesView::PhoneLinesView(FrmTelefon& frmtelefon, const Module1& module1, ControlWidgets& widgets,
                               QWidget* parent)
    : QWidget(parent), frmtelefon_(frmtelefon), module1_(module1), widgets_(widgets) {
    auto* neighbours = new QHBoxLayout;
    auto* heads = new QHBoxLayout;
    auto* middle = new QHBoxLayout;
    auto* lines = new QVBoxLayout;
    lines->setSpacing(0);
    for (int row = 0; row < FrmTelefon::lines; ++row) {
        build_line(row);
        lines->addWidget(lines_[static_cast<std::size_t>(row)]);
    }
    build_neighbours(*neighbours);
    build_heads(*heads);
    middle->setSpacing(space::small);
    middle->addLayout(lines, 1);
    const int bar_width = build_scroll_bar(*middle);
    // The heads end where the lines do.
    auto* above = new QHBoxLayout;
    above->setSpacing(space::small);
    above->addLayout(heads, 1);
    above->addSpacing(space::small + bar_width);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(space::small);
    column->addLayout(neighbours);
    column->addLayout(above);
    column->addLayout(middle, 1);
}

// ---- building ----

void PhoneLinesView::build_line(int row) {
    auto* line = new PhoneLineView(frmtelefon_.zeilen[static_cast<std::size_t>(row)], row, widgets_, this);
    lines_[static_cast<std::size_t>(row)] = line;
    wire(row);
}

void PhoneLinesView::wire(int row) {
    PhoneLineView* line = lines_[static_cast<std::size_t>(row)];
    ClickArea& area = frmtelefon_.zeilen[static_cast<std::size_t>(row)].Picture1;
    line->key = [this, &area](int keycode) { widgets_.ask([&area, keycode] { area.KeyDown(keycode); }); };
    // From one line to the other, never out of a box or from a button.
    line->marked = [this, line] {
        if (std::ranges::find(lines_, window()->focusWidget()) != lines_.end()) line->setFocus();
    };
    // The site whose line has the ring is the one that is dialled.
    line->enter = [this, &area, row] {
        widgets_.ask([this, &area, row] {
            if (selected_row() == row)
                frmtelefon_.Command1.Click();
            else
                area.DblClick();
        });
    };
}

QWidget* PhoneLinesView::add_neighbour(Label& label, const QString& name, int step) {
    auto* shown = new ClickLabel(this);
    shown->setObjectName(name);
    shown->setForegroundRole(QPalette::Link);
    shown->setCursor(Qt::PointingHandCursor);
    shown->setMinimumWidth(shown->fontMetrics().horizontalAdvance(QString::fromLatin1(widest_neighbour)));
    shown->setAlignment(Qt::AlignVCenter | (step < 0 ? Qt::AlignRight : Qt::AlignLeft));
    label.ToolTipText = "Zeigt diese Spalte";
    widgets_.show(label, [&label, shown] {
        shown->setText(to_qstring(label.Caption.get()));
        show_common(label, *shown);
    });
    shown->clicked = [this, step] {
        widgets_.ask([this, step] { frmtelefon_.HScroll1.set_Value(frmtelefon_.HScroll1.Value() + step); });
    };
    return shown;
}

void PhoneLinesView::build_neighbours(QHBoxLayout& row) {
    row.setSpacing(space::medium);
    ScrollBar& HScroll1 = frmtelefon_.HScroll1;
    HScroll1.ToolTipText = to_cp1252_or(
        QStringLiteral("Letzte Spalte: Bemerkungen, Protokolldatei, Visualisierungsdatei, 1/4h-Datendatei"),
        '?');
    auto* bar = scroll_bar(HScroll1, Qt::Horizontal, QStringLiteral("HScroll1"), widgets_, this);
    bar->setAccessibleName(QStringLiteral("Inhalt der letzten Spalte"));
    bar->setFocusPolicy(Qt::TabFocus);
    bar->setFixedWidth(group_bar_width);
    widgets_.show(HScroll1, [this, bar] {
        show_value(*bar, frmtelefon_.HScroll1);
        for (PhoneLineView* line : lines_) line->forget_edits();
    });
    row.addStretch(1);
    row.addWidget(add_neighbour(frmtelefon_.Label8, QStringLiteral("Label8"), -1));
    row.addWidget(bar);
    row.addWidget(add_neighbour(frmtelefon_.Label9, QStringLiteral("Label9"), 1));
}

void PhoneLinesView::build_heads(QHBoxLayout& row) {
    QFont bold = font();
    bold.setBold(true);
    const auto head = [this, &bold](const QString& text) {
        auto* label = new QLabel(text, this);
        label->setFont(bold);
        return label;
    };
    QLabel* changing =
        widgets_.label(frmtelefon_.Label5, QStringLiteral("Label5"), QStringLiteral("%1"), this);
    changing->setFont(bold);
    QLabel* nr = head(QStringLiteral("Nr."));
    nr->setAlignment(Qt::AlignCenter);
    lay_out(row, {nr, head(QStringLiteral("  Projektname")), head(QStringLiteral("  Telefonnummer")),
                  changing, new QWidget(this), new QWidget(this), new QWidget(this)});
}

int PhoneLinesView::build_scroll_bar(QHBoxLayout& row) {
    auto* bar = scroll_bar(frmtelefon_.VScroll1, Qt::Vertical, QStringLiteral("VScroll1"), widgets_, this);
    bar->setAccessibleName(QStringLiteral("Erste Zeile"));
    widgets_.show(frmtelefon_.VScroll1, [this, bar] {
        show_value(*bar, frmtelefon_.VScroll1);
        for (PhoneLineView* line : lines_) line->forget_edits();
    });
    bar->setFixedWidth(bar->sizeHint().width());
    row.addWidget(bar);
    return bar->width();
}

// ---- selecting and scrolling ----

int PhoneLinesView::selected_row() const {
    const int row = module1_.telindex < 0 ? -1 : module1_.telindex - frmtelefon_.VScroll1.Value();
    return row < FrmTelefon::lines ? std::max(row, -1) : -1;
}

void PhoneLinesView::focus_selected() {
    lines_[static_cast<std::size_t>(std::max(selected_row(), 0))]->setFocus();
}

void PhoneLinesView::scroll_by(int lines) {
    ScrollBar& bar = frmtelefon_.VScroll1;
    widgets_.ask([&bar, lines] { bar.set_Value(bar.Value() + lines); });
}

void PhoneLinesView::scroll_to_first() { scroll_by(-frmtelefon_.VScroll1.Max); }
void PhoneLinesView::scroll_to_last() { scroll_by(frmtelefon_.VScroll1.Max); }

// Fine wheels and touchpads turn by less than a notch at a time.
void PhoneLinesView::wheelEvent(QWheelEvent* event) {
    const int turned = -event->angleDelta().y() * lines_a_notch;
    if ((turned < 0) != (wheel_ < 0)) wheel_ = 0;
    wheel_ += turned;
    const int lines = wheel_ / notch;
    wheel_ -= lines * notch;
    if (lines != 0) scroll_by(lines);
    event->accept();
}

} // namespace velorn
