#include "desktop/phonebook_panels.h"

#include "desktop/bind.h"
#include "desktop/phonebook_groups.h"
#include "desktop/style.h"

#include <QApplication>
#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace velorn {

namespace {

enum Page { groups_page, collection_page, swap_page, flag_page };

constexpr int index_box_width = 72;
constexpr int step_width = 32;

QFont bold(QFont font) {
    font.setBold(true);
    return font;
}

// A value between a button that takes one off and one that puts one on.
QHBoxLayout* stepper(QPushButton* minus, QLabel* value, const QString& widest, QPushButton* plus) {
    value->setFont(bold(value->font()));
    value->setAlignment(Qt::AlignCenter);
    value->setMinimumWidth(QFontMetrics(value->font()).horizontalAdvance(widest) + 2 * space::small);
    minus->setFixedWidth(step_width);
    plus->setFixedWidth(step_width);
    auto* row = new QHBoxLayout;
    row->setSpacing(space::small);
    row->addWidget(minus);
    row->addWidget(value);
    row->addWidget(plus);
    row->addStretch(1);
    return row;
}

} // namespace

PhonebookPanels::PhonebookPanels(FrmTelefon& frmtelefon, ControlWidgets& widgets, QWidget* parent)
    : QStackedWidget(parent), frmtelefon_(frmtelefon), widgets_(widgets) {
    addWidget(phonebook_groups(frmtelefon, widgets, this));
    addWidget(collection_panel());
    addWidget(swap_panel());
    addWidget(flag_panel());
    for (Form* panel : {&frmtelefon_.picdownl, &frmtelefon_.Picture2, &frmtelefon_.picdownload})
        widgets_.show(*panel, [this] { show_panel(); });
}

// Of several the one on top is that which is answered first.
void PhonebookPanels::show_panel() {
    const Page page = frmtelefon_.picdownload.Visible ? flag_page
                      : frmtelefon_.Picture2.Visible  ? swap_page
                      : frmtelefon_.picdownl.Visible  ? collection_page
                                                      : groups_page;
    if (page == currentIndex()) return;
    QWidget* const focus = QApplication::focusWidget();
    if (leave && focus != nullptr && isAncestorOf(focus)) leave();
    setCurrentIndex(page);
    if (page == collection_page) findChild<QLineEdit*>(QStringLiteral("txtstartnr"))->setFocus();
}

QWidget* PhonebookPanels::swap_panel() {
    const auto plain = QStringLiteral("%1");
    auto* panel = new QGroupBox(to_qstring(frmtelefon_.Picture2.Caption.get()), this);
    panel->setObjectName(QStringLiteral("Picture2"));
    QLabel* what = widgets_.label(frmtelefon_.labtausch, QStringLiteral("labtausch"), plain, panel);
    what->setFont(bold(what->font()));
    auto* column = new QVBoxLayout(panel);
    column->setSpacing(space::medium);
    column->addWidget(what);
    column->addWidget(widgets_.label(frmtelefon_.labtausch1, QStringLiteral("labtausch1"), plain, panel));
    column->addWidget(widgets_.label(frmtelefon_.labtausch2, QStringLiteral("labtausch2"), plain, panel));
    column->addStretch(1);
    column->addWidget(widgets_.button(frmtelefon_.Command3, QStringLiteral("Command3"),
                                      QStringLiteral("Vertauscht nichts"), panel),
                      0, Qt::AlignLeft);
    return panel;
}

QWidget* PhonebookPanels::flag_panel() {
    auto* panel = new QGroupBox(QStringLiteral("1/4h-Daten der markierten Anlage"), this);
    panel->setObjectName(QStringLiteral("picdownload"));
    auto* column = new QVBoxLayout(panel);
    column->setSpacing(space::medium);
    for (QRadioButton* const option :
         widgets_.options(frmtelefon_.optuebertrag, QStringLiteral("optuebertrag"), panel))
        column->addWidget(option);
    column->addStretch(1);
    column->addWidget(
        widgets_.button(frmtelefon_.closedathol, QStringLiteral("closedathol"), QString(), panel), 0,
        Qt::AlignLeft);
    return panel;
}

QWidget* PhonebookPanels::collection_panel() {
    FrmTelefon& f = frmtelefon_;
    const auto plain = QStringLiteral("%1");
    auto* panel = new QGroupBox(to_qstring(f.comautohol.Caption.get()), this);
    panel->setObjectName(QStringLiteral("picdownl"));

    const auto index_box = [&](TextBox& box, const QString& name, const QString& what, const QString& tip) {
        QLineEdit* edit = widgets_.text_box(box, name, what, tip, panel);
        edit->setFixedWidth(index_box_width);
        return edit;
    };
    const auto step = [&](Button& button, const char* name, const QString& tip) {
        QPushButton* shown = widgets_.button(button, QString::fromLatin1(name), tip, panel);
        shown->setAccessibleName(tip);
        return shown;
    };
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(space::medium);
    grid->setVerticalSpacing(space::medium);
    struct IndexRow {
        TextBox& box;
        const char* name;
        QString what, tip;
    };
    const IndexRow rows[] = {
        {f.txtstartnr, "txtstartnr", QStringLiteral("Startindexnummer:"),
         QStringLiteral("Erster Index der Reihe; er ist um 1 kleiner als die Nr. der Zeile")},
        {f.txtstopnr, "txtstopnr", QStringLiteral("Stopindexnummer:"),
         QStringLiteral("Letzter Index der Reihe, höchstens 2000")},
    };
    int line = 0;
    for (const IndexRow& row : rows) {
        QLineEdit* box = index_box(row.box, QString::fromLatin1(row.name), row.what, row.tip);
        auto* label = new QLabel(row.what, panel);
        label->setBuddy(box);
        grid->addWidget(label, line, 0);
        grid->addWidget(box, line++, 1, Qt::AlignLeft);
    }
    QLabel* planned = widgets_.label(f.labanz, QStringLiteral("labanz"),
                                     QStringLiteral("%1 Projekte für autom. Abholung geplant"), panel);
    planned->setFont(bold(planned->font()));
    grid->addWidget(planned, line, 0, 1, 2);

    const auto add_stepper = [&](int row, const QString& what, QPushButton* minus, QPushButton* plus,
                                 QLabel* value) {
        grid->addWidget(new QLabel(what, panel), row, 3);
        grid->addLayout(stepper(minus, value, QStringLiteral("00.00.0000"), plus), row, 4);
    };
    // One after the other: the tab key goes in the order of their making.
    auto* day_before = step(f.comdatminus, "comdatminus", QStringLiteral("Einen Tag früher"));
    auto* day_after = step(f.comdatplus, "comdatplus", QStringLiteral("Einen Tag später"));
    auto* hour_before = step(f.comuhrminus, "comuhrminus", QStringLiteral("Eine Stunde früher"));
    auto* hour_after = step(f.comuhrplus, "comuhrplus", QStringLiteral("Eine Stunde später"));
    add_stepper(0, QStringLiteral("Startdatum:"), day_before, day_after,
                widgets_.label(f.labstartdat, QStringLiteral("labstartdat"), plain, panel));
    add_stepper(1, QStringLiteral("Startzeit:"), hour_before, hour_after,
                widgets_.label(f.labstartuhr, QStringLiteral("labstartuhr"), plain, panel));
    auto* now = new QHBoxLayout;
    now->setSpacing(space::large);
    now->addWidget(widgets_.label(f.labzustand, QStringLiteral("labzustand"), plain, panel));
    now->addWidget(widgets_.label(f.labdat, QStringLiteral("labdat"), plain, panel));
    now->addWidget(widgets_.label(f.labuhr, QStringLiteral("labuhr"), plain, panel));
    now->addStretch(1);
    grid->addLayout(now, 2, 3, 1, 2);

    auto* checks = new QVBoxLayout;
    checks->setSpacing(space::medium);
    checks->addWidget(widgets_.check_box(f.vortagcheck, QStringLiteral("vortagcheck"),
                                         QStringLiteral("Der angebrochene heutige Tag bleibt weg"), panel));
    checks->addWidget(widgets_.check_box(f.viertelcheck, QStringLiteral("viertelcheck"),
                                         QStringLiteral("Die Werte jeder Viertelstunde einzeln anfordern"),
                                         panel));
    checks->addStretch(1);
    grid->addLayout(checks, 0, 6, 3, 1);
    grid->setColumnMinimumWidth(2, space::wide);
    grid->setColumnMinimumWidth(5, space::wide);
    grid->setColumnStretch(7, 1);

    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(space::medium);
    buttons->addWidget(
        widgets_.button(f.comstart, QStringLiteral("comstart"),
                        QStringLiteral("Wartet auf Startdatum und Startzeit und holt dann (Alt+S)"), panel));
    buttons->addWidget(
        widgets_.button(f.abbruch, QStringLiteral("abbruch"), QStringLiteral("Beendet die Abholung"), panel));
    buttons->addStretch(1);

    auto* column = new QVBoxLayout(panel);
    column->setSpacing(space::medium);
    column->addLayout(grid);
    column->addStretch(1);
    column->addLayout(buttons);
    return panel;
}

} // namespace velorn
