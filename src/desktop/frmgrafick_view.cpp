#include "desktop/frmgrafick_view.h"

#include "desktop/style.h"
#include "desktop/text_rim.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace velorn {

FrmgrafickView::FrmgrafickView(FrmGrafick& frmgrafick, std::function<void(std::function<void()>)> later,
                               QWidget* owner)
    : QWidget(owner, Qt::Window), frmgrafick_(frmgrafick), widgets_(*this, std::move(later)) {
    setObjectName(QStringLiteral("frmgrafick"));
    frmgrafick_.form.on_change = [this] { show_form(); };
}

FrmgrafickView::~FrmgrafickView() { frmgrafick_.form.on_change = nullptr; }

void FrmgrafickView::show_form() {
    if (!frmgrafick_.form.Visible) {
        hide();
        return;
    }
    if (!built_) build();
    setWindowTitle(to_qstring(frmgrafick_.form.Caption.get()));
    setCursor(frmgrafick_.busy ? Qt::WaitCursor : Qt::ArrowCursor);
    if (!isVisible()) show();
}

void FrmgrafickView::build() {
    built_ = true;
    FrmGrafick& f = frmgrafick_;
    const auto plain = QStringLiteral("%1");
    auto* newest = new QHBoxLayout;
    newest->addWidget(new QLabel(QStringLiteral("Neuester Tag im Archiv:"), this));
    newest->addWidget(widgets_.label(f.neudat, QStringLiteral("neudat"), plain + QLatin1Char('.'), this));
    newest->addWidget(widgets_.label(f.neumon, QStringLiteral("neumon"), plain + QLatin1Char('.'), this));
    newest->addWidget(widgets_.label(f.neujah, QStringLiteral("neujah"), plain, this));
    newest->addStretch(1);

    auto* other = new QPushButton(QStringLiteral("Datenarchivierungsdatei auswählen"), this);
    other->setObjectName(QStringLiteral("neupfad"));
    connect(other, &QPushButton::clicked, this, [this] {
        widgets_.ask([this] {
            if (frmgrafick_.neupfad.Click) frmgrafick_.neupfad.Click();
        });
    });
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(widgets_.button(f.opendathol, QStringLiteral("opendathol"),
                                       QStringLiteral("Werte vom Regler holen"), this));
    buttons->addWidget(other);
    buttons->addStretch(1);
    buttons->addWidget(widgets_.button(f.schliessen, QStringLiteral("schliessen"),
                                       QStringLiteral("Schließen (aktueller Zustand wird gespeichert)"),
                                       this));
    buttons->addWidget(widgets_.button(f.schliessen2, QStringLiteral("schliessen2"),
                                       QStringLiteral("Was geholt wurde, geht verloren"), this));

    auto* column = new QVBoxLayout(this);
    column->setSpacing(space::large);
    column->addLayout(newest);
    column->addWidget(download_panel());
    column->addStretch(1);
    column->addLayout(buttons);
    setMinimumSize(sizeHint().expandedTo(QSize(720, 360)));
}

QGroupBox* FrmgrafickView::download_panel() {
    FrmGrafick& f = frmgrafick_;
    const auto plain = QStringLiteral("%1");
    auto* panel = new QGroupBox(QStringLiteral("Daten holen"), this);
    panel->setObjectName(QStringLiteral("picdownload"));
    widgets_.show(f.picdownload, [this, panel] { panel->setVisible(frmgrafick_.picdownload.Visible); });

    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(space::small);
    int row = 0;
    struct Date {
        QString title;
        ComboBox *day, *month, *year;
        const char *day_name, *month_name, *year_name;
    };
    for (const Date& date : {Date{QStringLiteral("von:"), &f.cbodatstart, &f.cbomonstart, &f.cbojahrstart,
                                  "cbodatstart", "cbomonstart", "cbojahrstart"},
                             Date{QStringLiteral("bis:"), &f.cbodatstop, &f.cbomonstop, &f.cbojahrstop,
                                  "cbodatstop", "cbomonstop", "cbojahrstop"}}) {
        grid->addWidget(new QLabel(date.title, panel), row, 0);
        grid->addWidget(list(*date.day, date.day_name, QStringLiteral("Tag"), panel), row, 1);
        grid->addWidget(list(*date.month, date.month_name, QStringLiteral("Monat"), panel), row, 2);
        grid->addWidget(list(*date.year, date.year_name, QStringLiteral("Jahr"), panel), row, 3);
        ++row;
    }
    grid->setColumnStretch(4, 1);

    auto* options = new QHBoxLayout;
    auto* exclusive = new QButtonGroup(panel);
    int index = 0;
    for (const std::string& caption : f.optuebertrag.captions()) {
        auto* option = new QRadioButton(to_qstring(caption), panel);
        option->setObjectName(QStringLiteral("optuebertrag%1").arg(index));
        exclusive->addButton(option, index++);
        options->addWidget(option);
    }
    widgets_.show(f.optuebertrag, [&f, exclusive] {
        if (QAbstractButton* const down = exclusive->button(f.optuebertrag.selected()))
            down->setChecked(true);
    });
    connect(exclusive, &QButtonGroup::idClicked, panel,
            [this](int id) { widgets_.ask([this, id] { frmgrafick_.optuebertrag.select(id); }); });
    options->addWidget(widgets_.check_box(f.checkauflegen, QStringLiteral("checkauflegen"),
                                          QStringLiteral("Legt auf und schließt, sobald alles da ist"),
                                          panel));
    options->addStretch(1);

    auto* bar = new QProgressBar(panel);
    bar->setObjectName(QStringLiteral("fortschritt"));
    bar->setTextVisible(false);
    auto* share = new QLabel(panel);
    widgets_.show(f.fortschritt, [this, bar, share] {
        bar->setValue(frmgrafick_.fortschritt.Value);
        share->setText(to_qstring(frmgrafick_.fortschritt.Text.get()));
    });
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(widgets_.button(f.download, QStringLiteral("download"), QString(), panel));
    buttons->addWidget(widgets_.button(f.closedathol, QStringLiteral("closedathol"), QString(), panel));
    buttons->addStretch(1);
    buttons->addWidget(widgets_.label(f.Label33, QStringLiteral("Label33"), plain, panel));
    buttons->addWidget(widgets_.label(f.Label58, QStringLiteral("Label58"), plain, panel));

    auto* column = new QVBoxLayout(panel);
    column->setSpacing(space::medium);
    column->addLayout(grid);
    column->addLayout(options);
    column->addWidget(widgets_.label(f.labstatus, QStringLiteral("labstatus"), plain, panel));
    column->addWidget(bar);
    column->addWidget(share);
    column->addLayout(buttons);
    return panel;
}

QComboBox* FrmgrafickView::list(ComboBox& box, const char* name, const QString& what, QWidget* parent) {
    auto* view = new QComboBox(parent);
    view->setObjectName(QString::fromLatin1(name));
    view->setToolTip(what);
    view->setAccessibleName(what);
    widgets_.show(box, [&box, view] {
        const QSignalBlocker quiet(view);
        if (view->count() != static_cast<int>(box.List().size())) {
            view->clear();
            for (const ComboBox::Item& item : box.List()) view->addItem(to_qstring(item.text));
        }
        for (int i = 0; i < view->count(); ++i)
            view->setItemText(i, to_qstring(box.List()[static_cast<std::size_t>(i)].text));
        view->setCurrentIndex(box.ListIndex());
    });
    connect(view, &QComboBox::activated, this, [&box](int index) { box.set_ListIndex(index); });
    return view;
}

void FrmgrafickView::closeEvent(QCloseEvent* event) {
    event->ignore();
    widgets_.ask([this] {
        if (frmgrafick_.schliessen.Click) frmgrafick_.schliessen.Click();
    });
}

} // namespace velorn
