#include "runtime/velorn_ini.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace velorn {
namespace {

using test::TemporaryFolder;
namespace fs = std::filesystem;

class Ini : public testing::Test {
  protected:
    TemporaryFolder folder_;
    VelornIni load() const { return VelornIni::load(folder_.path() / "velorn.ini"); }
    std::string text() const { return folder_.content("velorn.ini"); }
    void put(std::string_view text) const { folder_.set_content("velorn.ini", text); }

    // What the file holds after a place was remembered.
    std::string after_remembering(std::string_view text, std::string_view window, std::string_view place) {
        put(text);
        EXPECT_TRUE(load().set_window_place(window, place).ok());
        return this->text();
    }
};

TEST_F(Ini, isWrittenWithItsDefaultsAtTheFirstStart) {
    const VelornIni ini = load();
    EXPECT_EQ(text(), VelornIni::default_text());
    EXPECT_FALSE(fs::exists(folder_.path() / "velorn.ini.neu"));
    EXPECT_EQ(ini.gateway_port(2), 24);
}

TEST_F(Ini, isNotWrittenAgain) {
    put("[Gateway]\nport1=99\n");
    EXPECT_EQ(load().gateway_port(1), 99);
    EXPECT_EQ(text(), "[Gateway]\nport1=99\n");
    put("");
    EXPECT_EQ(load().gateway_port(1), 23);
    EXPECT_EQ(text(), "");
}

TEST_F(Ini, theDefaultsNameNothingButTheGatewaysPorts) {
    const VelornIni ini = VelornIni::parse(VelornIni::default_text());
    EXPECT_EQ(ini.gateway_address(), "");
    EXPECT_EQ(ini.gateway_port(1), 23);
    EXPECT_EQ(ini.gateway_port(2), 24);
    EXPECT_EQ(ini.collection_log_folder(), "");
    EXPECT_TRUE(ini.drives().empty());
    EXPECT_EQ(ini.device(1), std::nullopt);
}

TEST_F(Ini, everySectionOfTheDefaultsIsExplained) {
    const std::string defaults = VelornIni::default_text();
    for (const char* section : {"[Gateway]", "[Abholung]", "[Laufwerke]", "[Anschluesse]", "[Fenster]"}) {
        EXPECT_NE(defaults.find(std::string(section) + "\n; "), std::string::npos) << section;
    }
}

TEST_F(Ini, whatStandsInItIsRead) {
    const VelornIni ini =
        VelornIni::parse("[Gateway]\nadresse = 10.0.0.7\nport2=2024\n[Abholung]\nlogordner=/srv/Prüf\n"
                         "[Laufwerke]\nS=/srv/s\n[Anschluesse]\ncom5=/dev/ttyUSB3\ncom6=\n");
    EXPECT_EQ(ini.gateway_address(), "10.0.0.7");
    EXPECT_EQ(ini.gateway_port(2), 2024);
    EXPECT_EQ(ini.collection_log_folder(), "/srv/Prüf");
    EXPECT_EQ(ini.drives(), (std::map<char, std::string>{{'s', "/srv/s"}}));
    EXPECT_EQ(ini.device(5), "/dev/ttyUSB3");
    EXPECT_EQ(ini.device(6), std::nullopt);
}

TEST_F(Ini, lineEndsAndAMarkAtTheBeginningMakeNoDifference) {
    const VelornIni ini = VelornIni::parse("\xEF\xBB\xBF[GATEWAY]\r\nAdresse=host\r\nport1=2023");
    EXPECT_EQ(ini.gateway_address(), "host");
    EXPECT_EQ(ini.gateway_port(1), 2023);
}

TEST_F(Ini, commentsAndDamagedLinesAreSkipped) {
    const VelornIni ini = VelornIni::parse("=\n[\n]\n[]\n;adresse=a\n[Gateway]\n#adresse=b\nadresse\n  "
                                           ";adresse=c\n\xFF\xFE=\x80\nadresse=d=e\n");
    EXPECT_EQ(ini.gateway_address(), "d=e");
}

TEST_F(Ini, aNumberOutsideItsRangeIsTheDefault) {
    for (const char* port : {"0", "65536", "-1", "23x", "", "99999999999999999999"}) {
        EXPECT_EQ(VelornIni::parse("[Gateway]\nport1=" + std::string(port)).gateway_port(1), 23) << port;
    }
    EXPECT_EQ(VelornIni::parse("[Gateway]\nport1=65535").gateway_port(1), 65535);
}

TEST_F(Ini, portNumbersReachFrom1To255) {
    const VelornIni ini = VelornIni::parse("[Anschluesse]\ncom0=a\ncom1=b\ncom255=c\ncom256=d\n");
    EXPECT_EQ(ini.device(0), std::nullopt);
    EXPECT_EQ(ini.device(1), "b");
    EXPECT_EQ(ini.device(255), "c");
    EXPECT_EQ(ini.device(256), std::nullopt);
}

TEST_F(Ini, ofTwoEqualKeysTheFirstCounts) {
    EXPECT_EQ(VelornIni::parse("[Gateway]\nadresse=a\nADRESSE=b\n").gateway_address(), "a");
}

TEST_F(Ini, aPlaceIsRememberedInThisRunAndTheNext) {
    VelornIni ini = load();
    ASSERT_TRUE(ini.set_window_place("frmtelefon", "10,20,300,400").ok());
    EXPECT_EQ(ini.window_place("frmtelefon"), "10,20,300,400");
    EXPECT_EQ(load().window_place("FRMTELEFON"), "10,20,300,400");
    EXPECT_EQ(text(), VelornIni::default_text() + "frmtelefon=10,20,300,400\n");
}

TEST_F(Ini, aKnownWindowsLineIsRewrittenAndNothingElse) {
    EXPECT_EQ(after_remembering("; \xE4 \t\r\n[Fenster]\r\nb=1\r\nA = 2 \r\nc=3\n\n[Gateway]\nx", "a", "7,8"),
              "; \xE4 \t\r\n[Fenster]\r\nb=1\r\na=7,8\r\nc=3\n\n[Gateway]\nx");
}

TEST_F(Ini, aNewWindowsLineStandsBelowTheLastOfItsSection) {
    EXPECT_EQ(after_remembering("[Fenster]\n; x\na=1\n\n[Gateway]\nb=2\n", "b", "3"),
              "[Fenster]\n; x\na=1\nb=3\n\n[Gateway]\nb=2\n");
    EXPECT_EQ(after_remembering("[Fenster]\r\na=1", "b", "3"), "[Fenster]\r\na=1\r\nb=3\r\n");
}

TEST_F(Ini, aMissingSectionIsAddedAtTheEnd) {
    EXPECT_EQ(after_remembering("[Gateway]\nadresse=x", "a", "1"), "[Gateway]\nadresse=x\n[Fenster]\na=1\n");
    EXPECT_EQ(after_remembering("", "a", "1"), "[Fenster]\na=1\n");
}

TEST_F(Ini, whatATechnicianEditsWhileTheProgramRunsStays) {
    VelornIni ini = load();
    put("[Gateway]\nadresse=edited\n[Fenster]\n");
    ASSERT_TRUE(ini.set_window_place("a", "1").ok());
    EXPECT_EQ(text(), "[Gateway]\nadresse=edited\n[Fenster]\na=1\n");
    EXPECT_EQ(ini.gateway_address(), ""); // counts from the next start on
}

TEST_F(Ini, aNameOrPlaceThatWouldNotComeBackIsRefused) {
    VelornIni ini = load();
    for (const char* window : {"", "a=b", ";a", "a\nb", " a"}) {
        EXPECT_TRUE(ini.set_window_place(window, "1").failure().is(RunTimeError::invalid_call)) << window;
    }
    EXPECT_TRUE(
        ini.set_window_place("a", "1\n[Gateway]\nadresse=x").failure().is(RunTimeError::invalid_call));
    EXPECT_EQ(text(), VelornIni::default_text());
}

TEST_F(Ini, whereItCannotBeReachedTheDefaultsCountAndPlacesLastForTheRun) {
    folder_.set_content("file", "x");
    VelornIni ini = VelornIni::load(folder_.path() / "file/velorn.ini");
    EXPECT_EQ(ini.gateway_port(1), 23);
    EXPECT_FALSE(ini.set_window_place("a", "1").ok());
    EXPECT_EQ(ini.window_place("a"), "1");
    EXPECT_EQ(folder_.content("file"), "x");
}

TEST_F(Ini, aFolderInItsPlaceStaysAndTheDefaultsCount) {
    fs::create_directory(folder_.path() / "velorn.ini");
    VelornIni ini = load();
    EXPECT_EQ(ini.gateway_port(2), 24);
    EXPECT_FALSE(ini.set_window_place("a", "1").ok());
    EXPECT_TRUE(fs::is_directory(folder_.path() / "velorn.ini"));
    EXPECT_FALSE(fs::exists(folder_.path() / "velorn.ini.neu"));
}

TEST_F(Ini, aFileOfAbsurdSizeIsLeftAloneAndTheDefaultsCount) {
    put("[Gateway]\nport1=99\n");
    fs::resize_file(folder_.path() / "velorn.ini", std::uintmax_t{1} << 33); // a sparse one
    EXPECT_EQ(load().gateway_port(1), 23);
    EXPECT_EQ(fs::file_size(folder_.path() / "velorn.ini"), std::uintmax_t{1} << 33);
}

} // namespace
} // namespace velorn
