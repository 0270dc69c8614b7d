// The phone book's window below its lines: panels, settings, commands, the ways to close it, its looks.
#include "desktop/grounds.h"
#include "desktop/phonebook_view_fixture.h"
#include "desktop/style.h"

#include <QAction>
#include <QCheckBox>

namespace velorn::test {

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

TEST_F(PhonebookView, theRingGoesToWhatTheSearchFinds) {
    click("Picture1_4");
    dialogs.expect_input("Suchtext", "anlage 12");
    dialogs.expect_input("Suchtext", "");
    shortcut(QKeySequence(Qt::Key_F3));
    EXPECT_EQ(focus(), QStringLiteral("Picture1_0"));
    key(Qt::Key_Return);
    EXPECT_EQ(serial.take_written(), "atd055512\r");
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
