#include "archive/download_rig.h"
#include "runtime/text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velorn::test {

namespace {

using ::testing::ElementsAre;

// Three tracks, initialised; the window is open, and a download has begun over the serial line.
struct Downloading : DownloadRig {
    Downloading() {
        p.program.telefonbuch[0].name = "Gelmar";
        opens();
    }
    void initialised(int mode) { DownloadRig::initialised(mode, initialisation()); }
    static std::string twice(const std::string& field) { return field + field; }
    static std::string initialisation(const std::string& count = "03") {
        std::string text = twice(count);
        for (int t = 1; t <= 3; ++t) text += twice("kW   ");
        for (const char* name : {"Leistung      ", "W\xE4rme         ", "Vorlauf       "})
            text += twice(name);
        return text + d5;
    }
    static std::string set(const std::string& head, const std::string& first = "    12,5") {
        return head + first + "     ***" + "   -3.25";
    }
    float stored(int day, int quarter, int track) { return archive.daten(0, 11, day, quarter, track); }
};

} // namespace

// ---- the dialogue ----

TEST_F(Downloading, beginsWithTheModesCommand) {
    const char* commands[] = {"\x01"
                              "DUE4\r",
                              "\x01"
                              "DUE3\r"};
    for (int mode = 0; mode < 2; ++mode) {
        f.optuebertrag.select(mode);
        (void)p.sent();
        f.download.Click();
        EXPECT_EQ(p.sent(), commands[mode]);
        EXPECT_EQ(f.labstatus.Caption.get(), "warte auf Rückmeldung"_w);
        EXPECT_TRUE(f.Timer4.Enabled);
        EXPECT_TRUE(p.module1.empfgrafick);
    }
}

TEST_F(Downloading, fetchesQuarterPacketsWhereThePhoneBookWantsThemAlways) {
    p.program.frmtelefon.viertelcheck.Value = true;
    f.optuebertrag.select(0);
    f.download.Click();
    EXPECT_EQ(p.sent(), "\x01"
                        "DUE3\r");
}

TEST_F(Downloading, acknowledgesTheInitialisationAndSendsTheRange) {
    begins(1);
    f.cbodatstart.set_Text("1");
    f.cbomonstart.set_Text("2");
    f.cbodatstop.set_Text("31");
    f.cbomonstop.set_Text("2"); // sent as it stands
    p.receive(initialisation());
    EXPECT_EQ(p.sent(), "OK");
    EXPECT_EQ(archive.exportspuren.number(), 3);
    EXPECT_EQ(archive.spureinheiten[2].text(), "kW   ");
    EXPECT_EQ(archive.spurnamen[2].text(), "W\xE4rme         ");
    p.loop.pass(500);
    EXPECT_EQ(f.labstatus.Caption.get(), "lösche Textfeld"_w);
    p.loop.pass(500);
    EXPECT_EQ(p.sent(), "0101"
                        "0202"
                        "20262026"
                        "3131"
                        "0202"
                        "20262026");
    EXPECT_EQ(f.labstatus.Caption.get(), "sende Zeitraum");
}

TEST_F(Downloading, sendsTheRangeAgainWhenAskedTo) {
    begins(1);
    p.receive(initialisation());
    p.loop.pass(1000);
    const std::string range = p.sent().substr(2);
    p.receive(d7);
    p.loop.pass(500);
    EXPECT_EQ(p.sent(), range);
}

TEST_F(Downloading, answersWithERWhereCopiesDiffer) {
    begins(1);
    p.receive("0304" + initialisation().substr(4));
    EXPECT_EQ(f.labstatus.Caption.get(), "ÜBERTRAGUNGSFEHLER"_w);
    p.loop.pass(100);
    EXPECT_EQ(p.sent(), "ER");
    p.receive(initialisation());
    EXPECT_EQ(p.sent(), "OK");
}

TEST_F(Downloading, storesAQuarterPacketAndAcknowledgesIt) {
    initialised(1);
    p.receive(set("15112601") + d5);
    EXPECT_EQ(p.sent(), "OK");
    EXPECT_EQ(stored(15, 1, 1), 12.5F);
    EXPECT_EQ(stored(15, 1, 2), -999.0F);
    EXPECT_EQ(stored(15, 1, 3), -3.25F);
    EXPECT_EQ(f.neuwerte, 1);
    EXPECT_EQ(f.labstatus.Caption.get(), "Daten 15.11.2026     1.te 1/4h");
}

TEST_F(Downloading, storesNothingOfAFrameThatItDoesNotUnderstand) {
    initialised(1);
    const std::string good = set("15112601") + d5;
    for (const std::string& bad :
         {good.substr(1), ' ' + good, set("15112601", "    abc ") + d5, set("1511xx01") + d5}) {
        p.receive(bad);
        p.loop.pass(100);
        EXPECT_EQ(p.sent(), "ER") << bad;
        EXPECT_EQ(stored(15, 1, 1), -997.0F);
        EXPECT_EQ(stored(15, 1, 3), -997.0F);
    }
    EXPECT_EQ(f.neuwerte, 0);
}

TEST_F(Downloading, givesNoAnswerToASingleDataSetOutOfRange) {
    initialised(1);
    for (const char* head : {"32112601", "15132601", "15119901", "15112597", "15112600", "15112501"}) {
        p.receive(set(head) + d5);
        p.loop.pass(200);
        EXPECT_EQ(p.sent(), "") << head;
    }
    EXPECT_EQ(f.neuwerte, 0);
}

TEST_F(Downloading, skipsDataSetsOutOfRangeInA4hPacket) {
    initialised(0);
    std::string packet;
    for (int q = 1; q <= 16; ++q) {
        const std::string quarter = (q < 10 ? "0" : "") + std::to_string(q);
        packet += set((q == 5 ? "001126" : "151126") + quarter);
    }
    ASSERT_EQ(packet.size() + 4, 128U * 3 + 132);
    p.receive(packet + d5);
    EXPECT_EQ(p.sent(), "OK");
    EXPECT_EQ(f.neuwerte, 15);
    EXPECT_EQ(stored(15, 16, 1), 12.5F);
    EXPECT_EQ(stored(15, 5, 1), -997.0F);
}

TEST_F(Downloading, actsOnOneOfTwoFramesInOneChunk) {
    initialised(1);
    p.receive(set("15112601") + d5 + set("15112602") + d5);
    p.loop.pass(100);
    EXPECT_EQ(p.sent(), "ER") << "too long for one";
    p.receive(set("15112601") + d5);
    EXPECT_EQ(p.sent(), "OK") << "and the rest is gone";
}

TEST_F(Downloading, takesAFrameThatComesByteByByte) {
    initialised(1);
    for (const char c : set("15112601") + d5) p.receive({&c, 1});
    EXPECT_EQ(p.sent(), "OK");
    EXPECT_EQ(stored(15, 1, 3), -3.25F);
}

TEST_F(Downloading, startsOverWithTheController) {
    begins(1);
    p.receive(initialisation());
    p.loop.pass(2000);
    (void)p.sent();
    p.receive(initialisation()); // once more, in the phase of the range
    EXPECT_EQ(f.dlphase, 2);
    p.receive(initialisation());
    EXPECT_EQ(p.sent(), "OK");
}

TEST_F(Downloading, endsWithByte8) {
    initialised(1);
    p.receive(d4);
    EXPECT_EQ(p.sent(), "\x08");
    EXPECT_EQ(f.labstatus.Caption.get(), "Übertragung fertig!"_w);
    EXPECT_FALSE(p.module1.empfgrafick);
    EXPECT_FALSE(f.Timer4.Enabled);
    EXPECT_TRUE(f.geladen);
    p.receive("wieder im Terminal");
    EXPECT_THAT(p.terminal(), ::testing::EndsWith("wieder im Terminal"));
}

TEST_F(Downloading, hangsUpAndClosesAtItsEndWhereThatIsTicked) {
    initialised(1);
    f.checkauflegen.Value = true;
    p.receive(d4);
    EXPECT_TRUE(p.frmTerminal.Timer31.Enabled);
    EXPECT_FALSE(f.geladen);
}

TEST_F(Downloading, tellsOfSilenceAfterMoreThan15Seconds) {
    initialised(1);
    p.loop.pass(14'000);
    EXPECT_NE(f.labstatus.Caption.get(), "Timeout (keine Reaktion)");
    p.loop.pass(3000);
    EXPECT_EQ(f.labstatus.Caption.get(), "Timeout (keine Reaktion)");
    EXPECT_TRUE(f.geladen) << "a person is at it";
    EXPECT_TRUE(p.module1.empfgrafick);
    f.closedathol.Click();
    EXPECT_FALSE(p.module1.empfgrafick);
}

TEST_F(Downloading, keepsTheChosenModeInTheArchive) {
    f.optuebertrag.select(0);
    EXPECT_EQ(archive.daten(1, 2, 31, 2, 0), -999.0F);
    f.optuebertrag.select(1);
    EXPECT_EQ(archive.daten(1, 2, 31, 2, 0), 0.0F);
}

// ---- closing ----

TEST_F(Downloading, isSavedByClosing) {
    initialised(1);
    p.receive(set("15112601") + d5);
    f.schliessen.Click();
    EXPECT_FALSE(f.geladen);
    EXPECT_FALSE(p.module1.empfgrafick);
    ASSERT_TRUE(archive.open(path));
    EXPECT_EQ(stored(15, 1, 1), 12.5F);
    EXPECT_FALSE(p.files.exists(std::string(path) + ".tagebuch"));
}

TEST_F(Downloading, isLostByClosingWithoutSaving) {
    initialised(1);
    p.receive(set("15112601") + d5);
    p.dialogs.expect("Aktueller Zustand wird nicht gespeichert!!", 49, Answer::cancel);
    f.schliessen2.Click();
    EXPECT_TRUE(f.geladen);
    p.dialogs.expect("Aktueller Zustand wird nicht gespeichert!!", 49, Answer::ok);
    f.schliessen2.Click();
    EXPECT_FALSE(f.geladen);
    ASSERT_TRUE(archive.open(path));
    EXPECT_EQ(stored(15, 1, 1), -997.0F);
    EXPECT_FALSE(p.files.exists(std::string(path) + ".tagebuch"));
}

TEST_F(Downloading, isTakenOverAfterACrash) {
    initialised(1);
    p.receive(set("15112601") + d5);
    TestProgramOn<BlockFiles> next;
    for (const std::string& name : p.files.names()) {
        if (!name.ends_with(".sperre")) next.files.set_content(name, p.files.content(name));
    }
    next.start();
    next.program.telefonbuch[0].viertdatei = path;
    next.module1.telindex = 0;
    next.program.archive_window.show();
    next.loop.pass(500);
    EXPECT_EQ(next.program.archive.daten(0, 11, 15, 1, 1), 12.5F);
    EXPECT_THAT(next.terminal(), ::testing::HasSubstr("1 1/4h-Daten eines nicht gespeicherten Downloads"));
}

TEST_F(Downloading, endsQuietlyWhenItsWindowClosesDuringAWait) {
    p.loop.post_at(p.loop.now_ms() + 500, [this] { f.schliessen.Click(); });
    (void)p.sent();
    f.download.Click();
    p.loop.pass(5000);
    EXPECT_EQ(p.sent(), "\x01") << "the command isn't sent any more";
    EXPECT_FALSE(f.Timer4.Enabled);
}

} // namespace velorn::test
