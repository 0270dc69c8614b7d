// Unattended collection by the whole program, with the plant's sites on the network and behind a modem.
#include "plant/demo_book.h"
#include "plant/quarter_values.h"
#include "runtime/text.h"
#include "support/block_files.h"
#include "support/plant_network.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velorn::test {

namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;

// Places in the directory.
enum : std::size_t { with_login = 0, on_tcp = 2, on_modem = 7, busy = 9, never_answers = 11 };

constexpr int year = 0; // of the archive: 2026

struct Collecting : testing::Test {
    TestProgramOn<BlockFiles> p;
    PlantNetwork plant{p};
    FrmTelefon& window = p.program.frmtelefon;

    Collecting() {
        p.start();
        p.settings.telefonpfad = "c:\\telefon.par";
        Telefonbuch& book = p.program.telefonbuch;
        (void)decode_telefonbuch(plant::phone_book(plant.sites.directory(), {true, ""}), book);
        for (int i = 0; i <= Telefonbuch::last_shown; ++i) book[i].autoflag = 0;
        p.program.phonebook_files.save_telefonbuch();
        p.program.phonebook_files.save_dispaufnahmen();
    }
    static std::string archive_of(std::size_t site) { return "c:\\archiv" + std::to_string(site) + ".dat"; }
    // A site that takes part, with an archive that is complete up to yesterday.
    void takes_part(std::size_t site, bool has_archive = true) {
        PhoneEntry& entry = p.program.telefonbuch[static_cast<int>(site) + 1];
        entry.autoflag = Telefonbuch::collected;
        p.program.phonebook_files.save_telefonbuch();
        if (!has_archive) return;
        entry.viertdatei = archive_of(site);
        p.program.phonebook_files.save_telefonbuch();
        Archive archive(p.files);
        ASSERT_TRUE(archive.create(archive_of(site), 2026, 30, p.loop.local_time()));
        for (const int q : {1, 96}) archive.set_daten(year, 11, 14, q, 1, 1.0F);
        ASSERT_TRUE(archive.save());
        archive.close();
    }
    void collects(std::int64_t for_ms) {
        p.program.phonebook_window.Form_Load();
        window.form.Visible = true;
        window.comautohol.Click();
        window.comstart.Click();
        p.frmTerminal.txtterm.set_Text({});
        p.loop.pass(for_ms);
    }
    std::string log() {
        const auto bytes = p.files.length(log_path);
        return p.files.bytes(log_path, 0, bytes);
    }
    const std::string log_path = "s:\\Eigene Dateien\\velorn\\Viertelstundendaten\\log\\log261115_1128.txt";

    // Today's values up to the newest one, as the plant has them.
    void expect_today_stored(std::size_t site) {
        Archive archive(p.files);
        ASSERT_TRUE(archive.open(archive_of(site)));
        const plant::Recording recording{plant.sites.directory().sites()[site].seed,
                                         plant.sites.directory().sites()[site].tracks};
        const long today = days_from_civil(2026, 11, 15);
        for (int q = 1; q <= 45; ++q) {
            for (int t = 1; t <= recording.tracks; ++t) {
                ASSERT_EQ(archive.daten(year, 11, 15, q, t), plant::stored(recording, t, {today, q}))
                    << q << ' ' << t;
            }
        }
        EXPECT_EQ(archive.daten(year, 11, 15, 50, 1), -997.0F);
        EXPECT_EQ(archive.daten(year, 11, 14, 2, 1), -997.0F) << "nothing else is touched";
        EXPECT_EQ(archive.spurnamen[1].text().size(), 14U);
    }
};

} // namespace

TEST_F(Collecting, storesWhatTheSiteHasSinceTheNewestDay) {
    takes_part(on_tcp);
    collects(180'000);
    expect_today_stored(on_tcp);
    EXPECT_THAT(p.terminal(), HasSubstr(" FERTIG! 45 neue 1/4h-Daten "));
    EXPECT_THAT(p.terminal(), HasSubstr(" Ende automatische Datenabholung  "));
    EXPECT_THAT(p.terminal(),
                HasSubstr("Anlagen: 1, erreicht: 1, fehlgeschlagen: 0, gespeicherte 1/4h-Daten: 45\r\n"));
    EXPECT_FALSE(p.frmTerminal.fernbedaktiv);
    EXPECT_FALSE(p.module1.tcpoffen);
    EXPECT_FALSE(window.geladen);
    EXPECT_EQ(p.settings.autoholnr.number(), 0);
}

TEST_F(Collecting, tellsItsStepsInTheLog) {
    takes_part(on_tcp);
    collects(180'000);
    const std::string told = log();
    EXPECT_EQ(told.substr(0, 4), std::string("\r\n\x08\x00", 4));
    std::size_t at = 0;
    for (const char* step : {"Manueller Start 261115_1128", " Start automatische Datenabholung  ",
                             " lade Datei von:  Krankenhaus Sankt", " Anwahl:  ", " starte Download",
                             " FERTIG! 45 neue 1/4h-Daten   3", " Ende automatische Datenabholung  "}) {
        const std::size_t found = told.find(step, at);
        ASSERT_NE(found, std::string::npos) << step << "\nin\n" << told;
        at = found;
    }
}

TEST_F(Collecting, goesThroughAllSitesAndTellsOfThoseThatFail) {
    takes_part(on_tcp);
    takes_part(on_modem);
    takes_part(busy);
    takes_part(never_answers, false);
    collects(1'200'000);
    expect_today_stored(on_tcp);
    expect_today_stored(on_modem);
    EXPECT_THAT(p.terminal(), HasSubstr(" KEIN CONNECT"));
    EXPECT_THAT(p.terminal(), HasSubstr(" DATEI EXISTIERT NICHT!!!"));
    EXPECT_THAT(p.terminal(),
                HasSubstr("Anlagen: 4, erreicht: 2, fehlgeschlagen: 2, gespeicherte 1/4h-Daten: 90\r\n"));
}

TEST_F(Collecting, goesFromStartToEndWhereNobodyTakesPart) {
    collects(3000);
    EXPECT_THAT(p.terminal(), HasSubstr(" Start automatische Datenabholung  "));
    EXPECT_THAT(p.terminal(), HasSubstr(" Ende automatische Datenabholung  "));
    EXPECT_THAT(p.terminal(), HasSubstr("Anlagen: 0,"));
}

TEST_F(Collecting, takesOnlyThePositionsThatAreWanted) {
    takes_part(on_tcp);
    takes_part(on_modem);
    p.program.phonebook_window.Form_Load();
    window.comautohol.Click();
    window.txtstartnr.Text = std::to_string(on_modem + 1);
    window.txtstopnr.Text = "2500";
    window.comstart.Click();
    p.loop.pass(5000);
    EXPECT_EQ(p.module1.telindex, static_cast<int>(on_modem) + 1);
}

TEST_F(Collecting, comesToItsEndAfterARestartAndDialsNobody) {
    takes_part(on_tcp);
    p.settings.autoholnr = std::int16_t{2};
    p.settings.autoholpfad = log_path;
    p.files.set_bytes(log_path, 0, "bisher\r\n");
    p.program.events.weiterholen();
    p.loop.pass(5000);
    EXPECT_EQ(p.tcp.connects, 0);
    EXPECT_THAT(log(), HasSubstr("bisher\r\n\r\nAutomatischer Start 261115_1128_Nr0002\r\n"));
    EXPECT_THAT(log(), HasSubstr(" Ende automatische Datenabholung  "));
    EXPECT_EQ(p.settings.autoholnr.number(), 0);
}

TEST_F(Collecting, goesOverTheGatewayWhereTheBoxIsTicked) {
    p.settings.lanaktiv = std::int16_t{1};
    takes_part(on_tcp);
    takes_part(on_modem);
    collects(240'000);
    EXPECT_THAT(p.terminal(), HasSubstr("Verbindung zum tarnwerk-Modem hergestellt!"));
    expect_today_stored(on_tcp);
    expect_today_stored(on_modem);
    EXPECT_FALSE(plant.gateway.engaged(0));
    EXPECT_THAT(p.terminal(), HasSubstr("Anlagen: 2, erreicht: 2, fehlgeschlagen: 0,"));
}

TEST_F(Collecting, takesPacketsOfFourHoursWhereTheArchiveSaysSo) {
    takes_part(on_tcp);
    Archive archive(p.files);
    ASSERT_TRUE(archive.open(archive_of(on_tcp)));
    archive.set_daten(1, 2, 31, 2, 0, -999.0F);
    ASSERT_TRUE(archive.save());
    archive.close();
    collects(180'000);
    EXPECT_THAT(p.tcp.take_written(), HasSubstr("DUE4\r"));
    expect_today_stored(on_tcp);
    EXPECT_THAT(p.terminal(), HasSubstr(" FERTIG! 45 neue 1/4h-Daten "));
}

TEST_F(Collecting, takesQuartersAllTheSameWhereThatBoxIsTicked) {
    takes_part(on_tcp);
    Archive archive(p.files);
    ASSERT_TRUE(archive.open(archive_of(on_tcp)));
    archive.set_daten(1, 2, 31, 2, 0, -999.0F);
    ASSERT_TRUE(archive.save());
    archive.close();
    window.viertelcheck.Value = true;
    collects(180'000);
    EXPECT_THAT(p.tcp.take_written(), HasSubstr("DUE3\r"));
    expect_today_stored(on_tcp);
}

// A file of a size that no archive has: two boxes, and nobody there.
TEST_F(Collecting, goesOnWhereNobodyAnswersABoxForAMinute) {
    takes_part(0, false);
    p.program.telefonbuch[1].viertdatei = "c:\\zerrissen.dat";
    p.files.set_length("c:\\zerrissen.dat", 2'000'000);
    takes_part(on_tcp);
    collects(600'000);
    EXPECT_THAT(log(), HasSubstr(" Sollen die Daten trotzdem verwendet werden?"));
    EXPECT_EQ(p.files.length("c:\\zerrissen.dat"), 2'000'000);
    expect_today_stored(on_tcp);
}

TEST_F(Collecting, waitsForTheMinuteOfItsStart) {
    takes_part(on_tcp);
    p.program.phonebook_window.Form_Load();
    window.comautohol.Click();
    window.comuhrplus.Click(); // 12:28
    window.comstart.Click();
    p.loop.pass(59 * 60'000);
    EXPECT_FALSE(p.module1.autoholen);
    EXPECT_EQ(window.labzustand.Caption.get(), "warte");
    p.loop.pass(2 * 60'000);
    EXPECT_TRUE(p.module1.autoholen || !window.geladen);
}

} // namespace velorn::test
