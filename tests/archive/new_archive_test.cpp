// New archives, older ones brought up to date, and the newest day in one.
#include "archive/archive.h"
#include "archive/archive_samples.h"
#include "support/faulty_files.h"

#include <gtest/gtest.h>

namespace velorn {
namespace {

using archive_layout::row_of_size;
using test::archive_path;
using test::BlockFiles;
using test::FaultyFiles;
using test::make_sparse_archive;
using test::some_day;

struct NewStore : testing::Test {
    BlockFiles files;
    Archive archive{files};

    void reopen() {
        archive.close();
        ASSERT_TRUE(archive.open(archive_path));
    }
};

struct NewFile : NewStore {
    NewFile() { EXPECT_TRUE(archive.create(archive_path, 2009, 30, some_day)); }
};

void expect_value(const char* name, const Variant& value, const Variant& expected) {
    EXPECT_TRUE(identical(value, expected)) << name << ": " << value.text();
}

TEST_F(NewFile, holdsEveryDefaultWithItsTag) {
    reopen();
    const auto i16 = [](int value) { return Variant(static_cast<std::int16_t>(value)); };
    expect_value("yremax", archive.yremax, i16(30));
    expect_value("ylimax", archive.ylimax, i16(100));
    expect_value("ylimin", archive.ylimin, i16(-10));
    expect_value("ylischritt", archive.ylischritt, i16(10));
    expect_value("yreschritt", archive.yreschritt, i16(3));
    expect_value("archivflag", archive.archivflag, false);
    expect_value("ansicht", archive.ansicht, i16(1));
    expect_value("startjahr", archive.startjahr, i16(2009));
    expect_value("exportspuren", archive.exportspuren, i16(2));
    expect_value("archivtag", archive.archivtag, i16(21));
    expect_value("archivmonat", archive.archivmonat, i16(11));
    expect_value("archivjahr", archive.archivjahr, i16(2026));
    expect_value("archivstand", archive.archivstand, i16(105));
    expect_value("archivwert1", archive.archivwert1, i16(2));
    expect_value("archivwert2", archive.archivwert2, i16(1));
    expect_value("archivwert3", archive.archivwert3, i16(2));
    expect_value("faktor1", archive.faktor1, 1.0);
    expect_value("bname1", archive.bname1, "---");
    expect_value("bname2", archive.bname2, "---");
    expect_value("faktor2", archive.faktor2, 1.0);
    expect_value("ganzjahr", archive.ganzjahr, i16(8760));
    expect_value("jahrespitze", archive.jahrespitze, std::int32_t{100000});
    expect_value("jahreszahl", archive.jahreszahl, i16(5));
    expect_value("jahresanteil", archive.jahresanteil, 0.2);
    for (const Variant& value : archive.reserve1_6) expect_value("reserve", value, Variant());
}

TEST_F(NewFile, holdsTheDefaultsOfAllTracks) {
    reopen();
    for (std::size_t t = 0; t <= 30; ++t) {
        expect_value("spurnamen", archive.spurnamen[t], t == 0 ? "<1>-<2>" : "----------------");
        expect_value("spureinheiten", archive.spureinheiten[t], "");
        expect_value("spurfarben", archive.spurfarben[t], std::int32_t{t == 2 ? 255 : 0});
        expect_value("spursichtbar", archive.spursichtbar[t], t == 1 || t == 2);
        expect_value("spurrechts", archive.spurrechts[t], false);
    }
    for (std::size_t t = 0; t <= 5; ++t) {
        const bool set = t < 5;
        expect_value("bspurnamen", archive.bspurnamen[t], set ? Variant("----------------") : Variant());
        expect_value("bspureinheiten", archive.bspureinheiten[t], set ? Variant("") : Variant());
        expect_value("bspurfarben", archive.bspurfarben[t], set ? Variant(std::int32_t{0}) : Variant());
        expect_value("bspursichtbar", archive.bspursichtbar[t], set ? Variant(false) : Variant());
        expect_value("bspurrechts", archive.bspurrechts[t], set ? Variant(false) : Variant());
    }
}

TEST_F(NewFile, holdsTheFormulasOfTheUpgrades) {
    reopen();
    for (const auto* tracks : {&archive.formel1spuren, &archive.formel2spuren}) {
        for (std::size_t i = 0; i <= 10; ++i)
            expect_value("spuren", (*tracks)[i],
                         i == 0 ? Variant() : Variant(static_cast<std::int16_t>(i < 3 ? i : 0)));
    }
    for (const auto* ops : {&archive.formel1ops, &archive.formel2ops}) {
        for (std::size_t i = 0; i <= 10; ++i)
            expect_value("ops", (*ops)[i],
                         i == 0 ? Variant() : Variant(static_cast<std::int16_t>(i == 1 ? 1 : 2)));
    }
}

TEST_F(NewFile, isFilledExceptWhereASubscriptIsZero) {
    reopen();
    for (const int t : {0, 1, 30}) {
        EXPECT_EQ(archive.daten(0, 1, 1, 1, t), -997.0F);
        EXPECT_EQ(archive.daten(9, 12, 31, 96, t), -997.0F);
        EXPECT_EQ(archive.daten(5, 2, 31, 50, t), -997.0F);
        EXPECT_EQ(archive.daten(3, 0, 1, 1, t), 0.0F);
        EXPECT_EQ(archive.daten(3, 1, 0, 1, t), 0.0F);
        EXPECT_EQ(archive.daten(3, 1, 1, 0, t), 0.0F);
    }
    EXPECT_EQ(archive.rechdaten(9, 12, 31, 96, 4), -997.0F);
    EXPECT_EQ(archive.rechdaten(9, 12, 31, 0, 4), 0.0F);
    EXPECT_EQ(row_of_size(files.length(archive_path))->spuranz, 30);
}

TEST_F(NewFile, isWrittenOverWhatIsThereWithoutCuttingIt) {
    archive.close();
    files.set_length(archive_path, 70000000);
    ASSERT_TRUE(archive.create(archive_path, 2010, 30, some_day));
    EXPECT_EQ(files.length(archive_path), 70000000);
}

TEST_F(NewStore, aFileThatCannotBeCreatedLeavesNothing) {
    FaultyFiles faulty(files);
    faulty.fill_the_disk();
    Archive other(faulty);
    const Outcome created = other.create(archive_path, 2009, 30, some_day);
    ASSERT_FALSE(created);
    EXPECT_TRUE(created.failure().is(RunTimeError::disk_full));
    EXPECT_FALSE(other.is_open());
    EXPECT_TRUE(files.names().empty());
}

// ---- upgrades ----

struct Upgrade : NewStore {
    Upgrade() {
        make_sparse_archive(files, 30, 2);
        reopen();
    }
    void upgrade_from(int archivstand) {
        archive.archivstand = static_cast<std::int16_t>(archivstand);
        archive.formel1spuren[5] = "alt";
        archive.formel2spuren[5] = "alt";
        archive.upgrade();
    }
};

TEST_F(Upgrade, settingsBefore101GetBothFormulas) {
    upgrade_from(100);
    expect_value("archivstand", archive.archivstand, std::int16_t{105});
    expect_value("first", archive.formel1spuren[5], std::int16_t{0});
    expect_value("second", archive.formel2spuren[5], std::int16_t{0});
}

TEST_F(Upgrade, settingsFrom101To103GetTheSecondFormula) {
    for (const int stand : {101, 103}) {
        upgrade_from(stand);
        expect_value("archivstand", archive.archivstand, std::int16_t{105});
        expect_value("first", archive.formel1spuren[5], "alt");
        expect_value("second", archive.formel2spuren[5], std::int16_t{0});
    }
}

TEST_F(Upgrade, settingsFrom104OnStayAsTheyAre) {
    upgrade_from(104);
    expect_value("archivstand", archive.archivstand, std::int16_t{104});
    expect_value("second", archive.formel2spuren[5], "alt");
}

TEST_F(Upgrade, theAnalyticCurveIsSetOnce) {
    archive.ganzjahr = std::int16_t{1};
    archive.jahresanteil = 0.9;
    archive.upgrade();
    EXPECT_EQ(archive.rechdaten(1, 2, 31, 1, 0), 1003.0F);
    expect_value("ganzjahr", archive.ganzjahr, std::int16_t{8760});
    expect_value("jahresanteil", archive.jahresanteil, 0.2);
    archive.ganzjahr = std::int16_t{2};
    archive.upgrade();
    expect_value("ganzjahr", archive.ganzjahr, std::int16_t{2});
}

TEST_F(Upgrade, aStampOf1002IsEnough) {
    archive.set_rechdaten(1, 2, 31, 1, 0, 1002.0F);
    archive.ganzjahr = std::int16_t{1};
    archive.upgrade();
    expect_value("ganzjahr", archive.ganzjahr, std::int16_t{1});
}

// ---- the newest day ----

struct Newest : NewFile {
    void expect(int jahr, int monat, int tag, bool voll) {
        for (int round = 0; round < 2; ++round) {
            const Archive::NewestDay day = archive.letztertag();
            EXPECT_EQ(day.jahr, jahr);
            EXPECT_EQ(day.monat, monat);
            EXPECT_EQ(day.tag, tag);
            EXPECT_EQ(day.tagvoll, voll);
            ASSERT_TRUE(archive.save());
            reopen(); // the second time from the file
        }
    }
};

TEST_F(Newest, ofAnEmptyArchiveIsItsFirstDayWhichIsNotFull) { expect(2009, 1, 1, false); }

TEST_F(Newest, isTheLastWithAFirstQuarterOnTrack1) {
    archive.set_daten(2, 3, 4, 1, 1, 5.0F);
    archive.set_daten(2, 3, 5, 2, 1, 5.0F);
    archive.set_daten(2, 3, 6, 1, 2, 5.0F);
    expect(2011, 3, 4, false);
}

TEST_F(Newest, countsAnInvalidValueAsOne) {
    archive.set_daten(9, 12, 31, 1, 1, -999.0F);
    archive.set_daten(9, 12, 31, 96, 1, -999.0F);
    expect(2018, 12, 31, false);
}

TEST_F(Newest, isFullWithAValueInItsLastQuarter) {
    archive.set_daten(0, 2, 31, 1, 1, 0.0F);
    archive.set_daten(0, 2, 31, 96, 1, 0.0F);
    expect(2009, 2, 31, true);
}

} // namespace
} // namespace velorn
