#include "runtime/paths.h"
#include "runtime/text.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace velorn {
namespace {

using test::TemporaryFolder;
namespace fs = std::filesystem;

TEST(Paths, aDriveWithoutAnEntryLeadsBelowTheProgramsFolderAndIsCreatedOnFirstUse) {
    const TemporaryFolder folder;
    const Paths paths(folder.path());
    EXPECT_FALSE(fs::exists(folder.path() / "laufwerke"));
    EXPECT_EQ(paths.native("C:\\velorn\\einst.par"), folder.path() / "laufwerke/c/velorn/einst.par");
    EXPECT_TRUE(fs::is_directory(folder.path() / "laufwerke/c"));
    EXPECT_FALSE(fs::exists(folder.path() / "laufwerke/c/velorn"));
}

TEST(Paths, aDriveLeadsToTheFolderNamedForIt) {
    const TemporaryFolder folder;
    const Paths paths(folder.path(), {{'s', "/srv/logs"}, {'d', "daten/Prüfstand"}});
    EXPECT_EQ(paths.native("S:\\heute\\a.log"), "/srv/logs/heute/a.log");
    EXPECT_EQ(paths.native("d:\\a.log"), folder.path() / "daten/Prüfstand/a.log");
    EXPECT_FALSE(fs::exists(folder.path() / "laufwerke"));
}

TEST(Paths, anEmptyFolderForADriveIsTheDefault) {
    const TemporaryFolder folder;
    EXPECT_EQ(Paths(folder.path(), {{'c', ""}}).native("c:\\a"), folder.path() / "laufwerke/c/a");
}

TEST(Paths, aDriveAloneIsItsFolder) {
    const TemporaryFolder folder;
    const Paths paths(folder.path());
    EXPECT_EQ(paths.native("c:"), folder.path() / "laufwerke/c");
    EXPECT_EQ(paths.native("c:\\"), folder.path() / "laufwerke/c");
    EXPECT_EQ(paths.native("c:a.log"), folder.path() / "laufwerke/c/a.log");
}

TEST(Paths, doubledSeparatorsBehindADriveDoNotLeaveIt) {
    const TemporaryFolder folder;
    EXPECT_EQ(Paths(folder.path()).native("c:\\\\a.log"), folder.path() / "laufwerke/c/a.log");
}

TEST(Paths, theSystemsOwnPathsStayWhatTheyAre) {
    EXPECT_EQ(Paths("/opt/velorn").native("/home/a/b.log"), "/home/a/b.log");
    EXPECT_EQ(Paths("/opt/velorn").native("/opt/velorn\\einst.par"), "/opt/velorn/einst.par");
}

TEST(Paths, onlyALetterMakesADrive) {
    EXPECT_EQ(Paths("/opt/velorn").native("1:\\a"), "1:/a");
    EXPECT_EQ(Paths("/opt/velorn").native("\xE4:\\a"), "ä:/a");
}

TEST(Paths, allThatADamagedFileMayHoldIsMappedWithoutHarm) {
    const TemporaryFolder folder;
    const Paths paths(folder.path());
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
    EXPECT_EQ(paths.native(""), "");
    EXPECT_FALSE(paths.native(bytes).empty());
    EXPECT_FALSE(paths.native("c:" + bytes).empty());
}

TEST(Paths, aFolderOfADriveThatCannotBeCreatedShowsOnlyWhenAFileIsOpened) {
    const TemporaryFolder folder;
    folder.set_content("laufwerke", "a file where a folder is wanted");
    EXPECT_EQ(Paths(folder.path()).native("c:\\a"), folder.path() / "laufwerke/c/a");
}

TEST(Paths, aStoredPathComesBack) {
    const Paths paths("/opt/velorn");
    for (const std::string& path : {std::string("/home/x/Größe €.log"), std::string("/tmp/a b")}) {
        EXPECT_EQ(paths.native(Paths::stored(path).value()), path);
    }
    EXPECT_EQ(Paths::stored("/Größe"), "/Gr\xF6\xDF"
                                       "e");
}

TEST(Paths, aNameThatCannotComeBackIsNotStored) {
    EXPECT_FALSE(Paths::stored("/home/x/日本.log"));
    EXPECT_FALSE(Paths::stored("/home/x/\xFF.log"));
    EXPECT_FALSE(Paths::stored("/home/x/a\\b.log"));
}

TEST(Paths, areSplitAtEitherSeparator) {
    EXPECT_EQ(folder_of("c:\\velorn\\a.log"), "c:\\velorn");
    EXPECT_EQ(name_of("c:\\velorn\\a.log"), "a.log");
    EXPECT_EQ(folder_of("/home/x\\a.log"), "/home/x");
    EXPECT_EQ(folder_of("/home\\x/a.log"), "/home\\x");
    EXPECT_EQ(name_of("/home\\x/a.log"), "a.log");
}

TEST(Paths, withoutASeparatorAreANameOnly) {
    EXPECT_EQ(folder_of("a.log"), "");
    EXPECT_EQ(name_of("a.log"), "a.log");
    EXPECT_EQ(name_of("c:\\"), "");
    EXPECT_EQ(name_of(""), "");
}

} // namespace
} // namespace velorn
