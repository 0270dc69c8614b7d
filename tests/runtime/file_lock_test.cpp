#include "runtime/disk_files.h"
#include "runtime/text.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace velorn {
namespace {

struct FileLocks : testing::Test {
    test::TemporaryFolder folder;
    Paths paths{folder.path()};
    DiskFiles files{paths};
    std::string path = folder.stored("werk.dat");
};

TEST_F(FileLocks, aSecondHolderIsTold) {
    auto first = files.lock(path);
    ASSERT_TRUE(first);
    const auto second = files.lock(path);
    ASSERT_FALSE(second);
    EXPECT_TRUE(second.failure().is(RunTimeError::file_already_open));
    EXPECT_EQ(second.failure().text, "Datei bereits geöffnet"_w);
}

TEST_F(FileLocks, letGoItCanBeHadAgainAndLeavesNothing) {
    for (int i = 0; i < 3; ++i) EXPECT_TRUE(files.lock(path));
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_F(FileLocks, ofTwoFilesAreTwo) {
    const auto one = files.lock(path);
    EXPECT_TRUE(files.lock(folder.stored("anderes.dat")));
}

TEST_F(FileLocks, aProgramThatDiesLetsGo) {
    const pid_t child = fork();
    if (child == 0) {
        const auto held = files.lock(path);
        _exit(held ? 0 : 1);
    }
    int status = 1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(std::filesystem::exists(path + ".sperre"));
    EXPECT_TRUE(files.lock(path));
}

TEST_F(FileLocks, aMissingFolderIsTold) {
    const auto lock = files.lock(folder.stored("nirgends/werk.dat"));
    ASSERT_FALSE(lock);
    EXPECT_TRUE(lock.failure().is(RunTimeError::path_not_found));
}

} // namespace
} // namespace velorn
