// The machine stops, or a step fails, at the single operations of a save and of a creation: what is opened
// afterwards is the old archive or the new one. Small saves are stopped at each of their writes, syncs and
// renames; those that write the whole file at all near the ends of its long runs of writes, and at a dense
// sample in between (another one with --gtest_shuffle).
#include "archive/archive.h"
#include "archive/archive_samples.h"
#include "support/faulty_files.h"

#include <functional>
#include <gtest/gtest.h>
#include <random>

namespace velorn {
namespace {

using test::archive_path;
using test::BlockFiles;
using test::FaultyFiles;
using test::make_sparse_archive;
using test::some_day;

using Change = std::function<void(Archive&)>;

void download_a_day(Archive& archive) {
    for (int q = 1; q <= 96; ++q) {
        archive.set_daten(9, 10, 11, q, 1, static_cast<float>(q));
        archive.set_rechdaten(9, 10, 11, q, 0, static_cast<float>(-q));
    }
    archive.archivtag = std::int16_t{3};
    archive.bspurrechts[4] = true;
}

void rename_a_track(Archive& archive) {
    download_a_day(archive);
    archive.spurnamen[1] = "ein längerer Name als vorher";
    archive.rechdaten(4, 1, 1, 1, 0); // one year in memory, nine not
}

void change_most(Archive& archive) {
    for (int y = 0; y < 7; ++y) {
        for (std::int64_t row = 0; row < archive_layout::rows_of_a_year; row += 8)
            archive.set_daten(y, static_cast<int>(row / 97 / 32), static_cast<int>(row / 97 % 32),
                              static_cast<int>(row % 97), 1, 5.0F);
    }
}

struct Kill : testing::Test {
    BlockFiles disk;
    BlockFiles::Content old_content;
    BlockFiles::Content new_content;
    std::vector<std::string> operations; // of the save alone, when nothing fails
    int seen_old = 0;
    int seen_new = 0;

    void prepare(const Change& change) {
        make_sparse_archive(disk, 30, 2);
        old_content = disk.content(archive_path);
        FaultyFiles files(disk);
        Archive archive(files);
        ASSERT_TRUE(archive.open(archive_path));
        change(archive);
        const auto before = static_cast<std::ptrdiff_t>(files.operations().size());
        ASSERT_TRUE(archive.save());
        operations.assign(files.operations().begin() + before, files.operations().end());
        new_content = disk.content(archive_path);
        ASSERT_FALSE(old_content == new_content);
    }

    void start_anew() {
        for (const std::string& name : disk.names()) (void)disk.remove(name);
        disk.set_content(archive_path, old_content);
    }

    // What changes the disk, or all of it.
    enum class Where { changes, everywhere };

    // Operations to stop at: amid long runs of equal ones, or of two in turn, one in so many.
    std::vector<std::size_t> stops(Where where, unsigned one_in) {
        std::vector<std::size_t> chosen;
        for (std::size_t i = 0; i < operations.size(); ++i) {
            const std::string& what = operations[i];
            const bool changes =
                what == "write" || what == "sync" || what == "replace" || what == "remove" || what == "open";
            if (where == Where::changes && !changes) continue;
            if (!is_amid(i) || random() % one_in == 0) chosen.push_back(i);
        }
        return chosen;
    }
    bool is_amid(std::size_t i) const {
        const auto same = [&](std::size_t a, std::size_t b) {
            return b < operations.size() && operations[a] == operations[b];
        };
        return i >= 4 && same(i - 4, i - 2) && same(i - 2, i) && same(i, i + 2) && same(i + 2, i + 4);
    }
    std::mt19937 random{20261121U + static_cast<unsigned>(testing::UnitTest::GetInstance()->random_seed())};

    void expect_old_or_new(const std::string& where) {
        {
            Archive archive(disk);
            ASSERT_TRUE(archive.open(archive_path)) << where;
            ASSERT_FALSE(archive.failed()) << where;
        }
        const BlockFiles::Content now = disk.content(archive_path);
        const bool is_old = now == old_content;
        const bool is_new = now == new_content;
        EXPECT_TRUE(is_old || is_new) << where;
        EXPECT_EQ(disk.names(), std::vector<std::string>{std::string(archive_path)}) << where;
        seen_old += is_old;
        seen_new += is_new;
    }

    void stop_everywhere(const Change& change, unsigned one_in, unsigned power_cuts) {
        prepare(change);
        for (const std::size_t i : stops(Where::changes, one_in)) {
            for (unsigned round = 0; round < 2 + power_cuts; ++round) {
                start_anew();
                {
                    FaultyFiles files(disk);
                    Archive archive(files);
                    ASSERT_TRUE(archive.open(archive_path));
                    change(archive);
                    files.stop_at(static_cast<int>(files.operations().size() + i + 1), round % 2 == 1);
                    EXPECT_FALSE(archive.save());
                }
                if (round >= 2) disk.power_cut(static_cast<std::uint32_t>(100 * i + round));
                expect_old_or_new("operation " + std::to_string(i) + " " + operations[i] + ", round " +
                                  std::to_string(round));
            }
        }
        EXPECT_GT(seen_old, 0);
    }

    // One step fails, then the user tries again.
    void fail_everywhere(const Change& change, unsigned one_in) {
        prepare(change);
        for (const std::size_t i : stops(Where::everywhere, one_in)) {
            start_anew();
            FaultyFiles files(disk);
            Archive archive(files);
            ASSERT_TRUE(archive.open(archive_path));
            change(archive);
            files.fail_at(static_cast<int>(files.operations().size() + i + 1));
            const bool saved = archive.save().ok();
            files.mend();
            if (saved) continue;
            EXPECT_TRUE(archive.save()) << i << " " << operations[i];
            EXPECT_TRUE(disk.content(archive_path) == new_content) << i << " " << operations[i];
            archive.close();
            EXPECT_EQ(disk.names(), std::vector<std::string>{std::string(archive_path)}) << i;
        }
    }
};

TEST_F(Kill, aSaveOfADayLeavesOldOrNew) {
    stop_everywhere(download_a_day, 1, 2);
    EXPECT_GT(seen_new, 0);
}
TEST_F(Kill, aSaveThatMovesTheCalculatedTracksLeavesOldOrNew) {
    stop_everywhere(rename_a_track, 1, 2);
    EXPECT_GT(seen_new, 0);
}
TEST_F(Kill, aSaveByANewFileLeavesOldOrNew) { stop_everywhere(change_most, 8, 1); }

TEST_F(Kill, aSaveOfADayCanBeTriedAgain) { fail_everywhere(download_a_day, 1); }
TEST_F(Kill, aSaveThatMovesTheCalculatedTracksCanBeTriedAgain) { fail_everywhere(rename_a_track, 1); }
TEST_F(Kill, aSaveByANewFileCanBeTriedAgain) { fail_everywhere(change_most, 32); }

TEST_F(Kill, aFullDiskLeavesTheOldFileAndTheDataInMemory) {
    for (const Change& change : {Change(download_a_day), Change(rename_a_track), Change(change_most)}) {
        start_anew();
        prepare(change);
        start_anew();
        FaultyFiles files(disk);
        Archive archive(files);
        ASSERT_TRUE(archive.open(archive_path));
        change(archive);
        files.fill_the_disk();
        const Outcome saved = archive.save();
        ASSERT_FALSE(saved);
        EXPECT_TRUE(saved.failure().is(RunTimeError::disk_full));
        EXPECT_TRUE(disk.content(archive_path) == old_content);
        files.mend();
        EXPECT_TRUE(archive.save());
        EXPECT_TRUE(disk.content(archive_path) == new_content);
    }
}

TEST_F(Kill, moreWorkAfterAFailedSaveIsSavedWithIt) {
    prepare(rename_a_track);
    for (const std::size_t i : stops(Where::everywhere, 16)) {
        start_anew();
        FaultyFiles files(disk);
        Archive archive(files);
        ASSERT_TRUE(archive.open(archive_path));
        rename_a_track(archive);
        files.fail_at(static_cast<int>(files.operations().size() + i + 1));
        (void)archive.save();
        files.mend();
        archive.set_rechdaten(7, 1, 1, 1, 1, 3.0F);
        archive.set_daten(7, 1, 1, 1, 1, 3.0F);
        archive.spurnamen[1] = "----------------";
        EXPECT_TRUE(archive.save());
        archive.spurnamen[1] = "ein längerer Name als vorher";
        archive.set_rechdaten(7, 1, 1, 1, 1, 0.0F);
        archive.set_daten(7, 1, 1, 1, 1, 0.0F);
        EXPECT_FALSE(archive.failed()) << i;
        EXPECT_TRUE(archive.save());
        EXPECT_TRUE(disk.content(archive_path) == new_content) << i << " " << operations[i];
    }
}

TEST_F(Kill, aCreationLeavesNothingOrTheWholeFile) {
    {
        FaultyFiles files(disk);
        Archive archive(files);
        ASSERT_TRUE(archive.create(archive_path, 2009, 30, some_day));
        operations = files.operations();
        new_content = disk.content(archive_path);
    }
    for (const std::size_t i : stops(Where::changes, 4)) {
        for (const unsigned round : {0U, 1U, 2U}) {
            for (const std::string& name : disk.names()) (void)disk.remove(name);
            disk.power_cut(1); // nothing is left of the one before
            {
                FaultyFiles files(disk);
                files.stop_at(static_cast<int>(i + 1), round == 1);
                Archive archive(files);
                (void)archive.create(archive_path, 2009, 30, some_day);
            }
            if (round == 2) disk.power_cut(static_cast<std::uint32_t>(i));
            const bool whole = disk.exists(archive_path) && disk.content(archive_path) == new_content;
            EXPECT_TRUE(whole || !disk.exists(archive_path)) << i << " " << operations[i];
            if (is_amid(i)) continue;
            Archive again(disk);
            EXPECT_TRUE(whole || again.create(archive_path, 2009, 30, some_day).ok());
            EXPECT_TRUE(disk.content(archive_path) == new_content) << i;
        }
    }
}

} // namespace
} // namespace velorn
