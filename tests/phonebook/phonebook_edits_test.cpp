// Changes to whole entries, and the search.
#include "phonebook/book_bytes.h"
#include "phonebook/open_book.h"
#include "phonebook/phonebook_edits.h"
#include "runtime/text.h"

#include <gtest/gtest.h>

namespace velorn::test {

namespace {

// Fields 1 to 12 of one marked entry over the reserved values of another.
std::string moved(int entry, int reserved_of) {
    PhoneEntry expected = marked_entry(entry);
    expected.reserviert1_9 = marked_entry(reserved_of).reserviert1_9;
    return record(expected);
}

std::string free_line(int index) {
    PhoneEntry expected;
    expected.pos = static_cast<std::int16_t>(index);
    for (Variant* text : {&expected.name, &expected.nummer, &expected.visdatei, &expected.protdatei,
                          &expected.bemerkung, &expected.viertdatei, &expected.aufnahme})
        *text = "";
    expected.datum = 32874.0;
    expected.reserviert1_9 = marked_entry(index).reserviert1_9;
    return record(expected);
}

struct MarkedBook : OpenBook {
    MarkedBook() { open(marked_file()); }

    void select(int index) {
        f.VScroll1.set_Value(index);
        click(index - f.VScroll1.Value());
        ASSERT_EQ(module1.telindex, index);
    }
    // All entries from `from` to `to` (both included) hold what stood `shift` further down.
    void expect_shifted(int from, int to, int shift) {
        const Telefonbuch& before = marked_book();
        for (int i = from; i <= to; ++i) {
            ASSERT_TRUE(same_but_for_reserved(book[i], before[i + shift])) << i;
            ASSERT_TRUE(same_reserved(book[i], before[i])) << i;
        }
    }
};

} // namespace

// ---- insert ----

TEST(PhonebookInsert, asksForThePositionAndMovesAllBehindItUp) {
    for (const int index : {0, 1, 1000, 1999, 2000}) {
        MarkedBook p;
        p.select(index);
        p.dialogs.expect("Soll an Pos " + std::to_string(index + 1) +
                             std::string("  eine freie Zeile eingefügt werden?"_w),
                         36, Answer::yes);
        p.f.Command5.Click();
        p.expect_shifted(0, index - 1, 0);
        EXPECT_EQ(record(p.book[index]), free_line(index));
        p.expect_shifted(index + 1, 2000, -1);
        p.expect_shifted(2001, 2010, 0);
        EXPECT_EQ(p.line(index - p.f.VScroll1.Value()).nam1.Text.get(), "") << "the lines are refreshed";
    }
}

TEST(PhonebookInsert, noChangesNothing) {
    MarkedBook p;
    p.select(5);
    p.dialogs.expect("Soll an Pos 6  eine freie Zeile", 36, Answer::no);
    p.f.Command5.Click();
    EXPECT_EQ(difference(p.book, marked_book()), "");
}

// ---- delete ----

TEST(PhonebookDelete, asksForThePositionAndMovesAllBehindItDown) {
    for (const int index : {0, 1, 1000, 1999, 2000}) {
        MarkedBook p;
        p.select(index);
        p.dialogs.expect("Soll Eintrag an Pos " + std::to_string(index + 1) +
                             std::string("  gelöscht werden?"_w),
                         36, Answer::yes);
        p.f.Command6.Click();
        p.expect_shifted(0, index - 1, 0);
        p.expect_shifted(index, 2000, 1);
        p.expect_shifted(2001, 2010, 0);
        EXPECT_EQ(p.book[2000].name.text(), p.book[2001].name.text());
    }
}

TEST(PhonebookDelete, noChangesNothing) {
    MarkedBook p;
    p.select(5);
    p.dialogs.expect("Soll Eintrag an Pos 6  ", 36, Answer::no);
    p.f.Command6.Click();
    EXPECT_EQ(difference(p.book, marked_book()), "");
}

TEST(PhonebookEdits, withNothingSelectedInsertAndDeleteAskForASelection) {
    OpenBook p;
    p.open();
    ASSERT_EQ(p.module1.telindex, -1);
    for (Button FrmTelefon::*button : {&FrmTelefon::Command5, &FrmTelefon::Command6}) {
        p.dialogs.expect(std::string("Erst Eintrag auswählen!!"_w), 48, Answer::ok);
        (p.f.*button).Click();
    }
    EXPECT_EQ(difference(p.book, Telefonbuch()), "");
}

TEST(PhonebookEdits, anAnswerThatComesAfterTheWindowClosedChangesNothing) {
    MarkedBook p;
    p.select(5);
    p.dialogs.expect("Soll Eintrag an Pos 6", 36, Answer::yes, [&] { p.f.cmdOK.Click(); });
    p.f.Command6.Click();
    EXPECT_EQ(difference(p.book, marked_book()), "");
}

TEST(PhonebookEdits, captions) {
    OpenBook p;
    EXPECT_EQ(p.f.Command2.Caption.get(), "Positionen tauschen");
    EXPECT_EQ(p.f.Command3.Caption.get(), "Abbruch");
    EXPECT_EQ(p.f.Command5.Caption.get(), "Freie Position einfügen"_w);
    EXPECT_EQ(p.f.Command6.Caption.get(), "Position löschen"_w);
    EXPECT_EQ(p.f.Command7.Caption.get(), "Suchen");
}

// ---- swap ----

TEST(PhonebookSwap, takesTwoPositionsOneAfterTheOther) {
    MarkedBook p;
    p.f.Command2.Click();
    EXPECT_TRUE(p.f.Picture2.Visible);
    EXPECT_EQ(p.f.Picture2.Caption.get(), "Positionen tauschen");
    EXPECT_EQ(p.f.labtausch.Caption.get(), "bitte 1. Tauschposition auswählen"_w);
    EXPECT_TRUE(p.f.tausch1aktiv);
    p.click(2);
    EXPECT_FALSE(p.f.tausch1aktiv);
    EXPECT_TRUE(p.f.tausch2aktiv);
    EXPECT_EQ(p.f.tauschpos1, 2);
    EXPECT_EQ(p.f.labtausch1.Caption.get(), "1. Tauschposition: 3");
    EXPECT_EQ(p.f.labtausch.Caption.get(), "bitte 2. Tauschposition auswählen"_w);
    p.f.VScroll1.set_Value(1991);
    p.line(9).nam1.GotFocus();
    EXPECT_FALSE(p.f.tausch2aktiv);
    EXPECT_EQ(p.f.tauschpos2, 2000);
    EXPECT_EQ(p.f.labtausch2.Caption.get(), "2. Tauschposition: 2001");
    EXPECT_EQ(p.f.labtausch.Caption.get(), "Position 3 getauscht gegen Position 2001");
    EXPECT_EQ(record(p.book[2]), moved(2000, 2));
    EXPECT_EQ(record(p.book[2000]), moved(2, 2000));
    EXPECT_EQ(p.line(9).nam1.Text.get(), "Anlage 2");
    p.click(4);
    EXPECT_EQ(record(p.book[4]), moved(4, 4)) << "the swap is over";
}

TEST(PhonebookSwap, thePanelGoesAfterTwoSeconds) {
    MarkedBook p;
    p.f.Command2.Click();
    p.loop.pass(10'000);
    EXPECT_TRUE(p.f.Picture2.Visible) << "it waits for positions as long as it takes";
    p.click(0);
    p.click(1);
    p.loop.pass(1999);
    EXPECT_TRUE(p.f.Picture2.Visible);
    p.loop.pass(1);
    EXPECT_FALSE(p.f.Picture2.Visible);
    EXPECT_FALSE(p.f.Timer1.Enabled);
}

TEST(PhonebookSwap, aNewSwapWithinTheTwoSecondsKeepsItsPanel) {
    MarkedBook p;
    p.f.Command2.Click();
    p.click(0);
    p.click(1);
    p.f.Command2.Click();
    p.loop.pass(5000);
    EXPECT_TRUE(p.f.Picture2.Visible);
    EXPECT_EQ(p.f.labtausch1.Caption.get(), "");
}

TEST(PhonebookSwap, withBothPositionsEqualChangesNothing) {
    MarkedBook p;
    p.f.Command2.Click();
    p.click(3);
    p.click(3);
    EXPECT_EQ(p.f.labtausch.Caption.get(), "Position 4 getauscht gegen Position 4");
    EXPECT_EQ(difference(p.book, marked_book()), "");
}

TEST(PhonebookSwap, canBeCalledOffAtEachPosition) {
    for (const int given : {0, 1}) {
        MarkedBook p;
        p.f.Command2.Click();
        if (given == 1) p.click(0);
        p.f.Command3.Click();
        EXPECT_FALSE(p.f.Picture2.Visible);
        EXPECT_FALSE(p.f.tausch1aktiv);
        EXPECT_FALSE(p.f.tausch2aktiv);
        p.click(1);
        p.click(2);
        EXPECT_EQ(difference(p.book, marked_book()), "");
    }
}

// ---- search ----

TEST(PhonebookSearch, showsEachFindAsFirstLineAndAsksAgain) {
    MarkedBook p;
    const char* prompt = "Suchtext eingeben (Name oder Telefonnummer)";
    // Found in "Anlage 77", and on as the number of 1077, ...
    p.dialogs.expect_input(prompt, "ANLAGE 77");
    p.dialogs.expect_input(prompt, "anlage 77");
    p.dialogs.expect_input(prompt, "");
    p.f.Command7.Click();
    EXPECT_EQ(p.module1.telindex, 770);
    EXPECT_EQ(p.f.VScroll1.Value(), 770);
    EXPECT_EQ(p.line(0).nam1.Text.get(), "Anlage 770");
    EXPECT_EQ(p.line(0).nam1.BackColor.get(), 255U);
    EXPECT_EQ(p.dialogs.last_title, "Weitersuchen");
    EXPECT_EQ(p.dialogs.last_proposal, "anlage 77");
}

TEST(PhonebookSearch, beginsWithAnEmptyBoxNamedSuchen) {
    MarkedBook p;
    p.dialogs.expect_input("Suchtext eingeben (Name oder Telefonnummer)", std::nullopt);
    p.f.Command7.Click();
    EXPECT_EQ(p.dialogs.last_title, "Suchen");
    EXPECT_EQ(p.dialogs.last_proposal, "");
    EXPECT_EQ(p.module1.telindex, -1);
}

TEST(PhonebookSearch, findsNumbersAndGoesOnWithAnotherText) {
    MarkedBook p;
    p.dialogs.expect_input("Suchtext", "0555100");
    p.dialogs.expect_input("Suchtext", "lage 12");
    p.dialogs.expect_input("Suchtext", std::nullopt);
    p.f.Command7.Click();
    EXPECT_EQ(p.module1.telindex, 120) << "behind 100 the next is 120";
}

TEST(PhonebookSearch, runsOutWithoutAMessageAndKeepsTheLastFind) {
    MarkedBook p;
    p.dialogs.expect_input("Suchtext", "Anlage 1999");
    p.dialogs.expect_input("Suchtext", "Anlage 1999");
    p.f.Command7.Click();
    EXPECT_EQ(p.module1.telindex, 1999);
    EXPECT_EQ(p.f.VScroll1.Value(), 1991) << "as far down as the lines go";
    EXPECT_EQ(p.line(8).nam1.BackColor.get(), 255U);
}

TEST(PhonebookSearch, looksAt2000AndNoFurtherAndOnlyAtNameAndNumber) {
    Telefonbuch book = marked_book();
    EXPECT_EQ(find_line(book, "anlage 2000", 0), 2000);
    EXPECT_EQ(find_line(book, "anlage 2001", 0), -1);
    EXPECT_EQ(find_line(book, "Bemerkung", 0), -1);
    EXPECT_EQ(find_line(book, ".exe", 0), -1);
    book[7].name = "ÄRZTEHAUS"_w;
    EXPECT_EQ(find_line(book, "ärztehaus"_w, 0), 7);
    EXPECT_EQ(find_line(book, "ärztehaus"_w, 8), -1);
}

TEST(PhonebookSearch, closingTheWindowEndsIt) {
    OpenBook p;
    p.open(marked_file());
    p.dialogs.expect_input("Suchtext", "Anlage");
    p.f.cmdOK.Click();
    p.f.Command7.Click();
    EXPECT_EQ(p.module1.telindex, -1) << "the answer came too late";
}

} // namespace velorn::test
