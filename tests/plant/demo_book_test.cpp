#include "plant/demo_book.h"
#include "runtime/text.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>
#include <string>

namespace velorn::plant {
namespace {

using ::testing::HasSubstr;

constexpr std::size_t old_size = 30; // 2 + 5 empty tags of 2 + 18
constexpr std::size_t unused_size = old_size + 11 * 2;
constexpr DateTime today{2026, 11, 5, 9, 7, 0, 0};

std::string zeros(std::size_t count) { return std::string(count, '\0'); }
std::string text(std::string_view bytes) {
    return std::string{'\x08', '\0', static_cast<char>(bytes.size()), '\0'} + std::string(bytes);
}

Directory two_sites() {
    Site near;
    near.name = "Mühle";
    near.address = "127.0.1.3";
    near.port = 1100;
    Site far;
    far.name = "Höhe";
    far.number = "05550 12";
    far.route = Route::gateway;
    far.behaviour = Behaviour::busy;
    return Directory({near, far});
}

TEST(PhoneBookOfThePlant, laysDownARecordByteForByte) {
    const std::string book = phone_book(two_sites(), {true, "c:\\v.exe"});
    const std::string first =
        std::string("\x01\x00", 2) + text("M\xFChle") + text("127.0.1.3") + text("") +
        text("c:\\protokolle\\muehle.txt") + text("port 1100") + std::string("\x08\x00", 2) + zeros(8) +
        std::string("\x00\x00\x00\x00\x40\x0D\xE0\x40", 8) + text("") + text("") + zeros(18);
    EXPECT_EQ(book.substr(601 * old_size + unused_size, first.size()), first);
    const std::string second = std::string("\x02\x00", 2) + text("H\xF6he") + text("05550 12");
    EXPECT_EQ(book.substr(601 * old_size + unused_size + first.size(), second.size()), second);
}

TEST(PhoneBookOfThePlant, leavesAllOtherRecordsAsNeverUsed) {
    const std::string book = phone_book(two_sites(), {});
    EXPECT_EQ(book.substr(0, 601 * old_size + unused_size), zeros(601 * old_size + unused_size));
    constexpr std::size_t behind = 2008 * unused_size;
    EXPECT_EQ(book.substr(book.size() - behind), zeros(behind));
    EXPECT_EQ(phone_book(Directory(), {}), zeros(601 * old_size + 2011 * unused_size));
}

TEST(PhoneBookOfThePlant, hasNoProtocolFilesUnlessTheyAreWanted) {
    EXPECT_THAT(phone_book(two_sites(), {true, ""}), HasSubstr("protokolle"));
    EXPECT_EQ(phone_book(two_sites(), {false, ""}).find("protokolle"), std::string::npos);
}

TEST(PhoneBookOfThePlant, namesTheArchivesOfTheSitesThatTakePart) {
    EXPECT_THAT(phone_book(two_sites(), {true, "", true}), HasSubstr(text("c:\\archive\\muehle.dat")));
    EXPECT_EQ(phone_book(two_sites(), {true, "", true}).find("hoehe.dat"), std::string::npos) << "busy";
    EXPECT_EQ(phone_book(two_sites(), {}).find("archive"), std::string::npos);
}

TEST(PhoneBookOfThePlant, givesTheVisualisationToOneSite) {
    const std::string book = phone_book(demo_directory(), {false, "c:\\bild.exe"});
    const std::string site = text("Krankenhaus Sankt J\xF6rg") + text("127.0.1.3") + text("c:\\bild.exe");
    EXPECT_THAT(book, HasSubstr(site));
    EXPECT_EQ(book.find("bild.exe"), book.rfind("bild.exe"));
}

TEST(Remarks, carryTheKeywordsThatTheSiteNeeds) {
    const Directory directory = demo_directory();
    const auto sites = directory.sites();
    EXPECT_EQ(remark(sites[0]), "port 23, Anmeldung service");
    EXPECT_EQ(remark(sites[3]), "port 2001");
    EXPECT_EQ(remark(sites[4]), "port 10100");
    EXPECT_EQ(remark(sites[7]), "Modem 19200");
    EXPECT_EQ(remark(sites[5]), "über Gateway"_w);
    EXPECT_EQ(remark(sites[9]), std::string("über Gateway"_w) + ", besetzt");
    EXPECT_EQ(remark(sites[10]), "port 1100, lehnt ab");
    EXPECT_EQ(remark(sites[11]), "port 1100, antwortet nie");
}

TEST(ProtocolFiles, haveNamesOfTheirOwnInAscii) {
    std::set<std::string> names;
    const Directory directory = demo_directory();
    for (const Site& site : directory.sites()) names.insert(protocol_name(site));
    EXPECT_EQ(names.size(), 12U);
    EXPECT_TRUE(names.contains("klaerwerk-sued.txt"));
    EXPECT_TRUE(names.contains("brauerei-roessler.txt"));
    EXPECT_TRUE(names.contains("schule-loewenstrasse.txt"));
}

TEST(ProtocolFiles, beginWithTagAndLengthOfTheirFirstLine) {
    EXPECT_EQ(first_protocol_line(today),
              std::string("\x08\x00\x1C\x00", 4) + "neu angelegt am:  05.11.2026\r\n");
}

struct ABookOnDisk : testing::Test {
    test::TemporaryFolder folder;
    BookOrder order{(folder.path() / "demo" / "telefon.par").string(),
                    (folder.path() / "c" / "protokolle").string(), ""};

    std::size_t written() {
        const auto files = write_phone_book(demo_directory(), order, today);
        return files ? files->size() : 1000;
    }
};

TEST_F(ABookOnDisk, comesWithItsFoldersAndProtocolFiles) {
    EXPECT_EQ(written(), 13U);
    EXPECT_EQ(folder.content("demo/telefon.par"), phone_book(demo_directory(), {true, ""}));
    EXPECT_EQ(folder.content("c/protokolle/rathaus-oberuelz.txt"), first_protocol_line(today));
    EXPECT_FALSE(std::filesystem::exists(order.file + ".neu"));
}

TEST_F(ABookOnDisk, staysAsItIsOnceSomebodyWorksWithIt) {
    std::filesystem::create_directories(folder.path() / "demo");
    folder.set_content("demo/telefon.par", "mein Buch");
    EXPECT_EQ(written(), 12U);
    EXPECT_EQ(folder.content("demo/telefon.par"), "mein Buch");
    EXPECT_EQ(written(), 0U);
}

TEST_F(ABookOnDisk, takesThePlaceOfAnEmptyFile) {
    std::filesystem::create_directories(folder.path() / "demo");
    folder.set_content("demo/telefon.par", "");
    EXPECT_EQ(written(), 13U);
    EXPECT_FALSE(folder.content("demo/telefon.par").empty());
}

TEST_F(ABookOnDisk, thatCannotBeWrittenIsToldAndLeavesTheRest) {
    folder.set_content("demo", "x"); // a file where the folder should be
    EXPECT_EQ(written(), 1000U);
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "c"));
}

} // namespace
} // namespace velorn::plant
