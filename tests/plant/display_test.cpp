#include "plant/controller.h"
#include "plant/wording.h"
#include "runtime/virtual_event_loop.h"
#include "support/plain_screen.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>

namespace velorn::plant {

namespace {

using test::PlainScreen;
using ::testing::Contains;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

// A controller whose every word is shown on a plain screen, chunk by chunk.
struct ADisplay : testing::Test {
    VirtualEventLoop loop;
    Controller controller{loop, 3};
    PlainScreen screen;
    std::string said; // since the last look

    ADisplay() {
        controller.set_site("Kraftwerk Gelmar");
        controller.send = [this](std::string_view bytes) {
            said += bytes;
            screen.feed(bytes);
        };
    }
    void types(std::string_view bytes, int then_ms = 400) {
        controller.receive(bytes);
        loop.pass(then_ms);
    }
    void enters(bool with_name = false) {
        controller.set_asks_for_name(with_name);
        types("\x01");
        types("FERNBED\r", 1000);
    }
    std::string text(int row) const { return screen.text(row); }
    std::string whole_screen() const {
        std::string all;
        for (int row = 1; row <= 29; ++row) all += screen.text(row) + "\n";
        return all;
    }
    // Bytes of the display in code page 437, as it sends them.
    static std::string on_screen(std::string_view utf8) { return cp437_from_utf8(utf8); }
    std::string take() { return std::exchange(said, {}); }
};

constexpr const char* down = "\x0a";
constexpr const char* up = "\x0b";

} // namespace

TEST_F(ADisplay, isBegunByTheShellAndShowsItsMenu) {
    enters();
    EXPECT_TRUE(controller.display().is_on());
    EXPECT_EQ(text(1), " Ende: <E>      Invers: <I>             Kraftwerk Gelmar");
    EXPECT_THAT(text(3), HasSubstr(on_screen("Hauptmenü")));
    EXPECT_EQ(text(6), std::string(19, ' ') + "1  Betriebsdaten");
    EXPECT_EQ(text(14), std::string(19, ' ') + "9  Anlageninformation");
}

TEST_F(ADisplay, sendsItsPageApartFromTheShellsEcho) {
    std::vector<std::string> chunks;
    controller.set_asks_for_name(false);
    controller.send = [&](std::string_view bytes) { chunks.emplace_back(bytes); };
    controller.receive("\x01"
                       "FERNBED\r");
    loop.pass(1000);
    // What the PC looks for is emptied from its window with the chunk that it ends.
    for (const std::string& chunk : chunks) {
        if (chunk.find(" Ende: <E>") == std::string::npos) continue;
        EXPECT_EQ(chunk.find("FERNBED"), std::string::npos);
    }
    EXPECT_LE(chunks.back().find(" Ende: <E>"), 38U);
}

TEST_F(ADisplay, asksForTheCallersNameUntilThereIsSilence) {
    enters(true);
    EXPECT_THAT(text(5), HasSubstr(std::string(34, '.')));
    types("Ben", 300);
    types("utzer", 500);
    EXPECT_THAT(text(5), HasSubstr("....."));
    loop.pass(200);
    EXPECT_THAT(text(3), HasSubstr(on_screen("Hauptmenü")));
}

TEST_F(ADisplay, goesOnWithoutANameAfterAWhile) {
    enters(true);
    loop.pass(Display::longest_wait_for_name);
    EXPECT_THAT(text(3), HasSubstr(on_screen("Hauptmenü")));
}

TEST_F(ADisplay, movesItsSelectionWithTheCursorKeys) {
    enters();
    EXPECT_EQ(screen.inverse_text(6), std::string(19, ' ') + "1  Betriebsdaten");
    types(down);
    EXPECT_EQ(screen.inverse_text(6), "");
    EXPECT_EQ(screen.inverse_text(7), std::string(19, ' ') + on_screen("2  Störungen"));
    types(up);
    types(up);
    EXPECT_EQ(screen.inverse_text(6), std::string(19, ' ') + "1  Betriebsdaten");
    types("\x1b"
          "F");
    EXPECT_EQ(screen.inverse_text(14), std::string(19, ' ') + "9  Anlageninformation");
    types("\x1b"
          "H");
    EXPECT_EQ(screen.inverse_text(6), std::string(19, ' ') + "1  Betriebsdaten");
}

TEST_F(ADisplay, opensEveryPageByItsDigitAndByTheReturnKey) {
    enters();
    for (std::size_t i = 0; i < menu_entries().size(); ++i) {
        types(std::string(1, static_cast<char>('1' + i)));
        EXPECT_EQ(controller.display().page(), menu_entries()[i].page);
        if (menu_entries()[i].page != PageId::calendar) {
            EXPECT_THAT(screen.inverse_text(3), HasSubstr(on_screen(menu_entries()[i].title)));
        }
        types("E");
        EXPECT_EQ(controller.display().page(), PageId::menu) << i;
    }
    types("\x1bH");
    types(down);
    types("\r");
    EXPECT_EQ(controller.display().page(), PageId::faults);
}

TEST_F(ADisplay, sendsOfTheRunningPlantOnlyWhatChanged) {
    enters();
    types("1");
    EXPECT_THAT(whole_screen(), HasSubstr("Generatorleistung"));
    const std::string clock_before = text(4).substr(55);
    take();
    loop.pass(4000);
    EXPECT_NE(text(4).substr(55), clock_before);
    EXPECT_LT(take().size(), 400U);
    types("E");
    take();
    loop.pass(4000);
    EXPECT_EQ(take(), "");
}

TEST_F(ADisplay, showsTheNewestFaultsInRed) {
    enters();
    types("2");
    EXPECT_EQ(screen.attribute(8, 6), 'r');
    EXPECT_EQ(screen.red_used, 1);
    EXPECT_EQ(screen.red, 0);
}

TEST_F(ADisplay, showsTheWeekAsACalendar) {
    enters();
    types("3");
    EXPECT_TRUE(screen.calendar);
    EXPECT_EQ(text(1), "   Wochenuhr BHKW und Kessel");
    for (int row = 4; row <= 17; ++row) {
        for (int column = 8; column <= 80; ++column) {
            const char cell = screen.character(column, row);
            EXPECT_TRUE(cell == '0' || cell == '1') << column << ", " << row;
        }
    }
    types("E");
    EXPECT_FALSE(screen.calendar);
}

TEST_F(ADisplay, drawsTheDayByLinesThatFollowTheText) {
    enters();
    screen.asked.clear();
    types("4", 100);
    EXPECT_THAT(screen.asked, Not(Contains(StartsWith("line"))));
    loop.pass(400);
    EXPECT_EQ(std::count_if(screen.asked.begin(), screen.asked.end(),
                            [](const std::string& one) { return one.starts_with("line"); }),
              2 + 4 + 95);
}

TEST_F(ADisplay, sendsADayGraphOfFixedFields) {
    enters();
    types("4");
    screen.asked.clear();
    types("G", 100);
    ASSERT_THAT(screen.asked, Contains(StartsWith("graph:")));
    const std::string graph = screen.asked.back().substr(6);
    EXPECT_EQ(graph.size(), 47U + 96 * 7 + 4);
    EXPECT_EQ(graph.substr(0, 14), "Leistung      ");
    EXPECT_EQ(graph.substr(14, 5), "kW   ");
}

TEST_F(ADisplay, takesANewSetpointWithinItsLimits) {
    enters();
    types("6");
    EXPECT_TRUE(screen.cursor_shown);
    EXPECT_EQ(screen.character(42, 6), '7');
    types("80");
    types("\r");
    EXPECT_EQ(screen.character(42, 6), '8');
    types("99");
    types("\r");
    EXPECT_EQ(screen.character(42, 6), '8');
    EXPECT_THAT(whole_screen(), HasSubstr("nur 40 bis 90"));
    types("1\b65\r");
    EXPECT_EQ(screen.character(42, 6), '6');
    types("E");
    EXPECT_FALSE(screen.cursor_shown);
    types("6");
    EXPECT_EQ(screen.character(42, 6), '6');
}

TEST_F(ADisplay, showsBars) {
    enters();
    types("7");
    EXPECT_EQ(screen.attribute(20, 10), 'i'); // the flow is warm
    EXPECT_EQ(screen.attribute(69, 10), ' '); // but not that warm
}

TEST_F(ADisplay, sendsAReportBetweenTheMarksOfACapture) {
    enters();
    types("8");
    take();
    types("\r", 100);
    const std::string report = take();
    EXPECT_THAT(report, StartsWith("\x1b\x1bPBetriebsprotokoll Kraftwerk Gelmar\r\n"));
    EXPECT_THAT(report, EndsWith("\x1b\x1bO"));
    EXPECT_GT(report.size(), 1000U);
    EXPECT_LT(report.size(), 8000U);
    types("\b"); // what the PC sends then
    loop.pass(2000);
    EXPECT_THAT(text(3), HasSubstr("Protokoll auf den PC"));
}

TEST_F(ADisplay, turnsItsHeadInverseAndBack) {
    enters();
    types("I");
    EXPECT_THAT(screen.inverse_text(1), HasSubstr("Kraftwerk Gelmar"));
    types("i");
    EXPECT_EQ(screen.inverse_text(1), "");
}

TEST_F(ADisplay, keepsBarsAndRedWhenItsHeadTurnsInverse) {
    enters();
    types("7");
    types("I");
    EXPECT_EQ(screen.attribute(20, 10), 'i');
    types("E");
    types("2");
    types("I");
    EXPECT_EQ(screen.red_used, 1);
}

TEST_F(ADisplay, cutsALongNameToItsFortyCharacters) {
    controller.set_site("Kläranlage mit einem wirklich sehr langen Namen am Fluß");
    enters();
    EXPECT_EQ(text(1).size(), 80U);
    EXPECT_EQ(text(2), "");
    EXPECT_EQ(text(1).substr(40), on_screen("Kläranlage mit einem wirklich sehr lange"));
}

TEST_F(ADisplay, comesBackToTheMenusLineItWasOpenedFrom) {
    enters();
    types("6");
    types(down);
    types(down);
    types("E");
    EXPECT_NE(screen.inverse_text(11), "");
}

TEST_F(ADisplay, isLeftByTwoEFromEveryPage) {
    for (std::size_t i = 0; i < menu_entries().size(); ++i) {
        enters();
        types(std::string(1, static_cast<char>('1' + i)));
        types("E", 1000);
        take();
        types("E", 1000);
        EXPECT_FALSE(controller.display().is_on());
        EXPECT_THAT(take(), EndsWith("   Fernbedienung beendet   \r\n*"));
        types("clock\r", 1000);
        EXPECT_THAT(take(), HasSubstr("Uhrzeit"));
    }
}

TEST_F(ADisplay, goesOfflineAfterTenMinutesWithoutAKey) {
    enters();
    loop.pass(Display::idle_for - 2000);
    EXPECT_TRUE(controller.display().is_on());
    types("1");
    types("E");
    loop.pass(Display::idle_for - 2000);
    EXPECT_TRUE(controller.display().is_on());
    take();
    loop.pass(3000);
    EXPECT_FALSE(controller.display().is_on());
    EXPECT_THAT(take(), HasSubstr(" - OFFLINE - \r\n*"));
}

TEST_F(ADisplay, standsEveryKeyThatNoiseCanType) {
    std::mt19937 random(5);
    enters();
    for (int i = 0; i < 20'000; ++i) {
        const char key = static_cast<char>(random() % 256);
        controller.receive({&key, 1});
        if (random() % 16 == 0) loop.pass(static_cast<int>(random() % 3000));
        if (!controller.display().is_on()) enters();
        ASSERT_LT(said.size(), 50'000'000U);
        if (said.size() > 1'000'000) said.clear();
    }
    types("EEEE", 3000);
    take();
    types("\x01");
    types("clock\r", 2000);
    EXPECT_THAT(take(), HasSubstr("Uhrzeit"));
}

} // namespace velorn::plant
