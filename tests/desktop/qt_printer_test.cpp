#include "desktop/qt_printer.h"

#include <QFile>
#include <QPrinter>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace velorn::test {

namespace {

// The content of a PDF file that the text was printed into.
QByteArray pdf_of(std::string_view text) {
    const QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("druck.pdf"));
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(name);
    EXPECT_TRUE(QtPrinter::print_on(printer, text, "Displayaufnahmen").ok());
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
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

} // namespace velorn::test
