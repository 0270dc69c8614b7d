// The chart and its list in the evaluation's window, over an archive that is there by itself.
#include "archive/archive_samples.h"
#include "desktop/chart_view.h"
#include "desktop/flow_layout.h"
#include "desktop/frmgrafick_view.h"
#include "desktop/popup_view.h"
#include "desktop/qt_event_loop.h"
#include "desktop/track_list_view.h"
#include "desktop/track_widgets.h"
#include "evaluation/evaluation.h"
#include "support/block_files.h"
#include "support/fake_printer.h"
#include "support/scripted_dialogs.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QShortcut>

#include <gtest/gtest.h>
#include <stdexcept>

namespace velorn::test {

namespace {

struct ChartWindow : testing::Test {
    static constexpr int wide = 1920; // of the screen: 60 rows

    QtEventLoop loop{50};
    BlockFiles files;
    ScriptedDialogs dialogs{loop};
    FakePrinter printer;
    Module1 module1;
    FrmGrafick f{loop};
    Archive archive{files};
    std::unique_ptr<Evaluation> evaluation;
    QWidget owner;
    std::unique_ptr<FrmgrafickView> view;

    void SetUp() override { opens(30, 1024); }
    void TearDown() override { view.reset(); }

    void opens(std::int16_t tracks, int screen) {
        view.reset();
        make_sparse_archive(files, tracks, 2);
        archive.close();
        ASSERT_TRUE(archive.open(archive_path));
        archive.startjahr = std::int16_t{2008};
        f.geladen = true;
        f.tagsel = 15;
        f.monsel = 3;
        f.jahrsel = 2010;
        f.picdownload.Visible = false;
        f.form.Visible = false;
        evaluation = std::make_unique<Evaluation>(loop, dialogs, printer, ScreenSize{screen, 768}, module1, f,
                                                  archive);
        view = std::make_unique<FrmgrafickView>(
            f, evaluation->controls, [this](std::function<void()> what) { loop.post(std::move(what)); },
            &owner);
        f.form.Visible = true;
        evaluation->archive_opened();
        view->setMinimumSize(0, 0);
        view->resize(1500, 800);
        settle();
    }
    EvaluationControls& c() { return evaluation->controls; }
    void settle() {
        bool over = false;
        loop.post_at(loop.now_ms() + 500, [&over] { over = true; });
        (void)loop.wait_until([&over] { return over; });
    }
    template <class W = QWidget>
    W* find(const char* name) {
        W* const found = view->findChild<W*>(QString::fromLatin1(name));
        if (found == nullptr) throw std::runtime_error(name);
        return found;
    }
    ChartView& chart() { return static_cast<ChartView&>(*find("Picture1")); }
    void press(const char* name) {
        find<QAbstractButton>(name)->click();
        settle();
    }
    static void mouse(QWidget& widget, QEvent::Type type, QPointF at, Qt::MouseButton button = Qt::NoButton) {
        const bool held = button != Qt::NoButton && type != QEvent::MouseButtonRelease;
        QMouseEvent event(type, at, widget.mapToGlobal(at), type == QEvent::MouseMove ? Qt::NoButton : button,
                          held ? button : Qt::NoButton, {});
        QApplication::sendEvent(&widget, &event);
    }
    // The pointer stands at a place in the chart's units.
    void point_at(double X, double Y) {
        const QRectF there = chart().chart();
        mouse(chart(), QEvent::MouseMove,
              {there.left() + X * there.width() / chart_width,
               there.top() + (chart_height - Y) * there.height() / chart_height});
        settle();
    }
    void shortcut(const QKeySequence& wanted) {
        for (QShortcut* const one : view->findChildren<QShortcut*>()) {
            if (one->key() == wanted) Q_EMIT one->activated();
        }
    }
    void key(QWidget& widget, int code) {
        QKeyEvent event(QEvent::KeyPress, code, Qt::NoModifier);
        QApplication::sendEvent(&widget, &event);
        settle();
    }
    std::string date() const {
        return std::to_string(f.tagsel) + '.' + std::to_string(f.monsel) + '.' + std::to_string(f.jahrsel);
    }
};

} // namespace

TEST_F(ChartWindow, drawsTheChartWhenItOpens) {
    ASSERT_NE(c().Picture1.canvas, nullptr);
    const QImage grabbed = chart().grab().toImage();
    const QRectF there = chart().chart();
    const auto row = static_cast<int>(there.top() + (chart_height - 300) * there.height() / chart_height);
    int black = 0;
    for (int x = 0; x < grabbed.width(); ++x)
        black += grabbed.pixelColor(x, row) == chart().palette().color(QPalette::Text) ? 1 : 0;
    EXPECT_GE(black, 4) << "the frame, and an upright line every six hours";
}

TEST_F(ChartWindow, theChartFillsItsPlaceWithScalesThatAreNearlyAlike) {
    for (const QSize size : {QSize(1500, 800), QSize(1500, 1400), QSize(1100, 640)}) {
        view->resize(size);
        settle();
        const QRectF there = chart().chart();
        const double x = there.width() / chart_width;
        const double y = there.height() / chart_height;
        EXPECT_LE(std::max(x / y, y / x), 1.3501);
        EXPECT_TRUE(QRectF(chart().rect()).contains(there));
        EXPECT_GE(std::max(there.width() / chart().width(), there.height() / chart().height()), 0.9);
    }
}

TEST_F(ChartWindow, tellsThePointerInTheChartsUnits) {
    for (const QSize size : {QSize(1500, 800), QSize(1100, 900)}) {
        view->resize(size);
        settle();
        point_at(100.2, 539.8);
        EXPECT_EQ(c().Label32.Caption.get(), "100");
        EXPECT_EQ(f.Label33.Caption.get(), "540");
        EXPECT_EQ(find<QLabel>("Label33_Y")->text(), QStringLiteral("540"));
    }
}

TEST_F(ChartWindow, showsTheMomentUnderThePointerUntilItLeaves) {
    point_at(320, 300);
    EXPECT_TRUE(find("Label54")->isVisible());
    EXPECT_TRUE(find("Label55")->isVisible());
    EXPECT_EQ(find<QLabel>("Label54")->text().toStdString(), c().Label54.Caption.get());
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&chart(), &leave);
    settle();
    EXPECT_FALSE(find("Label54")->isVisible());
    EXPECT_FALSE(c().maustage);
}

TEST_F(ChartWindow, theReadOutNeverLeavesTheChart) {
    press("comwoch");
    for (const double X : {82.0, 300.0, 583.0}) {
        for (const double Y : {45.0, 300.0, 545.0}) {
            point_at(X, Y);
            ASSERT_TRUE(find("ablesung")->isVisible());
            EXPECT_TRUE(chart().chart().toAlignedRect().contains(find("ablesung")->geometry()))
                << X << ' ' << Y;
        }
    }
}

TEST_F(ChartWindow, aNewPlaceIsDrawnOnceAndAPaintingDrawsNothing) {
    int drawn = 0;
    const auto paint = c().Picture1.Paint;
    c().Picture1.Paint = [&] {
        ++drawn;
        paint();
    };
    view->resize(1400, 700);
    settle();
    EXPECT_EQ(drawn, 1);
    (void)chart().grab();
    chart().repaint();
    EXPECT_EQ(drawn, 1);
}

TEST_F(ChartWindow, isDraggedByItsGroundAndStaysInSight) {
    view->resize(1500, 500);
    settle();
    const QRectF before = chart().chart();
    mouse(chart(), QEvent::MouseButtonPress, {3, 30}, Qt::LeftButton);
    mouse(chart(), QEvent::MouseMove, {23, 40}, Qt::LeftButton);
    EXPECT_EQ(chart().chart().topLeft(), before.topLeft() + QPointF(20, 10));
    mouse(chart(), QEvent::MouseMove, {9000, 40}, Qt::LeftButton);
    EXPECT_TRUE(chart().chart().intersects(QRectF(chart().rect())));
    mouse(chart(), QEvent::MouseButtonRelease, {9000, 40}, Qt::LeftButton);
}

// ---- keyboard ----

TEST_F(ChartWindow, keysStepThroughTheDays) {
    struct Step {
        QKeySequence key;
        const char* date;
    };
    for (const Step& step :
         {Step{Qt::Key_Right, "16.3.2010"}, Step{Qt::Key_Left, "15.3.2010"},
          Step{Qt::CTRL | Qt::Key_Right, "22.3.2010"}, Step{Qt::CTRL | Qt::Key_Left, "15.3.2010"},
          Step{Qt::Key_PageDown, "15.4.2010"}, Step{Qt::Key_PageUp, "15.3.2010"},
          Step{Qt::CTRL | Qt::Key_PageDown, "15.3.2011"}, Step{Qt::CTRL | Qt::Key_PageUp, "15.3.2010"}}) {
        shortcut(step.key);
        settle();
        EXPECT_EQ(date(), step.date);
    }
    shortcut(Qt::ALT | Qt::Key_3);
    settle();
    EXPECT_EQ(archive.ansicht.number(), 3);
}

TEST_F(ChartWindow, stepsThatComeWhileOneIsWaitingAreDropped) {
    for (int i = 0; i < 5; ++i) shortcut(Qt::Key_Right);
    settle();
    EXPECT_EQ(date(), "16.3.2010");
    shortcut(Qt::Key_Right);
    settle();
    EXPECT_EQ(date(), "17.3.2010");
}

TEST_F(ChartWindow, arrowsGoFromRowToRowAndTabComesToOne) {
    QWidget* const first = find("kanallinks_1");
    first->setFocus();
    key(*first, Qt::Key_Down);
    EXPECT_EQ(view->focusWidget()->objectName(), QStringLiteral("kanallinks_2"));
    EXPECT_TRUE((find("kanallinks_2")->focusPolicy() & Qt::TabFocus) != 0);
    EXPECT_TRUE((first->focusPolicy() & Qt::TabFocus) == 0);
    find("Commandkanal_30")->setFocus();
    key(*find("Commandkanal_30"), Qt::Key_Down);
    EXPECT_EQ(view->focusWidget()->objectName(), QStringLiteral("Commandkanalb_0"));
}

TEST_F(ChartWindow, tabComesToARowThatIsThereInASmallerArchiveToo) {
    opens(60, wide);
    find("Commandkanal_45")->setFocus();
    make_sparse_archive(files, 30, 2);
    ASSERT_TRUE(archive.open(archive_path));
    evaluation->archive_opened();
    settle();
    ASSERT_FALSE(find("Commandkanal_45")->isVisible());
    EXPECT_TRUE((find("Commandkanal_1")->focusPolicy() & Qt::TabFocus) != 0);
}

// ---- list ----

TEST_F(ChartWindow, thirtyRowsFitIntoALowScreen) {
    EXPECT_LE(find("trackliste")->height(), 700);
    EXPECT_FALSE(find("txkanal_1")->isHidden());
    EXPECT_EQ(view->findChild<QWidget*>(QStringLiteral("txkanal_31")), nullptr);
}

TEST_F(ChartWindow, aWideScreenHasSixtyRowsInTwoColumns) {
    opens(60, wide);
    QWidget* const right = find("txkanal_31");
    EXPECT_TRUE(right->isVisible());
    EXPECT_EQ(right->y(), find("txkanal_1")->y());
    EXPECT_GT(right->x(), find("summkanal_1")->geometry().right());
    EXPECT_TRUE(find("txkanal_60")->isVisible());
    EXPECT_FALSE(find("com1bis30")->isVisible());
}

TEST_F(ChartWindow, theNextBlockIsAButtonAwayAndNamedInFull) {
    opens(90, 1024);
    auto* const block = find<QPushButton>("com1bis30");
    EXPECT_EQ(block->text(), QStringLiteral("31 - 60 anzeigen"));
    EXPECT_GE(block->width(), block->sizeHint().width());
    press("com1bis30");
    EXPECT_TRUE(find<QLabel>("txkanal_1")->text().startsWith(QStringLiteral("31: ")));
}

TEST_F(ChartWindow, aNameThatIsTooLongIsATooltip) {
    archive.spurnamen[1] = std::string(100, 'W');
    archive.spurnamen[2] = "kurz";
    evaluation->neuzeichnen();
    EXPECT_TRUE(find("txkanal_1")->toolTip().contains(QStringLiteral("WWWWWWWWWW")));
    EXPECT_TRUE(find("txkanal_2")->toolTip().isEmpty());
}

TEST_F(ChartWindow, theChecksOfARowChooseItsAxis) {
    press("kanalrechts_5");
    EXPECT_NE(archive.spurrechts[5].number(), 0);
    EXPECT_TRUE(find<QCheckBox>("kanalrechts_5")->isChecked());
    EXPECT_FALSE(find<QCheckBox>("kanallinks_5")->isChecked());
}

// ---- popups ----

TEST_F(ChartWindow, aRowsButtonOpensItsPopupBesideIt) {
    press("Commandkanal_7");
    QWidget* const popup = find("pickanal");
    ASSERT_TRUE(popup->isVisible());
    EXPECT_TRUE(view->rect().contains(popup->geometry()));
    EXPECT_LE(popup->geometry().right(), find("Commandkanal_7")->mapTo(view.get(), QPoint()).x());
    EXPECT_EQ(view->focusWidget()->objectName(), QStringLiteral("txnam"));
    key(*find("txnam"), Qt::Key_Return);
    EXPECT_FALSE(popup->isVisible());
    EXPECT_NE(archive.spursichtbar[7].number(), 0);
}

TEST_F(ChartWindow, aPopupIsDraggedAndStaysInItsWindow) {
    press("Commandkanal_7");
    QWidget& popup = *find("pickanal");
    const QPoint before = popup.pos();
    const int Left = c().pickanal.Left;
    mouse(popup, QEvent::MouseButtonPress, {5, 5}, Qt::LeftButton);
    mouse(popup, QEvent::MouseMove, {-35, 25}, Qt::LeftButton);
    EXPECT_EQ(popup.pos(), before + QPoint(-40, 20));
    EXPECT_EQ(c().pickanal.Left.get(), Left - 40);
    mouse(popup, QEvent::MouseMove, {-5000, 5}, Qt::LeftButton);
    EXPECT_TRUE(view->rect().contains(popup.geometry()));
}

TEST_F(ChartWindow, escapeTakesTheTextsOfATrackAndLeavesTheAxes) {
    press("Commandkanal_7");
    c().txnam.Text = "Netz";
    key(*find("txnam"), Qt::Key_Escape);
    EXPECT_FALSE(find("pickanal")->isVisible());
    EXPECT_EQ(archive.spurnamen[7].text(), "Netz");
    press("openyskala");
    ASSERT_TRUE(find("picyskala")->isVisible());
    const std::string before = archive.ylimax.text();
    c().txylimax.Text = "777";
    key(*find("txylimax"), Qt::Key_Escape);
    EXPECT_FALSE(find("picyskala")->isVisible());
    EXPECT_EQ(archive.ylimax.text(), before);
}

// ---- buttons ----

TEST_F(ChartWindow, whatNothingServesYetIsGreyed) {
    for (const char* later : {"datexport", "datexport2", "datexport3", "openbearb", "openformel",
                              "openformel2", "sonderfunkt", "comdauer", "comtagschnitt", "Check1", "Check2"})
        EXPECT_FALSE(find<QAbstractButton>(later)->isEnabled()) << later;
    EXPECT_EQ(find("datexport")->toolTip(),
              QStringLiteral("aktuell angezeigte Daten werden in Textdatei (Excel-tauglich) übertragen"));
}

TEST_F(ChartWindow, theChosenViewStandsOutAndItsTipNamesTheKey) {
    press("commonat");
    EXPECT_NE(find("commonat")->palette().color(QPalette::Active, QPalette::Button),
              find("comtag")->palette().color(QPalette::Active, QPalette::Button));
    EXPECT_TRUE(
        find("commonat")->toolTip().startsWith(QStringLiteral("6h Durchschittswerte eines Monats (")));
    EXPECT_FALSE(find("minustag")->toolTip().isEmpty());
}

TEST_F(ChartWindow, nothingIsCutOffInAnySize) {
    for (const QSize size : {QSize(1366, 700), QSize(1024, 640), QSize(960, 520)}) {
        view->resize(size);
        settle();
        for (QWidget* const one : view->findChildren<QWidget*>()) {
            const bool name = dynamic_cast<ElidedLabel*>(one) != nullptr;
            const bool bare =
                qobject_cast<QCheckBox*>(one) && qobject_cast<QCheckBox*>(one)->text().isEmpty();
            const bool text = qobject_cast<QLabel*>(one) || qobject_cast<QAbstractButton*>(one);
            if (!text || name || bare || !one->isVisible()) continue;
            EXPECT_GE(one->width(), one->sizeHint().width()) << one->objectName().toStdString();
        }
    }
}

} // namespace velorn::test
