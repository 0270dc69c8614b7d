#include "desktop/evaluation_bars.h"

#include "desktop/control_widgets.h"
#include "desktop/flow_layout.h"
#include "desktop/grounds.h"
#include "desktop/style.h"
#include "desktop/text_rim.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include <algorithm>

namespace velorn {

namespace {

constexpr Colour not_chosen = colour::rgb(224, 224, 224); // the plain button of either look

// Shows more of a control that a widget shows already.
void also_show(Control& control, ControlWidgets& widgets, std::function<void()> more) {
    widgets.show(control, [first = control.on_change, more = std::move(more)] {
        first();
        more();
    });
}

QString with_key(const std::string& tip, const QKeySequence& key) {
    const QString name = key.toString(QKeySequence::NativeText);
    const QString text = to_qstring(tip);
    return text.isEmpty() ? name : text + QStringLiteral(" (") + name + u')';
}

void name_key(Button& button, QWidget& shown, const QKeySequence& key, ControlWidgets& widgets) {
    also_show(button, widgets,
              [&button, &shown, key] { shown.setToolTip(with_key(button.ToolTipText, key)); });
}

} // namespace

std::vector<StepKey> step_keys(EvaluationControls& c) {
    return {{c.minustag, Qt::Key_Left},
            {c.plustag, Qt::Key_Right},
            {c.minuswoche, Qt::CTRL | Qt::Key_Left},
            {c.pluswoche, Qt::CTRL | Qt::Key_Right},
            {c.minusmonat, Qt::Key_PageUp},
            {c.plusmonat, Qt::Key_PageDown},
            {c.minusjahr, Qt::CTRL | Qt::Key_PageUp},
            {c.plusjahr, Qt::CTRL | Qt::Key_PageDown}};
}

EvaluationBars::EvaluationBars(FrmGrafick& frmgrafick, EvaluationControls& controls, ControlWidgets& widgets,
                               QWidget* parent)
    : f_(frmgrafick), c_(controls), widgets_(widgets), parent_(parent) {}

QWidget* EvaluationBars::in_a_row(std::initializer_list<QWidget*> widgets, int spacing) {
    auto* holder = new QWidget(parent_);
    auto* row = new QHBoxLayout(holder);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(spacing);
    for (QWidget* const widget : widgets) row->addWidget(widget);
    return holder;
}

// ---- views ----

QWidget* EvaluationBars::coloured(ColourButton& button, const char* name) {
    QPushButton* const shown = widgets_.button(button, QString::fromLatin1(name), QString(), parent_);
    also_show(button, widgets_, [&button, shown] {
        QPalette colours = shown->window()->palette();
        if (button.BackColor != not_chosen && button.BackColor != colour::white) {
            const Ground ground = ground_of(button.BackColor, colours);
            for (const auto group : {QPalette::Active, QPalette::Inactive}) {
                colours.setColor(group, QPalette::Button, ground.ground);
                colours.setColor(group, QPalette::ButtonText, ground.text);
            }
        }
        shown->setPalette(colours);
    });
    return shown;
}

QLayout* EvaluationBars::views() {
    struct View {
        ColourButton& button;
        const char* name;
        QKeySequence key;
    };
    auto* row = new FlowLayout(space::medium, space::small);
    QWidget* views[4];
    int index = 0;
    for (const View& view :
         {View{c_.comtag, "comtag", Qt::ALT | Qt::Key_1}, View{c_.comwoch, "comwoch", Qt::ALT | Qt::Key_2},
          View{c_.commonat, "commonat", Qt::ALT | Qt::Key_3},
          View{c_.comjahr, "comjahr", Qt::ALT | Qt::Key_4}}) {
        views[index] = coloured(view.button, view.name);
        name_key(view.button, *views[index], view.key, widgets_);
        ++index;
    }
    row->addWidget(in_a_row({views[0], views[1], views[2], views[3]}, space::small));
    row->addWidget(in_a_row({coloured(c_.comdauer, "comdauer"), coloured(c_.comtagschnitt, "comtagschnitt")},
                            space::small));
    row->addWidget(widgets_.check_box(c_.checkviertel, QStringLiteral("checkviertel"),
                                      QStringLiteral("Jeder Viertelstundenwert statt der Mittelwerte"),
                                      parent_));
    QWidget* days[2];
    index = 0;
    for (const auto& [box, name] : {std::pair{&c_.Check1, "Check1"}, std::pair{&c_.Check2, "Check2"}}) {
        QCheckBox* const shown = widgets_.check_box(*box, QString::fromLatin1(name), QString(), parent_);
        also_show(*box, widgets_, [box, shown] { shown->setEnabled(box->Enabled && box->Click); });
        days[index++] = shown;
    }
    row->addWidget(in_a_row({days[0], days[1]}, space::small));
    return row;
}

// ---- navigation ----

QWidget* EvaluationBars::step(Button& minus, const char* minus_name, Button& plus, const char* plus_name,
                              const QString& minus_tip, const QString& plus_tip) {
    QPushButton* shown[2];
    int index = 0;
    struct One {
        Button& button;
        const char* name;
        const QString& tip;
    };
    for (const One& one : {One{minus, minus_name, minus_tip}, One{plus, plus_name, plus_tip}}) {
        QPushButton* const button =
            widgets_.button(one.button, QString::fromLatin1(one.name), one.tip, parent_);
        const std::vector<StepKey> keys = step_keys(c_);
        const auto key =
            std::ranges::find_if(keys, [&one](const StepKey& k) { return &k.button == &one.button; });
        if (key != keys.end()) name_key(one.button, *button, key->key, widgets_);
        // The blanks behind the caption would push it out of the middle.
        also_show(one.button, widgets_, [button] { button->setText(button->text().trimmed()); });
        shown[index++] = button;
    }
    const int width = std::max(shown[0]->sizeHint().width(), shown[1]->sizeHint().width());
    for (QPushButton* const button : shown) button->setFixedWidth(width);
    return in_a_row({shown[0], shown[1]}, space::small);
}

QLayout* EvaluationBars::navigation() {
    auto* row = new FlowLayout(space::large, space::small);
    row->addWidget(step(c_.minustag, "minustag", c_.plustag, "plustag", QStringLiteral("Einen Tag zurück"),
                        QStringLiteral("Einen Tag weiter")));
    row->addWidget(step(c_.minuswoche, "minuswoche", c_.pluswoche, "pluswoche",
                        QStringLiteral("Eine Woche zurück"), QStringLiteral("Eine Woche weiter")));
    row->addWidget(step(c_.minusmonat, "minusmonat", c_.plusmonat, "plusmonat",
                        QStringLiteral("Einen Monat zurück"), QStringLiteral("Einen Monat weiter")));
    row->addWidget(step(c_.minusjahr, "minusjahr", c_.plusjahr, "plusjahr", QStringLiteral("Ein Jahr zurück"),
                        QStringLiteral("Ein Jahr weiter")));
    QPushButton* const axes =
        widgets_.button(c_.openyskala, QStringLiteral("openyskala"), QString(), parent_);
    QPushButton* const print = widgets_.button(c_.plott, QStringLiteral("plott"), QString(), parent_);
    name_key(c_.plott, *print, Qt::CTRL | Qt::Key_P, widgets_);
    row->addWidget(in_a_row({axes, print}, space::small));
    return row;
}

// ---- figures ----

QWidget* EvaluationBars::small_label(Label& label, const char* name, const QString& tip) {
    QLabel* const shown = widgets_.label(label, QString::fromLatin1(name), QStringLiteral("%1"), parent_);
    QFont font = shown->font();
    font.setPointSizeF(font.pointSizeF() * 0.85);
    shown->setFont(font);
    shown->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    shown->setMinimumWidth(QFontMetrics(font).horizontalAdvance(QStringLiteral("-0000")));
    shown->setAccessibleName(tip);
    also_show(label, widgets_, [shown, tip] { shown->setToolTip(tip); });
    return shown;
}

QWidget* EvaluationBars::coloured_label(ColourLabel& label, const char* name, const QString& tip) {
    QLabel* const shown = widgets_.label(label, QString::fromLatin1(name), QStringLiteral("%1"), parent_);
    also_show(label, widgets_, [&label, shown, tip] {
        QPalette colours = shown->window()->palette();
        const QColor tone = readable(label.ForeColor, colours.color(QPalette::Window),
                                     colours.color(QPalette::WindowText), least_contrast);
        colours.setColor(QPalette::Active, QPalette::WindowText, tone);
        colours.setColor(QPalette::Inactive, QPalette::WindowText, tone);
        shown->setPalette(colours);
        shown->setToolTip(tip);
    });
    return shown;
}

QLayout* EvaluationBars::figures() {
    auto* row = new QHBoxLayout;
    row->setSpacing(space::small);
    row->addWidget(new QLabel(QStringLiteral("1/4h-Werte:"), parent_));
    row->addWidget(coloured_label(c_.viertist, "viertist",
                                  QStringLiteral("Vorhandene Werte der zuletzt gezeichneten Spur")));
    row->addWidget(
        coloured_label(c_.viertkann, "viertkann", QStringLiteral("So viele hat der gezeigte Zeitraum")));
    row->addSpacing(space::wide);
    row->addWidget(new QLabel(QStringLiteral("Neuester Tag im Archiv:"), parent_));
    row->addWidget(widgets_.label(f_.neudat, QStringLiteral("neudat"), QStringLiteral("%1") + u'.', parent_));
    row->addWidget(widgets_.label(f_.neumon, QStringLiteral("neumon"), QStringLiteral("%1") + u'.', parent_));
    row->addWidget(widgets_.label(f_.neujah, QStringLiteral("neujah"), QStringLiteral("%1"), parent_));
    row->addStretch(1);
    row->addWidget(small_label(c_.Label32, "Label32", QStringLiteral("X unter dem Zeiger im Diagramm")));
    // The download's panel shows this label too.
    auto* y = new QLabel(parent_);
    y->setObjectName(QStringLiteral("Label33_Y"));
    QFont font = y->font();
    font.setPointSizeF(font.pointSizeF() * 0.85);
    y->setFont(font);
    y->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    y->setMinimumWidth(QFontMetrics(font).horizontalAdvance(QStringLiteral("-0000")));
    y->setToolTip(QStringLiteral("Y unter dem Zeiger im Diagramm"));
    const std::function<void()> show_y = [this, y] {
        const QString text = to_qstring(f_.Label33.Caption.get());
        bool number = false;
        (void)text.toInt(&number);
        y->setText(number ? text : QString());
    };
    if (f_.Label33.on_change)
        also_show(f_.Label33, widgets_, show_y);
    else
        widgets_.show(f_.Label33, show_y);
    row->addWidget(y);
    row->addWidget(
        small_label(c_.Label35, "Label35", QStringLiteral("X unter dem Zeiger neben dem Diagramm")));
    return row;
}

// ---- actions ----

QLayout* EvaluationBars::actions() {
    auto* row = new FlowLayout(space::medium, space::small);
    const auto add = [this, row](Button& button, const char* name, const QString& tip = {}) {
        row->addWidget(widgets_.button(button, QString::fromLatin1(name), tip, parent_));
    };
    add(f_.opendathol, "opendathol", QStringLiteral("Werte vom Regler holen"));
    auto* other = new QPushButton(QStringLiteral("Datenarchivierungsdatei auswählen"), parent_);
    other->setObjectName(QStringLiteral("neupfad"));
    other->setToolTip(QStringLiteral("Zeigt ein anderes Archiv"));
    other->setAutoDefault(false);
    QObject::connect(other, &QPushButton::clicked, parent_, [this_f = &f_, &widgets = widgets_] {
        widgets.ask([this_f] {
            if (this_f->neupfad.Click) this_f->neupfad.Click();
        });
    });
    row->addWidget(other);
    add(c_.openbearb, "openbearb");
    add(c_.datexport, "datexport");
    add(c_.datexport2, "datexport2");
    add(c_.datexport3, "datexport3");
    add(c_.sonderfunkt, "sonderfunkt");
    add(f_.schliessen, "schliessen", QStringLiteral("Schließen (aktueller Zustand wird gespeichert)"));
    add(f_.schliessen2, "schliessen2", QStringLiteral("Was geholt oder geändert wurde, geht verloren"));
    return row;
}

} // namespace velorn
