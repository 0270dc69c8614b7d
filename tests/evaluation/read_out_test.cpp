#include "evaluation/evaluation_rig.h"

namespace velorn::test {

struct ReadOutTest : EvaluationRig {
    static constexpr CalendarDay day{15, 3, 2008};

    ReadOutTest() { shows(1); }
    void points_at(double x, double y = 100) { c().Picture1.MouseMove(x, y); }
    std::string moment() { return c().Label54.Caption.get(); }
    std::string read(int row) { return c().schnittkanal[static_cast<std::size_t>(row)].Caption.get(); }
};

TEST_F(ReadOutTest, tellsWhereThePointerIs) {
    points_at(123, 45);
    EXPECT_EQ(c().Label32.Caption.get(), "123");
    EXPECT_EQ(f.Label33.Caption.get(), "45");
    c().Picture2.pointer(700);
    EXPECT_EQ(c().Label35.Caption.get(), "700");
}

TEST_F(ReadOutTest, readsTheQuarterUnderThePointer) {
    struct Row {
        double x;
        int quarter;
        const char* moment;
    };
    for (const Row& row :
         {Row{80, 1, " 0  :07"}, Row{85, 1, " 0  :07"}, Row{90, 2, " 0  :22"}, Row{95, 3, " 0  :37"},
          Row{100, 4, " 0  :52"}, Row{105, 5, " 1  :07"}, Row{559, 96, " 23  :52"}}) {
        set(day, row.quarter, 1, 12.345F);
        points_at(row.x);
        EXPECT_EQ(moment(), row.moment) << row.x;
        EXPECT_EQ(c().Label55.Caption.get(), row.moment);
        EXPECT_EQ(read(1), "12,35") << row.x;
        set(day, row.quarter, 1, 0);
    }
}

TEST_F(ReadOutTest, staysSilentOutsideThePlot) {
    for (const double outside : {79.0, 560.0, 600.0}) {
        points_at(outside);
        EXPECT_FALSE(c().maustage);
        EXPECT_FALSE(c().Label54.Visible);
    }
}

TEST_F(ReadOutTest, showsEveryTrackOfTheListAndItsGapsAsTheyAre) {
    set(day, 10, 2, -999);
    set(day, 10, 3, 7);
    set_calculated(day, 10, 2, 4.5F);
    points_at(130);
    EXPECT_EQ(read(2), "-999,00");
    EXPECT_EQ(read(3), "7,00");
    EXPECT_TRUE(c().schnittkanal[3].Visible);
    EXPECT_EQ(c().schnittkanalb[2].Caption.get(), "4,50");
}

TEST_F(ReadOutTest, hidesTheSumsUntilThePointerLeaves) {
    evaluation->neuzeichnen();
    EXPECT_TRUE(c().summkanal[1].Visible);
    points_at(100);
    EXPECT_TRUE(c().maustage);
    EXPECT_FALSE(c().summkanal[1].Visible);
    c().Picture2.pointer(10);
    EXPECT_FALSE(c().maustage);
    EXPECT_FALSE(c().Label54.Visible);
    EXPECT_FALSE(c().Label55.Visible);
    EXPECT_TRUE(c().summkanal[1].Visible);
    EXPECT_FALSE(c().schnittkanal[3].Visible);
}

TEST_F(ReadOutTest, readsTheDayAgainThatIsDrawnUnderThePointer) {
    set({16, 3, startjahr}, 10, 2, 8);
    points_at(130);
    selects(16, 3, startjahr);
    evaluation->neuzeichnen();
    EXPECT_EQ(read(2), "8,00");
    EXPECT_FALSE(c().summkanal[1].Visible);
    archive.ansicht = std::int16_t{2};
    evaluation->neuzeichnen();
    EXPECT_FALSE(c().maustage);
    EXPECT_FALSE(c().Label54.Visible);
    EXPECT_TRUE(c().summkanal[1].Visible);
}

// It is drawn among duration curves only.
TEST_F(ReadOutTest, leavesNoValueOfTheAnalyticCurveBehind) {
    shows_calculated(4);
    points_at(100);
    EXPECT_TRUE(c().schnittkanalb[4].Visible);
    c().Picture2.pointer(10);
    EXPECT_FALSE(c().schnittkanalb[4].Visible);
}

TEST_F(ReadOutTest, isForTheDaysOrderOfTimeOnly) {
    c().dauermodus = true;
    points_at(100);
    c().dauermodus = false;
    c().schnittmodus = true;
    points_at(100);
    EXPECT_FALSE(c().maustage);
    EXPECT_FALSE(c().ablesung.Visible);
}

// ---- the box of the other views ----

TEST_F(ReadOutTest, showsDateTimeAndValuesOfAWeek) {
    archive.ansicht = std::int16_t{2};
    archive.spurnamen[1] = "Leistung";
    archive.spureinheiten[1] = "kW";
    set(day, 8, 1, 16);
    evaluation->neuzeichnen();
    points_at(83);
    EXPECT_FALSE(c().maustage);
    EXPECT_TRUE(c().ablesung.Visible);
    EXPECT_EQ(c().ablesung.Left.get(), 86);
    EXPECT_EQ(c().ablesung.Text.get(), "Sa  15.03.2008  00:00 - 02:00\nLeistung\t2,00\tkW");
    c().Picture2.pointer(10);
    EXPECT_FALSE(c().ablesung.Visible);
}

TEST_F(ReadOutTest, showsADayOfAYearAndItsGap) {
    archive.ansicht = std::int16_t{4};
    archive.spurnamen[1] = "Leistung";
    archive.spureinheiten[1] = "kW";
    clear({16, 3, 2008}, 1, 1);
    evaluation->neuzeichnen();
    points_at(82);
    EXPECT_EQ(c().ablesung.Text.get(), "So  16.03.2008\nLeistung\t---\tkW");
}

TEST_F(ReadOutTest, tellsOfTheChartThatIsDrawnAnewUnderThePointer) {
    archive.ansicht = std::int16_t{2};
    evaluation->neuzeichnen();
    points_at(83);
    c().pluswoche.Click();
    EXPECT_TRUE(c().ablesung.Text.get().starts_with("Sa  22.03.2008  00:00 - 02:00\n"));
    c().comtag.Click();
    EXPECT_FALSE(c().ablesung.Visible);
}

TEST_F(ReadOutTest, tellsNothingOfTheTimesAmongDurationCurves) {
    archive.ansicht = std::int16_t{2};
    evaluation->neuzeichnen();
    points_at(83);
    c().comdauer.Click();
    EXPECT_FALSE(c().ablesung.Visible);
}

// Its days lie outside the other one's years.
TEST_F(ReadOutTest, forgetsTheChartOfTheArchiveBefore) {
    archive.ansicht = std::int16_t{2};
    evaluation->neuzeichnen();
    archive.startjahr = std::int16_t{2020};
    c().Picture1.canvas = nullptr;
    evaluation->archive_opened();
    points_at(83);
    EXPECT_FALSE(c().ablesung.Visible);
}

TEST_F(ReadOutTest, showsAQuarterOfAMonth) {
    archive.ansicht = std::int16_t{3};
    c().viertelmodus = 1;
    archive.spurnamen[1] = "Leistung";
    archive.spureinheiten[1] = "kW";
    evaluation->neuzeichnen();
    points_at(80 + 16.5);
    EXPECT_TRUE(c().ablesung.Text.get().starts_with("So  16.03.2008  00:45 - 01:00\n"));
    points_at(80 + 31 * 16 + 1);
    EXPECT_FALSE(c().ablesung.Visible);
    points_at(79);
    EXPECT_FALSE(c().ablesung.Visible);
}

TEST_F(ReadOutTest, namesCalculationsAndCountsWhatFindsNoRoom) {
    archive.ansicht = std::int16_t{2};
    archive.bname1 = "Netto";
    for (int track = 1; track <= 20; ++track) shows(track);
    shows_calculated(0);
    evaluation->neuzeichnen();
    points_at(83);
    const std::string text = c().ablesung.Text.get();
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 17);
    EXPECT_TRUE(text.ends_with("\nund 5 weitere"));
    for (int track = 2; track <= 20; ++track) archive.spursichtbar[static_cast<std::size_t>(track)] = false;
    points_at(83);
    EXPECT_NE(c().ablesung.Text.get().find("\nNetto\t0,00\t"), std::string::npos);
}

} // namespace velorn::test
