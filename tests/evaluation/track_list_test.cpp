#include "evaluation/evaluation_rig.h"
#include "runtime/text.h"

namespace velorn::test {

struct TrackRowsTest : EvaluationRig {
    int drawings() {
        int count = 0;
        for (const std::string& stroke : screen.strokes()) count += stroke.starts_with("clear");
        screen.forget();
        return count;
    }
    void names(int track, const char* name, const std::string& unit) {
        archive.spurnamen[static_cast<std::size_t>(track)] = name;
        archive.spureinheiten[static_cast<std::size_t>(track)] = unit;
    }
    bool is_right(int track) { return archive.spurrechts[static_cast<std::size_t>(track)].number() != 0; }
};

TEST_F(TrackRowsTest, namesColoursAndSidesItsTracks) {
    names(2, "Leistung", "kW");
    shows(2, colour::blue);
    archive.spurrechts[2] = true;
    evaluation->neuzeichnen();
    EXPECT_EQ(c().txkanal[2].Caption.get(), "02: Leistung (kW)");
    EXPECT_EQ(c().Commandkanal[2].BackColor.get(), colour::blue);
    EXPECT_FALSE(c().kanallinks[2].Value);
    EXPECT_TRUE(c().kanalrechts[2].Value);
    EXPECT_EQ(c().Commandkanal[3].BackColor.get(), colour::white);
    EXPECT_TRUE(c().kanallinks[3].Value);
    EXPECT_FALSE(c().kanalrechts[3].Value);
}

TEST_F(TrackRowsTest, hasSixtyRowsOnAWideScreen) {
    opens(60, wide);
    names(60, "Zähler", "kWh");
    evaluation->neuzeichnen();
    EXPECT_TRUE(c().breitbild);
    EXPECT_TRUE(c().txkanal[60].Caption.get().starts_with("60: Z"));
    opens(60, 1350);
    EXPECT_FALSE(c().breitbild);
    opens(60, 1351);
    EXPECT_TRUE(c().breitbild);
}

TEST_F(TrackRowsTest, hidesRowsBehindTheLastTrack) {
    opens(30, wide);
    EXPECT_TRUE(c().txkanal[30].Visible);
    EXPECT_FALSE(c().txkanal[31].Visible);
    EXPECT_FALSE(c().Commandkanal[31].Visible);
}

// ---- paging ----

TEST_F(TrackRowsTest, namesTheBlockThatTheNextClickShows) {
    struct Row {
        std::int16_t tracks;
        int width;
        std::vector<std::string> captions;
    };
    const std::vector<Row> rows{
        {60, narrow, {"31 - 60 anzeigen", "1 - 30 anzeigen"}},
        {90, narrow, {"31 - 60 anzeigen", "61 - 90 anzeigen", "1 - 30 anzeigen"}},
        {120, narrow, {"31 - 60 anzeigen", "61 - 90 anzeigen", "91 - 120 anzeigen", "1 - 30 anzeigen"}},
        {150,
         narrow,
         {"31 - 60 anzeigen", "61 - 90 anzeigen", "91 - 120 anzeigen", "121 - 150 anzeigen",
          "1 - 30 anzeigen"}},
        {90, wide, {"31 - 90 anzeigen", "1 - 60 anzeigen"}},
        {120, wide, {"31 - 90 anzeigen", "61 - 120 anzeigen", "1 - 60 anzeigen"}},
        {150, wide, {"31 - 90 anzeigen", "61 - 120 anzeigen", "91 - 150 anzeigen", "1 - 60 anzeigen"}},
    };
    for (const Row& row : rows) {
        opens(row.tracks, row.width);
        EXPECT_TRUE(c().com1bis30.Visible);
        EXPECT_TRUE(c().com1bis30.Enabled);
        int first = 1;
        for (const std::string& caption : row.captions) {
            EXPECT_EQ(c().com1bis30.Caption.get(), caption);
            EXPECT_EQ(c().erstespur, first);
            c().com1bis30.Click();
            first += 30;
        }
        EXPECT_EQ(c().erstespur, 1);
        EXPECT_EQ(c().com1bis30.Caption.get(), row.captions.front());
    }
}

TEST_F(TrackRowsTest, needsNoPagingForOneBlock) {
    EXPECT_TRUE(c().com1bis30.Visible);
    EXPECT_FALSE(c().com1bis30.Enabled);
    EXPECT_EQ(c().com1bis30.Caption.get(), "1 - 30 anzeigen");
    opens(60, wide);
    EXPECT_FALSE(c().com1bis30.Visible);
}

TEST_F(TrackRowsTest, hidesTheFiguresOfTheBlockBefore) {
    opens(60, narrow);
    shows(3);
    evaluation->neuzeichnen();
    EXPECT_TRUE(c().schnittkanal[3].Visible);
    c().com1bis30.Click();
    EXPECT_FALSE(c().schnittkanal[3].Visible);
    EXPECT_FALSE(c().summkanal[3].Visible);
    EXPECT_EQ(c().txkanal[3].Caption.get().substr(0, 3), "33:");
}

TEST_F(TrackRowsTest, sharesOneRowBetweenTheTwoCalculations) {
    opens(60, narrow);
    archive.bspurfarben[0] = std::int32_t{255};
    archive.bspurfarben[1] = std::int32_t{0xFF00};
    shows_calculated(0);
    shows_calculated(1);
    evaluation->neuzeichnen();
    EXPECT_EQ(c().Label101.Caption.get(), "B1:");
    EXPECT_EQ(c().Commandkanalb[0].BackColor.get(), 255U);
    c().com1bis30.Click();
    EXPECT_EQ(c().Label101.Caption.get(), "B2:");
    EXPECT_EQ(c().Commandkanalb[0].BackColor.get(), 0xFF00U);
    EXPECT_FALSE(c().Commandkanalb[1].Visible);
}

TEST_F(TrackRowsTest, showsTheTitlesOfTheCalculations) {
    archive.bname1 = "Netto";
    archive.bname2 = "---";
    evaluation->neuzeichnen();
    EXPECT_EQ(c().txberech1.Caption.get(), "Netto");
    EXPECT_EQ(c().txberech2.Caption.get(), "---");
}

// ---- the two axes ----

TEST_F(TrackRowsTest, changesSidesWithOneRedraw) {
    c().kanalrechts[5].Value = true;
    EXPECT_TRUE(is_right(5));
    EXPECT_FALSE(c().kanallinks[5].Value);
    EXPECT_EQ(drawings(), 1);
    loop.pass(200);
    c().kanalrechts[5].Value = false;
    EXPECT_FALSE(is_right(5));
    EXPECT_TRUE(c().kanallinks[5].Value);
    EXPECT_EQ(drawings(), 1);
    loop.pass(200);
    c().kanallinks[5].Value = false;
    EXPECT_TRUE(is_right(5));
    loop.pass(200);
    c().kanallinks[5].Value = true;
    EXPECT_FALSE(is_right(5));
}

TEST_F(TrackRowsTest, holdsASecondRedrawBackForTwoTicks) {
    c().kanalrechts[5].Value = true;
    (void)drawings();
    loop.pass(100);
    c().kanalrechts[6].Value = true;
    EXPECT_TRUE(is_right(6));
    EXPECT_EQ(drawings(), 0);
    EXPECT_TRUE(c().aufschub);
    loop.pass(100);
    EXPECT_FALSE(c().aufschub);
    EXPECT_FALSE(c().Timer2.Enabled);
    c().kanalrechts[7].Value = true;
    EXPECT_EQ(drawings(), 1);
}

TEST_F(TrackRowsTest, ignoresSidesOfARowWithoutATrack) {
    opens(90, wide);
    c().com1bis30.Click();
    opens(30, wide);
    c().kanalrechts[31].Value = true;
    EXPECT_EQ(drawings(), 0);
    EXPECT_FALSE(c().aufschub);
}

TEST_F(TrackRowsTest, changesSidesOfACalculation) {
    c().kanalrechtsb[2].Value = true;
    EXPECT_NE(archive.bspurrechts[2].number(), 0);
    EXPECT_FALSE(c().kanallinksb[2].Value);
    EXPECT_EQ(drawings(), 1);
}

// ---- popups ----

TEST_F(TrackRowsTest, opensTheTracksPopupBesideItsRow) {
    opens(60, wide);
    names(4, "Vorlauf", std::string("°C"_w));
    shows(4, colour::green);
    struct Row {
        int row;
        bool visible;
        int left, top;
    };
    for (const Row& row : {Row{4, true, 635, 80}, Row{5, false, 670, 100}, Row{30, false, 670, 600},
                           Row{31, false, 1005, 30}, Row{60, true, 970, 610}}) {
        if (row.visible) shows(row.row, colour::green);
        c().Commandkanal[static_cast<std::size_t>(row.row)].Click();
        EXPECT_TRUE(c().pickanal.Visible);
        EXPECT_EQ(c().pickanal.Left.get(), row.left);
        EXPECT_EQ(c().pickanal.Top.get(), row.top);
    }
    c().Commandkanal[4].Click();
    EXPECT_EQ(c().pickanalfarbe.BackColor.get(), colour::green);
    EXPECT_EQ(c().txnam.Text.get(), "Vorlauf");
    EXPECT_EQ(c().txeinh.Text.get(), "°C"_w);
}

TEST_F(TrackRowsTest, switchesATrackOnWithItsNewName) {
    c().Commandkanal[7].Click();
    c().txnam.Text = "Kessel";
    c().txeinh.Text = "kW";
    c().comkanalein.Click();
    EXPECT_NE(archive.spursichtbar[7].number(), 0);
    EXPECT_EQ(c().txkanal[7].Caption.get(), "07: Kessel (kW)");
    EXPECT_FALSE(c().pickanal.Visible);
    EXPECT_EQ(drawings(), 1);
}

TEST_F(TrackRowsTest, switchesATrackOffAndHidesItsFigures) {
    shows(7);
    evaluation->neuzeichnen();
    EXPECT_TRUE(c().schnittkanal[7].Visible);
    screen.forget();
    c().Commandkanal[7].Click();
    c().comkanalaus.Click();
    EXPECT_EQ(archive.spursichtbar[7].number(), 0);
    EXPECT_FALSE(c().schnittkanal[7].Visible);
    EXPECT_EQ(c().comkanalaus.Caption.get(), "NEIN");
    EXPECT_EQ(drawings(), 1);
}

TEST_F(TrackRowsTest, takesANameAtTheClosingWithoutARedraw) {
    c().Commandkanal[7].Click();
    c().txnam.Text = "Pufferspeicher";
    c().closepickanal.Click();
    EXPECT_EQ(archive.spurnamen[7].text(), "Pufferspeicher");
    EXPECT_EQ(drawings(), 0);
}

TEST_F(TrackRowsTest, keepsTheTagOfANameThatStays) {
    archive.spureinheiten[7] = Variant();
    c().Commandkanal[7].Click();
    c().closepickanal.Click();
    EXPECT_TRUE(archive.spureinheiten[7].empty());
}

TEST_F(TrackRowsTest, choosesAColour) {
    shows(7, colour::red);
    c().Commandkanal[7].Click();
    dialogs.expect_colour(colour::red, colour::blue);
    c().comkanalfarbe.Click();
    EXPECT_EQ(archive.spurfarben[7].number(), static_cast<double>(colour::blue));
    EXPECT_EQ(c().pickanalfarbe.BackColor.get(), colour::blue);
    EXPECT_EQ(drawings(), 1);
}

TEST_F(TrackRowsTest, changesNothingWhenTheColourIsCancelled) {
    shows(7, colour::red);
    c().Commandkanal[7].Click();
    dialogs.expect_colour(colour::red, failure(RunTimeError::dialog_cancelled));
    c().comkanalfarbe.Click();
    EXPECT_EQ(archive.spurfarben[7].number(), static_cast<double>(colour::red));
    EXPECT_EQ(drawings(), 0);
}

TEST_F(TrackRowsTest, choosesACalculationInAPopupOfItsOwn) {
    c().Commandkanalb[2].Click();
    EXPECT_TRUE(c().pickanalb.Visible);
    c().comkanaleinb.Click();
    EXPECT_NE(archive.bspursichtbar[2].number(), 0);
    EXPECT_FALSE(c().pickanalb.Visible);
    EXPECT_EQ(drawings(), 1);
    c().Commandkanalb[2].Click();
    dialogs.expect_colour(static_cast<Colour>(archive.bspurfarben[2].number()), colour::green);
    c().comkanalfarbeb.Click();
    EXPECT_EQ(archive.bspurfarben[2].number(), static_cast<double>(colour::green));
    c().comkanalausb.Click();
    EXPECT_EQ(archive.bspursichtbar[2].number(), 0);
    c().Commandkanalb[0].Click();
    EXPECT_EQ(c().pickanalb.Top.get(), 630);
    c().closepickanalb.Click();
    EXPECT_FALSE(c().pickanalb.Visible);
}

TEST_F(TrackRowsTest, switchesOnTheCalculationThatTheSharedRowShows) {
    opens(60, narrow);
    c().com1bis30.Click();
    c().Commandkanalb[0].Click();
    c().comkanaleinb.Click();
    EXPECT_EQ(archive.bspursichtbar[0].number(), 0);
    EXPECT_NE(archive.bspursichtbar[1].number(), 0);
    c().kanalrechtsb[0].Value = true;
    EXPECT_EQ(archive.bspurrechts[0].number(), 0);
    EXPECT_NE(archive.bspurrechts[1].number(), 0);
}

TEST_F(TrackRowsTest, opensNoPopupForACalculationWithoutARow) {
    c().Commandkanalb[1].Click();
    EXPECT_FALSE(c().pickanalb.Visible);
}

TEST_F(TrackRowsTest, dragsAPopupByItsGrip) {
    c().Commandkanal[4].Click();
    c().pickanal.MouseDown(10, 20);
    c().pickanal.MouseMove(true, 15, 18);
    EXPECT_EQ(c().pickanal.Left.get(), 675);
    EXPECT_EQ(c().pickanal.Top.get(), 78);
    c().pickanal.MouseMove(false, 100, 100);
    EXPECT_EQ(c().pickanal.Left.get(), 675);
}

TEST_F(TrackRowsTest, closesItsPopupsWithTheArchive) {
    c().Commandkanal[4].Click();
    f.geladen = false;
    evaluation->archive_closed();
    EXPECT_FALSE(c().pickanal.Visible);
}

} // namespace velorn::test
