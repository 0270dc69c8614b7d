#include "runtime/disk_files.h"
#include "runtime/text.h"
#include "support/faulty_files.h"
#include "support/temporary_folder.h"
#include "support/test_program.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velorn::test {

namespace {

using namespace std::string_literals;

constexpr const char* name = "c:\\logs\\gelmar.log";

struct WithLog : TestProgram {
    WithLog() {
        start();
        open();
    }
    void open() {
        dialogs.expect_file(std::string("LOG-Datei öffnen"_w), std::string(name));
        frmTerminal.mnuOpenLog.Click();
    }
    std::string log() const { return files.content(name); }
};

// The LOG file alone, on files that can be made to fail.
struct UnderFire {
    explicit UnderFire(Files& disk) : files(disk) {
        for (Variant& remembered : settings.letztepfade) remembered = "c:\\";
    }
    void open(const std::string& at = name) {
        dialogs.expect_file(std::string("LOG-Datei öffnen"_w), at);
        frmTerminal.mnuOpenLog.Click();
    }

    VirtualEventLoop loop;
    FaultyFiles files;
    MemoryFiles settings_disk;
    ScriptedDialogs dialogs{loop};
    Events events;
    Settings settings;
    std::string folder = "c:\\velorn";
    SettingsFiles settings_files{settings_disk, dialogs, settings, folder};
    FrmTerminal frmTerminal{loop};
    LogFile log{loop, files, dialogs, events, settings, settings_files, frmTerminal};
};

} // namespace

// ---- opening and closing ----

TEST(LogFile, isProposedByDateAndTimeInTheRememberedFolder) {
    TestProgram p;
    p.start();
    p.dialogs.expect_file(std::string("LOG-Datei öffnen"_w), failure(RunTimeError::dialog_cancelled));
    p.frmTerminal.mnuOpenLog.Click();
    const DateTime now = p.loop.local_time();
    const std::string& proposed = p.dialogs.last_question.name;
    ASSERT_EQ(proposed.size(), 18U);
    EXPECT_EQ(proposed.substr(14), ".log");
    EXPECT_EQ(proposed[11], '\'');
    EXPECT_EQ(std::stoi(proposed.substr(0, 2)), now.year - 2000);
    EXPECT_EQ(std::stoi(proposed.substr(3, 2)), now.month);
    EXPECT_EQ(std::stoi(proposed.substr(6, 2)), now.day);
    EXPECT_EQ(std::stoi(proposed.substr(9, 2)), now.hour);
    EXPECT_EQ(std::stoi(proposed.substr(12, 2)), now.minute);
    EXPECT_EQ(p.dialogs.last_question.filter, "LOG-Dateien (*.LOG)|*.log|Alle Dateien (*.*)|*.*");
    EXPECT_EQ(p.dialogs.last_question.folder, "c:\\");
    EXPECT_EQ(p.frmTerminal.logdatei, 0);
}

TEST(LogFile, holdsWhatIsReceivedWithTheControllersOwnCodes) {
    WithLog p;
    p.receive("Z\x84hler \0"
              "1\r\n"s);
    p.receive("\x1b[x");
    EXPECT_EQ(p.log(), "Z\x84hler 1\r\n\x1b[x");
}

TEST(LogFile, holdsThePreparedTextWhileTimesAreStamped) {
    WithLog p;
    p.frmTerminal.uhrterm.Click();
    p.receive("Z\x84hler\rx");
    EXPECT_EQ(p.log().substr(0, 8), "Zähler\r\n"_w);
    EXPECT_EQ(p.log().size(), 8U + 8U + 1U); // a time such as 12:34:56
}

TEST(LogFile, changesTheCommandsThatCanBeUsed) {
    WithLog p;
    EXPECT_NE(p.frmTerminal.logdatei, 0);
    EXPECT_FALSE(p.frmTerminal.mnuOpenLog.Enabled);
    EXPECT_FALSE(p.frmTerminal.tbrToolBar("OpenLogFile").Enabled);
    EXPECT_TRUE(p.frmTerminal.mnuCloseLog.Enabled);
    EXPECT_TRUE(p.frmTerminal.tbrToolBar("CloseLogFile").Enabled);
    p.frmTerminal.tbrToolBar("CloseLogFile").Click();
    EXPECT_EQ(p.frmTerminal.logdatei, 0);
    EXPECT_TRUE(p.frmTerminal.mnuOpenLog.Enabled);
    EXPECT_TRUE(p.frmTerminal.tbrToolBar("OpenLogFile").Enabled);
    EXPECT_FALSE(p.frmTerminal.mnuCloseLog.Enabled);
    EXPECT_FALSE(p.frmTerminal.tbrToolBar("CloseLogFile").Enabled);
    p.receive("after");
    EXPECT_EQ(p.log(), "");
}

TEST(LogFile, remembersItsPath) {
    WithLog p;
    EXPECT_EQ(p.settings.letztepfade[4], Variant(name));
    EXPECT_NE(p.files.content("c:\\velorn\\einst.par").find(name), std::string::npos);
    p.frmTerminal.mnuCloseLog.Click();
    p.dialogs.expect_file(std::string("LOG-Datei öffnen"_w), failure(RunTimeError::dialog_cancelled));
    p.frmTerminal.tbrToolBar("OpenLogFile").Click();
    EXPECT_EQ(p.dialogs.last_question.folder, "c:\\logs");
}

TEST(LogFile, replacesAnOldFileWhenThePersonAgrees) {
    TestProgram p;
    p.files.set_content(name, "old content");
    p.start();
    p.dialogs.expect_file(std::string("LOG-Datei öffnen"_w), std::string(name));
    p.dialogs.expect("Bestehende Datei ersetzen - c:\\logs\\gelmar.log?", 35, Answer::yes);
    p.frmTerminal.mnuOpenLog.Click();
    p.receive("new");
    EXPECT_EQ(p.files.content(name), "new");
}

TEST(LogFile, writesOverAnOldFileThatIsKeptFromItsFirstByteOn) {
    TestProgram p;
    p.files.set_content(name, "old content");
    p.start();
    p.dialogs.expect_file(std::string("LOG-Datei öffnen"_w), std::string(name));
    p.dialogs.expect("Bestehende Datei ersetzen - ", 35, Answer::no);
    p.frmTerminal.mnuOpenLog.Click();
    p.receive("new");
    EXPECT_EQ(p.files.content(name), "new content");
}

TEST(LogFile, asksForTheNameAgainWhenReplacingIsCalledOff) {
    TestProgram p;
    p.files.set_content(name, "old content");
    p.start();
    p.dialogs.expect_file(std::string("LOG-Datei öffnen"_w), std::string(name));
    p.dialogs.expect("Bestehende Datei ersetzen - ", 35, Answer::cancel);
    p.dialogs.expect_file(std::string("LOG-Datei öffnen"_w), std::string("c:\\other.log"));
    p.frmTerminal.mnuOpenLog.Click();
    p.receive("x");
    EXPECT_EQ(p.files.content("c:\\other.log"), "x");
    EXPECT_EQ(p.files.content(name), "old content");
}

TEST(LogFile, tellsAnOldFileThatCantBeDeleted) {
    MemoryFiles disk;
    disk.set_content(name, "old");
    UnderFire u(disk);
    u.dialogs.expect("Bestehende Datei ersetzen - ", 35, Answer::yes);
    u.dialogs.expect("Zugriff verweigert", 48, Answer::ok);
    u.files.fail_at(2, RunTimeError::permission_denied); // exists, remove
    u.open();
    EXPECT_EQ(u.frmTerminal.logdatei, 0);
    EXPECT_EQ(disk.content(name), "old");
}

TEST(LogFile, tellsAFileThatCantBeOpened) {
    TestProgram p;
    p.files.make_read_only(name);
    p.start();
    p.dialogs.expect_file(std::string("LOG-Datei öffnen"_w), std::string(name));
    p.dialogs.expect("Zugriff verweigert", 48, Answer::ok);
    p.frmTerminal.mnuOpenLog.Click();
    EXPECT_EQ(p.frmTerminal.logdatei, 0);
    EXPECT_TRUE(p.frmTerminal.mnuOpenLog.Enabled);
    p.receive("shown all the same");
    EXPECT_EQ(p.terminal(), "shown all the same");
}

TEST(LogFile, takesTheMirroredDisplaysPlaceAndGivesItBack) {
    TestProgram p;
    p.start();
    p.receive("*EDINFO");
    p.dialogs.expect_file(std::string("LOG-Datei öffnen"_w), std::string(name));
    p.frmTerminal.mnuOpenLog.Click();
    EXPECT_FALSE(p.frmTerminal.fernbedaktiv);
    EXPECT_TRUE(p.frmTerminal.txtterm.Visible);
    EXPECT_FALSE(p.frmTerminal.Picture1.Visible);
    EXPECT_FALSE(p.frmTerminal.cursorinv);
    p.frmTerminal.zeile = 9;
    p.frmTerminal.mnuCloseLog.Click();
    EXPECT_TRUE(p.frmTerminal.fernbedaktiv);
    EXPECT_FALSE(p.frmTerminal.txtterm.Visible);
    EXPECT_TRUE(p.frmTerminal.Picture1.Visible);
    EXPECT_EQ(p.frmTerminal.zeile, 1);
    p.frmTerminal.tbrToolBar("bildumschalt").Click();
    p.dialogs.expect_file(std::string("LOG-Datei öffnen"_w), std::string("c:\\second.log"));
    p.frmTerminal.mnuOpenLog.Click();
    p.frmTerminal.mnuCloseLog.Click();
    EXPECT_FALSE(p.frmTerminal.fernbedaktiv);
}

TEST(LogFile, isClosedByTheControllerOneChunkLate) {
    WithLog p;
    (void)p.sent();
    p.receive("a\x1b\x1b"
              "E");
    EXPECT_NE(p.frmTerminal.logdatei, 0);
    p.receive("b");
    EXPECT_EQ(p.frmTerminal.logdatei, 0);
    EXPECT_EQ(p.log(), "a\x1b\x1b"
                       "Eb");
    EXPECT_EQ(p.sent(), "\r\r");
}

// ---- under fire ----

TEST(LogUnderFire, takesAWriteUpAgainAtItsPlaceWhenTheDiskHasRoomAgain) {
    MemoryFiles disk;
    UnderFire u(disk);
    u.open();
    u.events.log_text("before ");
    u.files.fill_the_disk();
    u.dialogs.expect("Festplatte voll", 21, Answer::retry);
    u.dialogs.expect("Festplatte voll", 21, Answer::retry, [&u] { u.files.mend(); });
    u.events.log_text("in between");
    EXPECT_EQ(disk.content(name), "before in between");
    u.events.log_text(" after");
    EXPECT_EQ(disk.content(name), "before in between after");
}

TEST(LogUnderFire, keepsWhatArrivesWhileTheBoxIsOpenInOrderAndAsksOnce) {
    MemoryFiles disk;
    UnderFire u(disk);
    u.open();
    u.files.fill_the_disk();
    u.dialogs.expect("Festplatte voll", 21, Answer::retry, [&u] {
        u.events.log_text("2");
        u.events.log_text("3");
        u.files.mend();
    });
    u.events.log_text("1");
    u.events.log_text("4");
    EXPECT_EQ(disk.content(name), "1234");
}

TEST(LogUnderFire, isClosedWhenThePersonGivesUp) {
    MemoryFiles disk;
    UnderFire u(disk);
    u.open();
    u.events.log_text("before");
    u.files.fill_the_disk();
    u.dialogs.expect("Festplatte voll", 21, Answer::cancel);
    u.events.log_text("!!");
    EXPECT_EQ(u.frmTerminal.logdatei, 0);
    EXPECT_TRUE(u.frmTerminal.mnuOpenLog.Enabled);
    EXPECT_EQ(disk.content(name).substr(0, 6), "before");
    u.events.log_text("nobody listens");
}

TEST(LogUnderFire, losesNothingWhicheverWriteFailsOnce) {
    for (int n = 1; n < 30; ++n) {
        MemoryFiles disk;
        UnderFire u(disk);
        u.open();
        const auto so_far = static_cast<int>(u.files.operations().size());
        u.files.fail_at(so_far + n);
        if (n <= 12) u.dialogs.expect("E/A-Fehler", 21, Answer::retry);
        std::string all;
        for (int i = 0; i < 12; ++i) {
            const std::string text = "line " + std::to_string(i) + "\r\n";
            all += text;
            u.events.log_text(text);
        }
        EXPECT_EQ(disk.content(name), all) << n;
    }
}

TEST(LogUnderFire, writesNothingIntoALogThatWasOpenedWhileTheBoxOfAnotherStood) {
    MemoryFiles disk;
    UnderFire u(disk);
    u.open();
    u.files.fill_the_disk();
    u.dialogs.expect("Festplatte voll", 21, Answer::retry, [&u] {
        u.files.mend();
        u.frmTerminal.mnuCloseLog.Click();
        u.open("c:\\second.log");
    });
    u.events.log_text("for the first");
    u.events.log_text("for the second");
    EXPECT_EQ(disk.content("c:\\second.log"), "for the second");
}

TEST(LogUnderFire, stopsWhenTheProgramEndsBehindTheBox) {
    MemoryFiles disk;
    UnderFire u(disk);
    u.open();
    u.files.fill_the_disk();
    u.dialogs.expect("Festplatte voll", 21, Answer::cancel, [&u] { u.loop.end(); });
    u.events.log_text("1");
    EXPECT_NE(u.frmTerminal.logdatei, 0); // Form_Unload closes it
}

TEST(LogUnderFire, boundsWhatWaitsBehindTheBox) {
    MemoryFiles disk;
    UnderFire u(disk);
    u.open();
    u.files.fill_the_disk();
    const std::string much(1 << 20, 'x');
    u.dialogs.expect("Festplatte voll", 21, Answer::retry, [&] {
        for (int i = 0; i < 80; ++i) u.events.log_text(much);
        u.files.mend();
    });
    u.events.log_text("1");
    EXPECT_EQ(disk.content(name).size(), LogFile::most_waiting);
}

TEST(LogUnderFire, putsAFileWhoseFolderVanishedTogetherAgain) {
    const TemporaryFolder folder;
    const std::filesystem::path logs = folder.path() / "logs";
    std::filesystem::create_directory(logs);
    const Paths paths(folder.path());
    DiskFiles disk(paths);
    UnderFire u(disk);
    u.open((logs / "a.log").string());
    u.events.log_text("before, ");
    std::filesystem::remove_all(logs);
    u.dialogs.expect("Pfad nicht gefunden", 21, Answer::retry);
    u.dialogs.expect("Pfad nicht gefunden", 21, Answer::retry,
                     [&] { std::filesystem::create_directory(logs); });
    u.events.log_text("meanwhile, ");
    u.events.log_text("after");
    EXPECT_EQ(folder.content("logs/a.log"), "before, meanwhile, after");
}

TEST(LogUnderFire, putsADeletedFileTogetherAgain) {
    const TemporaryFolder folder;
    const Paths paths(folder.path());
    DiskFiles disk(paths);
    UnderFire u(disk);
    const std::filesystem::path file = paths.native(name);
    std::filesystem::create_directories(file.parent_path());
    u.open();
    u.events.log_text("before, ");
    std::filesystem::remove(file);
    u.dialogs.expect("Datei nicht gefunden", 21, Answer::retry);
    u.events.log_text("after");
    EXPECT_EQ(*read_whole(disk, name), "before, after");
}

TEST(LogUnderFire, keepsItsBeginningWhenAnotherFileHasTakenItsName) {
    const TemporaryFolder folder;
    const Paths paths(folder.path());
    DiskFiles disk(paths);
    UnderFire u(disk);
    u.open(folder.stored("a.log"));
    u.events.log_text("the beginning, ");
    std::filesystem::remove(folder.path() / "a.log");
    folder.set_content("a.log", "XXXX");
    u.dialogs.expect("Datei nicht gefunden", 21, Answer::retry);
    u.events.log_text("the end");
    EXPECT_EQ(folder.content("a.log"), "the beginning, the end");
}

TEST(LogUnderFire, writesWhatWaitsWhenThePersonClosesItBehindTheBox) {
    MemoryFiles disk;
    UnderFire u(disk);
    u.open();
    u.files.fill_the_disk();
    u.dialogs.expect("Festplatte voll", 21, Answer::retry, [&u] {
        u.files.mend();
        u.frmTerminal.mnuCloseLog.Click();
    });
    u.events.log_text("not lost");
    EXPECT_EQ(disk.content(name), "not lost");
    EXPECT_EQ(u.frmTerminal.logdatei, 0);
}

TEST(LogUnderFire, writesWhatArrivedForAnotherLogWhileTheBoxOfTheFirstStood) {
    MemoryFiles disk;
    UnderFire u(disk);
    u.open();
    u.files.fill_the_disk();
    u.dialogs.expect("Festplatte voll", 21, Answer::retry, [&u] {
        u.files.mend();
        u.frmTerminal.mnuCloseLog.Click();
        u.open("c:\\second.log");
        u.events.log_text("for the second");
    });
    u.events.log_text("for the first");
    EXPECT_EQ(disk.content("c:\\second.log"), "for the second");
    EXPECT_EQ(disk.content(name), "for the first");
}

TEST(LogFile, endsTheOpenOneWhenASecondOneCantBeOpened) {
    WithLog p;
    p.files.make_read_only("c:\\second.log");
    p.dialogs.expect_file(std::string("LOG-Datei öffnen"_w), std::string("c:\\second.log"));
    p.dialogs.expect("Zugriff verweigert", 48, Answer::ok);
    p.frmTerminal.mnuOpenLog.Click();
    EXPECT_EQ(p.frmTerminal.logdatei, 0);
    EXPECT_TRUE(p.frmTerminal.mnuOpenLog.Enabled);
    EXPECT_FALSE(p.frmTerminal.mnuCloseLog.Enabled);
}

} // namespace velorn::test
