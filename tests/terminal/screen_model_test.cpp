// The screen parser against its plain make, on streams made of the display's own sequences, cut anywhere.
#include "support/screen_pair.h"

#include <gtest/gtest.h>
#include <random>

namespace velorn::test {

namespace {

using Random = std::mt19937;

unsigned below(Random& random, unsigned limit) { return static_cast<unsigned>(random() % limit); }

// A stream with much of everything in it, whole sequences and broken ones.
std::string stream(Random& random, int pieces, bool with_cursor_mark) {
    static constexpr std::string_view sequences[] = {"\x1a",
                                                     "\x1e",
                                                     "\r",
                                                     "\b \b",
                                                     "\bx",
                                                     "\b x",
                                                     "\x1bT",
                                                     "\x1bG0",
                                                     "\x1bG4",
                                                     "\x1bG0\x1bY",
                                                     "\x1b\x1bQ",
                                                     "\x1b\x1bQ0000005000001",
                                                     "\x1b\x1b"
                                                     "G1",
                                                     "\x1b\x1b"
                                                     "G0",
                                                     "\x1b\x1b"
                                                     "G8",
                                                     "\x1b\x1bP",
                                                     "\x1b\x1bR",
                                                     "\x1b\x1bq",
                                                     "\x1b\x1fm",
                                                     "\x1b\x1em",
                                                     "\x1b@\x1b",
                                                     "\x1b@\x1bI\x1b@\x1bN\x1b@\x1bH\x1bx",
                                                     "\x1bI\x1b=",
                                                     "\x1bI\x1b@\x1bx",
                                                     "%%%%",
                                                     "%U( %",
                                                     "\x1b",
                                                     "\x1b\x1b",
                                                     "\x1bG0\x1bG",
                                                     "\x1b.0",
                                                     "\x1b.3"};
    std::string text;
    for (int i = 0; i < pieces; ++i) {
        switch (below(random, 6)) {
        case 0: text += std::string(1 + below(random, 90), static_cast<char>(32 + below(random, 224))); break;
        case 1:
            text += "\x1bY";
            text += static_cast<char>(below(random, 3) == 0 ? below(random, 256) : 32 + below(random, 24));
            text += static_cast<char>(below(random, 3) == 0 ? below(random, 256) : 32 + below(random, 80));
            break;
        case 2: text += static_cast<char>(below(random, 256)); break;
        case 3:
            text += "\x1bG0\x1bY";
            text += static_cast<char>(32 + below(random, 24));
            text += static_cast<char>(32 + below(random, 80));
            text += "\x1bG4";
            break;
        default: {
            const std::string_view one = sequences[below(random, std::size(sequences))];
            if (one == "\x1b.3" && !with_cursor_mark) break;
            text += one;
            break;
        }
        }
    }
    if (!with_cursor_mark) {
        for (std::size_t at = 0; (at = text.find(".3", at)) != std::string::npos;) text[at + 1] = '4';
    }
    return text;
}

constexpr int rounds = 300;

} // namespace

TEST(ScreenModel, agreesWithThePlainMakeForEveryCut) {
    Random random(7);
    for (int round = 0; round < rounds; ++round) {
        ScreenPair pair;
        const std::string text = stream(random, 60, true);
        for (std::size_t i = 0; i < text.size();) {
            const std::size_t length = 1 + below(random, below(random, 3) == 0 ? 200 : 9);
            const std::string differences =
                pair.chunk(std::string_view(text).substr(i, length), below(random, 2) != 0,
                           below(random, 8) == 0, below(random, 3) == 0);
            ASSERT_EQ(differences, "") << "round " << round << " at " << i;
            i += length;
        }
    }
}

TEST(ScreenModel, comesToTheSameForEveryCutWhileNoCursorIsMarked) {
    Random random(11);
    for (int round = 0; round < rounds / 3; ++round) {
        const std::string text = stream(random, 60, false);
        ScreenRig whole;
        whole.parser.feed(text, false);
        ScreenRig cut;
        for (std::size_t i = 0; i < text.size();) {
            const std::size_t length = 1 + below(random, 7);
            cut.parser.feed(std::string_view(text).substr(i, length), false);
            i += length;
        }
        ASSERT_EQ(cut.cursor(), whole.cursor()) << round;
        ASSERT_EQ(cut.state(), whole.state());
        ASSERT_EQ(cut.parser.state.aenderungen, whole.parser.state.aenderungen);
        ASSERT_EQ(cut.asked, whole.asked);
        for (int row = 1; row <= Schirm::rows; ++row) {
            ASSERT_EQ(cut.row(row), whole.row(row)) << round << ", row " << row;
            for (int column = 1; column <= Schirm::columns; ++column)
                ASSERT_EQ(cut.attribute(column, row), whole.attribute(column, row))
                    << round << ", row " << row;
        }
    }
}

} // namespace velorn::test
