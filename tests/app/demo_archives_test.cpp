// The plant's archives, read by the program.
#include "archive/archive.h"
#include "plant/demo_archives.h"
#include "plant/quarter_values.h"
#include "runtime/disk_files.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace velorn::test {

namespace {

struct DemoArchives : testing::Test {
    static constexpr DateTime today{2026, 3, 2, 9, 7, 0, 0};
    TemporaryFolder folder;
    Paths paths{folder.path()};
    DiskFiles files{paths};
    const plant::Directory demo = plant::demo_directory();
    const plant::Site site = demo.sites()[1];
    std::string path = (folder.path() / "hallenbad-gruenau.dat").string();
    Archive archive{files};

    void write() {
        const auto written = plant::write_archives(plant::Directory({site}), folder.path().string(), today);
        ASSERT_TRUE(written);
        ASSERT_EQ(written->size(), 1U);
    }
};

} // namespace

TEST_F(DemoArchives, holdTheYearThatEndedTwoDaysAgo) {
    write();
    ASSERT_TRUE(archive.open(path));
    EXPECT_EQ(archive.spuranz, 30);
    EXPECT_EQ(archive.archivversion, 2);
    const plant::Recording recording{site.seed, site.tracks};
    const long last = days_from_civil(2026, 2, 28);
    for (int t = 1; t <= site.tracks; ++t) {
        EXPECT_EQ(archive.daten(1, 2, 28, 96, t), plant::stored(recording, t, {last, 96})) << t;
        EXPECT_EQ(archive.daten(0, 3, 1, 1, t), plant::stored(recording, t, {last - 364, 1})) << t;
    }
    EXPECT_EQ(archive.daten(1, 3, 1, 1, 1), -997.0F);
    EXPECT_EQ(archive.daten(0, 2, 28, 96, 1), -997.0F);
    const auto newest = archive.letztertag();
    EXPECT_EQ(newest.jahr * 10000 + newest.monat * 100 + newest.tag, 20260228);
}

TEST_F(DemoArchives, areByteForByteWhatTheProgramMakesOfTheSameValues) {
    write();
    ASSERT_TRUE(archive.open(path));
    Archive own(files);
    ASSERT_TRUE(own.create((folder.path() / "own.dat").string(), 2025, 30, {2026, 2, 28, 0, 0, 0, 0}));
    for (auto texts :
         {&ArchiveSettings::spurnamen, &ArchiveSettings::spureinheiten, &ArchiveSettings::spurfarben})
        own.*texts = archive.*texts;
    own.exportspuren = static_cast<std::int16_t>(site.tracks);
    for (int y : {0, 1}) {
        for (int m = 1; m <= 12; ++m) {
            for (int d = 1; d <= 31; ++d) {
                for (int q = 1; q <= 96; ++q) {
                    for (int t = 1; t <= site.tracks; ++t)
                        own.set_daten(y, m, d, q, t, archive.daten(y, m, d, q, t));
                }
            }
        }
    }
    ASSERT_TRUE(own.save());
    EXPECT_TRUE(folder.content("own.dat") == folder.content("hallenbad-gruenau.dat"));
}

TEST_F(DemoArchives, stayAsTheyAreOnceTheyHoldSomething) {
    folder.set_content("hallenbad-gruenau.dat", "mein Archiv");
    const auto written = plant::write_archives(plant::Directory({site}), folder.path().string(), today);
    ASSERT_TRUE(written);
    EXPECT_TRUE(written->empty());
    EXPECT_EQ(folder.content("hallenbad-gruenau.dat"), "mein Archiv");
}

} // namespace velorn::test
