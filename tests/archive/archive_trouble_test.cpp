// The evaluation window when something is wrong with its archive's file, or with what a person wants of it.
#include "archive/archive_window.h"
#include "runtime/text.h"
#include "support/breakable_disk.h"
#include "support/test_program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velorn::test {

namespace {

using ::testing::HasSubstr;
using ::testing::Not;

constexpr const char* path = "c:\\gelmar.dat";
const std::string diary = std::string(path) + ".tagebuch";
const std::string esc2 = "\x1b\x1b";
const char* const use_it = "Sollen die Daten trotzdem verwendet werden?";
const char* const full_disk = "Festplatte voll";

// Has the archive open, with a data set in its diary. When it goes it saves nothing.
struct AnotherProgram {
    Archive archive;
    DownloadDiary theirs;

    explicit AnotherProgram(BlockFiles& disk) : archive(disk), theirs(disk) {
        EXPECT_TRUE(archive.open(path));
        EXPECT_TRUE(theirs.begin(archive));
        EXPECT_TRUE(theirs.add(0, 11, 15, 5, std::array<float, 1>{3.0F}));
    }
};

struct Trouble : testing::Test {
    TestProgramOn<BreakableDisk> p;
    BlockFiles& disk = p.files.disk;
    FrmGrafick& f = p.program.frmgrafick;
    Archive& archive = p.program.archive;

    Trouble() {
        p.start();
        p.program.telefonbuch[0].name = "Gelmar";
        p.program.telefonbuch[1].name = "Nachbar";
        p.module1.telindex = 0;
        p.module1.projektname = "Gelmar";
    }
    void has_an_archive(int site = 0, const std::string& where = path) {
        ASSERT_TRUE(archive.create(where, 2026, 30, p.loop.local_time()));
        archive.close();
        p.program.telefonbuch[site].viertdatei = where;
    }
    void opens() {
        p.program.archive_window.show();
        p.loop.pass(500);
    }
    // Quarter-hour packets of one track each are taken from here on.
    void downloads() {
        f.opendathol.Click();
        f.optuebertrag.select(1);
        f.download.Click();
        p.receive("0101kW   kW   Leistung      Leistung      " + esc2 + "D5");
        p.loop.pass(2000);
        p.receive(esc2 + "D6");
        (void)p.sent();
    }
    static std::string packet(const char* head) { return std::string(head) + "    12,5\x1b\x1b" + "D5"; }
    bool packet_is_taken(const char* head) {
        p.receive(packet(head));
        p.loop.pass(200);
        return p.sent() == "OK";
    }
};

} // namespace

// ---- a file that is no archive ----

TEST_F(Trouble, aFileOfAMillionBytesIsNeitherCreatedAnewNorRead) {
    for (const Answer answer : {Answer::no, Answer::yes}) {
        disk.set_content(path, {});
        disk.set_bytes(path, 0, std::string(1'000'000, 'x'));
        p.program.telefonbuch[0].viertdatei = path;
        p.dialogs.expect(use_it, 36, answer);
        opens();
        EXPECT_EQ(f.archivgeladen, answer == Answer::yes);
        EXPECT_EQ(archive.spuranz, 60);
        EXPECT_EQ(archive.spurnamen[0].text(), "<1>-<2>");
        downloads();
        EXPECT_TRUE(packet_is_taken("15110001")) << "its years begin in 2000";
        EXPECT_EQ(archive.daten(0, 11, 15, 1, 1), 12.5F);
        f.schliessen.Click();
        EXPECT_EQ(disk.length(path), answer == Answer::yes ? 106'532'091 + 5 - 2 : 1'000'000);
        EXPECT_FALSE(f.geladen);
        (void)disk.remove(diary);
    }
}

TEST_F(Trouble, aByteLessIsCreatedAnew) {
    disk.set_bytes(path, 0, std::string(999'999, 'x'));
    p.program.telefonbuch[0].viertdatei = path;
    p.dialogs.expect(std::string("bisher keine Datenarchivierungsdatei für <Gelmar> angelegt!"_w), 48,
                     Answer::ok);
    p.dialogs.expect_file("Datenarchivierungsdatei anlegen", failure(RunTimeError::dialog_cancelled));
    opens();
    EXPECT_FALSE(f.geladen);
}

TEST_F(Trouble, aByteAboveARangeKeepsTheTracksOfTheWindowsLastArchive) {
    has_an_archive();
    opens();
    f.schliessen.Click();
    disk.set_length(path, 59'000'000);
    opens();
    EXPECT_TRUE(f.archivgeladen);
    EXPECT_EQ(archive.spuranz, 30);
    EXPECT_EQ(archive.archivversion, 2);
}

TEST_F(Trouble, aDamagedArchiveGetsTheFormulasThatItsSettingsLack) {
    has_an_archive();
    disk.set_bytes(path, 50'036'480 + 1169, "\x63"); // behind the tracks' arrays
    p.dialogs.expect(std::string("Typen unverträglich"_w), 48, Answer::ok);
    p.dialogs.expect(use_it, 36, Answer::yes);
    opens();
    EXPECT_EQ(archive.archivstand.number(), 105);
    EXPECT_EQ(archive.formel1spuren[2].number(), 2);
    EXPECT_EQ(archive.formel2ops[10].number(), 2);
    EXPECT_EQ(archive.rechdaten(1, 2, 31, 1, 0), 1003.0F);
    EXPECT_EQ(archive.ganzjahr.number(), 8760);
}

// ---- a file that is lost while it is open ----

TEST_F(Trouble, aFileThatVanishesDuringADownloadIsToldAndNothingIsAcknowledged) {
    has_an_archive();
    opens();
    downloads();
    (void)disk.remove(path);
    p.dialogs.expect("Datei nicht gefunden", 48, Answer::ok);
    EXPECT_FALSE(packet_is_taken("15113001")) << "of a year that isn't in memory";
    EXPECT_FALSE(f.archivgeladen);
    EXPECT_FALSE(packet_is_taken("15113002")) << "and it is told once";
    f.schliessen.Click();
    EXPECT_FALSE(f.geladen);
    EXPECT_FALSE(disk.exists(path)) << "nothing is written any more";
}

TEST_F(Trouble, aFileThatIsCutDuringADownloadIsTold) {
    has_an_archive();
    opens();
    downloads();
    disk.set_length(path, 20'000'000);
    p.dialogs.expect("Fehler beim Zugriff auf Pfad oder Datei", 48, Answer::ok);
    EXPECT_FALSE(packet_is_taken("15113001"));
    EXPECT_FALSE(f.archivgeladen);
    f.schliessen.Click();
    EXPECT_EQ(disk.length(path), 20'000'000);
}

TEST_F(Trouble, aFileThatIsLostBeforeTheModeIsChosenIsTold) {
    has_an_archive();
    opens();
    f.opendathol.Click();
    (void)disk.remove(path);
    p.dialogs.expect("Datei nicht gefunden", 48, Answer::ok);
    f.optuebertrag.select(0);
    EXPECT_FALSE(f.archivgeladen);
}

// ---- a disk that is full ----

TEST_F(Trouble, aFullDiskIsToldAndTheDataStayInMemory) {
    has_an_archive();
    opens();
    downloads();
    ASSERT_TRUE(packet_is_taken("15112601"));
    p.files.full_for = "gelmar.dat.journal";
    p.dialogs.expect(full_disk, 48, Answer::ok);
    f.schliessen.Click();
    EXPECT_TRUE(f.geladen) << "closing is called off";
    EXPECT_TRUE(f.archivgeladen);
    EXPECT_EQ(archive.daten(0, 11, 15, 1, 1), 12.5F);
    EXPECT_TRUE(disk.exists(diary)) << "nothing is saved yet";
    p.files.full_for = "";
    f.schliessen.Click();
    EXPECT_FALSE(f.geladen);
    EXPECT_FALSE(disk.exists(diary));
    ASSERT_TRUE(archive.open(path));
    EXPECT_EQ(archive.daten(0, 11, 15, 1, 1), 12.5F);
}

TEST_F(Trouble, aDownloadGoesOnWhereItsDiaryCannotBeWritten) {
    has_an_archive();
    opens();
    p.files.full_for = ".tagebuch";
    downloads();
    EXPECT_TRUE(packet_is_taken("15112601"));
    EXPECT_TRUE(packet_is_taken("15112602"));
    f.schliessen.Click();
    ASSERT_TRUE(archive.open(path));
    EXPECT_EQ(archive.daten(0, 11, 15, 2, 1), 12.5F);
}

TEST_F(Trouble, anArchiveThatCannotBeCreatedIsToldAndTheWindowCloses) {
    p.files.full_for = "gelmar.dat";
    p.dialogs.expect("bisher keine Datenarchivierungsdatei", 48, Answer::ok);
    p.dialogs.expect_file("Datenarchivierungsdatei anlegen", std::string(path));
    p.dialogs.expect_input("Startjahr", "");
    p.dialogs.expect_input("Anzahl der Datenspuren", "30");
    p.dialogs.expect(full_disk, 48, Answer::ok);
    opens();
    EXPECT_FALSE(f.geladen);
    EXPECT_FALSE(disk.exists(path));
    EXPECT_EQ(p.program.telefonbuch[0].viertdatei.text(), path) << "it was bound before";
}

// ---- the diary ----

TEST_F(Trouble, theDiaryOfAnUnsavedArchiveOutlivesTheNextSite) {
    has_an_archive();
    opens();
    downloads();
    ASSERT_TRUE(packet_is_taken("15112601"));
    p.files.full_for = "gelmar.dat.journal";
    p.module1.autoholen = true; // nobody is there: the window closes in spite of it
    f.schliessen.Click();
    EXPECT_FALSE(f.geladen);
    EXPECT_THAT(p.terminal(), HasSubstr(full_disk));
    ASSERT_TRUE(disk.exists(diary));

    p.module1.telindex = 1;
    p.module1.autoholen = true;
    opens(); // it has no archive
    EXPECT_THAT(p.terminal(), HasSubstr(" DATEI EXISTIERT NICHT!!!"));
    EXPECT_FALSE(f.geladen);
    EXPECT_TRUE(disk.exists(diary));

    p.files.full_for = "";
    p.module1.telindex = 0;
    opens();
    EXPECT_EQ(archive.daten(0, 11, 15, 1, 1), 12.5F);
    EXPECT_THAT(p.terminal(), HasSubstr(std::string("1 1/4h-Daten eines nicht gespeicherten Downloads "
                                                    "übernommen: c:\\gelmar.dat"_w)));
}

TEST_F(Trouble, anArchiveLostDuringADownloadKeepsItsDiary) {
    has_an_archive();
    opens();
    downloads();
    ASSERT_TRUE(packet_is_taken("15112601"));
    const BlockFiles::Content content = disk.content(path);
    (void)disk.remove(path);
    // The year is in memory; only the save finds out.
    ASSERT_TRUE(packet_is_taken("15112602"));
    p.dialogs.expect("Datei nicht gefunden", 48, Answer::ok);
    f.schliessen.Click();
    EXPECT_TRUE(f.geladen);
    EXPECT_TRUE(disk.exists(diary));
    disk.set_content(path, content);
    f.schliessen.Click();
    EXPECT_FALSE(f.geladen);
    ASSERT_TRUE(archive.open(path));
    EXPECT_EQ(archive.daten(0, 11, 15, 2, 1), 12.5F);
}

TEST_F(Trouble, aSecondProgramLeavesTheFirstOnesDiaryAlone) {
    has_an_archive();
    {
        const AnotherProgram first(disk);
        const std::string before = disk.bytes(diary, 0, disk.length(diary));
        p.dialogs.expect("noch in einem anderen Programm", 48, Answer::ok);
        opens();
        EXPECT_THAT(p.terminal(), Not(HasSubstr("nicht gespeicherten Downloads")));
        downloads();
        EXPECT_TRUE(packet_is_taken("15112601"));
        EXPECT_EQ(disk.bytes(diary, 0, disk.length(diary)), before);
        f.schliessen.Click();
        EXPECT_TRUE(disk.exists(diary));
    }
    opens();
    EXPECT_EQ(archive.daten(0, 11, 15, 5, 1), 3.0F);
}

TEST_F(Trouble, aNewArchiveInThePlaceOfAnotherTakesNothingOfItsDiary) {
    has_an_archive();
    { const AnotherProgram crashed(disk); }
    p.program.telefonbuch[0].viertdatei = "";
    p.dialogs.expect("bisher keine Datenarchivierungsdatei", 48, Answer::ok);
    p.dialogs.expect_file("Datenarchivierungsdatei anlegen", std::string(path));
    p.dialogs.expect("Bestehende Datei ersetzen - ", 36, Answer::yes);
    p.dialogs.expect_input("Startjahr", "2026");
    p.dialogs.expect_input("Anzahl der Datenspuren", "30");
    opens();
    EXPECT_EQ(archive.daten(0, 11, 15, 5, 1), -997.0F);
    EXPECT_FALSE(disk.exists(diary));
}

TEST_F(Trouble, aSecondProgramIsToldOfADamagedArchiveToo) {
    has_an_archive();
    disk.set_bytes(path, 50'036'480 + 1169, "\x63");
    const auto lock = disk.lock(path);
    p.dialogs.expect(std::string("Typen unverträglich"_w), 48, Answer::ok);
    p.dialogs.expect("noch in einem anderen Programm", 48, Answer::ok);
    p.dialogs.expect(use_it, 36, Answer::no);
    opens();
    EXPECT_FALSE(f.archivgeladen);
}

// ---- choosing a file ----

TEST_F(Trouble, anEmptyNameIsAskedForAgainAndTheBoxesProposeWhatIsUsual) {
    p.dialogs.expect("bisher keine Datenarchivierungsdatei", 48, Answer::ok);
    for (const char* name : {"", "", path})
        p.dialogs.expect_file("Datenarchivierungsdatei anlegen", std::string(name));
    p.dialogs.expect_input("Startjahr der 1/4h-Aufzeichnung eingeben: (z.B.: 2009)", std::nullopt);
    p.dialogs.expect_input("Anzahl der Datenspuren eingeben (30,60,90,120 oder 150): ", "30");
    opens();
    EXPECT_EQ(p.dialogs.last_title, "Datenspuren");
    EXPECT_EQ(p.dialogs.last_proposal, "60");
    EXPECT_TRUE(f.archivgeladen);
    EXPECT_EQ(archive.startjahr.number(), 2026);
}

TEST_F(Trouble, aNameThatIsRefusedIsToldAndTheWindowStays) {
    p.dialogs.expect("bisher keine Datenarchivierungsdatei", 48, Answer::ok);
    p.dialogs.expect_file("Datenarchivierungsdatei anlegen", failure(RunTimeError::path_file_access));
    p.dialogs.expect("Fehler beim Zugriff auf Pfad oder Datei", 48, Answer::ok);
    opens();
    EXPECT_TRUE(f.geladen);
    EXPECT_FALSE(f.archivgeladen);
    f.opendathol.Click();
    f.download.Click(); // nothing to put it into
    p.receive("0101kW   kW   Leistung      Leistung      " + esc2 + "D5");
    p.receive(esc2 + "D6");
    p.receive(packet("15112601"));
    f.optuebertrag.select(0);
    f.closedathol.Click(); // draws anew
    EXPECT_EQ(archive.daten(9, 12, 31, 96, 0), -997.0F);
    EXPECT_TRUE(archive.year(3).size() > 0);
    f.schliessen.Click();
    EXPECT_FALSE(f.geladen);
}

TEST_F(Trouble, theBindingIsOnTheDiskBeforeTheFileIs) {
    p.files.full_for = "gelmar.dat";
    p.dialogs.expect("bisher keine Datenarchivierungsdatei", 48, Answer::ok);
    p.dialogs.expect_file("Datenarchivierungsdatei anlegen", std::string(path));
    p.dialogs.expect_input("Startjahr", "");
    p.dialogs.expect_input("Anzahl der Datenspuren", "30");
    p.dialogs.expect(full_disk, 48, Answer::ok);
    opens();
    const std::string book = disk.bytes("c:\\velorn\\telefon.par", 0, disk.length("c:\\velorn\\telefon.par"));
    EXPECT_NE(book.find(path), std::string::npos);
}

TEST_F(Trouble, noOtherFileClosesTheWindowAndSavesTheArchive) {
    has_an_archive();
    opens();
    archive.set_daten(0, 11, 15, 1, 1, 1.0F);
    p.dialogs.expect_file(std::string("Datenarchivierungsdatei auswählen"_w), std::string());
    p.dialogs.expect_file(std::string("Datenarchivierungsdatei auswählen"_w),
                          failure(RunTimeError::dialog_cancelled));
    f.neupfad.Click();
    EXPECT_EQ(p.dialogs.last_question.filter, "dat Dateien (*.dat)|*.dat");
    EXPECT_FALSE(f.geladen);
    ASSERT_TRUE(archive.open(path));
    EXPECT_EQ(archive.daten(0, 11, 15, 1, 1), 1.0F);
}

TEST_F(Trouble, anotherFileThatIsRefusedIsToldAndTheArchiveStays) {
    has_an_archive();
    opens();
    p.dialogs.expect_file(std::string("Datenarchivierungsdatei auswählen"_w),
                          failure(RunTimeError::path_file_access));
    p.dialogs.expect("Fehler beim Zugriff auf Pfad oder Datei", 48, Answer::ok);
    f.neupfad.Click();
    EXPECT_TRUE(f.geladen);
    EXPECT_TRUE(archive.is_open());
    EXPECT_EQ(p.program.telefonbuch[0].viertdatei.text(), path);
}

TEST_F(Trouble, whatIsStillReceivedBetweenTwoFilesGoesNowhere) {
    has_an_archive();
    opens();
    downloads();
    p.dialogs.expect_file(std::string("Datenarchivierungsdatei auswählen"_w), std::string("c:\\neu.dat"));
    f.neupfad.Click();
    p.dialogs.expect("bisher keine Datenarchivierungsdatei", 48, Answer::ok,
                     [this] { p.receive(packet("15112601")); });
    p.dialogs.expect_file("Datenarchivierungsdatei anlegen", failure(RunTimeError::dialog_cancelled));
    p.loop.pass(500);
    EXPECT_FALSE(f.geladen);
    EXPECT_EQ(p.sent(), "");
    EXPECT_EQ(p.program.telefonbuch[0].viertdatei.text(), "c:\\neu.dat");
}

// ---- what opening and closing carry along ----

TEST_F(Trouble, openingShowsTheNewestDayTheModeAndTheViewOfTheLastClose) {
    has_an_archive();
    ASSERT_TRUE(archive.open(path));
    archive.set_daten(3, 4, 5, 1, 1, 1.0F);
    archive.set_daten(3, 4, 5, 96, 1, 1.0F);
    archive.set_daten(1, 2, 31, 2, 0, -999.0F);
    ASSERT_TRUE(archive.save());
    opens();
    EXPECT_EQ(f.neudat.Caption.get(), "05");
    EXPECT_EQ(f.neumon.Caption.get(), "04");
    EXPECT_EQ(f.neujah.Caption.get(), "2029");
    EXPECT_TRUE(f.tagvoll);
    EXPECT_EQ(f.dlmodus, 0);
    f.tagsel = 7;
    f.monsel = 8;
    f.jahrsel = 2027;
    archive.set_daten(1, 2, 31, 2, 0, -997.0F);
    f.schliessen.Click();
    opens();
    EXPECT_EQ(f.tagsel, 7);
    EXPECT_EQ(f.monsel, 8);
    EXPECT_EQ(f.jahrsel, 2027);
    EXPECT_EQ(f.dlmodus, 1);
}

TEST_F(Trouble, carriedAlongValuesAreKeptByteForByte) {
    has_an_archive();
    ASSERT_TRUE(archive.open(path));
    archive.archivflag = "irgendwas";
    archive.archivwert1 = 1.25;
    archive.archivwert2 = Null();
    archive.archivwert3 = Currency{12345};
    archive.reserve1_6[0] = "eins";
    archive.reserve1_6[5] = DateSerial{41000.25};
    archive.formel1ops[0] = float{2.5F};
    archive.bspurfarben[5] = std::int32_t{7};
    ASSERT_TRUE(archive.save());
    archive.close();
    const std::string before = disk.bytes(path, 50'036'480, 5000);
    opens();
    f.schliessen.Click();
    EXPECT_EQ(disk.bytes(path, 50'036'480, 5000), before);
}

TEST_F(Trouble, closingClearsTheFlagsOfTheDownloadAndOfTheRun) {
    has_an_archive();
    opens();
    downloads();
    p.module1.autoholen = true;
    f.schliessen.Click();
    EXPECT_FALSE(p.module1.empfgrafick);
    EXPECT_FALSE(p.module1.autoholen);
    EXPECT_FALSE(p.module1.grafikoffen);
}

} // namespace velorn::test
