#include "desktop/download_panel.h"

#include "desktop/bind.h"
#include "desktop/style.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace velorn {

DownloadPanel::DownloadPanel(FrmGrafick& frmgrafick, ControlWidgets& widgets, QWidget* parent)
    : QGroupBox(QStringLiteral("Daten holen"), parent), frmgrafick_(frmgrafick), widgets_(widgets) {
    setObjectName(QStringLiteral("picdownload"));
    FrmGrafick& f = frmgrafick_;
    const auto plain = QStringLiteral("%1");

    auto* bar = new QProgressBar(this);
    bar->setObjectName(QStringLiteral("fortschritt"));
    bar->setAccessibleName(QStringLiteral("Fortschritt"));
    bar->setTextVisible(false);
    auto* share = new QLabel(this);
    share->setObjectName(QStringLiteral("fortschritt_text"));
    widgets_.show(f.fortschritt, [&f, bar, share] {
        bar->setValue(f.fortschritt.Value);
        share->setText(to_qstring(f.fortschritt.Text.get()));
    });
    auto* told = new QHBoxLayout;
    told->addWidget(share);
    told->addStretch(1);
    told->addWidget(widgets_.label(f.Label33, QStringLiteral("Label33"), plain, this));
    told->addSpacing(space::large);
    told->addWidget(widgets_.label(f.Label58, QStringLiteral("Label58"), plain, this));

    auto* column = new QVBoxLayout(this);
    column->setSpacing(space::medium);
    column->addLayout(range());
    column->addLayout(options());
    column->addLayout(buttons());
    column->addWidget(widgets_.label(f.labstatus, QStringLiteral("labstatus"), plain, this));
    column->addWidget(bar);
    column->addLayout(told);
    widgets_.show(f.picdownload, [this] { setVisible(frmgrafick_.picdownload.Visible); });
}

QHBoxLayout* DownloadPanel::range() {
    FrmGrafick& f = frmgrafick_;
    struct Date {
        QString title, which;
        ComboBox *day, *month, *year;
        const char *day_name, *month_name, *year_name;
    };
    auto* row = new QHBoxLayout;
    row->setSpacing(space::small);
    for (const Date& date :
         {Date{QStringLiteral("Zeitraum von:"), QStringLiteral("erster"), &f.cbodatstart, &f.cbomonstart,
               &f.cbojahrstart, "cbodatstart", "cbomonstart", "cbojahrstart"},
          Date{QStringLiteral("bis:"), QStringLiteral("letzter"), &f.cbodatstop, &f.cbomonstop,
               &f.cbojahrstop, "cbodatstop", "cbomonstop", "cbojahrstop"}}) {
        auto* title = new QLabel(date.title, this);
        QComboBox* const day = list(*date.day, date.day_name, QStringLiteral("Tag, ") + date.which);
        title->setBuddy(day);
        row->addWidget(title);
        row->addWidget(day);
        row->addWidget(list(*date.month, date.month_name, QStringLiteral("Monat, ") + date.which));
        row->addWidget(list(*date.year, date.year_name, QStringLiteral("Jahr, ") + date.which));
        row->addSpacing(space::large);
    }
    row->addStretch(1);
    return row;
}

QHBoxLayout* DownloadPanel::options() {
    auto* row = new QHBoxLayout;
    row->setSpacing(space::large);
    for (QRadioButton* const option :
         widgets_.options(frmgrafick_.optuebertrag, QStringLiteral("optuebertrag"), this))
        row->addWidget(option);
    row->addWidget(
        widgets_.check_box(frmgrafick_.checkauflegen, QStringLiteral("checkauflegen"),
                           QStringLiteral("Legt auf und schließt das Fenster, sobald alles da ist"), this));
    row->addStretch(1);
    return row;
}

QHBoxLayout* DownloadPanel::buttons() {
    auto* row = new QHBoxLayout;
    row->setSpacing(space::medium);
    row->addWidget(widgets_.button(frmgrafick_.download, QStringLiteral("download"),
                                   QStringLiteral("Fordert die Werte des Zeitraums bei der Steuerung an"),
                                   this));
    row->addWidget(widgets_.button(frmgrafick_.closedathol, QStringLiteral("closedathol"),
                                   QStringLiteral("Schließt diesen Bereich"), this));
    row->addStretch(1);
    return row;
}

QComboBox* DownloadPanel::list(ComboBox& box, const char* name, const QString& what) {
    auto* view = new QComboBox(this);
    view->setObjectName(QString::fromLatin1(name));
    view->setToolTip(what);
    view->setAccessibleName(what);
    view->setSizeAdjustPolicy(QComboBox::AdjustToContents);
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

} // namespace velorn
