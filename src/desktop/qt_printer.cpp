#include "desktop/qt_printer.h"

#include "desktop/page_canvas.h"
#include "desktop/text_rim.h"

#include <QApplication>
#include <QFile>
#include <QFontDatabase>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
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

// The toolkit prints into a file that can't be written without a word.
Outcome file_of(const QPrinter& device) {
    const QString file = device.outputFileName();
    if (!file.isEmpty() && !QFile(file).open(QIODevice::WriteOnly | QIODevice::Append))
        return failure(RunTimeError::path_file_access, to_cp1252_or(file, '?'));
    return {};
}

} // namespace

bool QtPrinter::chosen(QPrinter& device) {
    const Opened opened{new QPrintDialog(&device, QApplication::activeWindow())};
    const QPointer<QPrintDialog>& dialog = opened.dialog;
    const auto finished = std::make_shared<bool>(false);
    QObject::connect(dialog, &QDialog::finished, [finished] { *finished = true; });
    dialog->setWindowModality(dialog->parentWidget() ? Qt::WindowModal : Qt::ApplicationModal);
    dialog->show();
    const bool going_on = loop_.wait_until([&] { return *finished || !dialog; });
    return going_on && dialog && dialog->result() == QDialog::Accepted;
}

Outcome QtPrinter::print_text(std::string_view text, std::string_view title) {
    QPrinter printer(QPrinter::HighResolution);
    if (!chosen(printer)) return failure(RunTimeError::dialog_cancelled);
    return print_on(printer, text, title);
}

Outcome QtPrinter::print_on(QPrinter& device, std::string_view text, std::string_view title) {
    device.setDocName(to_qstring(title));
    if (Outcome writable = file_of(device); !writable.ok()) return writable;
    QTextDocument document;
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSizeF(text_points);
    document.setDefaultFont(font);
    document.setPlainText(to_qstring(text));
    document.print(&device);
    if (device.printerState() == QPrinter::Error) return failure(RunTimeError::device_io);
    return {};
}

Outcome QtPrinter::print_page(std::string_view title, const std::function<void(Canvas&)>& draw) {
    QPrinter printer(QPrinter::HighResolution);
    printer.setPageSize(QPageSize(QPageSize::A4));
    printer.setPageOrientation(QPageLayout::Portrait);
    if (!chosen(printer)) return failure(RunTimeError::dialog_cancelled);
    return print_page_on(printer, title, draw);
}

Outcome QtPrinter::print_page_on(QPrinter& device, std::string_view title,
                                 const std::function<void(Canvas&)>& draw) {
    device.setDocName(to_qstring(title));
    device.setFullPage(true);
    if (Outcome writable = file_of(device); !writable.ok()) return writable;
    QPainter painter;
    if (!painter.begin(&device)) return failure(RunTimeError::device_io);
    {
        PageCanvas page(painter);
        draw(page);
    }
    if (!painter.end() || device.printerState() == QPrinter::Error) return failure(RunTimeError::device_io);
    return {};
}

} // namespace velorn
