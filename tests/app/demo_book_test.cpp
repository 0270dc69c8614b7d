// The plant's phone book, laid down by the plant's own hand, as the program reads it.
#include "phonebook/address.h"
#include "phonebook/phonebook_files.h"
#include "plant/demo_book.h"
#include "runtime/text.h"
#include "support/test_program.h"

#include <gtest/gtest.h>

namespace velorn::test {

namespace {

struct TheDemoBook : testing::Test {
    TestProgram p;
    plant::Directory directory = plant::demo_directory();
    const std::string bytes = plant::phone_book(directory, {true, "c:\\bild.exe"});

    TheDemoBook() {
        p.start();
        p.settings.telefonpfad = "c:\\telefon.par";
        p.files.set_content("c:\\telefon.par", bytes);
        p.program.phonebook_files.read_telefonbuch();
    }
    const PhoneEntry& entry(std::size_t site) const {
        return p.program.telefonbuch[static_cast<int>(site) + 1];
    }
    std::span<const plant::Site> sites() const { return directory.sites(); }
};

} // namespace

TEST_F(TheDemoBook, holdsTheSitesOfTheDirectory) {
    for (std::size_t i = 0; i < sites().size(); ++i) {
        const plant::Site& site = sites()[i];
        EXPECT_EQ(utf8_from_cp1252(entry(i).name.text()), site.name);
        EXPECT_EQ(entry(i).nummer.text(), site.route == plant::Route::tcp ? site.address : site.number);
        EXPECT_EQ(entry(i).bemerkung.text(), plant::remark(site));
        EXPECT_EQ(entry(i).pos, static_cast<int>(i) + 1);
        EXPECT_EQ(entry(i).datum, 32874.0);
    }
}

TEST_F(TheDemoBook, sendsEachSiteOnItsCustomaryRoute) {
    for (std::size_t i = 0; i < sites().size(); ++i) {
        const plant::Site& site = sites()[i];
        const bool address = is_address(entry(i).nummer.text());
        EXPECT_EQ(address, site.route == plant::Route::tcp) << site.name;
        if (!address) continue;
        EXPECT_EQ(port_of(entry(i).bemerkung.text(), "80").value(), site.port) << site.name;
    }
}

TEST_F(TheDemoBook, marksWhoTakesPartInCollections) {
    for (std::size_t i = 0; i < sites().size(); ++i) {
        const bool reachable = sites()[i].behaviour == plant::Behaviour::connects;
        EXPECT_EQ(entry(i).autoflag, reachable ? Telefonbuch::collected : 0);
    }
}

TEST_F(TheDemoBook, leavesTheSampleLineAndAllBehindTheSitesFree) {
    EXPECT_TRUE(p.program.telefonbuch[0].name.empty());
    EXPECT_TRUE(p.program.telefonbuch[13].name.empty());
    EXPECT_TRUE(p.program.telefonbuch[2010].bemerkung.empty());
}

TEST_F(TheDemoBook, isWrittenBackByteForByte) {
    p.program.phonebook_files.save_telefonbuch();
    EXPECT_EQ(p.files.content("c:\\telefon.par"), bytes);
}

TEST_F(TheDemoBook, showsItsProtocolFileAndItsVisualisation) {
    p.files.set_content(entry(2).protdatei.text(), plant::first_protocol_line({2026, 11, 15, 0, 0, 0, 0}));
    p.program.phonebook_window.Form_Load();
    p.program.frmtelefon.zeilen[3].Picture1.Click();
    EXPECT_TRUE(p.module1.protokollan);
    EXPECT_TRUE(p.program.frmtelefon.zeilen[3].visthumb.Visible);
    EXPECT_FALSE(p.program.frmtelefon.zeilen[4].visthumb.Visible);
}

} // namespace velorn::test
