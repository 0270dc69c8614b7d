#include "evaluation/evaluation_rig.h"
#include "runtime/number_picture.h"
#include "runtime/text.h"

#include <gmock/gmock.h>

namespace velorn::test {

using testing::Contains;
using testing::IsEmpty;
using testing::Not;

struct ChartPrintTest : EvaluationRig {
    static constexpr CalendarDay day{15, 3, 2008};

    ChartPrintTest() {
        module1.projektname = "Gelmar";
        shows(3, colour::blue);
        archive.spurnamen[3] = "Leistung";
        archive.spureinheiten[3] = "kW";
        clear(day, 1, 3);
    }
    std::vector<std::string> page() {
        c().plott.Click();
        return printer.drawn.empty() ? std::vector<std::string>() : printer.drawn.back().strokes;
    }
    // A text on the page, at the chart's own units.
    static std::string text_at(int x, int y, const std::string& text) {
        return "text " + std::to_string(static_cast<int>(round_to_even(printer_x(x)))) + ' ' +
               std::to_string(static_cast<int>(round_to_even(printer_y(y)))) + " '" + text + "'  8 #000000";
    }
};

TEST_F(ChartPrintTest, drawsTheChartWhereThePrinterCounts) {
    const std::vector<std::string> strokes = page();
    EXPECT_THAT(strokes, Contains("line 1740 7500 1740 1618 #000000")); // the frame
    EXPECT_THAT(strokes,
                Contains(testing::StartsWith("text 2912 7712 'Tagesgang (1/4h-Werte)  Sa  15.03.2008'")));
    EXPECT_THAT(strokes, Contains("text 1740 1029 'Gelmar1/4h-Daten-Auswertung:   '  11 bold #000000"));
    EXPECT_THAT(strokes, Not(Contains(testing::StartsWith("clear"))));
    EXPECT_FALSE(c().druckmodus);
}

TEST_F(ChartPrintTest, headsItsLegend) {
    const std::vector<std::string> strokes = page();
    EXPECT_THAT(strokes, Contains(text_at(45, -50, "Farbe    Wert")));
    EXPECT_THAT(strokes, Contains(text_at(189, -50, "y-Skala: li  re")));
    EXPECT_THAT(strokes, Contains(text_at(284, -50, std::string("ø                Summe"_w))));
}

TEST_F(ChartPrintTest, tellsATracksNameUnitSideMeanAndSum) {
    for (int quarter = 1; quarter <= 4; ++quarter) set(day, quarter, 3, 42);
    shows(5);
    archive.spurrechts[5] = true;
    const std::vector<std::string> strokes = page();
    EXPECT_THAT(strokes, Contains(text_at(82, -60, "Leistung")));
    EXPECT_THAT(strokes, Contains(text_at(165, -60, "(kW)")));
    EXPECT_THAT(strokes, Contains(text_at(226, -60, "x")));
    EXPECT_THAT(strokes, Contains(text_at(270, -60, "42,00")));
    EXPECT_THAT(strokes, Contains(text_at(350, -60, "42,0")));
    EXPECT_THAT(strokes, Contains(text_at(240, -80, "x")));
    // Its swatch: two lines of six strokes each.
    EXPECT_THAT(strokes, Contains("line 1238 8771 1572 8771 #0000ff"));
    EXPECT_THAT(strokes, Contains("line 1238 8759 1572 8759 #0000ff"));
}

TEST_F(ChartPrintTest, placesNumbersByTheirSize) {
    struct Row {
        float value; // of every quarter-hour
        int hours;
        int mean_x, sum_x;
    };
    for (const Row& row :
         {Row{9, 1, 276, 356}, Row{10, 1, 270, 350}, Row{99, 2, 270, 344}, Row{100, 10, 264, 338},
          Row{1000, 10, 258, 332}, Row{10000, 10, 258, 326}, Row{100000, 10, 258, 320}}) {
        clear(day, 1, 3);
        for (int quarter = 1; quarter <= 4 * row.hours; ++quarter) set(day, quarter, 3, row.value);
        const std::vector<std::string> strokes = page();
        const std::string number = std::to_string(static_cast<int>(row.value));
        const std::string sum = std::to_string(static_cast<int>(row.value) * row.hours);
        EXPECT_THAT(strokes, Contains(text_at(row.mean_x, -60, number + ",00")));
        EXPECT_THAT(strokes, Contains(text_at(row.sum_x, -60, sum + ",0")));
    }
}

TEST_F(ChartPrintTest, printsNoSumOfDegrees) {
    archive.spureinheiten[3] = std::string("°C"_w);
    for (int quarter = 1; quarter <= 4; ++quarter) set(day, quarter, 3, 42);
    const std::vector<std::string> strokes = page();
    EXPECT_THAT(strokes, Contains(text_at(270, -60, "42,00")));
    EXPECT_THAT(strokes, Not(Contains(text_at(350, -60, "42,0"))));
}

TEST_F(ChartPrintTest, listsTheCalculationsBehindTheTracks) {
    archive.bname1 = "Netto";
    for (int track = 0; track < 5; ++track) shows_calculated(track);
    const std::vector<std::string> strokes = page();
    EXPECT_THAT(strokes, Contains(text_at(82, -80, "Netto")));
    EXPECT_THAT(strokes, Contains(text_at(82, -120, "Pel Einspeisung")));
    EXPECT_THAT(strokes, Contains(text_at(82, -140, "Pel Bezug")));
    EXPECT_THAT(strokes, Not(Contains(text_at(82, -160, "analyt. Jahresdauerl."))));
}

TEST_F(ChartPrintTest, listsTheAnalyticCurveAmongAYearsDurationCurves) {
    shows_calculated(4);
    archive.ansicht = std::int16_t{4};
    c().dauermodus = true;
    EXPECT_THAT(page(), Contains(text_at(82, -80, "analyt. Jahresdauerl.")));
}

TEST_F(ChartPrintTest, drawsTheScreenAnewBehindIt) {
    screen.forget();
    (void)page();
    EXPECT_EQ(screen.strokes().front(), "clear #ffffff");
    EXPECT_THAT(screen.strokes(), Contains("line 80 510 80 10 #000000"));
}

TEST_F(ChartPrintTest, leavesThePageEmptyWhereTheWindowIsOpenedAnewBehindTheDialog) {
    printer.behind_dialog = [this] { ++f.opening; };
    screen.forget();
    EXPECT_THAT(page(), IsEmpty());
    EXPECT_THAT(screen.strokes(), IsEmpty());
    EXPECT_FALSE(c().druckmodus);
}

TEST_F(ChartPrintTest, endsWithoutAWordWhereNothingIsPrinted) {
    for (const RunTimeError error : {RunTimeError::dialog_cancelled, RunTimeError::device_io}) {
        printer.fails_with = error;
        EXPECT_THAT(page(), IsEmpty());
        EXPECT_FALSE(c().druckmodus);
    }
}

} // namespace velorn::test
