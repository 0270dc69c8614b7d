// The main window, found and driven by the names of its controls.
#include "desktop/frmftast_view.h"
#include "desktop/main_window.h"
#include "desktop/picture_view.h"
#include "desktop/qt_event_loop.h"
#include "desktop/search_field.h"
#include "desktop/style.h"
#include "desktop/terminal_view.h"
#include "desktop/text_rim.h"
#include "support/fake_printer.h"
#include "support/fake_serial_port.h"
#include "support/fake_tcp_client.h"
#include "support/fake_visualisation.h"
#include "support/memory_files.h"
#include "support/scripted_dialogs.h"

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QScrollBar>

#include <functional>
#include <gtest/gtest.h>

namespace velorn::test {

namespace {

// Everything real but disk, links and person. The clock runs fifty times as fast.
struct WindowTest : testing::Test {
    QtEventLoop loop{50};
    MemoryFiles files;
    ScriptedDialogs dialogs{loop};
    FakeSerialPort serial{loop};
    FakeTcpClient tcp{loop};
    FakePrinter printer;
    FakeProcesses processes;
    FakeVisualisation visualisation;
    Program program{World{
        loop, files, dialogs, serial, tcp, printer, processes, visualisation, "c:\\velorn", {1100, 700}}};
    MainWindow window{program};
    FrmftastView frmftast{program.frmftast,
                          [this](std::function<void()> what) { loop.post(std::move(what)); }, &window};

    void SetUp() override {
        program.start.Form_Load();
        window.showNormal();
        window.resize(1100, 700);
        ASSERT_TRUE(eventually([this] { return serial.is_open(); }));
        (void)serial.take_written();
    }
    // Within ten minutes of this clock, twelve seconds of the machine's.
    bool eventually(const std::function<bool()>& condition) {
        const std::int64_t limit = loop.now_ms() + 600'000;
        loop.post_at(limit, [] {});
        (void)loop.wait_until([&] { return condition() || loop.now_ms() >= limit; });
        return condition();
    }
    bool sends(const std::string& bytes) {
        const bool sent = eventually([&] { return serial.written().size() >= bytes.size(); });
        return serial.take_written() == bytes && sent;
    }
    bool shows(const char* widget, const QString& name) {
        return eventually([&] {
            return window.findChild<QWidget*>(QString::fromLatin1(widget))->accessibleName() == name;
        });
    }
    void pass(std::int64_t ms) {
        const std::int64_t until = loop.now_ms() + ms;
        loop.post_at(until, [] {});
        (void)loop.wait_until([&] { return loop.now_ms() >= until; });
    }
    void press_key(int key, const QString& text = {}, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QKeyEvent down(QEvent::KeyPress, key, modifiers, text);
        QApplication::sendEvent(&window.terminal(), &down);
        pass(500);
    }
    void click(QWidget* widget, QPoint at) {
        QMouseEvent down(QEvent::MouseButtonPress, at, widget->mapToGlobal(at), Qt::LeftButton,
                         Qt::LeftButton, {});
        QMouseEvent up(QEvent::MouseButtonRelease, at, widget->mapToGlobal(at), Qt::LeftButton, Qt::NoButton,
                       {});
        QApplication::sendEvent(widget, &down);
        QApplication::sendEvent(widget, &up);
        pass(100);
    }
    QAction* action(const char* name) { return window.findChild<QAction*>(QString::fromLatin1(name)); }
};

} // namespace

TEST_F(WindowTest, whatIsTypedGoesOutAndTheAnswerIsShown) {
    press_key(Qt::Key_L, QStringLiteral("l"));
    press_key(Qt::Key_Return, QStringLiteral("\r"));
    EXPECT_TRUE(sends("l\r"));
    serial.arrives("Antwort\r");
    EXPECT_TRUE(eventually([this] { return program.frmTerminal.txtterm.Text() == "Antwort\r\n"; }));
}

TEST_F(WindowTest, aStrokeIsHandledOnce) {
    press_key(Qt::Key_Left);
    press_key(Qt::Key_Backspace, QStringLiteral("\b"));
    press_key(Qt::Key_A, QStringLiteral("\x01"), Qt::ControlModifier);
    press_key(Qt::Key_Escape, QStringLiteral("\x1b"));
    press_key(Qt::Key_Tab, QStringLiteral("\t"));
    EXPECT_TRUE(sends("\x08\x08\x01\x1b\x09"));
}

TEST_F(WindowTest, umlautsGoOutAsOneByteAndWhatCp1252LacksDoesNot) {
    press_key(Qt::Key_Udiaeresis, QStringLiteral("ü"));
    press_key(0, QStringLiteral("Ω"));
    EXPECT_TRUE(sends("\xfc"));
}

TEST_F(WindowTest, f10SendsItsStoredText) {
    press_key(Qt::Key_F10);
    EXPECT_TRUE(sends("\x01lu"));
}

TEST_F(WindowTest, theMirroredDisplayPassesKeysOnToo) {
    press(program.frmTerminal.mnuFile); // nothing serves a menu's head
    program.frmTerminal.tbrToolBar("bildumschalt").Click();
    pass(100);
    EXPECT_TRUE(window.findChild<QWidget*>(QStringLiteral("Picture1"))->isVisible());
    EXPECT_FALSE(window.terminal().isVisible());
    QKeyEvent down(QEvent::KeyPress, Qt::Key_E, Qt::NoModifier, QStringLiteral("E"));
    QApplication::sendEvent(window.findChild<QWidget*>(QStringLiteral("Picture1")), &down);
    pass(100);
    EXPECT_TRUE(sends("E"));
    program.frmTerminal.tbrToolBar("bildumschalt").Click();
    pass(100);
    EXPECT_TRUE(window.terminal().isVisible());
}

TEST_F(WindowTest, theKeyboardIsTheTerminalsAgainAfterTheMirroredDisplay) {
    program.frmTerminal.tbrToolBar("bildumschalt").Click();
    pass(100);
    EXPECT_EQ(window.focusWidget(), window.findChild<QWidget*>(QStringLiteral("Picture1")));
    program.frmTerminal.tbrToolBar("bildumschalt").Click();
    pass(100);
    EXPECT_EQ(window.focusWidget(), &window.terminal());
}

TEST_F(WindowTest, commandsThatNothingServesAreGreyedWhateverTheirEnabled) {
    for (const auto& served : {action("mnutelefonbuch"), action("DialPhoneNumber")})
        EXPECT_TRUE(served->isEnabled());
    MenuItem& item = program.frmTerminal.mnutelefonbuch;
    ToolButton& button = program.frmTerminal.tbrToolBar("DialPhoneNumber");
    item.Click = nullptr;
    item.changed();
    button.Click = nullptr;
    button.changed();
    EXPECT_TRUE(item.Enabled);
    EXPECT_FALSE(action("mnutelefonbuch")->isEnabled());
    EXPECT_FALSE(action("DialPhoneNumber")->isEnabled());
    EXPECT_TRUE(action("mnuOpen")->isEnabled());
    EXPECT_TRUE(action("mnuftast")->isEnabled());
    EXPECT_TRUE(action("clearall")->isEnabled());
}

TEST_F(WindowTest, everyMenuItemAndKeyIsThereWithItsName) {
    for (const MenuRow& row : FrmTerminal::menu_rows()) {
        if (row.item == nullptr) continue;
        const QString name = QString::fromLatin1(row.name.data(), static_cast<qsizetype>(row.name.size()));
        EXPECT_NE(window.findChild<QObject*>(name), nullptr) << row.name;
    }
    for (const ToolRow& row : FrmTerminal::toolbar_rows()) {
        const auto* key = action(std::string(row.key).c_str());
        ASSERT_NE(key, nullptr) << row.key;
        EXPECT_FALSE(key->icon().pixmap(24).toImage().isNull()) << row.key;
        EXPECT_FALSE(key->toolTip().isEmpty()) << row.key;
    }
}

TEST_F(WindowTest, theMenuOpensAndClosesThePortAndItsMarkFollows) {
    EXPECT_TRUE(action("mnuOpen")->isChecked());
    action("mnuOpen")->trigger();
    pass(100);
    EXPECT_FALSE(serial.is_open());
    EXPECT_FALSE(action("mnuOpen")->isChecked());
    EXPECT_EQ(window.findChild<QLabel*>(QStringLiteral("Settings"))->text(),
              QStringLiteral("Einstellungen: "));
}

TEST_F(WindowTest, theLampsLabelTogglesThePortToo) {
    auto* lamp = window.findChild<QWidget*>(QStringLiteral("Picture5"));
    EXPECT_TRUE(shows("Picture5", QStringLiteral("COM geöffnet")));
    click(lamp, QPoint(lamp->width() - 4, lamp->height() / 2));
    EXPECT_TRUE(shows("Picture5", QStringLiteral("COM geschlossen")));
    click(lamp, QPoint(5, lamp->height() / 2));
    EXPECT_TRUE(shows("Picture5", QStringLiteral("COM geöffnet")));
}

TEST_F(WindowTest, anUnpluggedPortShowsInTheLampAndNoBoxPopsUp) {
    serial.device_goes();
    pass(1000);
    EXPECT_TRUE(shows("Picture5", QStringLiteral("COM geschlossen")));
    serial.there = true;
    pass(1000);
    EXPECT_TRUE(shows("Picture5", QStringLiteral("COM geöffnet")));
}

TEST_F(WindowTest, scrollingBackHoldsViewAndSelectionWhileDataKeepComing) {
    std::string lines;
    for (int i = 0; i < 2000; ++i) lines += "Zeile " + std::to_string(i) + "\r";
    const RichTextBox& text = program.frmTerminal.txtterm;
    serial.arrives(lines);
    ASSERT_TRUE(eventually([&] { return text.length() == lines.size() + 2000; }));
    TerminalView& view = window.terminal();
    EXPECT_TRUE(view.follows());
    view.verticalScrollBar()->setValue(100);
    ASSERT_TRUE(eventually([&] { return !view.follows(); }));
    view.select(1000, 1010);
    const std::string selected = view.selected_text();
    const std::size_t top = view.first_visible();
    serial.arrives(lines);
    ASSERT_TRUE(eventually([&] { return text.length() == 2 * (lines.size() + 2000); }));
    pass(2000); // and a frame is painted
    EXPECT_EQ(view.first_visible(), top);
    EXPECT_EQ(view.selected_text(), selected);
    press_key(Qt::Key_End);
    EXPECT_TRUE(eventually([&] { return view.follows(); }));
    EXPECT_EQ(serial.take_written(), ""); // that key was the reader's
}

TEST_F(WindowTest, copyingGivesTheTextAsItCame) {
    const std::string wide(500, 'x'); // wraps on screen
    serial.arrives("eins\rz" + wide + "\r");
    ASSERT_TRUE(eventually([this] { return program.frmTerminal.txtterm.length() == 509; }));
    window.terminal().select_all();
    EXPECT_EQ(window.terminal().selected_text(), "eins\r\nz" + wide + "\r\n");
}

TEST_F(WindowTest, searchFindsInTheWholeTerminalWhileDataKeepComing) {
    serial.arrives("Vorlauf 70\rRest\r");
    pass(300);
    window.terminal().search("vorlauf", false);
    EXPECT_EQ(window.terminal().found().count(), 1U);
    serial.arrives("und noch ein VORLAUF\r");
    pass(500);
    EXPECT_TRUE(eventually([this] { return window.terminal().found().count() == 2U; }));
    window.terminal().search("vorlauf", true);
    EXPECT_EQ(window.terminal().found().count(), 0U);
}

TEST_F(WindowTest, theFunctionKeysWindowStoresWhatWasTyped) {
    loop.post_at(loop.now_ms() + 300, [this] {
        auto* edit = frmftast.findChild<QLineEdit*>(QStringLiteral("ftast3"));
        edit->setFocus();
        edit->clear();
        edit->insert(QStringLiteral("<01>störungen<13>"));
        frmftast.findChild<QPushButton*>(QStringLiteral("cmdOK"))->click();
    });
    press(program.frmTerminal.mnuftast);
    EXPECT_FALSE(frmftast.isVisible());
    EXPECT_EQ(program.settings.ftast[3].text(), "<01>st\xf6rungen<13>");
    EXPECT_NE(files.content("c:\\velorn\\einst.par").find("st\xf6rungen"), std::string::npos);
}

TEST_F(WindowTest, theFunctionKeysWindowClosedByItsCrossChangesNothing) {
    loop.post_at(loop.now_ms() + 300, [this] {
        frmftast.findChild<QLineEdit*>(QStringLiteral("ftast3"))->insert(QStringLiteral("x"));
        frmftast.close();
    });
    const std::string before = program.settings.ftast[3].text();
    press(program.frmTerminal.mnuftast);
    EXPECT_EQ(program.settings.ftast[3].text(), before);
}

TEST_F(WindowTest, closingItSavesAndEndsTheProgram) {
    program.settings.anrufer = "Weber";
    window.close();
    EXPECT_FALSE(eventually([] { return false; })); // the end of the program ends this wait
    EXPECT_TRUE(loop.ended());
    EXPECT_NE(files.content("c:\\velorn\\einst.par").find("Weber"), std::string::npos);
}

TEST_F(WindowTest, theTraceShowsInItsOwnPane) {
    auto* trace = window.findChild<QWidget*>(QStringLiteral("txttest10"));
    EXPECT_FALSE(trace->isVisible());
    action("testwindow")->trigger();
    pass(100);
    EXPECT_TRUE(trace->isVisible());
    press_key(Qt::Key_B, QStringLiteral("b"));
    EXPECT_EQ(program.frmTerminal.txttest10.Text(), "        out: 98 b\r\n");
    action("testwindow")->trigger();
    pass(100);
    EXPECT_FALSE(trace->isVisible());
}

TEST(ThePalettes, canBeRead) {
    for (const Look look : {Look::light, Look::dark}) {
        const QPalette p = palette_of(look);
        const std::pair<QPalette::ColorRole, QPalette::ColorRole> pairs[] = {
            {QPalette::WindowText, QPalette::Window},       {QPalette::Text, QPalette::Base},
            {QPalette::ButtonText, QPalette::Button},       {QPalette::HighlightedText, QPalette::Highlight},
            {QPalette::ToolTipText, QPalette::ToolTipBase}, {QPalette::Link, QPalette::Base},
        };
        for (const auto& [text, ground] : pairs) {
            EXPECT_GE(contrast(p.color(text), p.color(ground)), least_contrast)
                << int(text) << " " << int(look);
        }
        EXPECT_GE(contrast(p.color(QPalette::Disabled, QPalette::WindowText), p.color(QPalette::Window)),
                  least_contrast);
        EXPECT_GE(contrast(readable(colour::blue, p), p.color(QPalette::Base)), least_contrast);
        EXPECT_GE(contrast(alarm(p), p.color(QPalette::Window)), least_contrast);
        EXPECT_EQ(detect(p), look);
    }
}

TEST_F(WindowTest, theMirroredDisplayIsPaintedAtTheScreensResolution) {
    serial.arrives("*FERNBED");
    serial.arrives("\x1a"
                   "Vorlauf");
    auto* picture = window.findChild<PictureView*>(QStringLiteral("Picture1"));
    ASSERT_TRUE(eventually([&] {
        return picture->viewport()->height() > 300 && program.frmTerminal.schirm.text(1, 1, 7) == "Vorlauf";
    }));
    const QImage image = picture->viewport()->grab().toImage();
    EXPECT_EQ(image.pixel(2, 2), to_qcolor(program.frmTerminal.Picture1.BackColor).rgb());
    bool ink = false;
    for (int x = 0; x < 100; ++x) {
        for (int y = 0; y < 40; ++y) ink = ink || image.pixel(x, y) == qRgb(0, 0, 0);
    }
    EXPECT_TRUE(ink);
    EXPECT_FALSE(window.terminal().isVisible());
}

TEST_F(WindowTest, theCalendarTakesTheDisplaysPlaceAndItsKeys) {
    serial.arrives("*FERNBED");
    serial.arrives("\x1b\x1bG8\x1b=\x20\x23Wochenuhr");
    auto* calendar = window.findChild<QWidget*>(QStringLiteral("calendar"));
    auto* title = window.findChild<QLabel*>(QStringLiteral("labkal1"));
    ASSERT_TRUE(
        eventually([&] { return calendar->isVisible() && title->text() == QStringLiteral("Wochenuhr"); }));
    auto* picabs = window.findChild<PictureView*>(QStringLiteral("picabs"));
    QKeyEvent down(QEvent::KeyPress, Qt::Key_E, Qt::NoModifier, QStringLiteral("E"));
    QApplication::sendEvent(picabs, &down);
    EXPECT_TRUE(sends("E"));
    serial.arrives("\x1b@\x1b");
    EXPECT_TRUE(eventually([&] { return !calendar->isVisible(); }));
    EXPECT_TRUE(window.findChild<QWidget*>(QStringLiteral("Picture1"))->isVisible());
}

TEST_F(WindowTest, snapshotsAreShownBelowAndEmptiedByTheirButton) {
    action("snapshot")->trigger();
    action("looksnap")->trigger();
    auto* pane = window.findChild<TerminalView*>(QStringLiteral("txtsnapshot"));
    auto* clear = window.findChild<QPushButton*>(QStringLiteral("clrtxtsnap"));
    ASSERT_TRUE(eventually([&] { return pane->isVisible() && clear->isVisible(); }));
    EXPECT_TRUE(action("looksnap")->isChecked());
    clear->click();
    EXPECT_TRUE(eventually([&] { return program.frmTerminal.txtsnapshot.Text().empty(); }));
    action("looksnap")->trigger();
    EXPECT_TRUE(eventually([&] { return !pane->isVisible() && !clear->isVisible(); }));
    EXPECT_FALSE(action("looksnap")->isChecked());
}

TEST_F(WindowTest, aCapturesNoticeStandsBelow) {
    serial.arrives("\x1b\x1bP");
    auto* notice = window.findChild<QLabel*>(QStringLiteral("txtprotwarn"));
    ASSERT_TRUE(eventually([&] { return notice->isVisible(); }));
    EXPECT_TRUE(notice->text().startsWith(QStringLiteral("ACHTUNG!!!")));
}

} // namespace velorn::test
