#include "support/faulty_files.h"
#include "support/nobody_there.h"
#include "support/settings_samples.h"
#include "support/test_program.h"

#include <array>
#include <gtest/gtest.h>

namespace velorn::test {

namespace {

const std::string einst = "c:\\velorn\\einst.par";
const std::string datpfad = "c:\\velorn\\datpfad.par";
const std::string lan = "c:\\velorn\\lan.par";

void write_all(TestProgram& p, const Settings& s) {
    p.files.set_content(einst, file_of(einst_fields(), s));
    p.files.set_content(datpfad, file_of(datpfad_fields(), s));
    p.files.set_content(lan, file_of(lan_fields(), s));
}

struct Row {
    std::string_view name;
    std::size_t values; // 0: the plain i16
};

void expect_rows(std::span<const SettingsField> fields, std::span<const Row> rows) {
    Settings settings;
    ASSERT_EQ(fields.size(), rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(fields[i].name, rows[i].name);
        EXPECT_EQ(fields[i].plain != nullptr ? 0U : fields[i].variants(settings).size(), rows[i].values)
            << rows[i].name;
    }
}

} // namespace

TEST(SettingsFields, ofEinstParStandInFileOrder) {
    constexpr Row rows[] = {
        {"letztepfade", 5},    {"letztepfade2", 5}, {"fbschrift", 1},     {"fbschriftgr", 1},
        {"comsettings", 1},    {"comport", 1},      {"comhandshake", 1},  {"comecho", 1},
        {"anrufer", 1},        {"modeminit", 1},    {"telscroll", 1},     {"einstversion", 1},
        {"telefonpfad", 1},    {"ftast", 13},       {"altftast", 13},     {"einstversion2", 1},
        {"telzeile", 0},       {"termschrift", 1},  {"termschriftgr", 1}, {"fbfarbe", 1},
        {"zeichenabstand", 1}, {"korrinv", 1},      {"dispaufpfad", 1},   {"fbautostart", 1},
        {"vorwahlan", 1},      {"vorwahl", 1},      {"letztepfade3", 11}, {"neustartzaehler", 1},
    };
    expect_rows(einst_fields(), rows);
}

TEST(SettingsFields, ofTheTwoOtherFilesStandInFileOrder) {
    constexpr Row pfade[] = {{"datpfade", 601}};
    expect_rows(datpfad_fields(), pfade);
    constexpr Row rows[] = {{"lanport", 1},   {"lanreserve", 1},  {"lanaktiv", 1},
                            {"loginuser", 1}, {"loginpass", 1},   {"loginauto", 1},
                            {"autoholnr", 1}, {"autoholpfad", 1}, {"lanfrei", 4}};
    expect_rows(lan_fields(), rows);
}

TEST(SettingsOfAFirstStart, takeEveryDefault) {
    TestProgram p;
    p.program.start.Form_Load();
    const Settings& s = p.settings;
    for (std::size_t i = 1; i <= 4; ++i) {
        EXPECT_EQ(s.letztepfade[i].text(), "c:\\");
        EXPECT_EQ(s.letztepfade2[i].text(), "c:\\");
    }
    EXPECT_TRUE(s.letztepfade[0].empty());
    const std::pair<const Variant*, Variant> rows[] = {
        {&s.fbschrift, "Courier New"},
        {&s.fbschriftgr, std::int16_t{14}},
        {&s.comsettings, "19200,n,8,1"},
        {&s.comport, "1"},
        {&s.comhandshake, "1"},
        {&s.comecho, false},
        {&s.anrufer, "Benutzer"},
        {&s.modeminit, "e1"},
        {&s.telscroll, std::int16_t{0}},
        {&s.einstversion, std::int16_t{4}},
        {&s.telefonpfad, "c:\\velorn\\telefon.par"},
        {&s.einstversion2, std::int16_t{20}},
        {&s.termschrift, "Courier"},
        {&s.termschriftgr, std::int16_t{12}},
        {&s.fbfarbe, std::int16_t{0}},
        {&s.zeichenabstand, 0.87},
        {&s.korrinv, std::int16_t{0}},
        {&s.dispaufpfad, "c:\\velorn\\dispauf.par"},
        {&s.fbautostart, std::int16_t{1}},
        {&s.vorwahlan, std::int16_t{0}},
        {&s.vorwahl, "01019"},
        {&s.neustartzaehler, std::int16_t{1}},
        {&s.lanport, "23"},
    };
    for (std::size_t i = 0; i < std::size(rows); ++i)
        EXPECT_TRUE(identical(*rows[i].first, rows[i].second)) << i;
    EXPECT_EQ(s.telzeile, -1);
    for (std::size_t i = 1; i <= 10; ++i) EXPECT_EQ(s.letztepfade3[i].text(), "c:\\");
}

TEST(SettingsOfAFirstStart, giveTheFunctionKeysTheirTexts) {
    TestProgram p;
    p.program.start.Form_Load();
    constexpr std::array texts = {"<01>TERMINATE Watch -- PREVENT WATCHDOG",
                                  "<01>TERMINATE START",
                                  "<01>AFTER 60 MIN ACTIVATE RESET",
                                  "<01>CLEARFLASH AD 3 SZ 6",
                                  "<01>SYSTEM_RESET",
                                  "<01>FLLOAD BANK 3 OFFS 0 ED.test",
                                  "<01>sh WATCHDOG",
                                  "<01>s",
                                  "<01>l",
                                  "<01>lu",
                                  "<01>lu<13>",
                                  "<01>define.x--clock; ALL 8 SEC x"};
    for (std::size_t i = 1; i <= 12; ++i) {
        EXPECT_EQ(p.settings.ftast[i].text(), texts[i - 1]);
        EXPECT_TRUE(identical(p.settings.altftast[i], Variant(i == 6 ? "<01>EDINFO" : ""))) << i;
    }
}

TEST(SettingsOfTheUser, comeBackAsTheyWereWritten) {
    TestProgram p;
    write_all(p, user_settings());
    p.program.start.Form_Load();
    p.settings.neustartzaehler = std::int16_t{41};
    p.program.settings_files.saveeinst();
    EXPECT_EQ(p.files.content(einst), file_of(einst_fields(), user_settings()));
    EXPECT_EQ(p.files.content(datpfad), file_of(datpfad_fields(), user_settings()));
    EXPECT_EQ(p.files.content(lan), file_of(lan_fields(), user_settings()));
}

TEST(SettingsOfTheUser, keepTheTagsThatWereRead) {
    const Variant ones[] = {"1",  std::int32_t{1}, 1.0F,     1.0, Currency{10'000}, DateSerial{1},
                            true, Null{},          Variant()};
    for (const Variant& one : ones) {
        TestProgram p;
        Settings s = user_settings();
        s.fbfarbe = one;
        s.lanreserve = one;
        write_all(p, s);
        p.program.start.Form_Load();
        EXPECT_TRUE(identical(p.settings.fbfarbe, one));
        p.settings.neustartzaehler = s.neustartzaehler;
        p.program.settings_files.saveeinst();
        EXPECT_EQ(p.files.content(einst), file_of(einst_fields(), s));
        EXPECT_EQ(p.files.content(lan), file_of(lan_fields(), s));
    }
}

class Upgrade : public testing::TestWithParam<int> {};

TEST_P(Upgrade, keepsWhatTheFileHeldAndAddsTheDefaults) {
    const int version = GetParam();
    const Settings before = user_settings();
    TestProgram p;
    p.files.set_content(einst, einst_of_version(before, version));
    p.files.set_content(datpfad, file_of(datpfad_fields(), before));
    p.files.set_content(lan, file_of(lan_fields(), before));
    p.program.start.Form_Load();
    const Settings& s = p.settings;
    EXPECT_EQ(s.einstversion.number(), 4);
    EXPECT_EQ(s.einstversion2.number(), 20);
    EXPECT_EQ(s.comsettings.text(), "9600,e,7,2");
    EXPECT_EQ(s.telefonpfad.text(), version >= 3 ? "d:\\buch\\telefon.par" : "c:\\velorn\\telefon.par");
    EXPECT_EQ(s.ftast[1].text(), version >= 4 ? "taste 1" : "<01>TERMINATE Watch -- PREVENT WATCHDOG");
    EXPECT_EQ(s.altftast[6].text(), version >= 20 ? "strg 6" : "<01>EDINFO");
    EXPECT_EQ(s.altftast[7].text(), version >= 4 ? "strg 7" : "");
    EXPECT_EQ(s.telzeile, version >= 10 ? 3 : -1);
    EXPECT_EQ(s.termschrift.text(), version >= 11 ? "Consolas" : "Courier");
    EXPECT_EQ(s.termschriftgr.number(), version >= 11 ? 10 : 12);
    EXPECT_EQ(s.fbfarbe.number(), version >= 12 ? 1 : 0);
    EXPECT_EQ(s.zeichenabstand.number(), version >= 13 ? 0.9 : 0.87);
    EXPECT_EQ(s.korrinv.number(), version >= 14 ? -2 : 0);
    EXPECT_EQ(s.dispaufpfad.text(), version >= 15 ? "d:\\buch\\dispauf.par" : "c:\\velorn\\dispauf.par");
    EXPECT_EQ(s.fbautostart.number(), version >= 16 ? 0 : 1);
    EXPECT_EQ(s.vorwahlan.number(), version >= 17 ? 1 : 0);
    EXPECT_EQ(s.vorwahl.text(), version >= 17 ? "01033" : "01019");
    EXPECT_EQ(s.letztepfade3[10].text(), version >= 18 ? "d:\\sicher\\10" : "c:\\");
    EXPECT_EQ(s.neustartzaehler.number(), version >= 20 ? 42 : 1);
    // What stood in the two other files is kept over every rewrite.
    EXPECT_EQ(s.datpfade[600].text(), "d:\\archiv\\letzte.dat");
    EXPECT_EQ(p.files.content(lan), file_of(lan_fields(), before));
}

INSTANTIATE_TEST_SUITE_P(FromEachVersion, Upgrade,
                         testing::Values(0, 1, 3, 4, 10, 11, 12, 13, 14, 15, 16, 17, 18, 20));

TEST(Upgrades, fromVersion3TakeElevenRewritesAndTwelveWithoutALanFile) {
    for (const bool with_lan : {true, false}) {
        TestProgram p;
        p.files.set_content(einst, einst_of_version(user_settings(), 3));
        if (with_lan) p.files.set_content(lan, file_of(lan_fields(), user_settings()));
        p.program.start.Form_Load();
        EXPECT_EQ(p.files.replacements(einst), with_lan ? 11 : 12);
    }
}

TEST(Upgrades, ofAFileThatStopsBehindItsVersionKeepThatAndAddTheDefaults) {
    TestProgram p;
    const Settings before = user_settings();
    std::string phone_book;
    encode(before.telefonpfad, phone_book);
    std::string cut = einst_of_version(before, 3);
    cut.resize(cut.size() - phone_book.size());
    p.files.set_content(einst, cut);
    p.files.set_content(datpfad, file_of(datpfad_fields(), before));
    p.files.set_content(lan, file_of(lan_fields(), before));
    p.program.start.Form_Load();
    EXPECT_EQ(p.settings.comsettings.text(), "9600,e,7,2");
    EXPECT_TRUE(p.settings.telefonpfad.empty());
    EXPECT_EQ(p.settings.ftast[12].text(), "<01>define.x--clock; ALL 8 SEC x");
    EXPECT_EQ(p.settings.altftast[6].text(), "<01>EDINFO");
    EXPECT_EQ(p.settings.einstversion.number(), 4);
    EXPECT_EQ(p.settings.einstversion2.number(), 20);
    EXPECT_EQ(p.settings.neustartzaehler.number(), 1);
    EXPECT_EQ(p.files.replacements(einst), 11);
}

TEST(TheLineNumber, isTheOnePlainValueBetweenTaggedOnes) {
    Settings a = user_settings();
    Settings b = a;
    b.telzeile = 0x1234;
    const std::string one = file_of(einst_fields(), a);
    const std::string two = file_of(einst_fields(), b);
    ASSERT_EQ(one.size(), two.size());
    std::size_t at = 0;
    while (one[at] == two[at]) ++at;
    EXPECT_EQ(two.substr(at, 2), "\x34\x12");
    EXPECT_EQ(two.substr(at + 2, 2), std::string("\x08\x00", 2)); // termschrift's tag follows at once
}

TEST(TheCellWidth, isKeptInItsRangeAndWrittenBackOnlyLater) {
    for (const auto& [stored, read] : {std::pair{2.0, 1.25}, {0.5, 0.75}, {1.0, 1.0}}) {
        TestProgram p;
        Settings s = user_settings();
        s.zeichenabstand = stored;
        write_all(p, s);
        p.program.start.Form_Load();
        EXPECT_EQ(p.settings.zeichenabstand.number(), read);
        EXPECT_EQ(p.files.content(einst), file_of(einst_fields(), s));
        p.program.settings_files.saveeinst();
        s.zeichenabstand = read;
        s.neustartzaehler = std::int16_t{42};
        EXPECT_EQ(p.files.content(einst), file_of(einst_fields(), s));
    }
}

TEST(TheInverseCorrection, isKeptInItsRange) {
    for (const auto& [stored, read] : {std::pair{9, 5}, {-9, -5}, {3, 3}}) {
        TestProgram p;
        Settings s = user_settings();
        s.korrinv = std::int16_t(stored);
        write_all(p, s);
        p.program.start.Form_Load();
        EXPECT_EQ(p.settings.korrinv.number(), read);
    }
}

TEST(TheTcpPort, belowOneBecomes23) {
    const std::pair<Variant, const char*> rows[] = {{"0", "23"}, {Variant(), "23"}, {std::int16_t{-1}, "23"},
                                                    {"x", "23"}, {"8080", "8080"},  {"1", "1"}};
    for (const auto& [stored, read] : rows) {
        TestProgram p;
        Settings s = user_settings();
        s.lanport = stored;
        write_all(p, s);
        p.program.start.Form_Load();
        EXPECT_EQ(p.settings.lanport.text(), read);
        EXPECT_EQ(p.files.replacements(lan), stored.text() == read ? 0 : 1);
    }
}

TEST(ShrinkingFiles, keepTheirStaleTail) {
    TestProgram p;
    Settings s = user_settings();
    write_all(p, s);
    const std::string before = p.files.content(lan);
    p.program.start.Form_Load();
    p.settings.loginuser = "n";
    p.program.settings_files.saveeinst();
    const std::string after = p.files.content(lan);
    s.loginuser = "n";
    const std::string fresh = file_of(lan_fields(), s);
    EXPECT_EQ(after, fresh + before.substr(fresh.size()));
}

TEST(DamagedFiles, cutAtAnyByteLetTheProgramStart) {
    const std::string whole = file_of(einst_fields(), user_settings());
    for (std::size_t size = 0; size < whole.size(); size += size < 400 ? 1 : 7) {
        TestProgram p;
        p.files.set_content(einst, whole.substr(0, size));
        p.program.start.Form_Load();
        EXPECT_TRUE(p.frmTerminal.form.Visible.get()) << size;
        EXPECT_EQ(p.settings.einstversion2.number(), 20) << size;
    }
}

TEST(DamagedFiles, withAnUnknownTagAnywhereAreRecovered) {
    for (const std::string& path : {einst, datpfad, lan}) {
        const bool in_einst = path == einst;
        const std::string whole = file_of(in_einst      ? einst_fields()
                                          : path == lan ? lan_fields()
                                                        : datpfad_fields(),
                                          user_settings());
        for (std::size_t at = 0; at + 1 < std::min<std::size_t>(whole.size(), 600); at += 3) {
            TestProgram p;
            write_all(p, user_settings());
            std::string damaged = whole;
            damaged.replace(at, 2, "\x63\x63");
            p.files.set_content(path, damaged);
            p.program.start.Form_Load();
            ASSERT_TRUE(p.frmTerminal.form.Visible.get()) << path << " " << at;
            ASSERT_GE(p.settings.einstversion2.number(), 20) << path << " " << at;
        }
    }
}

TEST(DamagedFiles, aDamagedDatpfadLeavesTheOtherFilesValues) {
    TestProgram p;
    write_all(p, user_settings());
    p.files.set_content(datpfad, "\x63\x63");
    p.program.start.Form_Load();
    EXPECT_EQ(p.settings.loginuser, user_settings().loginuser);
    EXPECT_EQ(p.settings.lanport, user_settings().lanport);
    TestProgram next;
    for (const std::string& path : {einst, datpfad, lan}) next.files.set_content(path, p.files.content(path));
    next.program.start.Form_Load();
    EXPECT_EQ(next.settings.loginuser, user_settings().loginuser);
}

TEST(AStart, comesToItsEndWhicheverFileOperationFailsOnce) {
    for (int n = 1; n < 200; ++n) {
        VirtualEventLoop loop;
        MemoryFiles disk;
        FaultyFiles faulty(disk);
        faulty.fail_at(n, RunTimeError::disk_full);
        NobodyThere nobody;
        FakeSerialPort serial{loop};
        FakeTcpClient tcp{loop};
        FakePrinter printer;
        FakeProcesses processes;
        FakeVisualisation visualisation;
        Program program{World{
            loop, faulty, nobody, serial, tcp, printer, processes, visualisation, "c:\\velorn", {1366, 768}}};
        program.start.Form_Load();
        EXPECT_TRUE(program.frmTerminal.form.Visible) << n;
        EXPECT_EQ(program.settings.einstversion2.number(), 20) << n;
    }
}

TEST(DamagedFiles, losesOnlyWhatTheRecoveryResets) {
    TestProgram p;
    write_all(p, user_settings());
    std::string damaged = p.files.content(einst);
    damaged[0] = 'c'; // the very first tag
    p.files.set_content(einst, damaged);
    p.program.start.Form_Load();
    EXPECT_EQ(p.settings.comsettings.text(), "19200,n,8,1");
    EXPECT_EQ(p.settings.datpfade[600].text(), "d:\\archiv\\letzte.dat");
    EXPECT_EQ(p.settings.loginuser.text(), "nutzer");
}

TEST(AFolderThatCannotBeWritten, isToldOnceAndTheProgramStarts) {
    TestProgram p;
    write_all(p, user_settings());
    p.files.set_content(einst, einst_of_version(user_settings(), 3));
    for (const std::string& path : {einst, datpfad, lan}) p.files.make_read_only(path);
    p.dialogs.expect("Zugriff verweigert", 48, Answer::ok);
    p.program.start.Form_Load();
    EXPECT_TRUE(p.frmTerminal.form.Visible.get());
    EXPECT_EQ(p.settings.einstversion2.number(), 20);
    EXPECT_EQ(p.settings.comsettings.text(), "9600,e,7,2");
}

} // namespace velorn::test
