#include "runtime/text.h"
#include "support/test_program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velorn::test {

namespace {

struct Dialog : TestProgram {
    FrmProperties& d = program.frmProperties;
    MSComm& port = program.MSComm1;

    Dialog() {
        start();
        d.Form_Load({1366, 768});
        d.form.Visible = true;
    }
};

std::vector<std::string> texts(const ComboBox& box) {
    std::vector<std::string> list;
    for (const auto& item : box.List()) list.push_back(item.text);
    return list;
}

} // namespace

// ---- filling ----

TEST(PortSettings, offerTheirLists) {
    Dialog p;
    EXPECT_EQ(p.d.form.Caption.get(), "COM-Anschluß-Einstellungen"_w);
    ASSERT_EQ(p.d.cboPort.List().size(), 255U);
    EXPECT_EQ(p.d.cboPort.List().front().text, "Com1");
    EXPECT_EQ(p.d.cboPort.List().back().text, "Com255");
    EXPECT_THAT(texts(p.d.cboSpeed), testing::ElementsAre("300", "1200", "2400", "4800", "9600", "19200",
                                                          "38400", "57600", "115200"));
    EXPECT_THAT(texts(p.d.cboDataBits), testing::ElementsAre("4", "5", "6", "7", "8"));
    EXPECT_THAT(texts(p.d.cboParity), testing::ElementsAre("Even", "Mark", "None", "Odd", "Space"));
    EXPECT_THAT(texts(p.d.cboStopBits), testing::ElementsAre("1", "1.5", "2"));
    EXPECT_THAT(p.d.optFlow.captions(), testing::ElementsAre("Kein", "Xon/Xoff", "RTS", "Xon/RTS"));
    EXPECT_THAT(p.d.optEcho.captions(), testing::ElementsAre("Aus", "Ein"));
}

TEST(PortSettings, nameTheAdaptersThatAreThereEachTimeAnew) {
    Dialog p;
    p.serial.adapters = {{3, "FT232R"}, {7, ""}, {300, "beyond"}};
    p.d.LoadPropertySettings();
    EXPECT_EQ(p.d.cboPort.List()[2].text, "Com3");
    EXPECT_EQ(p.d.cboPort.List()[2].note, "FT232R");
    EXPECT_EQ(p.d.cboPort.List()[6].note, "vorhanden");
    EXPECT_EQ(p.d.cboPort.List()[0].note, "");
    p.serial.adapters = {{4, "CH340"}};
    p.d.LoadPropertySettings();
    EXPECT_EQ(p.d.cboPort.List()[2].note, "");
    EXPECT_EQ(p.d.cboPort.List()[3].note, "CH340");
}

TEST(PortSettings, showWhatThePortHas) {
    struct Case {
        const char* settings;
        const char *speed, *parity, *data, *stop;
    };
    constexpr Case cases[] = {
        {"19200,n,8,1", "19200", "None", "8", "1"},  {"300,E,7,2", "300", "Even", "7", "2"},
        {"115200,o,8,1", "115200", "Odd", "8", "1"}, {"9600,m,8,1", "9600", "Mark", "8", "1"},
        {"9600,s,8,1", "9600", "Space", "8", "1"},   {"14400,n,8,1", "14400", "None", "8", "1"},
    };
    for (const Case& one : cases) {
        Dialog p;
        ASSERT_TRUE(p.port.set_Settings(one.settings).ok()) << one.settings;
        p.d.LoadPropertySettings();
        EXPECT_EQ(p.d.cboSpeed.Text(), one.speed);
        EXPECT_EQ(p.d.cboParity.Text(), one.parity);
        EXPECT_EQ(p.d.cboDataBits.Text(), one.data);
        EXPECT_EQ(p.d.cboStopBits.Text(), one.stop);
    }
}

TEST(PortSettings, showOneAndAHalfStopBits) {
    Dialog p;
    p.serial.allows_one_and_a_half = true;
    ASSERT_TRUE(p.port.set_Settings("19200,n,8,1.5").ok());
    p.d.LoadPropertySettings();
    EXPECT_EQ(p.d.cboStopBits.Text(), "1.5");
    EXPECT_EQ(p.d.cboSpeed.Text(), "19200");
    EXPECT_EQ(p.d.cboDataBits.Text(), "8");
    EXPECT_EQ(p.d.cboParity.Text(), "None");
}

TEST(PortSettings, showHandshakeAndEcho) {
    for (int flow = 0; flow < 4; ++flow) {
        Dialog p;
        ASSERT_TRUE(p.port.set_Handshaking(flow).ok());
        p.settings.comecho = flow % 2 != 0;
        p.d.LoadPropertySettings();
        EXPECT_EQ(p.d.optFlow.selected(), flow);
        EXPECT_EQ(p.d.optEcho.selected(), flow % 2);
    }
}

// ---- applying ----

TEST(PortSettings, areAppliedAndStored) {
    Dialog p;
    p.d.cboPort.set_ListIndex(4);
    p.d.cboSpeed.set_Text(" 9600 ");
    p.d.cboParity.set_Text("Even");
    p.d.cboDataBits.set_Text("7");
    p.d.cboStopBits.set_Text("2");
    p.d.optFlow.select(2);
    p.d.optEcho.select(1);
    p.d.cmdOK_Click();
    EXPECT_FALSE(p.d.form.Visible);
    EXPECT_EQ(p.port.CommPort(), 5);
    EXPECT_TRUE(p.port.PortOpen());
    EXPECT_TRUE(p.frmTerminal.mnuOpen.Checked);
    EXPECT_TRUE(identical(p.settings.comport, Variant(std::int16_t{5})));
    EXPECT_EQ(p.settings.comsettings, Variant("9600,e,7,2")); // the control hands a small letter back
    EXPECT_TRUE(identical(p.settings.comhandshake, Variant(std::int16_t{2})));
    EXPECT_EQ(p.settings.comecho, Variant(true));
    EXPECT_EQ(p.frmTerminal.sbrStatus.Settings.Text.get(), "Einstellungen: Com5  9600,e,7,2");
}

TEST(PortSettings, leaveAClosedPortClosed) {
    Dialog p;
    press(p.frmTerminal.mnuOpen);
    p.d.cboPort.set_ListIndex(4);
    p.d.cmdOK_Click();
    EXPECT_EQ(p.port.CommPort(), 5);
    EXPECT_FALSE(p.port.PortOpen());
    EXPECT_EQ(p.frmTerminal.sbrStatus.Settings.Text.get(), "Einstellungen: Com5  19200,n,8,1");
}

TEST(PortSettings, goBackToTheOldPortWhenTheNewOneIsNotThere) {
    Dialog p;
    p.serial.there = false;
    p.dialogs.expect("Anschlu", 48, Answer::ok);
    p.d.cboPort.set_ListIndex(98);
    p.d.cboSpeed.set_Text("300");
    p.d.cmdOK_Click();
    EXPECT_EQ(p.port.CommPort(), 1);
    EXPECT_TRUE(p.d.form.Visible);
    EXPECT_EQ(p.port.Settings(), "19200,n,8,1");
    EXPECT_FALSE(p.frmTerminal.mnuOpen.Checked);
}

TEST(PortSettings, stayOpenWhenTheSettingsAreRefused) {
    Dialog p;
    p.dialogs.expect("Eigenschaftswert", 48, Answer::ok);
    p.d.cboSpeed.set_Text("schnell");
    p.d.optFlow.select(3);
    p.d.cmdOK_Click();
    EXPECT_TRUE(p.d.form.Visible);
    EXPECT_EQ(p.port.Settings(), "19200,n,8,1");
    EXPECT_EQ(p.settings.comsettings, Variant("19200,n,8,1"));
    EXPECT_NE(p.port.Handshaking(), 3);
}

TEST(PortSettings, changeNothingWhenCancelled) {
    Dialog p;
    p.d.cboPort.set_ListIndex(9);
    p.d.cmdCancel_Click();
    EXPECT_FALSE(p.d.form.Visible);
    EXPECT_EQ(p.port.CommPort(), 1);
}

// ---- the command ----

TEST(PortSettingsCommand, savesAndLeavesThePortOpenWithItsNewSettings) {
    for (const bool open_before : {true, false}) {
        Dialog p;
        p.d.form.Visible = false;
        if (!open_before) press(p.frmTerminal.mnuOpen);
        const int opened = p.serial.opened;
        p.loop.post([&p] {
            p.d.cboSpeed.set_Text("4800");
            p.d.cmdOK_Click();
        });
        p.frmTerminal.mnuProperties.Click();
        EXPECT_TRUE(p.port.PortOpen());
        EXPECT_EQ(p.serial.settings.baud, 4800);
        EXPECT_EQ(p.serial.opened, opened + 1);
        EXPECT_EQ(p.frmTerminal.sbrStatus.Settings.Text.get(), "Einstellungen: Com1  4800,n,8,1");
        EXPECT_NE(p.files.content("c:\\velorn\\einst.par").find("4800,n,8,1"), std::string::npos);
    }
}

TEST(PortSettingsCommand, tellsAPortThatCantBeOpenedUnlessTcpIsTheChosenWay) {
    for (const bool tcp : {false, true}) {
        Dialog p;
        p.d.form.Visible = false;
        press(p.frmTerminal.mnuOpen);
        p.settings.lanaktiv = static_cast<std::int16_t>(tcp ? 1 : 0);
        p.serial.there = false;
        if (!tcp) {
            p.dialogs.expect("Anschlu", 48, Answer::ok);
            p.dialogs.expect("Anschlu", 48, Answer::ok);
            p.dialogs.expect(std::string("Com-Port läßt sich nicht öffnen, Einstellungen überprüfen"_w), 48,
                             Answer::ok);
        }
        p.loop.post([&p] { p.d.cmdCancel_Click(); });
        p.frmTerminal.tbrToolBar("Properties").Click();
        EXPECT_FALSE(p.port.PortOpen());
    }
}

// ---- the small commands ----

TEST(PortCommands, askForANumberAndSetIt) {
    struct Case {
        MenuItem FrmTerminal::*item;
        const char* title;
        std::string_view prompt;
        const char* proposal;
        int (MSComm::*value)() const;
    };
    const Case cases[] = {
        {&FrmTerminal::mnuInputLen, "InputLen", "Geben Sie die neue Eingabelänge (InputLen) ein:"_w, "0",
         &MSComm::InputLen},
        {&FrmTerminal::mnuRThreshold, "Empfangslimit (RThreshold)",
         "Geben Sie einen neuen Wert für die maximal gepufferte Anzahl der empfangenen Bytes ein:"_w, "1",
         &MSComm::RThreshold},
        {&FrmTerminal::mnuSThreshold, "Sendelimit (SThreshold)",
         "Geben Sie einen neuen Wert für die maximal gepufferte Anzahl der Sendebytes ein:"_w, "0",
         &MSComm::SThreshold},
    };
    for (const Case& one : cases) {
        Dialog p;
        const int before = (p.port.*one.value)();
        const auto ask = [&](std::optional<std::string> answer) {
            p.dialogs.expect_input(std::string(one.prompt), std::move(answer));
            (p.frmTerminal.*one.item).Click();
        };
        ask("");
        EXPECT_EQ(p.dialogs.last_title, one.title);
        EXPECT_EQ(p.dialogs.last_proposal, one.proposal);
        ask(std::nullopt);
        EXPECT_EQ((p.port.*one.value)(), before);
        ask("17");
        EXPECT_EQ((p.port.*one.value)(), 17);
        p.dialogs.expect("Typen unvertr", 48, Answer::ok);
        ask("viel");
        p.dialogs.expect("berlauf", 48, Answer::ok);
        ask("40000");
        p.dialogs.expect("Eigenschaftswert", 48, Answer::ok);
        ask("-1");
        EXPECT_EQ((p.port.*one.value)(), 17);
    }
}

TEST(PortCommands, replaceParityErrorsByTheFirstCharacterOrByNothing) {
    Dialog p;
    p.dialogs.expect_input("Geben Sie das Ersetzungszeichen ein:", "xyz");
    p.frmTerminal.mnuParRep.Click();
    EXPECT_EQ(p.dialogs.last_title, "Ersetzen bei Paritätsfehler"_w);
    EXPECT_EQ(p.port.ParityReplace(), "x");
    p.dialogs.expect_input("Ersetzungszeichen", std::nullopt);
    p.frmTerminal.mnuParRep.Click();
    EXPECT_EQ(p.port.ParityReplace(), "x");
    p.dialogs.expect_input("Ersetzungszeichen", "");
    p.frmTerminal.mnuParRep.Click();
    EXPECT_EQ(p.dialogs.last_proposal, "x");
    EXPECT_EQ(p.port.ParityReplace(), "");
}

TEST(PortCommands, toggleDtrWithTheirMark) {
    Dialog p;
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(p.frmTerminal.mnuDTREnable.Checked, p.port.DTREnable());
        const bool before = p.port.DTREnable();
        p.frmTerminal.mnuDTREnable.Click();
        EXPECT_NE(p.port.DTREnable(), before);
    }
    EXPECT_EQ(p.frmTerminal.mnuDTREnable.Checked, p.port.DTREnable());
}

TEST(PortCommands, showTheLines) {
    struct Case {
        MenuItem FrmTerminal::*item;
        bool SerialPort::Lines::*line;
        const char* name;
    };
    constexpr Case cases[] = {{&FrmTerminal::mnuHCD, &SerialPort::Lines::carrier, "CDHolding = "},
                              {&FrmTerminal::mnuHCTS, &SerialPort::Lines::clear_to_send, "CTSHolding = "},
                              {&FrmTerminal::mnuHDSR, &SerialPort::Lines::data_set_ready, "DSRHolding = "}};
    for (const Case& one : cases) {
        for (const bool on : {true, false}) {
            Dialog p;
            p.serial.line_states.*one.line = on;
            p.dialogs.expect(std::string(one.name) + (on ? "True" : "False"), 0, Answer::ok);
            (p.frmTerminal.*one.item).Click();
        }
    }
}

} // namespace velorn::test
