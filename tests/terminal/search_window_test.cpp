#include "terminal/search_window.h"

#include <gtest/gtest.h>
#include <random>
#include <string>

namespace velorn::test {

namespace {

std::size_t plain_find(const std::string& text, Keyword keyword) {
    const std::size_t at = text.find(text_of(keyword));
    return at == std::string::npos ? 0 : at + 1;
}

void expect_all_as_in(const SearchWindow& window, const std::string& text) {
    ASSERT_EQ(window.text(), text);
    for (std::size_t k = 0; k < keyword_count; ++k) {
        const auto keyword = static_cast<Keyword>(k);
        ASSERT_EQ(window.find(keyword), plain_find(text, keyword)) << text_of(keyword) << " in " << text;
    }
}

} // namespace

TEST(SearchWindow, findsWhatAPlainSearchFindsAfterAnyAppendsClearsAndCuts) {
    std::mt19937 random(1);
    const auto below = [&](std::size_t n) { return static_cast<std::size_t>(random() % n); };
    SearchWindow window;
    std::string text;
    for (int i = 0; i < 30'000; ++i) {
        switch (below(12)) {
        case 0:
            window.clear();
            text.clear();
            break;
        case 1: {
            const std::size_t position = 1 + below(text.size() + 1);
            window.cut_to(position);
            text.erase(0, position - 1);
            break;
        }
        case 2: {
            const std::size_t count = below(200);
            window.keep_last(count);
            if (text.size() > count) text.erase(0, text.size() - count);
            break;
        }
        default: {
            const std::string_view word = text_of(static_cast<Keyword>(below(keyword_count)));
            const std::size_t from = below(3) == 0 ? below(word.size()) : 0;
            const std::string piece(word.substr(from, below(3) == 0 ? below(word.size()) : word.size()));
            window.append(piece);
            text += piece;
        }
        }
        // Not after each step: a question may put right what the next step would have shown.
        if (below(4) == 0) expect_all_as_in(window, text);
        if (HasFatalFailure()) return;
    }
}

TEST(SearchWindow, staysRightWhenTheCutPartIsRemovedFromMemory) {
    SearchWindow window;
    std::string text;
    const std::string block = std::string(49'990, 'x') + "OKK CONNECT";
    for (int i = 0; i < 30; ++i) {
        window.append(block);
        text += block;
        if (text.size() > 50'000) {
            window.cut_to(text.size() - 49'000);
            text.erase(0, text.size() - 49'001);
        }
        expect_all_as_in(window, text);
    }
}

TEST(SearchWindow, findsOverlappingWordsEachForItself) {
    SearchWindow window;
    window.append("xOKK");
    EXPECT_EQ(window.find(Keyword::ok), 2U);
    EXPECT_EQ(window.find(Keyword::okk), 2U);
}

TEST(SearchWindow, findsTheFirstOfManyDotsAndTheDotsBehindTwoBlanks) {
    SearchWindow window;
    window.append("ab  ");
    window.append(std::string(40, '.'));
    EXPECT_EQ(window.find(Keyword::dots_34), 5U);
    EXPECT_EQ(window.find(Keyword::dots_32), 3U);
    window.cut_to(6);
    EXPECT_EQ(window.find(Keyword::dots_34), 1U);
    EXPECT_EQ(window.find(Keyword::dots_32), 0U);
    window.cut_to(7);
    EXPECT_EQ(window.find(Keyword::dots_34), 0U);
}

TEST(SearchWindow, findsAWordThatCameByteByByte) {
    SearchWindow window;
    for (const char c : std::string("CONNECT")) {
        EXPECT_EQ(window.find(Keyword::connect), 0U);
        window.append({&c, 1});
    }
    EXPECT_EQ(window.find(Keyword::connect), 1U);
}

TEST(SearchWindow, takesNoWordWhoseBeginningWasCutAway) {
    SearchWindow window;
    window.append("CONN");
    window.cut_to(2);
    window.append("ECT");
    EXPECT_EQ(window.find(Keyword::connect), 0U);

    window.append("CON");
    window.clear();
    window.append("NECT");
    EXPECT_EQ(window.find(Keyword::connect), 0U);
}

TEST(SearchWindow, findsTheSecondWhenTheFirstIsCutAway) {
    SearchWindow window;
    window.append("OK..OK..OK");
    window.cut_to(2);
    EXPECT_EQ(window.find(Keyword::ok), 4U);
    window.keep_last(2);
    EXPECT_EQ(window.find(Keyword::ok), 1U);
    window.keep_last(1);
    EXPECT_EQ(window.find(Keyword::ok), 0U);
}

TEST(SearchWindow, findsTheSecondOfThreeThoughNobodyAskedBeforeTheThirdCame) {
    SearchWindow window;
    window.append("OK..OK");
    window.cut_to(2);
    window.append("..OK");
    EXPECT_EQ(window.find(Keyword::ok), 4U);
}

TEST(SearchWindow, tellsCapitalsFromSmallLetters) {
    SearchWindow window;
    window.append("connect *fernbed ok");
    EXPECT_EQ(window.find(Keyword::connect), 0U);
    EXPECT_EQ(window.find(Keyword::fernbed), 0U);
    EXPECT_EQ(window.find(Keyword::ok), 0U);
}

TEST(SearchWindow, holdsAnyByteNulIncluded) {
    SearchWindow window;
    window.append(std::string_view("\0\xff<\0", 4));
    EXPECT_EQ(window.length(), 4U);
    EXPECT_EQ(window.find(Keyword::sms_prompt), 3U);
}

} // namespace velorn::test
