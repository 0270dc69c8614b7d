#include "archive/archive_window.h"
#include "runtime/text.h"
#include "support/block_files.h"
#include "support/test_program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velorn::test {

namespace {

constexpr const char* path = "c:\\gelmar.dat";

struct Evaluating : testing::Test {
    TestProgramOn<BlockFiles> p;
    FrmGrafick& f = p.program.frmgrafick;
    Archive& archive = p.program.archive;

    Evaluating() {
        p.start();
        p.program.telefonbuch[0].name = "Gelmar";
        p.module1.telindex = 0;
        p.module1.projektname = "Gelmar  ";
    }
    void opens() {
        p.frmTerminal.tbrToolBar("grafick").Click();
        p.loop.pass(500);
    }
    void asks_for_a_file(Result<std::string> answer) {
        p.dialogs.expect(std::string("bisher keine Datenarchivierungsdatei für <Gelmar> angelegt!"_w), 48,
                         Answer::ok);
        p.dialogs.expect_file("Datenarchivierungsdatei anlegen", std::move(answer));
    }
    void has_an_archive(std::int16_t tracks = 30) {
        ASSERT_TRUE(archive.create(path, 2020, tracks, p.loop.local_time()));
        archive.close();
        p.program.telefonbuch[0].viertdatei = path;
    }
};

} // namespace

TEST_F(Evaluating, needsASite) {
    p.module1.telindex = -1;
    p.dialogs.expect(std::string("Bitte zuerst Eintrag im Telefonbuch auswählen!"_w), 48, Answer::ok);
    opens();
    EXPECT_FALSE(f.geladen);
    EXPECT_FALSE(f.form.Visible);
}

TEST_F(Evaluating, createsAnArchiveAndBindsItAtOnce) {
    asks_for_a_file(std::string(path));
    p.dialogs.expect_input("Startjahr der 1/4h-Aufzeichnung eingeben: (z.B.: 2009)", "2019");
    p.dialogs.expect_input("Anzahl der Datenspuren eingeben (30,60,90,120 oder 150): ", "30");
    opens();
    EXPECT_EQ(p.dialogs.last_question.name, "Gelmar.dat");
    EXPECT_EQ(p.dialogs.last_question.filter, "dat Dateien (*.dat)|*.dat");
    EXPECT_EQ(archive.startjahr.number(), 2019);
    EXPECT_EQ(archive.spuranz, 30);
    EXPECT_TRUE(f.archivgeladen);
    EXPECT_EQ(p.program.telefonbuch[0].viertdatei.text(), path);
    EXPECT_GT(p.files.length("c:\\velorn\\telefon.par"), 0);
    EXPECT_EQ(f.form.Caption.get(), "1/4h-Daten Auswertung  <Gelmar>   Pfad:  c:\\gelmar.dat");
    EXPECT_EQ(f.tagsel, 15);
    EXPECT_EQ(f.jahrsel, 2026);
}

TEST_F(Evaluating, keepsAYearWithinItsLimitsAndAsksForTracksUntilTheyFit) {
    struct Row {
        const char* year;
        int startjahr;
    };
    for (const Row row : {Row{"1999", 2000}, Row{"2051", 2050}, Row{"", 2026}}) {
        p.program.telefonbuch[0].viertdatei = "";
        asks_for_a_file("c:\\jahr" + std::string(row.year) + ".dat");
        p.dialogs.expect_input("Startjahr", row.year);
        for (const char* tracks : {"31", "0", "30"}) p.dialogs.expect_input("Anzahl der Datenspuren", tracks);
        opens();
        EXPECT_EQ(archive.startjahr.number(), row.startjahr);
        f.schliessen.Click();
    }
}

TEST_F(Evaluating, tellsOfAYearThatIsNone) {
    asks_for_a_file(std::string(path));
    p.dialogs.expect_input("Startjahr", "bald");
    p.dialogs.expect(std::string("Typen unverträglich"_w), 48, Answer::ok);
    p.dialogs.expect_input("Anzahl der Datenspuren", "viele");
    p.dialogs.expect(std::string("Typen unverträglich"_w), 48, Answer::ok);
    p.dialogs.expect_input("Anzahl der Datenspuren", "");
    opens();
    EXPECT_EQ(archive.startjahr.number(), 2026);
    EXPECT_EQ(archive.spuranz, 60);
}

TEST_F(Evaluating, closesWhereNoFileIsChosen) {
    asks_for_a_file(failure(RunTimeError::dialog_cancelled));
    opens();
    EXPECT_FALSE(f.geladen);
    EXPECT_EQ(p.program.telefonbuch[0].viertdatei.text(), "");
}

TEST_F(Evaluating, asksBeforeAFileIsReplaced) {
    p.files.set_bytes(path, 0, "etwas anderes");
    asks_for_a_file(std::string(path));
    p.dialogs.expect("Bestehende Datei ersetzen - ", 36, Answer::no);
    p.dialogs.expect_file("Datenarchivierungsdatei anlegen", failure(RunTimeError::dialog_cancelled));
    opens();
    EXPECT_EQ(p.files.bytes(path, 0, 13), "etwas anderes");
}

TEST_F(Evaluating, hidesTheWindowAtTheSecondClickAndShowsItAtTheThird) {
    has_an_archive();
    opens();
    EXPECT_TRUE(f.form.Visible);
    opens();
    EXPECT_FALSE(f.form.Visible);
    EXPECT_TRUE(f.geladen);
    opens();
    EXPECT_TRUE(f.form.Visible);
    EXPECT_EQ(f.opening, 1) << "it was there all the time";
}

TEST_F(Evaluating, staysOpenWhereTheArchiveCantBeSaved) {
    has_an_archive();
    opens();
    archive.set_daten(6, 11, 15, 1, 1, 1.0F);
    (void)p.files.remove(path);
    p.dialogs.expect("Datei nicht gefunden", 48, Answer::ok);
    f.schliessen.Click();
    EXPECT_TRUE(f.geladen);
    EXPECT_EQ(archive.daten(6, 11, 15, 1, 1), 1.0F);
}

TEST_F(Evaluating, asksWhetherADamagedArchiveIsUsed) {
    for (const Answer answer : {Answer::no, Answer::yes}) {
        has_an_archive();
        p.files.set_length(path, 58'100'000); // cut within the calculated tracks' settings or before
        p.files.set_length(path, 58'000'500);
        const std::int64_t before = p.files.length(path);
        p.dialogs.expect("", 48, Answer::ok);
        p.dialogs.expect("Sollen die Daten trotzdem verwendet werden?", 36, answer);
        opens();
        EXPECT_EQ(f.archivgeladen, answer == Answer::yes);
        if (answer == Answer::no) {
            f.schliessen.Click();
            EXPECT_EQ(p.files.length(path), before) << "a damaged load overwrites nothing";
        }
    }
}

TEST_F(Evaluating, tellsThatAnotherProgramHasTheArchiveOpen) {
    has_an_archive();
    const auto lock = p.files.lock(path);
    ASSERT_TRUE(lock);
    p.dialogs.expect("noch in einem anderen Programm", 48, Answer::ok);
    opens();
    EXPECT_TRUE(f.archivgeladen);
}

TEST_F(Evaluating, opensAnotherFileAfterSavingThisOne) {
    has_an_archive();
    opens();
    archive.set_daten(6, 11, 15, 1, 1, 1.0F);
    p.files.copy(path, "c:\\andere.dat");
    p.dialogs.expect_file(std::string("Datenarchivierungsdatei auswählen"_w), std::string("c:\\andere.dat"));
    f.neupfad.Click();
    p.loop.pass(500);
    EXPECT_EQ(f.archivpfad, "c:\\andere.dat");
    EXPECT_EQ(archive.daten(6, 11, 15, 1, 1), -997.0F);
    Archive first(p.files);
    ASSERT_TRUE(first.open(path));
    EXPECT_EQ(first.daten(6, 11, 15, 1, 1), 1.0F);
}

TEST_F(Evaluating, tellsOnceThatADrawingFoundTheFileLost) {
    has_an_archive();
    RecorderCanvas canvas;
    p.program.evaluation.controls.Picture1.canvas = &canvas;
    opens();
    p.files.set_length(path, 20'000'000);
    p.dialogs.expect("", 48, Answer::ok);
    p.program.evaluation.controls.plusjahr.Click();
    p.program.evaluation.controls.minusjahr.Click();
    p.program.evaluation.controls.minusjahr.Click();
    p.loop.pass(500);
    EXPECT_FALSE(f.archivgeladen) << "nothing is written over what is left";
    p.program.evaluation.controls.minusjahr.Click();
    p.loop.pass(500);
    EXPECT_TRUE(f.geladen);
    p.program.evaluation.controls.Picture1.canvas = nullptr;
}

TEST_F(Evaluating, readsNoYearBeforeSomebodyLooks) {
    has_an_archive();
    opens();
    p.files.set_length(path, 20'000'000);
    p.program.evaluation.controls.plusjahr.Click();
    p.loop.pass(500);
    EXPECT_TRUE(f.archivgeladen);
}

TEST_F(Evaluating, fetchesTheNewestValuesAtTheControllersWish) {
    has_an_archive();
    p.module1.grafikfern = true;
    p.program.events.evaluation_wanted();
    p.loop.pass(200);
    EXPECT_EQ(p.sent(), "\x01"
                        "DUE5\r");
    EXPECT_EQ(f.dlphase, 0);
    EXPECT_EQ(f.dlmodus, 1);
    p.receive("\x1b\x1b"
              "D4");
    EXPECT_EQ(p.sent(), "\x08");
    EXPECT_FALSE(f.geladen);
}

} // namespace velorn::test
