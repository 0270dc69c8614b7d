// The terminal's row index and its search keep up with edits; after any of them they are what a fresh look
// over the whole text gives.
#include "desktop/terminal_lines.h"
#include "desktop/terminal_search.h"
#include "runtime/rich_text_box.h"

#include <gtest/gtest.h>
#include <random>

namespace velorn::test {

namespace {

struct Edited {
    RichTextBox text;
    TerminalLines lines;
    TerminalSearch search;

    Edited() {
        lines.set_columns(24, {});
        search.set_pattern("ab", false, {});
        text.on_edit = [this](const RichTextBox::Edit& edit) {
            lines.edited(text.Text(), edit.position, edit.removed, edit.inserted.size());
            search.edited(text.Text(), edit.position, edit.removed, edit.inserted.size());
        };
    }

    void expect_fresh(int step) const {
        TerminalLines fresh;
        fresh.set_columns(lines.columns(), text.Text());
        ASSERT_EQ(lines.size(), fresh.size()) << "step " << step;
        for (std::size_t i = 0; i < fresh.size(); ++i) {
            ASSERT_EQ(lines.row(i).begin, fresh.row(i).begin) << "step " << step << " row " << i;
            ASSERT_EQ(lines.row(i).end, fresh.row(i).end) << "step " << step << " row " << i;
        }
        TerminalSearch anew;
        anew.set_pattern("ab", false, text.Text());
        ASSERT_EQ(search.count(), anew.count()) << "step " << step;
        for (std::size_t i = 0; i < anew.count(); ++i)
            ASSERT_EQ(search.hit(i), anew.hit(i)) << "step " << step;
    }
};

} // namespace

TEST(TerminalLines, areAfterAnyEditsWhatAFreshLayoutGives) {
    std::mt19937 random(7);
    const auto up_to = [&random](std::size_t most) {
        return static_cast<std::size_t>(random() % (most + 1));
    };
    Edited edited;
    const auto piece = [&] {
        std::string bytes;
        for (std::size_t left = up_to(40); left > 0; --left) bytes += "aAbB xyz\r\n\t\b\x01\xfc"[up_to(13)];
        return bytes;
    };
    for (int step = 0; step < 20'000; ++step) {
        RichTextBox& text = edited.text;
        switch (up_to(9)) {
        case 0: text.remove_front(up_to(std::min<std::size_t>(text.length(), 60))); break;
        case 1:
            text.select(text.length() - std::min<std::size_t>(text.length(), 1), 1);
            text.set_SelText(piece());
            break;
        case 2:
            text.select(up_to(text.length()), up_to(20));
            text.set_SelText(piece());
            break;
        default: text.append(piece());
        }
        if (text.length() > 3000) text.remove_front(2500);
        if (step % 997 == 0) edited.lines.set_columns(20 + static_cast<int>(up_to(60)), text.Text());
        ASSERT_NO_FATAL_FAILURE(edited.expect_fresh(step));
    }
}

TEST(TerminalLines, findTheRowOfEachCharacter) {
    TerminalLines lines;
    const std::string text = "eins\r\n" + std::string(100, 'x') + "\r\n\r\nende";
    lines.set_columns(30, text);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        for (std::size_t at = lines.row(i).begin; at < lines.row(i).end; ++at) EXPECT_EQ(lines.row_of(at), i);
    }
    EXPECT_EQ(lines.row_of(text.size()), lines.size() - 1);
    EXPECT_EQ(lines.size(), 7U); // one, four of the long line, an empty one, the last
}

TEST(TerminalLines, ofHalfAMillionCharactersEachOnItsOwnStayBounded) {
    TerminalLines lines;
    RichTextBox text;
    text.on_edit = [&](const RichTextBox::Edit& edit) {
        lines.edited(text.Text(), edit.position, edit.removed, edit.inserted.size());
    };
    std::string block;
    for (int i = 0; i < 10'000; ++i) block += "\n";
    for (int i = 0; i < 200; ++i) {
        if (text.length() > 550'000) text.remove_front(49'999);
        text.append(block);
    }
    EXPECT_LE(lines.size(), text.length() + 1);
    EXPECT_LE(text.length(), 560'000U);
}

TEST(TerminalSearch, stepsThroughItsPlacesAndAroundTheEnds) {
    TerminalSearch search;
    search.set_pattern("OK", false, "ok, Ok, oK");
    EXPECT_EQ(search.count(), 3U);
    EXPECT_EQ(search.next(), 0U);
    EXPECT_EQ(search.next(), 1U);
    EXPECT_EQ(search.next(), 2U);
    EXPECT_EQ(search.next(), 0U);
    EXPECT_EQ(search.previous(), 2U);
    search.set_pattern("OK", true, "ok, Ok, oK");
    EXPECT_EQ(search.count(), 0U);
    EXPECT_FALSE(search.next());
}

TEST(TerminalSearch, ignoresTheCaseOfUmlautsToo) {
    TerminalSearch search;
    search.set_pattern("\xfc", false, "\xdc und \xfc"); // Ü und ü
    EXPECT_EQ(search.count(), 2U);
}

} // namespace velorn::test
