// The export as a text with semicolons, byte for byte.
#include "phonebook/open_book.h"
#include "runtime/text.h"

#include <gtest/gtest.h>

namespace velorn::test {

namespace {

constexpr const char* telefon_txt = "c:\\Daten\\Datencsv\\telefon.txt";
constexpr const char* head = "Projektname;Nummer;Bemerkung;Visualisierung;1/4h-Auswertung\n\n\n\n";

std::string blank_lines(int count) {
    std::string lines;
    for (int i = 0; i < count; ++i) lines += ";;;0;0;\n";
    return lines;
}

struct Exporting : OpenBook {
    std::string exported() {
        open();
        f.Command8.Click();
        return files.content(telefon_txt);
    }
};

} // namespace

TEST(PhonebookExport, anEmptyBookGives401BlankLines) {
    Exporting p;
    EXPECT_EQ(p.exported(), head + blank_lines(401));
}

TEST(PhonebookExport, aLineIsNameNumberRemarkAndTwoFlags) {
    Exporting p;
    p.book[0].name = "Südstadt"_w;
    p.book[0].nummer = "0555,1";
    p.book[0].bemerkung = "9600; port23";
    p.book[0].visdatei = "c:\\vis.exe";
    p.book[0].viertdatei = "c:\\archiv.dat";
    p.book[400].name = "letzte";
    p.book[401].name = "nicht mehr dabei";
    EXPECT_EQ(p.exported(), head + std::string("Südstadt;0555,1;9600; port23;1;1;\n"_w) + blank_lines(399) +
                                "letzte;;;0;0;\n");
}

TEST(PhonebookExport, theVisualisationIsFoundInAnyCaseTheArchiveInSmallLettersOnly) {
    Exporting p;
    p.book[0].visdatei = "C:\\TOOL.EXE";
    p.book[0].viertdatei = "C:\\ARCHIV.DAT";
    p.book[1].visdatei = "c:\\tool.exe.bak";
    p.book[1].viertdatei = "c:\\a.data";
    p.book[2].visdatei = "c:\\exe";
    p.book[2].viertdatei = Null{};
    EXPECT_EQ(p.exported(), head + std::string(";;;1;0;\n;;;1;1;\n;;;0;0;\n") + blank_lines(398));
}

TEST(PhonebookExport, aLongerOldFileKeepsItsTail) {
    Exporting p;
    p.files.set_content(telefon_txt, std::string(5000, 'x'));
    const std::string fresh = head + blank_lines(401);
    EXPECT_EQ(p.exported(), fresh + std::string(5000 - fresh.size(), 'x'));
}

TEST(PhonebookExport, aFileThatCannotBeOpenedShowsItsErrorAndStays) {
    Exporting p;
    p.files.set_content(telefon_txt, "alt");
    p.files.make_read_only(telefon_txt);
    p.dialogs.expect("Zugriff verweigert", 48, Answer::ok);
    EXPECT_EQ(p.exported(), "alt");
}

} // namespace velorn::test
