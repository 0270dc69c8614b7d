#include "evaluation/evaluation_rig.h"
#include "runtime/text.h"

namespace velorn::test {

struct ViewChoice : EvaluationRig {
    static CalendarDay date(int day, int month, int year) {
        return {static_cast<std::int16_t>(day), static_cast<std::int16_t>(month),
                static_cast<std::int16_t>(year)};
    }
    int drawings() {
        int count = 0;
        for (const std::string& stroke : screen.strokes()) count += stroke.starts_with("clear");
        screen.forget();
        return count;
    }
    // "100 -10 10 30 3"
    std::string axes() {
        std::string all;
        for (const Variant* value :
             {&archive.ylimax, &archive.ylimin, &archive.ylischritt, &archive.yremax, &archive.yreschritt})
            all += value->text() + ' ';
        return all;
    }
    void has_axes(double ylimax, double ylimin, double ylischritt, double yremax, double yreschritt) {
        archive.ylimax = ylimax;
        archive.ylimin = ylimin;
        archive.ylischritt = ylischritt;
        archive.yremax = yremax;
        archive.yreschritt = yreschritt;
        c().openyskala.Click();
    }
};

TEST_F(ViewChoice, marksTheChosenViewAndRedraws) {
    struct Row {
        ColourButton& button;
        int ansicht;
    };
    for (const Row& row :
         {Row{c().comwoch, 2}, Row{c().commonat, 3}, Row{c().comjahr, 4}, Row{c().comtag, 1}}) {
        row.button.Click();
        EXPECT_EQ(archive.ansicht.number(), row.ansicht);
        for (const ColourButton* other : {&c().comtag, &c().comwoch, &c().commonat, &c().comjahr}) {
            EXPECT_EQ(other->BackColor.get(),
                      other == &row.button ? colour::rgb(255, 128, 128) : colour::rgb(224, 224, 224));
        }
        EXPECT_EQ(drawings(), 1);
    }
}

TEST_F(ViewChoice, keepsTheTagOfAViewThatStays) {
    archive.ansicht = 1.0;
    c().comtag.Click();
    EXPECT_EQ(archive.ansicht.tag(), Variant::Tag::f64);
}

TEST_F(ViewChoice, switchesDurationAndMeanAgainstEachOther) {
    c().comdauer.Click();
    EXPECT_TRUE(c().dauermodus);
    EXPECT_EQ(c().comdauer.BackColor.get(), colour::rgb(255, 128, 128));
    EXPECT_FALSE(c().datexport.Enabled);
    c().comtagschnitt.Click();
    EXPECT_FALSE(c().dauermodus);
    EXPECT_TRUE(c().schnittmodus);
    EXPECT_EQ(c().comdauer.BackColor.get(), colour::rgb(224, 224, 224));
    EXPECT_FALSE(c().datexport.Enabled);
    c().comtagschnitt.Click();
    EXPECT_FALSE(c().schnittmodus);
    EXPECT_TRUE(c().datexport.Enabled);
}

TEST_F(ViewChoice, handsTheOtherTwoModesOver) {
    int duration = 0;
    int mean = 0;
    evaluation->events.zeigedauer.connect([&] { ++duration; });
    evaluation->events.zeigeschnitt.connect([&] { ++mean; });
    c().comdauer.Click();
    c().comtagschnitt.Click();
    EXPECT_EQ(duration, 1);
    EXPECT_EQ(mean, 1);
}

TEST_F(ViewChoice, bearsItsCaptionsAndHints) {
    struct Row {
        Button& button;
        std::string caption, hint;
    };
    for (const Row& row :
         {Row{c().comtag, "Tagesgang", "96 1/4h-Werte"},
          Row{c().comwoch, "Wochengang", "84 2h-Durchschittswerte"},
          Row{c().commonat, "Monatsgang", "6h Durchschittswerte eines Monats"},
          Row{c().comjahr, "Jahresgang", "Tagesdurchschnittswerte eines Jahres"},
          Row{c().comdauer, "Dauerlinie", "Dauerlinie der aktuellen Werte"},
          Row{c().comtagschnitt, std::string("ø Tagesgang"_w), "durchsch. Tagesgang der aktuellen Werte"},
          Row{c().minustag, "- Tag     ", ""}, Row{c().plustag, "+ Tag     ", ""},
          Row{c().minuswoche, "- Woche", ""}, Row{c().pluswoche, "+ Woche", ""},
          Row{c().minusmonat, "- Monat ", ""}, Row{c().plusmonat, "+ Monat ", ""},
          Row{c().minusjahr, "- Jahr    ", ""}, Row{c().plusjahr, "+ Jahr    ", ""}}) {
        EXPECT_EQ(row.button.Caption.get(), row.caption);
        EXPECT_EQ(row.button.ToolTipText.get(), row.hint);
    }
    EXPECT_EQ(c().checkviertel.Caption.get(), ": immer 1/4h Werte anzeigen");
    EXPECT_EQ(c().Check1.Caption.get(), ":nur SA+SO");
    EXPECT_EQ(c().Check2.Caption.get(), ":nur MO-FR");
}

TEST_F(ViewChoice, stepsThroughTimeAndRedrawsOnce) {
    struct Row {
        Button& button;
        CalendarDay from, to;
    };
    for (const Row& row : {Row{c().plustag, date(31, 12, 2009), date(1, 1, 2010)},
                           Row{c().minustag, date(1, 3, 2012), date(29, 2, 2012)},
                           Row{c().pluswoche, date(26, 2, 2009), date(5, 3, 2009)},
                           Row{c().minuswoche, date(3, 5, 2009), date(26, 4, 2009)},
                           Row{c().plusmonat, date(15, 12, 2009), date(15, 1, 2010)},
                           Row{c().plusmonat, date(31, 1, 2009), date(3, 3, 2009)},
                           Row{c().minusmonat, date(15, 1, 2010), date(15, 12, 2009)},
                           Row{c().plusjahr, date(29, 2, 2012), date(1, 3, 2013)},
                           Row{c().minusjahr, date(7, 8, 2010), date(7, 8, 2009)}}) {
        selects(row.from.tag, row.from.mon, row.from.jahr);
        row.button.Click();
        EXPECT_EQ(selected(), row.to) << row.button.Caption.get();
        EXPECT_EQ(drawings(), 1);
    }
}

TEST_F(ViewChoice, staysWithinTheArchive) {
    selects(1, 1, 2008);
    c().minustag.Click();
    EXPECT_EQ(selected(), date(1, 1, 2008));
    selects(15, 3, 2017);
    c().plusjahr.Click();
    EXPECT_EQ(selected(), date(31, 12, 2017));
}

TEST_F(ViewChoice, knowsTheWeekdayOfTheSelectedDate) {
    selects(29, 2, 2008);
    c().plustag.Click();
    EXPECT_EQ(c().wochentag, 6);
}

TEST_F(ViewChoice, showsAllQuartersAtAClick) {
    c().checkviertel.Value = true;
    EXPECT_EQ(c().viertelmodus, 1);
    EXPECT_EQ(drawings(), 1);
    c().checkviertel.Value = false;
    EXPECT_EQ(c().viertelmodus, 0);
}

// ---- axes ----

TEST_F(ViewChoice, fillsTheAxesFromTheArchiveAndStoresNothingByThat) {
    archive.ylimax = std::int16_t{100};
    has_axes(100, -10, 10, 30, 3);
    EXPECT_TRUE(c().picyskala.Visible);
    EXPECT_EQ(c().txylimax.Text.get(), "100");
    EXPECT_EQ(c().txylimin.Text.get(), "-10");
    EXPECT_EQ(c().txylischr.Text.get(), "10");
    EXPECT_EQ(c().txyremax.Text.get(), "30");
    EXPECT_EQ(c().txyreschr.Text.get(), "3");
    EXPECT_EQ(drawings(), 0);
}

TEST_F(ViewChoice, takesTheAxesAtTheClosing) {
    has_axes(100, -10, 10, 30, 3);
    c().txylimax.Text = "82,5";
    c().txyreschr.Text = "7";
    c().closepicy.Click();
    EXPECT_EQ(axes(), "82,5 -10 10 30 7 ");
    EXPECT_FALSE(c().picyskala.Visible);
    EXPECT_EQ(drawings(), 1);
}

TEST_F(ViewChoice, stopsAtWhatIsNoNumberAndKeepsWhatWasTakenBefore) {
    has_axes(100, -10, 10, 30, 3);
    c().txylimax.Text = "90";
    c().txylimin.Text = "unten";
    c().txylischr.Text = "5";
    c().closepicy.Click();
    EXPECT_EQ(axes(), "90 -10 10 30 3 ");
    EXPECT_TRUE(c().picyskala.Visible);
    EXPECT_EQ(drawings(), 0);
}

TEST_F(ViewChoice, stopsAtANumberThatIsTooLargeForAny) {
    has_axes(100, -10, 10, 30, 3);
    c().txylimax.Text = "90";
    c().txylimin.Text = "-1e999";
    c().closepicy.Click();
    EXPECT_EQ(axes(), "90 -10 10 30 3 ");
    EXPECT_TRUE(c().picyskala.Visible);
}

TEST_F(ViewChoice, keepsTheTagOfAnAxisThatStays) {
    archive.ylimin = std::int16_t{-10};
    c().openyskala.Click();
    c().closepicy.Click();
    EXPECT_EQ(archive.ylimin.tag(), Variant::Tag::i16);
}

TEST_F(ViewChoice, calculatesTheRightStepForEqualZeroLines) {
    has_axes(100, 0, 10, 20, 9);
    c().txyremax.Text = "30";
    EXPECT_EQ(axes(), "100 0 10 30 3 ");
    EXPECT_EQ(c().txyreschr.Text.get(), "3");
}

TEST_F(ViewChoice, leavesTheRightStepWhereTheLeftAxisBeginsHigher) {
    has_axes(100, 0.001, 10, 20, 9);
    c().txyremax.Text = "30";
    EXPECT_EQ(axes(), "100 0,001 10 30 9 ");
}

TEST_F(ViewChoice, leavesTheRightStepWhereItWouldDivideByNothing) {
    has_axes(100, 0, 0, 20, 9);
    c().txyremax.Text = "30";
    EXPECT_EQ(axes(), "100 0 0 30 9 ");
    has_axes(0, -10, 10, 20, 9);
    c().txyremax.Text = "30";
    EXPECT_EQ(axes(), "0 -10 10 30 9 ");
    EXPECT_EQ(c().txyreschr.Text.get(), "9");
}

TEST_F(ViewChoice, storesAllAxesAtEachChangeOfTheRightMaximum) {
    has_axes(100, 10, 10, 20, 9);
    c().txylimax.Text = "80";
    EXPECT_EQ(axes(), "100 10 10 20 9 ");
    c().txyremax.Text = "3";
    EXPECT_EQ(axes(), "80 10 10 3 9 ");
    c().txylischr.Text = "-";
    c().txyremax.Text = "35";
    EXPECT_EQ(axes(), "80 10 10 3 9 ");
    EXPECT_EQ(drawings(), 0);
}

TEST_F(ViewChoice, leavesTheRightStepWithoutARightMaximum) {
    for (const char* nothing : {"", "0", "-5"}) {
        has_axes(100, 0, 10, 20, 9);
        c().txyremax.Text = nothing;
        EXPECT_EQ(archive.yreschritt.number(), 9) << nothing;
    }
}

} // namespace velorn::test
