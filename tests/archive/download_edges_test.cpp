// The download's dialogue at its edges: phases, frames in the wrong place, settings of a damaged archive,
// what happens while it waits.
#include "archive/download_rig.h"
#include "runtime/text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velorn::test {

namespace {

struct DownloadEdges : DownloadRig {
    static std::string initialisation(int tracks) {
        const std::string count = (tracks < 10 ? "0" : "") + std::to_string(tracks);
        std::string text = count + count;
        for (int t = 0; t < tracks; ++t) text += "kW   kW   ";
        for (int t = 0; t < tracks; ++t) text += "Leistung      Leistung      ";
        return text + d5;
    }
    void initialised(int mode, int tracks = 1) { DownloadRig::initialised(mode, initialisation(tracks)); }
    static std::string set(const std::string& head, int tracks = 1) {
        std::string text = head;
        for (int t = 0; t < tracks; ++t) text += "    12,5";
        return text;
    }
    std::string answer_to(const std::string& bytes) {
        p.receive(bytes);
        p.loop.pass(200);
        return p.sent();
    }
};

} // namespace

// ---- the panel ----

TEST_F(DownloadEdges, thePanelOffersTheYearsOfTheArchiveAndToday) {
    opens(2019);
    EXPECT_TRUE(f.picdownload.Visible);
    for (ComboBox* years : {&f.cbojahrstart, &f.cbojahrstop}) {
        ASSERT_EQ(years->List().size(), 10U);
        EXPECT_EQ(years->List()[0].text, "2019");
        EXPECT_EQ(years->List()[9].text, "2028");
        EXPECT_EQ(years->Text(), "2026");
    }
    for (ComboBox* days : {&f.cbodatstart, &f.cbodatstop}) {
        EXPECT_EQ(days->List().size(), 31U);
        EXPECT_EQ(days->Text(), "15");
    }
    for (ComboBox* months : {&f.cbomonstart, &f.cbomonstop}) {
        EXPECT_EQ(months->List().size(), 12U);
        EXPECT_EQ(months->Text(), "11");
    }
    EXPECT_TRUE(p.module1.empfleeren);
    EXPECT_EQ(f.optuebertrag.selected(), 1);
    EXPECT_EQ(archive.daten(1, 2, 31, 2, 0), -997.0F) << "showing the mode is no choice";
}

TEST_F(DownloadEdges, closingThePanelHidesItAndItsTexts) {
    opens();
    begins(1);
    p.receive("Anfang");
    EXPECT_TRUE(f.txtempf.Visible);
    f.closedathol.Click();
    EXPECT_FALSE(f.picdownload.Visible);
    EXPECT_FALSE(f.txtempf.Visible);
    EXPECT_FALSE(f.txtausw.Visible);
    EXPECT_FALSE(p.module1.empfgrafick);
    EXPECT_EQ(f.txtempf.Text(), "");
}

TEST_F(DownloadEdges, aChoiceThatThePhoneBookHasForestalledIsKeptAllTheSame) {
    opens();
    p.program.frmtelefon.viertelcheck.Value = true;
    begins(0);
    EXPECT_EQ(f.dlmodus, 1);
    EXPECT_EQ(archive.daten(1, 2, 31, 2, 0), -999.0F);
    f.optuebertrag.select(1);
    EXPECT_EQ(archive.daten(1, 2, 31, 2, 0), 0.0F);
}

// ---- beginning ----

TEST_F(DownloadEdges, takesItsTimeBeforeAndBehindTheCommand) {
    opens();
    f.optuebertrag.select(1);
    const std::int64_t begin = p.loop.now_ms();
    std::int64_t command = 0;
    p.serial.on_write = [&](std::string_view bytes) {
        if (bytes == "DUE3\r") command = p.loop.now_ms();
    };
    f.download.Click();
    EXPECT_EQ(command - begin, 1500);
    EXPECT_EQ(p.loop.now_ms() - command, 800);
    EXPECT_TRUE(p.module1.empfleeren) << "what came during the wait goes";
    EXPECT_EQ(f.dlphase, 2);
}

TEST_F(DownloadEdges, whatCameBeforeTheCommandIsForgotten) {
    opens();
    begins(1);
    p.receive("Rest von vorher");
    EXPECT_EQ(f.txtempf.Text(), "Rest von vorher");
    f.download.Click();
    p.receive(initialisation(1));
    EXPECT_EQ(f.txtempf.Text(), initialisation(1));
}

// ---- initialisation ----

TEST_F(DownloadEdges, moreTracksThanTheArchiveHasAreLeftOutAndLaterFramesAreTooLong) {
    opens();
    begins(1);
    p.receive(initialisation(31));
    EXPECT_EQ(p.sent(), "OK");
    EXPECT_EQ(archive.exportspuren.number(), 30);
    EXPECT_EQ(archive.spureinheiten[30].text(), "kW   ");
    EXPECT_EQ(archive.spurnamen[30].text(), "Leistung      ");
    p.loop.pass(2000);
    p.receive(d6);
    (void)p.sent();
    EXPECT_EQ(answer_to(set("15112601", 31) + d5), "ER");
    EXPECT_EQ(answer_to(set("15112601", 30) + d5), "OK");
}

TEST_F(DownloadEdges, aSpoiltInitialisationLeavesTheTracksAsTheyWere) {
    opens();
    begins(1);
    std::string spoilt = initialisation(2);
    spoilt[spoilt.size() - 6] = 'x'; // in the second copy of the last name
    EXPECT_EQ(answer_to(spoilt), "ER");
    EXPECT_EQ(archive.exportspuren.number(), 2);
    EXPECT_EQ(archive.spureinheiten[1].text(), "");
    EXPECT_EQ(archive.spurnamen[1].text(), "----------------");
}

TEST_F(DownloadEdges, theListShowsTheControllersTracksOnceTheRangeGoesOut) {
    opens();
    RecorderCanvas canvas;
    p.program.evaluation.controls.Picture1.canvas = &canvas;
    begins(1);
    p.receive(initialisation(2));
    p.loop.pass(900);
    const auto& row = p.program.evaluation.controls.txkanal[2].Caption;
    EXPECT_EQ(row.get().find("Leistung"), std::string::npos);
    p.loop.pass(200);
    EXPECT_NE(row.get().find("Leistung"), std::string::npos) << row.get();
    p.program.evaluation.controls.Picture1.canvas = nullptr;
}

// ---- frame ends ----

TEST_F(DownloadEdges, theFirstOfTheOrderDecidesAndOnlyOneCaseActs) {
    opens();
    initialised(1);
    EXPECT_EQ(answer_to(set("15112601") + d5 + d6), "") << "D6 comes before D5";
    EXPECT_EQ(archive.daten(0, 11, 15, 1, 1), -997.0F);
    EXPECT_EQ(answer_to(d4 + set("15112601") + d5), "ER") << "and D5 before D4";
    EXPECT_TRUE(p.module1.empfgrafick);
    p.receive(d4 + d7);
    EXPECT_EQ(f.dlphase, 1) << "and D7 before all";
}

TEST_F(DownloadEdges, frameEndsAreTakenAsTheyAreWrittenOnly) {
    opens();
    initialised(1);
    EXPECT_EQ(answer_to(set("15112601") + "\x1b\x1b"
                                          "d5"),
              "");
    EXPECT_EQ(answer_to(set("15112601") + "\x1b"
                                          "D5"),
              "");
}

TEST_F(DownloadEdges, aDemandForTheRangeAmidTheDataSendsItAgainAndBeginsAnew) {
    opens();
    initialised(1);
    p.receive(d7);
    p.loop.pass(100);
    EXPECT_EQ(p.sent(), "ER") << "the reader finds no frame";
    EXPECT_EQ(f.dlphase, 1);
    p.loop.pass(500);
    EXPECT_EQ(p.sent(), "1515111120262026"
                        "1515111120262026");
    p.receive(initialisation(1)); // in this phase it only makes it start over
    EXPECT_EQ(f.dlphase, 2);
    EXPECT_FALSE(f.Timer5.Enabled);
    EXPECT_EQ(p.sent(), "");
}

TEST_F(DownloadEdges, aWindowThatClosesWhileAnErrorIsAnsweredIsLeftAlone) {
    for (const std::string& frame : {d7, d5}) {
        opens();
        initialised(1);
        p.loop.post_at(p.loop.now_ms() + 50, [this] { f.schliessen.Click(); });
        p.receive(frame);
        p.loop.pass(3000);
        EXPECT_EQ(p.sent(), "");
        EXPECT_EQ(f.dlphase, 0);
        EXPECT_FALSE(f.Timer5.Enabled);
    }
}

// ---- data ----

TEST_F(DownloadEdges, aYearOfTheLastCenturyIsDropped) {
    opens(2009);
    initialised(1);
    EXPECT_EQ(answer_to(set("15119901") + d5), "");
    EXPECT_EQ(answer_to(set("15110801") + d5), "") << "before the first year";
    EXPECT_EQ(answer_to(set("15111901") + d5), "") << "ten years behind it";
    EXPECT_EQ(f.labstatus.Caption.get(), "Daten 15.11.2019     1.te 1/4h");
    EXPECT_EQ(answer_to(set("31041896") + d5), "OK") << "a day that no calendar has is one";
    EXPECT_EQ(archive.daten(9, 4, 31, 96, 1), 12.5F);
    EXPECT_EQ(f.neuwerte, 1);
}

TEST_F(DownloadEdges, aBadValueInALongPacketIsAnErrorOfTheWholePacket) {
    opens();
    initialised(0);
    std::string packet;
    for (int q = 1; q <= 16; ++q)
        packet += set("151126" + std::string(q < 10 ? "0" : "") + std::to_string(q));
    std::string spoilt = packet;
    spoilt.replace(15 * 16 + 8, 8, "   12x  ");
    EXPECT_EQ(answer_to(spoilt + d5), "ER");
    EXPECT_EQ(f.neuwerte, 0);
    EXPECT_EQ(answer_to(packet.substr(16) + d5), "ER") << "fifteen are too few";
    EXPECT_EQ(answer_to(packet + d5), "OK");
    EXPECT_EQ(f.neuwerte, 16);
}

TEST_F(DownloadEdges, aLongPacketOfImpossibleDatesOnlyIsAcknowledged) {
    opens();
    initialised(0);
    std::string packet;
    for (int q = 1; q <= 16; ++q) packet += set("00112601");
    EXPECT_EQ(answer_to(packet + d5), "OK");
    EXPECT_EQ(f.neuwerte, 0);
}

TEST_F(DownloadEdges, anAcknowledgedDataSetIsInTheDiaryBefore) {
    opens();
    initialised(1);
    const std::string diary = std::string(path) + ".tagebuch";
    const std::int64_t before = p.files.length(diary);
    std::int64_t at_ok = 0;
    p.serial.on_write = [&](std::string_view bytes) {
        if (bytes == "OK") at_ok = p.files.length(diary);
    };
    p.receive(set("15112601") + d5);
    EXPECT_EQ(at_ok, before + 4 + 2 + 4 + 8);
}

TEST_F(DownloadEdges, settingsOfADamagedArchiveDoNoHarm) {
    for (const Variant& odd : {Variant(1e300), Variant(-1e300), Variant("Unsinn"), Variant(Null()), Variant(),
                               Variant(std::int32_t{2147483647}), Variant(std::int32_t{-2147483647})}) {
        ASSERT_TRUE(archive.create(path, 2026, 30, p.loop.local_time()));
        archive.startjahr = odd;
        archive.exportspuren = odd;
        ASSERT_TRUE(archive.save());
        archive.close();
        shows();
        EXPECT_EQ(f.cbojahrstart.List()[0].text, "0");
        begins(1);
        p.receive(d6);
        EXPECT_EQ(answer_to("15112601" + d5), "") << "no track, and no year for it";
        f.schliessen.Click();
    }
}

TEST_F(DownloadEdges, aFloodWithoutAnyFrameEndTakesNoMemory) {
    opens();
    initialised(1);
    const std::string noise(5000, 'x');
    for (int i = 0; i < 200; ++i) p.receive(noise);
    EXPECT_LE(f.txtempf.length(), Download::longest_text + noise.size());
    EXPECT_EQ(answer_to(d5), "ER");
    EXPECT_EQ(answer_to(set("15112601") + d5), "OK");
}

// ---- silence ----

TEST_F(DownloadEdges, theSecondsAreThoseWithoutAByte) {
    opens();
    initialised(1);
    for (int i = 0; i < 5; ++i) {
        p.loop.pass(14'000);
        p.receive("x");
    }
    EXPECT_TRUE(f.Timer4.Enabled);
    EXPECT_EQ(f.stillsek, 0);
    EXPECT_GE(f.dlsek, 70);
    EXPECT_EQ(f.Label33.Caption.get(), "") << "shown in an unattended run only";
    p.loop.pass(15'999);
    EXPECT_TRUE(f.Timer4.Enabled);
    p.loop.pass(1001);
    EXPECT_FALSE(f.Timer4.Enabled);
    EXPECT_EQ(answer_to(set("15112601") + d5), "ER") << "of the x before it";
    EXPECT_EQ(answer_to(set("15112601") + d5), "OK") << "it goes on if the controller does";
}

TEST_F(DownloadEdges, anUnattendedRunShowsItsSeconds) {
    opens();
    begins(1);
    p.module1.autoholen = true;
    p.module1.telindex = 7;
    p.loop.pass(3000);
    EXPECT_EQ(f.Label33.Caption.get(),
              std::to_string(f.dlsek) + "  Timeout " + std::to_string(f.stillsek) + "s");
    EXPECT_EQ(f.stillsek, 3);
    EXPECT_EQ(f.Label58.Caption.get(), "Dateinr. 7");
    p.module1.autoholen = false;
}

// ---- the newest values at the controller's wish ----

struct NewestWanted : DownloadEdges {
    std::int64_t attention = 0, command = 0;

    void wanted() {
        ASSERT_TRUE(archive.create(path, 2026, 30, p.loop.local_time()));
        archive.exportspuren = std::int16_t{1};
        ASSERT_TRUE(archive.save());
        archive.close();
        p.program.telefonbuch[0].viertdatei = path;
        p.module1.telindex = 0;
        p.module1.grafikfern = true;
        p.serial.on_write = [this](std::string_view bytes) {
            (bytes == "\x01" ? attention : command) = p.loop.now_ms();
        };
        p.program.events.evaluation_wanted();
        p.loop.pass(200);
        p.serial.on_write = nullptr;
        (void)p.sent();
    }
};

TEST_F(NewestWanted, areStoredWithoutInitialisationAndRange) {
    wanted();
    EXPECT_EQ(command - attention, 300);
    EXPECT_TRUE(f.picdownload.Visible);
    EXPECT_TRUE(f.txtempf.Visible);
    EXPECT_EQ(f.labstatus.Caption.get(), "warte auf Rückmeldung"_w);
    EXPECT_EQ(answer_to(set("15112644") + d5), "OK");
    p.receive(d4);
    EXPECT_FALSE(f.geladen);
    EXPECT_FALSE(p.module1.grafikfern);
    ASSERT_TRUE(archive.open(path));
    EXPECT_EQ(archive.daten(0, 11, 15, 44, 1), 12.5F);
}

TEST_F(NewestWanted, closeTheWindowAfterSilence) {
    wanted();
    EXPECT_EQ(answer_to(set("15112644") + d5), "OK");
    p.loop.pass(17'000);
    EXPECT_FALSE(f.geladen);
    ASSERT_TRUE(archive.open(path));
    EXPECT_EQ(archive.daten(0, 11, 15, 44, 1), 12.5F) << "it was saved";
}

} // namespace velorn::test
