// The ten lines: what they show, scrolling, selecting, editing in place, choosing files, the small pictures.
#include "phonebook/book_bytes.h"
#include "phonebook/open_book.h"
#include "phonebook/phonebook_lines.h"
#include "runtime/text.h"

#include <gtest/gtest.h>

namespace velorn::test {

namespace {

constexpr Colour white = 0xFFFFFF, yellow = 0xFFFF, info = 0x80000018, red = 255, cyan = 0xFFFF00;
constexpr int up = 38, down = 40, page_up = 33, page_down = 34;

struct MarkedBook : OpenBook {
    MarkedBook() { open(marked_file()); }
};

} // namespace

// ---- showing ----

TEST(PhonebookLines, showTheirEntriesAndPositions) {
    MarkedBook p;
    EXPECT_EQ(p.line(0).nr.Caption.get(), "1");
    EXPECT_EQ(p.line(9).nr.Caption.get(), "10");
    EXPECT_EQ(p.line(9).nam1.Text.get(), "Anlage 9");
    EXPECT_EQ(p.line(9).num1.Text.get(), "05559");
    EXPECT_EQ(p.line(9).txtversch.Text.get(), "Bemerkung 9");
}

TEST(PhonebookLines, theScrollBarRunsFrom0To1991By1And5) {
    MarkedBook p;
    EXPECT_EQ(p.f.VScroll1.Min, 0);
    EXPECT_EQ(p.f.VScroll1.Max, 1991);
    EXPECT_EQ(p.f.VScroll1.SmallChange, 1);
    EXPECT_EQ(p.f.VScroll1.LargeChange, 5);
    p.f.VScroll1.set_Value(5000);
    EXPECT_EQ(p.line(0).nr.Caption.get(), "1992");
    EXPECT_EQ(p.line(9).nr.Caption.get(), "2001");
    EXPECT_EQ(p.line(9).nam1.Text.get(), "Anlage 2000");
}

TEST(PhonebookLines, scrollingKeepsTheSelectionAndTakesItsColoursAway) {
    MarkedBook p;
    p.click(2);
    p.f.VScroll1.set_Value(1);
    EXPECT_EQ(p.settings.telscroll, Variant(std::int16_t{1}));
    EXPECT_EQ(p.module1.telindex, 2);
    for (int row = 0; row < 10; ++row) {
        EXPECT_EQ(p.line(row).nam1.BackColor.get(), white);
        EXPECT_EQ(p.line(row).nr.BackColor.get(), info);
    }
    EXPECT_EQ(p.line(0).nam1.Text.get(), "Anlage 1");
}

struct Group {
    int number;
    const char *text, *Label5, *Label8, *Label9;
};
constexpr Group groups[] = {
    {1, "Bemerkung 4", "   Bemerkungen", "", "Protokolldatei --->"},
    {2, "c:\\prot\\4.txt", "   Protokolldatei", "<--- Bemerkungen", "Visualisierungsdatei --->"},
    {3, "c:\\vis\\4.exe", "   Visualisierungsdatei", "<--- Protokolldatei", "1/4h-Datendatei --->"},
    {4, "d:\\viertel\\4.dat", "   Speicherort 1/4h-Datendatei", "<--- Visualisierungsdatei", ""},
};

TEST(PhonebookColumnGroups, fillTheColumnAndNameTheirNeighbours) {
    MarkedBook p;
    for (const int number : {1, 2, 3, 4, 2, 1}) {
        p.f.HScroll1.set_Value(number);
        const Group& group = groups[number - 1];
        EXPECT_EQ(p.f.spaltengruppe, number);
        EXPECT_EQ(p.line(4).txtversch.Text.get(), group.text);
        EXPECT_EQ(p.f.Label5.Caption.get(), group.Label5);
        EXPECT_EQ(p.f.Label8.Caption.get(), group.Label8);
        EXPECT_EQ(p.f.Label9.Caption.get(), group.Label9);
    }
}

TEST(PhonebookColumnGroups, anEditGoesToTheFieldThatIsShown) {
    MarkedBook p;
    for (const Group& group : groups) {
        p.f.HScroll1.set_Value(group.number);
        p.line(4).txtversch.Text = "neu " + std::to_string(group.number);
    }
    EXPECT_EQ(p.book[4].bemerkung.text(), "neu 1");
    EXPECT_EQ(p.book[4].protdatei.text(), "neu 2");
    EXPECT_EQ(p.book[4].visdatei.text(), "neu 3");
    EXPECT_EQ(p.book[4].viertdatei.text(), "neu 4");
    EXPECT_EQ(record(p.book[3]), record(marked_entry(3)));
}

TEST(PhonebookColumnGroups, theFirstIsShownAtEachOpening) {
    MarkedBook p;
    p.f.HScroll1.set_Value(3);
    p.f.cmdOK.Click();
    p.open();
    EXPECT_EQ(p.f.Label5.Caption.get(), "   Bemerkungen");
    EXPECT_EQ(p.f.HScroll1.Value(), 1);
}

// ---- editing ----

TEST(PhonebookEditing, goesIntoTheEntryAtOnce) {
    MarkedBook p;
    p.f.VScroll1.set_Value(1991);
    p.line(9).nam1.Text = "Südstadt"_w;
    EXPECT_EQ(p.book[2000].name.text(), "Südstadt"_w);
    p.line(9).num1.Text = "host";
    EXPECT_EQ(p.book[2000].nummer.text(), "host");
    p.line(9).num1.Text = "";
    EXPECT_TRUE(identical(p.book[2000].nummer, Variant("")));
}

TEST(PhonebookEditing, refillingWritesNothingSoEmptyStaysEmpty) {
    OpenBook p;
    p.open();
    p.book[20].reserviert1_9[0] = "x";
    p.book[12].name = std::int16_t{7};
    for (const int first : {3, 12, 1991, 0}) {
        p.f.VScroll1.set_Value(first);
        for (const int group : {2, 3, 4, 1}) p.f.HScroll1.set_Value(group);
    }
    Telefonbuch expected;
    expected[20].reserviert1_9[0] = "x";
    expected[12].name = std::int16_t{7};
    EXPECT_EQ(difference(p.book, expected), "");
}

// ---- selecting ----

TEST(PhonebookSelecting, aClickMarksNameNumberAndPositionRed) {
    MarkedBook p;
    p.f.VScroll1.set_Value(50);
    p.click(3);
    p.click(4);
    EXPECT_EQ(p.module1.telindex, 54);
    EXPECT_EQ(p.line(4).nam1.BackColor.get(), red);
    EXPECT_EQ(p.line(4).num1.BackColor.get(), red);
    EXPECT_EQ(p.line(4).nr.BackColor.get(), red);
    EXPECT_EQ(p.line(4).txtversch.BackColor.get(), white);
    EXPECT_EQ(p.line(3).nam1.BackColor.get(), white);
}

TEST(PhonebookSelecting, aBoxThatGetsTheFocusTurnsItsLineCyan) {
    for (TextBox PhoneLine::*box : {&PhoneLine::nam1, &PhoneLine::num1, &PhoneLine::txtversch}) {
        MarkedBook p;
        (p.line(6).*box).GotFocus();
        EXPECT_EQ(p.module1.telindex, 6);
        EXPECT_EQ(p.line(6).nam1.BackColor.get(), cyan);
        EXPECT_EQ(p.line(6).num1.BackColor.get(), cyan);
        EXPECT_EQ(p.line(6).txtversch.BackColor.get(), cyan);
    }
}

TEST(PhonebookSelecting, aDoubleClickTakesTheSystemColourAndDials) {
    MarkedBook p;
    int dialled = 0;
    p.f.Command1.Click = [&] { ++dialled; };
    p.line(1).Picture1.DblClick();
    EXPECT_EQ(dialled, 1);
    EXPECT_EQ(p.module1.telindex, 1);
    EXPECT_EQ(p.line(1).nam1.BackColor.get(), 0x80000000U);
    EXPECT_EQ(p.line(1).num1.BackColor.get(), 0x80000000U);
    EXPECT_EQ(p.line(1).nr.BackColor.get(), 0x80000000U);
}

TEST(PhonebookSelecting, aDoubleClickInASwapGivesAPositionAndDoesNotDial) {
    MarkedBook p;
    p.f.Command1.Click = [] { FAIL() << "dialled"; };
    p.f.Command2.Click();
    p.line(1).Picture1.DblClick();
    p.line(2).Picture1.DblClick();
    EXPECT_EQ(p.book[1].name.text(), "Anlage 2");
}

TEST(PhonebookSelecting, anAddressStandsOutAfterARefresh) {
    OpenBook p;
    Telefonbuch book;
    for (const auto& [index, number] :
         {std::pair{0, "05550123456"}, {1, "0,555 01"}, {2, "10.0.0.1"}, {3, "host"}, {4, ""}, {5, "0555-1"}})
        book[index].nummer = number;
    p.open(file_of(book));
    const Colour expected[] = {white, white, yellow, yellow, white, yellow, white};
    for (int row = 0; row < 7; ++row) EXPECT_EQ(p.line(row).num1.BackColor.get(), expected[row]) << row;
    p.click(2);
    EXPECT_TRUE(p.module1.istip);
    p.click(0);
    EXPECT_FALSE(p.module1.istip);
}

// ---- keys ----

TEST(PhonebookKeys, moveTheSelectionAndMarkIt) {
    MarkedBook p;
    p.click(2);
    p.key(down);
    EXPECT_EQ(p.module1.telindex, 3);
    EXPECT_EQ(p.line(3).nam1.BackColor.get(), red);
    p.key(page_down);
    EXPECT_EQ(p.module1.telindex, 8);
    p.key(up);
    EXPECT_EQ(p.module1.telindex, 7);
    p.key(page_up);
    EXPECT_EQ(p.module1.telindex, 2);
    EXPECT_EQ(p.f.VScroll1.Value(), 0);
    p.key(65);
    EXPECT_EQ(p.module1.telindex, 2) << "other keys do nothing";
}

TEST(PhonebookKeys, scrollAsNeeded) {
    MarkedBook p;
    p.click(9);
    p.key(down);
    EXPECT_EQ(p.module1.telindex, 10);
    EXPECT_EQ(p.f.VScroll1.Value(), 1);
    EXPECT_EQ(p.line(9).nam1.BackColor.get(), red);
    p.key(page_down);
    EXPECT_EQ(p.module1.telindex, 15);
    EXPECT_EQ(p.f.VScroll1.Value(), 6);
    p.f.VScroll1.set_Value(14);
    p.click(0);
    p.key(page_up);
    EXPECT_EQ(p.module1.telindex, 9);
    EXPECT_EQ(p.f.VScroll1.Value(), 9);
    p.key(up);
    EXPECT_EQ(p.f.VScroll1.Value(), 8);
}

TEST(PhonebookKeys, stopAtTheFirstEntry) {
    MarkedBook p;
    p.click(3);
    p.key(page_up);
    EXPECT_EQ(p.module1.telindex, 0);
    p.key(up);
    EXPECT_EQ(p.module1.telindex, 0);
    EXPECT_EQ(p.f.VScroll1.Value(), 0);
}

TEST(PhonebookKeys, scrollDownFromFirstLinesUpTo1990By1AndUpTo1985By5) {
    MarkedBook p;
    p.f.VScroll1.set_Value(1990);
    p.click(9);
    p.key(down);
    EXPECT_EQ(p.module1.telindex, 2000);
    EXPECT_EQ(p.f.VScroll1.Value(), 1991);
    p.key(down);
    EXPECT_EQ(p.module1.telindex, 2000);
    EXPECT_EQ(p.f.VScroll1.Value(), 1991);
    p.f.VScroll1.set_Value(1985);
    p.click(9);
    p.key(page_down);
    EXPECT_EQ(p.module1.telindex, 1999);
    EXPECT_EQ(p.f.VScroll1.Value(), 1990);
    p.f.VScroll1.set_Value(1986);
    p.click(9);
    p.key(page_down);
    EXPECT_EQ(p.module1.telindex, 1995);
    EXPECT_EQ(p.f.VScroll1.Value(), 1986);
}

// ---- the protocol file and the small pictures ----

TEST(PhonebookProtocolFile, isUsableFromFourBytesOn) {
    MarkedBook p;
    p.files.set_content("c:\\prot\\1.txt", "abc");
    p.files.set_content("c:\\prot\\2.txt", "abcd");
    for (const auto& [row, usable] : {std::pair{0, false}, {1, false}, {2, true}, {3, false}}) {
        p.click(row);
        EXPECT_EQ(p.module1.protokollan, usable) << row;
        EXPECT_EQ(p.f.Command4.Enabled.get(), usable) << row;
        EXPECT_EQ(p.module1.protokollname, "c:\\prot\\" + std::to_string(row) + ".txt");
    }
}

TEST(PhonebookProtocolFile, isOpenedInTheEditor) {
    MarkedBook p;
    p.files.set_content("c:\\prot\\2.txt", "Protokoll");
    p.click(2);
    bool was_open = false;
    p.loop.post([&] {
        was_open = p.program.frmedit.form.Visible;
        p.program.frmedit.form.Visible = false;
    });
    EXPECT_EQ(p.f.Command4.Caption.get(), "Protokoll editieren");
    p.f.Command4.Click();
    EXPECT_TRUE(was_open);
}

TEST(PhonebookThumbnails, theVisualisationsIsShownForEveryExe) {
    OpenBook p;
    Telefonbuch book;
    book[0].visdatei = "c:\\VIS.EXE";
    book[1].visdatei = "c:\\vis.com";
    p.open(file_of(book));
    EXPECT_TRUE(p.line(0).visthumb.Visible);
    EXPECT_FALSE(p.line(1).visthumb.Visible);
    EXPECT_FALSE(p.line(2).visthumb.Visible);
}

TEST(PhonebookThumbnails, theArchivesIsShownFromAMillionBytesOn) {
    OpenBook p;
    p.files.set_content("d:\\viertel\\0.dat", std::string(1'000'000, '\0'));
    p.files.set_content("d:\\viertel\\1.dat", std::string(1'000'000, '\0'));
    p.files.set_content("d:\\viertel\\2.dat", std::string(999'999, '\0'));
    p.open(marked_file());
    EXPECT_TRUE(p.line(0).viertthumb.Visible);
    EXPECT_TRUE(p.line(0).viertthumb.automatic) << "entries with an even index take part";
    EXPECT_TRUE(p.line(1).viertthumb.Visible);
    EXPECT_FALSE(p.line(1).viertthumb.automatic);
    EXPECT_FALSE(p.line(2).viertthumb.Visible);
    EXPECT_FALSE(p.line(3).viertthumb.Visible);
}

TEST(PhonebookThumbnails, theLeftButtonShowsWhetherTheSiteTakesPart) {
    MarkedBook p;
    EXPECT_EQ(p.f.optuebertrag.captions()[0], "1/4h-Daten automatisch holen");
    EXPECT_EQ(p.f.optuebertrag.captions()[1], "1/4h-Daten von Hand holen");
    p.line(2).viertthumb.MouseDown(1);
    EXPECT_EQ(p.module1.telindex, 2);
    EXPECT_TRUE(p.f.picdownload.Visible);
    EXPECT_EQ(p.f.optuebertrag.selected(), 0);
    p.f.optuebertrag.select(1);
    EXPECT_EQ(p.book[2].autoflag, 0);
    p.f.optuebertrag.select(0);
    EXPECT_EQ(p.book[2].autoflag, 8);
    p.f.optuebertrag.select(1);
    EXPECT_TRUE(p.line(2).viertthumb.automatic) << "not yet refreshed";
    p.f.closedathol.Click();
    EXPECT_FALSE(p.f.picdownload.Visible);
    EXPECT_FALSE(p.line(2).viertthumb.automatic);
    p.line(1).viertthumb.MouseDown(1);
    EXPECT_EQ(p.f.optuebertrag.selected(), 1);
    EXPECT_EQ(p.book[1].autoflag, 0);
}

TEST(PhonebookThumbnails, showingThePanelWritesNothing) {
    MarkedBook p;
    p.book[2].autoflag = 5;
    p.line(2).viertthumb.MouseDown(1);
    EXPECT_EQ(p.book[2].autoflag, 5) << "only a person's choice does";
    p.f.optuebertrag.select(1);
    EXPECT_EQ(p.book[2].autoflag, 0);
}

TEST(PhonebookThumbnails, anyOtherButtonTurnsTheMarkOver) {
    MarkedBook p;
    p.line(3).viertthumb.MouseDown(2);
    EXPECT_EQ(p.module1.telindex, 3);
    EXPECT_EQ(p.book[3].autoflag, 8);
    EXPECT_TRUE(p.line(3).viertthumb.automatic);
    EXPECT_FALSE(p.f.picdownload.Visible);
    p.line(3).viertthumb.MouseDown(4);
    EXPECT_EQ(p.book[3].autoflag, 0);
    EXPECT_FALSE(p.line(3).viertthumb.automatic);
}

} // namespace velorn::test
