// The machine stops, or a step fails, at every single operation of a save and of a creation: what is opened
// afterwards is the old archive or the new one.
#include "archive/archive.h"
#include "archive/archive_samples.h"
#include "support/faulty_files.h"

#include <functional>
#include <gtest/gtest.h>

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
        for (std::int64_t row = 0; row < archive_layout::rows_of_a_year; row += 2)
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

    // Long runs of equal operations, or of two in turn, are tested at their ends, and now and then in between
    // where `stride` says so.
    bool is_worth_it(std::size_t i, std::size_t stride) const {
        const auto same = [&](std::size_t a, std::size_t b) {
            return b < operations.size() && operations[a] == operations[b];
        };
        const bool amid =
            i >= 4 && same(i - 4, i - 2) && same(i - 2, i) && same(i, i + 2) && same(i + 2, i + 4);
        return !amid || i % stride == 0;
    }

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

    void stop_everywhere(const Change& change, std::size_t stride, unsigned power_cuts) {
        prepare(change);
        for (std::size_t i = 0; i < operations.size(); ++i) {
            if (!is_worth_it(i, stride)) continue;
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
    void fail_everywhere(const Change& change, std::size_t stride) {
        prepare(change);
        for (std::size_t i = 0; i < operations.size(); ++i) {
            if (!is_worth_it(i, stride)) continue;
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
    stop_everywhere(rename_a_track, 1000, 1);
    EXPECT_GT(seen_new, 0);
}
TEST_F(Kill, aSaveByANewFileLeavesOldOrNew) { stop_everywhere(change_most, 1000, 0); }

TEST_F(Kill, aSaveOfADayCanBeTriedAgain) { fail_everywhere(download_a_day, 1); }
TEST_F(Kill, aSaveThatMovesTheCalculatedTracksCanBeTriedAgain) { fail_everywhere(rename_a_track, 1000); }
TEST_F(Kill, aSaveByANewFileCanBeTriedAgain) { fail_everywhere(change_most, 1000); }

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
    for (std::size_t i = 0; i < operations.size(); ++i) {
        if (!is_worth_it(i, 1000)) continue;
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
    std::size_t count = 0;
    {
        FaultyFiles files(disk);
        Archive archive(files);
        ASSERT_TRUE(archive.create(archive_path, 2009, 30, some_day));
        operations = files.operations();
        count = operations.size();
        new_content = disk.content(archive_path);
    }
    for (std::size_t i = 0; i < count; ++i) {
        if (!is_worth_it(i, 1000)) continue;
        for (const bool half : {false, true}) {
            for (const std::string& name : disk.names()) (void)disk.remove(name);
            disk.power_cut(1); // nothing is left of the one before
            {
                FaultyFiles files(disk);
                files.stop_at(static_cast<int>(i + 1), half);
                Archive archive(files);
                (void)archive.create(archive_path, 2009, 30, some_day);
            }
            const bool whole = disk.exists(archive_path) && disk.content(archive_path) == new_content;
            EXPECT_TRUE(whole || !disk.exists(archive_path)) << i << " " << operations[i];
            Archive again(disk);
            EXPECT_TRUE(whole || again.create(archive_path, 2009, 30, some_day).ok());
            EXPECT_TRUE(disk.content(archive_path) == new_content) << i;
        }
    }
}

} // namespace
} // namespace velorn
