// The editor's window, driven by keys and by the names of its controls: what is done in one place leaves all
// other bytes of the file as they are.
#include "desktop/byte_text_edit.h"
#include "desktop/frmedit_view.h"
#include "desktop/qt_event_loop.h"
#include "support/fake_printer.h"
#include "support/memory_files.h"
#include "support/scripted_dialogs.h"

#include <QApplication>
#include <QClipboard>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QShortcut>

#include <gtest/gtest.h>
#include <random>

namespace velorn::test {

namespace {

const std::string path = "c:\\velorn\\hallenbad.prt";

std::string all_bytes() {
    std::string bytes;
    for (int i = 0; i < 256; ++i) bytes += static_cast<char>(i);
    return bytes;
}

struct EditorWindow : testing::Test {
    QtEventLoop loop;
    MemoryFiles disk;
    ScriptedDialogs dialogs{loop};
    FakePrinter printer;
    Module1 module1;
    Frmedit model{loop, disk, dialogs, printer, module1};
    FrmeditView view{model, [](std::function<void()> what) { what(); }, nullptr};
    ByteTextEdit* edit = nullptr;

    void open(const std::string& content) {
        module1.protokollan = true;
        module1.protokollname = path;
        disk.set_content(path, content);
        ASSERT_TRUE(model.Form_Load({800, 800}));
        model.form.Visible = true;
        edit = find<ByteTextEdit>("Richtxtedit");
    }
    template <class Widget>
    Widget* find(const char* name) {
        return view.findChild<Widget*>(QString::fromLatin1(name));
    }
    const std::string& bytes() const { return model.Richtxtedit.Text(); }
    QString hint() { return find<QLabel>("Hinweis")->text(); }

    void cursor(int position, int count = 0) {
        QTextCursor place(edit->document());
        place.setPosition(position);
        place.setPosition(position + count, QTextCursor::KeepAnchor);
        edit->setTextCursor(place);
    }
    void key(int code, Qt::KeyboardModifiers modifiers = Qt::NoModifier, const QString& text = {}) {
        QKeyEvent press(QEvent::KeyPress, code, modifiers, text);
        QApplication::sendEvent(edit, &press);
    }
    void type(const QString& text) {
        for (const QChar c : text) key(0, Qt::NoModifier, c);
    }
    void paste(const QString& text) {
        QApplication::clipboard()->setText(text);
        edit->paste();
    }
    void press(QKeySequence::StandardKey wanted) {
        for (QShortcut* const shortcut : view.findChildren<QShortcut*>()) {
            if (shortcut->key() == QKeySequence(wanted)) Q_EMIT shortcut->activated();
        }
    }
};

} // namespace

TEST_F(EditorWindow, showsTheFileWithPicturesForControlCharacters) {
    open(std::string("\x08\x05\x00x", 4) + "\xE4\x7F\r\n\tend");
    EXPECT_TRUE(view.isVisible());
    EXPECT_EQ(view.windowTitle(), QStringLiteral("Editor c:\\velorn\\hallenbad.prt"));
    EXPECT_EQ(edit->toPlainText(), QStringLiteral("\u2408\u2405\u2400xä\u2421\n\tend"));
    EXPECT_EQ(edit->textCursor().position(), 11);
    EXPECT_FALSE(model.geaendert);
}

TEST_F(EditorWindow, all256BytesSurviveAnEditInTheirMidst) {
    const std::string content = all_bytes() + all_bytes();
    open(content);
    cursor(256);
    type(QStringLiteral("ü€"));
    EXPECT_TRUE(model.geaendert);
    EXPECT_EQ(view.windowTitle(), QStringLiteral("Editor c:\\velorn\\hallenbad.prt*"));
    find<QPushButton>("Command2")->click();
    EXPECT_EQ(disk.content(path), all_bytes() + "\xFC\x80" + all_bytes());
    EXPECT_EQ(view.windowTitle(), QStringLiteral("Editor c:\\velorn\\hallenbad.prt"));
}

TEST_F(EditorWindow, lineEndsStayAsTheyStandAroundAnEdit) {
    open("a\rb\nc\r\nd\n\re\r\r\n\nf");
    cursor(6);
    type(QStringLiteral("X"));
    EXPECT_EQ(bytes(), "a\rb\nc\r\nXd\n\re\r\r\n\nf");
    cursor(0);
    type(QStringLiteral("Y"));
    EXPECT_EQ(bytes(), "Ya\rb\nc\r\nXd\n\re\r\r\n\nf");
    edit->moveCursor(QTextCursor::End);
    type(QStringLiteral("Z"));
    EXPECT_EQ(bytes(), "Ya\rb\nc\r\nXd\n\re\r\r\n\nfZ");
}

TEST_F(EditorWindow, aTypedLineEndIsCrLf) {
    open("ab");
    cursor(1);
    key(Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"));
    EXPECT_EQ(bytes(), "a\r\nb");
    key(Qt::Key_Return, Qt::ShiftModifier, QStringLiteral("\r"));
    EXPECT_EQ(bytes(), "a\r\n\r\nb");
}

TEST_F(EditorWindow, oneKeyRemovesBothBytesOfALineEnd) {
    open("a\r\nb\rc\nd");
    cursor(2);
    key(Qt::Key_Backspace);
    EXPECT_EQ(bytes(), "ab\rc\nd");
    key(Qt::Key_Delete);
    EXPECT_EQ(bytes(), "a\rc\nd");
    key(Qt::Key_Delete);
    key(Qt::Key_Delete);
    key(Qt::Key_Delete);
    EXPECT_EQ(bytes(), "ad");
}

TEST_F(EditorWindow, aCrAndAnLfThatComeTogetherStayTwoLineEnds) {
    open("a\rX\nb");
    cursor(3);
    key(Qt::Key_Backspace);
    EXPECT_EQ(bytes(), "a\r\nb");
    EXPECT_EQ(edit->document()->blockCount(), 3);
    type(QStringLiteral("Y"));
    EXPECT_EQ(bytes(), "a\rY\nb");
    edit->undo_change();
    edit->undo_change();
    EXPECT_EQ(bytes(), "a\rX\nb");
}

TEST_F(EditorWindow, undoGivesBackTheLineEndsAndRedoTakesThemAgain) {
    const std::string content = std::string("\x08\x01\x00q", 4) + "a\rb\nc\r\nd\n\n\r\xA0\x01z";
    open(content);
    edit->selectAll();
    type(QStringLiteral("n"));
    EXPECT_EQ(bytes(), "n");
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(bytes(), content);
    key(Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(bytes(), "n");
    edit->undo_change();
    EXPECT_EQ(bytes(), content);
}

TEST_F(EditorWindow, theTextAndWhatIsShownAgreeThroughAnyRowOfEdits) {
    std::mt19937 chance(7);
    const auto below = [&](std::size_t n) { return static_cast<int>(chance() % (n + 1)); };
    for (int round = 0; round < 20; ++round) {
        std::string content;
        for (int i = 0; i < 60; ++i) content += "\r\n\r\nab\x01\x00\xFFz"[chance() % 10];
        open(content);
        std::vector<std::string> states{content};
        for (int step = 0; step < 40; ++step) {
            const int at = below(static_cast<std::size_t>(edit->document()->characterCount()) - 1);
            const int rest = edit->document()->characterCount() - 1 - at;
            cursor(at, std::min(rest, below(4)));
            QTextCursor change = edit->textCursor();
            change.insertText(std::array{QStringLiteral(""), QStringLiteral("x\ny"), QStringLiteral("\n"),
                                         QStringLiteral("\u2400")}[chance() % 4]);
            ByteLines lines;
            lines.set_Text(bytes());
            // A CR and an LF that came together are shown as two.
            EXPECT_GE(edit->toPlainText().size(), static_cast<qsizetype>(lines.characters()));
            EXPECT_EQ(QString(edit->toPlainText()).remove(u'\n'),
                      lines.shown(bytes(), {}, lines.after(bytes(), {}, bytes().size())).remove(u'\n'));
            if (bytes() != states.back()) states.push_back(bytes());
        }
        while (edit->document()->isUndoAvailable()) edit->undo_change();
        EXPECT_EQ(bytes(), content);
        while (edit->document()->isRedoAvailable()) edit->redo_change();
        EXPECT_EQ(bytes(), states.back());
        dialogs.expect("Datei wurde ver", 35, Answer::no);
        model.Command1.Click();
    }
}

TEST_F(EditorWindow, refusesWhatTheFileCantHold) {
    open("abcd");
    type(QStringLiteral("Ω"));
    EXPECT_EQ(bytes(), "abcd");
    EXPECT_EQ(edit->toPlainText(), QStringLiteral("abcd"));
    EXPECT_NE(hint().indexOf(QStringLiteral("Ω")), -1);
    EXPECT_FALSE(model.geaendert);
    type(QStringLiteral("e"));
    EXPECT_EQ(hint(), QString());
    EXPECT_EQ(bytes(), "abcde");
}

TEST_F(EditorWindow, refusesAPastedTextAsAWholeAndAnInputMethodsToo) {
    open("abcd");
    paste(QStringLiteral("e\U0001F600f"));
    EXPECT_EQ(bytes(), "abcd");
    EXPECT_NE(hint(), QString());
    QInputMethodEvent composed;
    composed.setCommitString(QStringLiteral("漢"));
    QApplication::sendEvent(edit, &composed);
    EXPECT_EQ(bytes(), "abcd");
    QInputMethodEvent accent;
    accent.setCommitString(QStringLiteral("é"));
    QApplication::sendEvent(edit, &accent);
    EXPECT_EQ(bytes(), "abcd\xE9");
}

TEST_F(EditorWindow, refusesThePicturesOfWhatItShowsOtherwise) {
    open("abcd");
    paste(QStringLiteral("\u240A"));
    paste(QStringLiteral("\u240D"));
    paste(QStringLiteral("\u2409"));
    EXPECT_EQ(bytes(), "abcd");
    EXPECT_NE(hint(), QString());
}

TEST_F(EditorWindow, whateverElseGetsIntoTheDocumentIsOneByteEach) {
    open("ab\ncd");
    cursor(1);
    edit->insertPlainText(QStringLiteral("\U0001F600\u2028Ω"));
    EXPECT_EQ(bytes(), "a????b\ncd");
    cursor(8);
    type(QStringLiteral("x"));
    EXPECT_EQ(bytes(), "a????b\ncxd");
}

TEST_F(EditorWindow, pastedLinesEndInCrLfAndControlCharactersAreKept) {
    open("");
    paste(QStringLiteral("a\nb\r\nc\rd\u2028e\u2029f\u001Bg\u00A0h"));
    EXPECT_EQ(bytes(), "a\r\nb\r\nc\r\nd\r\ne\r\nf\x1Bg\xA0h");
}

TEST_F(EditorWindow, whatWasCutCanBePastedByteForByte) {
    const std::string content = std::string("\x08\x00\x1F\x7F\xA0\xAD\x81\xFF", 8) + "\t\r\nz";
    open(content);
    edit->selectAll();
    edit->cut();
    EXPECT_EQ(bytes(), "");
    edit->paste();
    EXPECT_EQ(bytes(), content);
}

TEST_F(EditorWindow, printsWhatIsSelected) {
    open("a\r\nb\rc");
    cursor(1, 3);
    find<QPushButton>("Command3")->click();
    cursor(0);
    press(QKeySequence::Print);
    ASSERT_EQ(printer.printed.size(), 2U);
    EXPECT_EQ(printer.printed[0].text, "\r\nb\r");
    EXPECT_EQ(printer.printed[1].text, "a\r\nb\rc");
}

TEST_F(EditorWindow, theSelectionFollowsTheEdits) {
    open("a\r\nb");
    cursor(0);
    key(Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"));
    EXPECT_EQ(model.Richtxtedit.SelStart(), 2U);
    edit->selectAll();
    EXPECT_EQ(model.Richtxtedit.SelLength(), 6U);
}

TEST_F(EditorWindow, showsAnEditThatTheProgramMakes) {
    open("a\r\nb");
    model.Richtxtedit.select(3, 1);
    model.Richtxtedit.set_SelText(std::string_view("c\nd\x01", 4));
    EXPECT_EQ(edit->toPlainText(), QStringLiteral("a\nc\nd\u2401"));
    cursor(2);
    type(QStringLiteral("x"));
    EXPECT_EQ(bytes(), "a\r\nxc\nd\x01");
}

TEST_F(EditorWindow, ctrlSSaves) {
    open("abcd");
    type(QStringLiteral("e"));
    press(QKeySequence::Save);
    EXPECT_EQ(disk.content(path), "abcde");
}

TEST_F(EditorWindow, closeBoxAndEscapeAskAsTheButtonDoes) {
    open("abcd");
    type(QStringLiteral("e"));
    dialogs.expect("Datei wurde ver", 35, Answer::cancel);
    view.close();
    EXPECT_TRUE(view.isVisible());
    dialogs.expect("Datei wurde ver", 35, Answer::cancel);
    key(Qt::Key_Escape, Qt::NoModifier, QStringLiteral("\u001B"));
    EXPECT_TRUE(view.isVisible());
    dialogs.expect("Datei wurde ver", 35, Answer::no);
    find<QPushButton>("Command1")->click();
    EXPECT_FALSE(view.isVisible());
}

TEST_F(EditorWindow, opensAfreshWithTheNextFile) {
    open("abcd");
    type(QStringLiteral("e"));
    dialogs.expect("Datei wurde ver", 35, Answer::no);
    view.close();
    open("wx\ryz");
    EXPECT_EQ(edit->toPlainText(), QStringLiteral("wx\nyz"));
    EXPECT_FALSE(edit->document()->isUndoAvailable());
    EXPECT_EQ(edit->textCursor().position(), 5);
}

TEST_F(EditorWindow, searchesAroundTheEndAndSaysWhenThereIsNothing) {
    open("eins\r\nzwei\r\nEins");
    press(QKeySequence::Find);
    auto* pattern = find<QLineEdit>("Suchtext");
    EXPECT_TRUE(pattern->isVisible());
    pattern->setText(QStringLiteral("eins"));
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QApplication::sendEvent(pattern, &enter);
    EXPECT_EQ(edit->textCursor().selectionStart(), 0);
    QApplication::sendEvent(pattern, &enter);
    EXPECT_EQ(model.Richtxtedit.SelStart(), 12U);
    pattern->setText(QStringLiteral("drei"));
    QApplication::sendEvent(pattern, &enter);
    EXPECT_EQ(hint(), QStringLiteral("Nicht gefunden."));
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(pattern, &escape);
    EXPECT_FALSE(pattern->isVisible());
    EXPECT_TRUE(view.isVisible());
}

TEST_F(EditorWindow, staysWithinASmallScreen) {
    open("abcd");
    EXPECT_LE(view.minimumWidth(), 640);
    EXPECT_LE(view.minimumHeight(), 360);
}

TEST_F(EditorWindow, findsTheRightByteFarDownInALongFile) {
    std::string content;
    for (int i = 0; i < 20000; ++i) content += i % 3 == 0 ? "Zeile\n" : i % 3 == 1 ? "Zeile\r\n" : "Zeile\r";
    open(content);
    cursor(60000); // behind 10000 lines, 3333 of which end in two bytes
    type(QStringLiteral("x"));
    std::string expected = content;
    EXPECT_EQ(bytes(), expected.insert(63333, "x"));
    edit->selectAll();
    key(Qt::Key_Delete);
    EXPECT_EQ(bytes(), "");
    edit->undo_change();
    edit->undo_change();
    EXPECT_EQ(bytes(), content);
}

} // namespace velorn::test
