// The editor of the site's protocol file: what it loads, saves, prints and asks.
#include "accessories/frmedit.h"
#include "runtime/virtual_event_loop.h"
#include "support/fake_printer.h"
#include "support/faulty_files.h"
#include "support/memory_files.h"
#include "support/scripted_dialogs.h"

#include <gtest/gtest.h>

namespace velorn::test {

namespace {

const std::string path = "c:\\velorn\\hallenbad.prt";
constexpr std::string_view changed = "Datei wurde verändert, soll sie gespeichert werden?"_w;
const std::string question(changed);

std::string all_bytes() {
    std::string bytes;
    for (int i = 0; i < 256; ++i) bytes += static_cast<char>(i);
    return bytes;
}

// A file that says to be of some length.
class LongFile final : public BinaryFile {
  public:
    explicit LongFile(std::int64_t length) : length_(length) {}
    Result<std::int64_t> length() override { return length_; }
    Result<std::string> read(std::int64_t, std::int64_t) override { return std::string("x"); }
    Outcome write(std::int64_t, std::string_view) override { return {}; }
    Outcome sync() override { return {}; }

  private:
    std::int64_t length_;
};

class LongFiles final : public Files {
  public:
    std::int64_t length = 0;
    Result<std::unique_ptr<BinaryFile>> open(std::string_view, OpenMode) override {
        return std::unique_ptr<BinaryFile>(std::make_unique<LongFile>(length));
    }
    bool exists(std::string_view) override { return true; }
    Outcome remove(std::string_view) override { return {}; }
    Outcome replace(std::string_view, std::string_view) override { return {}; }
    Outcome make_folder(std::string_view) override { return {}; }
    Result<std::unique_ptr<FileLock>> lock(std::string_view) override {
        return failure(RunTimeError::permission_denied);
    }
};

struct Editor : testing::Test {
    VirtualEventLoop loop;
    MemoryFiles disk;
    FaultyFiles files{disk};
    ScriptedDialogs dialogs{loop};
    FakePrinter printer;
    Module1 module1;
    Frmedit frmedit{loop, files, dialogs, printer, module1};

    Editor() {
        module1.protokollan = true;
        module1.protokollname = path;
    }
    void open(const std::string& content) {
        disk.set_content(path, content);
        ASSERT_TRUE(frmedit.Form_Load({1860, 1000}));
        frmedit.form.Visible = true;
    }
    void type(std::string_view text) { frmedit.Richtxtedit.set_SelText(text); }
};

} // namespace

TEST_F(Editor, standsAQuarterOfTheFreeScreenFromLeftAndTop) {
    open("abcd");
    EXPECT_EQ(frmedit.form.Left, (1860 - frmedit.form.Width) / 4);
    EXPECT_EQ(frmedit.form.Top, (1000 - frmedit.form.Height) / 4);
}

TEST_F(Editor, isNoLargerThanTheScreen) {
    disk.set_content(path, "abcd");
    ASSERT_TRUE(frmedit.Form_Load({640, 360}));
    EXPECT_EQ(frmedit.form.Width, 640);
    EXPECT_EQ(frmedit.form.Left, 0);
    EXPECT_EQ(frmedit.form.Top, 0);
}

TEST_F(Editor, isCalledEditorAndBearsThePathOnceItHasRead) {
    EXPECT_EQ(frmedit.form.Caption.get(), "Editor");
    EXPECT_EQ(frmedit.Command1.Caption.get(), "Schließen"_w);
    EXPECT_EQ(frmedit.Command2.Caption.get(), "Speichern");
    EXPECT_EQ(frmedit.Command3.Caption.get(), "Drucken");
    EXPECT_EQ(frmedit.Richtxtedit.FontName.get(), "Courier New");
    open("abcd");
    EXPECT_EQ(frmedit.form.Caption.get(), "Editor " + path);
}

TEST_F(Editor, readsEveryByteAndPutsTheCursorAtTheEnd) {
    open(all_bytes());
    EXPECT_EQ(frmedit.Richtxtedit.Text(), all_bytes());
    EXPECT_EQ(frmedit.Richtxtedit.SelStart(), 256U);
    EXPECT_EQ(frmedit.Richtxtedit.SelLength(), 0U);
    EXPECT_FALSE(frmedit.geaendert);
}

TEST_F(Editor, opensAnEmptyFile) {
    open("");
    EXPECT_EQ(frmedit.Richtxtedit.Text(), "");
    type("neu");
    frmedit.Command2.Click();
    EXPECT_EQ(disk.content(path), "neu");
}

TEST_F(Editor, withoutAProtocolFileItSaysSoAndCloses) {
    module1.protokollan = false;
    disk.set_content(path, "abcd");
    frmedit.form.Visible = true;
    dialogs.expect(std::string("keine Datei ausgewählt"_w), 48, Answer::ok);
    EXPECT_FALSE(frmedit.Form_Load({1860, 1000}));
    EXPECT_FALSE(frmedit.form.Visible);
    EXPECT_TRUE(files.operations().empty());
}

TEST_F(Editor, aFileThatCantBeOpenedIsToldWithItsPath) {
    dialogs.expect(std::string("Datei kann nicht geöffnet werden: "_w) + path, 48, Answer::ok);
    EXPECT_FALSE(frmedit.Form_Load({1860, 1000}));
    EXPECT_FALSE(frmedit.form.Visible);
    EXPECT_FALSE(disk.exists(path));
}

TEST_F(Editor, anyFailureOfReadingIsTold) {
    disk.set_content(path, "abcd");
    for (int n = 1;; ++n) {
        FaultyFiles faulty(disk);
        faulty.fail_from(n);
        Frmedit editor(loop, faulty, dialogs, printer, module1);
        if (n <= 3) dialogs.expect("Datei kann nicht ge", 48, Answer::ok);
        EXPECT_EQ(editor.Form_Load({800, 600}), n > 3);
        if (!faulty.broke()) break;
    }
}

TEST_F(Editor, refusesFilesAbove64MiB) {
    LongFiles large;
    Frmedit editor(loop, large, dialogs, printer, module1);
    large.length = 64 * 1024 * 1024;
    EXPECT_TRUE(editor.Form_Load({800, 600}));
    ++large.length;
    dialogs.expect("Datei kann nicht ge", 48, Answer::ok);
    EXPECT_FALSE(editor.Form_Load({800, 600}));
}

TEST_F(Editor, aChangeAddsOneStar) {
    open("abcd");
    type("e");
    type("f");
    EXPECT_EQ(frmedit.form.Caption.get(), "Editor " + path + "*");
    EXPECT_TRUE(frmedit.geaendert);
}

TEST_F(Editor, aSelectionIsNoChange) {
    open("abcd");
    frmedit.Richtxtedit.select(1, 2);
    EXPECT_FALSE(frmedit.geaendert);
    EXPECT_EQ(frmedit.form.Caption.get(), "Editor " + path);
}

TEST_F(Editor, savesExactlyTheTextAndNoTailOfTheOldFile) {
    open(std::string("\x08\x02\x00Z", 4) + "ein langer alter Text");
    frmedit.Richtxtedit.select(4, 21);
    type("kurz");
    frmedit.Command2.Click();
    EXPECT_EQ(disk.content(path), std::string("\x08\x02\x00Z", 4) + "kurz");
    EXPECT_EQ(frmedit.form.Caption.get(), "Editor " + path);
    EXPECT_FALSE(frmedit.geaendert);
    EXPECT_TRUE(frmedit.form.Visible);
    EXPECT_FALSE(disk.exists(path + ".neu"));
}

TEST_F(Editor, aTextOfNothingBecomesAnEmptyFile) {
    open("abcd");
    frmedit.Richtxtedit.select(0, 4);
    type("");
    frmedit.Command2.Click();
    EXPECT_TRUE(disk.exists(path));
    EXPECT_EQ(disk.content(path), "");
}

TEST_F(Editor, savesAnUnchangedTextToo) {
    open("abcd");
    disk.set_content(path, "andere");
    frmedit.Command2.Click();
    EXPECT_EQ(disk.content(path), "abcd");
}

TEST_F(Editor, savesTheFileThatItLoadedThoughTheSiteChanged) {
    open("abcd");
    type("e");
    module1.protokollname = "c:\\velorn\\rathaus.prt";
    frmedit.Command2.Click();
    EXPECT_EQ(disk.content(path), "abcde");
    EXPECT_FALSE(disk.exists(module1.protokollname));
}

TEST_F(Editor, whateverFailsTheFileIsOldOrNewAndTheTextIsKept) {
    for (int n = 1;; ++n) {
        disk.set_content(path, "alter Inhalt");
        FaultyFiles faulty(disk);
        Frmedit editor(loop, faulty, dialogs, printer, module1);
        ASSERT_TRUE(editor.Form_Load({800, 600}));
        editor.Richtxtedit.append(" neu");
        faulty.fail_from(static_cast<int>(faulty.operations().size()) + n, RunTimeError::disk_full);
        if (n <= 7) dialogs.expect("Festplatte voll", 48, Answer::ok);
        editor.Command2.Click();
        EXPECT_EQ(editor.Richtxtedit.Text(), "alter Inhalt neu");
        if (!faulty.broke()) break;
        EXPECT_EQ(disk.content(path), "alter Inhalt");
        EXPECT_TRUE(editor.geaendert);
        EXPECT_EQ(editor.form.Caption.get(), "Editor " + path + "*");
        ASSERT_LE(n, 7);
    }
    EXPECT_EQ(disk.content(path), "alter Inhalt neu");
}

TEST_F(Editor, keepsTheMarksThatCameWhileItWasOpen) {
    open("neu angelegt\r\n");
    disk.set_content(path, "neu angelegt\r\r\n15.11.2026  CONNECT "); // over the last byte, as marks go
    type("Pumpe getauscht\r\n");
    frmedit.Command2.Click();
    const std::string all = "neu angelegt\r\nPumpe getauscht\r\r\n15.11.2026  CONNECT ";
    EXPECT_EQ(disk.content(path), all);
    EXPECT_EQ(frmedit.Richtxtedit.Text(), all);
    EXPECT_FALSE(frmedit.geaendert);
    frmedit.Command2.Click();
    EXPECT_EQ(disk.content(path), all) << "they come once";
}

TEST_F(Editor, aFullDiskLeavesNoNeighbourFile) {
    open("abcd");
    type("e");
    files.fill_the_disk();
    dialogs.expect("Festplatte voll", 48, Answer::ok);
    frmedit.Command2.Click();
    EXPECT_EQ(disk.content(path), "abcd");
    EXPECT_FALSE(disk.exists(path + ".neu"));
    files.mend();
    frmedit.Command2.Click();
    EXPECT_EQ(disk.content(path), "abcde");
    EXPECT_FALSE(frmedit.geaendert);
}

TEST_F(Editor, aFailureOfSavingAnUnchangedTextMarksItChanged) {
    open("abcd");
    disk.make_read_only(path);
    dialogs.expect("Zugriff verweigert", 48, Answer::ok);
    frmedit.Command2.Click();
    EXPECT_TRUE(frmedit.geaendert);
    EXPECT_EQ(frmedit.form.Caption.get(), "Editor " + path + "*");
}

TEST_F(Editor, doesNotTakeTheFileFromARunningCapture) {
    open("abcd");
    type("e");
    module1.protokollaktiv = true;
    dialogs.expect("Datei bereits ge", 48, Answer::ok);
    frmedit.Command2.Click();
    EXPECT_EQ(disk.content(path), "abcd");
    EXPECT_TRUE(frmedit.geaendert);
    module1.protokollaktiv = false;
    frmedit.Command2.Click();
    EXPECT_EQ(disk.content(path), "abcde");
}

TEST_F(Editor, closesWithoutAQuestionWhenNothingWasChanged) {
    open("abcd");
    frmedit.Command1.Click();
    EXPECT_FALSE(frmedit.form.Visible);
    EXPECT_TRUE(dialogs.shown().empty());
}

TEST_F(Editor, asksUnderThePathWhetherToSave) {
    open("abcd");
    type("e");
    dialogs.expect(question, 35, Answer::cancel);
    frmedit.Command1.Click();
    EXPECT_EQ(dialogs.last_box_title, path);
    EXPECT_TRUE(frmedit.form.Visible);
    EXPECT_TRUE(frmedit.geaendert);
    EXPECT_EQ(frmedit.Richtxtedit.Text(), "abcde");
    EXPECT_EQ(disk.content(path), "abcd");
}

TEST_F(Editor, yesSavesAndCloses) {
    open("abcd");
    type("e");
    dialogs.expect(question, 35, Answer::yes);
    frmedit.Command1.Click();
    EXPECT_FALSE(frmedit.form.Visible);
    EXPECT_EQ(disk.content(path), "abcde");
}

TEST_F(Editor, noClosesAndLeavesTheFile) {
    open("abcd");
    type("e");
    dialogs.expect(question, 35, Answer::no);
    frmedit.Command1.Click();
    EXPECT_FALSE(frmedit.form.Visible);
    EXPECT_EQ(disk.content(path), "abcd");
}

TEST_F(Editor, staysOpenWhenSavingAtTheCloseFails) {
    open("abcd");
    type("e");
    disk.make_read_only(path);
    dialogs.expect(question, 35, Answer::yes);
    dialogs.expect("Zugriff verweigert", 48, Answer::ok);
    frmedit.Command1.Click();
    EXPECT_TRUE(frmedit.form.Visible);
    EXPECT_EQ(frmedit.Richtxtedit.Text(), "abcde");
}

TEST_F(Editor, staysAsItIsWhenTheProgramEndsDuringTheQuestion) {
    open("abcd");
    type("e");
    dialogs.expect(question, 35, Answer::no, [this] { loop.end(); });
    frmedit.Command1.Click();
    EXPECT_TRUE(frmedit.form.Visible);
    EXPECT_EQ(frmedit.Richtxtedit.Text(), "abcde");
}

TEST_F(Editor, opensAfreshAfterItWasClosed) {
    open("abcd");
    type("e");
    dialogs.expect(question, 35, Answer::no);
    frmedit.Command1.Click();
    open("wxyz");
    EXPECT_EQ(frmedit.Richtxtedit.Text(), "wxyz");
    EXPECT_FALSE(frmedit.geaendert);
    EXPECT_EQ(frmedit.form.Caption.get(), "Editor " + path);
}

TEST_F(Editor, openingItWhileItIsOpenKeepsTheText) {
    open("abcd");
    type("e");
    EXPECT_TRUE(frmedit.Form_Load({1860, 1000}));
    EXPECT_EQ(frmedit.Richtxtedit.Text(), "abcde");
    EXPECT_TRUE(frmedit.geaendert);
}

TEST_F(Editor, printsTheWholeTextUnderTheFilesName) {
    open("abcd");
    frmedit.Command3.Click();
    ASSERT_EQ(printer.printed.size(), 1U);
    EXPECT_EQ(printer.printed[0].text, "abcd");
    EXPECT_EQ(printer.printed[0].title, "hallenbad.prt");
}

TEST_F(Editor, printsTheSelectedTextAlone) {
    open("abcd");
    frmedit.Richtxtedit.select(1, 2);
    frmedit.Command3.Click();
    ASSERT_EQ(printer.printed.size(), 1U);
    EXPECT_EQ(printer.printed[0].text, "bc");
}

TEST_F(Editor, aCancelledPrintIsSilentAndABrokenPrinterIsTold) {
    open("abcd");
    printer.fails_with = RunTimeError::dialog_cancelled;
    frmedit.Command3.Click();
    EXPECT_TRUE(dialogs.shown().empty());
    printer.fails_with = RunTimeError::device_io;
    dialogs.expect(std::string("Geräte-E/A-Fehler"_w), 48, Answer::ok);
    frmedit.Command3.Click();
}

TEST_F(Editor, anOpenDialogKeepsItsButtonsFromOpeningAnother) {
    open("abcd");
    type("e");
    dialogs.expect(question, 35, Answer::cancel, [this] {
        frmedit.Command1.Click();
        frmedit.Command2.Click();
        frmedit.Command3.Click();
    });
    frmedit.Command1.Click();
    EXPECT_EQ(dialogs.shown().size(), 1U);
    EXPECT_TRUE(printer.printed.empty());
    EXPECT_EQ(disk.content(path), "abcd");
    EXPECT_TRUE(frmedit.form.Visible);
}

TEST_F(Editor, aClosedWindowNeitherSavesNorPrints) {
    open("abcd");
    frmedit.Command1.Click();
    frmedit.Command2.Click();
    frmedit.Command3.Click();
    EXPECT_EQ(disk.content(path), "abcd");
    EXPECT_TRUE(printer.printed.empty());
}

TEST_F(Editor, tellsItsViewOfEachEdit) {
    std::string seen;
    frmedit.on_edit = [&](const RichTextBox::Edit& edit) { seen += edit.inserted; };
    open("abcd");
    type("e");
    EXPECT_EQ(seen, "abcde");
}

} // namespace velorn::test
