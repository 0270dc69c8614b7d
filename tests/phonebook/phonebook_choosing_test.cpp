// Choosing a file for the changing column of a line.
#include "phonebook/book_bytes.h"
#include "phonebook/open_book.h"
#include "runtime/text.h"

#include <gtest/gtest.h>

namespace velorn::test {

namespace {

struct MarkedBook : OpenBook {
    MarkedBook() { open(marked_file()); }
    int buttons_shown() {
        int shown = 0;
        for (const PhoneLine& each : f.zeilen) shown += each.Comausw.Visible ? 1 : 0;
        return shown;
    }
};

// The wall clock shows 15.11.2026 at the start.
const std::string first_line = hex({8, 0, 28, 0}) + "neu angelegt am:  15.11.2026" + "\r\n";

} // namespace

TEST(PhonebookChoosing, theButtonIsShownInGroups2To4WhenTheColumnGetsTheFocus) {
    MarkedBook p;
    EXPECT_EQ(p.buttons_shown(), 0);
    for (const int group : {1, 2, 3, 4}) {
        p.f.HScroll1.set_Value(group);
        EXPECT_EQ(p.buttons_shown(), 0) << "a refresh hides them";
        p.line(5).nam1.GotFocus();
        EXPECT_EQ(p.buttons_shown(), 0);
        p.line(5).txtversch.GotFocus();
        EXPECT_EQ(p.line(5).Comausw.Visible.get(), group > 1);
        EXPECT_EQ(p.buttons_shown(), group > 1 ? 1 : 0);
    }
}

TEST(PhonebookChoosing, aButtonStaysUntilARefreshHidesAllTen) {
    MarkedBook p;
    p.f.HScroll1.set_Value(2);
    p.line(5).txtversch.GotFocus();
    p.line(6).txtversch.GotFocus();
    p.click(7);
    EXPECT_EQ(p.buttons_shown(), 2);
    p.f.VScroll1.set_Value(1);
    EXPECT_EQ(p.buttons_shown(), 0);
}

TEST(PhonebookChoosing, theDialogBeginsAtThePresentPath) {
    MarkedBook p;
    const std::string titles[] = {"", "kann nicht angehen", std::string("Protokolldatei auswählen"_w),
                                  std::string("Visualisierungsdatei auswählen"_w),
                                  std::string("1/4h Datei auswählen"_w)};
    const char* folders[] = {"", "", "c:\\prot", "c:\\vis", "d:\\viertel"};
    const char* names[] = {"", "Bemerkung 4", "4.txt", "4.exe", "4.dat"};
    for (const int group : {1, 2, 3, 4}) {
        const auto i = static_cast<std::size_t>(group);
        p.f.HScroll1.set_Value(group);
        p.dialogs.expect_file(titles[i], failure(RunTimeError::dialog_cancelled));
        p.line(4).Comausw.Click();
        EXPECT_EQ(p.dialogs.last_question.filter, "Alle Dateien (*.*)|*.*");
        EXPECT_EQ(p.dialogs.last_question.folder, folders[i]);
        EXPECT_EQ(p.dialogs.last_question.name, names[i]);
        EXPECT_TRUE(p.dialogs.last_question.saving);
    }
    EXPECT_EQ(difference(p.book, marked_book()), "") << "all of them were called off";
}

TEST(PhonebookChoosing, aNewProtocolFileGetsItsFirstLineWithTagAndLength) {
    MarkedBook p;
    p.f.HScroll1.set_Value(2);
    p.click(4);
    p.dialogs.expect_file(std::string("Protokolldatei auswählen"_w), std::string("d:\\neu.txt"));
    p.line(4).Comausw.Click();
    EXPECT_EQ(p.files.content("d:\\neu.txt"), first_line);
    EXPECT_EQ(p.book[4].protdatei.text(), "d:\\neu.txt");
    EXPECT_EQ(p.line(4).txtversch.Text.get(), "d:\\neu.txt");
    EXPECT_TRUE(p.module1.protokollan);
}

TEST(PhonebookChoosing, anEmptyProtocolFileGetsItAsWellOneWithContentStays) {
    MarkedBook p;
    p.f.HScroll1.set_Value(2);
    for (const auto& [before, after] : {std::pair<std::string, std::string>{"", first_line}, {"a", "a"}}) {
        p.files.set_content("d:\\da.txt", before);
        p.dialogs.expect_file(std::string("Protokolldatei auswählen"_w), std::string("d:\\da.txt"));
        p.line(0).Comausw.Click();
        EXPECT_EQ(p.files.content("d:\\da.txt"), after);
    }
}

TEST(PhonebookChoosing, otherFilesMustExist) {
    for (const int group : {3, 4}) {
        MarkedBook p;
        const std::string title(group == 3 ? "Visualisierungsdatei auswählen"_w : "1/4h Datei auswählen"_w);
        p.files.set_content("d:\\da.exe", "x");
        p.f.HScroll1.set_Value(group);
        p.dialogs.expect_file(title, std::string("d:\\fehlt.exe"));
        p.dialogs.expect("d:\\fehlt.exe nicht gefunden!", 48, Answer::ok);
        p.dialogs.expect_file(title, std::string("d:\\da.exe"));
        p.line(4).Comausw.Click();
        EXPECT_EQ((group == 3 ? p.book[4].visdatei : p.book[4].viertdatei).text(), "d:\\da.exe");
        EXPECT_EQ(p.line(4).txtversch.Text.get(), "d:\\da.exe");
        EXPECT_FALSE(p.files.exists("d:\\fehlt.exe"));
    }
}

TEST(PhonebookChoosing, afterAMissingFileTheDialogCanBeCalledOff) {
    MarkedBook p;
    p.f.HScroll1.set_Value(3);
    p.dialogs.expect_file(std::string("Visualisierungsdatei auswählen"_w), std::string("d:\\fehlt.exe"));
    p.dialogs.expect("nicht gefunden!", 48, Answer::ok);
    p.dialogs.expect_file(std::string("Visualisierungsdatei auswählen"_w),
                          failure(RunTimeError::dialog_cancelled));
    p.line(4).Comausw.Click();
    EXPECT_EQ(p.book[4].visdatei.text(), "c:\\vis\\4.exe");
}

} // namespace velorn::test
