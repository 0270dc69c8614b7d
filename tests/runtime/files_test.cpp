#include "runtime/disk_files.h"
#include "runtime/files.h"
#include "support/memory_files.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <limits>
#include <sys/stat.h>

namespace velorn {
namespace {

using namespace std::string_literals;
using test::MemoryFiles;
using test::TemporaryFolder;

// What a Files promises, whether on the disk or in memory.
struct OnDisk {
    TemporaryFolder folder;
    Paths paths{folder.path()};
    DiskFiles files{paths};
    std::string path(std::string_view name) const { return folder.stored(name); }
};
struct InMemory {
    MemoryFiles files;
    std::string path(std::string_view name) const { return "c:\\velorn\\" + std::string(name); }
};

template <class Make>
class AnyFiles : public testing::Test {
  protected:
    Make make_;
    Files& files_ = make_.files;
    std::string a_ = make_.path("a.par");
    std::string b_ = make_.path("b.par");

    std::string whole(const std::string& path) { return read_whole(files_, path).value(); }
    std::unique_ptr<BinaryFile> open(OpenMode mode) { return files_.open(a_, mode).value(); }
    void fill(const std::string& path, std::string_view bytes) {
        ASSERT_TRUE(files_.open(path, OpenMode::create).value()->write(1, bytes).ok());
    }
};

using Makes = testing::Types<OnDisk, InMemory>;
TYPED_TEST_SUITE(AnyFiles, Makes);

TYPED_TEST(AnyFiles, aMissingFileIsError53AndIsNotCreatedByReading) {
    EXPECT_TRUE(this->files_.open(this->a_, OpenMode::read).failure().is(RunTimeError::file_not_found));
    EXPECT_FALSE(this->files_.exists(this->a_));
}

TYPED_TEST(AnyFiles, positionsCountFromOne) {
    this->fill(this->a_, "abcdef");
    EXPECT_EQ(this->open(OpenMode::read)->read(1, 2).value(), "ab");
    EXPECT_EQ(this->open(OpenMode::read)->read(6, 1).value(), "f");
}

TYPED_TEST(AnyFiles, readingEndsWithTheFile) {
    this->fill(this->a_, "abcdef");
    const auto file = this->open(OpenMode::read);
    EXPECT_EQ(file->read(5, 100).value(), "ef");
    EXPECT_EQ(file->read(7, 1).value(), "");
    EXPECT_EQ(file->read(std::numeric_limits<std::int64_t>::max(), 1).value(), "");
    EXPECT_EQ(file->read(2, std::numeric_limits<std::int64_t>::max()).value(), "bcdef");
}

TYPED_TEST(AnyFiles, aPositionBelowOneIsAnInvalidCall) {
    const auto file = this->open(OpenMode::read_write);
    EXPECT_TRUE(file->read(0, 1).failure().is(RunTimeError::invalid_call));
    EXPECT_TRUE(file->read(1, -1).failure().is(RunTimeError::invalid_call));
    EXPECT_TRUE(file->write(0, "x").failure().is(RunTimeError::invalid_call));
}

TYPED_TEST(AnyFiles, theBinaryModeNeverShortensAFile) {
    this->fill(this->a_, "abcdef");
    ASSERT_TRUE(this->open(OpenMode::read_write)->write(2, "XY").ok());
    EXPECT_EQ(this->whole(this->a_), "aXYdef");
}

TYPED_TEST(AnyFiles, aGapBehindTheEndIsFilledWithZeros) {
    this->fill(this->a_, "ab");
    ASSERT_TRUE(this->open(OpenMode::read_write)->write(5, "c").ok());
    EXPECT_EQ(this->whole(this->a_), "ab\0\0c"s);
}

TYPED_TEST(AnyFiles, appendingLooksAtNoPosition) {
    this->fill(this->a_, "ab");
    const auto file = this->open(OpenMode::append);
    ASSERT_TRUE(file->write(1, "cd").ok());
    ASSERT_TRUE(file->write(1, "ef").ok());
    EXPECT_EQ(this->whole(this->a_), "abcdef");
    EXPECT_EQ(file->length().value(), 6);
}

TYPED_TEST(AnyFiles, creatingEmptiesAFile) {
    this->fill(this->a_, "abcdef");
    EXPECT_EQ(this->open(OpenMode::create)->length().value(), 0);
}

TYPED_TEST(AnyFiles, writingToAFileOpenForReadingFails) {
    this->fill(this->a_, "ab");
    EXPECT_FALSE(this->open(OpenMode::read)->write(1, "x").ok());
    EXPECT_EQ(this->whole(this->a_), "ab");
}

TYPED_TEST(AnyFiles, replacingMovesAFileOverAnother) {
    this->fill(this->a_, "old");
    this->fill(this->b_, "new");
    ASSERT_TRUE(this->files_.replace(this->b_, this->a_).ok());
    EXPECT_EQ(this->whole(this->a_), "new");
    EXPECT_FALSE(this->files_.exists(this->b_));
}

TYPED_TEST(AnyFiles, replacingByWhatIsMissingLeavesTheFile) {
    this->fill(this->a_, "old");
    EXPECT_TRUE(this->files_.replace(this->b_, this->a_).failure().is(RunTimeError::file_not_found));
    EXPECT_EQ(this->whole(this->a_), "old");
}

TYPED_TEST(AnyFiles, aRemovedFileIsGoneAndCannotBeRemovedAgain) {
    this->fill(this->a_, "ab");
    EXPECT_TRUE(this->files_.remove(this->a_).ok());
    EXPECT_TRUE(this->files_.remove(this->a_).failure().is(RunTimeError::file_not_found));
}

TYPED_TEST(AnyFiles, ensuringAFileCreatesItOnceAndKeepsItThen) {
    ASSERT_TRUE(ensure_exists(this->files_, this->a_).ok());
    EXPECT_EQ(this->whole(this->a_), "");
    this->fill(this->a_, "ab");
    ASSERT_TRUE(ensure_exists(this->files_, this->a_).ok());
    EXPECT_EQ(this->whole(this->a_), "ab");
}

TYPED_TEST(AnyFiles, appendToCreatesAndThenContinues) {
    ASSERT_TRUE(append_to(this->files_, this->a_, "one").ok());
    ASSERT_TRUE(append_to(this->files_, this->a_, "two").ok());
    EXPECT_EQ(this->whole(this->a_), "onetwo");
}

class OnTheDisk : public testing::Test {
  protected:
    TemporaryFolder folder_;
    Paths paths_{folder_.path()};
    DiskFiles files_{paths_};
};

TEST_F(OnTheDisk, aMissingFolderIsError76) {
    const std::string path = folder_.stored("none/a.par");
    for (const OpenMode mode : {OpenMode::read, OpenMode::read_write, OpenMode::append, OpenMode::create}) {
        EXPECT_TRUE(files_.open(path, mode).failure().is(RunTimeError::path_not_found));
    }
    EXPECT_TRUE(replace_content(files_, path, "x").failure().is(RunTimeError::path_not_found));
}

TEST_F(OnTheDisk, aFolderIsNoFile) {
    for (const OpenMode mode : {OpenMode::read, OpenMode::read_write, OpenMode::append, OpenMode::create}) {
        EXPECT_TRUE(files_.open(folder_.stored(""), mode).failure().is(RunTimeError::path_file_access));
    }
    EXPECT_FALSE(ensure_exists(files_, folder_.stored("")).ok());
}

TEST_F(OnTheDisk, belowAFileNothingCanBeReachedOrMade) {
    folder_.set_content("file", "ab");
    const std::string path = folder_.stored("file/a.par");
    EXPECT_TRUE(replace_content(files_, path, "x").failure().is(RunTimeError::path_file_access));
    EXPECT_TRUE(append_to(files_, path, "x").failure().is(RunTimeError::path_file_access));
    EXPECT_TRUE(ensure_exists(files_, path).failure().is(RunTimeError::path_file_access));
    EXPECT_TRUE(files_.make_folder(path).failure().is(RunTimeError::path_file_access));
    EXPECT_EQ(folder_.content("file"), "ab");
}

TEST_F(OnTheDisk, foldersAreMadeWithThoseAboveThemAndTwiceIsFine) {
    EXPECT_TRUE(files_.make_folder(folder_.stored("a/b/c")).ok());
    EXPECT_TRUE(files_.make_folder(folder_.stored("a/b/c")).ok());
    EXPECT_TRUE(append_to(files_, folder_.stored("a/b/c/d"), "x").ok());
}

TEST_F(OnTheDisk, aPathWithAZeroByteReachesNoFile) {
    folder_.set_content("a", "ab");
    const std::string path = folder_.stored("a\0b"s);
    EXPECT_TRUE(files_.open(path, OpenMode::create).failure().is(RunTimeError::path_file_access));
    EXPECT_FALSE(files_.remove(path).ok());
    EXPECT_FALSE(files_.exists(path));
    EXPECT_EQ(folder_.content("a"), "ab");
}

TEST_F(OnTheDisk, aNameThatIsTooLongIsError75) {
    EXPECT_TRUE(append_to(files_, folder_.stored(std::string(5000, 'x')), "x")
                    .failure()
                    .is(RunTimeError::path_file_access));
}

TEST_F(OnTheDisk, aDeviceOrPipeIsNoFileAndKeepsNobodyWaiting) {
    ASSERT_EQ(mkfifo(folder_.stored("pipe").c_str(), 0600), 0);
    EXPECT_TRUE(read_whole(files_, folder_.stored("pipe")).failure().is(RunTimeError::path_file_access));
    EXPECT_TRUE(append_to(files_, "/dev/null", "x").failure().is(RunTimeError::path_file_access));
}

TEST_F(OnTheDisk, whatTheDiskCannotHoldIsAnErrorAndNoCrash) {
    const std::string path = folder_.stored("a.dat");
    const auto file = files_.open(path, OpenMode::read_write).value();
    EXPECT_FALSE(file->write(std::numeric_limits<std::int64_t>::max(), "xy").ok());
    EXPECT_EQ(file->length().value(), 0);
}

TEST_F(OnTheDisk, aFileTooLargeToBeReadAsAWholeIsRefusedBeforeMemoryIsTaken) {
    const std::string path = folder_.stored("large.log");
    ASSERT_TRUE(ensure_exists(files_, path).ok());
    std::filesystem::resize_file(path, static_cast<std::uintmax_t>(largest_whole_file) + 1); // a sparse one
    EXPECT_TRUE(read_whole(files_, path).failure().is(RunTimeError::path_file_access));
}

TEST_F(OnTheDisk, replacingKeepsPermissionsAndWhatALinkLeadsTo) {
    namespace fs = std::filesystem;
    folder_.set_content("real", "old");
    fs::permissions(folder_.path() / "real", fs::perms::owner_read | fs::perms::owner_write);
    fs::create_symlink("real", folder_.path() / "link");
    ASSERT_TRUE(replace_content(files_, folder_.stored("link"), "new").ok());
    EXPECT_EQ(folder_.content("real"), "new");
    EXPECT_TRUE(fs::is_symlink(folder_.path() / "link"));
    EXPECT_EQ(fs::status(folder_.path() / "real").permissions(),
              fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(OnTheDisk, anUmlautInAStoredNameIsTheSameUmlautOnTheDisk) {
    ASSERT_TRUE(append_to(files_, folder_.stored("Anschlu\xDF.txt"), "x").ok());
    EXPECT_TRUE(std::filesystem::exists(folder_.path() / "Anschluß.txt"));
}

} // namespace
} // namespace velorn
