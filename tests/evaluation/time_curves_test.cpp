#include "evaluation/evaluation_rig.h"
#include "runtime/text.h"

#include <algorithm>
#include <gmock/gmock.h>

namespace velorn::test {

using testing::ElementsAre;
using testing::IsEmpty;

struct TimeCurvesTest : EvaluationRig {
    static constexpr CalendarDay day{15, 3, 2008};

    // One track on an axis from 0 to 100: five rows of the plot for each unit.
    TimeCurvesTest() {
        archive.ylimin = 0.0;
        archive.ylimax = 100.0;
        archive.ylischritt = 10.0;
        archive.yremax = 200.0;
        archive.yreschritt = 20.0;
        shows(1);
        selects(15, 3, 2008);
        clear(day, 40, 1);
    }
    void view(int ansicht) { archive.ansicht = static_cast<std::int16_t>(ansicht); }
    std::vector<std::string> curve() { return lines_of("#ff0000"); }
    std::string mean() { return c().schnittkanal[1].Caption.get(); }
    std::string sum() { return c().summkanal[1].Caption.get(); }
    std::string counters() { return c().viertist.Caption.get() + ' ' + c().viertkann.Caption.get(); }
    void set_day(CalendarDay at, float value) {
        for (int quarter = 1; quarter <= 96; ++quarter) set(at, quarter, 1, value);
    }
};

TEST_F(TimeCurvesTest, drawsADayOfQuarters) {
    set(day, 1, 1, 10);
    set(day, 2, 1, 20);
    set(day, 3, 1, 20);
    EXPECT_THAT(curve(), ElementsAre("line 85 460 85 460 #ff0000", "line 85 460 90 410 #ff0000",
                                     "line 90 410 95 410 #ff0000"));
    EXPECT_EQ(mean(), "16,67");
    EXPECT_EQ(sum(), "12,5");
    EXPECT_EQ(counters(), "3 von 96");
    EXPECT_FLOAT_EQ(evaluation->curves.spurschnitt[1], 50.0F / 3);
    EXPECT_FLOAT_EQ(evaluation->curves.spursumme[1], 12.5F);
}

TEST_F(TimeCurvesTest, drawsFrameAxisTitleGridAndZeroLineBeforeTheCurve) {
    set(day, 1, 1, 10);
    const std::vector<std::string> all = drawing();
    const auto place = [&all](const std::string& words) {
        return std::ranges::find_if(all, [&](const std::string& s) { return s.starts_with(words); }) -
               all.begin();
    };
    EXPECT_EQ(place("clear #ffffff"), 0);
    EXPECT_EQ(place("line 80 510 80 10 #000000"), 1);
    EXPECT_EQ(place("text 77 513 '0'"), 2);
    EXPECT_LT(place("text 551 513 '24'"), place("text 150 528 'Tagesgang"));
    EXPECT_LT(place("text 150 528 'Tagesgang"), place("line 80 60 81 60 #808080")); // at 90
    EXPECT_LT(place("text 50 503 '0,00'"), place("line 80 510 560 510 #000000"));
    EXPECT_EQ(place("line 80 510 560 510 #000000"), std::ssize(all) - 2);
    EXPECT_EQ(place("line 85 460 85 460 #ff0000"), std::ssize(all) - 1);
}

TEST_F(TimeCurvesTest, tellsOfNothingWhereThereIsNothing) {
    set(day, 1, 1, 10);
    (void)drawing();
    set(day, 1, 1, -997);
    EXPECT_THAT(curve(), IsEmpty());
    EXPECT_EQ(mean(), "---");
    EXPECT_EQ(sum(), "---");
    EXPECT_EQ(counters(), "0 von 96");
    EXPECT_EQ(evaluation->curves.spurschnitt[1], 10); // kept from before
    EXPECT_EQ(evaluation->curves.spursumme[1], 2.5);
}

TEST_F(TimeCurvesTest, drawsADotBetweenTwoGaps) {
    set(day, 50, 1, 40);
    EXPECT_THAT(curve(), ElementsAre("line 330 310 330 310 #ff0000"));
}

TEST_F(TimeCurvesTest, breaksAtEveryKindOfGap) {
    for (const float gap : {-999.0F, -998.0F, -997.0F, -999.01F, -996.99F}) {
        set(day, 1, 1, 10);
        set(day, 2, 1, gap);
        set(day, 3, 1, 10);
        // The two limits lie on either side of their nearest floats.
        const std::size_t lines = gap == -999.01F || gap == -996.99F ? 3 : 2;
        EXPECT_EQ(curve().size(), lines) << gap;
    }
}

TEST_F(TimeCurvesTest, takesMinusAThousandForAValue) {
    set(day, 1, 1, -1000);
    set(day, 2, 1, 1000);
    EXPECT_THAT(curve(), ElementsAre("line 85 511 85 511 #ff0000", "line 85 511 90 9 #ff0000"));
    EXPECT_EQ(mean(), "0,00");
    EXPECT_EQ(counters(), "2 von 96");
}

TEST_F(TimeCurvesTest, runsOnePixelBeyondTheAxis) {
    set(day, 1, 1, 150);
    EXPECT_THAT(curve(), ElementsAre("line 85 9 85 9 #ff0000")); // row 501
}

TEST_F(TimeCurvesTest, usesTheRightAxis) {
    archive.spurrechts[1] = true;
    set(day, 1, 1, 100); // half of 200
    EXPECT_THAT(curve(), ElementsAre("line 85 260 85 260 #ff0000"));
}

TEST_F(TimeCurvesTest, roundsHalfToEven) {
    archive.ylimax = 500.0;
    set(day, 1, 1, 10.5F);
    set(day, 96, 1, 11.5F);
    EXPECT_THAT(curve(), ElementsAre("line 85 500 85 500 #ff0000", "line 560 498 560 498 #ff0000"));
}

// ---- week ----

TEST_F(TimeCurvesTest, takesTwoHoursOfAWeekTogether) {
    view(2);
    set(day, 1, 1, 10);
    set(day, 8, 1, 30);
    set(day, 9, 1, 60);
    EXPECT_THAT(curve(), ElementsAre("line 86 410 86 410 #ff0000", "line 86 410 92 210 #ff0000"));
    EXPECT_EQ(mean(), "33,33");
    EXPECT_EQ(counters(), "3 von 672");
}

TEST_F(TimeCurvesTest, breaksAWeekAtASlotWithoutValues) {
    view(2);
    set(day, 8, 1, 10);
    set(day, 24, 1, 10);
    EXPECT_THAT(curve(), ElementsAre("line 86 460 86 460 #ff0000", "line 98 460 98 460 #ff0000"));
}

TEST_F(TimeCurvesTest, drawsAllQuartersOfAWeek) {
    view(2);
    c().viertelmodus = 1;
    set(day, 1, 1, 10);
    set({21, 3, 2008}, 96, 1, 20);
    EXPECT_THAT(curve(), ElementsAre("line 81 460 81 460 #ff0000", "line 584 410 584 410 #ff0000"));
}

// ---- month ----

TEST_F(TimeCurvesTest, takesFourHoursOfAMonthTogetherAndCrossesIntoTheNext) {
    view(3);
    set(day, 1, 1, 10);
    set({14, 4, 2008}, 96, 1, 20); // the 31st day from here
    EXPECT_THAT(curve(), ElementsAre("line 83 460 83 460 #ff0000", "line 576 410 576 410 #ff0000"));
    EXPECT_EQ(counters(), "2 von 2976");
}

TEST_F(TimeCurvesTest, givesALeapFebruaryItsDays) {
    view(3);
    selects(1, 2, 2008);
    (void)drawing();
    EXPECT_EQ(evaluation->curves.drawn().days.size(), 29U);
    EXPECT_EQ(plotbreite_of(View::month, 29), 464);
    EXPECT_EQ(c().viertkann.Caption.get(), "von 2784");
}

// ---- year ----

TEST_F(TimeCurvesTest, takesTheDaysOfAYearTogether) {
    view(4);
    clear(day, 366, 1);
    set_day(day, 10);
    set_day({16, 3, 2008}, 30);
    EXPECT_THAT(curve(), ElementsAre("line 81 460 81 460 #ff0000", "line 81 460 82 360 #ff0000"));
    EXPECT_EQ(mean(), "20,00");
    EXPECT_EQ(sum(), "960,0");
    EXPECT_EQ(counters(), "192 von 35040");
}

TEST_F(TimeCurvesTest, countsTheLeapDayThatLiesAhead) {
    struct Row {
        int month, year;
        std::size_t days;
    };
    opens(30, narrow, 2005);
    view(4);
    for (const Row& row : {Row{3, 2007, 366}, Row{2, 2007, 365}, Row{1, 2008, 366}, Row{2, 2008, 366},
                           Row{3, 2008, 365}, Row{12, 2011, 366}}) {
        selects(1, row.month, row.year);
        (void)drawing();
        EXPECT_EQ(evaluation->curves.drawn().days.size(), row.days) << row.month << '.' << row.year;
    }
}

TEST_F(TimeCurvesTest, drawsAllQuartersOfAYearWithinItsWidth) {
    view(4);
    c().viertelmodus = 1;
    clear(day, 366, 1);
    set(day, 1, 1, 10);
    set(day, 2, 1, 20);
    EXPECT_THAT(curve(), ElementsAre("line 80 460 80 460 #ff0000", "line 80 460 80 410 #ff0000"));
}

// The last day comes again and again.
TEST_F(TimeCurvesTest, staysAtTheArchivesLastDay) {
    view(2);
    selects(30, 12, 2017);
    clear({30, 12, 2017}, 2, 1);
    set_day({31, 12, 2017}, 10);
    (void)drawing();
    EXPECT_EQ(counters(), "576 von 672");
}

TEST_F(TimeCurvesTest, placesEveryStepOfEveryView) {
    struct Row {
        View view;
        bool quarters;
        int days;
        std::size_t steps;
        int first, last;
    };
    for (const Row& row :
         {Row{View::day, true, 1, 96, 5, 480}, Row{View::week, false, 7, 84, 6, 504},
          Row{View::week, true, 7, 672, 1, 504}, Row{View::month, false, 31, 186, 3, 496},
          Row{View::month, false, 28, 168, 3, 448}, Row{View::month, true, 30, 2880, 0, 480},
          Row{View::year, false, 365, 365, 1, 365}, Row{View::year, false, 366, 366, 1, 366},
          Row{View::year, true, 365, 35040, 0, 365}, Row{View::year, true, 366, 35136, 0, 366}}) {
        const std::vector<PlotStep> steps = plot_steps(row.view, row.quarters, row.days);
        ASSERT_EQ(steps.size(), row.steps);
        EXPECT_EQ(steps.front().x, row.first);
        EXPECT_EQ(steps.back().x, row.last);
    }
}

// ---- rows ----

TEST_F(TimeCurvesTest, showsNoSumOfDegrees) {
    archive.spureinheiten[1] = std::string("°C"_w);
    set(day, 1, 1, 10);
    (void)drawing();
    EXPECT_TRUE(c().schnittkanal[1].Visible);
    EXPECT_FALSE(c().summkanal[1].Visible);
    archive.spureinheiten[1] = "kW";
    (void)drawing();
    EXPECT_TRUE(c().summkanal[1].Visible);
}

TEST_F(TimeCurvesTest, showsTheCountersOfTheTrackDrawnLast) {
    shows(2, colour::blue);
    clear(day, 1, 2);
    set(day, 1, 2, 5);
    (void)drawing();
    EXPECT_EQ(counters(), "1 von 96");
    EXPECT_EQ(c().viertist.ForeColor.get(), colour::blue);
    EXPECT_EQ(c().viertkann.ForeColor.get(), 0xAAAAAAU);
}

TEST_F(TimeCurvesTest, fillsTheRowsOfTheShownBlockOnly) {
    opens(60, narrow);
    shows(31);
    evaluation->neuzeichnen();
    EXPECT_FALSE(c().schnittkanal[1].Visible);
    c().com1bis30.Click();
    EXPECT_TRUE(c().schnittkanal[1].Visible);
}

TEST_F(TimeCurvesTest, drawsCalculatedTracksBehindTheOthers) {
    shows_calculated(0);
    shows_calculated(3);
    archive.bspurfarben[0] = static_cast<std::int32_t>(colour::blue);
    archive.bspurfarben[3] = static_cast<std::int32_t>(colour::green);
    for (int quarter = 1; quarter <= 96; ++quarter) {
        for (int track = 0; track < 4; ++track) set_calculated(day, quarter, track, -997);
    }
    set(day, 1, 1, 10);
    set_calculated(day, 1, 0, 20);
    set_calculated(day, 1, 3, 30);
    const std::vector<std::string> all = drawing();
    EXPECT_THAT(std::vector<std::string>(all.end() - 3, all.end()),
                ElementsAre("line 85 460 85 460 #ff0000", "line 85 410 85 410 #0000ff",
                            "line 85 360 85 360 #00ff00"));
    EXPECT_EQ(c().schnittkanalb[0].Caption.get(), "20,00");
    EXPECT_EQ(c().summkanalb[3].Caption.get(), "7,5");
    EXPECT_FLOAT_EQ(evaluation->curves.bschnitt[3], 30);
    EXPECT_FLOAT_EQ(evaluation->curves.bsumme[0], 5);
    EXPECT_EQ(counters(), "1 von 96"); // of the tracks alone
    EXPECT_EQ(c().viertist.ForeColor.get(), colour::red);
}

TEST_F(TimeCurvesTest, leavesTheAnalyticCurveOut) {
    shows_calculated(4);
    (void)drawing();
    EXPECT_FALSE(c().schnittkanalb[4].Visible);
}

TEST_F(TimeCurvesTest, givesTheSharedRowToTheCalculationOfItsBlock) {
    opens(60, narrow);
    shows_calculated(0);
    shows_calculated(1);
    set_calculated({15, 3, 2008}, 1, 0, 96);
    set_calculated({15, 3, 2008}, 1, 1, 192);
    (void)drawing();
    EXPECT_EQ(c().schnittkanalb[0].Caption.get(), "1,00");
    c().com1bis30.Click();
    EXPECT_EQ(c().schnittkanalb[0].Caption.get(), "2,00");
    EXPECT_FALSE(c().schnittkanalb[1].Visible);
}

// ---- bad input ----

TEST_F(TimeCurvesTest, survivesAxesThatLeadNowhere) {
    set(day, 1, 1, 10);
    for (const double nowhere : {0.0, -1.0, 1e300, 1e-300}) {
        archive.ylischritt = nowhere;
        archive.yremax = nowhere;
        archive.ylimin = nowhere;
        archive.ylimax = nowhere;
        EXPECT_EQ(curve().size(), 1U);
        archive.ylimax = 100.0;
        EXPECT_EQ(curve().size(), 1U);
    }
}

TEST_F(TimeCurvesTest, showsADayWhereTheViewMakesNoSense) {
    for (const double nonsense : {0.0, 5.0, 2.5, -1.0}) {
        archive.ansicht = nonsense;
        (void)drawing();
        EXPECT_EQ(c().viertkann.Caption.get(), "von 96");
    }
}

TEST_F(TimeCurvesTest, showsAnEmptyChartWithoutAnArchive) {
    archive.close();
    EXPECT_THAT(drawing(), ElementsAre("clear #ffffff"));
}

// ---- reading ----

TEST_F(TimeCurvesTest, thePointerShowsThatAYearIsReadForTheFirstTime) {
    std::vector<bool> busy;
    f.form.on_change = [&] { busy.push_back(f.busy); };
    selects(15, 3, startjahr + 1);
    drawing();
    EXPECT_EQ(busy, (std::vector{true, false}));
    drawing();
    EXPECT_EQ(busy.size(), 2U);
    f.form.on_change = nullptr;
}

} // namespace velorn::test
