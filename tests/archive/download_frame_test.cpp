#include "archive/download_frame.h"

#include <gtest/gtest.h>

namespace velorn::test {

TEST(ValueField, isANumberOrTheControllersSignForNone) {
    EXPECT_EQ(value_of_field("    12,5"), 12.5F);
    EXPECT_EQ(value_of_field("   -0.25"), -0.25F);
    EXPECT_EQ(value_of_field(" 1,5E+03"), 1500.0F);
    EXPECT_EQ(value_of_field("     ***"), -999.0F);
    for (const char* bad : {"        ", "abc     ", "1,2,3   ", "12 5    ", " 1,0E+99", "--1     "})
        EXPECT_FALSE(value_of_field(bad)) << bad;
}

TEST(InitialisationFrame, hasACountOfTwoOrThreeDigits) {
    const auto frame = [](const std::string& count, int tracks) {
        std::string text = count + count;
        for (int t = 0; t < tracks; ++t) text += "kW   kW   ";
        for (int t = 0; t < tracks; ++t) text += "abcdefghijklmnabcdefghijklmn";
        return text;
    };
    EXPECT_EQ(take_initialisation(frame("60", 60), 150)->tracks, 60);
    EXPECT_EQ(take_initialisation(frame("100", 100), 150)->tracks, 100);
    EXPECT_EQ(take_initialisation(frame("060", 60), 150)->tracks, 60);
    EXPECT_EQ(take_initialisation(frame("60", 60), 30)->tracks, 30);
    EXPECT_FALSE(take_initialisation("0304", 30));
    EXPECT_FALSE(take_initialisation(" 1" + frame("01", 1).substr(2), 30)) << "the same number, another text";
    EXPECT_FALSE(take_initialisation("", 30));
    std::string garbled = frame("02", 2);
    garbled[7] = 'x';
    EXPECT_FALSE(take_initialisation(garbled, 30));
}

} // namespace velorn::test
