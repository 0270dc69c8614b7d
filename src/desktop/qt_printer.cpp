#include "desktop/qt_printer.h"

#include "desktop/text_rim.h"

#include <QApplication>
#include <QFile>
#include <QFontDatabase>
#include <QPointer>
#include <QPrintDialog>
#include <QPrinter>
#include <QTextDocument>

#include <memory>

namespace velorn {

namespace {

constexpr double text_points = 9; // 88 columns on a portrait page

// It goes with its window if that goes first.
struct Opened {
    QPointer<QPrintDialog> dialog;
    explicit Opened(QPrintDialog* made) : dialog(made) {}
    ~Opened() { delete dialog.data(); }
    Opened(const Opened&) = delete;
    Opened& operator=(const Opened&) = delete;
};

} // namespace

Outcome QtPrinter::print_text(std::string_view text, std::string_view title) {
    QPrinter printer(QPrinter::HighResolution);
    const Opened opened{new QPrintDialog(&printer, QApplication::activeWindow())};
    const QPointer<QPrintDialog>& dialog = opened.dialog;
    const auto finished = std::make_shared<bool>(false);
    QObject::connect(dialog, &QDialog::finished, [finished] { *finished = true; });
    dialog->setWindowModality(dialog->parentWidget() ? Qt::WindowModal : Qt::ApplicationModal);
    dialog->show();
    const bool going_on = loop_.wait_until([&] { return *finished || !dialog; });
    if (!going_on || !dialog || dialog->result() != QDialog::Accepted) {
        return failure(RunTimeError::dialog_cancelled);
    }
    return print_on(printer, text, title);
}

Outcome QtPrinter::print_on(QPrinter& device, std::string_view text, std::string_view title) {
    device.setDocName(to_qstring(title));
    // The toolkit prints into a file that can't be written without a word.
    if (const QString file = device.outputFileName();
        !file.isEmpty() && !QFile(file).open(QIODevice::WriteOnly | QIODevice::Append))
        return failure(RunTimeError::path_file_access, to_cp1252_or(file, '?'));
    QTextDocument document;
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSizeF(text_points);
    document.setDefaultFont(font);
    document.setPlainText(to_qstring(text));
    document.print(&device);
    if (device.printerState() == QPrinter::Error) return failure(RunTimeError::device_io);
    return {};
}

} // namespace velorn
