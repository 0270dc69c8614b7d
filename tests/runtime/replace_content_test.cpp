// Every step of replacing a file's content is broken once, on the disk, by a kill, a failure and a full disk.
#include "runtime/disk_files.h"
#include "support/faulty_files.h"
#include "support/memory_files.h"
#include "support/temporary_folder.h"

#include <functional>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace velorn {
namespace {

using test::FaultyFiles;
using test::MemoryFiles;
using test::TemporaryFolder;

struct Content {
    const char* subject;
    std::string old;
    std::string wanted; // what is written
    std::string fresh;  // what stands there afterwards
};

void PrintTo(const Content& content, std::ostream* out) { *out << content.subject; }

class ReplaceContent : public testing::TestWithParam<Content> {
  protected:
    TemporaryFolder folder_;
    Paths paths_{folder_.path()};
    DiskFiles disk_{paths_};
    std::string path_ = folder_.stored("einst.par");

    void SetUp() override { put_old(); }
    void put_old() { folder_.set_content("einst.par", GetParam().old); }
    std::string content() { return folder_.content("einst.par"); }
    bool neighbour_is_there() { return disk_.exists(path_ + ".neu"); }

    // Replaces in a process of its own, which `fault` prepares; gives its exit code, 0 for the end of its
    // way.
    int replace_in_a_child(const std::function<void(FaultyFiles&)>& fault) {
        const pid_t child = fork();
        if (child == 0) {
            FaultyFiles files(disk_);
            fault(files);
            _exit(replace_content(files, path_, GetParam().wanted).ok() ? 0 : 1);
        }
        int status = 0;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    void kill_at_every_operation(bool in_the_middle_of_a_write) {
        int kills = 0;
        bool old_was_seen = false;
        for (int n = 1;; ++n) {
            ASSERT_LT(n, 100);
            put_old();
            const int code =
                replace_in_a_child([&](FaultyFiles& files) { files.kill_at(n, in_the_middle_of_a_write); });
            if (code == 0) break;
            ASSERT_EQ(code, FaultyFiles::killed);
            ++kills;
            EXPECT_TRUE(content() == GetParam().old || content() == GetParam().fresh)
                << "killed at operation " << n;
            old_was_seen = old_was_seen || content() == GetParam().old;

            // What the kill left behind is in nobody's way.
            ASSERT_TRUE(replace_content(disk_, path_, GetParam().wanted).ok());
            EXPECT_EQ(content(), GetParam().fresh);
            EXPECT_FALSE(neighbour_is_there());
        }
        EXPECT_EQ(content(), GetParam().fresh);
        EXPECT_GE(kills, 5); // at least open, read, write, sync, replace
        EXPECT_TRUE(old_was_seen);
    }
};

TEST_P(ReplaceContent, leavesTheBytesOfAPlainOverwriteAndNoNeighbour) {
    ASSERT_TRUE(replace_content(disk_, path_, GetParam().wanted).ok());
    EXPECT_EQ(content(), GetParam().fresh);
    EXPECT_FALSE(neighbour_is_there());
}

TEST_P(ReplaceContent, theNeighbourHasReachedTheDiskBeforeItTakesThePlace) {
    FaultyFiles files(disk_);
    ASSERT_TRUE(replace_content(files, path_, GetParam().wanted).ok());
    EXPECT_EQ(files.operations(),
              (std::vector<std::string>{"open", "length", "read", "open", "write", "sync", "replace"}));
}

TEST_P(ReplaceContent, killedBeforeAnyOperationLeavesOldOrNew) { kill_at_every_operation(false); }

TEST_P(ReplaceContent, killedInTheMiddleOfAnyWriteLeavesOldOrNew) { kill_at_every_operation(true); }

TEST_P(ReplaceContent, anyFailureIsToldAndLeavesTheOldContent) {
    int failures = 0;
    for (int n = 1;; ++n) {
        ASSERT_LT(n, 100);
        put_old();
        FaultyFiles files(disk_);
        files.fail_from(n);
        const Outcome outcome = replace_content(files, path_, GetParam().wanted);
        if (!files.broke()) break;
        ++failures;
        ASSERT_FALSE(outcome.ok());
        EXPECT_TRUE(outcome.failure().is(RunTimeError::device_io));
        EXPECT_EQ(content(), GetParam().old) << "failed from operation " << n << " on";
    }
    EXPECT_GE(failures, 5);
    EXPECT_EQ(content(), GetParam().fresh);
}

TEST_P(ReplaceContent, aPassingFailureLeavesNoNeighbourBehind) {
    for (int n = 1;; ++n) {
        ASSERT_LT(n, 100);
        put_old();
        FaultyFiles files(disk_);
        files.fail_at(n, RunTimeError::permission_denied);
        const Outcome outcome = replace_content(files, path_, GetParam().wanted);
        if (!files.broke()) break;
        ASSERT_FALSE(outcome.ok());
        EXPECT_TRUE(outcome.failure().is(RunTimeError::permission_denied));
        EXPECT_EQ(content(), GetParam().old) << "failed at operation " << n;
        EXPECT_FALSE(neighbour_is_there());
    }
}

TEST_P(ReplaceContent, aFullDiskIsError61AndTakesNoRoomAfterwards) {
    FaultyFiles files(disk_);
    files.fill_the_disk();
    const Outcome outcome = replace_content(files, path_, GetParam().wanted);
    ASSERT_FALSE(outcome.ok());
    EXPECT_TRUE(outcome.failure().is(RunTimeError::disk_full));
    EXPECT_EQ(content(), GetParam().old);
    EXPECT_FALSE(neighbour_is_there());
}

TEST_P(ReplaceContent, aLongerNeighbourOfAnEarlierRunDoesNotShowThrough) {
    folder_.set_content("einst.par.neu", std::string(5000, '#'));
    ASSERT_TRUE(replace_content(disk_, path_, GetParam().wanted).ok());
    EXPECT_EQ(content(), GetParam().fresh);
}

const std::string large(300'000, 'n');

INSTANTIATE_TEST_SUITE_P(
    Contents, ReplaceContent,
    testing::Values(Content{"longer", "old", "the new one", "the new one"},
                    Content{"shorter", "the old one", "new", "new old one"},
                    Content{"large", std::string(400'000, 'o'), large, large + std::string(100'000, 'o')},
                    Content{"intoAnEmptyFile", "", "new", "new"}),
    [](const testing::TestParamInfo<Content>& tested) { return std::string(tested.param.subject); });

TEST(ReplaceContentOfAMissingFile, killedAtAnyOperationLeavesNoneOrTheNew) {
    TemporaryFolder folder;
    const Paths paths(folder.path());
    DiskFiles disk(paths);
    const std::string path = folder.stored("new.par");
    for (int n = 1;; ++n) {
        ASSERT_LT(n, 100);
        const pid_t child = fork();
        if (child == 0) {
            FaultyFiles files(disk);
            files.kill_at(n, true);
            _exit(replace_content(files, path, "new").ok() ? 0 : 1);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFEXITED(status));
        if (WEXITSTATUS(status) == 0) break;
        ASSERT_EQ(WEXITSTATUS(status), FaultyFiles::killed);
        EXPECT_TRUE(!disk.exists(path) || folder.content("new.par") == "new") << "killed at operation " << n;
    }
    EXPECT_EQ(folder.content("new.par"), "new");
}

TEST(ReplaceContentOfAProtectedFile, isRefusedAndLeavesNoNeighbour) {
    MemoryFiles files;
    files.set_content("c:\\einst.par", "old");
    files.make_read_only("C:\\EINST.PAR");
    EXPECT_TRUE(replace_content(files, "c:\\einst.par", "new").failure().is(RunTimeError::permission_denied));
    EXPECT_EQ(files.content("c:\\einst.par"), "old");
    EXPECT_FALSE(files.exists("c:\\einst.par.neu"));
}

TEST(AppendTo, onAFullDiskKeepsWhatStoodThere) {
    MemoryFiles memory;
    memory.set_content("c:\\a.log", "old;");
    FaultyFiles files(memory);
    files.fill_the_disk();
    EXPECT_TRUE(append_to(files, "c:\\a.log", "newest").failure().is(RunTimeError::disk_full));
    EXPECT_EQ(memory.content("c:\\a.log"), "old;new");
}

} // namespace
} // namespace velorn
