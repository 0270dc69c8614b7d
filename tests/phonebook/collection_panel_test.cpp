#include "phonebook/collection_panel.h"
#include "support/test_program.h"

#include <gtest/gtest.h>

namespace velorn::test {

namespace {

struct Panel : TestProgram {
    FrmTelefon& window = program.frmtelefon;

    Panel() {
        start();
        window.comautohol.Click();
    }
    std::string date() const { return window.labstartdat.Caption; }
    std::string time() const { return window.labstartuhr.Caption; }
};

} // namespace

TEST(CollectionPanel, opensWithThePresentMinuteAndTheWholeBook) {
    Panel p;
    EXPECT_TRUE(p.window.picdownl.Visible);
    EXPECT_EQ(p.date(), "15.11.2026");
    EXPECT_EQ(p.time(), "11:28");
    EXPECT_EQ(p.window.txtstartnr.Text.get(), "1");
    EXPECT_EQ(p.window.txtstopnr.Text.get(), "2000");
}

TEST(CollectionPanel, countsTheSitesFrom1To2000) {
    Panel p;
    for (const int index : {0, 1, 700, 2000, 2001}) p.program.telefonbuch[index].autoflag = 8;
    p.program.telefonbuch[5].autoflag = 1;
    p.window.comautohol.Click();
    EXPECT_EQ(p.window.labanz.Caption.get(), "3");
}

TEST(CollectionPanel, movesTheHourWithinTheDay) {
    Panel p;
    p.window.comuhrplus.Click();
    EXPECT_EQ(p.time(), "12:28");
    for (int i = 0; i < 30; ++i) p.window.comuhrplus.Click();
    EXPECT_EQ(p.time(), "23:28");
    for (int i = 0; i < 30; ++i) p.window.comuhrminus.Click();
    EXPECT_EQ(p.time(), "00:28");
    EXPECT_EQ(p.date(), "15.11.2026");
}

TEST(CollectionPanel, movesTheDayByTheCalendar) {
    Panel p;
    for (int i = 0; i < 16; ++i) p.window.comdatplus.Click();
    EXPECT_EQ(p.date(), "01.12.2026");
    p.window.comdatminus.Click();
    EXPECT_EQ(p.date(), "30.11.2026");
    p.window.comdatminus.Click();
    EXPECT_EQ(p.date(), "29.11.2026");
}

TEST(CollectionStart, knowsTheLengthOfEveryMonth) {
    constexpr int lengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    for (int month = 1; month <= 12; ++month) {
        CollectionStart start{lengths[month - 1], month, 2026, 0, 0};
        start.add_day();
        EXPECT_EQ(start.holtag, 1) << month;
        EXPECT_EQ(start.holmonat, month == 12 ? 1 : month + 1);
        EXPECT_EQ(start.holjahr, month == 12 ? 2027 : 2026);
        start.subtract_day();
        EXPECT_EQ(start.holtag, lengths[month - 1]);
        EXPECT_EQ(start.holmonat, month);
        EXPECT_EQ(start.holjahr, 2026);
    }
}

TEST(CollectionStart, takesEveryFourthYearForALeapYear) {
    struct Row {
        int year, last;
    };
    for (const Row row : {Row{2024, 29}, Row{2025, 28}, Row{2100, 29}, Row{1900, 29}}) {
        CollectionStart start{1, 3, row.year, 0, 0};
        start.subtract_day();
        EXPECT_EQ(start.holtag, row.last) << row.year;
    }
}

TEST(CollectionPanel, isGivenUp) {
    Panel p;
    p.module1.autoholen = p.module1.dateiladen = p.module1.autoverbindung = true;
    p.window.Timer2.Enabled = true;
    p.window.abbruch.Click();
    EXPECT_FALSE(p.window.picdownl.Visible);
    EXPECT_FALSE(p.module1.autoholen || p.module1.dateiladen || p.module1.autoverbindung);
    EXPECT_FALSE(p.window.Timer2.Enabled);
}

} // namespace velorn::test
