// The ten lines of the phone book's window.
#include "desktop/phonebook_view_fixture.h"
#include "desktop/text_rim.h"

#include <QRadioButton>

namespace velorn::test {

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

TEST_F(PhonebookView, theTabKeyGoesAlongALineAndOnToTheNext) {
    QWidget* here = find("Picture1_0");
    QStringList names;
    while (names.size() < 5) {
        names << here->objectName();
        do {
            here = here->nextInFocusChain();
        } while (!(here->focusPolicy() & Qt::TabFocus) || !here->isVisible());
    }
    EXPECT_EQ(names.join(u' '), QStringLiteral("Picture1_0 nam1_0 num1_0 txtversch_0 Picture1_1"));
}

} // namespace velorn::test
