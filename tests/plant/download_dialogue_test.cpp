#include "download_rig.h"
#include "plant/download_dialogue.h"

#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

namespace velorn::plant {
namespace {

TEST_F(ADownload, beginsWithCountUnitsAndNamesTwice) {
    EXPECT_EQ(begins(quarters), "0303"
                                "kW   kW   kW   kW   \xB0"
                                "C   \xB0"
                                "C   "
                                "BHKW Leistung BHKW Leistung BHKW W\x84rme    BHKW W\x84rme    "
                                "Vorlauf       Vorlauf       " +
                                    esc2 + "D5");
    EXPECT_EQ(pieces.size(), 1U);
}

TEST_F(ADownload, keepsQuietWhileThePcMakesReady) {
    dialogue.begin(quarters, site);
    EXPECT_EQ(says_to("", 1000), "");
}

TEST_F(ADownload, tellsMoreThan99TracksWithThreeDigits) {
    site.tracks = 100;
    const std::string frame = begins(four_hours);
    EXPECT_EQ(frame.substr(0, 16), "100100kW   kW   ");
    EXPECT_EQ(frame.size(), 6U + 100 * 38 + 4);
    says_to("OK");
    says_to(today, 230);
    EXPECT_EQ(says_to("").size(), 128U * 100 + 132);
}

TEST_F(ADownload, sendsTheInitialisationAgainWhenItWasRefused) {
    const std::string frame = begins(quarters);
    EXPECT_EQ(says_to("ER"), frame);
    EXPECT_EQ(says_to("ER"), frame);
    EXPECT_EQ(says_to("OK"), "");
    EXPECT_EQ(says_to("ER"), frame); // the PC has thought better of it
    EXPECT_EQ(says_to("OK"), "");
}

TEST_F(ADownload, acceptsARangeAloneAndSendsDataSetsFromMidnight) {
    begins(quarters);
    says_to("OK");
    EXPECT_EQ(says_to(today, 400), esc2 + "D6");
    EXPECT_EQ(says_to(""), set_frame(at(2026, 11, 14, 1)));
    EXPECT_EQ(says_to("OK"), set_frame(at(2026, 11, 14, 2)));
    EXPECT_EQ(says_to("ER"), set_frame(at(2026, 11, 14, 2)));
    EXPECT_EQ(says_to("OK"), set_frame(at(2026, 11, 14, 3)));
    EXPECT_EQ(set_frame(at(2026, 11, 14, 3)).size(), 8U * 3 + 12);
}

TEST_F(ADownload, tellsAtItsEndWhatWasAskedForAndWhatWasTaken) {
    std::vector<std::pair<long, long>> told;
    dialogue.over = [&](long ordered, long acknowledged) { told.emplace_back(ordered, acknowledged); };
    begins(quarters);
    says_to("OK");
    says_to(today, 400);
    says_to("");
    says_to("ER");
    says_to("OK");
    says_to("OK");
    EXPECT_TRUE(told.empty());
    says_to("\b");
    ASSERT_EQ(told.size(), 1U);
    EXPECT_GT(told[0].first, 2);
    EXPECT_EQ(told[0].second, 2);
}

TEST_F(ADownload, endsWithTheNewestDataSet) {
    begins(quarters);
    says_to("OK");
    says_to(today, 2000);
    for (int i = 2; i <= 45; ++i) ASSERT_EQ(says_to("OK"), set_frame(at(2026, 11, 14, i)));
    EXPECT_EQ(says_to("OK"), esc2 + "D4");
    EXPECT_EQ(says_to("\b"), "");
    EXPECT_EQ(ends, std::vector<bool>{true});
    EXPECT_FALSE(dialogue.is_on());
}

TEST_F(ADownload, endsWithTheStopDaysEnd) {
    begins(four_hours);
    says_to("OK");
    EXPECT_TRUE(says_to("28280202202420242929020220242024", 2000)
                    .starts_with(esc2 + "D6"
                                        "28022401"));
    for (int i = 1; i < 12; ++i)
        ASSERT_EQ(says_to("OK").substr(0, 8), head_of(quarter_after(at(2024, 2, 28), 16 * i)));
    EXPECT_EQ(says_to("OK"), esc2 + "D4");
}

TEST_F(ADownload, fillsTheLastLongPacketWithSetsOfNoDay) {
    begins(four_hours);
    says_to("OK");
    says_to(today, 2000);
    says_to("OK");
    std::string expected;
    for (int i = 33; i <= 45; ++i) expected += set_text(at(2026, 11, 14, i));
    for (int i = 0; i < 3; ++i) expected += "00000000     ***     ***     ***";
    EXPECT_EQ(says_to("OK"), expected + esc2 + "D5");
    EXPECT_EQ(expected.size() + 4, 128U * 3 + 132);
    EXPECT_EQ(says_to("OK"), esc2 + "D4");
}

TEST_F(ADownload, isCompleteAtOnceWhereNothingWasRecorded) {
    for (const char* range : {"15151111202620261616111120262026", "14141111202620261313111120262026"}) {
        begins(quarters);
        says_to("OK");
        EXPECT_EQ(says_to(range, 2000), esc2 + "D6" + esc2 + "D4") << range;
        says_to("\b");
    }
}

TEST_F(ADownload, knowsNothingFromBefore2000) {
    begins(quarters);
    says_to("OK");
    EXPECT_EQ(says_to("01010101199919990101010120002000", 2000), esc2 + "D6" + set_frame(at(2000, 1, 1, 1)));
}

TEST_F(ADownload, asksForARangeAgainThatCannotBe) {
    begins(quarters);
    says_to("OK");
    for (const char* range : {
             "14151111202620261414111120262026", // two copies that differ
             "14141111202620261414111120262027",
             "14141111202620263131020220262026", // 31.2.
             "29290202202520253131121220262026", // 29.2. of an ordinary year
             "00001111202620261414111120262026", "14141313202620261414111120262026",
             "14141111202620261414111120262026"
             "1", // a byte came twice
         }) {
        EXPECT_EQ(says_to(range), esc2 + "D7") << range;
    }
    EXPECT_EQ(says_to("1414111120262026141411112026202"), "");
    EXPECT_EQ(says_to("", 3000), esc2 + "D7"); // one is missing
    EXPECT_EQ(says_to(today, 400), esc2 + "D6");
}

TEST_F(ADownload, doesNotAskForARangeForEver) {
    begins(quarters);
    says_to("OK");
    for (int i = 0; i < 10; ++i) ASSERT_EQ(says_to("31310202202620263131020220262026"), esc2 + "D7");
    EXPECT_EQ(says_to("31310202202620263131020220262026"), "");
    EXPECT_FALSE(dialogue.is_on());
}

TEST_F(ADownload, takesAnswersHoweverTheyAreCut) {
    begins(quarters);
    says_to("O", 500);
    EXPECT_EQ(says_to("K" + std::string(today), 400), esc2 + "D6");
    says_to("");
    EXPECT_EQ(says_to("OK\r\n"), set_frame(at(2026, 11, 14, 2)));
    EXPECT_EQ(says_to("E", 500), "");
    EXPECT_EQ(says_to(" \r\nR"), set_frame(at(2026, 11, 14, 2)));
    EXPECT_EQ(says_to("OKOK"), set_frame(at(2026, 11, 14, 3))); // the second one came too early
}

TEST_F(ADownload, takesTheRangeInPieces) {
    begins(quarters);
    says_to("OK");
    for (std::size_t i = 0; i + 2 < today.size(); i += 2) ASSERT_EQ(says_to(today.substr(i, 2), 50), "");
    EXPECT_EQ(says_to("26", 400), esc2 + "D6");
}

TEST_F(ADownload, countsAnAnswerThatNobodyCanReadAsNone) {
    const std::string frame = begins(quarters);
    EXPECT_EQ(says_to("O\x93", 1000), "");
    EXPECT_EQ(says_to("", 1500), frame);
}

TEST_F(ADownload, givesUpAfterHalfAMinuteOfSilence) {
    begins(quarters);
    says_to("", 29'000);
    EXPECT_TRUE(dialogue.is_on());
    EXPECT_EQ(says_to("", 2000), "");
    EXPECT_EQ(ends, std::vector<bool>{false});
}

TEST_F(ADownload, givesUpAFrameThatIsAlwaysRefused) {
    const std::string frame = begins(quarters);
    for (int i = 0; i < DownloadDialogue::most_refusals; ++i) ASSERT_EQ(says_to("ER"), frame);
    EXPECT_EQ(says_to("ER"), "");
    EXPECT_EQ(ends, std::vector<bool>{false});
}

TEST_F(ADownload, isEndedByBackspaceAtAnyTime) {
    begins(quarters);
    EXPECT_EQ(says_to("\bOK"), "");
    EXPECT_EQ(ends, std::vector<bool>{true});
}

TEST_F(ADownload, ofTheNewestDataSetsNeedsNoRange) {
    EXPECT_EQ(begins(newest), set_frame(at(2026, 11, 13, 46)));
    for (int i = 1; i < 96; ++i) ASSERT_EQ(says_to("OK"), set_frame(quarter_after(at(2026, 11, 13, 46), i)));
    EXPECT_EQ(says_to("OK"), esc2 + "D4");
}

TEST_F(ADownload, tellsWhatThePcHasAcknowledged) {
    std::vector<std::pair<Quarter, Quarter>> told;
    dialogue.acknowledged = [&](const Quarter& first, const Quarter& last) { told.push_back({first, last}); };
    begins(four_hours);
    says_to("OK");
    says_to(today, 2000);
    says_to("ER");
    EXPECT_TRUE(told.empty());
    for (int i = 0; i < 3; ++i) says_to("OK");
    const std::vector<std::pair<Quarter, Quarter>> expected = {{at(2026, 11, 14, 1), at(2026, 11, 14, 16)},
                                                               {at(2026, 11, 14, 17), at(2026, 11, 14, 32)},
                                                               {at(2026, 11, 14, 33), at(2026, 11, 14, 45)}};
    EXPECT_EQ(told, expected);
}

TEST_F(ADownload, comesToAnEndWhateverItHears) {
    constexpr std::string_view alphabet = "OOOKKEER0123456789\r\x93 D";
    for (std::uint64_t seed = 1; seed <= 40; ++seed) {
        Random random(seed);
        dialogue.begin(seed % 2 == 0 ? quarters : newest, site);
        for (int i = 0; i < 400; ++i) {
            dialogue.receive(alphabet.substr(random.below(alphabet.size()), 1 + random.below(3)));
            if (random.unit() < 0.1) dialogue.receive(i % 2 == 0 ? "OK" : today);
            loop.pass(static_cast<std::int64_t>(random.below(900)));
        }
        loop.pass(21 * DownloadDialogue::answer_is_broken_after + DownloadDialogue::gives_up_after);
        EXPECT_FALSE(dialogue.is_on()) << seed;
    }
}

} // namespace
} // namespace velorn::plant
