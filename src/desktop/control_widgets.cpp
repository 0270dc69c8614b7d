#include "desktop/control_widgets.h"

#include "desktop/bind.h"
#include "desktop/cp1252_validator.h"
#include "desktop/grounds.h"

#include <QApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>

namespace velorn {

namespace {

bool is_line_end(QChar c) { return c == u'\r' || c == u'\n'; }

} // namespace

QString one_line(const QString& text) {
    QString line = text;
    while (!line.isEmpty() && is_line_end(line.back())) line.chop(1);
    line.replace(QStringLiteral("\r\n"), QStringLiteral(" "));
    for (QChar& c : line) {
        if (is_line_end(c)) c = u' ';
    }
    return line;
}

void forget_edits(QLineEdit& edit) {
    if (!edit.isUndoAvailable() && !edit.isRedoAvailable()) return;
    const int cursor = edit.cursorPosition();
    edit.setText(edit.text());
    edit.setCursorPosition(cursor);
}

ControlWidgets::ControlWidgets(QWidget& window, std::function<void(std::function<void()>)> later)
    : window_(window), later_(std::move(later)) {}

ControlWidgets::~ControlWidgets() {
    for (Control* control : shown_) control->on_change = nullptr;
}

void ControlWidgets::ask(std::function<void()> what) const {
    later_([window = QPointer<QWidget>(&window_), what = std::move(what)] {
        if (window == nullptr || !window->isVisible()) return;
        const QWidget* const before = QApplication::activeModalWidget();
        if (before != nullptr && before != window) return;
        what();
    });
}

void ControlWidgets::show(Control& control, std::function<void()> show) {
    shown_.push_back(&control);
    bind(control, std::move(show));
}

void ControlWidgets::show_again() const {
    for (const Control* control : shown_) control->changed();
}

QPushButton* ControlWidgets::button(Button& button, const QString& name, const QString& tip,
                                    QWidget* parent) {
    auto* shown = new QPushButton(parent);
    shown->setObjectName(name);
    shown->setAutoDefault(false); // Enter belongs to the lines
    if (button.ToolTipText.get().empty()) button.ToolTipText = to_cp1252_or(tip, '?');
    show(button, [&button, shown] {
        shown->setText(to_qstring(button.Caption.get()));
        show_common(button, *shown);
        shown->setEnabled(button.Enabled && button.Click);
    });
    QObject::connect(shown, &QPushButton::clicked, shown, [this, &button] {
        ask([&button] {
            if (button.Enabled && button.Click) button.Click();
        });
    });
    return shown;
}

QLineEdit* ControlWidgets::text_box(TextBox& box, const QString& name, const QString& what,
                                    const QString& tip, QWidget* parent) {
    auto* edit = new QLineEdit(parent);
    edit->setObjectName(name);
    edit->setAccessibleName(what);
    if (box.ToolTipText.get().empty()) box.ToolTipText = to_cp1252_or(tip, '?');
    edit->setValidator(new Cp1252Validator(edit));
    show(box, [this, &box, edit] {
        const QString text = to_qstring(box.Text.get());
        if (edit->text() != text) {
            edit->setText(text);
            if (!edit->hasFocus()) edit->setCursorPosition(0); // a long text shows its beginning
        }
        set_ground(*edit, box.BackColor);
        show_common(box, *edit);
    });
    QObject::connect(edit, &QLineEdit::textEdited, edit, [&box, edit](const QString& text) {
        const QString before = to_qstring(box.Text.get());
        QString line = text;
        if (one_line(text) != text && one_line(before) == before) {
            line = one_line(text);
            const int cursor = edit->cursorPosition();
            edit->setText(line);
            edit->setCursorPosition(cursor);
        }
        if (const auto typed = to_cp1252(line)) box.Text = *typed;
    });
    return edit;
}

QCheckBox* ControlWidgets::check_box(CheckBox& box, const QString& name, const QString& tip,
                                     QWidget* parent) {
    auto* shown = new QCheckBox(parent);
    shown->setObjectName(name);
    if (box.ToolTipText.get().empty()) box.ToolTipText = to_cp1252_or(tip, '?');
    show(box, [&box, shown] {
        shown->setText(to_qstring(box.Caption.get()));
        shown->setChecked(box.Value);
        show_common(box, *shown);
    });
    QObject::connect(shown, &QCheckBox::clicked, shown, [this, &box, shown](bool on) {
        shown->setChecked(box.Value); // the tick follows the control, not the click
        ask([&box, on] { box.Value = on; });
    });
    return shown;
}

std::vector<QRadioButton*> ControlWidgets::options(OptionGroup& group, const QString& name, QWidget* parent) {
    std::vector<QRadioButton*> all;
    auto* exclusive = new QButtonGroup(parent);
    int index = 0;
    for (const std::string& caption : group.captions()) {
        auto* option = new QRadioButton(to_qstring(caption), parent);
        option->setObjectName(name + QString::number(index));
        exclusive->addButton(option, index++);
        all.push_back(option);
    }
    show(group, [&group, exclusive] {
        if (QAbstractButton* const down = exclusive->button(group.selected())) down->setChecked(true);
    });
    QObject::connect(exclusive, &QButtonGroup::idClicked, parent,
                     [this, &group](int id) { ask([&group, id] { group.select(id); }); });
    return all;
}

QLabel* ControlWidgets::label(Label& label, const QString& name, const QString& frame, QWidget* parent) {
    auto* shown = new QLabel(parent);
    shown->setObjectName(name);
    shown->setTextFormat(Qt::PlainText);
    show(label, [this, &label, shown, frame] {
        shown->setText(frame.arg(to_qstring(label.Caption.get())));
        if (label.BackColor != colour::face) shown->setAutoFillBackground(true);
        set_ground(*shown, label.BackColor);
        show_common(label, *shown);
    });
    return shown;
}

void ControlWidgets::set_ground(QWidget& widget, Colour colour) const {
    const bool box = qobject_cast<QLineEdit*>(&widget) != nullptr;
    const QPalette::ColorRole ground_role = box ? QPalette::Base : QPalette::Window;
    const QPalette::ColorRole text_role = box ? QPalette::Text : QPalette::WindowText;
    const Ground wanted = ground_of(colour, window_.palette());
    QPalette colours = widget.palette();
    if (colours.color(ground_role) == wanted.ground && colours.color(text_role) == wanted.text) return;
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
        colours.setColor(group, ground_role, wanted.ground);
        colours.setColor(group, text_role, wanted.text);
    }
    widget.setPalette(colours);
}

} // namespace velorn
