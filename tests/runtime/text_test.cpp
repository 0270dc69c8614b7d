#include "runtime/text.h"

#include <gtest/gtest.h>

namespace velorn {
namespace {

std::string one(unsigned byte) { return std::string(1, static_cast<char>(byte)); }

TEST(Text, allBytesSurviveTheWayToUnicodeAndBack) {
    for (unsigned byte = 0; byte < 256; ++byte) {
        EXPECT_EQ(cp1252_of(unicode_of(static_cast<unsigned char>(byte))), byte);
        EXPECT_EQ(cp1252_from_utf8(utf8_from_cp1252(one(byte))), one(byte)) << byte;
    }
}

TEST(Text, noTwoBytesShareACharacter) {
    for (unsigned a = 0; a < 256; ++a) {
        for (unsigned b = 0; b < a; ++b) EXPECT_NE(utf8_from_cp1252(one(a)), utf8_from_cp1252(one(b)));
    }
}

TEST(Text, theFiveOpenBytesAreControlCharactersOfTheSameNumber) {
    for (const char byte : std::string_view("\x81\x8D\x8F\x90\x9D")) {
        EXPECT_EQ(unicode_of(static_cast<unsigned char>(byte)), static_cast<unsigned char>(byte));
    }
}

TEST(Text, letterSignsAndQuotesHaveTheirUnicodeSpelling) {
    EXPECT_EQ(utf8_from_cp1252("\xC4\xD6\xDC\xE4\xF6\xFC\xDF\xB0\x80\x84\x93\x96"), "ÄÖÜäöüß°€„“–");
}

TEST(Text, aLiteralIsCp1252WhenItIsCompiled) {
    static_assert("Anschluß"_w == std::string_view("Anschlu\xDF"));
    static_assert("100 € – 20 °C"_w == std::string_view("100 \x80 \x96 20 \xB0"
                                                        "C"));
    static_assert(""_w.empty());
}

TEST(Text, charactersThatCp1252LacksAreRefused) {
    EXPECT_EQ(cp1252_from_utf8("Ω"), std::nullopt);
    EXPECT_EQ(cp1252_from_utf8("ł"), std::nullopt);
    EXPECT_EQ(cp1252_from_utf8("grün 😀"), std::nullopt);
    EXPECT_EQ(cp1252_from_utf8("\xC2\x80"), std::nullopt); // 80 hex is the euro's byte, not its own character
}

TEST(Text, invalidUtf8IsRefused) {
    for (const std::string_view broken :
         {"\x80", "a\xBF", "\xC3", "\xC3(", "\xE2\x82", "\xE2(\xAC", "\xE2\x82(", "\xFF", "\xF8\x88\x80\x80",
          "\xC0\xAF", "\xC1\xBF", "\xE0\x80\xAF", "\xE0\x83\xBC", "\xED\xA0\x80", "\xF0\x9F\x98"}) {
        EXPECT_EQ(cp1252_from_utf8(broken), std::nullopt) << ::testing::PrintToString(broken);
    }
}

TEST(Text, aZeroByteIsACharacterLikeAnyOther) {
    const std::string text("a\0b", 3);
    EXPECT_EQ(utf8_from_cp1252(text), text);
    EXPECT_EQ(cp1252_from_utf8(text), text);
}

TEST(Umlauts, sixLettersChangeAndAllOtherBytesStay) {
    for (unsigned byte = 0; byte < 256; ++byte) {
        std::string text = one(byte);
        umlauts_from_cp437(text);
        const std::string expected = byte == 129   ? one(252)
                                     : byte == 132 ? one(228)
                                     : byte == 142 ? one(196)
                                     : byte == 148 ? one(246)
                                     : byte == 153 ? one(214)
                                     : byte == 154 ? one(220)
                                                   : one(byte);
        EXPECT_EQ(text, expected) << byte;
    }
}

TEST(Umlauts, everyOccurrenceChangesInPlace) {
    std::string text = "R\x81"
                       "cklauf \x94\x94 Stra\xE1"
                       "e";
    umlauts_from_cp437(text);
    EXPECT_EQ(text, "R\xFC"
                    "cklauf \xF6\xF6 Stra\xE1"
                    "e");
}

TEST(Case, umlautsHaveTwo) {
    EXPECT_EQ(to_upper("äöü éàñ šœžÿ"_w), "ÄÖÜ ÉÀÑ ŠŒŽŸ"_w);
    EXPECT_EQ(to_lower("ÄÖÜ ÉÀÑ ŠŒŽŸ"_w), "äöü éàñ šœžÿ"_w);
}

TEST(Case, signsAndSharpSHaveNone) {
    for (const char c : "ß×÷°µ§12[]@`{}"_w) {
        EXPECT_EQ(to_upper(static_cast<unsigned char>(c)), static_cast<unsigned char>(c));
        EXPECT_EQ(to_lower(static_cast<unsigned char>(c)), static_cast<unsigned char>(c));
    }
}

TEST(Case, lowerAndUpperArePartnersForEveryByte) {
    for (unsigned i = 0; i < 256; ++i) {
        const auto byte = static_cast<unsigned char>(i);
        EXPECT_TRUE(to_upper(byte) == byte || to_lower(to_upper(byte)) == byte) << i;
        EXPECT_TRUE(to_lower(byte) == byte || to_upper(to_lower(byte)) == byte) << i;
    }
}

TEST(Case, isIgnoredByLettersAndNotByLength) {
    EXPECT_TRUE(equal_ignoring_case("Übergabe.LOG"_w, "üBERGABE.log"_w));
    EXPECT_FALSE(equal_ignoring_case("log", "logs"));
    EXPECT_FALSE(equal_ignoring_case("Maß"_w, "MASS"_w));
}

TEST(Instr, countsFromOneAndGivesZeroForNone) {
    EXPECT_EQ(instr("CONNECT 9600", "CONNECT"), 1U);
    EXPECT_EQ(instr("abcabc", "c"), 3U);
    EXPECT_EQ(instr("abcabc", "c", 4), 6U);
    EXPECT_EQ(instr("abc", "C"), 0U);
    EXPECT_EQ(instr("", "a"), 0U);
}

TEST(Instr, beyondTheTextFindsNothing) {
    EXPECT_EQ(instr("abc", "c", 5), 0U);
    EXPECT_EQ(instr("abc", "a", 0), 0U);
    EXPECT_EQ(instr("abc", "c", std::string_view::npos), 0U);
}

TEST(Instr, findsAnEmptyTextWhereItBegins) {
    EXPECT_EQ(instr("abc", ""), 1U);
    EXPECT_EQ(instr("abc", "", 3), 3U);
}

} // namespace
} // namespace velorn
