#include "runtime/text.h"
#include "support/mirrored_program.h"

#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velorn::test {

namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::StartsWith;
using Mirrored = MirroredProgram;

const std::string einst = "c:\\velorn\\einst.par";

} // namespace

TEST(DisplayLooks, tellsTheViewWhenTheCellsHaveTheirNewSize) {
    Mirrored p;
    int width = 0;
    p.frmTerminal.Picture1.on_change = [&] { width = p.frmTerminal.zeichenbreite; };
    p.dialogs.expect_input("Zeichenabstand", "1,25");
    p.frmTerminal.mnuzeiabst.Click();
    EXPECT_EQ(width, 18);
}

TEST(DisplayLooks, changesColoursAndPaintsAnew) {
    Mirrored p;
    p.receive("\x1a"
              "A");
    p.canvas.forget();
    p.frmTerminal.termfarb.Click();
    EXPECT_EQ(p.settings.fbfarbe, Variant(std::int16_t{1}));
    EXPECT_TRUE(p.frmTerminal.termfarb.Checked);
    EXPECT_EQ(p.frmTerminal.Picture1.BackColor.get(), colour::rgb(0, 0, 192));
    EXPECT_THAT(p.canvas.strokes(),
                ElementsAre("clear #0000c0", "text 12 19 'A' Courier New 14 in 12x19 #ffff00"));
    p.canvas.forget();
    p.frmTerminal.termfarb.Click();
    EXPECT_EQ(p.settings.fbfarbe, Variant(std::int16_t{0}));
    EXPECT_FALSE(p.frmTerminal.termfarb.Checked);
    EXPECT_THAT(p.canvas.strokes(),
                ElementsAre("clear #c0c0ff", "text 12 19 'A' Courier New 14 in 12x19 #000000"));
}

TEST(DisplayLooks, takesTheDisplaysFontFromTheDialog) {
    Mirrored p;
    p.dialogs.expect_font({"Courier New", 14}, FontChoice{"Consolas", 20});
    p.frmTerminal.zeisa.Click();
    EXPECT_EQ(p.frmTerminal.Picture1.FontName.get(), "Consolas");
    EXPECT_EQ(p.settings.fbschrift, Variant("Consolas"));
    EXPECT_EQ(p.settings.fbschriftgr, Variant(std::int16_t{20}));
    EXPECT_EQ(p.frmTerminal.zeichenbreite, 17); // 0.87 * 20 = 17.4
    EXPECT_EQ(p.frmTerminal.zeilenhoehe, 28);   // 27.84
    EXPECT_NE(p.files.content("c:\\velorn\\einst.par").find("Consolas"), std::string::npos);
}

TEST(DisplayLooks, keepsTheDisplaysFontWhenTheDialogIsCancelled) {
    Mirrored p;
    p.dialogs.expect_font({"Courier New", 14}, failure(RunTimeError::dialog_cancelled));
    p.frmTerminal.zeisa.Click();
    EXPECT_EQ(p.frmTerminal.Picture1.FontSize, 14);
}

TEST(DisplayLooks, takesTheTerminalsFontFromTheDialog) {
    Mirrored p;
    const FontChoice now{p.frmTerminal.txtterm.FontName, p.frmTerminal.txtterm.FontSize};
    p.dialogs.expect_font(now, FontChoice{"Consolas", 10.5});
    p.frmTerminal.zeisa2.Click();
    EXPECT_EQ(p.frmTerminal.txtterm.FontName.get(), "Consolas");
    EXPECT_EQ(p.frmTerminal.txtterm.FontSize, 10.5);
    EXPECT_EQ(p.settings.termschrift, Variant("Consolas"));
    EXPECT_EQ(p.settings.termschriftgr.number(), 10.5);
}

TEST(DisplayLooks, clampsTheCellSpacingAndMeasuresAnew) {
    struct Case {
        const char* answer;
        double stored;
        int width, height;
    };
    // 1.6 x 1.1 x 14 = 24.64; 1.6 x 1.25 x 14 = 28; 1.6 x 0.75 x 14 = 16.8
    constexpr Case cases[] = {{"1,1", 1.1, 15, 25}, {"2", 1.25, 18, 28}, {"0.5", 0.75, 10, 17}};
    for (const Case& one : cases) {
        Mirrored p;
        p.dialogs.expect_input(std::string("Wert für Zeichenabstand Fernbedienung eingeben: (0,75 - 1,25)"_w),
                               one.answer);
        p.frmTerminal.mnuzeiabst.Click();
        EXPECT_EQ(p.dialogs.last_title, "Zeichenabstand Fernbedienung");
        EXPECT_EQ(p.dialogs.last_proposal, "0,87");
        EXPECT_EQ(p.settings.zeichenabstand.number(), one.stored);
        EXPECT_EQ(p.frmTerminal.zeichenbreite, one.width);
        EXPECT_EQ(p.frmTerminal.zeilenhoehe, one.height);
    }
}

TEST(DisplayLooks, clampsTheCorrectionOfInverseBoxes) {
    struct Case {
        const char* answer;
        int stored;
    };
    constexpr Case cases[] = {{"3", 3}, {"9", 5}, {"-9", -5}, {"2,5", 2}};
    for (const Case& one : cases) {
        Mirrored p;
        p.dialogs.expect_input(std::string("Koorekturwert für inverse Darstellung eingeben: (-5 bis +5)"_w),
                               one.answer);
        p.frmTerminal.mnukorrinv.Click();
        EXPECT_EQ(p.dialogs.last_title, "Korrekturwert");
        EXPECT_EQ(p.settings.korrinv, Variant(static_cast<std::int16_t>(one.stored)));
    }
}

TEST(DisplayLooks, tellsWhatIsNoNumberAndKeepsTheValue) {
    Mirrored p;
    p.dialogs.expect_input("Koorekturwert", "viel");
    p.dialogs.expect("Typen unvertr", 48, Answer::ok);
    p.frmTerminal.mnukorrinv.Click();
    EXPECT_EQ(p.settings.korrinv.number(), 0);
    p.dialogs.expect_input("Zeichenabstand", std::nullopt);
    p.frmTerminal.mnuzeiabst.Click();
    EXPECT_EQ(p.settings.zeichenabstand.number(), 0.87);
}

TEST(DisplayLooks, fillsTheGroundOfAChangedCellInTheNewColour) {
    Mirrored p;
    for (const std::string colour : {"#0000c0", "#c0c0ff"}) {
        p.frmTerminal.termfarb.Click();
        p.canvas.forget();
        p.receive("x");
        EXPECT_THAT(p.canvas.strokes(), Contains(AllOf(StartsWith("box"), EndsWith(colour))));
    }
}

TEST(DisplayLooks, drawsTheLinesAnewWhereTheirCellsAreNow) {
    Mirrored p;
    p.receive("\x1a");
    p.receive("\x1b\x1bQ0000005000001");
    EXPECT_THAT(p.canvas.strokes(), Contains(StartsWith("line 14 21 254 21 ")));
    p.canvas.forget();
    p.dialogs.expect_input("Zeichenabstand", "1,25");
    p.frmTerminal.mnuzeiabst.Click();
    // 18 x 1.2 = 21.6; 28 x 1.1 = 30.8; 0.5 x 18 x 40 + 21.6 = 381.6
    EXPECT_THAT(p.canvas.strokes(), ElementsAre(StartsWith("clear"), StartsWith("line 22 31 382 31 ")));
}

TEST(DisplayLooks, areSavedByEachCommandThatChangesThem) {
    struct Case {
        MenuItem FrmTerminal::*item;
        std::function<void(TestProgram&)> expect;
        std::function<bool(const Settings&)> holds;
    };
    const Case cases[] = {
        {&FrmTerminal::termfarb, [](TestProgram&) {},
         [](const Settings& s) { return s.fbfarbe.number() == 1; }},
        {&FrmTerminal::zeisa,
         [](TestProgram& p) {
             p.dialogs.expect_font({"Courier New", 14}, FontChoice{"Consolas", 20});
         },
         [](const Settings& s) { return s.fbschrift.text() == "Consolas" && s.fbschriftgr.number() == 20; }},
        {&FrmTerminal::zeisa2,
         [](TestProgram& p) {
             p.dialogs.expect_font({"Courier", 12}, FontChoice{"Consolas", 10});
         },
         [](const Settings& s) {
             return s.termschrift.text() == "Consolas" && s.termschriftgr.number() == 10;
         }},
        {&FrmTerminal::mnuzeiabst, [](TestProgram& p) { p.dialogs.expect_input("Zeichenabstand", "1,1"); },
         [](const Settings& s) { return s.zeichenabstand.number() == 1.1; }},
        {&FrmTerminal::mnukorrinv, [](TestProgram& p) { p.dialogs.expect_input("Koorekturwert", "3"); },
         [](const Settings& s) { return s.korrinv.number() == 3; }},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        TestProgram p;
        p.start();
        EXPECT_FALSE(cases[i].holds(p.settings)) << i;
        cases[i].expect(p);
        (p.frmTerminal.*cases[i].item).Click();
        TestProgram next;
        next.files.set_content(einst, p.files.content(einst));
        next.start();
        EXPECT_TRUE(cases[i].holds(next.settings)) << i;
    }
}

TEST(DisplayLooks, areSavedWhenTheDialogIsCancelledToo) {
    for (const auto item : {&FrmTerminal::mnuzeiabst, &FrmTerminal::mnukorrinv}) {
        TestProgram p;
        p.start();
        const int before = p.files.replacements(einst);
        p.dialogs.expect_input({}, std::nullopt);
        (p.frmTerminal.*item).Click();
        EXPECT_EQ(p.files.replacements(einst), before + 1);
    }
}

TEST(DisplayLooks, storeNoFontThatTheControlRefuses) {
    for (const FontChoice& refused : {FontChoice{"", 20}, FontChoice{"Consolas", 0}}) {
        Mirrored p;
        p.dialogs.expect_font({"Courier New", 14}, refused);
        p.dialogs.expect_font({"Courier", 12}, refused);
        for (int i = 0; i < 2; ++i)
            p.dialogs.expect(std::string("Ungültiger Eigenschaftswert"_w), 48, Answer::ok);
        p.frmTerminal.zeisa.Click();
        p.frmTerminal.zeisa2.Click();
        EXPECT_EQ(p.settings.fbschrift.text(), "Courier New");
        EXPECT_EQ(p.settings.fbschriftgr.number(), 14);
        EXPECT_EQ(p.settings.termschrift.text(), "Courier");
        EXPECT_EQ(p.settings.termschriftgr.number(), 12);
        EXPECT_EQ(p.frmTerminal.Picture1.FontName.get(), "Courier New");
        EXPECT_EQ(p.frmTerminal.Picture1.FontSize, 14);
        EXPECT_EQ(p.frmTerminal.txtterm.FontName.get(), "Courier");
        EXPECT_EQ(p.frmTerminal.txtterm.FontSize, 12);
    }
}

} // namespace velorn::test
