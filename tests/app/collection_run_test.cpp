// An unattended run as it goes wrong, and what it says and keeps on the way: its lines byte by byte, its
// times, its ends.
#include "plant/demo_book.h"
#include "runtime/text.h"
#include "support/breakable_disk.h"
#include "support/plant_network.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velorn::test {

namespace {

using ::testing::Contains;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;

enum : std::size_t { on_tcp = 2, on_tcp_too = 3, never_answers = 11 };

const std::string stars = std::string(44, '*') + "\r\n";
const std::string dashes = std::string(44, '-') + "\r\n";
const std::string folder = "s:\\Eigene Dateien\\velorn\\Viertelstundendaten\\log";
const std::string log_path = folder + "\\log261115_1128.txt";

struct CollectionRun : testing::Test {
    TestProgramOn<BreakableDisk> p;
    PlantNetwork plant{p};
    BlockFiles& disk = p.files.disk;
    FrmTelefon& window = p.program.frmtelefon;
    FrmGrafick& f = p.program.frmgrafick;
    Telefonbuch& book = p.program.telefonbuch;

    CollectionRun() {
        p.start();
        p.settings.telefonpfad = "c:\\telefon.par";
        (void)decode_telefonbuch(plant::phone_book(plant.sites.directory(), {true, ""}), book);
        for (int i = 0; i <= Telefonbuch::last_shown; ++i) book[i].autoflag = 0;
        save_book();
        p.program.phonebook_files.save_dispaufnahmen();
    }
    void save_book() { p.program.phonebook_files.save_telefonbuch(); }
    static std::string archive_of(std::size_t site) { return "c:\\archiv" + std::to_string(site) + ".dat"; }
    void takes_part(std::size_t site, int tag = 15, bool full = false) {
        PhoneEntry& entry = book[static_cast<int>(site) + 1];
        entry.autoflag = Telefonbuch::collected;
        entry.viertdatei = archive_of(site);
        save_book();
        Archive archive(disk);
        ASSERT_TRUE(archive.create(archive_of(site), 2026, 30, p.loop.local_time()));
        archive.set_daten(0, 11, tag, 1, 1, 1.0F);
        if (full) archive.set_daten(0, 11, tag, 96, 1, 1.0F);
        ASSERT_TRUE(archive.save());
        archive.close();
    }
    std::string name(std::size_t site) const { return book[static_cast<int>(site) + 1].name.text(); }
    void sets_up() {
        p.program.phonebook_window.Form_Load();
        window.form.Visible = true;
        window.comautohol.Click();
    }
    void starts() {
        sets_up();
        window.comstart.Click();
        p.frmTerminal.txtterm.set_Text({});
    }
    // Until the condition holds; false: it never does.
    bool passes_until(const std::function<bool()>& condition, int most_seconds = 900) {
        for (int i = 0; i < 10 * most_seconds; ++i) {
            if (condition()) return true;
            p.loop.pass(100);
        }
        return false;
    }
    bool ends() {
        return passes_until([this] { return p.terminal().find("Anlagen: ") != std::string::npos; });
    }
    std::string log() { return disk.bytes(log_path, 0, disk.length(log_path)); }
    // Times are those of the virtual clock: their digits don't matter here.
    static std::string without_times(std::string text) {
        for (std::size_t i = 0; i + 7 < text.size(); ++i) {
            if (text[i + 2] == ':' && text[i + 5] == ':') text.replace(i, 8, "hh:mm:ss");
        }
        return text;
    }
    void nobody_speaks() {
        p.tcp.on_write = [](std::string_view) {};
    }
};

} // namespace

// ---- what it says ----

TEST_F(CollectionRun, theLogOfARunIsItsEveryByte) {
    takes_part(on_tcp);
    starts();
    ASSERT_TRUE(ends());
    const std::string first = "Manueller Start 261115_1128";
    EXPECT_EQ(without_times(log()), std::string("\r\n\x08\x00", 4) + static_cast<char>(first.size()) +
                                        std::string(1, '\0') + first + "\r\n" + "\r\n" + stars +
                                        "hh:mm:ss Start automatische Datenabholung  \r\n" + stars + "\r\n" +
                                        dashes + "hh:mm:ss lade Datei von:  " + name(on_tcp) + "\r\n" +
                                        "\r\nhh:mm:ss Anwahl:  \r\n" + "\r\nhh:mm:ss starte Download\r\n" +
                                        "\r\nhh:mm:ss FERTIG! 45 neue 1/4h-Daten   3\r\n" + "\r\n" + stars +
                                        "hh:mm:ss Ende automatische Datenabholung  \r\n" + stars);
    const std::string told = without_times(p.terminal());
    EXPECT_THAT(told, HasSubstr("\r\nhh:mm:ss FERTIG! 45 neue 1/4h-Daten \r\n"));
    EXPECT_THAT(
        told,
        EndsWith(stars + "Anlagen: 1, erreicht: 1, fehlgeschlagen: 0, gespeicherte 1/4h-Daten: 45\r\n"));
}

TEST_F(CollectionRun, littleThatIsNewIsTold) {
    window.vortagcheck.Value = true;
    takes_part(on_tcp);
    starts();
    window.vortagcheck.Value = true;
    ASSERT_TRUE(ends());
    EXPECT_THAT(p.terminal(), HasSubstr(" FERTIG! 0!!!!!!!!!! neue 1/4h-Daten \r\n"));
    EXPECT_THAT(log(), HasSubstr(" FERTIG! 0 neue 1/4h-Daten   3\r\n"));
}

TEST_F(CollectionRun, aFolderThatIsMissingMeansNoLog) {
    p.files.missing_folder = folder;
    takes_part(on_tcp);
    starts();
    EXPECT_FALSE(p.module1.autolog);
    EXPECT_EQ(p.settings.autoholpfad.text(), "");
    ASSERT_TRUE(ends());
    EXPECT_THAT(p.terminal(), HasSubstr(" FERTIG! 45 neue 1/4h-Daten "));
    EXPECT_FALSE(disk.exists(log_path));
}

TEST_F(CollectionRun, aSecondStartInTheSameMinuteGoesOnInTheSameLog) {
    for (int start = 0; start < 2; ++start) {
        sets_up();
        window.comstart.Click();
        p.loop.pass(3000);
    }
    const std::string told = log();
    const std::size_t first = told.find(" Ende automatische Datenabholung  ");
    ASSERT_NE(first, std::string::npos);
    EXPECT_NE(told.find(" Ende automatische Datenabholung  ", first + 1), std::string::npos);
}

// ---- its start ----

TEST_F(CollectionRun, theStateIsShownAndMovesWithTheClock) {
    sets_up();
    window.comuhrplus.Click();
    window.comstart.Click();
    for (Button* button :
         {&window.comstart, &window.comdatplus, &window.comdatminus, &window.comuhrplus, &window.comuhrminus})
        EXPECT_FALSE(button->Enabled);
    EXPECT_FALSE(window.Timer99.Enabled);
    p.loop.pass(1000);
    const DateTime now = p.loop.local_time();
    EXPECT_EQ(window.labzustand.Caption.get(), "warte");
    EXPECT_EQ(window.labzustand.Left, 300 * now.second);
    EXPECT_EQ(window.labzustand.Top, 70 * now.minute);
    EXPECT_EQ(window.labdat.Caption.get(), "15.11.2026");
    EXPECT_EQ(window.labuhr.Caption.get(), time_text(now));
    p.loop.pass(7000);
    EXPECT_EQ(window.labzustand.Left, 300 * p.loop.local_time().second);
}

TEST_F(CollectionRun, aStartIsReachedFieldByField) {
    sets_up(); // 11:28
    window.comuhrminus.Click();
    p.loop.pass(40 * 60'000); // 12:08: the hour is past, the minute isn't
    window.comstart.Click();
    p.loop.pass(19 * 60'000);
    EXPECT_EQ(window.labzustand.Caption.get(), "warte");
    EXPECT_TRUE(window.Timer2.Enabled);
    p.loop.pass(90'000);
    EXPECT_FALSE(window.Timer2.Enabled);
    EXPECT_THAT(p.terminal(), HasSubstr(" Ende automatische Datenabholung  "));
}

TEST_F(CollectionRun, theSearchGoesFrom1To2000) {
    for (const int index : {0, 2001}) book[index].autoflag = Telefonbuch::collected;
    sets_up();
    window.txtstartnr.Text = "0";
    window.txtstopnr.Text = "9999";
    window.comstart.Click();
    ASSERT_TRUE(ends());
    EXPECT_THAT(p.terminal(), HasSubstr("Anlagen: 0,"));
}

TEST_F(CollectionRun, theLastPositionIsReached) {
    book[2000] = book[static_cast<int>(on_tcp) + 1];
    takes_part(on_tcp);
    book[2000].autoflag = Telefonbuch::collected;
    book[2000].viertdatei = archive_of(on_tcp);
    book[static_cast<int>(on_tcp) + 1].autoflag = 0;
    save_book();
    starts();
    ASSERT_TRUE(ends());
    EXPECT_THAT(log(), HasSubstr(" FERTIG! 45 neue 1/4h-Daten   2000\r\n"));
}

TEST_F(CollectionRun, aPositionThatIsNoNumberIsToldAndNothingStarts) {
    sets_up();
    window.txtstopnr.Text = "alle";
    p.dialogs.expect(std::string("Typen unverträglich"_w), 48, Answer::ok);
    window.comstart.Click();
    EXPECT_FALSE(window.Timer2.Enabled);
    EXPECT_TRUE(window.comstart.Enabled);
}

// ---- the wanted range ----

TEST_F(CollectionRun, aFullNewestDayIsNotFetchedAgain) {
    takes_part(on_tcp, 13, true);
    starts();
    ASSERT_TRUE(passes_until([this] { return bool{f.Timer4.Enabled}; }));
    EXPECT_EQ(f.cbodatstart.Text(), "14");
    EXPECT_EQ(f.cbodatstop.Text(), "15");
    EXPECT_EQ(f.cbomonstop.Text(), "11");
    EXPECT_EQ(f.cbojahrstop.Text(), "2026");
}

TEST_F(CollectionRun, aNewestDayThatIsNotFullIsFetchedAgainUpToYesterday) {
    takes_part(on_tcp, 13, false);
    starts();
    window.vortagcheck.Value = true;
    ASSERT_TRUE(passes_until([this] { return bool{f.Timer4.Enabled}; }));
    EXPECT_EQ(f.cbodatstart.Text(), "13");
    EXPECT_EQ(f.cbodatstop.Text(), "14");
}

TEST_F(CollectionRun, aNewestDayThatNoCalendarHasBecomesTheNextMonth) {
    takes_part(on_tcp, 1);
    Archive archive(disk);
    ASSERT_TRUE(archive.open(archive_of(on_tcp)));
    archive.set_daten(0, 11, 31, 1, 1, 1.0F);
    ASSERT_TRUE(archive.save());
    archive.close();
    starts();
    ASSERT_TRUE(passes_until([this] { return bool{f.Timer4.Enabled}; }));
    EXPECT_EQ(f.cbodatstart.Text(), "1");
    EXPECT_EQ(f.cbomonstart.Text(), "12");
}

// A new day has no place behind the archive's ten years: its last one is asked for, and whatever it gives.
TEST_F(CollectionRun, anArchiveWhoseYearsAreOverIsAskedForItsLastDay) {
    takes_part(on_tcp);
    Archive archive(disk);
    ASSERT_TRUE(archive.create(archive_of(on_tcp), 2010, 30, p.loop.local_time()));
    for (const int q : {1, 96}) archive.set_daten(9, 12, 31, q, 1, 1.0F);
    ASSERT_TRUE(archive.save());
    archive.close();
    starts();
    ASSERT_TRUE(ends());
    EXPECT_THAT(p.tcp.take_written(), HasSubstr("3131121220192019"
                                                "1515111120262026"));
    EXPECT_THAT(p.terminal(), HasSubstr(" ABBRUCH (Timeout)"));
    ASSERT_TRUE(archive.open(archive_of(on_tcp)));
    EXPECT_NE(archive.daten(9, 12, 31, 50, 1), -997.0F);
}

// ---- sites that fail ----

TEST_F(CollectionRun, nobodyIsWaitedForLongerThan300Seconds) {
    takes_part(never_answers);
    std::int64_t dialled = 0; // within a second of loading the archive
    p.tcp.on_connect = [&] { dialled = p.loop.now_ms(); };
    starts();
    ASSERT_TRUE(passes_until([&] { return dialled > 0 && !p.module1.autoholen; }));
    EXPECT_NEAR(static_cast<double>(p.loop.now_ms() - dialled), 299'500, 600);
    EXPECT_THAT(without_times(p.terminal()), HasSubstr("\r\nhh:mm:ss KEIN CONNECT\r\n"));
    EXPECT_THAT(without_times(log()), HasSubstr("\r\nhh:mm:ss KEIN CONNECT\r\n"));
    EXPECT_FALSE(f.geladen);
    ASSERT_TRUE(ends());
    EXPECT_THAT(p.terminal(), HasSubstr("Anlagen: 1, erreicht: 0, fehlgeschlagen: 1,"));
}

TEST_F(CollectionRun, aSilentControllerIsGivenUpAndHungUp) {
    takes_part(on_tcp);
    nobody_speaks();
    starts();
    ASSERT_TRUE(passes_until([this] { return bool{f.Timer4.Enabled}; }));
    const std::int64_t begun = p.loop.now_ms();
    ASSERT_TRUE(passes_until([this] { return !p.module1.autoholen; }));
    EXPECT_NEAR(static_cast<double>(p.loop.now_ms() - begun), 16'000, 200);
    EXPECT_THAT(without_times(p.terminal()), HasSubstr("\r\nhh:mm:ss ABBRUCH (Timeout)\r\n"));
    EXPECT_THAT(without_times(log()), HasSubstr("\r\nhh:mm:ss ABBRUCH (Timeout)   3\r\n"));
    ASSERT_TRUE(ends());
    EXPECT_FALSE(p.module1.tcpoffen);
    EXPECT_THAT(p.terminal(), HasSubstr("Verbindung beendet"));
    EXPECT_THAT(p.terminal(), HasSubstr("Anlagen: 1, erreicht: 1, fehlgeschlagen: 1,"));
}

TEST_F(CollectionRun, aControllerThatTalksNonsenseWithoutAPauseIsGivenUp) {
    takes_part(on_tcp);
    nobody_speaks();
    starts();
    ASSERT_TRUE(passes_until([this] { return bool{f.Timer4.Enabled}; }));
    const std::int64_t begun = p.loop.now_ms();
    while (p.module1.autoholen && p.loop.now_ms() - begun < 1'800'000) {
        p.tcp.arrives("das ist kein Datensatz");
        p.loop.pass(5000);
    }
    EXPECT_NEAR(static_cast<double>(p.loop.now_ms() - begun), 1000 * Download::longest_vain, 6000);
    EXPECT_THAT(without_times(p.terminal()), HasSubstr("\r\nhh:mm:ss ABBRUCH (Timeout)\r\n"));
    ASSERT_TRUE(ends());
}

TEST_F(CollectionRun, aBoxOfAnotherWindowAnswersItselfAfterAMinute) {
    takes_part(on_tcp);
    starts();
    ASSERT_TRUE(passes_until([this] { return bool{f.Timer4.Enabled}; }));
    p.settings.fbautostart = std::int16_t{0};
    p.frmTerminal.Timer3.Tick(); // remote control has ended
    EXPECT_THAT(p.dialogs.shown(), Contains(HasSubstr("Verbindung getrennt werden")));
    ASSERT_TRUE(ends());
    EXPECT_THAT(p.terminal(), HasSubstr(" FERTIG! 45 neue 1/4h-Daten "));
}

TEST_F(CollectionRun, tenSecondsLieBetweenTwoSites) {
    takes_part(on_tcp);
    takes_part(on_tcp_too);
    book[static_cast<int>(on_tcp) + 1].viertdatei = "";
    book[static_cast<int>(on_tcp_too) + 1].viertdatei = "";
    save_book();
    starts();
    ASSERT_TRUE(passes_until([this] { return p.module1.autoholen; }));
    ASSERT_TRUE(passes_until([this] { return !p.module1.autoholen; }));
    const std::int64_t ended = p.loop.now_ms();
    ASSERT_TRUE(passes_until([this] { return p.module1.telindex == static_cast<int>(on_tcp_too) + 1; }));
    EXPECT_NEAR(static_cast<double>(p.loop.now_ms() - ended), 11'000, 1000);
    ASSERT_TRUE(ends());
    EXPECT_THAT(log(), HasSubstr(" DATEI EXISTIERT NICHT!!!\r\n"));
    EXPECT_THAT(p.terminal(), HasSubstr("Anlagen: 2, erreicht: 0, fehlgeschlagen: 2,"));
}

TEST_F(CollectionRun, closingTheWindowByHandEndsTheSite) {
    takes_part(never_answers);
    takes_part(on_tcp);
    starts(); // the site on the network comes first
    ASSERT_TRUE(passes_until([this] { return p.module1.autoholen && !p.module1.dateiladen; }));
    p.loop.pass(200);
    f.schliessen.Click();
    EXPECT_FALSE(p.module1.autoholen);
    ASSERT_TRUE(
        passes_until([this] { return p.module1.telindex == static_cast<int>(never_answers) + 1; }, 60));
    ASSERT_TRUE(ends());
    EXPECT_THAT(p.terminal(), HasSubstr("Anlagen: 2,"));
    EXPECT_THAT(p.terminal(), HasSubstr("fehlgeschlagen: 2, gespeicherte 1/4h-Daten: 0\r\n"));
}

TEST_F(CollectionRun, aSiteThatCannotBeSavedHasFailedAndItsDiaryStays) {
    takes_part(on_tcp);
    p.files.full_for = "archiv2.dat.journal";
    starts();
    ASSERT_TRUE(ends());
    EXPECT_THAT(p.terminal(), HasSubstr(" Festplatte voll"));
    EXPECT_THAT(log(), HasSubstr(" Festplatte voll"));
    EXPECT_THAT(p.terminal(),
                HasSubstr("Anlagen: 1, erreicht: 1, fehlgeschlagen: 1, gespeicherte 1/4h-Daten: 0\r\n"));
    EXPECT_TRUE(disk.exists(archive_of(on_tcp) + ".tagebuch"));
    p.files.full_for = "";
    Archive archive(disk);
    DownloadDiary diary(disk);
    ASSERT_TRUE(archive.open(archive_of(on_tcp)));
    EXPECT_EQ(diary.take_over(archive), 45);
}

TEST_F(CollectionRun, anArchiveLostBeforeTheConnectionIsNotDownloadedInto) {
    takes_part(on_tcp);
    p.tcp.on_connect = [this, connect = p.tcp.on_connect] {
        (void)disk.remove(archive_of(on_tcp));
        connect();
    };
    starts();
    ASSERT_TRUE(ends());
    EXPECT_THAT(p.terminal(), HasSubstr(" Datei nicht gefunden"));
    EXPECT_THAT(p.terminal(), Not(HasSubstr("starte Download")));
    EXPECT_FALSE(p.module1.tcpoffen) << "hung up";
    EXPECT_FALSE(disk.exists(archive_of(on_tcp)));
}

TEST_F(CollectionRun, aDiskWithoutRoomForTheSettingsStopsNothing) {
    takes_part(on_tcp);
    starts();
    p.files.full_for = "lan.par";
    ASSERT_TRUE(ends());
    EXPECT_THAT(p.terminal(), HasSubstr(" FERTIG! 45 neue 1/4h-Daten "));
    EXPECT_THAT(log(), HasSubstr(" Festplatte voll\r\n"));
}

// ---- a person who was there before ----

TEST_F(CollectionRun, aBoxThatAPersonLeftOpenDoesNotStopTheRun) {
    takes_part(on_tcp);
    sets_up();
    window.comuhrplus.Click();
    window.comstart.Click();
    p.module1.telindex = static_cast<std::int16_t>(on_tcp_too) + 1; // it has no archive
    p.dialogs.expect("bisher keine Datenarchivierungsdatei", 48, Answer::ok, {}, 2 * 3'600'000);
    p.program.archive_window.show();
    p.loop.pass(500); // the box stays open till the early morning
    EXPECT_THAT(log(), HasSubstr(" FERTIG! "));
    EXPECT_THAT(log(), HasSubstr(" Ende automatische Datenabholung  "));
}

TEST_F(CollectionRun, aSelectionInTheMeantimeChangesNeitherTheSiteNorItsNumber) {
    takes_part(on_tcp);
    starts();
    const auto select_another = [this] {
        EXPECT_TRUE(p.module1.autoholen && !p.module1.dateiladen);
        p.module1.telindex = static_cast<std::int16_t>(on_tcp_too) + 1;
    };
    for (const int ms : {1500, 2500}) p.loop.post_at(p.loop.now_ms() + ms, select_another);
    std::string called;
    p.tcp.on_connect = [this, &called, connect = p.tcp.on_connect] {
        called = p.tcp.host;
        connect();
    };
    ASSERT_TRUE(ends());
    EXPECT_EQ(called, plant.sites.directory().sites()[on_tcp].address);
    EXPECT_THAT(log(), HasSubstr(" FERTIG! 45 neue 1/4h-Daten   3\r\n"));
    p.tcp.on_connect = nullptr;
}

TEST_F(CollectionRun, aWindowThatAPersonLeftOpenDoesNotStopTheRun) {
    takes_part(on_tcp);
    takes_part(on_tcp_too);
    p.module1.telindex = static_cast<std::int16_t>(on_tcp_too) + 1;
    p.program.archive_window.show();
    p.loop.pass(500);
    p.program.archive.set_daten(0, 1, 1, 1, 1, 5.0F);
    p.files.full_for = "archiv3.dat.journal";
    book[static_cast<int>(on_tcp_too) + 1].autoflag = 0;
    save_book();
    starts();
    ASSERT_TRUE(ends());
    EXPECT_THAT(p.terminal(), HasSubstr(" Festplatte voll"));
    EXPECT_THAT(p.terminal(), HasSubstr(" FERTIG! 45 neue 1/4h-Daten "));
}

TEST_F(CollectionRun, givenUpItDialsNobody) {
    takes_part(on_tcp);
    starts();
    ASSERT_TRUE(passes_until([this] { return p.module1.autoholen; }));
    window.abbruch.Click();
    p.loop.pass(400'000);
    EXPECT_EQ(p.tcp.connects, 0);
    EXPECT_THAT(p.terminal(), Not(HasSubstr("starte Download")));
    EXPECT_THAT(p.terminal(), Not(HasSubstr("KEIN CONNECT")));
    EXPECT_FALSE(p.module1.autoholen || p.module1.dateiladen || p.module1.autoverbindung);
}

TEST_F(CollectionRun, givenUpWhileABoxIsOpenItDialsNobody) {
    takes_part(on_tcp);
    p.module1.telindex = static_cast<std::int16_t>(on_tcp) + 1;
    p.program.archive_window.show();
    p.loop.pass(500);
    p.program.archive.set_daten(0, 1, 1, 1, 1, 5.0F);
    p.files.full_for = "archiv2.dat.journal";
    p.dialogs.expect("Festplatte voll", 48, Answer::ok, [this] { window.abbruch.Click(); });
    starts();
    p.loop.pass(400'000);
    EXPECT_EQ(p.tcp.connects, 0);
    EXPECT_FALSE(p.module1.autoholen);
}

// ---- a crash ----

TEST_F(CollectionRun, theNextStartEndsARunThatWasCutOff) {
    takes_part(on_tcp);
    nobody_speaks();
    starts();
    ASSERT_TRUE(passes_until([this] { return bool{f.Timer4.Enabled}; }));

    TestProgramOn<BreakableDisk> next;
    for (const std::string& file : disk.names()) {
        if (!file.ends_with(".sperre")) next.files.disk.set_content(file, disk.content(file));
    }
    next.start();
    EXPECT_EQ(next.settings.autoholnr.number(), 3);
    EXPECT_EQ(next.settings.autoholpfad.text(), log_path);
    next.loop.pass(40'000);
    EXPECT_THAT(next.terminal(),
                HasSubstr("Fortsetzung autom. Datenabholung (Abbrechen mit Velorn beenden) ."));
    EXPECT_THAT(next.terminal(), HasSubstr(" Ende automatische Datenabholung  "));
    EXPECT_EQ(next.tcp.connects, 0);
    const std::string told =
        next.files.disk.bytes(log_path, 0, next.files.disk.length(log_path)).substr(log().size());
    EXPECT_EQ(told.substr(0, 39), "\r\nAutomatischer Start 261115_1128_Nr000");
    EXPECT_THAT(told, HasSubstr(" Ende automatische Datenabholung  "));
    EXPECT_EQ(next.settings.autoholnr.number(), 0);
    EXPECT_EQ(next.settings.autoholpfad.text(), "");
}

} // namespace velorn::test
