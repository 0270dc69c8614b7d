#include "desktop/frm_properties_view.h"

#include "desktop/bind.h"
#include "desktop/style.h"

#include <QButtonGroup>
#include <QCloseEvent>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace velorn {

namespace {

// Ports that are there stand out from the rest of the list.
QString shown(const ComboBox::Item& item) {
    const QString text = to_qstring(item.text);
    return item.note.empty() ? text : text + QStringLiteral("   ") + to_qstring(item.note);
}

} // namespace

FrmPropertiesView::FrmPropertiesView(FrmProperties& frmProperties,
                                     std::function<void(std::function<void()>)> later, QWidget* owner)
    : QDialog(owner), frmProperties_(frmProperties), later_(std::move(later)) {
    setObjectName(QStringLiteral("frmProperties"));
    setModal(true);
    frmProperties_.form.on_change = [this] { show_form(); };
}

FrmPropertiesView::~FrmPropertiesView() {
    unbind(frmProperties_.form, frmProperties_.cboPort, frmProperties_.cboSpeed, frmProperties_.cboDataBits,
           frmProperties_.cboParity, frmProperties_.cboStopBits, frmProperties_.optFlow,
           frmProperties_.optEcho);
}

void FrmPropertiesView::show_form() {
    if (!frmProperties_.form.Visible) {
        hide();
        return;
    }
    if (!built_) build();
    setWindowTitle(to_qstring(frmProperties_.form.Caption.get()));
    if (isVisible()) return;
    open();
    findChild<QComboBox*>(QStringLiteral("cboPort"))->setFocus();
}

void FrmPropertiesView::build() {
    built_ = true;
    auto* form = new QFormLayout;
    form->setHorizontalSpacing(space::large);
    form->setVerticalSpacing(space::medium);
    form->addRow(QStringLiteral("&Anschluß:"),
                 list(frmProperties_.cboPort, "cboPort",
                      QStringLiteral("Anschlüsse, die es gerade gibt, tragen den Namen ihres Adapters")));
    form->addRow(QStringLiteral("&Geschwindigkeit:"),
                 list(frmProperties_.cboSpeed, "cboSpeed",
                      QStringLiteral("Baud; auch andere Werte können eingegeben werden")));
    form->addRow(QStringLiteral("&Datenbits:"),
                 list(frmProperties_.cboDataBits, "cboDataBits", QStringLiteral("Bits je Zeichen")));
    form->addRow(QStringLiteral("&Parität:"), list(frmProperties_.cboParity, "cboParity",
                                                   QStringLiteral("Prüfbit je Zeichen; None: keines")));
    form->addRow(QStringLiteral("&Stopbits:"),
                 list(frmProperties_.cboStopBits, "cboStopBits", QStringLiteral("1.5 nur mit 5 Datenbits")));

    auto* buttons = new QDialogButtonBox(this);
    auto* ok =
        buttons->addButton(to_qstring(frmProperties_.cmdOK.Caption.get()), QDialogButtonBox::AcceptRole);
    auto* cancel =
        buttons->addButton(to_qstring(frmProperties_.cmdCancel.Caption.get()), QDialogButtonBox::RejectRole);
    ok->setObjectName(QStringLiteral("cmdOK"));
    cancel->setObjectName(QStringLiteral("cmdCancel"));
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, [this] { later_([this] { frmProperties_.cmdOK_Click(); }); });
    connect(cancel, &QPushButton::clicked, this,
            [this] { later_([this] { frmProperties_.cmdCancel_Click(); }); });

    auto* column = new QVBoxLayout(this);
    column->setSpacing(space::large);
    column->addLayout(form);
    column->addWidget(options(frmProperties_.optFlow, "optFlow", QStringLiteral("Flußsteuerung")));
    column->addWidget(options(frmProperties_.optEcho, "optEcho", QStringLiteral("Echo")));
    column->addStretch(1);
    column->addWidget(buttons);
    setMinimumWidth(frmProperties_.form.Width);
}

QComboBox* FrmPropertiesView::list(ComboBox& box, const char* name, const QString& tip) {
    auto* view = new QComboBox(this);
    view->setObjectName(QString::fromLatin1(name));
    view->setToolTip(tip);
    view->setEditable(box.editable());
    view->setInsertPolicy(QComboBox::NoInsert);
    bind(box, [&box, view] {
        const QSignalBlocker quiet(view);
        if (view->count() != static_cast<int>(box.List().size())) view->clear();
        for (std::size_t i = 0; i < box.List().size(); ++i) {
            const auto index = static_cast<int>(i);
            const QString text = shown(box.List()[i]);
            if (index >= view->count()) view->addItem(text);
            view->setItemText(index, text);
            QFont font = view->font();
            font.setBold(!box.List()[i].note.empty());
            view->setItemData(index, font, Qt::FontRole);
        }
        view->setCurrentIndex(box.ListIndex());
        if (box.editable() && box.ListIndex() < 0) view->setEditText(to_qstring(box.Text()));
    });
    connect(view, &QComboBox::activated, this, [&box](int index) { box.set_ListIndex(index); });
    if (box.editable()) {
        connect(view, &QComboBox::editTextChanged, this, [&box](const QString& text) {
            if (const auto typed = to_cp1252(text); typed && *typed != box.Text()) box.set_Text(*typed);
        });
    }
    return view;
}

QGroupBox* FrmPropertiesView::options(OptionGroup& group, const char* name, const QString& title) {
    auto* frame = new QGroupBox(title, this);
    auto* row = new QHBoxLayout(frame);
    auto* exclusive = new QButtonGroup(frame);
    int index = 0;
    for (const std::string& caption : group.captions()) {
        auto* button = new QRadioButton(to_qstring(caption), frame);
        button->setObjectName(QString::fromLatin1(name) + QString::number(index));
        exclusive->addButton(button, index++);
        row->addWidget(button);
    }
    row->addStretch(1);
    bind(group, [&group, exclusive] {
        if (QAbstractButton* const down = exclusive->button(group.selected())) down->setChecked(true);
    });
    connect(exclusive, &QButtonGroup::idClicked, this, [&group](int id) { group.select(id); });
    return frame;
}

void FrmPropertiesView::closeEvent(QCloseEvent* event) {
    event->ignore();
    reject();
}

void FrmPropertiesView::reject() {
    later_([this] { frmProperties_.cmdCancel_Click(); });
}

} // namespace velorn
