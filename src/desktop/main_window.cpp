#include "desktop/main_window.h"

#include "desktop/bind.h"
#include "desktop/calendar_pane.h"
#include "desktop/icons.h"
#include "desktop/lamp_view.h"
#include "desktop/picture_view.h"
#include "desktop/search_field.h"
#include "desktop/style.h"
#include "desktop/terminal_view.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QSplitter>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

namespace velorn {

namespace {

QString name_of_key(std::string_view key) {
    return QString::fromLatin1(key.data(), static_cast<qsizetype>(key.size()));
}

// A command that nothing serves yet is greyed, whatever its Enabled says.
bool is_usable(const Control& control, const std::function<void()>& click) {
    return control.Enabled && click;
}

QFrame* vertical_line(QWidget* parent) {
    auto* line = new QFrame(parent);
    line->setFrameShape(QFrame::VLine);
    line->setFrameShadow(QFrame::Sunken);
    return line;
}

// A notice that is shown or not, with the control's text.
void bind_notice(TextBox& box, QLabel* label, const char* name) {
    label->setObjectName(QString::fromLatin1(name));
    bind(box, [&box, label] {
        label->setText(to_qstring(box.Text.get()));
        label->setVisible(box.Visible);
    });
}

} // namespace

MainWindow::MainWindow(Program& program) : program_(program) {
    setObjectName(QStringLiteral("frmTerminal"));
    setMinimumSize(640, 360); // half of 1366 x 768 at double scale still holds it
    build_middle();
    build_menu();
    build_toolbar();
    build_status_bar();
    setWindowIcon(icon(QStringLiteral("velorn"), palette()));
    program_.frmTerminal.form.on_change = [this] { show_form(); };
    show_form();
}

MainWindow::~MainWindow() {
    FrmTerminal& f = program_.frmTerminal;
    for (const MenuRow& row : FrmTerminal::menu_rows()) {
        if (row.item != nullptr) unbind(row.item(f));
    }
    for (ToolButton& button : f.tool_buttons) unbind(button);
    unbind(f.clrtxtsnap);
    unbind(f.form, f.imgConnected, f.imgNotConnected, f.picipunterbr, f.txtprotschreib, f.txtprotwarn,
           f.txtbattload, f.sbrStatus.projekt, f.sbrStatus.Settings, f.sbrStatus.ConnectTime);
}

void MainWindow::later(std::function<void()> what) { program_.world.loop.post(std::move(what)); }

void MainWindow::build_menu() {
    FrmTerminal& f = program_.frmTerminal;
    QMenu* menus[3] = {};
    for (const MenuRow& row : FrmTerminal::menu_rows()) {
        if (row.item == nullptr) {
            menus[0]->addSeparator();
            continue;
        }
        MenuItem& item = row.item(f);
        const auto* const next = &row + 1;
        const bool opens_submenu =
            row.depth == 0 ||
            (next != std::to_address(FrmTerminal::menu_rows().end()) && next->depth > row.depth);
        if (opens_submenu) {
            QMenu* menu = row.depth == 0 ? menuBar()->addMenu(QString()) : menus[0]->addMenu(QString());
            menus[row.depth] = menu;
            menu->setObjectName(name_of_key(row.name));
            bind(item, [&item, menu] {
                menu->setTitle(to_qstring(item.Caption.get()));
                menu->menuAction()->setEnabled(item.Enabled);
                menu->menuAction()->setVisible(item.Visible);
            });
            continue;
        }
        QAction* action = menus[row.depth - 1]->addAction(QString());
        action->setObjectName(name_of_key(row.name));
        bind(item, [&item, action] {
            action->setText(to_qstring(item.Caption.get()));
            action->setCheckable(item.Checked || action->isCheckable());
            action->setChecked(item.Checked);
            action->setEnabled(is_usable(item, item.Click));
            action->setVisible(item.Visible);
        });
        connect(action, &QAction::triggered, this, [this, &item, action] {
            action->setChecked(item.Checked); // the mark follows the control, not the click
            later([&item] { press(item); });
        });
    }
}

void MainWindow::build_toolbar() {
    FrmTerminal& f = program_.frmTerminal;
    toolbar_ = addToolBar(QStringLiteral("Werkzeugleiste"));
    toolbar_->setObjectName(QStringLiteral("tbrToolBar"));
    toolbar_->setMovable(false);
    toolbar_->setIconSize(QSize(24, 24));
    toolbar_->setContextMenuPolicy(Qt::PreventContextMenu);
    std::size_t index = 0;
    for (const ToolRow& row : FrmTerminal::toolbar_rows()) {
        if (row.begins_group) toolbar_->addSeparator();
        ToolButton& button = f.tool_buttons[index++];
        QAction* action = toolbar_->addAction(QString());
        action->setObjectName(name_of_key(row.key));
        tool_actions_.push_back(action);
        bind(button, [&button, action] {
            action->setText(to_qstring(button.ToolTipText.get()));
            action->setToolTip(to_qstring(button.ToolTipText.get()));
            action->setCheckable(button.Pressed || action->isCheckable());
            action->setChecked(button.Pressed);
            action->setEnabled(is_usable(button, button.Click));
        });
        connect(action, &QAction::triggered, this, [this, &button] {
            later([&button] {
                if (button.Click) button.Click();
            });
        });
    }
    toolbar_->addSeparator();
    search_action_ = toolbar_->addAction(QStringLiteral("Im Terminal suchen"));
    search_action_->setObjectName(QStringLiteral("suchen"));
    search_action_->setToolTip(QStringLiteral("Im Terminal suchen (Strg+Umschalt+F)"));
    connect(search_action_, &QAction::triggered, this, [this] { search_->open(); });
    set_icons();
}

void MainWindow::set_icons() {
    std::size_t index = 0;
    for (const ToolRow& row : FrmTerminal::toolbar_rows()) {
        tool_actions_[index++]->setIcon(icon(name_of_key(row.key).toLower(), palette()));
    }
    search_action_->setIcon(icon(QStringLiteral("search"), palette()));
}

void MainWindow::build_middle() {
    FrmTerminal& f = program_.frmTerminal;
    auto* ground = new QWidget(this);
    auto* column = new QVBoxLayout(ground);
    column->setContentsMargins(space::medium, space::small, space::medium, space::small);
    column->setSpacing(space::small);

    terminal_ = new TerminalView(f.txtterm, ground);
    terminal_->setObjectName(QStringLiteral("txtterm"));
    terminal_->setAccessibleName(QStringLiteral("Terminal"));
    terminal_->key_down = [this](int keycode, int shift) {
        later([this, keycode, shift] { (void)program_.keys.key_down(keycode, shift); });
    };
    terminal_->key_press = [this](unsigned char code) {
        later([this, code] { program_.keys.Form_KeyPress(code); });
    };
    search_ = new SearchField(*terminal_, ground);
    column->addWidget(search_);

    auto* split = new QSplitter(Qt::Vertical, ground);
    split->setChildrenCollapsible(false);
    split->addWidget(terminal_);
    build_display(*split);

    split->addWidget(add_pane(f.txttest10, "txttest10", QStringLiteral("Testfenster"), *split));
    build_snapshots(*split);
    for (int i = 0; i < split->count(); ++i) split->setStretchFactor(i, i < 3 ? 3 : 2);
    column->addWidget(split, 1);

    auto* lamps = new QWidget(ground);
    lamps->setObjectName(QStringLiteral("lamps"));
    column->addWidget(lamps);
    setCentralWidget(ground);
    build_lamps();
    terminal_->setFocus();
}

// A text below the middle, shown while its control is.
TerminalView* MainWindow::add_pane(RichTextBox& text, const char* name, const QString& what,
                                   QWidget& parent) {
    auto* pane = new TerminalView(text, &parent);
    pane->setObjectName(QString::fromLatin1(name));
    pane->setAccessibleName(what);
    pane->key_down = terminal_->key_down;
    pane->key_press = terminal_->key_press;
    pane->model_changed = [&text, pane] { pane->setVisible(text.Visible); };
    pane->model_changed();
    return pane;
}

// The snapshots of the site, with the button that empties them.
void MainWindow::build_snapshots(QSplitter& middle) {
    FrmTerminal& f = program_.frmTerminal;
    auto* ground = new QWidget(&middle);
    auto* row = new QHBoxLayout(ground);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(space::medium);
    TerminalView* text =
        add_pane(f.txtsnapshot, "txtsnapshot", QStringLiteral("Festgehaltene Bildschirme"), *ground);
    row->addWidget(text, 1);
    auto* clear = new QPushButton(ground);
    clear->setObjectName(QStringLiteral("clrtxtsnap"));
    clear->setFocusPolicy(Qt::TabFocus);
    bind(f.clrtxtsnap, [&f, clear] {
        clear->setText(to_qstring(f.clrtxtsnap.Caption.get()));
        clear->setToolTip(QStringLiteral("Die festgehaltenen Bildschirme aus der Ansicht löschen"));
        clear->setVisible(f.clrtxtsnap.Visible);
    });
    connect(clear, &QPushButton::clicked, this, [this, &f] { later([&f] { f.clrtxtsnap.Click(); }); });
    row->addWidget(clear, 0, Qt::AlignTop);
    text->model_changed = [&f, ground, text] {
        text->setVisible(f.txtsnapshot.Visible);
        ground->setVisible(f.txtsnapshot.Visible);
    };
    text->model_changed();
    middle.addWidget(ground);
}

// The mirrored display, or the weekly calendar over it, in the terminal's place.
void MainWindow::build_display(QSplitter& middle) {
    FrmTerminal& f = program_.frmTerminal;
    auto* picture = new PictureView(
        f.Picture1,
        [&f] {
            // The cells of all columns and rows, and a margin around them.
            return PictureView::Extent{f.zeichenbreite * (Schirm::columns + 2),
                                       f.zeilenhoehe * (Schirm::rows + 1) + f.zeilenhoehe / 2, f.zeilenhoehe};
        },
        &middle);
    picture->setObjectName(QStringLiteral("Picture1"));
    picture->setAccessibleName(QStringLiteral("Anzeige der Regelung"));
    auto* calendar = new CalendarPane(f, &middle);
    calendar->picture().setAccessibleName(QStringLiteral("Wochenkalender"));
    middle.addWidget(picture);
    middle.addWidget(calendar);
    const auto show_middle = [this, &f, picture, calendar] {
        const bool mirrored = f.Picture1.Visible;
        const bool week = mirrored && f.picabs.Visible;
        terminal_->setVisible(f.txtterm.Visible || !mirrored);
        // A hidden display would leave the keyboard to whatever comes next.
        const QWidget* const holder = focusWidget();
        if (!mirrored && (holder == picture || holder == &calendar->picture())) terminal_->setFocus();
        picture->setVisible(mirrored && !week);
        calendar->setVisible(week);
        if (week) {
            calendar->picture().grab_keys(*terminal_);
        } else if (mirrored) {
            picture->grab_keys(*terminal_);
        }
    };
    terminal_->model_changed = show_middle;
    picture->shown_or_hidden = show_middle;
    calendar->picture().shown_or_hidden = show_middle;
    show_middle();
}

void MainWindow::build_lamps() {
    FrmTerminal& f = program_.frmTerminal;
    auto* lamps = findChild<QWidget*>(QStringLiteral("lamps"));
    auto* row = new QHBoxLayout(lamps);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(space::large);

    auto* plug = new QToolButton(lamps);
    plug->setObjectName(QStringLiteral("imgConnected"));
    plug->setAutoRaise(true);
    plug->setFocusPolicy(Qt::NoFocus);
    plug->setIconSize(QSize(20, 20));
    const auto show_plug = [this, plug, &f] {
        const bool connected = f.imgConnected.Visible;
        plug->setIcon(
            icon(connected ? QStringLiteral("connected") : QStringLiteral("notconnected"), palette()));
        plug->setToolTip(connected ? QStringLiteral("COM-Anschluß schließen")
                                   : QStringLiteral("COM-Anschluß öffnen"));
        plug->setAccessibleName(plug->toolTip());
    };
    f.imgNotConnected.on_change = show_plug;
    bind(f.imgConnected, show_plug);
    connect(plug, &QToolButton::clicked, this, [this, &f] {
        later([&f] {
            const auto& click = f.imgConnected.Visible ? f.imgConnected.Click : f.imgNotConnected.Click;
            if (click) click();
        });
    });
    row->addWidget(plug);

    const auto add = [&](Lamp& lamp, Label& label, const char* lamp_name, const char* label_name) {
        auto* view = new LampView(lamp, label, lamp_name, label_name, lamps);
        view->lamp_clicked = [this, &lamp] {
            later([&lamp] {
                if (lamp.Click) lamp.Click();
            });
        };
        view->label_clicked = [this, &label] {
            later([&label] {
                if (label.Click) label.Click();
            });
        };
        row->addWidget(view);
    };
    add(f.Picture3, f.Label2, "Picture3", "Label2");
    add(f.Picture4, f.Label3, "Picture4", "Label3");
    add(f.Picture5, f.Label4, "Picture5", "Label4");
    row->addWidget(vertical_line(lamps));
    add(f.Picture8, f.Label7, "Picture8", "Label7");
    add(f.Picture7, f.Label6, "Picture7", "Label6");
    add(f.Picture6, f.Label5, "Picture6", "Label5");

    auto* broken = new QLabel(lamps);
    broken->setObjectName(QStringLiteral("picipunterbr"));
    bind(f.picipunterbr, [broken, &f] {
        broken->setText(to_qstring(f.Label16.Caption.get()));
        broken->setVisible(f.picipunterbr.Visible);
        QPalette red = broken->palette();
        red.setColor(QPalette::WindowText, alarm(broken->palette()));
        broken->setPalette(red);
    });
    row->addWidget(broken);
    row->addStretch(1);
    for (const auto& [box, name] :
         {std::pair{&f.txtprotschreib, "txtprotschreib"}, std::pair{&f.txtprotwarn, "txtprotwarn"},
          std::pair{&f.txtbattload, "txtbattload"}}) {
        auto* label = new QLabel(lamps);
        bind_notice(*box, label, name);
        row->addWidget(label);
    }
}

void MainWindow::build_status_bar() {
    auto& panels = program_.frmTerminal.sbrStatus;
    statusBar()->setSizeGripEnabled(true);
    const auto add = [this](StatusPanel& panel, const char* name, const QString& what, int stretch) {
        auto* label = new QLabel(this);
        label->setObjectName(QString::fromLatin1(name));
        label->setToolTip(what);
        label->setAccessibleName(what);
        label->setContentsMargins(space::medium, 0, space::medium, 0);
        bind(panel, [&panel, label] { label->setText(to_qstring(panel.Text.get())); });
        statusBar()->addWidget(label, stretch);
    };
    add(panels.projekt, "projekt", QStringLiteral("Anlage"), 2);
    add(panels.Settings, "Settings", QStringLiteral("Einstellungen des COM-Anschlusses"), 2);
    add(panels.ConnectTime, "ConnectTime", QStringLiteral("Verbindungszeit"), 1);
}

void MainWindow::show_form() {
    const Form& form = program_.frmTerminal.form;
    setWindowTitle(to_qstring(form.Caption.get()));
    if (form.Visible && !placed_) {
        placed_ = true;
        setGeometry(form.Left, form.Top, form.Width, form.Height);
        showMaximized();
    }
}

void MainWindow::closeEvent(QCloseEvent* event) {
    if (program_.world.loop.ended()) return;
    event->ignore();
    later([this] { program_.start.Form_QueryUnload(); });
}

void MainWindow::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange && toolbar_ != nullptr) {
        set_icons();
        program_.frmTerminal.imgConnected.changed();
        program_.frmTerminal.picipunterbr.changed();
    }
    QMainWindow::changeEvent(event);
}

} // namespace velorn
