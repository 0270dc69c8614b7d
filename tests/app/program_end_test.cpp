// The two ways out, and going on with an interrupted collection.
#include "runtime/text.h"
#include "support/test_program.h"

#include <gtest/gtest.h>

namespace velorn::test {

namespace {

const std::string einst = "c:\\velorn\\einst.par";
const std::string lan = "c:\\velorn\\lan.par";

// A program whose last run left a collection in the middle.
void leave_collection(MemoryFiles& files, const MemoryFiles& from) {
    for (const std::string& path : {einst, lan, std::string("c:\\velorn\\datpfad.par")}) {
        files.set_content(path, from.content(path));
    }
}

} // namespace

TEST(ClosingTheWindow, savesAfterHalfASecondAndForgetsTheCollection) {
    TestProgram p;
    p.start();
    p.settings.autoholnr = std::int16_t{12};
    p.settings.autoholpfad = "c:\\log.txt";
    p.settings.anrufer = "Weber";
    const std::int64_t begun = p.loop.now_ms();
    p.program.start.Form_QueryUnload();
    EXPECT_TRUE(p.loop.ended());
    EXPECT_EQ(p.loop.now_ms() - begun, 500);
    EXPECT_TRUE(p.terminal().ends_with("ENDE!!!!! \r\n"));
    EXPECT_EQ(p.settings.autoholnr.number(), 0);
    EXPECT_EQ(p.settings.autoholpfad.text(), "");
    EXPECT_NE(p.files.content(einst).find("Weber"), std::string::npos);
    EXPECT_FALSE(p.serial.is_open());
}

TEST(LeavingByTheMenu, savesNothing) {
    TestProgram p;
    p.start();
    const std::string before = p.files.content(einst);
    p.settings.anrufer = "Weber";
    press(p.frmTerminal.mnuFileExit);
    EXPECT_TRUE(p.loop.ended());
    EXPECT_EQ(p.files.content(einst), before);
    EXPECT_EQ(p.terminal().find("ENDE"), std::string::npos);
}

TEST(LeavingByTheMenu, letsACollectionGoOnAtTheNextStartAndClosingDoesNot) {
    for (const bool by_menu : {true, false}) {
        TestProgram first;
        first.start();
        first.settings.autoholnr = std::int16_t{12};
        first.program.settings_files.saveeinst();
        if (by_menu) {
            press(first.frmTerminal.mnuFileExit);
        } else {
            first.program.start.Form_QueryUnload();
        }
        TestProgram second;
        leave_collection(second.files, first.files);
        second.start();
        second.loop.pass(3000);
        EXPECT_EQ(second.terminal().find("Fortsetzung autom. Datenabholung") != std::string::npos, by_menu);
    }
}

TEST(AnInterruptedCollection, goesOnStepByStep) {
    TestProgram p;
    p.program.settings_files.begin_start();
    p.start();
    int hung_up = 0;
    int went_on = 0;
    p.frmTerminal.mnuHangUp.Click = [&] { ++hung_up; };
    p.frmTerminal.Timer6.Tick = nullptr; // the modem's own words don't belong here
    p.program.events.weiterholen.connect([&] { ++went_on; });
    p.frmTerminal.txtterm.set_Text({});
    p.frmTerminal.ticks27 = 0;
    p.frmTerminal.Timer26.Enabled = true;
    p.frmTerminal.Timer27.Enabled = true;
    p.loop.pass(1000);
    EXPECT_EQ(p.terminal(), "Fortsetzung autom. Datenabholung (Abbrechen mit Velorn beenden) .");
    p.loop.pass(8000);
    EXPECT_EQ(hung_up, 0);
    p.loop.pass(1000);
    EXPECT_EQ(hung_up, 1);
    p.loop.pass(4000);
    EXPECT_FALSE(p.frmTerminal.Timer6.Enabled);
    p.loop.pass(1000);
    EXPECT_TRUE(p.frmTerminal.Timer6.Enabled);
    EXPECT_EQ(went_on, 0);
    p.loop.pass(5000);
    EXPECT_EQ(went_on, 1);
    EXPECT_FALSE(p.frmTerminal.Timer26.Enabled); // 26 is what is switched off
    EXPECT_TRUE(p.frmTerminal.Timer27.Enabled);
    EXPECT_TRUE(p.terminal().ends_with(") ..................."));
    p.loop.pass(60'000);
    EXPECT_EQ(went_on, 1);
    EXPECT_EQ(hung_up, 1);
    EXPECT_NE(p.terminal().find(") ...................\r\n"), std::string::npos);
}

TEST(AnInterruptedCollection, leavesAClosedPortAlone) {
    TestProgram p;
    p.start();
    press(p.frmTerminal.mnuOpen);
    int hung_up = 0;
    p.frmTerminal.mnuHangUp.Click = [&] { ++hung_up; };
    p.frmTerminal.Timer27.Enabled = true;
    p.loop.pass(19'000);
    EXPECT_EQ(hung_up, 0);
    EXPECT_FALSE(p.frmTerminal.Timer6.Enabled);
}

TEST(UnsentData, areAskedAboutAfterTenSecondsAndAbortKeepsTheProgramOpen) {
    TestProgram p;
    p.start();
    p.serial.set_unsent(5);
    const std::int64_t begun = p.loop.now_ms();
    p.dialogs.expect(std::string("Daten können nicht gesendet werden"_w), 34, Answer::abort);
    bool Cancel = false;
    p.program.start.Form_Unload(Cancel);
    EXPECT_TRUE(Cancel);
    EXPECT_EQ(p.loop.now_ms() - begun, 10'000);
    EXPECT_FALSE(p.loop.ended());
    EXPECT_TRUE(p.serial.is_open());
}

TEST(UnsentData, areWaitedForAgainOnRetryAndDroppedOnIgnore) {
    TestProgram p;
    p.start();
    p.serial.set_unsent(5);
    const std::int64_t begun = p.loop.now_ms();
    p.dialogs.expect("", 34, Answer::retry);
    p.dialogs.expect("", 34, Answer::ignore);
    bool Cancel = false;
    p.program.start.Form_Unload(Cancel);
    EXPECT_FALSE(Cancel);
    EXPECT_EQ(p.loop.now_ms() - begun, 20'000);
    EXPECT_TRUE(p.loop.ended());
}

TEST(UnsentData, thatLeaveInTimeAreNotAskedAbout) {
    TestProgram p;
    p.start();
    p.serial.set_unsent(5);
    p.loop.post_at(p.loop.now_ms() + 3000, [&] { p.serial.set_unsent(0); });
    bool Cancel = false;
    p.program.start.Form_Unload(Cancel);
    EXPECT_TRUE(p.loop.ended());
}

TEST(AnOpenLogFile, isClosedAtTheEnd) {
    TestProgram p;
    p.start();
    int closed = 0;
    p.frmTerminal.mnuCloseLog.Click = [&] { ++closed; };
    p.frmTerminal.logdatei = 1;
    press(p.frmTerminal.mnuFileExit);
    EXPECT_EQ(closed, 1);
}

} // namespace velorn::test
