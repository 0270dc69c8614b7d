// The phone book's window, found and driven by the names of its controls.
#include "desktop/frmtelefon_view.h"
#include "desktop/grounds.h"
#include "desktop/main_window.h"
#include "desktop/qt_event_loop.h"
#include "desktop/style.h"
#include "desktop/text_rim.h"
#include "support/fake_printer.h"
#include "support/fake_serial_port.h"
#include "support/fake_tcp_client.h"
#include "support/fake_visualisation.h"
#include "support/memory_files.h"
#include "support/scripted_dialogs.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QShortcut>
#include <QWheelEvent>

#include <gtest/gtest.h>

namespace velorn::test {

namespace {

// Everything real but disk, links and person. The clock runs fifty times as fast.
struct PhonebookView : testing::Test {
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
    FrmtelefonView view{program.frmtelefon, program.module1,
                        [this](std::function<void()> what) { loop.post(std::move(what)); }, &window};
    FrmTelefon& f = program.frmtelefon;
    Telefonbuch& book = program.telefonbuch;

    void SetUp() override {
        program.start.Form_Load();
        window.showNormal();
        ASSERT_TRUE(eventually([this] { return serial.is_open(); }));
        (void)serial.take_written();
        program.settings.neustartzaehler = std::int16_t{2};
        for (int i = 0; i < 30; ++i) {
            book[i].name = "Anlage " + std::to_string(i);
            book[i].nummer = "0555" + std::to_string(i);
        }
        book[1].nummer = "10.20.4.17";
        program.phonebook_files.save_telefonbuch();
        open();
    }
    void open() {
        program.phonebook_window.Form_Load();
        f.form.Visible = true;
        view.resize(1366, 720);
        settle();
    }
    bool eventually(const std::function<bool()>& condition) {
        const std::int64_t limit = loop.now_ms() + 600'000;
        loop.post_at(limit, [] {});
        (void)loop.wait_until([&] { return condition() || loop.now_ms() >= limit; });
        return condition();
    }
    // All that was due within 300 ms has happened.
    void settle() {
        bool over = false;
        loop.post_at(loop.now_ms() + 300, [&over] { over = true; });
        (void)loop.wait_until([&over] { return over; });
    }

    template <class W = QWidget>
    W* find(const char* name) {
        W* found = view.findChild<W*>(QString::fromLatin1(name));
        if (found == nullptr) throw std::runtime_error(name);
        return found;
    }
    QLineEdit* edit(const char* name) { return find<QLineEdit>(name); }
    void mouse(const char* name, QEvent::Type type, Qt::MouseButton button = Qt::LeftButton) {
        QWidget* widget = find(name);
        const QPointF at(3, 3);
        QMouseEvent event(type, at, widget->mapToGlobal(at), button,
                          type == QEvent::MouseButtonRelease ? Qt::NoButton : button, {});
        QApplication::sendEvent(widget, &event);
    }
    void click(const char* name, Qt::MouseButton button = Qt::LeftButton) {
        QWidget* widget = find(name);
        if (widget->focusPolicy() & Qt::ClickFocus) widget->setFocus(Qt::MouseFocusReason);
        mouse(name, QEvent::MouseButtonPress, button);
        mouse(name, QEvent::MouseButtonRelease, button);
        settle();
    }
    void double_click(const char* name) {
        click(name);
        mouse(name, QEvent::MouseButtonDblClick);
        mouse(name, QEvent::MouseButtonRelease);
        settle();
    }
    void press(const char* name) {
        find<QPushButton>(name)->click();
        settle();
    }
    void key(int code, Qt::KeyboardModifiers modifiers = Qt::NoModifier, const QString& text = {}) {
        QWidget* widget = view.focusWidget();
        QKeyEvent event(QEvent::KeyPress, code, modifiers, text);
        QApplication::sendEvent(widget, &event);
        settle();
    }
    void type(const char* name, const QString& text) {
        edit(name)->setFocus();
        for (const QChar c : text) {
            QKeyEvent event(QEvent::KeyPress, 0, Qt::NoModifier, c);
            QApplication::sendEvent(edit(name), &event);
        }
        settle();
    }
    // Up through the parents, as the toolkit hands on what comes from a real wheel.
    void wheel(const char* name, int turned) {
        for (QWidget* widget = find(name); widget != nullptr; widget = widget->parentWidget()) {
            QWheelEvent event({3, 3}, widget->mapToGlobal(QPointF(3, 3)), {}, {0, turned}, Qt::NoButton,
                              Qt::NoModifier, Qt::NoScrollPhase, false);
            event.ignore();
            QApplication::sendEvent(widget, &event);
            if (event.isAccepted()) break;
        }
        settle();
    }
    void shortcut(const QKeySequence& wanted) {
        for (QShortcut* const one : view.findChildren<QShortcut*>()) {
            if (one->key() == wanted) Q_EMIT one->activated();
        }
        settle();
    }
    int selected() const { return program.module1.telindex; }
    QString focus() const { return view.focusWidget()->objectName(); }
    // The row whose position is marked, -1 for none.
    int marked() const {
        for (int row = 0; row < FrmTelefon::lines; ++row) {
            if (f.zeilen[static_cast<std::size_t>(row)].nr.BackColor == colour::red) return row;
        }
        return -1;
    }
    QColor ground(const char* name) {
        QWidget* widget = find(name);
        const bool box = qobject_cast<QLineEdit*>(widget) != nullptr;
        return widget->palette().color(box ? QPalette::Base : QPalette::Window);
    }
};

} // namespace

// ---- lines ----

TEST_F(PhonebookView, opensOverTheMainWindowWithTheBooksFirstLines) {
    EXPECT_TRUE(view.isVisible());
    EXPECT_EQ(view.windowTitle(), QStringLiteral("Telefonbuch"));
    EXPECT_EQ(view.windowModality(), Qt::WindowModal);
    EXPECT_EQ(edit("nam1_0")->text(), QStringLiteral("Anlage 0"));
    EXPECT_EQ(edit("num1_9")->text(), QStringLiteral("05559"));
    EXPECT_EQ(find<QLabel>("nr_9")->text(), QStringLiteral("10"));
    EXPECT_EQ(find<QLabel>("Label5")->text(), QStringLiteral("   Bemerkungen"));
}

TEST_F(PhonebookView, theHeadsStandAboveTheirColumns) {
    for (const QSize size : {QSize(1366, 720), view.minimumSizeHint()}) {
        view.resize(size);
        settle();
        EXPECT_EQ(find("Label5")->mapTo(&view, QPoint()).x(),
                  edit("txtversch_0")->mapTo(&view, QPoint()).x());
        EXPECT_EQ(find("Label5")->width(), edit("txtversch_9")->width());
    }
}

TEST_F(PhonebookView, theFocusStartsOnALineAndSelectsNothing) {
    EXPECT_EQ(focus(), QStringLiteral("Picture1_0"));
    EXPECT_EQ(selected(), -1);
    f.cmdOK.Click();
    program.settings.telzeile = std::int16_t{4};
    open();
    EXPECT_EQ(focus(), QStringLiteral("Picture1_4"));
    EXPECT_EQ(selected(), 4);
}

TEST_F(PhonebookView, addressesStandOut) {
    EXPECT_NE(ground("num1_1"), ground("num1_2"));
    EXPECT_EQ(ground("num1_2"), ground("nam1_2"));
}

TEST_F(PhonebookView, aClickOnALineSelectsIt) {
    click("Picture1_3");
    EXPECT_EQ(selected(), 3);
    EXPECT_EQ(marked(), 3);
    EXPECT_EQ(focus(), QStringLiteral("Picture1_3"));
    EXPECT_EQ(ground("nr_3"), ground("nam1_3"));
    EXPECT_NE(ground("nr_3"), ground("nr_2"));
    click("nr_5"); // lies on its line
    EXPECT_EQ(selected(), 5);
}

TEST_F(PhonebookView, keysOfALineMoveTheSelectionAndTheFocusGoesAlong) {
    click("Picture1_8");
    key(Qt::Key_Down);
    EXPECT_EQ(selected(), 9);
    EXPECT_EQ(focus(), QStringLiteral("Picture1_9"));
    key(Qt::Key_Down);
    EXPECT_EQ(selected(), 10);
    EXPECT_EQ(focus(), QStringLiteral("Picture1_9"));
    EXPECT_EQ(find<QLabel>("nr_9")->text(), QStringLiteral("11"));
    key(Qt::Key_PageUp);
    EXPECT_EQ(selected(), 5);
    key(Qt::Key_Up);
    EXPECT_EQ(selected(), 4);
    EXPECT_EQ(focus(), QStringLiteral("Picture1_3"));
    key(Qt::Key_PageDown);
    EXPECT_EQ(selected(), 9);
    EXPECT_EQ(marked(), 8);
}

TEST_F(PhonebookView, keysInABoxBelongToTheBox) {
    type("nam1_2", {});
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    EXPECT_EQ(selected(), 2);
    EXPECT_EQ(serial.take_written(), "");
    EXPECT_TRUE(view.isVisible());
}

TEST_F(PhonebookView, doubleClickDials) {
    double_click("Picture1_3");
    EXPECT_EQ(serial.take_written(), "atd05553\r");
    EXPECT_FALSE(view.isVisible());
    EXPECT_EQ(program.module1.projektname, "Anlage 3");
}

TEST_F(PhonebookView, enterDialsTheLineThatHasTheRing) {
    click("Picture1_3");
    find("Picture1_6")->setFocus();
    key(Qt::Key_Return);
    EXPECT_EQ(serial.take_written(), "atd05556\r");
    EXPECT_FALSE(view.isVisible());
}

TEST_F(PhonebookView, aSecondStrokeWhileTheWindowClosesDialsNoSecondTime) {
    click("Picture1_3");
    for (int i = 0; i < 2; ++i) {
        QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
        QApplication::sendEvent(find("Picture1_3"), &enter);
    }
    settle();
    EXPECT_EQ(serial.take_written(), "atd05553\r");
}

TEST_F(PhonebookView, commandsWaitBehindAWindowInFront) {
    click("Picture1_3");
    QDialog in_front(&view);
    in_front.open();
    press("Command1");
    EXPECT_EQ(serial.take_written(), "");
}

// ---- boxes ----

TEST_F(PhonebookView, typingGoesIntoItsEntryAtOnceAndLeavesTheOthersEmpty) {
    type("txtversch_5", QStringLiteral("Schlüssel"));
    EXPECT_EQ(book[5].bemerkung, Variant("Schl\xfcssel"));
    EXPECT_EQ(selected(), 5);
    EXPECT_EQ(ground("txtversch_5"), ground("nam1_5"));
    EXPECT_NE(ground("txtversch_5"), ground("txtversch_4"));
    for (int i = 30; i < 40; ++i) {
        EXPECT_TRUE(book[i].name.empty());
        EXPECT_TRUE(book[i].protdatei.empty());
    }
    EXPECT_TRUE(book[4].bemerkung.empty());
    EXPECT_TRUE(book[5].protdatei.empty());
}

TEST_F(PhonebookView, refillingWritesNothing) {
    find<QScrollBar>("VScroll1")->setValue(35);
    settle();
    find<QScrollBar>("HScroll1")->setValue(4);
    settle();
    wheel("nam1_3", -120 * 20);
    for (int i = 30; i < 120; ++i) {
        EXPECT_TRUE(book[i].name.empty());
        EXPECT_TRUE(book[i].nummer.empty());
        EXPECT_TRUE(book[i].viertdatei.empty());
    }
    EXPECT_EQ(book[3].name, Variant("Anlage 3"));
}

TEST_F(PhonebookView, theCursorStaysWhileTyping) {
    type("nam1_2", {});
    edit("nam1_2")->setCursorPosition(3);
    type("nam1_2", QStringLiteral("XY"));
    EXPECT_EQ(book[2].name, Variant("AnlXYage 2"));
    EXPECT_EQ(edit("nam1_2")->cursorPosition(), 5);
}

TEST_F(PhonebookView, whatCp1252LacksCantBeTyped) {
    type("num1_2", QStringLiteral("Ω1"));
    EXPECT_FALSE(edit("num1_2")->text().contains(QStringLiteral("Ω")));
    EXPECT_EQ(book[2].nummer.text(), to_cp1252(edit("num1_2")->text()).value());
}

TEST_F(PhonebookView, aPastedNumberLosesItsLineEnd) {
    type("num1_2", {});
    edit("num1_2")->clear();
    edit("num1_2")->insert(QStringLiteral("055577\r\n"));
    settle();
    EXPECT_EQ(book[2].nummer, Variant("055577"));
    EXPECT_EQ(edit("num1_2")->text(), QStringLiteral("055577"));
}

TEST_F(PhonebookView, undoDoesNotReachIntoAnotherEntry) {
    find<QScrollBar>("VScroll1")->setValue(40);
    settle();
    type("nam1_2", QStringLiteral("abc"));
    edit("nam1_2")->undo();
    settle();
    wheel("nam1_2", -120);
    edit("nam1_2")->redo();
    settle();
    EXPECT_TRUE(book[45].name.empty());
    EXPECT_EQ(book[42].name.text(), "");
}

TEST_F(PhonebookView, aClickIntoTheFocusedBoxSelectsWhatStandsThereByNow) {
    click("nam1_2");
    EXPECT_EQ(selected(), 2);
    wheel("nam1_2", -120);
    EXPECT_EQ(selected(), 2);
    click("nam1_2");
    EXPECT_EQ(selected(), 5);
}

TEST_F(PhonebookView, theWindowsReturnToTheFrontSelectsNothing) {
    click("nam1_2");
    wheel("nam1_2", -120);
    edit("nam1_2")->clearFocus();
    edit("nam1_2")->setFocus(Qt::ActiveWindowFocusReason);
    settle();
    EXPECT_EQ(selected(), 2);
}

// ---- scrolling ----

TEST_F(PhonebookView, theScrollBarScrollsBothWays) {
    auto* bar = find<QScrollBar>("VScroll1");
    EXPECT_EQ(bar->maximum(), 1991);
    bar->setValue(1991);
    settle();
    EXPECT_EQ(find<QLabel>("nr_9")->text(), QStringLiteral("2001"));
    f.VScroll1.set_Value(7);
    EXPECT_EQ(bar->value(), 7);
    EXPECT_EQ(edit("nam1_0")->text(), QStringLiteral("Anlage 7"));
}

TEST_F(PhonebookView, severalStepsInARowEndWhereTheBarStands) {
    auto* bar = find<QScrollBar>("VScroll1");
    for (const int value : {100, 300, 20}) bar->setValue(value);
    settle();
    EXPECT_EQ(f.VScroll1.Value(), 20);
    EXPECT_EQ(bar->value(), 20);
}

TEST_F(PhonebookView, aNotchOfTheWheelIsThreeLinesAndFineWheelsAddUp) {
    wheel("txtversch_4", -120);
    EXPECT_EQ(f.VScroll1.Value(), 3);
    for (int i = 0; i < 8; ++i) wheel("Picture1_1", -15);
    EXPECT_EQ(f.VScroll1.Value(), 6);
    wheel("Picture1_1", -30);
    EXPECT_EQ(f.VScroll1.Value(), 6);
    wheel("Picture1_1", 240);
    EXPECT_EQ(f.VScroll1.Value(), 0);
}

TEST_F(PhonebookView, keysGoToTheFirstAndTheLastLines) {
    shortcut(QKeySequence(Qt::CTRL | Qt::Key_End));
    EXPECT_EQ(f.VScroll1.Value(), 1991);
    shortcut(QKeySequence(Qt::CTRL | Qt::Key_Home));
    EXPECT_EQ(f.VScroll1.Value(), 0);
}

TEST_F(PhonebookView, theLastColumnChangesWithItsBarAndItsNeighbours) {
    book[2].protdatei = "c:\\p.prt";
    auto* bar = find<QScrollBar>("HScroll1");
    bar->setValue(2);
    settle();
    EXPECT_EQ(f.spaltengruppe, 2);
    EXPECT_EQ(edit("txtversch_2")->text(), QStringLiteral("c:\\p.prt"));
    click("Label9");
    EXPECT_EQ(find<QLabel>("Label5")->text(), QStringLiteral("   Visualisierungsdatei"));
    EXPECT_EQ(bar->value(), 3);
    click("Label8");
    click("Label8");
    EXPECT_EQ(f.spaltengruppe, 1);
    click("Label8"); // blank
    EXPECT_EQ(f.spaltengruppe, 1);
}

// ---- files and small pictures ----

TEST_F(PhonebookView, theChooserComesWithTheBoxAndGoesWithoutSelectingTheNextLine) {
    find<QScrollBar>("HScroll1")->setValue(2);
    settle();
    EXPECT_FALSE(find("Comausw_2")->isVisible());
    click("txtversch_2");
    EXPECT_TRUE(find("Comausw_2")->isVisible());
    find("Comausw_2")->setFocus(Qt::TabFocusReason);
    dialogs.expect_file("Protokolldatei ausw\xE4hlen", std::string("c:\\neu.prt"));
    press("Comausw_2");
    EXPECT_EQ(book[2].protdatei, Variant("c:\\neu.prt"));
    EXPECT_FALSE(find("Comausw_2")->isVisible());
    EXPECT_EQ(focus(), QStringLiteral("Picture1_2"));
    EXPECT_EQ(selected(), 2);
}

TEST_F(PhonebookView, theSmallPicturesShowWhatASiteHas) {
    book[1].visdatei = "c:\\VIS.EXE";
    book[2].viertdatei = "c:\\a.dat";
    files.set_content("c:\\a.dat", std::string(1'000'000, '\0'));
    program.phonebook_lines.refresh();
    EXPECT_TRUE(find("visthumb_1")->isVisible());
    EXPECT_FALSE(find("visthumb_2")->isVisible());
    EXPECT_FALSE(find("viertthumb_1")->isVisible());
    ASSERT_TRUE(find("viertthumb_2")->isVisible());
    const QImage by_hand = find("viertthumb_2")->grab().toImage();
    click("viertthumb_2", Qt::RightButton);
    EXPECT_EQ(book[2].autoflag, 8);
    EXPECT_EQ(selected(), 2);
    EXPECT_NE(find("viertthumb_2")->grab().toImage(), by_hand);
}

TEST_F(PhonebookView, theLeftButtonOnThePictureAsksHowTheDataAreFetched) {
    book[2].viertdatei = "c:\\a.dat";
    files.set_content("c:\\a.dat", std::string(1'000'000, '\0'));
    program.phonebook_lines.refresh();
    click("viertthumb_2");
    EXPECT_TRUE(find("picdownload")->isVisible());
    EXPECT_TRUE(find("Picture1_9")->isVisible());
    EXPECT_TRUE(find<QRadioButton>("optuebertrag1")->isChecked());
    find<QRadioButton>("optuebertrag0")->click();
    settle();
    EXPECT_EQ(book[2].autoflag, 8);
    press("closedathol");
    EXPECT_FALSE(find("picdownload")->isVisible());
    EXPECT_TRUE(find("Command1")->isVisible());
}

// ---- panels ----

TEST_F(PhonebookView, theSwapWaitsBelowTheLines) {
    find("Command2")->setFocus();
    press("Command2");
    ASSERT_TRUE(find("Picture2")->isVisible());
    EXPECT_FALSE(find("Command2")->isVisible());
    EXPECT_TRUE(f.tausch1aktiv); // where the focus went has not been taken for a position
    click("nam1_3");
    EXPECT_EQ(find<QLabel>("labtausch1")->text(), QStringLiteral("1. Tauschposition: 4"));
    double_click("Picture1_5");
    EXPECT_EQ(book[3].name, Variant("Anlage 5"));
    EXPECT_EQ(edit("nam1_5")->text(), QStringLiteral("Anlage 3"));
}

TEST_F(PhonebookView, theSwapsButtonEndsIt) {
    press("Command2");
    press("Command3");
    EXPECT_FALSE(find("Picture2")->isVisible());
    EXPECT_TRUE(find("Command2")->isVisible());
    EXPECT_FALSE(f.tausch1aktiv);
    EXPECT_EQ(selected(), -1);
}

TEST_F(PhonebookView, theCollectionsPanelSetsItsStart) {
    book[4].autoflag = Telefonbuch::collected;
    press("comautohol");
    ASSERT_TRUE(find("picdownl")->isVisible());
    EXPECT_EQ(find<QLabel>("labanz")->text(), QStringLiteral("1 Projekte für autom. Abholung geplant"));
    const QString today = find<QLabel>("labstartdat")->text();
    press("comdatplus");
    EXPECT_NE(find<QLabel>("labstartdat")->text(), today);
    press("comdatminus");
    EXPECT_EQ(find<QLabel>("labstartdat")->text(), today);
    EXPECT_EQ(edit("txtstopnr")->text(), QStringLiteral("2000"));
    find<QCheckBox>("vortagcheck")->click();
    settle();
    EXPECT_TRUE(f.vortagcheck.Value);
    EXPECT_EQ(find("comstart")->isEnabled(), static_cast<bool>(f.comstart.Click));
    press("abbruch");
    EXPECT_FALSE(find("picdownl")->isVisible());
}

TEST_F(PhonebookView, theNoticeBlinksAndKeepsItsPlace) {
    auto* notice = find<QLabel>("Picture3");
    f.txtanrufer.Text = "Benutzer";
    ASSERT_TRUE(notice->isVisible());
    for (const Colour colour : {colour::red, colour::white, colour::red}) {
        const QColor wanted = ground_of(colour, view.palette()).ground;
        EXPECT_TRUE(eventually([&] { return ground("Picture3") == wanted; }));
    }
    const int below = edit("txtmodinit")->mapTo(&view, QPoint()).y();
    type("txtanrufer", QStringLiteral("x"));
    edit("txtanrufer")->clear();
    type("txtanrufer", QStringLiteral("Fa. Müller"));
    settle();
    EXPECT_FALSE(notice->isVisible());
    EXPECT_EQ(edit("txtmodinit")->mapTo(&view, QPoint()).y(), below);
    EXPECT_EQ(program.module1.txtanrufer, "Fa. M\xfcller");
}

// ---- settings and menu ----

TEST_F(PhonebookView, settingsGoBothWays) {
    for (auto [name, box] : {std::pair{"telnet", &f.telnet}, {"txtprestrcheck", &f.txtprestrcheck}}) {
        const bool before = box->Value;
        find<QCheckBox>(name)->click();
        settle();
        EXPECT_EQ(bool{box->Value}, !before) << name;
        box->Value = before;
        EXPECT_EQ(find<QCheckBox>(name)->isChecked(), before) << name;
    }
    for (auto [name, box] : {std::pair{"txtprestrtext", &f.txtprestrtext},
                             {"mdexport", &f.mdexport},
                             {"txtmodinit", &f.txtmodinit},
                             {"txtanrufer", &f.txtanrufer},
                             {"smsnr", &f.smsnr},
                             {"smstxt", &f.smstxt},
                             {"txtstartnr", &f.txtstartnr},
                             {"txtstopnr", &f.txtstopnr}}) {
        box->Text = "1";
        EXPECT_EQ(edit(name)->text(), QStringLiteral("1")) << name;
        edit(name)->end(false);
        type(name, QStringLiteral("2"));
        EXPECT_EQ(box->Text.get(), "12") << name;
    }
    EXPECT_EQ(selected(), -1);
}

TEST_F(PhonebookView, theMenusMarkFollowsTheSetting) {
    auto* action = view.findChild<QAction*>(QStringLiteral("mnuloginauto"));
    const bool before = action->isChecked();
    action->trigger();
    settle();
    EXPECT_EQ(action->isChecked(), !before);
    EXPECT_EQ(program.settings.loginauto.number() != 0, !before);
    dialogs.expect_input("Login Username", "Weber");
    view.findChild<QAction*>(QStringLiteral("mnuuser"))->trigger();
    settle();
    EXPECT_EQ(program.settings.loginuser, Variant("Weber"));
}

TEST_F(PhonebookView, theMenusImportAsksForItsFile) {
    dialogs.expect_file("Telefonnummern importieren", failure(RunTimeError::file_not_found));
    view.findChild<QAction*>(QStringLiteral("mnutele"))->trigger();
    settle();
    dialogs.expect_file("Displayaufnahmen importieren", std::string("c:\\d.par"));
    view.findChild<QAction*>(QStringLiteral("mnudispauf"))->trigger();
    settle();
    EXPECT_EQ(program.settings.dispaufpfad, Variant("c:\\d.par"));
}

TEST_F(PhonebookView, searchAnswersToItsKeys) {
    for (const QKeySequence& keys : {QKeySequence(Qt::CTRL | Qt::Key_F), QKeySequence(Qt::Key_F3)}) {
        dialogs.expect_input("Suchtext", "anlage 12");
        dialogs.expect_input("Suchtext", "");
        shortcut(keys);
        EXPECT_EQ(selected(), 12);
        EXPECT_EQ(find<QLabel>("nr_0")->text(), QStringLiteral("13"));
        EXPECT_EQ(marked(), 0);
        f.VScroll1.set_Value(0);
    }
}

TEST_F(PhonebookView, theButtonsReachTheirCommands) {
    press("Command8");
    EXPECT_NE(files.content("c:\\Daten\\Datencsv\\telefon.txt").find("Anlage 7;05557"), std::string::npos);
    click("Picture1_2");
    dialogs.expect("Soll an Pos 3", 36, Answer::yes);
    press("Command5");
    EXPECT_EQ(edit("nam1_2")->text(), QString());
    dialogs.expect("Soll Eintrag an Pos 3", 36, Answer::yes);
    press("Command6");
    EXPECT_EQ(edit("nam1_2")->text(), QStringLiteral("Anlage 2"));
    EXPECT_FALSE(find("Command4")->isEnabled());
    files.set_content("c:\\p.prt", "1234");
    book[2].protdatei = "c:\\p.prt";
    program.phonebook_lines.check_files();
    EXPECT_TRUE(find("Command4")->isEnabled());
    find<QPushButton>("Command10")->click();
    EXPECT_TRUE(
        eventually([this] { return serial.written().find("AT+CMGF") != 0 && !serial.written().empty(); }));
    EXPECT_EQ(serial.take_written().substr(0, 8), "ATE1&D0\r");
}

// ---- closing ----

TEST_F(PhonebookView, theCloseBoxSaves) {
    type("nam1_2", QStringLiteral("!"));
    view.close();
    settle();
    EXPECT_FALSE(view.isVisible());
    EXPECT_NE(files.content("c:\\velorn\\telefon.par").find("!"), std::string::npos);
}

TEST_F(PhonebookView, escapeSavesNothing) {
    type("nam1_2", QStringLiteral("!"));
    key(Qt::Key_Escape);
    EXPECT_FALSE(view.isVisible());
    EXPECT_EQ(files.content("c:\\velorn\\telefon.par").find("!"), std::string::npos);
}

TEST_F(PhonebookView, theOtherButtonsCloseInTheirWays) {
    type("txtmodinit", QStringLiteral("7"));
    press("cmdOK");
    EXPECT_FALSE(view.isVisible());
    EXPECT_NE(program.settings.modeminit.text().find('7'), std::string::npos);
    open();
    type("txtmodinit", QStringLiteral("8"));
    press("cmdCancel");
    EXPECT_FALSE(view.isVisible());
    EXPECT_EQ(program.settings.modeminit.text().find('8'), std::string::npos);
    open();
    press("Command11");
    EXPECT_FALSE(view.isVisible());
}

TEST_F(PhonebookView, itTellsWhenItClosesItself) {
    EXPECT_TRUE(eventually(
        [this] { return find<QLabel>("Label22")->text() == QStringLiteral("Fenster schließt in 290 s"); }));
    f.countdown = 299;
    EXPECT_TRUE(eventually([this] { return !view.isVisible(); }));
}

// ---- looks ----

TEST_F(PhonebookView, nothingIsCutOff) {
    f.txtanrufer.Text = "Benutzer";
    for (const QSize size : {QSize(1366, 720), view.minimumSizeHint()}) {
        view.resize(size);
        settle();
        for (Form* panel : {&f.form, &f.Picture2, &f.picdownload, &f.picdownl}) {
            panel->Visible = true;
            settle();
            for (QWidget* const one : view.findChildren<QWidget*>()) {
                const bool caption = qobject_cast<QLabel*>(one) || qobject_cast<QAbstractButton*>(one);
                if (!caption || !one->isVisible()) continue;
                const auto* label = qobject_cast<QLabel*>(one);
                const int height = label && label->wordWrap() ? label->heightForWidth(label->width())
                                                              : one->sizeHint().height();
                const bool wraps = label && label->wordWrap();
                EXPECT_GE(one->height(), std::min(height, one->maximumHeight()))
                    << one->objectName().toStdString();
                EXPECT_TRUE(wraps || one->width() >= std::min(one->sizeHint().width(), one->maximumWidth()))
                    << one->objectName().toStdString();
            }
            if (panel != &f.form) panel->Visible = false;
        }
    }
    EXPECT_LE(view.minimumSizeHint().width(), 1000);
    EXPECT_LE(view.minimumSizeHint().height(), 680);
}

TEST_F(PhonebookView, whateverIsNoPlainWordHasATooltip) {
    for (QWidget* const one : view.findChildren<QWidget*>()) {
        const bool takes_input = qobject_cast<QLineEdit*>(one) || qobject_cast<QScrollBar*>(one) ||
                                 one->objectName().startsWith(QStringLiteral("Picture1_"));
        if (!takes_input || one->objectName().startsWith(QStringLiteral("qt_"))) continue;
        EXPECT_FALSE(one->toolTip().isEmpty() && one->accessibleName().isEmpty())
            << one->objectName().toStdString();
    }
    EXPECT_EQ(find("Command8")->toolTip(),
              QStringLiteral("Telefonbuch als Text ausgeben (C:\\Daten\\Datencsv\\telefon.txt)"));
}

TEST_F(PhonebookView, aChangeOfThePaletteReachesTheGrounds) {
    click("Picture1_3");
    const QPalette before = QApplication::palette();
    for (const Look look : {Look::light, Look::dark}) {
        QApplication::setPalette(palette_of(look));
        settle();
        for (const char* name : {"nam1_2", "num1_1", "nam1_3", "num1_3", "txtversch_3", "smstxt"}) {
            const QPalette shown = edit(name)->palette();
            EXPECT_GE(contrast(shown.color(QPalette::Text), shown.color(QPalette::Base)), least_contrast);
        }
        EXPECT_EQ(ground("nam1_2"), palette_of(look).color(QPalette::Base));
        EXPECT_EQ(ground("nam1_3"), ground_of(colour::red, palette_of(look)).ground);
    }
    QApplication::setPalette(before);
}

TEST(Grounds, canBeReadInBothLooks) {
    for (const Look look : {Look::light, Look::dark}) {
        for (const Colour colour :
             {colour::white, colour::red, colour::cyan, colour::yellow, colour::info, colour::scroll_bar,
              colour::face, colour::green, colour::blue, Colour{0}}) {
            const Ground ground = ground_of(colour, palette_of(look));
            EXPECT_GE(contrast(ground.text, ground.ground), least_contrast) << colour;
        }
    }
}

} // namespace velorn::test
