#include "runtime/number_picture.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace velorn {
namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();

TEST(Picture, aZeroIsADigitThatIsAlwaysThere) {
    EXPECT_EQ(format(7.0, "00"), "07");
    EXPECT_EQ(format(0.0, "00000000"), "00000000");
    EXPECT_EQ(format(4711.0, "0000000"), "0004711");
    EXPECT_EQ(format(0.5, "0.00"), "0,50");
}

TEST(Picture, aSharpIsADigitIfThereIsOne) {
    EXPECT_EQ(format(1234.5, "########0.00"), "1234,50");
    EXPECT_EQ(format(0.0, "########0.0"), "0,0");
    EXPECT_EQ(format(0.0, "###"), "");
    EXPECT_EQ(format(0.25, "#.##"), ",25");
    EXPECT_EQ(format(2.5, "0.0##"), "2,5");
    EXPECT_EQ(format(2.0, "0.##"), "2,");
}

TEST(Picture, aNumberTooLongIsNeverCut) {
    EXPECT_EQ(format(123456.0, "00"), "123456");
    EXPECT_EQ(format(123456.0, "0.0"), "123456,0");
    EXPECT_EQ(format(123.0, ".00"), "123,00");
}

TEST(Picture, literalsStandWhereTheyAre) {
    EXPECT_EQ(format(21.5, "0.0 °C"), "21,5 °C");
    EXPECT_EQ(format(5.0, "\"Nr. 0: \"00"), "Nr. 0: 05");
    EXPECT_EQ(format(5.0, "\\#0"), "#5");
    EXPECT_EQ(format(1234.0, "00:00"), "12:34");
    EXPECT_EQ(format(51234.0, "00:00"), "512:34");
    EXPECT_EQ(format(1.0, "\"offen"), "offen1");
    EXPECT_EQ(format(1.0, ""), "1");
}

TEST(Picture, aMinusSignStandsBeforeTheFirstCharacter) {
    EXPECT_EQ(format(-999.0, "#####0.00"), "-999,00");
    EXPECT_EQ(format(-3.0, "00"), "-03");
    EXPECT_EQ(format(-3.0, "\"T \"0"), "-T 3");
}

TEST(Picture, aRoundedZeroHasNoSign) {
    EXPECT_EQ(format(-0.004, "0.00"), "0,00");
    EXPECT_EQ(format(-0.0, "0.00"), "0,00");
    EXPECT_EQ(format(-0.005f, "0.00"), "-0,01");
}

TEST(Picture, roundsHalfAwayFromZero) {
    EXPECT_EQ(format(0.125, "0.00"), "0,13");
    EXPECT_EQ(format(-0.125, "0.00"), "-0,13");
    EXPECT_EQ(format(0.5, "0"), "1");
    EXPECT_EQ(format(2.5, "0"), "3");
    EXPECT_EQ(format(99.995, "0.00"), "100,00"); // 99.9950000000000045
    EXPECT_EQ(format(999.5, "000"), "1000");
}

TEST(Picture, roundsTheExactBinaryValue) {
    EXPECT_EQ(format(2.675, "0.00"), "2,67"); // 2.67499999999999982
    EXPECT_EQ(format(1.005, "0.00"), "1,00");
    EXPECT_EQ(format(std::nextafter(0.125, 0.0), "0.00"), "0,12");
    EXPECT_EQ(format(std::nextafter(0.5, 0.0), "0"), "0");
}

TEST(Picture, aFloatIsFirstTheShortestDecimalThatReadsBack) {
    EXPECT_EQ(format(2.675f, "0.00"), "2,68");
    EXPECT_EQ(format(1.005f, "0.00"), "1,01");
    EXPECT_EQ(format(0.1f, "0.00000000000"), "0,10000000000");
    EXPECT_EQ(format(2.6749995f, "0.00"), "2,67");
    EXPECT_EQ(format(1e10f, "0.0"), "10000000000,0");
    EXPECT_EQ(format(1.5e-7f, "0.00000000"), "0,00000015");
    EXPECT_EQ(format(-997.0f, "########0.00"), "-997,00");
    EXPECT_EQ(format(0.0f, "0.0"), "0,0");
}

TEST(Picture, hugeAndTinyNumbersAreWrittenOut) {
    EXPECT_EQ(format(1e300, "0.00").size(), 304U);
    EXPECT_EQ(format(std::numeric_limits<double>::max(), "########0.00").size(), 312U);
    EXPECT_EQ(format(-std::numeric_limits<float>::max(), "0").size(), 40U);
    EXPECT_EQ(format(5e-324, "0.00"), "0,00");
    EXPECT_EQ(format(std::numeric_limits<float>::denorm_min(), "0.00"), "0,00");
}

TEST(Picture, whatIsNoFiniteNumberIsShownAsSuch) {
    EXPECT_EQ(format(infinite, "0.00"), "1,#INF");
    EXPECT_EQ(format(-infinite, "0.00"), "-1,#INF");
    EXPECT_EQ(format(std::nan(""), "0.00"), "-1,#IND");
    EXPECT_EQ(format(std::nanf(""), "0.00"), "-1,#IND");
}

TEST(DatePicture, partsAreSpelledAsWide) {
    const DateTime moment{2026, 3, 5, 7, 8, 9, 0};
    EXPECT_EQ(format(moment, "dd.mm.yyyy hh:mm:ss"), "05.03.2026 07:08:09");
    EXPECT_EQ(format(moment, "d.m.yy h:n:s"), "5.3.26 7:8:9");
    EXPECT_EQ(format(moment, "yyyymmdd"), "20260305");
}

TEST(DatePicture, mIsTheMinuteBehindTheHourOrBeforeTheSecond) {
    const DateTime moment{2026, 3, 5, 7, 8, 9, 0};
    EXPECT_EQ(format(moment, "hh:mm"), "07:08");
    EXPECT_EQ(format(moment, "mm:ss"), "08:09");
    EXPECT_EQ(format(moment, "hh:nn mm"), "07:08 03");
    EXPECT_EQ(format(moment, "hhmm mm"), "0708 03");
}

TEST(Str, hasABlankWhereTheMinusSignWouldStand) {
    EXPECT_EQ(str(5), " 5");
    EXPECT_EQ(str(-5), "-5");
    EXPECT_EQ(str(0), " 0");
    EXPECT_EQ(str(1.5), " 1.5");
    EXPECT_EQ(str(0.5), " .5");
    EXPECT_EQ(str(-0.5), "-.5");
    EXPECT_EQ(str(2008), " 2008");
}

TEST(NumberText, isTheShortestFormOf15Digits) {
    EXPECT_EQ(number_text(19200.0), "19200");
    EXPECT_EQ(number_text(0.87), "0,87");
    EXPECT_EQ(number_text(0.1 + 0.2), "0,3");
    EXPECT_EQ(number_text(-1.5), "-1,5");
    EXPECT_EQ(number_text(-0.0), "0");
    EXPECT_EQ(number_text(123456789012345.0), "123456789012345");
    EXPECT_EQ(number_text(1e300), "1E+300");
}

TEST(NumberText, ofAFloatHas7Digits) {
    EXPECT_EQ(number_text(0.1f), "0,1");
    EXPECT_EQ(number_text(-999.0f), "-999");
    EXPECT_EQ(number_text(1.0f / 3), "0,3333333");
}

TEST(NumberOf, takesACommaOrAPoint) {
    EXPECT_EQ(number_of("0,87"), 0.87);
    EXPECT_EQ(number_of("0.87"), 0.87);
    EXPECT_EQ(number_of(",5"), 0.5);
    EXPECT_EQ(number_of("5,"), 5.0);
}

TEST(NumberOf, takesSignsBlanksAndExponents) {
    EXPECT_EQ(number_of("  -12 "), -12.0);
    EXPECT_EQ(number_of("+3"), 3.0);
    EXPECT_EQ(number_of("1,5E3"), 1500.0);
    EXPECT_EQ(number_of("1e-2"), 0.01);
    EXPECT_EQ(number_of("007"), 7.0);
}

TEST(NumberOf, refusesAnythingElse) {
    for (const std::string_view text : {"", "   ", "abc", "1.234,5", "1,2,3", "1 2", "12a", "--1", "+-1", "-",
                                        ",", ".", "1e", "e5", "0x10", "inf", "nan", "1\t", "1e+"}) {
        EXPECT_EQ(number_of(text), std::nullopt) << text;
    }
}

TEST(NumberOf, whatIsTooLargeIsInfiniteAndWhatIsTooSmallIsNothing) {
    const std::string zeros(400, '0');
    EXPECT_EQ(number_of("1e400"), infinite);
    EXPECT_EQ(number_of("-1E+400"), -infinite);
    EXPECT_EQ(number_of("1e-400"), 0.0);
    EXPECT_EQ(number_of('1' + zeros), infinite);
    EXPECT_EQ(number_of("0," + zeros + '1'), 0.0);
    EXPECT_EQ(number_of('1' + zeros + "e-10"), infinite);
    EXPECT_EQ(number_of("1e99999999999999999999"), infinite);
    EXPECT_EQ(number_of("1e-99999999999999999999"), 0.0);
    EXPECT_EQ(number_of("0e99999999999999999999"), 0.0);
}

TEST(NumberOf, readsBackWhatIsShown) {
    for (const double number : {0.87, -1234.5, 1e-5, 123456789012345.0, 1e300}) {
        EXPECT_EQ(number_of(number_text(number)), number);
    }
}

TEST(Val, goesAsFarAsTheNumberDoes) {
    EXPECT_EQ(val("12abc"), 12.0);
    EXPECT_EQ(val("12,5"), 12.0);
    EXPECT_EQ(val("12.5.3"), 12.5);
    EXPECT_EQ(val("-3"), -3.0);
    EXPECT_EQ(val("1e3"), 1000.0);
    EXPECT_EQ(val("1e"), 1.0);
}

TEST(Val, skipsBlanks) { EXPECT_EQ(val("  1 2 3 x"), 123.0); }

TEST(Val, isZeroWhereNoNumberBegins) {
    for (const std::string_view text : {"", "abc", "-", ".", "x1"}) EXPECT_EQ(val(text), 0.0) << text;
}

TEST(RoundToEven, takesTheEvenNeighbourOfAHalf) {
    EXPECT_EQ(round_to_even(0.5), 0.0);
    EXPECT_EQ(round_to_even(1.5), 2.0);
    EXPECT_EQ(round_to_even(2.5), 2.0);
    EXPECT_EQ(round_to_even(-2.5), -2.0);
    EXPECT_EQ(round_to_even(2.51), 3.0);
}

} // namespace
} // namespace velorn
