#include "evaluation/chart_axes.h"
#include "evaluation/period.h"
#include "runtime/text.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velorn::test {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

struct Axes : testing::Test {
    RecorderCanvas canvas;
    ChartSurface surface;

    Axes() { surface.draw_on(&canvas, false); }

    // Upright lines over the whole plot, as their x from its left edge.
    std::vector<int> solid() {
        std::vector<int> found;
        for (int x = 0; x <= 600; ++x) {
            const std::string at = std::to_string(80 + x);
            const std::string line = "line " + at + " 510 " + at + " 10 #000000";
            if (std::ranges::count(canvas.strokes(), line) > 0) found.push_back(x);
        }
        return found;
    }
    std::vector<int> dotted() {
        std::vector<int> found;
        for (int x = 0; x <= 600; ++x) {
            const std::string at = std::to_string(80 + x);
            const std::string first = "line " + at + " 510 " + at + " 509 #808080";
            const std::string last = "line " + at + " 10 " + at + " 9 #808080";
            if (std::ranges::count(canvas.strokes(), first) > 0 &&
                std::ranges::count(canvas.strokes(), last) > 0)
                found.push_back(x);
        }
        return found;
    }
    // Such as "77 37 '0'", in the chart's own units.
    std::vector<std::string> labels() {
        std::vector<std::string> found;
        for (const std::string& stroke : canvas.strokes()) {
            if (!stroke.starts_with("text ")) continue;
            int x = 0;
            int y = 0;
            (void)std::sscanf(stroke.c_str(), "text %d %d", &x, &y);
            const std::size_t begin = stroke.find('\'');
            found.push_back(std::to_string(x) + ' ' + std::to_string(550 - y) + ' ' +
                            stroke.substr(begin, stroke.rfind('\'') + 1 - begin));
        }
        return found;
    }
    static std::vector<CalendarDay> days(View view, int day, int month, int year) {
        return days_of_view(view,
                            {static_cast<std::int16_t>(day), static_cast<std::int16_t>(month),
                             static_cast<std::int16_t>(year)},
                            2000);
    }
};

} // namespace

TEST_F(Axes, drawsTheHoursOfADay) {
    draw_day_axis(surface, {3, 1, 2008}, 4);
    EXPECT_THAT(solid(), ElementsAre(0, 120, 240, 360, 480));
    EXPECT_THAT(dotted(), ElementsAre(20, 40, 60, 80, 100, 140, 160, 180, 200, 220, 260, 280, 300, 320, 340,
                                      380, 400, 420, 440, 460));
    EXPECT_THAT(labels(), ElementsAre("77 37 '0'", "194 37 '6'", "311 37 '12'", "431 37 '18'", "551 37 '24'",
                                      "150 22 'Tagesgang (1/4h-Werte)  Do  03.01.2008'"));
}

TEST_F(Axes, drawsTheDaysOfAWeek) {
    draw_week_axis(surface, days(View::week, 29, 2, 2008), 5, false);
    EXPECT_THAT(solid(), ElementsAre(0, 72, 144, 216, 288, 360, 432, 504));
    EXPECT_EQ(dotted().size(), 21U);
    EXPECT_THAT(dotted(), Contains(18));
    EXPECT_THAT(labels(),
                ElementsAre("102 37 'Fr  29.'", "174 37 'Sa  1.'", "246 37 'So  2.'", "318 37 'Mo  3.'",
                            "390 37 'Di  4.'", "462 37 'Mi  5.'", "534 37 'Do  6.'",
                            "150 22 'Wochengang (2h-Werte)  ab  Fr  29.02.2008'"));
}

// 31.12.2009 is the last day of the ten years.
TEST_F(Axes, namesADayThatComesAgainAsItself) {
    draw_week_axis(surface, days(View::week, 30, 12, 2009), 3, false);
    EXPECT_THAT(labels(),
                ElementsAre("102 37 'Mi  30.'", "174 37 'Do  31.'", "246 37 'Do  31.'", "318 37 'Do  31.'",
                            "390 37 'Do  31.'", "462 37 'Do  31.'", "534 37 'Do  31.'",
                            "150 22 'Wochengang (2h-Werte)  ab  Mi  30.12.2009'"));
}

TEST_F(Axes, drawsTheDaysOfAMonth) {
    draw_month_axis(surface, days(View::month, 28, 2, 2007), false);
    EXPECT_THAT(solid(), ElementsAre(0, 448));
    EXPECT_EQ(dotted().size(), 27U);
    EXPECT_THAT(dotted(), Contains(16));
    const std::vector<std::string> texts = labels();
    EXPECT_EQ(texts.front(), "80 37 '28'");
    EXPECT_EQ(texts[1], "99 37 '1'");
    EXPECT_EQ(texts[10], "239 37 '10'");
    EXPECT_EQ(texts[20], "400 37 '20'");
    EXPECT_EQ(texts.back(), "140 22 'Monatsgang (4h-Werte)  ab  28.02.2007'");
}

TEST_F(Axes, drawsTheMonthsOfAYear) {
    draw_year_axis(surface, days(View::year, 1, 1, 2007), false);
    EXPECT_THAT(solid(), ElementsAre(0, 1, 32, 60, 91, 121, 152, 182, 213, 244, 274, 305, 335));
    EXPECT_EQ(dotted().size(), 35U); // no 30th in February
    EXPECT_THAT(labels(), ElementsAre("86 37 'Jan'", "117 37 'Feb'", "145 37 '" + std::string("Mär"_w) + '\'',
                                      "176 37 'Apr'", "206 37 'Mai'", "237 37 'Jun'", "267 37 'Jul'",
                                      "298 37 'Aug'", "329 37 'Sep'", "359 37 'Okt'", "390 37 'Nov'",
                                      "420 37 'Dez'", "110 22 'Jahresgang (Tages-Werte)  ab  01.01.2007'"));
}

TEST_F(Axes, writesAMonthThatStartsLateAtTheLeft) {
    draw_year_axis(surface, days(View::year, 10, 1, 2007), false);
    EXPECT_THAT(solid(), Contains(357)); // 1.1. of the next year
    EXPECT_THAT(labels(), Contains("82 37 'Jan'"));
}

TEST_F(Axes, tellsThatItShowsQuarters) {
    draw_week_axis(surface, days(View::week, 3, 1, 2008), 4, true);
    EXPECT_EQ(labels().back(), "150 22 'Wochengang (1/4h-Werte)  ab  Do  03.01.2008'");
    draw_month_axis(surface, days(View::month, 3, 1, 2008), true);
    EXPECT_EQ(labels().back(), "140 22 'Monatsgang (1/4h-Werte)  ab  03.01.2008'");
    draw_year_axis(surface, days(View::year, 3, 1, 2008), true);
    EXPECT_EQ(labels().back(), "110 22 'Jahresgang (1/4h-Werte)  ab  03.01.2008'");
}

// ---- vertical axes ----

TEST_F(Axes, drawsAGridWithBothScales) {
    draw_y_grid(surface, {100, -10, 10, 30, 3}, 480);
    EXPECT_THAT(labels(),
                ElementsAre("45 502 '90,00'", "580 502 '27,00'", "45 456 '80,00'", "580 456 '24,00'",
                            "45 411 '70,00'", "580 411 '21,00'", "45 365 '60,00'", "580 365 '18,00'",
                            "45 320 '50,00'", "580 320 '15,00'", "45 274 '40,00'", "580 274 '12,00'",
                            "45 229 '30,00'", "585 229 '9,00'", "45 183 '20,00'", "585 183 '6,00'",
                            "45 138 '10,00'", "585 138 '3,00'", "50 92 '0,00'", "585 92 '0,00'",
                            "40 47 '-10,00'", "580 47 '-3,00'"));
    EXPECT_THAT(canvas.strokes(), Contains("line 80 465 560 465 #000000")); // the zero line, at row 45
    EXPECT_THAT(canvas.strokes(), Contains("line 80 55 81 55 #808080"));    // the dotted one at 90
}

TEST_F(Axes, alignsItsLabelsByTheirWidth) {
    struct Row {
        double number;
        int left, right;
    };
    for (const Row& row :
         {Row{1234, -45, 10}, Row{999.999, -40, 15}, Row{100, -40, 15}, Row{99.999, -35, 20},
          Row{10, -35, 20}, Row{9.999, -30, 25}, Row{0, -30, 25}, Row{-0.001, -35, 20}, Row{-9.999, -35, 20},
          Row{-10, -40, 15}, Row{-99.999, -40, 15}, Row{-100, -45, 10}}) {
        canvas.forget();
        // One step below the top, on both axes.
        draw_y_grid(surface, {row.number + 1, row.number, 1, row.number + 1, 1}, 480);
        const std::vector<std::string> texts = labels();
        ASSERT_EQ(texts.size(), 2U);
        EXPECT_TRUE(texts[0].starts_with(std::to_string(80 + row.left) + " 47 ")) << texts[0];
        EXPECT_TRUE(texts[1].starts_with(std::to_string(560 + row.right) + " 47 ")) << texts[1];
    }
}

TEST_F(Axes, drawsNoZeroLineOutsideThePlot) {
    draw_y_grid(surface, {100, 10, 90, 30, 3}, 480);
    EXPECT_THAT(canvas.strokes(), testing::Not(Contains(testing::StartsWith("line 80 560"))));
    EXPECT_EQ(std::ranges::count_if(
                  canvas.strokes(),
                  [](const std::string& s) { return s.find(" 560 ") != s.npos && s.starts_with("line 80"); }),
              0);
}

TEST_F(Axes, labelsAStepBelowTheAxisAndDrawsNoLineForIt) {
    draw_y_grid(surface, {10, 1, 6, 10, 6}, 480); // 1.5 steps are taken for two
    EXPECT_THAT(labels(), Contains("45 -120 '-2,00'"));
}

TEST_F(Axes, drawsEveryStepOfADenseGrid) {
    draw_y_grid(surface, {1000, 0, 1, 1000, 1}, 480);
    EXPECT_EQ(labels().size(), 2000U);
}

TEST_F(Axes, drawsNoGridWhereStepsLeadNowhere) {
    for (const double step : {0.0, 1e-9, -1e-9, 1e308}) {
        draw_y_grid(surface, {100, 10, step, 30, step}, 480);
        EXPECT_THAT(labels(), IsEmpty()) << step;
    }
    draw_y_grid(surface, {5, 5, 1, 30, 3}, 480);
    EXPECT_THAT(labels(), IsEmpty());
}

TEST_F(Axes, endsItsGridWhereNumbersEnd) {
    draw_y_grid(surface, {1.7e308, 0, 1.1e308, 30, 3}, 480); // a second step is more than there is
    EXPECT_EQ(labels().size(), 2U);
}

TEST_F(Axes, givesTheRightAxisAsManyStepsAsTheLeftOne) {
    EXPECT_EQ((AxisValues{100, -10, 10, 30, 3}.yremin()), -3.0F);
    EXPECT_EQ((AxisValues{100, 0, 10, 1, 0.1}.yremin()), static_cast<float>(1 - 0.1 * 100 / 10));
}

} // namespace velorn::test
