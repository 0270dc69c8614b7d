#include "runtime/text.h"
#include "support/settings_samples.h"
#include "support/test_program.h"

#include <functional>
#include <gtest/gtest.h>

namespace velorn::test {

namespace {

const std::string einst = "c:\\velorn\\einst.par";

// A start with a settings file in which one thing was changed.
struct Started {
    TestProgram p;

    explicit Started(const std::function<void(Settings&)>& change) {
        Settings s = user_settings();
        change(s);
        p.files.set_content(einst, file_of(einst_fields(), s));
        p.files.set_content("c:\\velorn\\lan.par", file_of(lan_fields(), s));
        p.program.start.Form_Load();
    }
};

} // namespace

TEST(FirstStart, withoutAnyFileWritesTheDefaultsAndOpensNormally) {
    TestProgram p;
    p.start();
    EXPECT_EQ(p.settings.comsettings.text(), "19200,n,8,1");
    EXPECT_EQ(p.settings.einstversion2.number(), 20);
    EXPECT_TRUE(p.program.MSComm1.PortOpen());
    EXPECT_EQ(p.frmTerminal.form.Caption.get(), "Velorn  V72");
    EXPECT_EQ(p.settings.neustartzaehler.number(), 1);
    for (const char* name : {"\\einst.par", "\\datpfad.par", "\\lan.par"}) {
        EXPECT_TRUE(p.files.exists(std::string(TestProgram::folder) + name)) << name;
    }
}

TEST(TheStartCounter, outsideItsRangeBecomesTenAndOne) {
    for (const auto& [stored, counted] :
         {std::pair{30001, 11}, {-1, 11}, {30000, 30000}, {29999, 30000}, {0, 1}}) {
        const Started s([&](Settings& v) { v.neustartzaehler = static_cast<std::int16_t>(stored); });
        EXPECT_EQ(s.p.settings.neustartzaehler.number(), counted) << stored;
    }
}

TEST(WhatAControlRefuses, leadsToTheRecovery) {
    const std::function<void(Settings&)> rows[] = {
        [](Settings& s) { s.fbschrift = ""; },
        [](Settings& s) { s.fbschriftgr = std::int16_t{0}; },
        [](Settings& s) { s.fbschriftgr = std::int16_t{-3}; },
        [](Settings& s) { s.fbschriftgr = "gross"; },
        [](Settings& s) { s.comsettings = "schnell"; },
        [](Settings& s) { s.comsettings = "9600,n,4,1"; },
        [](Settings& s) { s.comport = "0"; },
        [](Settings& s) { s.comport = "256"; },
        [](Settings& s) { s.comport = "Com1"; },
        [](Settings& s) { s.comport = 1e9; },
        [](Settings& s) { s.comhandshake = "4"; },
        [](Settings& s) { s.termschrift = ""; },
        [](Settings& s) { s.termschriftgr = std::int16_t{0}; },
    };
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        const Started s(rows[i]);
        EXPECT_EQ(s.p.settings.comsettings.text(), "19200,n,8,1") << i;
        EXPECT_EQ(s.p.settings.telefonpfad.text(), "c:\\velorn\\telefon.par") << i;
        EXPECT_EQ(s.p.settings.vorwahl.text(), "01033") << i; // behind record 14: kept
        EXPECT_EQ(s.p.frmTerminal.form.Caption.get(), "Velorn  V72") << i;
    }
}

TEST(ATerminalFont, thatIsRefusedTwiceTakesItsDefault) {
    const Started s([](Settings& v) {
        v.termschrift = "";
        v.termschriftgr = std::int16_t{-1};
    });
    EXPECT_EQ(s.p.settings.termschrift.text(), "Courier");
    EXPECT_EQ(s.p.settings.termschriftgr.number(), 12);
}

TEST(TheCells, areRoundedHalfToEven) {
    // 0.75 x 14 = 10.5 becomes 10; 16.8 becomes 17.
    const Started s([](Settings& v) {
        v.fbschriftgr = std::int16_t{14};
        v.zeichenabstand = 0.75;
    });
    EXPECT_EQ(s.p.frmTerminal.zeichenbreite, 10);
    EXPECT_EQ(s.p.frmTerminal.zeilenhoehe, 17);
}

TEST(TheLayout, goesByTheHeightOfTheScreen) {
    for (const auto& [height, share] :
         {std::pair{651, 0.8}, {650, 0.77}, {591, 0.77}, {590, 0.7}, {1080, 0.8}}) {
        VirtualEventLoop loop;
        MemoryFiles files;
        ScriptedDialogs dialogs{loop};
        FakeSerialPort serial{loop};
        FakeTcpClient tcp{loop};
        FakePrinter printer;
        FakeProcesses processes;
        FakeVisualisation visualisation;
        Program program{World{loop,
                              files,
                              dialogs,
                              serial,
                              tcp,
                              printer,
                              processes,
                              visualisation,
                              "c:\\velorn",
                              {1000, height}}};
        program.start.Form_Load();
        EXPECT_EQ(program.frmTerminal.txtterm_width, 990);
        EXPECT_NEAR(program.frmTerminal.txtterm_height, height * share, 0.5);
        EXPECT_EQ(program.frmTerminal.Picture1.Height.get(), program.frmTerminal.txtterm_height);
        EXPECT_EQ(program.frmTerminal.form.Height.get(), height);
    }
}

TEST(TheDisplaysColours, followTheSetting) {
    const Started blue([](Settings& v) { v.fbfarbe = std::int16_t{1}; });
    EXPECT_EQ(blue.p.frmTerminal.Picture1.BackColor, colour::rgb(0, 0, 192));
    EXPECT_EQ(blue.p.frmTerminal.Picture1.FillColor, colour::rgb(0, 0, 192));
    EXPECT_EQ(blue.p.frmTerminal.Picture1.ForeColor, colour::rgb(255, 255, 0));
    EXPECT_TRUE(blue.p.frmTerminal.termfarb.Checked);
    const Started light([](Settings& v) { v.fbfarbe = std::int16_t{0}; });
    EXPECT_EQ(light.p.frmTerminal.Picture1.BackColor, colour::rgb(192, 192, 255));
    EXPECT_EQ(light.p.frmTerminal.Picture1.ForeColor, colour::black);
    EXPECT_FALSE(light.p.frmTerminal.termfarb.Checked);
}

TEST(AutomaticRemoteControl, isCheckedAboveZero) {
    for (const int stored : {0, 1}) {
        const Started s([&](Settings& v) { v.fbautostart = static_cast<std::int16_t>(stored); });
        EXPECT_EQ(s.p.frmTerminal.fernbedauto.Checked, stored > 0);
    }
}

TEST(AfterAStartThatCouldNotReadAFile, savingIsToldEachTimeAndThePortHasItsDefault) {
    TestProgram p;
    const std::string damaged = "c:\\velorn\\datpfad.par";
    p.files.set_content(damaged, "\x63\x63\x63\x63");
    p.files.make_read_only(damaged);
    p.dialogs.expect("Zugriff verweigert", 48, Answer::ok);
    p.start();
    EXPECT_EQ(p.module1.mdexport, "23");
    for (int i = 0; i < 2; ++i) {
        p.dialogs.expect("Zugriff verweigert", 48, Answer::ok);
        p.program.settings_files.saveeinst();
    }
}

TEST(AfterTheStart, theStateIsAsTold) {
    TestProgram p;
    p.program.start.Form_Load();
    EXPECT_TRUE(p.module1.gatewayoffen);
    EXPECT_TRUE(p.frmTerminal.termecho);
    EXPECT_FALSE(p.frmTerminal.fernbedaktiv);
    EXPECT_EQ(p.frmTerminal.zeile, 1);
    EXPECT_EQ(p.frmTerminal.spalte, 1);
    EXPECT_EQ(p.module1.apppfad, "c:\\velorn");
    EXPECT_EQ(p.frmTerminal.schirm.at(Schirm::character, 1, 1), ' ');
    EXPECT_EQ(p.frmTerminal.schirm.at(Schirm::mark, 80, 29), ' ');
    EXPECT_EQ(p.frmTerminal.txtterm.SelColor, colour::blue);
    EXPECT_TRUE(p.terminal().empty());
    EXPECT_FALSE(p.frmTerminal.imgConnected.Visible);
    EXPECT_TRUE(p.frmTerminal.Timer26.Enabled);
    EXPECT_TRUE(p.frmTerminal.Timer28.Enabled);
    EXPECT_FALSE(p.frmTerminal.Timer27.Enabled);
}

TEST(TheTimers, haveTheirIntervalsAndStartValues) {
    VirtualEventLoop loop;
    FrmTerminal f(loop);
    struct Row {
        const Timer* timer;
        int interval;
        bool on;
    };
    const Row rows[] = {
        {&f.Timerglobal, 1000, true}, {&f.Timer1, 1000, false},  {&f.Timer2, 2000, false},
        {&f.Timer3, 1200, false},     {&f.Timer4, 1000, false},  {&f.Timer5, 100, true},
        {&f.Timer6, 1000, false},     {&f.Timer7, 100, true},    {&f.Timer8, 100, true},
        {&f.Timer9, 2000, true},      {&f.Timer10, 1000, false}, {&f.Timer11, 1000, false},
        {&f.Timer12, 1000, true},     {&f.Timer20, 1000, false}, {&f.Timer23, 1000, false},
        {&f.Timer24, 1000, false},    {&f.Timer25, 1000, false}, {&f.Timer26, 400, false},
        {&f.Timer27, 1000, false},    {&f.Timer28, 1000, false}, {&f.Timer30, 8000, false},
        {&f.Timer31, 20000, false},
    };
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        EXPECT_EQ(rows[i].timer->Interval(), rows[i].interval) << i;
        EXPECT_EQ(static_cast<bool>(rows[i].timer->Enabled), rows[i].on) << i;
    }
}

TEST(TheSecondsAndTheAges, countAndStopAtTheirCaps) {
    TestProgram p;
    p.start();
    p.loop.pass(8400);
    EXPECT_EQ(p.module1.globalsek, 10);
    EXPECT_EQ(p.frmTerminal.txttest3.Text.get(), "10");
    EXPECT_EQ(p.module1.dialalter, 5);
    EXPECT_EQ(p.module1.loginalter, 5);
    p.loop.pass(3'000'000);
    EXPECT_EQ(p.module1.dialalter, 1000);
    EXPECT_EQ(p.module1.loginalter, 1000);
}

TEST(TheEmptyTimer, switchesItselfOff) {
    TestProgram p;
    p.start();
    p.frmTerminal.Timer2.Enabled = true;
    p.loop.pass(2000);
    EXPECT_FALSE(p.frmTerminal.Timer2.Enabled);
}

TEST(AfterRemoteControl, theTerminalShowsAgainWhatArrives) {
    TestProgram p;
    p.start();
    p.receive("*FERNBED");
    EXPECT_FALSE(p.frmTerminal.txtterm.Visible);
    p.receive(" - OFFLINE - ");
    EXPECT_TRUE(p.frmTerminal.txtterm.Visible);
    EXPECT_FALSE(p.frmTerminal.termecho);
    p.loop.pass(1200);
    p.receive("wieder da");
    EXPECT_EQ(p.terminal(), "wieder da");
}

TEST(TheCarriedBoxes, holdTheirTexts) {
    TestProgram p;
    EXPECT_EQ(p.frmTerminal.txttest1.Text.get(), "user");
    EXPECT_EQ(p.frmTerminal.txttest2.Text.get(), "pass");
}

TEST(TheMenu, hasItsCaptions) {
    TestProgram p;
    EXPECT_EQ(p.frmTerminal.mnuOpen.Caption.get(), "Anschluß ö&ffnen"_w);
    EXPECT_EQ(p.frmTerminal.mnuCloseLog.Caption.get(), "LOG-Datei s&chließen"_w);
    for (const MenuRow& row : FrmTerminal::menu_rows()) {
        if (row.item != nullptr) {
            EXPECT_EQ(row.item(p.frmTerminal).Caption.get(), row.caption);
        }
    }
}

TEST(TwoPrograms, liveInOneProcessWithoutTouchingEachOther) {
    TestProgram one;
    TestProgram other;
    one.start();
    other.start();
    one.receive("nur hier");
    EXPECT_EQ(other.terminal(), "");
    one.settings.anrufer = "eins";
    one.program.settings_files.saveeinst();
    EXPECT_EQ(other.settings.anrufer.text(), "Benutzer");
}

} // namespace velorn::test
