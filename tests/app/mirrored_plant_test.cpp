// The whole program with a controller of the plant at the other end of its serial line.
#include "plant/controller.h"
#include "runtime/text.h"
#include "support/test_program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velorn::test {

namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

struct MirroredPlant : testing::Test {
    TestProgram p;
    plant::Controller controller{p.loop, 3};

    MirroredPlant() {
        p.start();
        controller.set_site("Kraftwerk Gelmar");
        controller.send = [this](std::string_view bytes) { p.serial.arrives(bytes); };
        p.serial.on_write = [this](std::string_view bytes) {
            p.loop.post([this, text = std::string(bytes)] { controller.receive(text); });
        };
        p.module1.txtanrufer = "Techniker";
        p.settings.fbautostart = std::int16_t{0};
    }
    void starts() {
        p.frmTerminal.tbrToolBar("fernbed").Click();
        p.loop.pass(3000);
    }
    void types(std::string_view keys) {
        for (const char key : keys) {
            p.program.keys.Form_KeyPress(static_cast<unsigned char>(key));
            p.loop.pass(500);
        }
    }
    std::string row(int number) const {
        std::string text(p.frmTerminal.schirm.text(number, 1, 80));
        text.erase(text.find_last_not_of(' ') + 1);
        return text;
    }
    std::string projekt() const { return p.frmTerminal.sbrStatus.projekt.Text; }
};

} // namespace

TEST_F(MirroredPlant, showsItsMenuAndItsNameAfterTheNameOfTheCallerWasGiven) {
    starts();
    EXPECT_THAT(p.serial.written(), HasSubstr("FERNBED\rTechniker"));
    EXPECT_EQ(row(1), " Ende: <E>      Invers: <I>             Kraftwerk Gelmar");
    EXPECT_THAT(row(3), HasSubstr("Hauptmenü"_w));
    EXPECT_THAT(projekt(), StartsWith("Fernbed.: Kraftwerk Gelmar"));
    EXPECT_EQ(p.terminal(), "");
}

TEST_F(MirroredPlant, isWorkedByTheKeys) {
    starts();
    (void)p.program.keys.key_down(40, 0);
    p.loop.pass(500);
    EXPECT_EQ(p.frmTerminal.schirm.at(Schirm::attribute, 20, 7), 'i');
    types("\r");
    EXPECT_THAT(row(3), HasSubstr("Störungen"_w));
    types("E");
    EXPECT_THAT(row(3), HasSubstr("Hauptmenü"_w));
}

TEST_F(MirroredPlant, isLeftWithoutEndingTheConnection) {
    starts();
    types("2");
    p.dialogs.expect("Soll das Modem aufgelegt werden", 36, Answer::no);
    p.frmTerminal.tbrToolBar("notfernbed").Click();
    p.loop.pass(3000);
    EXPECT_FALSE(p.frmTerminal.fernbedaktiv);
    EXPECT_TRUE(p.frmTerminal.termecho);
    EXPECT_THAT(projekt(), StartsWith("online mit: Kraftwerk Gelmar"));
    types("clock\r");
    EXPECT_THAT(p.terminal(), HasSubstr("Uhrzeit"));
}

TEST_F(MirroredPlant, writesItsReportIntoTheProtocolFile) {
    p.files.set_content("c:\\gelmar.txt", "Gelmar\r\n");
    p.module1.protokollan = true;
    p.module1.protokollname = "c:\\gelmar.txt";
    starts();
    types("8");
    EXPECT_FALSE(p.module1.protokollaktiv);
    types("\r");
    p.loop.pass(3000);
    EXPECT_FALSE(p.module1.protokollaktiv);
    const std::string file = p.files.content("c:\\gelmar.txt");
    EXPECT_THAT(file, HasSubstr("  *FERNBEDBetriebsprotokoll Kraftwerk Gelmar\r\n"));
    EXPECT_THAT(file, HasSubstr("23:00"));
    EXPECT_THAT(file, EndsWith("\r\n\r\n\r\n"));
    EXPECT_THAT(row(3), HasSubstr("Protokoll auf den PC"));
}

TEST_F(MirroredPlant, isHeldFastAsASnapshot) {
    starts();
    types("9");
    p.frmTerminal.tbrToolBar("snapshot").Click();
    EXPECT_THAT(p.frmTerminal.txtsnapshot.Text(), HasSubstr("Kraftwerk Gelmar"));
    EXPECT_THAT(p.frmTerminal.txtsnapshot.Text(), HasSubstr("\r\n         BHKW-Regelung Version 7.42\r\n"));
}

TEST_F(MirroredPlant, showsItsCalendar) {
    starts();
    types("3");
    EXPECT_TRUE(p.frmTerminal.picabs.Visible);
    EXPECT_THAT(p.frmTerminal.labkal[1].Caption.get(), StartsWith("Wochenuhr BHKW und Kessel"));
    types("E");
    EXPECT_FALSE(p.frmTerminal.picabs.Visible);
    EXPECT_EQ(p.frmTerminal.Picture1.FontSize, 14);
}

TEST_F(MirroredPlant, comesBackAfterTheLogFile) {
    starts();
    p.dialogs.expect_file(std::string("LOG-Datei öffnen"_w), std::string("c:\\a.log"));
    p.frmTerminal.mnuOpenLog.Click();
    EXPECT_FALSE(p.frmTerminal.fernbedaktiv);
    types("5");
    EXPECT_THAT(p.files.content("c:\\a.log"), HasSubstr("Strom"));
    p.frmTerminal.mnuCloseLog.Click();
    EXPECT_TRUE(p.frmTerminal.fernbedaktiv);
}

} // namespace velorn::test
