#include "runtime/text.h"
#include "support/test_program.h"

#include <gtest/gtest.h>

namespace velorn::test {

namespace {

void expect_open(const TestProgram& p) {
    const FrmTerminal& f = p.frmTerminal;
    FrmTerminal& buttons = const_cast<FrmTerminal&>(f);
    EXPECT_TRUE(p.serial.is_open());
    EXPECT_TRUE(f.mnuOpen.Checked);
    EXPECT_TRUE(buttons.tbrToolBar("TransmitTextFile").Enabled);
    EXPECT_TRUE(f.imgConnected.Visible);
    EXPECT_FALSE(f.imgNotConnected.Visible);
    EXPECT_EQ(f.Picture5.BackColor.get(), colour::green);
    EXPECT_EQ(f.Label4.Caption.get(), "COM geöffnet"_w);
    EXPECT_EQ(f.sbrStatus.Settings.Text.get(), "Einstellungen: Com1  19200,n,8,1");
    EXPECT_TRUE(f.Timer1.Enabled);
}

void expect_closed(const TestProgram& p) {
    const FrmTerminal& f = p.frmTerminal;
    FrmTerminal& buttons = const_cast<FrmTerminal&>(f);
    EXPECT_FALSE(p.serial.is_open());
    EXPECT_FALSE(f.mnuOpen.Checked);
    EXPECT_FALSE(buttons.tbrToolBar("TransmitTextFile").Enabled);
    EXPECT_FALSE(f.imgConnected.Visible);
    EXPECT_TRUE(f.imgNotConnected.Visible);
    EXPECT_EQ(f.Picture5.BackColor.get(), colour::red);
    EXPECT_EQ(f.Label4.Caption.get(), "COM geschlossen");
    EXPECT_EQ(f.sbrStatus.Settings.Text.get(), "Einstellungen: ");
    EXPECT_FALSE(f.Timer1.Enabled);
}

constexpr std::string_view cannot_open = "Com-Port läßt sich nicht öffnen, Einstellungen überprüfen"_w;

} // namespace

TEST(PortOpening, happens1600msAfterTheStart) {
    TestProgram p;
    p.program.start.Form_Load();
    p.loop.pass(1599);
    EXPECT_FALSE(p.program.MSComm1.PortOpen());
    EXPECT_EQ(p.program.MSComm1.InputLen(), 32);
    p.loop.pass(1);
    expect_open(p);
    EXPECT_EQ(p.program.MSComm1.InputLen(), 0);
    EXPECT_EQ(p.frmTerminal.sbrStatus.projekt.Text.get(), "offline");
    EXPECT_FALSE(p.frmTerminal.Timer26.Enabled);
    EXPECT_EQ(p.serial.opened, 1);
}

TEST(PortOpening, triesTwiceAtTheStartAndThenTells) {
    TestProgram p;
    p.serial.there = false;
    p.dialogs.expect(std::string(error_text(RunTimeError::invalid_port)), 48, Answer::ok);
    p.dialogs.expect(std::string(error_text(RunTimeError::invalid_port)), 48, Answer::ok);
    p.dialogs.expect(std::string(cannot_open), 48, Answer::ok);
    p.start();
    expect_closed(p);
    EXPECT_EQ(p.frmTerminal.sbrStatus.projekt.Text.get(), "offline");
    EXPECT_FALSE(p.frmTerminal.Timer26.Enabled);
}

TEST(PortOpening, staysSilentAtTheStartWhereTcpIsTheChosenWay) {
    TestProgram p;
    p.program.start.Form_Load();
    p.settings.lanaktiv = std::int16_t{1};
    p.serial.there = false;
    p.loop.pass(1600);
    expect_closed(p);
    EXPECT_EQ(p.frmTerminal.sbrStatus.projekt.Text.get(), "offline");
    EXPECT_TRUE(p.dialogs.shown().empty());
}

TEST(PortOpening, thePanelSaysNothingBeforeTheFirstCountedStart) {
    TestProgram p;
    p.program.start.Form_Load();
    p.settings.neustartzaehler = std::int16_t{0};
    p.loop.pass(1600);
    EXPECT_EQ(p.frmTerminal.sbrStatus.projekt.Text.get(), "");
    EXPECT_FALSE(p.frmTerminal.Timer26.Enabled);
}

TEST(PortOpening, everyWayOfClickingTogglesThePort) {
    TestProgram p;
    p.start();
    FrmTerminal& f = p.frmTerminal;
    for (const auto* click : {&f.mnuOpen.Click, &f.imgConnected.Click, &f.imgNotConnected.Click,
                              &f.Label4.Click, &f.Picture5.Click}) {
        ASSERT_TRUE(*click);
        (*click)();
        expect_closed(p);
        (*click)();
        expect_open(p);
    }
}

TEST(PortOpening, openingEnablesTheCommandsOfAConnectionAndKeepsItsTime) {
    TestProgram p;
    p.start();
    FrmTerminal& f = p.frmTerminal;
    press(f.mnuOpen);
    f.mnutelefonbuch.Enabled = f.mnuHangUp.Enabled = false;
    f.tbrToolBar("DialPhoneNumber").Enabled = f.tbrToolBar("HangUpPhone").Enabled = false;
    p.loop.pass(5000);
    press(f.mnuOpen);
    EXPECT_TRUE(f.mnutelefonbuch.Enabled && f.mnuHangUp.Enabled);
    EXPECT_TRUE(f.tbrToolBar("DialPhoneNumber").Enabled && f.tbrToolBar("HangUpPhone").Enabled);
    EXPECT_EQ(f.verbindungszeit, p.loop.local_time());
}

TEST(PortOpening, closingStopsATransferAndLeavesThePhoneBookReachable) {
    TestProgram p;
    p.start();
    FrmTerminal& f = p.frmTerminal;
    p.module1.abbruch = false;
    f.sbrStatus.ConnectTime.Text = "x";
    f.mnutelefonbuch.Enabled = f.tbrToolBar("DialPhoneNumber").Enabled = false;
    press(f.mnuOpen);
    EXPECT_TRUE(p.module1.abbruch);
    EXPECT_EQ(f.sbrStatus.ConnectTime.Text.get(), "");
    EXPECT_TRUE(f.mnutelefonbuch.Enabled && f.tbrToolBar("DialPhoneNumber").Enabled);
}

TEST(PortOpening, aFailureByHandShowsItsText) {
    TestProgram p;
    p.start();
    press(p.frmTerminal.mnuOpen);
    p.serial.refuses_to_open = failure(RunTimeError::port_already_open, "COM1");
    p.dialogs.expect(p.serial.refuses_to_open->text, 48, Answer::ok);
    press(p.frmTerminal.mnuOpen);
    expect_closed(p);
    p.settings.lanaktiv = std::int16_t{1};
    press(p.frmTerminal.mnuOpen);
    expect_closed(p);
}

TEST(PortOpening, anUnpluggedPortIsShownWithinASecondWithoutABox) {
    TestProgram p;
    p.start();
    p.serial.device_goes();
    p.loop.pass(1000);
    expect_closed(p);
    EXPECT_TRUE(p.module1.abbruch);
}

TEST(PortOpening, aPortWhoseDeviceVanishesWithoutAWordIsShownWithinASecondToo) {
    TestProgram p;
    p.start();
    p.serial.there = false;
    p.loop.pass(1000);
    expect_closed(p);
}

TEST(PortOpening, aPortThatComesBackOpensByItself) {
    TestProgram p;
    p.start();
    p.serial.device_goes();
    p.loop.pass(60'000);
    expect_closed(p);
    p.serial.there = true;
    p.loop.pass(1000);
    expect_open(p);
    p.receive("again");
    EXPECT_EQ(p.terminal(), "again");
}

TEST(PortOpening, aPortThatComesBackRefusingIsTriedOn) {
    TestProgram p;
    p.start();
    p.serial.device_goes();
    p.loop.pass(1000);
    p.serial.there = true;
    p.serial.refuses_to_open = failure(RunTimeError::permission_denied);
    p.loop.pass(5000);
    expect_closed(p);
    p.serial.refuses_to_open.reset();
    p.loop.pass(1000);
    expect_open(p);
}

TEST(PortOpening, aClickWhileThePortIsAwayShowsTheErrorAndEndsTheWatch) {
    TestProgram p;
    p.start();
    p.serial.device_goes();
    p.loop.pass(1000);
    p.dialogs.expect(std::string(error_text(RunTimeError::invalid_port)), 48, Answer::ok);
    press(p.frmTerminal.mnuOpen);
    expect_closed(p);
    p.serial.there = true;
    p.loop.pass(5000);
    expect_closed(p);
    press(p.frmTerminal.mnuOpen);
    expect_open(p);
}

TEST(PortOpening, aPortClosedByHandStaysClosed) {
    TestProgram p;
    p.start();
    press(p.frmTerminal.mnuOpen);
    p.loop.pass(10'000);
    expect_closed(p);
    EXPECT_EQ(p.serial.opened, 1);
}

} // namespace velorn::test
