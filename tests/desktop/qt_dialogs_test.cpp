#include "desktop/qt_clipboard.h"
#include "desktop/qt_dialogs.h"
#include "desktop/qt_event_loop.h"
#include "desktop/text_rim.h"
#include "patience.h"
#include "runtime/text.h"

#include <QApplication>
#include <QDialog>
#include <QFileDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>

#include <gtest/gtest.h>

namespace velorn {

namespace {

struct Boxes : testing::Test {
    std::filesystem::path folder = [] {
        std::string name = (std::filesystem::temp_directory_path() / "velorn-XXXXXX").string();
        return std::filesystem::path(::mkdtemp(name.data()));
    }();
    QtEventLoop loop;
    Paths paths{folder};
    QtDialogs dialogs{loop, paths};

    ~Boxes() override { std::filesystem::remove_all(folder); }

    // The visible dialogs of this name, the one opened last in front.
    static QDialog* open(const char* name) {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (widget->isVisible() && widget->objectName() == QLatin1String(name))
                return qobject_cast<QDialog*>(widget);
        }
        return nullptr;
    }
    static QDialog* box_saying(std::string_view part) {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            auto* const box = qobject_cast<QMessageBox*>(widget);
            if (box != nullptr && box->isVisible() && box->text().contains(to_qstring(part))) return box;
        }
        return nullptr;
    }
    static void click(QDialog* dialog, std::string_view text) {
        ASSERT_NE(dialog, nullptr);
        for (QPushButton* button : dialog->findChildren<QPushButton*>()) {
            if (button->text() == to_qstring(text)) return button->click();
        }
        FAIL() << "no button " << text;
    }
    static void escape(QDialog* dialog) {
        ASSERT_NE(dialog, nullptr);
        QKeyEvent key(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QApplication::sendEvent(dialog, &key);
    }
    void soon(std::function<void()> action) { loop.post_at(loop.now_ms() + 5, std::move(action)); }
};

} // namespace

TEST_F(Boxes, theAnswerIsThatOfTheClickedButton) {
    soon([] { click(open("message_box"), "Nein"); });
    EXPECT_EQ(dialogs.message_box("Anschluß schließen?"_w, 3 + 32), Answer::no);
    soon([] { click(open("message_box"), "Wiederholen"); });
    EXPECT_EQ(dialogs.message_box("Fehler", 2 + 16), Answer::retry);
    EXPECT_EQ(open("message_box"), nullptr);
}

TEST_F(Boxes, textTitleIconAndTheOrderOfTheButtonsAreThoseAskedFor) {
    soon([] {
        auto* const box = qobject_cast<QMessageBox*>(open("message_box"));
        ASSERT_NE(box, nullptr);
        EXPECT_EQ(box->text(), QStringLiteral("<b>Gr\u00F6\u00DFe</b>"));
        EXPECT_EQ(box->windowTitle(), QStringLiteral("Frage"));
        EXPECT_EQ(box->icon(), QMessageBox::Warning);
        EXPECT_TRUE(box->isModal());
        std::map<int, QString> from_left;
        for (QPushButton* button : box->findChildren<QPushButton*>()) from_left[button->x()] = button->text();
        std::string order;
        for (const auto& [x, text] : from_left) order += text.toStdString() + ' ';
        EXPECT_EQ(order, "Ja Nein Abbrechen ");
        click(box, "Ja");
    });
    EXPECT_EQ(dialogs.message_box("<b>Größe</b>"_w, 3 + 48, "Frage"), Answer::yes);
}

TEST_F(Boxes, escapeCancels) {
    const std::pair<int, Answer> rows[] = {{0, Answer::ok},     {1, Answer::cancel}, {2, Answer::abort},
                                           {3, Answer::cancel}, {4, Answer::no},     {5, Answer::cancel}};
    for (const auto& [code, answer] : rows) {
        soon([] { escape(open("message_box")); });
        EXPECT_EQ(dialogs.message_box("?", code), answer) << code;
    }
}

TEST_F(Boxes, aBoxInsideTheWaitOfAnotherEndsFirst) {
    Answer inner = Answer::ok;
    std::string order;
    soon([&] {
        soon([] { click(box_saying("aussen"), "Ja"); });
        loop.post_at(loop.now_ms() + 15, [] { click(box_saying("innen"), "Nein"); });
        inner = dialogs.message_box("innen", 4);
        order += "innen ";
    });
    const Answer outer = dialogs.message_box("aussen", 4);
    order += "aussen";
    EXPECT_EQ(outer, Answer::yes);
    EXPECT_EQ(inner, Answer::no);
    EXPECT_EQ(order, "innen aussen");
}

TEST_F(Boxes, theEndOfTheProgramCancelsAllOfThem) {
    Answer inner = Answer::yes;
    soon([&] {
        soon([&] { loop.end(); });
        inner = dialogs.message_box("innen", 4);
    });
    EXPECT_EQ(dialogs.message_box("aussen", 1), Answer::cancel);
    EXPECT_EQ(inner, Answer::no);
    EXPECT_EQ(open("message_box"), nullptr);
}

TEST_F(Boxes, aBoxGoesWithItsWindow) {
    auto* const window = new QWidget;
    window->show();
    window->activateWindow();
    ASSERT_TRUE(test::comes_true(loop, [&] { return QApplication::activeWindow() == window; }));
    soon([&] { delete window; });
    EXPECT_EQ(dialogs.message_box("?", 1), Answer::cancel);
}

TEST_F(Boxes, anEmptyInputIsNotACancelledOne) {
    soon([] {
        auto* const line = open("input_box")->findChild<QLineEdit*>();
        EXPECT_EQ(line->text(), QStringLiteral("alt"));
        line->clear();
        click(open("input_box"), "OK");
    });
    EXPECT_EQ(dialogs.input_box("Name?", "Titel", "alt"), std::optional<std::string>(""));
    soon([] { click(open("input_box"), "Abbrechen"); });
    EXPECT_EQ(dialogs.input_box("Name?", "Titel", "alt"), std::nullopt);
    soon([] { escape(open("input_box")); });
    EXPECT_EQ(dialogs.input_box("Name?", "Titel", "alt"), std::nullopt);
}

TEST_F(Boxes, anInputThatCannotBeStoredIsAskedForAgain) {
    soon([&] {
        open("input_box")->findChild<QLineEdit*>()->setText(QStringLiteral("\u0416x"));
        click(open("input_box"), "OK");
        soon([&] {
            click(box_saying("nicht speichern kann"), "OK");
            soon([] {
                auto* const line = open("input_box")->findChild<QLineEdit*>();
                EXPECT_EQ(line->text(), QStringLiteral("\u0416x"));
                line->setText(QStringLiteral("\u00E4x"));
                click(open("input_box"), "OK");
            });
        });
    });
    EXPECT_EQ(dialogs.input_box("Name?", "Titel", ""), std::optional<std::string>("äx"_w));
}

TEST_F(Boxes, aChosenFileComesAsAStoredPath) {
    std::filesystem::create_directories(folder / "logs");
    soon([] {
        auto* const dialog = qobject_cast<QFileDialog*>(open("file_dialog"));
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(dialog->nameFilters(),
                  (QStringList{QStringLiteral("LOG-Dateien (*.LOG) (*.log)"), QStringLiteral("Alle (*)")}));
        EXPECT_EQ(dialog->directory().dirName(), QStringLiteral("logs"));
        dialog->findChild<QLineEdit*>()->setText(QStringLiteral("neu.log"));
        click(dialog, "Speichern");
    });
    const auto chosen = dialogs.choose_file({"Log", "LOG-Dateien (*.LOG)|*.log|Alle|*.*",
                                             Paths::stored(folder / "logs").value(), "alt.log", true});
    ASSERT_TRUE(chosen);
    EXPECT_EQ(paths.native(*chosen).filename(), "neu.log");
}

TEST_F(Boxes, aFileDialogThatIsCancelledGivesItsError) {
    soon([] { escape(open("file_dialog")); });
    EXPECT_TRUE(dialogs.choose_file({"Log", "", "", "", false}).failure().is(RunTimeError::dialog_cancelled));
}

TEST_F(Boxes, aNameThatCannotBeStoredIsAskedForAgain) {
    soon([&] {
        open("file_dialog")->findChild<QLineEdit*>()->setText(QStringLiteral("\u0416.log"));
        click(open("file_dialog"), "Speichern");
        soon([&] {
            click(box_saying("nicht speichern kann"), "OK");
            soon([] { click(open("file_dialog"), "Abbrechen"); });
        });
    });
    const auto chosen = dialogs.choose_file({"Log", "", Paths::stored(folder).value(), "", true});
    EXPECT_FALSE(chosen);
}

TEST(QtClipboard, bringsTextBackAndMarksWhatIsForeign) {
    QtClipboard clipboard;
    clipboard.set_text("Größe"_w);
    EXPECT_EQ(clipboard.text(), "Größe"_w);
}

} // namespace velorn
