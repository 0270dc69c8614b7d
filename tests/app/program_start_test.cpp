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
    struct Case {
        std::int16_t stored, counted;
    };
    for (const Case& one : {Case{30001, 11}, {-1, 11}, {30000, 30000}, {29999, 30000}, {0, 1}}) {
        const Started s([&one](Settings& v) { v.neustartzaehler = one.stored; });
        EXPECT_EQ(s.p.settings.neustartzaehler.number(), one.counted) << one.stored;
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

TEST(TheMenu, hasItsItemsAndCaptionsInOrder) {
    struct Row {
        int depth;
        std::string_view name, caption;
    };
    static constexpr Row expected[] = {
        {0, "mnuFile", "&Datei"_w},
        {1, "mnuOpenLog", "LOG-Datei ö&ffnen..."_w},
        {1, "mnuCloseLog", "LOG-Datei s&chließen"_w},
        {1, "", ""},
        {1, "mnuFileExit", "&Beenden"_w},
        {0, "mnuPort", "&COM-Anschluß"_w},
        {1, "mnuOpen", "Anschluß ö&ffnen"_w},
        {1, "mnuProperties", "&Einstellungen..."_w},
        {1, "", ""},
        {1, "modinit", "Modem initialisieren"_w},
        {1, "modsearch", "Modem suchen"_w},
        {0, "mnuMSComm", "&MSComm"_w},
        {1, "mnuInputLen", "Eingabe&länge..."_w},
        {1, "mnuRThreshold", "&Empfangslimit..."_w},
        {1, "mnuSThreshold", "&Sendelimit..."_w},
        {1, "mnuParRep", "P&arität ersetzen..."_w},
        {1, "mnuDTREnable", "&DTR aktivieren"_w},
        {1, "", ""},
        {1, "mnuHCD", "&CD aktiv..."_w},
        {1, "mnuHCTS", "C&TS aktiv..."_w},
        {1, "mnuHDSR", "DS&R aktiv..."_w},
        {0, "mnuCall", "&Anruf"_w},
        {1, "mnutelefonbuch", "Telefonnummer &wählen..."_w},
        {1, "mnuHangUp", "Telefon &auflegen"_w},
        {1, "", ""},
        {1, "fernbedauto", "Fernbedienung automatisch starten"_w},
        {0, "mnuzeisa", "&Darstellung"_w},
        {1, "zeisa", "Zeichensatz Fernbedienung"_w},
        {1, "mnukorrinv", "Korrekturwert inverse Darstellung"_w},
        {1, "mnuzeiabst", "Zeichenabstand Fernbedienung"_w},
        {1, "termfarb", "Fernbedienung blau/gelb"_w},
        {1, "zeisa2", "Zeichensatz Terminalfenster"_w},
        {1, "", ""},
        {1, "frakt", "Fraktal berechnen"_w},
        {1, "informatik", "Informatik"_w},
        {0, "mnubat", "&Gepufferte Daten"_w},
        {1, "mnubatt1", "BATRAM1 sichern"_w},
        {2, "savebattvx", "TVX: h0.BATRAM1 auf PC Datei sichern (über Ser2)"_w},
        {2, "savebattvx", "DLS: r0.BATRAM1 auf PC Datei sichern (über Ser2)"_w},
        {2, "savebattvx", "KOLU: r1.BATRAM1 auf PC Datei sichern (über Ser2)"_w},
        {2, "savebattvx", "KOLU: r1.BATRAM1 auf PC Datei sichern (über Ser1)"_w},
        {2, "savebattvx2", "TVX/Zarmo: h0/r0.BIN auf PC Datei sichern (Ser1 oder Ser2)"_w},
        {1, "mnubatt2", "BATRAM1 wiederherstellen"_w},
        {2, "sendbattvx", "TVX: h0.BATRAM1 wiederherstellen von PC Datei (über Ser2)"_w},
        {2, "sendbattvx", "DLS: r0.BATRAM1 wiederherstellen von PC Datei (über Ser2)"_w},
        {2, "sendbattvx", "KOLU: r1.BATRAM1 wiederherstellen von PC Datei (über Ser2)"_w},
        {2, "sendbattvx", "KOLU: r1.BATRAM1 wiederherstellen von PC Datei (über Ser1)"_w},
        {0, "mnuentwi", "&Entwicklung"_w},
        {1, "mnuftast", "Funktionstastenbelegung"_w},
        {1, "", ""},
        {1, "mnuzarmo", "Zarmo"_w},
        {1, "mnutvxt", "TVX (Gelmar)"_w},
        {1, "mnuwendra", "TVX (Wendra!!!)"_w},
        {1, "mnudls", "DLS"_w},
        {1, "mnudls2", "DLS Modulst. Ruthen"_w},
        {1, "", ""},
        {1, "mnusendtext", "Datei *.*  >  ed.test senden"_w},
        {1, "mnusendtext", "Datei*.* > h0.test senden"_w},
        {1, "mnuloadText", "Datei *.psr >   laden"_w},
        {1, "mnusendonly", "Datei nur senden"_w},
        {1, "mnuCHKSUM", "Checksumme PC-Datei"_w},
        {1, "mnudatchange", "Dateikonvertierung"_w},
        {1, "mnubatram", "Konvertieren zu BATRAM-Datei"_w},
        {1, "", ""},
        {1, "uhrterm", "Uhrzeit in Terminalausgaben"_w},
        {1, "testwindow", "Testfenster"_w},
        {1, "resetcount", "Neustartzähler"_w},
    };
    TestProgram p;
    const auto rows = FrmTerminal::menu_rows();
    ASSERT_EQ(rows.size(), std::size(expected));
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(rows[i].depth, expected[i].depth) << i;
        EXPECT_EQ(rows[i].name, expected[i].name) << i;
        EXPECT_EQ(rows[i].item == nullptr, expected[i].name.empty()) << i;
        if (rows[i].item != nullptr) {
            EXPECT_EQ(rows[i].item(p.frmTerminal).Caption.get(), expected[i].caption) << i;
        }
    }
}

TEST(TheLamps, haveTheirLabels) {
    VirtualEventLoop loop;
    const FrmTerminal f(loop);
    EXPECT_EQ(f.Label2.Caption.get(), "TxD");
    EXPECT_EQ(f.Label3.Caption.get(), "RxD");
    EXPECT_EQ(f.Label4.Caption.get(), "COM  geschlossen");
    EXPECT_EQ(f.Label5.Caption.get(), "TCP/IP");
    EXPECT_EQ(f.Label6.Caption.get(), "RxD");
    EXPECT_EQ(f.Label7.Caption.get(), "TxD");
    EXPECT_EQ(f.Label16.Caption.get(), "IP-Verbindung unterbrochen");
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
