#include "desktop/qt_dialogs.h"

#include "desktop/text_rim.h"
#include "runtime/message_boxes.h"

#include <QApplication>
#include <QColorDialog>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFileDialog>
#include <QFontComboBox>
#include <QFontDatabase>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

#include <memory>

namespace velorn {

namespace {

// A dialog goes with its window if that goes first.
template <class Dialog>
struct Opened {
    QPointer<Dialog> dialog{new Dialog(QApplication::activeWindow())};
    Opened() = default;
    ~Opened() { delete dialog.data(); }
    Opened(const Opened&) = delete;
    Opened& operator=(const Opened&) = delete;
    Dialog* operator->() const { return dialog.data(); }
};

QMessageBox::Icon icon_of(int code) {
    switch (code & 0x70) {
    case 16: return QMessageBox::Critical;
    case 32: return QMessageBox::Question;
    case 48: return QMessageBox::Warning;
    case 64: return QMessageBox::Information;
    default: return QMessageBox::NoIcon;
    }
}

// "LOG-Dateien (*.LOG)|*.log;*.txt|..." as the toolkit spells it: "LOG-Dateien (*.LOG) (*.log *.txt)".
QStringList name_filters(const std::string& filter) {
    const QStringList parts = to_qstring(filter).split(QLatin1Char('|'));
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        QStringList patterns = parts[i + 1].split(QLatin1Char(';'), Qt::SkipEmptyParts);
        for (QString& pattern : patterns) {
            pattern = pattern.trimmed();
            if (pattern == QLatin1String("*.*")) pattern = QStringLiteral("*"); // names without a point too
        }
        filters << parts[i] + QLatin1String(" (") + patterns.join(QLatin1Char(' ')) + QLatin1Char(')');
    }
    return filters;
}

QString qstring_of(const std::filesystem::path& path) { return QString::fromStdU16String(path.u16string()); }

} // namespace

bool QtDialogs::show(QDialog& dialog) {
    const QPointer<QDialog> alive(&dialog);
    const auto finished = std::make_shared<bool>(false);
    QObject::connect(&dialog, &QDialog::finished, [finished] { *finished = true; });
    dialog.setWindowModality(dialog.parentWidget() ? Qt::WindowModal : Qt::ApplicationModal);
    dialog.show();
    dialog.raise();
    dialog.activateWindow();
    const bool going_on = loop_.wait_until([&] { return *finished || !alive; });
    return going_on && alive;
}

Answer QtDialogs::box(int seconds, std::string_view text, int code, std::string_view title) {
    Opened<QMessageBox> box;
    box->setObjectName(QStringLiteral("message_box"));
    box->setWindowTitle(to_qstring(title));
    box->setTextFormat(Qt::PlainText);
    box->setText(to_qstring(text));
    box->setIcon(icon_of(code));
    std::vector<std::pair<QAbstractButton*, Answer>> answers;
    for (const BoxButton& button : buttons_of(code)) {
        // One role for all: the toolkit would sort them by role.
        QPushButton* const push = box->addButton(to_qstring(button.text), QMessageBox::ActionRole);
        push->setAutoDefault(true);
        if (answers.empty()) box->setDefaultButton(push);
        if (button.answer == cancelling_answer(code)) box->setEscapeButton(push);
        answers.emplace_back(push, button.answer);
    }
    EventLoop::TaskId alarm;
    if (seconds > 0) {
        alarm = loop_.post_at(loop_.now_ms() + std::int64_t{1000} * seconds, [dialog = box.dialog] {
            if (dialog) dialog->reject();
        });
    }
    const bool answered = show(*box.dialog);
    loop_.cancel(alarm);
    if (answered) {
        for (const auto& [push, answer] : answers) {
            if (box->clickedButton() == push) return answer;
        }
    }
    return cancelling_answer(code);
}

Answer QtDialogs::message_box(std::string_view text, int code, std::string_view title) {
    return box(0, text, code, title);
}

Answer QtDialogs::message_box_for(int seconds, std::string_view text, int code) {
    return box(seconds, text, code, "Velorn");
}

std::optional<std::string> QtDialogs::input_box(std::string_view prompt, std::string_view title,
                                                std::string_view proposal) {
    for (QString text = to_qstring(proposal);;) {
        Opened<QDialog> dialog;
        dialog->setObjectName(QStringLiteral("input_box"));
        dialog->setWindowTitle(to_qstring(title));
        dialog->setMinimumWidth(360);
        auto* const label = new QLabel(dialog.dialog);
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        label->setText(to_qstring(prompt));
        auto* const line = new QLineEdit(text, dialog.dialog);
        line->setObjectName(QStringLiteral("text"));
        line->selectAll();
        label->setBuddy(line);
        auto* const buttons = new QDialogButtonBox(dialog.dialog);
        QPushButton* const ok = buttons->addButton(to_qstring("OK"), QDialogButtonBox::AcceptRole);
        ok->setDefault(true);
        buttons->addButton(to_qstring("Abbrechen"), QDialogButtonBox::RejectRole);
        QObject::connect(buttons, &QDialogButtonBox::accepted, dialog.dialog, &QDialog::accept);
        QObject::connect(buttons, &QDialogButtonBox::rejected, dialog.dialog, &QDialog::reject);
        auto* const column = new QVBoxLayout(dialog.dialog);
        column->addWidget(label);
        column->addWidget(line);
        column->addWidget(buttons);
        line->setFocus();

        if (!show(*dialog.dialog) || dialog->result() != QDialog::Accepted) return std::nullopt;
        if (auto stored = to_cp1252(line->text())) return stored;
        text = line->text();
        message_box("Der Text enthält Zeichen, die Velorn nicht speichern kann. Bitte ohne sie eingeben."_w,
                    48);
    }
}

Result<std::string> QtDialogs::choose_file(const FileQuestion& question) {
    QString folder = question.folder.empty() ? QString() : qstring_of(paths_.native(question.folder));
    for (QString name = to_qstring(question.name);;) {
        Opened<QFileDialog> dialog;
        dialog->setObjectName(QStringLiteral("file_dialog"));
        dialog->setWindowTitle(to_qstring(question.title));
        // Without the toolkit's own questions (delete, rename, replace): they would stop the event loop.
        dialog->setOptions(QFileDialog::DontUseNativeDialog | QFileDialog::ReadOnly |
                           QFileDialog::DontConfirmOverwrite | QFileDialog::HideNameFilterDetails);
        dialog->setFileMode(QFileDialog::AnyFile);
        dialog->setAcceptMode(question.saving ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
        dialog->setLabelText(QFileDialog::LookIn, to_qstring("Ordner:"));
        dialog->setLabelText(QFileDialog::FileName, to_qstring("Dateiname:"));
        dialog->setLabelText(QFileDialog::FileType, to_qstring("Dateityp:"));
        dialog->setLabelText(QFileDialog::Accept, to_qstring(question.saving ? "Speichern"_w : "Öffnen"_w));
        dialog->setLabelText(QFileDialog::Reject, to_qstring("Abbrechen"));
        if (!question.filter.empty()) dialog->setNameFilters(name_filters(question.filter));
        if (!folder.isEmpty()) dialog->setDirectory(folder);
        if (!name.isEmpty()) dialog->selectFile(name);

        if (!show(*dialog.dialog) || dialog->result() != QDialog::Accepted) {
            return failure(RunTimeError::dialog_cancelled);
        }
        const QStringList chosen = dialog->selectedFiles();
        if (chosen.isEmpty()) return failure(RunTimeError::dialog_cancelled);
        if (auto stored = Paths::stored(std::filesystem::path(chosen.front().toStdU16String())))
            return *stored;
        folder = dialog->directory().absolutePath();
        name.clear();
        message_box("Der Name enthält Zeichen, die Velorn nicht speichern kann. "
                    "Bitte eine Datei mit einem anderen Namen oder Ordner wählen."_w,
                    48);
    }
}

Result<FontChoice> QtDialogs::choose_font(const FontChoice& proposal) {
    Opened<QDialog> dialog;
    dialog->setObjectName(QStringLiteral("font_dialog"));
    dialog->setWindowTitle(to_qstring("Zeichensatz wählen"_w));
    auto* const family = new QFontComboBox(dialog.dialog);
    family->setObjectName(QStringLiteral("family"));
    family->setEditable(false);
    family->setFontFilters(QFontComboBox::MonospacedFonts | QFontComboBox::ScalableFonts);
    if (const QString name = to_qstring(proposal.name); QFontDatabase::hasFamily(name)) {
        family->setCurrentFont(QFont(name));
    } else {
        family->setCurrentFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    }
    auto* const size = new QDoubleSpinBox(dialog.dialog);
    size->setObjectName(QStringLiteral("size"));
    size->setLocale(QLocale(QLocale::German));
    size->setRange(3, 72);
    size->setDecimals(1);
    size->setSuffix(to_qstring(" Punkt"));
    size->setValue(proposal.points);
    auto* const sample = new QLabel(to_qstring("Vorlauf 74,3 °C  Rücklauf 58,1 °C"_w), dialog.dialog);
    sample->setObjectName(QStringLiteral("sample"));
    sample->setFrameShape(QFrame::StyledPanel);
    sample->setAlignment(Qt::AlignCenter);
    sample->setMinimumSize(420, 72);
    const auto show_sample = [=] {
        QFont font = family->currentFont();
        font.setPointSizeF(std::min(size->value(), 24.0)); // larger ones would burst the dialog
        sample->setFont(font);
    };
    QObject::connect(family, &QFontComboBox::currentFontChanged, sample, show_sample);
    QObject::connect(size, &QDoubleSpinBox::valueChanged, sample, show_sample);
    show_sample();
    auto* const buttons = new QDialogButtonBox(dialog.dialog);
    buttons->addButton(to_qstring("OK"), QDialogButtonBox::AcceptRole)->setDefault(true);
    buttons->addButton(to_qstring("Abbrechen"), QDialogButtonBox::RejectRole);
    QObject::connect(buttons, &QDialogButtonBox::accepted, dialog.dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, dialog.dialog, &QDialog::reject);
    auto* const form = new QFormLayout;
    form->addRow(to_qstring("&Schriftart:"), family);
    form->addRow(to_qstring("S&chriftgrad:"), size);
    auto* const column = new QVBoxLayout(dialog.dialog);
    column->addLayout(form);
    column->addWidget(sample, 1);
    column->addWidget(buttons);

    if (!show(*dialog.dialog) || dialog->result() != QDialog::Accepted)
        return failure(RunTimeError::dialog_cancelled);
    const auto name = to_cp1252(family->currentFont().family());
    return FontChoice{name ? *name : proposal.name, size->value()};
}

Result<Colour> QtDialogs::choose_colour(Colour proposal) {
    Opened<QColorDialog> dialog;
    dialog->setObjectName(QStringLiteral("colour_dialog"));
    dialog->setWindowTitle(to_qstring("Farbe auswählen"_w));
    dialog->setOption(QColorDialog::DontUseNativeDialog);
    dialog->setCurrentColor(to_qcolor(proposal));
    if (!show(*dialog.dialog) || dialog->result() != QDialog::Accepted)
        return failure(RunTimeError::dialog_cancelled);
    return to_colour(dialog->selectedColor());
}

} // namespace velorn
