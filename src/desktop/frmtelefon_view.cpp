#include "desktop/frmtelefon_view.h"

#include "desktop/bind.h"
#include "desktop/phone_lines_view.h"
#include "desktop/phonebook_panels.h"
#include "desktop/style.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QVBoxLayout>

namespace velorn {

namespace {

constexpr QSize usual_size(1100, 650);

} // namespace

FrmtelefonView::FrmtelefonView(FrmTelefon& frmtelefon, const Module1& module1,
                               std::function<void(std::function<void()>)> later, QWidget* owner)
    : QDialog(owner), frmtelefon_(frmtelefon), module1_(module1), widgets_(*this, std::move(later)) {
    setObjectName(QStringLiteral("frmtelefon"));
    setModal(true);
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    frmtelefon_.form.on_change = [this] { show_form(); };
}

FrmtelefonView::~FrmtelefonView() { unbind(frmtelefon_.form); }

void FrmtelefonView::show_form() {
    if (!frmtelefon_.form.Visible) {
        hide();
        return;
    }
    if (lines_ == nullptr) build();
    setWindowTitle(to_qstring(frmtelefon_.form.Caption.get()));
    if (isVisible()) return;
    // On a line and not in a box, which would select its line.
    lines_->focus_selected();
    open();
    lines_->focus_selected();
}

// ---- building ----

void FrmtelefonView::build() {
    lines_ = new PhoneLinesView(frmtelefon_, module1_, widgets_, this);
    auto* panels = new PhonebookPanels(frmtelefon_, widgets_, this);
    panels->leave = [this] { lines_->focus_selected(); };

    auto* bottom = new QHBoxLayout;
    bottom->setSpacing(space::medium);
    bottom->addWidget(widgets_.label(frmtelefon_.Label22, QStringLiteral("Label22"),
                                     QStringLiteral("Fenster schließt in %1 s"), this));
    bottom->addStretch(1);
    bottom->addWidget(widgets_.button(frmtelefon_.Command11, QStringLiteral("Command11"),
                                      QStringLiteral("Schreibt das Telefonbuch in seine Datei"), this));
    bottom->addWidget(widgets_.button(
        frmtelefon_.cmdOK, QStringLiteral("cmdOK"),
        QStringLiteral("Schließt und übernimmt die Einstellungen; das Telefonbuch wird nicht gespeichert"),
        this));
    bottom->addWidget(widgets_.button(
        frmtelefon_.cmdCancel, QStringLiteral("cmdCancel"),
        QStringLiteral("Schließt, ohne die Einstellungen zu übernehmen oder etwas zu speichern (Esc)"),
        this));

    auto* column = new QVBoxLayout(this);
    column->setSpacing(space::medium);
    column->addWidget(lines_, 1);
    column->addWidget(panels);
    column->addLayout(bottom);
    build_menu();
    build_shortcuts();
    const QSize free = screen()->availableSize();
    resize(usual_size.boundedTo(free).expandedTo(minimumSizeHint()));
}

void FrmtelefonView::build_menu() {
    auto* bar = new QMenuBar(this);
    const auto add_menu = [this, bar](MenuItem& item, const char* name) {
        QMenu* menu = bar->addMenu(to_qstring(item.Caption.get()));
        menu->setObjectName(QString::fromLatin1(name));
        widgets_.show(item, [&item, menu] {
            menu->setTitle(to_qstring(item.Caption.get()));
            menu->menuAction()->setEnabled(item.Enabled);
            menu->menuAction()->setVisible(item.Visible);
        });
        return menu;
    };
    QMenu* settings = add_menu(frmtelefon_.mnueinst, "mnueinst");
    add_action(*settings, frmtelefon_.mnutele, "mnutele");
    add_action(*settings, frmtelefon_.mnudispauf, "mnudispauf");
    QMenu* login = add_menu(frmtelefon_.mnulogin, "mnulogin");
    add_action(*login, frmtelefon_.mnuloginauto, "mnuloginauto");
    add_action(*login, frmtelefon_.mnuuser, "mnuuser");
    add_action(*login, frmtelefon_.mnupass, "mnupass");
    login->findChild<QAction*>(QStringLiteral("mnuloginauto"))->setCheckable(true);
    frmtelefon_.mnuloginauto.changed();
    layout()->setMenuBar(bar);
}

void FrmtelefonView::add_action(QMenu& menu, MenuItem& item, const char* name) {
    QAction* action = menu.addAction(QString());
    action->setObjectName(QString::fromLatin1(name));
    widgets_.show(item, [&item, action] {
        action->setText(to_qstring(item.Caption.get()));
        if (action->isCheckable()) action->setChecked(item.Checked);
        action->setEnabled(item.Enabled && item.Click);
        action->setVisible(item.Visible);
    });
    connect(action, &QAction::triggered, this, [this, &item, action] {
        if (action->isCheckable()) action->setChecked(item.Checked); // the mark follows the control
        widgets_.ask([&item] { item.Click(); });
    });
}

void FrmtelefonView::build_shortcuts() {
    const auto on = [this](const QKeySequence& key, std::function<void()> what) {
        connect(new QShortcut(key, this), &QShortcut::activated, this, std::move(what));
    };
    const auto search = [this] { widgets_.ask([this] { frmtelefon_.Command7.Click(); }); };
    on(QKeySequence(Qt::CTRL | Qt::Key_F), search);
    on(QKeySequence(Qt::Key_F3), search);
    const auto click_on = [this](const char* name) {
        auto* const button = findChild<QAbstractButton*>(QString::fromLatin1(name));
        return [button] {
            if (button->isVisible()) button->click();
        };
    };
    on(QKeySequence(Qt::ALT | Qt::Key_T), click_on("telnet"));
    on(QKeySequence(Qt::ALT | Qt::Key_H), click_on("comautohol"));
    on(QKeySequence(Qt::ALT | Qt::Key_S), click_on("comstart"));
    on(QKeySequence(Qt::CTRL | Qt::Key_Home), [this] { lines_->scroll_to_first(); });
    on(QKeySequence(Qt::CTRL | Qt::Key_End), [this] { lines_->scroll_to_last(); });
}

// ---- events ----

// Enter dials from a line alone: in a box it would dial while the person means to end an entry.
void FrmtelefonView::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) return QDialog::keyPressEvent(event);
    if (auto* const button = qobject_cast<QPushButton*>(focusWidget())) button->click();
}

void FrmtelefonView::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) widgets_.show_again();
    QDialog::changeEvent(event);
}

void FrmtelefonView::closeEvent(QCloseEvent* event) {
    event->ignore();
    widgets_.ask([this] { frmtelefon_.Command11.Click(); });
}

void FrmtelefonView::reject() {
    widgets_.ask([this] { frmtelefon_.cmdCancel.Click(); });
}

} // namespace velorn
