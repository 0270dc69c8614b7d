// Opening and closing the phone book, what each way of closing takes over, its menu, its countdown.
#include "phonebook/book_bytes.h"
#include "phonebook/open_book.h"
#include "phonebook/phonebook_window.h"
#include "runtime/text.h"

#include <gtest/gtest.h>

namespace velorn::test {

namespace {

std::string file_with(int index, const char* name) {
    Telefonbuch book;
    book[index].name = name;
    return file_of(book);
}

} // namespace

// ---- opening ----

TEST(PhonebookOpening, theFirstStartShowsTheSampleRowAndCreatesTheFileEmpty) {
    OpenBook p;
    p.settings.neustartzaehler = std::int16_t{1};
    p.open();
    EXPECT_EQ(p.f.form.Caption.get(), "Telefonbuch");
    EXPECT_EQ(p.line(0).nam1.Text.get(), "Lindenhofstr. Sudstadt");
    EXPECT_EQ(p.line(0).num1.Text.get(), "05550123456");
    EXPECT_EQ(p.line(0).txtversch.Text.get(), "Modemzugang");
    EXPECT_EQ(p.book[0].visdatei.text(), "c:\\velorn\\lindvis.exe");
    EXPECT_TRUE(p.files.exists(OpenBook::telefon_par));
    EXPECT_EQ(p.telefon_file(), "");
    p.f.Command11.Click();
    EXPECT_EQ(difference(p.telefon_file(), file_of(p.book)), "") << "the first saving writes the row";
}

TEST(PhonebookOpening, theSampleRowComesOnlyAtTheFirstStart) {
    OpenBook p;
    p.open();
    EXPECT_EQ(p.line(0).nam1.Text.get(), "");
    EXPECT_TRUE(p.book[0].name.empty());
}

TEST(PhonebookOpening, aFreshProgramIsAtItsFirstStart) {
    TestProgram p;
    p.start();
    p.program.phonebook_window.Form_Load();
    EXPECT_EQ(p.program.telefonbuch[0].name.text(), "Lindenhofstr. Sudstadt");
}

TEST(PhonebookOpening, readsTheFilesEachTimeSoUnsavedEditsAreLost) {
    OpenBook p;
    p.open(file_with(0, "gespeichert"));
    p.line(0).nam1.Text = "nur im Speicher";
    p.f.cmdOK.Click();
    EXPECT_EQ(p.book[0].name.text(), "nur im Speicher") << "it stays in memory after closing";
    p.open();
    EXPECT_EQ(p.line(0).nam1.Text.get(), "gespeichert");
}

TEST(PhonebookOpening, readsTheSnapshotsUnlessNewOnesWereTaken) {
    OpenBook p;
    p.files.set_content(OpenBook::dispauf_par, tagged(Variant("Aufnahme")));
    p.module1.neuedispauf = true;
    p.open();
    EXPECT_TRUE(p.book.dispaufnahmen[0].empty());
    p.f.cmdCancel.Click();
    p.module1.neuedispauf = false;
    p.open();
    EXPECT_EQ(p.book.dispaufnahmen[0].text(), "Aufnahme");
}

TEST(PhonebookOpening, belowVersion22TheOldLayoutsMarksGoAndThePresentOnesStay) {
    OpenBook p;
    p.settings.einstversion2 = std::int16_t{21};
    p.open(marked_file());
    EXPECT_TRUE(identical(p.settings.einstversion2, Variant(std::int16_t{22})));
    for (const PhoneEntryOld& entry : p.book.altbuch) ASSERT_EQ(entry.autoflag, 0);
    EXPECT_EQ(p.book[0].autoflag, 8);
    EXPECT_EQ(p.book[600].autoflag, 8);
}

TEST(PhonebookOpening, fromVersion22OnTheOldLayoutIsLeftAlone) {
    OpenBook p;
    p.settings.einstversion2 = std::int16_t{22};
    p.open(marked_file());
    EXPECT_EQ(p.book.altbuch[0].autoflag, 8);
    EXPECT_EQ(p.book.altbuch[600].autoflag, 8);
}

TEST(PhonebookOpening, selectsTheStoredRowAndFillsTheBoxesFromTheSettings) {
    OpenBook p;
    p.settings.telscroll = std::int16_t{100};
    p.settings.telzeile = 9;
    p.settings.anrufer = "Leitstelle";
    p.settings.modeminit = "e1v1";
    p.settings.vorwahl = "0,";
    p.settings.vorwahlan = std::int16_t{1};
    p.settings.lanport = "1100";
    p.settings.lanaktiv = std::int16_t{1};
    p.open();
    EXPECT_EQ(p.module1.telindex, 109);
    EXPECT_EQ(p.line(0).nr.Caption.get(), "101");
    EXPECT_EQ(p.f.VScroll1.Value(), 100);
    EXPECT_EQ(p.f.spaltengruppe, 1);
    EXPECT_EQ(p.f.txtanrufer.Text.get(), "Leitstelle");
    EXPECT_EQ(p.f.txtmodinit.Text.get(), "e1v1");
    EXPECT_EQ(p.f.txtprestrtext.Text.get(), "0,");
    EXPECT_TRUE(p.f.txtprestrcheck.Value.get());
    EXPECT_EQ(p.f.mdexport.Text.get(), "1100");
    EXPECT_TRUE(p.f.telnet.Value.get());
}

TEST(PhonebookOpening, aDamagedRowOrScrollPositionHarmsNothing) {
    OpenBook p;
    p.settings.telscroll = "weit unten";
    p.settings.telzeile = 77;
    p.open();
    EXPECT_EQ(p.module1.telindex, -1);
    EXPECT_EQ(p.line(0).nr.Caption.get(), "1");
    p.f.cmdCancel.Click();
    p.settings.telscroll = std::int32_t{5000};
    p.open();
    EXPECT_EQ(p.line(9).nr.Caption.get(), "2001");
}

TEST(PhonebookOpening, aBookThatCannotBeReadOpensAllTheSame) {
    OpenBook p;
    p.settings.telefonpfad = "";
    p.settings.dispaufpfad = Variant();
    p.book[0].name = "bleibt";
    p.open();
    EXPECT_EQ(p.line(0).nam1.Text.get(), "bleibt");
    p.f.Command11.Click();
    EXPECT_FALSE(p.f.form.Visible);
}

// ---- closing ----

struct Closing {
    const char* way;
    Button FrmTelefon::*button;
    bool writes, takes_over;
};

void PrintTo(const Closing& closing, std::ostream* out) { *out << closing.way; }

class PhonebookClosing : public testing::TestWithParam<Closing> {};

TEST_P(PhonebookClosing, writesTheFilesAndTakesOverTheSettingsAsItsWaySays) {
    OpenBook p;
    const std::string old_file = file_with(0, "alt");
    p.open(old_file);
    p.book.dispaufnahmen[0] = "Aufnahme";
    p.line(0).nam1.Text = "umbenannt";
    p.f.txtanrufer.Text = "Leitstelle";
    p.f.mdexport.Text = "2001";
    p.f.telnet.Value = true;
    (p.f.*GetParam().button).Click();
    EXPECT_FALSE(p.f.form.Visible);
    EXPECT_EQ(p.book[0].name.text(), "umbenannt") << "no way undoes an edit";
    EXPECT_EQ(difference(p.telefon_file(), GetParam().writes ? file_of(p.book) : old_file), "");
    EXPECT_EQ(p.files.content(OpenBook::dispauf_par) == "", !GetParam().writes);
    EXPECT_EQ(p.settings.anrufer.text(), GetParam().takes_over ? "Leitstelle" : "Benutzer");
    EXPECT_EQ(p.settings.lanport.text(), GetParam().takes_over ? "2001" : "23");
    EXPECT_EQ(p.settings.lanaktiv == Variant(std::int16_t{1}), GetParam().takes_over);
    EXPECT_EQ(p.module1.txtanrufer, p.settings.anrufer.text());
    EXPECT_EQ(p.module1.mdexport, p.settings.lanport.text());
    EXPECT_EQ(p.module1.telnet, GetParam().takes_over);
}

INSTANTIATE_TEST_SUITE_P(Ways, PhonebookClosing,
                         testing::Values(Closing{"saving", &FrmTelefon::Command11, true, true},
                                         Closing{"plain", &FrmTelefon::cmdOK, false, true},
                                         Closing{"cancelling", &FrmTelefon::cmdCancel, false, false}),
                         [](const auto& tested) { return std::string(tested.param.way); });

TEST(PhonebookClosingWindow, captionsOfTheThreeWays) {
    OpenBook p;
    EXPECT_EQ(p.f.Command11.Caption.get(), "Schließen und Änderungen SPEICHERN !!"_w);
    EXPECT_EQ(p.f.cmdCancel.Caption.get(), "Abbrechen");
}

TEST(PhonebookClosingWindow, aSecondCloseDoesNothing) {
    OpenBook p;
    p.open(file_with(0, "alt"));
    p.f.cmdCancel.Click();
    p.files.set_content(OpenBook::telefon_par, "x");
    p.f.Command11.Click();
    EXPECT_EQ(p.telefon_file(), "x");
}

TEST(PhonebookClosingWindow, theMenuCommandWaitsForItAndKeepsTheSettingsInTheirFile) {
    OpenBook p;
    bool was_open = false;
    p.loop.post([&] {
        was_open = p.f.form.Visible;
        p.f.txtanrufer.Text = "Leitstelle";
        p.f.cmdOK.Click();
    });
    press(p.frmTerminal.mnutelefonbuch);
    EXPECT_TRUE(was_open);
    EXPECT_FALSE(p.f.form.Visible);
    EXPECT_NE(p.files.content("c:\\velorn\\einst.par").find("Leitstelle"), std::string::npos);
}

// ---- taking over the settings ----

TEST(PhonebookTakingOver, allBoxesGoToTheirSettings) {
    OpenBook p;
    p.open();
    p.f.txtanrufer.Text = "Fa. Müller"_w;
    p.f.txtmodinit.Text = "e0";
    p.f.txtprestrtext.Text = "0,";
    p.f.mdexport.Text = "10100";
    p.f.txtprestrcheck.Value = true;
    p.f.telnet.Value = true;
    p.f.cmdOK.Click();
    EXPECT_EQ(p.settings.anrufer.text(), "Fa. Müller"_w);
    EXPECT_EQ(p.settings.modeminit.text(), "e0");
    EXPECT_EQ(p.settings.vorwahl.text(), "0,");
    EXPECT_EQ(p.settings.lanport.text(), "10100");
    EXPECT_TRUE(identical(p.settings.vorwahlan, Variant(std::int16_t{1})));
    EXPECT_TRUE(identical(p.settings.lanaktiv, Variant(std::int16_t{1})));
    p.open();
    p.f.txtprestrcheck.Value = false;
    p.f.telnet.Value = false;
    p.f.cmdOK.Click();
    EXPECT_TRUE(identical(p.settings.vorwahlan, Variant(std::int16_t{0})));
    EXPECT_TRUE(identical(p.settings.lanaktiv, Variant(std::int16_t{0})));
}

TEST(PhonebookTakingOver, theSelectedSitesVisualisationProtocolFileAndSnapshotsCount) {
    OpenBook p;
    Telefonbuch book;
    book[3] = marked_entry(3);
    p.files.set_content("c:\\prot\\3.txt", "abcd");
    p.open(file_of(book));
    p.click(3);
    p.f.cmdOK.Click();
    EXPECT_EQ(p.module1.visdatei, "c:\\vis\\3.exe");
    EXPECT_TRUE(p.module1.protokollan);
    EXPECT_EQ(p.module1.protokollname, "c:\\prot\\3.txt");
    EXPECT_EQ(p.frmTerminal.txtsnapshot.Text(), "Aufnahme\r\n3");
    EXPECT_EQ(p.module1.projektname, "Anlage 3");
    EXPECT_EQ(p.frmTerminal.sbrStatus.projekt.Text.get(), "Anlage 3");
}

TEST(PhonebookTakingOver, theProtocolFileIsCheckedAnew) {
    OpenBook p;
    Telefonbuch book;
    book[0] = marked_entry(0);
    p.open(file_of(book));
    p.click(0);
    EXPECT_FALSE(p.module1.protokollan);
    p.files.set_content("c:\\prot\\0.txt", "abcd");
    p.f.cmdOK.Click();
    EXPECT_TRUE(p.module1.protokollan);
}

TEST(PhonebookTakingOver, withNothingSelectedTheSiteStaysAsItWas) {
    OpenBook p;
    p.module1.visdatei = "c:\\alt.exe";
    p.module1.projektname = "Altstadt";
    p.frmTerminal.txtsnapshot.set_Text("alte Aufnahme");
    p.open();
    p.f.cmdOK.Click();
    EXPECT_EQ(p.module1.visdatei, "c:\\alt.exe");
    EXPECT_EQ(p.module1.projektname, "Altstadt");
    EXPECT_EQ(p.frmTerminal.txtsnapshot.Text(), "alte Aufnahme");
    EXPECT_EQ(p.settings.telzeile, -1);
}

TEST(PhonebookTakingOver, theRowIsKeptWhereItIsShownAndIsNoneElsewhere) {
    OpenBook p;
    p.open();
    p.click(9);
    p.f.cmdOK.Click();
    EXPECT_EQ(p.settings.telzeile, 9);
    p.open();
    p.f.VScroll1.set_Value(9);
    p.f.cmdOK.Click();
    EXPECT_EQ(p.settings.telzeile, 0);
    p.open();
    p.f.VScroll1.set_Value(10);
    p.f.cmdOK.Click();
    EXPECT_EQ(p.settings.telzeile, -1) << "above the lines";
    p.open();
    p.f.VScroll1.set_Value(0);
    p.click(0);
    p.f.VScroll1.set_Value(0);
    p.module1.telindex = 10;
    p.f.cmdOK.Click();
    EXPECT_EQ(p.settings.telzeile, -1) << "below the lines";
}

TEST(PhonebookTakingOver, aPanelThatTellsOfACallStays) {
    OpenBook p;
    Telefonbuch book;
    book[0] = marked_entry(0);
    p.frmTerminal.sbrStatus.projekt.Text = "angewählt: Altstadt"_w;
    p.module1.projektname = "Altstadt";
    p.open(file_of(book));
    p.click(0);
    p.f.cmdOK.Click();
    EXPECT_EQ(p.frmTerminal.sbrStatus.projekt.Text.get(), "angewählt: Altstadt"_w);
    EXPECT_EQ(p.module1.projektname, "Altstadt");
}

TEST(PhonebookTakingOver, aValueThatStaysTheSameKeepsItsTag) {
    OpenBook p;
    p.settings.lanport = std::int32_t{23};
    p.settings.vorwahlan = "1";
    p.open();
    p.f.cmdOK.Click();
    EXPECT_TRUE(identical(p.settings.lanport, Variant(std::int32_t{23})));
    EXPECT_TRUE(identical(p.settings.vorwahlan, Variant("1")));
}

// ---- the countdown ----

TEST(PhonebookCountdown, closesTheWindowThePlainWayAfterFiveMinutes) {
    OpenBook p;
    const std::string file = file_with(0, "alt");
    p.open(file);
    p.line(0).nam1.Text = "neu";
    p.f.txtanrufer.Text = "Leitstelle";
    p.loop.pass(1000);
    EXPECT_EQ(p.f.Label22.Caption.get(), "299");
    p.loop.pass(299'000);
    EXPECT_EQ(p.f.Label22.Caption.get(), "0");
    EXPECT_TRUE(p.f.form.Visible);
    p.loop.pass(1000);
    EXPECT_FALSE(p.f.form.Visible);
    EXPECT_FALSE(p.f.Timer99.Enabled);
    EXPECT_EQ(p.settings.anrufer.text(), "Leitstelle");
    EXPECT_EQ(p.telefon_file(), file);
}

TEST(PhonebookCountdown, beginsAnewAtEachOpening) {
    OpenBook p;
    p.open();
    p.loop.pass(200'000);
    p.f.cmdOK.Click();
    p.open();
    p.loop.pass(290'000);
    EXPECT_TRUE(p.f.form.Visible);
    EXPECT_EQ(p.f.Label22.Caption.get(), "10");
}

// ---- the name by which this PC reports ----

TEST(PhonebookCallersName, atOpeningOnlyTheDefaultNameAsksForABetterOne) {
    OpenBook p;
    EXPECT_EQ(p.f.Picture3.Caption.get(),
              "Bitte sinnvollen Anmeldenamen eingeben!!   (z.B.: Fa. Müller,...)"_w);
    p.settings.anrufer = "Benutzer";
    p.open();
    EXPECT_TRUE(p.f.Picture3.Visible);
    p.f.cmdCancel.Click();
    p.settings.anrufer = "Benutzer 2";
    p.open();
    EXPECT_FALSE(p.f.Picture3.Visible);
}

TEST(PhonebookCallersName, whileItIsTypedEveryNameWithBenuAsks) {
    OpenBook p;
    p.open();
    for (const auto& [name, asks] :
         {std::pair{"Leitstelle", false}, std::pair{"Mein Benu", true}, std::pair{"benutzer", false},
          std::pair{"Benutzer", true}, std::pair{"Ben", false}}) {
        p.f.txtanrufer.Text = name;
        EXPECT_EQ(p.f.Picture3.Visible.get(), asks) << name;
    }
}

TEST(PhonebookCallersName, theNoticeBlinksBetweenWhiteAndRed) {
    OpenBook p;
    p.open();
    p.loop.pass(500);
    const Colour first = p.f.Picture3.BackColor;
    p.loop.pass(500);
    const Colour second = p.f.Picture3.BackColor;
    p.loop.pass(500);
    EXPECT_EQ(p.f.Picture3.BackColor.get(), first);
    EXPECT_EQ(first + second, 0xFFFFFFU + 255U);
    EXPECT_NE(first, second);
}

// ---- the menu ----

TEST(PhonebookMenu, captions) {
    OpenBook p;
    EXPECT_EQ(p.f.mnueinst.Caption.get(), "&Einstellungen");
    EXPECT_EQ(p.f.mnutele.Caption.get(), "Telefonnummern importieren");
    EXPECT_EQ(p.f.mnudispauf.Caption.get(), "Displayaufnahmen importieren");
    EXPECT_EQ(p.f.Command8.Caption.get(), "Command8");
}

TEST(PhonebookMenu, importingNumbersTakesThePathForGoodAndReadsBothTables) {
    OpenBook p;
    p.open(file_with(0, "alt"));
    p.files.set_content("d:\\neu\\buch.par", marked_file());
    p.dialogs.expect_file("Telefonnummern importieren", std::string("d:\\neu\\buch.par"));
    p.f.mnutele.Click();
    EXPECT_EQ(p.dialogs.last_question.filter, "Alle Dateien (*.*)|*.*");
    EXPECT_EQ(p.dialogs.last_question.folder, "c:\\velorn");
    EXPECT_EQ(p.dialogs.last_question.name, "telefon.par");
    EXPECT_FALSE(p.dialogs.last_question.saving);
    EXPECT_EQ(p.settings.telefonpfad.text(), "d:\\neu\\buch.par");
    EXPECT_EQ(difference(p.book, marked_book()), "");
    p.f.VScroll1.set_Value(1);
    EXPECT_EQ(p.line(0).nam1.Text.get(), "Anlage 1");
    p.line(0).nam1.Text = "umbenannt";
    p.f.Command11.Click();
    EXPECT_EQ(p.files.content("d:\\neu\\buch.par").substr(0, 100), file_of(p.book).substr(0, 100));
    EXPECT_EQ(p.telefon_file(), file_with(0, "alt"));
}

TEST(PhonebookMenu, importingFromAShortFileLeavesTheRestAsItWas) {
    OpenBook p;
    p.open(marked_file());
    p.files.set_content("d:\\kurz.par", std::string(601 * 30 + 2, '\0') + tagged(Variant("neu")));
    p.dialogs.expect_file("Telefonnummern importieren", std::string("d:\\kurz.par"));
    p.f.mnutele.Click();
    EXPECT_EQ(p.book[0].name.text(), "neu");
    EXPECT_EQ(p.book[0].nummer.text(), "05550");
    EXPECT_EQ(p.book[1].name.text(), "Anlage 1");
}

TEST(PhonebookMenu, calledOffImportsChangeNothing) {
    OpenBook p;
    p.open(file_with(0, "alt"));
    p.dialogs.expect_file("Telefonnummern importieren", failure(RunTimeError::dialog_cancelled));
    p.dialogs.expect_file("Displayaufnahmen importieren", failure(RunTimeError::dialog_cancelled));
    p.f.mnutele.Click();
    p.f.mnudispauf.Click();
    EXPECT_EQ(p.settings.telefonpfad.text(), OpenBook::telefon_par);
    EXPECT_EQ(p.settings.dispaufpfad.text(), OpenBook::dispauf_par);
}

TEST(PhonebookMenu, importingSnapshotsTakesThePathAndReadsNothingUntilTheNextOpening) {
    OpenBook p;
    p.open();
    p.book.dispaufnahmen[0] = "alt";
    p.files.set_content("d:\\auf.par", tagged(Variant("neu")));
    p.dialogs.expect_file("Displayaufnahmen importieren", std::string("d:\\auf.par"));
    p.f.mnudispauf.Click();
    EXPECT_EQ(p.dialogs.last_question.filter, "Alle Dateien (*.*)|*.*");
    EXPECT_EQ(p.dialogs.last_question.folder, "c:\\velorn");
    EXPECT_EQ(p.dialogs.last_question.name, "dispauf.par");
    EXPECT_TRUE(p.dialogs.last_question.saving);
    EXPECT_EQ(p.book.dispaufnahmen[0].text(), "alt");
    p.f.cmdOK.Click();
    p.open();
    EXPECT_EQ(p.book.dispaufnahmen[0].text(), "neu");
}

TEST(PhonebookMenu, aSnapshotsFileThatDoesNotExistComesIntoBeingAtTheNextOpening) {
    OpenBook p;
    p.open();
    p.dialogs.expect_file("Displayaufnahmen importieren", std::string("d:\\fehlt.par"));
    p.f.mnudispauf.Click();
    EXPECT_EQ(p.settings.dispaufpfad.text(), "d:\\fehlt.par");
    EXPECT_FALSE(p.files.exists("d:\\fehlt.par"));
    p.f.cmdOK.Click();
    p.open();
    EXPECT_TRUE(p.files.exists("d:\\fehlt.par"));
    p.f.Command11.Click();
    EXPECT_EQ(p.files.content("d:\\fehlt.par"), std::string(1202, '\0'));
}

} // namespace velorn::test
