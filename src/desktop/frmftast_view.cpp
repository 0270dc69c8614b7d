#include "desktop/frmftast_view.h"

#include "desktop/bind.h"
#include "desktop/cp1252_validator.h"
#include "desktop/style.h"

#include <QCloseEvent>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace velorn {

FrmftastView::FrmftastView(Frmftast& frmftast, std::function<void(std::function<void()>)> later,
                           QWidget* owner)
    : QDialog(owner), frmftast_(frmftast), later_(std::move(later)) {
    setObjectName(QStringLiteral("frmftast"));
    setModal(true);
    frmftast_.form.on_change = [this] { show_form(); };
}

FrmftastView::~FrmftastView() {
    unbind(frmftast_.form, frmftast_.cmdOK, frmftast_.cmdCancel);
    for (std::size_t i = 1; i <= 12; ++i) unbind(frmftast_.ftast[i], frmftast_.altftast[i]);
}

void FrmftastView::show_form() {
    if (!frmftast_.form.Visible) {
        hide();
        return;
    }
    if (!built_) build();
    setWindowTitle(to_qstring(frmftast_.form.Caption.get()));
    if (isVisible()) return;
    open();
    findChild<QLineEdit*>(QStringLiteral("ftast1"))->setFocus();
}

void FrmftastView::build() {
    built_ = true;
    auto* column = new QVBoxLayout(this);
    column->setSpacing(space::large);
    auto* hint = new QLabel(
        QStringLiteral("<01> am Anfang weckt den Regler (SOH), <13> am Ende schickt die Zeile ab (CR)."),
        this);
    hint->setWordWrap(true);
    column->addWidget(hint);

    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(space::medium);
    grid->setVerticalSpacing(space::small);
    grid->addWidget(new QLabel(QStringLiteral("Taste allein"), this), 0, 1);
    grid->addWidget(new QLabel(QStringLiteral("mit Strg"), this), 0, 2);
    // Down one column, then down the other.
    QWidget* last = nullptr;
    for (int i = 1; i <= 12; ++i) {
        grid->addWidget(new QLabel(QStringLiteral("F%1").arg(i), this), i, 0);
        QLineEdit* edit = add_box(grid, frmftast_.ftast[static_cast<std::size_t>(i)], i, 1,
                                  QStringLiteral("ftast%1").arg(i), QStringLiteral("F%1").arg(i));
        if (last != nullptr) setTabOrder(last, edit);
        last = edit;
    }
    for (int i = 1; i <= 12; ++i) {
        QLineEdit* edit = add_box(grid, frmftast_.altftast[static_cast<std::size_t>(i)], i, 2,
                                  QStringLiteral("altftast%1").arg(i), QStringLiteral("Strg+F%1").arg(i));
        setTabOrder(last, edit);
        last = edit;
    }
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(2, 1);
    column->addLayout(grid);
    column->addStretch(1);

    auto* buttons = new QDialogButtonBox(this);
    auto* ok = buttons->addButton(to_qstring(frmftast_.cmdOK.Caption.get()), QDialogButtonBox::AcceptRole);
    auto* cancel =
        buttons->addButton(to_qstring(frmftast_.cmdCancel.Caption.get()), QDialogButtonBox::RejectRole);
    ok->setObjectName(QStringLiteral("cmdOK"));
    cancel->setObjectName(QStringLiteral("cmdCancel"));
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, [this] { later_([this] { frmftast_.cmdOK_Click(); }); });
    connect(cancel, &QPushButton::clicked, this, [this] { later_([this] { frmftast_.cmdCancel_Click(); }); });
    column->addWidget(buttons);
    setMinimumSize(620, sizeHint().height());
    resize(frmftast_.form.Width, sizeHint().height());
}

QLineEdit* FrmftastView::add_box(QGridLayout* grid, TextBox& box, int row, int column, const QString& name,
                                 const QString& what) {
    auto* edit = new QLineEdit(this);
    edit->setObjectName(name);
    edit->setAccessibleName(what);
    edit->setToolTip(QStringLiteral("Text, den %1 sendet").arg(what));
    edit->setValidator(new Cp1252Validator(edit));
    edit->installEventFilter(this);
    bind(box, [this, &box, edit] {
        const QString text = to_qstring(box.Text.get());
        if (edit->text() != text) edit->setText(text);
        QPalette colours = palette();
        if (box.BackColor != colour::white) {
            colours.setColor(QPalette::Base, to_qcolor(box.BackColor));
            colours.setColor(QPalette::Text, Qt::black);
        }
        edit->setPalette(colours);
    });
    connect(edit, &QLineEdit::textEdited, this, [&box](const QString& text) {
        if (const auto typed = to_cp1252(text)) box.Text = *typed;
    });
    grid->addWidget(edit, row, column);
    return edit;
}

bool FrmftastView::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusIn) {
        for (std::size_t i = 1; i <= 12; ++i) {
            if (watched->objectName() == QStringLiteral("ftast%1").arg(i)) frmftast_.ftast[i].GotFocus();
            if (watched->objectName() == QStringLiteral("altftast%1").arg(i))
                frmftast_.altftast[i].GotFocus();
        }
    }
    return QDialog::eventFilter(watched, event);
}

void FrmftastView::closeEvent(QCloseEvent* event) {
    event->ignore();
    reject();
}

void FrmftastView::reject() {
    later_([this] { frmftast_.cmdCancel_Click(); });
}

} // namespace velorn
