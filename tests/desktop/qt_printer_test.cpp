#include "desktop/qt_printer.h"
#include "runtime/canvas.h"

#include <QFile>
#include <QPrinter>
#include <QTemporaryDir>

#include <functional>
#include <gtest/gtest.h>

namespace velorn::test {

namespace {

// The content of a PDF file that something was printed into.
QByteArray pdf_of(const std::function<Outcome(QPrinter&)>& print) {
    const QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("druck.pdf"));
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(name);
    EXPECT_TRUE(print(printer).ok());
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray pdf_of(std::string_view text) {
    return pdf_of([text](QPrinter& on) { return QtPrinter::print_on(on, text, "Displayaufnahmen"); });
}

QByteArray page_of(const std::function<void(Canvas&)>& draw) {
    return pdf_of([&draw](QPrinter& on) { return QtPrinter::print_page_on(on, "Heizung", draw); });
}

qsizetype pages_of(const QByteArray& pdf) { return pdf.count("/Type /Page\n") + pdf.count("/Type /Page "); }

} // namespace

TEST(QtPrinter, printsATextIntoAPdfFile) {
    const QByteArray pdf = pdf_of("  Vorlauf 74,3 \xb0"
                                  "C\r\n");
    EXPECT_TRUE(pdf.startsWith("%PDF"));
    EXPECT_EQ(pages_of(pdf), 1);
}

TEST(QtPrinter, tellsAFileThatCantBeWritten) {
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(QStringLiteral("/gibt/es/nicht/druck.pdf"));
    const Outcome printed = QtPrinter::print_on(printer, "text", "Titel");
    ASSERT_FALSE(printed.ok());
    EXPECT_TRUE(printed.failure().is(RunTimeError::path_file_access));
}

TEST(QtPrinter, takesAsManyPagesAsTheTextNeeds) {
    std::string text;
    for (int line = 0; line < 300; ++line) text += "Zeile " + std::to_string(line) + "\r\n";
    const qsizetype pages = pages_of(pdf_of(text));
    EXPECT_GT(pages, 2);
    EXPECT_LT(pages, 10);
}

TEST(QtPrinter, printsADrawingOnOnePage) {
    int drawn = 0;
    const QByteArray pdf = page_of([&drawn](Canvas& page) {
        ++drawn;
        page.line(1000, 1000, 10000, 9000, colour::blue);
        page.box(1000, 9500, 2000, 9600, colour::red);
        page.text(1000, 500,
                  "Vorlauf in \xb0"
                  "C",
                  {.name = "", .points = 10, .proportional = true}, colour::black);
    });
    EXPECT_EQ(drawn, 1);
    EXPECT_EQ(pages_of(pdf), 1);
    EXPECT_GT(pdf.size(), page_of([](Canvas&) {}).size());
}

TEST(QtPrinter, drawsNothingIntoAFileThatCantBeWritten) {
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(QStringLiteral("/gibt/es/nicht/druck.pdf"));
    const Outcome printed =
        QtPrinter::print_page_on(printer, "Titel", [](Canvas&) { ADD_FAILURE() << "was asked to draw"; });
    ASSERT_FALSE(printed.ok());
    EXPECT_TRUE(printed.failure().is(RunTimeError::path_file_access));
}

} // namespace velorn::test
