// The archive's file byte by byte: places of cells, sizes, and what a save leaves beside a plain second make.
#include "archive/archive_samples.h"

#include <bit>
#include <cmath>
#include <gtest/gtest.h>

namespace velorn {
namespace {

using test::archive_path;
using test::BlockFiles;
using test::make_sparse_archive;
using test::NaiveArchive;
using test::some_day;
using test::whole;

std::string bytes_of_float(float value) { return {reinterpret_cast<const char*>(&value), sizeof value}; }

TEST(ArchiveBytes, aCellLiesWhereItsDateSays) {
    // Track 3 at 14:15 on 2.3. of the second year, 60 tracks.
    const std::int64_t offset = std::int64_t{4} * ((((1 * 13 + 3) * 32 + 2) * 97 + 58) * 61 + 3);
    BlockFiles files;
    make_sparse_archive(files, 60, 2);
    files.set_bytes(archive_path, offset, bytes_of_float(12.5F));
    Archive archive(files);
    ASSERT_TRUE(archive.open(archive_path));
    EXPECT_EQ(archive.daten(1, 3, 2, 58, 3), 12.5F);
    archive.set_daten(1, 3, 2, 58, 3, -7.25F);
    ASSERT_TRUE(archive.save());
    EXPECT_EQ(files.bytes(archive_path, offset, 4), bytes_of_float(-7.25F));
}

struct Kind {
    std::int16_t spuranz;
    int layout;
    std::int64_t daten;
};

class EveryLayout : public testing::TestWithParam<Kind> {};

TEST_P(EveryLayout, cellsOfBothTablesLieAtTheirOffsets) {
    const auto [spuranz, layout, daten] = GetParam();
    BlockFiles files;
    make_sparse_archive(files, spuranz, layout);
    const std::int64_t last = daten - 4;
    const std::int64_t first_used = std::int64_t{4} * (((1 * 32 + 1) * 97 + 1) * (spuranz + 1) + 1);
    files.set_bytes(archive_path, last, bytes_of_float(1.5F));
    files.set_bytes(archive_path, first_used, bytes_of_float(2.5F));
    const std::int64_t rech =
        daten +
        static_cast<std::int64_t>(encode_settings(new_archive_settings(spuranz, 2009, some_day)).size());
    if (layout == 2) files.set_bytes(archive_path, rech + 8070400 - 4, bytes_of_float(3.5F));
    Archive archive(files);
    archive.archivversion = 2;
    ASSERT_TRUE(archive.open(archive_path));
    EXPECT_EQ(archive.spuranz, spuranz);
    EXPECT_EQ(archive.archivversion, layout);
    EXPECT_EQ(archive.daten(9, 12, 31, 96, spuranz), 1.5F);
    EXPECT_EQ(archive.daten(0, 1, 1, 1, 1), 2.5F);
    EXPECT_EQ(archive.rechdaten(9, 12, 31, 96, 4), layout == 2 ? 3.5F : -997.0F);
    archive.set_rechdaten(9, 12, 31, 96, 4, 4.5F);
    ASSERT_TRUE(archive.save());
    EXPECT_EQ(files.bytes(archive_path, rech + 8070400 - 4, 4), bytes_of_float(4.5F));
    EXPECT_EQ(files.bytes(archive_path, last, 4), bytes_of_float(1.5F));
}

INSTANTIATE_TEST_SUITE_P(AllTrackCounts, EveryLayout,
                         testing::Values(Kind{30, 2, 50036480}, Kind{60, 1, 98458880}, Kind{60, 2, 98458880},
                                         Kind{90, 2, 146881280}, Kind{120, 2, 195303680},
                                         Kind{150, 2, 243726080}),
                         [](const auto& one) {
                             return std::to_string(one.param.spuranz) + "TracksLayout" +
                                    std::to_string(one.param.layout);
                         });

// ---- beside the plain make ----

struct Beside : testing::Test {
    BlockFiles files;
    Archive archive{files};
    NaiveArchive naive;
    std::mt19937 random{20261121};

    int up_to(int last) { return static_cast<int>(random() % static_cast<unsigned>(last + 1)); }

    void open(int spuranz, int layout) {
        ASSERT_TRUE(archive.open(archive_path));
        naive.read(whole(files), spuranz, layout);
    }
    void change_cells(int count) {
        for (int i = 0; i < count; ++i) {
            const int y = up_to(9), m = up_to(12), d = up_to(31), q = up_to(96), t = up_to(naive.spuranz);
            const float value = up_to(5) == 0 ? NAN : static_cast<float>(up_to(100000)) / 8;
            archive.set_daten(y, m, d, q, t, value);
            naive.cell(y, m, d, q, t) = value;
            archive.set_rechdaten(y, m, d, q, t % 5, -value);
            naive.calculated(y, m, d, q, t % 5) = -value;
        }
    }
    void name_track(int t, const std::string& name) {
        archive.spurnamen[static_cast<std::size_t>(t)] = name;
        naive.settings[static_cast<std::size_t>(t)] = name;
    }
    void save_both() {
        ASSERT_TRUE(archive.save());
        naive.write();
        EXPECT_EQ(files.length(archive_path), static_cast<std::int64_t>(naive.file.size()));
        EXPECT_TRUE(same_bytes(files.content(archive_path), 0, naive.file));
        EXPECT_EQ(files.names(), std::vector<std::string>{std::string(archive_path)});
    }
};

TEST_F(Beside, roundsOfChangesLeaveTheBytesOfAWholeRewrite) {
    ASSERT_TRUE(archive.create(archive_path, 2009, 30, some_day));
    for (const int cells : {0, 1, 60, 5}) {
        open(30, 2);
        change_cells(cells);
        save_both();
        change_cells(cells / 2);
        name_track(up_to(30), std::string(static_cast<std::size_t>(up_to(40)), 'x'));
        save_both();
        archive.bspurnamen[1] = "Summe";
        naive.texts[1] = "Summe";
        save_both();
    }
}

TEST_F(Beside, aShorterNameLeavesTheOldTailBehindTheEnd) {
    make_sparse_archive(files, 30, 2);
    open(30, 2);
    const std::int64_t before = files.length(archive_path);
    name_track(7, "");
    save_both();
    EXPECT_EQ(files.length(archive_path), before);
}

TEST_F(Beside, mostOfItChangedGoesThroughANewFile) {
    make_sparse_archive(files, 30, 2);
    files.set_bytes(archive_path, files.length(archive_path), "alter Rest");
    open(30, 2);
    for (int y = 0; y < 7; ++y) {
        for (int m = 0; m <= 12; ++m) {
            for (int d = 0; d <= 31; ++d) {
                for (int q = 0; q <= 96; ++q) {
                    archive.set_daten(y, m, d, q, 2, 1.0F);
                    naive.cell(y, m, d, q, 2) = 1.0F;
                }
            }
        }
    }
    name_track(1, "");
    save_both();
    EXPECT_TRUE(naive.file.ends_with("alter Rest"));
}

TEST_F(Beside, aFileOfLayout1GrowsToLayout2) {
    make_sparse_archive(files, 60, 1);
    for (int i = 0; i < 500; ++i)
        files.set_bytes(archive_path, std::int64_t{4} * 61 * up_to(403519) + 240 * up_to(1),
                        bytes_of_float(static_cast<float>(i)));
    open(60, 1);
    EXPECT_EQ(archive.archivversion, 1);
    name_track(3, "Kessel");
    change_cells(20);
    save_both();
    EXPECT_GT(files.length(archive_path), 106000000);
    change_cells(3);
    save_both();
    naive.read(whole(files), 60, 2);
    ASSERT_TRUE(archive.open(archive_path));
    EXPECT_EQ(archive.archivversion, 2);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(archive.rechdaten(3, 4, 5, 6, 1)),
              std::bit_cast<std::uint32_t>(naive.calculated(3, 4, 5, 6, 1)));
}

TEST_F(Beside, theCalculatedTracksOfLayout1DontFollowLaterChanges) {
    make_sparse_archive(files, 60, 1);
    open(60, 1);
    for (const int t : {0, 60}) {
        archive.set_daten(4, 5, 6, 7, t, 8.0F);
        naive.cell(4, 5, 6, 7, t) = 8.0F;
    }
    EXPECT_EQ(archive.rechdaten(4, 5, 6, 7, 0), 0.0F);
    EXPECT_EQ(archive.rechdaten(4, 5, 6, 7, 1), 0.0F);
    EXPECT_EQ(archive.rechdaten(4, 5, 6, 7, 2), -997.0F);
    save_both();
}

TEST_F(Beside, unusualTagsAndHugeTextsAreKept) {
    make_sparse_archive(files, 30, 2);
    ASSERT_TRUE(archive.open(archive_path));
    archive.yremax = 30.5;
    archive.reserve1_6[3] = std::string(65535, 'r');
    archive.archivwert2 = Null();
    archive.formel1spuren[0] = DateSerial{41000.5};
    ASSERT_TRUE(archive.save());
    open(30, 2);
    EXPECT_TRUE(identical(archive.yremax, Variant(30.5)));
    EXPECT_TRUE(identical(archive.archivwert2, Variant(Null())));
    change_cells(3);
    save_both();
}

} // namespace
} // namespace velorn
