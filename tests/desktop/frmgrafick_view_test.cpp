// The evaluation window's view: its archive's row, the download panel, the ways to close.
#include "desktop/frmgrafick_view.h"
#include "desktop/patience.h"
#include "desktop/qt_event_loop.h"
#include "runtime/text.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QProgressBar>
#include <QRadioButton>

#include <gtest/gtest.h>
#include <stdexcept>

namespace velorn::test {

namespace {

struct GrafickView : testing::Test {
    QtEventLoop loop{50};
    FrmGrafick f{loop};
    QWidget owner;
    EvaluationControls c{loop};
    FrmgrafickView view{f, c, [this](std::function<void()> what) { loop.post(std::move(what)); }, &owner};
    int clicks = 0;

    void SetUp() override {
        for (Button* button : {&f.opendathol, &f.download, &f.closedathol, &f.schliessen, &f.schliessen2})
            button->Click = [this] { ++clicks; };
        f.neupfad.Click = [this] { ++clicks; };
        f.form.Caption = "1/4h-Daten Auswertung  <Gelmar>";
        f.picdownload.Visible = false;
        f.form.Visible = true;
        settle();
    }
    void settle() {
        bool over = false;
        loop.post_at(loop.now_ms() + 500, [&over] { over = true; });
        (void)loop.wait_until([&over] { return over; });
    }
    template <class W = QWidget>
    W* find(const char* name) {
        W* const found = view.findChild<W*>(QString::fromLatin1(name));
        if (found == nullptr) throw std::runtime_error(name);
        return found;
    }
    void opens_the_panel() {
        for (ComboBox* days : {&f.cbodatstart, &f.cbodatstop}) fill(*days, 1, 31);
        for (ComboBox* months : {&f.cbomonstart, &f.cbomonstop}) fill(*months, 1, 12);
        for (ComboBox* years : {&f.cbojahrstart, &f.cbojahrstop}) fill(*years, 2020, 2029);
        f.picdownload.Visible = true;
        settle();
    }
    static void fill(ComboBox& box, int first, int last) {
        std::vector<ComboBox::Item> items;
        for (int number = first; number <= last; ++number) items.push_back({std::to_string(number), {}});
        box.set_List(std::move(items));
    }
};

} // namespace

TEST_F(GrafickView, followsItsForm) {
    EXPECT_TRUE(view.isVisible());
    EXPECT_EQ(view.windowTitle(), QStringLiteral("1/4h-Daten Auswertung  <Gelmar>"));
    f.form.Visible = false;
    EXPECT_FALSE(view.isVisible());
}

TEST_F(GrafickView, showsThePanelWhileItIsOpen) {
    EXPECT_FALSE(find("picdownload")->isVisible());
    opens_the_panel();
    EXPECT_TRUE(find("picdownload")->isVisible());
    f.picdownload.Visible = false;
    EXPECT_FALSE(find("picdownload")->isVisible());
}

TEST_F(GrafickView, showsTheNewestDayOfTheArchive) {
    f.neudat.Caption = "04";
    f.neumon.Caption = "11";
    f.neujah.Caption = "2026";
    EXPECT_EQ(find<QLabel>("neudat")->text(), QStringLiteral("04."));
    EXPECT_EQ(find<QLabel>("neujah")->text(), QStringLiteral("2026"));
}

TEST_F(GrafickView, showsHowFarTheDownloadHasCome) {
    opens_the_panel();
    f.fortschritt.Value = 43;
    f.fortschritt.Text = "43 %   20,8 1/4h-Daten/s   noch 0:05 min";
    f.labstatus.Caption = "Übertragung fertig!"_w;
    EXPECT_EQ(find<QProgressBar>("fortschritt")->value(), 43);
    EXPECT_TRUE(find<QLabel>("fortschritt_text")->text().startsWith(QStringLiteral("43 %")));
    EXPECT_EQ(find<QLabel>("labstatus")->text(), QStringLiteral("Übertragung fertig!"));
}

TEST_F(GrafickView, everyButtonDoesItsWork) {
    opens_the_panel();
    int pressed = 0;
    for (const char* name :
         {"opendathol", "neupfad", "schliessen", "schliessen2", "download", "closedathol"}) {
        auto* const button = find<QAbstractButton>(name);
        EXPECT_FALSE(button->text().isEmpty()) << name;
        button->click();
        settle();
        EXPECT_EQ(clicks, ++pressed) << name;
    }
}

TEST_F(GrafickView, itsCrossClosesAsTheButtonDoes) {
    view.close();
    settle();
    EXPECT_EQ(clicks, 1);
    EXPECT_TRUE(view.isVisible()) << "until the logic has closed it";
}

TEST_F(GrafickView, thePersonChoosesDayAndKindOfPacket) {
    opens_the_panel();
    auto* const day = find<QComboBox>("cbodatstart");
    ASSERT_EQ(day->count(), 31);
    day->setCurrentIndex(20);
    Q_EMIT day->activated(20);
    EXPECT_EQ(f.cbodatstart.Text(), "21");
    f.cbodatstart.set_Text("7");
    EXPECT_EQ(day->currentText(), QStringLiteral("7"));
    find<QRadioButton>("optuebertrag0")->click();
    settle();
    EXPECT_EQ(f.optuebertrag.selected(), 0);
    f.optuebertrag.select(1);
    EXPECT_TRUE(find<QRadioButton>("optuebertrag1")->isChecked());
}

TEST_F(GrafickView, nothingIsCutOff) {
    opens_the_panel();
    f.fortschritt.Text = "100 %   1234,5 1/4h-Daten/s   noch 1234:59 min";
    f.labstatus.Caption = "Daten 31.12.2026     96.te 1/4h";
    f.Label33.Caption = "123456  Timeout 15s";
    f.Label58.Caption = "Dateinr. 2000";
    view.resize(view.minimumSize());
    // Which of the captions have less room than they need; a busy machine lays them out later.
    std::string cut_off;
    EXPECT_TRUE(comes_true(loop, [&] {
        cut_off.clear();
        for (QWidget* const one : view.findChildren<QWidget*>()) {
            const bool caption = qobject_cast<QLabel*>(one) || qobject_cast<QAbstractButton*>(one) ||
                                 qobject_cast<QComboBox*>(one);
            if (!caption || !one->isVisible()) continue;
            if (one->height() < one->sizeHint().height() || one->width() < one->sizeHint().width())
                cut_off += one->objectName().toStdString() + ' ';
        }
        return cut_off.empty();
    })) << cut_off;
    EXPECT_LE(view.minimumWidth(), 1000);
    EXPECT_LE(view.minimumHeight(), 680);
}

} // namespace velorn::test
