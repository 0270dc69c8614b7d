// What an archive makes of a file by its size, and when it isn't whole.
#include "archive/archive.h"
#include "archive/archive_samples.h"
#include "runtime/text.h"
#include "support/faulty_files.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace velorn {
namespace {

using archive_layout::row_of_size;
using test::archive_path;
using test::BlockFiles;
using test::FaultyFiles;
using test::make_sparse_archive;

std::string bytes_of_float(float value) { return {reinterpret_cast<const char*>(&value), sizeof value}; }

// ---- sizes ----

TEST(ArchiveSize, everyRowReachesFromItsFirstToItsLastByte) {
    struct Row {
        std::int64_t first, last;
        int spuranz, archivversion;
    };
    constexpr std::array<Row, 6> expected{{{58000001, 58999999, 30, 2},
                                           {98000001, 98999999, 60, 1},
                                           {106000001, 106999999, 60, 2},
                                           {154000001, 155999999, 90, 2},
                                           {203000001, 203999999, 120, 0},
                                           {251000001, 251999999, 150, 2}}};
    for (const Row& row : expected) {
        EXPECT_EQ(row_of_size(row.first - 1), nullptr) << row.first;
        EXPECT_EQ(row_of_size(row.last + 1), nullptr) << row.last;
        for (const std::int64_t size : {row.first, row.last}) {
            ASSERT_NE(row_of_size(size), nullptr) << size;
            EXPECT_EQ(row_of_size(size)->spuranz, row.spuranz) << size;
            EXPECT_EQ(row_of_size(size)->archivversion, row.archivversion) << size;
        }
    }
}

struct Store : testing::Test {
    BlockFiles files;
    Archive archive{files};

    void reopen() {
        archive.close();
        ASSERT_TRUE(archive.open(archive_path));
    }
};

TEST_F(Store, aByteAboveARangeKeepsTheTrackCountOfTheLastArchive) {
    make_sparse_archive(files, 30, 2);
    reopen();
    files.set_length(archive_path, 59000000);
    reopen();
    EXPECT_EQ(archive.spuranz, 30);
    EXPECT_EQ(archive.archivversion, 2);
    EXPECT_EQ(archive.spurnamen[0], Variant("<1>-<2>"));
}

TEST_F(Store, anUnknownSizeWithoutAnArchiveBeforeIsTold) {
    files.set_length(archive_path, 59000000);
    const Outcome opened = archive.open(archive_path);
    ASSERT_FALSE(opened);
    EXPECT_EQ(opened.failure().text, "Fehler beim Zugriff auf Pfad oder Datei: Die Dateigröße paßt zu keinem "
                                     "Datenarchiv"_w);
    EXPECT_TRUE(archive.is_open());
    EXPECT_EQ(archive.spuranz, 60);
    EXPECT_EQ(archive.daten(9, 12, 31, 96, 60), -997.0F);
    EXPECT_EQ(archive.daten(9, 0, 31, 96, 60), 0.0F);
}

TEST_F(Store, anArchiveUsedInSpiteOfItsSizeIsWrittenWhole) {
    files.set_length(archive_path, 106200000);
    files.set_bytes(archive_path, 2000000, "etwas anderes");
    files.set_length(archive_path, 107000000);
    ASSERT_FALSE(archive.open(archive_path));
    ASSERT_TRUE(archive.save());
    EXPECT_EQ(files.length(archive_path), 107000000);
    reopen();
    EXPECT_EQ(archive.daten(0, 6, 15, 48, 30), -997.0F);
}

TEST_F(Store, aFirstFileOf120TracksIsReadLikeTheOldLayoutAndWrittenInFull) {
    make_sparse_archive(files, 120, 2);
    const std::int64_t cell = 4 * ((((std::int64_t{2} * 13 + 3) * 32 + 4) * 97 + 5) * 121 + 60);
    files.set_bytes(archive_path, cell, bytes_of_float(77.0F));
    reopen();
    EXPECT_EQ(archive.spuranz, 120);
    EXPECT_EQ(archive.archivversion, 0);
    EXPECT_EQ(archive.rechdaten(2, 3, 4, 5, 1), 77.0F);
    EXPECT_EQ(archive.rechdaten(2, 3, 4, 5, 3), -997.0F);
    const std::int64_t length = files.length(archive_path);
    ASSERT_TRUE(archive.save());
    EXPECT_EQ(files.length(archive_path), length);
    archive.archivversion = 2;
    reopen();
    EXPECT_EQ(archive.archivversion, 2);
    EXPECT_EQ(archive.rechdaten(2, 3, 4, 5, 1), 77.0F);
    EXPECT_EQ(archive.rechdaten(9, 12, 31, 96, 4), -997.0F);
    EXPECT_EQ(archive.bspurnamen[0], Variant("<1>-<2>"));
}

// ---- what isn't whole ----

TEST_F(Store, aFileThatIsCutInItsSettingsIsTold) {
    make_sparse_archive(files, 60, 1);
    files.set_length(archive_path, files.length(archive_path) - 3);
    const Outcome opened = archive.open(archive_path);
    ASSERT_FALSE(opened);
    EXPECT_TRUE(opened.failure().is(RunTimeError::past_end_of_file));
    EXPECT_EQ(archive.spurnamen[0], Variant("<1>-<2>"));
    EXPECT_TRUE(archive.jahresanteil.empty());
}

TEST_F(Store, aFileThatIsCutInItsTableGivesFillValuesAndIsWrittenWholeAgain) {
    make_sparse_archive(files, 60, 1);
    files.set_length(archive_path, 98000001);
    EXPECT_FALSE(archive.open(archive_path));
    EXPECT_EQ(archive.daten(9, 1, 1, 1, 1), 0.0F);
    EXPECT_EQ(archive.daten(9, 12, 31, 96, 60), -997.0F);
    EXPECT_FALSE(archive.failed());
    ASSERT_TRUE(archive.save());
    EXPECT_GT(files.length(archive_path), 106000000);
    reopen();
    EXPECT_EQ(archive.daten(9, 12, 31, 96, 60), -997.0F);
}

TEST_F(Store, anUnknownTagIsTold) {
    make_sparse_archive(files, 30, 2);
    files.set_bytes(archive_path, 50036480, "\x63");
    const Outcome opened = archive.open(archive_path);
    ASSERT_FALSE(opened);
    EXPECT_TRUE(opened.failure().is(RunTimeError::type_mismatch));
    EXPECT_EQ(archive.spurnamen.size(), 31U);
    EXPECT_EQ(archive.daten(9, 12, 31, 96, 30), 0.0F);
}

TEST_F(Store, aMissingFileIsTold) {
    const Outcome opened = archive.open(archive_path);
    ASSERT_FALSE(opened);
    EXPECT_TRUE(opened.failure().is(RunTimeError::file_not_found));
}

struct Loses : Store {
    Loses() {
        make_sparse_archive(files, 30, 2);
        reopen();
        archive.set_daten(4, 5, 6, 7, 8, 9.0F);
    }
    void expect_lost(RunTimeError error) {
        EXPECT_FALSE(archive.failed());
        EXPECT_EQ(archive.daten(5, 5, 6, 7, 8), -997.0F);
        EXPECT_EQ(archive.row(6, 5, 6, 7)[8], -997.0F);
        ASSERT_TRUE(archive.failed());
        EXPECT_TRUE(archive.failed()->is(error));
        EXPECT_EQ(archive.daten(4, 5, 6, 7, 8), 9.0F);
        EXPECT_FALSE(archive.save());
    }
};

TEST_F(Loses, aFileThatVanishesWhileOpen) {
    const BlockFiles::Content before = files.content(archive_path);
    ASSERT_TRUE(files.remove(archive_path));
    expect_lost(RunTimeError::file_not_found);
    files.set_content(archive_path, before);
    EXPECT_TRUE(archive.save()); // it has come back
    EXPECT_FALSE(files.content(archive_path) == before);
    EXPECT_EQ(files.bytes(archive_path, 4 * 31 * archive_layout::row_of(6, 5, 6, 7), 4), bytes_of_float(0));
}

TEST_F(Loses, aFileThatIsCutShortWhileOpen) {
    files.set_length(archive_path, 20000000);
    expect_lost(RunTimeError::path_file_access);
    EXPECT_EQ(files.length(archive_path), 20000000);
}

TEST_F(Loses, aYearThatCouldNotBeReadKeepsWhatTheFileHas) {
    files.set_bytes(archive_path, 4 * (31 * archive_layout::row_of(6, 1, 1, 1) + 3), bytes_of_float(1.0F));
    const BlockFiles::Content before = files.content(archive_path);
    ASSERT_TRUE(files.remove(archive_path));
    archive.set_daten(6, 1, 1, 1, 2, 2.0F);
    files.set_content(archive_path, before);
    ASSERT_TRUE(archive.save());
    EXPECT_EQ(files.bytes(archive_path, 4 * (31 * archive_layout::row_of(6, 1, 1, 2) + 3), 4),
              bytes_of_float(0));
}

// ---- touching little ----

TEST_F(Store, openingReadsNoYear) {
    make_sparse_archive(files, 150, 2);
    FaultyFiles counting(files);
    Archive other(counting);
    ASSERT_TRUE(other.open(archive_path));
    other.archivstand = std::int16_t{105};
    other.upgrade();
    const auto reads = std::ranges::count(counting.operations(), "read");
    (void)other.daten(1, 2, 31, 2, 0);
    EXPECT_EQ(std::ranges::count(counting.operations(), "read"), reads + 1);
    EXPECT_LT(reads, 12);
}

TEST_F(Store, savingWithoutAChangeWritesNothing) {
    make_sparse_archive(files, 30, 2);
    FaultyFiles counting(files);
    Archive other(counting);
    ASSERT_TRUE(other.open(archive_path));
    other.set_daten(1, 1, 1, 1, 1, 0.0F);
    other.spurnamen[3] = "----------------";
    ASSERT_TRUE(other.save());
    EXPECT_EQ(std::ranges::count(counting.operations(), "write"), 0);
    EXPECT_EQ(std::ranges::count(counting.operations(), "replace"), 0);
}

TEST_F(Store, aSecondOneIsNoticedAndOpensAllTheSame) {
    make_sparse_archive(files, 30, 2);
    reopen();
    EXPECT_FALSE(archive.shared());
    Archive second(files);
    ASSERT_TRUE(second.open(archive_path));
    EXPECT_TRUE(second.shared());
    archive.close();
    ASSERT_TRUE(second.open(archive_path));
    EXPECT_FALSE(second.shared());
}

TEST_F(Store, closingGivesTheMemoryBackAndKeepsTheCounts) {
    make_sparse_archive(files, 30, 2);
    reopen();
    archive.close();
    EXPECT_FALSE(archive.is_open());
    EXPECT_EQ(archive.spuranz, 30);
    EXPECT_EQ(archive.archivversion, 2);
}

} // namespace
} // namespace velorn
