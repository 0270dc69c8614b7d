#include "plant/controller.h"
#include "plant/visual_values.h"
#include "plant/wording.h"
#include "runtime/text.h"
#include "runtime/virtual_event_loop.h"
#include "support/plain_screen.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>

namespace velorn::plant {

namespace {

using test::PlainScreen;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

// A controller whose display is on. What a PC would show goes to the screen as long as nothing is visualised.
struct AVisualisedPlant : testing::Test {
    VirtualEventLoop loop;
    Controller controller{loop, 3};
    std::string said; // since the last look
    PlainScreen screen;

    AVisualisedPlant() {
        controller.set_site("Kläranlage Gelmar");
        controller.set_asks_for_name(false);
        controller.send = [this](std::string_view bytes) {
            said += bytes;
            if (!controller.display().is_visualising()) screen.feed(bytes);
        };
        enters();
        take();
    }
    void enters() {
        types("\x01");
        types("FERNBED\r", 1000);
    }
    void types(std::string_view bytes, int then_ms = 0) {
        controller.receive(bytes);
        loop.pass(then_ms);
    }
    std::string take() { return std::exchange(said, {}); }
    bool visualises() const { return controller.display().is_visualising(); }
    PageId page() const { return controller.display().page(); }
    static std::size_t blocks_in(std::string_view text) {
        std::size_t count = 0;
        for (std::size_t at = 0; (at = text.find(end_of_values, at)) != std::string_view::npos; ++at) ++count;
        return count;
    }
    // What stands behind a name in the block, up to the line's end.
    static std::string value(std::string_view block, std::string_view name_utf8) {
        const std::string name = "\r\n" + cp437_from_utf8(name_utf8) + "=";
        const std::size_t at = block.find(name);
        if (at == std::string_view::npos) return "(none)";
        const std::size_t begin = at + name.size();
        return std::string(block.substr(begin, block.find("\r\n", begin) - begin));
    }
    std::string block_after(std::string_view keys) {
        take();
        types(keys);
        return take();
    }
};

} // namespace

TEST_F(AVisualisedPlant, sendsABlockAtOnceAndOneEveryTwoSeconds) {
    EXPECT_EQ(blocks_in(block_after("v")), 1U);
    loop.pass(1999);
    EXPECT_EQ(take(), "");
    loop.pass(1);
    EXPECT_EQ(blocks_in(take()), 1U);
    loop.pass(10'000);
    EXPECT_EQ(blocks_in(take()), 5U);
}

TEST_F(AVisualisedPlant, sendsLinesOfValuesEndedByTheMark) {
    const std::string block = block_after("v");
    EXPECT_THAT(block, StartsWith(cp437_from_utf8("Anlage=Kläranlage Gelmar\r\n")));
    EXPECT_THAT(block, EndsWith("\r\nVISEND"));
    EXPECT_THAT(value(block, "Generatorleistung"), testing::MatchesRegex("[0-9]+,[0-9] kW"));
    EXPECT_THAT(value(block, "Rücklauf"), testing::MatchesRegex("[0-9]+,[0-9] C"));
    EXPECT_THAT(value(block, "Betriebsstunden"), testing::MatchesRegex("[0-9]+,[0-9] h"));
    EXPECT_THAT(value(block, "Störungen in 14 Tagen"), testing::MatchesRegex("[0-9]+"));
    EXPECT_EQ(value(block, "Vorlauf-Solltemperatur"), "75 C");
    EXPECT_THAT(block, Not(HasSubstr("\x1b")));
}

TEST_F(AVisualisedPlant, sendsTheValuesOfTheMoment) {
    const std::string first = block_after("v");
    loop.pass(2000);
    EXPECT_NE(value(take(), "Zeit"), value(first, "Zeit"));
}

TEST_F(AVisualisedPlant, sendsNoWordThatThePcActsOn) {
    for (std::uint64_t seed = 1; seed < 200; ++seed) {
        Machine machine(loop, seed);
        const std::string block = values_block("Heizwerk", machine, default_setpoints());
        for (const char* word : {"ERR", "OKK", "NEUV2.0", "FERNBED", "OFFLINE", "NO CARRIER", "CONNECT"})
            EXPECT_THAT(block, Not(HasSubstr(word)));
        EXPECT_EQ(blocks_in(block), 1U);
    }
}

TEST_F(AVisualisedPlant, answersEveryFurtherVWithOneBlock) {
    types("v");
    EXPECT_EQ(blocks_in(block_after("v")), 1U);
    EXPECT_EQ(blocks_in(block_after("V")), 1U);
    EXPECT_TRUE(visualises());
}

TEST_F(AVisualisedPlant, paintsNothingWhileItVisualises) {
    types("1", 400);
    types("v");
    take();
    loop.pass(20'000);
    EXPECT_THAT(take(), Not(HasSubstr("\x1b")));
    types("\b", 400);
    types("4", 0); // the chart's lines are still to come
    types("v");
    take();
    loop.pass(1000);
    EXPECT_EQ(take(), "");
}

TEST_F(AVisualisedPlant, comesBackToEveryPageOnBackspace) {
    for (std::size_t i = 0; i < menu_entries().size(); ++i) {
        types(std::string(1, static_cast<char>('1' + i)), 1000);
        types("v", 3000);
        screen = PlainScreen();
        types("\b", 500);
        EXPECT_FALSE(visualises());
        EXPECT_EQ(page(), menu_entries()[i].page);
        EXPECT_NE(screen.text(1), "") << i;
        take();
        loop.pass(1900);
        EXPECT_EQ(blocks_in(take()), 0U);
        types("E", 400);
        EXPECT_EQ(page(), PageId::menu);
    }
}

TEST_F(AVisualisedPlant, goesOnWithTheRunningPageAfterwards) {
    types("1", 400);
    types("v", 5000);
    types("\b", 400);
    const std::string before = screen.text(4);
    loop.pass(4000);
    EXPECT_NE(screen.text(4), before);
}

TEST_F(AVisualisedPlant, goesUpOneLevelOnE) {
    types("2", 400);
    types("v", 3000);
    types("E", 400);
    EXPECT_EQ(page(), PageId::menu);
    EXPECT_FALSE(visualises());
    types("v", 3000);
    take();
    types("E", 400);
    EXPECT_THAT(take(), EndsWith("   Fernbedienung beendet   \r\n*"));
    loop.pass(10'000);
    EXPECT_EQ(take(), "");
}

TEST_F(AVisualisedPlant, leavesOnAnyOtherKeyWhichThenCounts) {
    types("v", 3000);
    types("6", 400);
    EXPECT_EQ(page(), PageId::setpoints);
    types("v", 3000);
    types("\x1b"
          "F",
          400);
    EXPECT_FALSE(visualises());
    EXPECT_EQ(page(), PageId::setpoints);
}

TEST_F(AVisualisedPlant, takesASetpointAndTellsItBack) {
    types("v");
    EXPECT_EQ(value(block_after("SOLL Vorlauf-Solltemperatur=80\r"), "Vorlauf-Solltemperatur"), "80 C");
    EXPECT_EQ(value(block_after(cp437_from_utf8("SOLL Rücklauf-Begrenzung=55\r")), "Rücklauf-Begrenzung"),
              "55 C");
    EXPECT_EQ(value(block_after("SOLL R\xfc"
                                "cklauf-Begrenzung=50\r"),
                    "Rücklauf-Begrenzung"),
              "50 C");
    EXPECT_TRUE(visualises());
    types("\b", 400);
    types("6", 400);
    EXPECT_EQ(screen.character(42, first_line), '8');
}

TEST_F(AVisualisedPlant, refusesWhatIsNoSetpointOfIts) {
    types("v");
    const std::string before = block_after("v");
    for (const char* order :
         {"SOLL Vorlauf-Solltemperatur=91", "SOLL Vorlauf-Solltemperatur=39",
          "SOLL Vorlauf-Solltemperatur=", "SOLL Vorlauf-Solltemperatur=7x",
          "SOLL Vorlauf-Solltemperatur=99999999999", "SOLL Vorlauf=50", "SOLL ", "SOLL ="})
        EXPECT_EQ(block_after(std::string(order) + "\r"), before) << order;
}

TEST_F(AVisualisedPlant, ordersNothingByHalfALine) {
    types("v");
    types("SOLL Mindestleistung=60");
    types("\b", 400);
    EXPECT_FALSE(visualises());
    types("v");
    EXPECT_EQ(value(block_after("v"), "Mindestleistung"), "50 %");
    types("SOL");
    EXPECT_EQ(blocks_in(block_after("v")), 1U);
    types("SOLL " + std::string(200, 'x'), 400);
    EXPECT_FALSE(visualises());
}

TEST_F(AVisualisedPlant, goesOfflineWhenNobodyAsksAnyMore) {
    for (int i = 0; i < 300; ++i) types("v", 4000);
    EXPECT_TRUE(visualises());
    loop.pass(Display::idle_for);
    EXPECT_FALSE(controller.display().is_on());
    EXPECT_THAT(take(), EndsWith(" - OFFLINE - \r\n*"));
}

TEST_F(AVisualisedPlant, standsEveryKeyThatNoiseCanType) {
    std::mt19937 random(7);
    const std::string keys = "vvvSOLL =\r\b\x1b"
                             "E16\xfc";
    for (int i = 0; i < 20'000; ++i) {
        if (!controller.display().is_on()) enters();
        types({&keys[random() % keys.size()], 1}, static_cast<int>(random() % 300));
        if (said.size() > 1'000'000) said.clear();
    }
    for (int i = 0; i < 3 && controller.display().is_on(); ++i) types("E", 3000);
    EXPECT_FALSE(controller.display().is_on());
    take();
    types("\x01");
    types("clock\r", 2000);
    EXPECT_THAT(take(), HasSubstr("Uhrzeit"));
}

} // namespace velorn::plant
