#include "archive/archive_samples.h"
#include "archive/download_diary.h"
#include "support/faulty_files.h"

#include <gtest/gtest.h>

namespace velorn {
namespace {

using test::archive_path;
using test::BlockFiles;
using test::FaultyFiles;
using test::make_sparse_archive;

const std::string diary_path = std::string(archive_path) + ".tagebuch";

struct Diary : testing::Test {
    BlockFiles disk;

    Diary() { make_sparse_archive(disk, 30, 2); }

    // Adds quarters 1 to `count` of 5.4. of the third year, and gives how many were acknowledged.
    int download(Files& files, int count, float value = 0.5F) {
        Archive archive(files);
        DownloadDiary diary(files);
        EXPECT_TRUE(archive.open(archive_path));
        diary.take_over(archive);
        int added = 0;
        if (!diary.begin(archive)) return 0;
        for (int q = 1; q <= count; ++q) {
            const std::array<float, 3> values{value, static_cast<float>(q), -999.0F};
            if (!diary.add(2, 4, 5, q, values)) break;
            ++added;
        }
        return added;
    }
    int taken_over(int count, float value = 0.5F) {
        Archive archive(disk);
        DownloadDiary diary(disk);
        EXPECT_TRUE(archive.open(archive_path));
        const int taken = diary.take_over(archive);
        for (int q = 1; q <= 96; ++q) {
            EXPECT_EQ(archive.daten(2, 4, 5, q, 1), q <= count ? value : 0.0F) << q;
            EXPECT_EQ(archive.daten(2, 4, 5, q, 2), q <= count ? static_cast<float>(q) : 0.0F) << q;
            EXPECT_EQ(archive.daten(2, 4, 5, q, 3), q <= count ? -999.0F : 0.0F) << q;
        }
        return taken;
    }
};

TEST_F(Diary, whatWasAcknowledgedIsTakenOverAtTheNextOpening) {
    download(disk, 40);
    EXPECT_EQ(taken_over(40), 40);
    EXPECT_EQ(taken_over(40), 40); // until it is dropped
}

TEST_F(Diary, droppedItIsGone) {
    download(disk, 3);
    Archive archive(disk);
    DownloadDiary diary(disk);
    ASSERT_TRUE(archive.open(archive_path));
    EXPECT_EQ(diary.take_over(archive), 3);
    ASSERT_TRUE(archive.save());
    EXPECT_TRUE(diary.drop());
    EXPECT_FALSE(disk.exists(diary_path));
    EXPECT_TRUE(diary.drop());
    EXPECT_EQ(diary.take_over(archive), 0);
}

TEST_F(Diary, aSecondDownloadGoesOnBehindTheFirst) {
    download(disk, 5);
    download(disk, 7);
    EXPECT_EQ(taken_over(7), 12);
}

TEST_F(Diary, aTornEndIsNotTaken) {
    download(disk, 5);
    const std::int64_t length = disk.length(diary_path);
    const std::int64_t record = 6 + 3 * 4 + 8;
    for (std::int64_t cut = 1; cut < record; ++cut) {
        disk.set_length(diary_path, length - cut);
        EXPECT_EQ(taken_over(4), 4) << cut;
    }
}

TEST_F(Diary, aDownloadGoesOverATornEnd) {
    download(disk, 5);
    disk.set_length(diary_path, disk.length(diary_path) - 3);
    download(disk, 6, 2.5F);
    EXPECT_EQ(taken_over(6, 2.5F), 10);
}

TEST_F(Diary, aGarbledRecordEndsIt) {
    download(disk, 5);
    const std::string bytes = test::whole(disk, diary_path);
    for (std::size_t i = 28; i < bytes.size(); ++i) {
        disk.set_bytes(diary_path, static_cast<std::int64_t>(i),
                       std::string(1, static_cast<char>(~bytes[i])));
        const int whole_ones = static_cast<int>((i - 28) / 26);
        EXPECT_EQ(taken_over(whole_ones), whole_ones) << i;
        disk.set_bytes(diary_path, static_cast<std::int64_t>(i), bytes.substr(i, 1));
    }
}

TEST_F(Diary, oneOfAnotherArchiveIsNotTakenAndGoneAtTheNextDownload) {
    download(disk, 5);
    {
        Archive archive(disk);
        ASSERT_TRUE(archive.open(archive_path));
        archive.startjahr = std::int16_t{2015};
        ASSERT_TRUE(archive.save());
    }
    EXPECT_EQ(taken_over(0), 0);
    download(disk, 2);
    EXPECT_EQ(taken_over(2), 2);
}

TEST_F(Diary, oneOfAnotherArchiveStaysWhereThisOneWasNotReadAsAWhole) {
    download(disk, 5);
    const std::string before = test::whole(disk, diary_path);
    Archive archive(disk);
    DownloadDiary diary(disk);
    ASSERT_TRUE(archive.open(archive_path));
    archive.startjahr = Variant(); // as a damaged load leaves it
    EXPECT_FALSE(diary.begin(archive, false));
    EXPECT_TRUE(diary.add(2, 4, 5, 6, std::array<float, 1>{1.0F}));
    EXPECT_TRUE(diary.drop());
    archive.close();
    EXPECT_EQ(test::whole(disk, diary_path), before);
    EXPECT_EQ(taken_over(5), 5);
}

TEST_F(Diary, oneThatCouldNotBeReadOutlivesTheNextSave) {
    download(disk, 5);
    int opening = 0, taking = 0;
    {
        FaultyFiles files(disk);
        Archive archive(files);
        DownloadDiary diary(files);
        ASSERT_TRUE(archive.open(archive_path));
        opening = static_cast<int>(files.operations().size());
        diary.take_over(archive);
        taking = static_cast<int>(files.operations().size());
    }
    for (int n = opening + 1; n <= taking; ++n) {
        FaultyFiles files(disk);
        Archive archive(files);
        DownloadDiary diary(files);
        ASSERT_TRUE(archive.open(archive_path));
        files.fail_at(n);
        diary.take_over(archive);
        files.mend();
        const bool seen = archive.daten(2, 4, 5, 5, 2) == 5.0F;
        (void)diary.begin(archive);
        EXPECT_TRUE(archive.save());
        EXPECT_TRUE(diary.drop());
        archive.close();
        EXPECT_TRUE(seen || disk.exists(diary_path)) << n;
        make_sparse_archive(disk, 30, 2);
        if (!seen) {
            EXPECT_EQ(taken_over(5), 5) << n;
        }
        (void)disk.remove(diary_path);
        download(disk, 5);
    }
}

TEST_F(Diary, anythingElseUnderItsNameIsNotTaken) {
    for (const std::string& bytes : {std::string(), std::string("VLNTAGEB"), std::string(100000, 'x')}) {
        disk.set_content(diary_path, {});
        disk.set_bytes(diary_path, 0, bytes);
        EXPECT_EQ(taken_over(0), 0);
    }
    download(disk, 2);
    EXPECT_EQ(taken_over(2), 2);
}

TEST_F(Diary, addingWithoutABeginDoesNothing) {
    DownloadDiary diary(disk);
    EXPECT_TRUE(diary.add(0, 1, 1, 1, std::array<float, 1>{1.0F}));
    EXPECT_FALSE(disk.exists(diary_path));
}

TEST_F(Diary, aMachineThatStopsAnywhereLosesNothingAcknowledged) {
    int operations = 0;
    {
        FaultyFiles files(disk);
        download(files, 4);
        operations = static_cast<int>(files.operations().size());
    }
    int opening = 0; // operations before the diary's first
    {
        FaultyFiles files(disk);
        Archive archive(files);
        DownloadDiary diary(files);
        ASSERT_TRUE(archive.open(archive_path));
        opening = static_cast<int>(files.operations().size());
    }
    for (int n = opening + 1; n <= operations; ++n) {
        for (const bool half : {false, true}) {
            (void)disk.remove(diary_path);
            FaultyFiles files(disk);
            files.stop_at(n, half);
            const int added = download(files, 4);
            EXPECT_EQ(taken_over(added), added) << n;
        }
    }
}

TEST_F(Diary, ofASecondDownloadNothingIsLostEither) {
    download(disk, 3);
    const BlockFiles::Content first = disk.content(diary_path);
    int operations = 0;
    {
        FaultyFiles files(disk);
        download(files, 5);
        operations = static_cast<int>(files.operations().size());
    }
    for (int n = operations; n > operations - 12; --n) {
        for (const bool half : {false, true}) {
            disk.set_content(diary_path, first);
            FaultyFiles files(disk);
            files.stop_at(n, half);
            const int added = download(files, 5);
            EXPECT_EQ(taken_over(std::max(added, 3)), 3 + added) << n;
        }
    }
}

// Nothing is synced: what is left are the data sets from the first on, up to any.
TEST_F(Diary, aPowerCutLeavesABeginningOfIt) {
    for (std::uint32_t seed = 0; seed < 40; ++seed) {
        disk.set_content(diary_path, {});
        (void)disk.remove(diary_path);
        const int added = download(disk, 30);
        disk.power_cut(seed);
        Archive archive(disk);
        DownloadDiary diary(disk);
        ASSERT_TRUE(archive.open(archive_path));
        const int taken = diary.take_over(archive);
        EXPECT_LE(taken, added);
        for (int q = 1; q <= 30; ++q)
            EXPECT_EQ(archive.daten(2, 4, 5, q, 2), q <= taken ? static_cast<float>(q) : 0.0F) << q;
    }
}

TEST_F(Diary, aRecordThatFailedIsWrittenOverByTheNext) {
    FaultyFiles files(disk);
    Archive archive(files);
    DownloadDiary diary(files);
    ASSERT_TRUE(archive.open(archive_path));
    ASSERT_TRUE(diary.begin(archive));
    const std::array<float, 3> first{0.5F, 1.0F, -999.0F};
    files.fill_the_disk();
    EXPECT_FALSE(diary.add(2, 4, 5, 1, first));
    files.mend();
    EXPECT_TRUE(diary.add(2, 4, 5, 1, first));
    archive.close();
    EXPECT_EQ(taken_over(1), 1);
}

} // namespace
} // namespace velorn
