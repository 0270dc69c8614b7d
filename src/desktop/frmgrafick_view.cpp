#include "desktop/frmgrafick_view.h"

#include "desktop/download_panel.h"
#include "desktop/style.h"
#include "desktop/text_rim.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
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
    column->addWidget(new DownloadPanel(f, widgets_, this));
    column->addStretch(1);
    column->addLayout(buttons);
    setMinimumSize(sizeHint().expandedTo(QSize(720, 360)));
}

void FrmgrafickView::closeEvent(QCloseEvent* event) {
    event->ignore();
    widgets_.ask([this] {
        if (frmgrafick_.schliessen.Click) frmgrafick_.schliessen.Click();
    });
}

} // namespace velorn
