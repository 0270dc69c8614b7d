// The evaluation over archives whose settings are damaged, and over one that is lost while it is open.
#include "evaluation/evaluation_rig.h"
#include "evaluation/track_looks.h"

#include <limits>

namespace velorn::test {

struct DamagedArchive : EvaluationRig {
    // Every view, the pointer, paging, a popup and the paper.
    void does_all() {
        for (ColourButton* view : {&c().comtag, &c().comwoch, &c().commonat, &c().comjahr}) {
            view->Click();
            for (const double x : {-1e9, 0.0, 80.0, 300.0, 559.9, 1e9}) c().Picture1.MouseMove(x, 250);
            c().Picture2.pointer(10);
            c().checkviertel.Value = !c().checkviertel.Value;
        }
        c().com1bis30.Click();
        c().Commandkanal[1].Click();
        c().txnam.Text = "neu";
        c().comkanalein.Click();
        c().kanalrechts[30].Value = !c().kanalrechts[30].Value;
        c().openyskala.Click();
        c().closepicy.Click();
        c().plott.Click();
        loop.pass(1000);
    }
    int lost = 0;
    // A year that lies behind the cut; `lost` counts how often it is told.
    void draws_an_archive_that_was_cut() {
        shows(1);
        f.archivgeladen = true;
        evaluation->events.archive_lost.connect([this] {
            ++lost;
            f.archivgeladen = false;
        });
        files.set_length(archive_path, 20'000'000);
        selects(1, 6, startjahr + 9);
        evaluation->neuzeichnen();
    }
};

TEST_F(DamagedArchive, isShownWithoutAnySettings) {
    for (auto* table : {&archive.spurnamen, &archive.spureinheiten, &archive.spurfarben,
                        &archive.spursichtbar, &archive.spurrechts})
        table->clear();
    does_all();
    EXPECT_TRUE(shown_tracks(archive, Table::daten).empty());
    EXPECT_EQ(c().txkanal[1].Caption.get(), "01:  ()");
}

TEST_F(DamagedArchive, showsNoTrackThatHasNoValues) {
    archive.spursichtbar.assign(400, Variant(true));
    does_all();
    EXPECT_EQ(shown_tracks(archive, Table::daten).size(), 30U);
    EXPECT_EQ(shown_tracks(archive, Table::daten).back(), 30);
}

TEST_F(DamagedArchive, staysWithinItsYearsWhateverTheDateIs) {
    shows(1);
    for (const int nonsense : {-32768, -1, 0, 99, 32767}) {
        selects(nonsense, nonsense, nonsense);
        does_all();
        EXPECT_GE(f.jahrsel, startjahr) << nonsense;
        EXPECT_LE(f.jahrsel, startjahr + 9) << nonsense;
    }
}

TEST_F(DamagedArchive, countsFrom2000WhereItsFirstYearMakesNoSense) {
    shows(1);
    for (const Variant& nonsense : {Variant(), Variant(std::string("x")), Variant(1e300), Variant(-5.0)}) {
        archive.startjahr = nonsense;
        does_all();
        EXPECT_EQ(first_year(archive), 2000);
        EXPECT_GE(f.jahrsel, 2000);
        EXPECT_LE(f.jahrsel, 2009);
    }
}

TEST_F(DamagedArchive, drawsWithAxesThatAreNoNumbers) {
    shows(1);
    archive.spurrechts[1] = true;
    for (const double nonsense :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(), -1e308, 0.0}) {
        for (Variant* axis :
             {&archive.ylimax, &archive.ylimin, &archive.ylischritt, &archive.yremax, &archive.yreschritt}) {
            const Variant before = *axis;
            *axis = nonsense;
            does_all();
            EXPECT_FALSE(drawing().empty());
            *axis = before;
        }
    }
}

TEST_F(DamagedArchive, drawsValuesThatAreNoNumbers) {
    shows(1);
    set(selected(), 1, 1, std::numeric_limits<float>::infinity());
    set(selected(), 2, 1, -std::numeric_limits<float>::infinity());
    set(selected(), 3, 1, std::numeric_limits<float>::quiet_NaN());
    does_all();
    EXPECT_FALSE(drawing().empty());
}

// ---- lost while open ----

TEST_F(DamagedArchive, tellsBehindTheDrawingThatItIsLost) {
    draws_an_archive_that_was_cut();
    ASSERT_TRUE(archive.failed());
    EXPECT_EQ(lost, 0) << "a drawing may be part of a paint";
    loop.pass(10);
    EXPECT_EQ(lost, 1);
    evaluation->neuzeichnen();
    loop.pass(10);
    EXPECT_EQ(lost, 1);
}

TEST_F(DamagedArchive, tellsNothingOfAnArchiveThatWasClosedMeanwhile) {
    draws_an_archive_that_was_cut();
    evaluation->archive_closed();
    loop.pass(10);
    EXPECT_EQ(lost, 0);
}

} // namespace velorn::test
