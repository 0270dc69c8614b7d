#include "runtime/text.h"
#include "support/test_program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velorn::test {

namespace {

struct Shot : TestProgram {
    std::vector<std::string> kept;
    int edited = 0;

    Shot() {
        start();
        module1.projektname = "Gelmar";
        program.events.snapshots_changed.connect([this](std::string_view text) { kept.emplace_back(text); });
        program.events.edit_protocol_file.connect([this] { ++edited; });
    }
    void put(int row, int column, std::string_view text) {
        for (const char c : text) frmTerminal.schirm.set_character(column++, row, c);
    }
    ToolButton& key(const char* name) { return frmTerminal.tbrToolBar(name); }
    std::string head() {
        return "  " + std::string(83, '-') + "\r\nGelmar  Displayaufnahme " +
               date_and_time_text(loop.local_time()) + "\r\n";
    }
    const std::string& text() const { return frmTerminal.txtsnapshot.Text(); }
};

} // namespace

TEST(Snapshot, holdsTheScreensTextBelowItsHead) {
    Shot p;
    p.put(2, 1, "Vorlauf");
    p.put(2, 78, "end");
    p.put(5, 3, "x");
    p.key("snapshot").Click();
    EXPECT_EQ(p.text(),
              p.head() + "\r\n    Vorlauf" + std::string(70, ' ') + "end\r\n\r\n\r\n      x\r\n\r\n\r\n");
    EXPECT_TRUE(p.module1.neuedispauf);
    EXPECT_EQ(p.kept, std::vector<std::string>{p.text()});
}

TEST(Snapshot, ofAnEmptyScreenIsItsHead) {
    Shot p;
    p.key("snapshot").Click();
    EXPECT_EQ(p.text(), p.head() + "\r\n\r\n");
}

TEST(Snapshot, holdsTheLastRow) {
    Shot p;
    p.put(29, 1, "x");
    EXPECT_TRUE(text_of(p.frmTerminal.schirm).ends_with("\r\n    x\r\n"));
}

TEST(Snapshot, turnsOldCodesIntoLetters) {
    Shot p;
    p.put(1, 1, "\x81\x84\x8e\x94\x99\x9a\xe1");
    EXPECT_EQ(text_of(p.frmTerminal.schirm), "    " + std::string("üäÄöÖÜá"_w) + "\r\n");
}

TEST(Snapshot, goesBehindTheOnesBefore) {
    Shot p;
    p.key("snapshot").Click();
    const std::string first = p.text();
    p.key("snapshot").Click();
    EXPECT_EQ(p.text(), first + first);
}

TEST(Snapshot, dropsTheBeginningOfALongText) {
    for (const std::size_t length : {20'000U, 20'001U}) {
        Shot p;
        std::string old(length, 'o');
        old[998] = 'a';
        old[999] = 'b';
        p.frmTerminal.txtsnapshot.set_Text(old);
        p.key("snapshot").Click();
        EXPECT_EQ(p.text().starts_with("bo"), length > 20'000);
        EXPECT_EQ(p.text().size(), (length > 20'000 ? length - 999 : length) + p.head().size() + 4);
    }
}

TEST(Snapshot, goesToTheProtocolFileWhereTheSiteHasOne) {
    Shot p;
    p.files.set_content("c:\\gelmar.txt", "head\r\n");
    p.module1.protokollan = true;
    p.module1.protokollname = "c:\\gelmar.txt";
    p.frmTerminal.txtsnapshot.set_Text("older");
    p.key("snapshot").Click();
    EXPECT_EQ(p.text(), p.head() + "\r\n\r\n");
    EXPECT_EQ(p.files.content("c:\\gelmar.txt"), "head\r\r\n" + p.text());
    EXPECT_TRUE(p.kept.empty());
    EXPECT_TRUE(p.module1.neuedispauf);
}

TEST(Snapshots, areShownAndHiddenByTheirKey) {
    Shot p;
    for (const bool shown : {true, false}) {
        p.key("looksnap").Click();
        EXPECT_EQ(p.frmTerminal.txtsnapshot.Visible, shown);
        EXPECT_EQ(p.frmTerminal.clrtxtsnap.Visible, shown);
        EXPECT_EQ(p.key("looksnap").Pressed, shown);
    }
    EXPECT_EQ(p.edited, 0);
}

TEST(Snapshots, areEmptiedByTheirButton) {
    Shot p;
    p.key("snapshot").Click();
    EXPECT_EQ(p.frmTerminal.clrtxtsnap.Caption.get(), "Löschen"_w);
    p.frmTerminal.clrtxtsnap.Click();
    EXPECT_EQ(p.text(), "");
}

TEST(Snapshots, ofASiteWithAProtocolFileAreReadAndPrintedInTheEditor) {
    Shot p;
    p.module1.protokollan = true;
    for (const char* key : {"looksnap", "drucken"}) {
        p.dialogs.expect(std::string("Datei kann nicht geöffnet werden: "_w), 48, Answer::ok);
        p.key(key).Click();
    }
    EXPECT_EQ(p.edited, 2);
    EXPECT_FALSE(p.frmTerminal.txtsnapshot.Visible);
    EXPECT_TRUE(p.printer.printed.empty());
}

TEST(Snapshots, arePrinted) {
    Shot p;
    p.key("snapshot").Click();
    p.key("drucken").Click();
    ASSERT_EQ(p.printer.printed.size(), 1U);
    EXPECT_EQ(p.printer.printed[0].text, p.text());
    EXPECT_EQ(p.printer.printed[0].title, "Displayaufnahmen Gelmar");
    EXPECT_EQ(p.frmTerminal.Richtxt.Text(), p.text());
}

TEST(Snapshots, tellAPrinterThatFailsButNotACancelledDialog) {
    Shot p;
    p.printer.fails_with = RunTimeError::dialog_cancelled;
    p.key("drucken").Click();
    p.printer.fails_with = RunTimeError::device_io;
    p.dialogs.expect("E/A-Fehler", 48, Answer::ok);
    p.key("drucken").Click();
}

} // namespace velorn::test
