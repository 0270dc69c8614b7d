#include "runtime/calendar.h"
#include "runtime/text.h"
#include "runtime/variant.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

namespace velorn {
namespace {

using namespace std::string_literals;
using Tag = Variant::Tag;

std::string bytes_of(const Variant& value) {
    std::string bytes;
    encode(value, bytes);
    return bytes;
}

Variant short_of(int number) { return static_cast<std::int16_t>(number); }

struct Sample {
    Tag tag;
    Variant value;
    std::string bytes;
};

const std::vector<Sample>& samples() {
    static const std::vector<Sample> all = {
        {Tag::empty, Variant(), "\x00\x00"s},
        {Tag::null, Null{}, "\x01\x00"s},
        {Tag::i16, short_of(-2), "\x02\x00\xFE\xFF"s},
        {Tag::i32, 0x12345678, "\x03\x00\x78\x56\x34\x12"s},
        {Tag::f32, 1.0f, "\x04\x00\x00\x00\x80\x3F"s},
        {Tag::f64, 0.87, "\x05\x00\xD7\xA3\x70\x3D\x0A\xD7\xEB\x3F"s},
        {Tag::currency, Currency{12345}, "\x06\x00\x39\x30\x00\x00\x00\x00\x00\x00"s},
        {Tag::date, DateSerial{-1.25}, "\x07\x00\x00\x00\x00\x00\x00\x00\xF4\xBF"s},
        {Tag::string, "e1",
         "\x08\x00\x02\x00"
         "e1"s},
        {Tag::boolean, true, "\x0B\x00\xFF\xFF"s},
    };
    return all;
}

TEST(VariantBytes, everyTagHasItsOwn) {
    for (const Sample& sample : samples()) {
        EXPECT_EQ(sample.value.tag(), sample.tag);
        EXPECT_EQ(bytes_of(sample.value), sample.bytes) << static_cast<int>(sample.tag);
    }
    EXPECT_EQ(bytes_of(false), "\x0B\x00\x00\x00"s);
    EXPECT_EQ(bytes_of(""), "\x08\x00\x00\x00"s);
}

TEST(VariantBytes, areReadBackAsTheSameValueAndTag) {
    for (const Sample& sample : samples()) {
        std::size_t position = 0;
        Variant value = "old";
        EXPECT_EQ(decode(sample.bytes, position, value), Decoded::complete);
        EXPECT_TRUE(identical(value, sample.value)) << static_cast<int>(sample.tag);
        EXPECT_EQ(position, sample.bytes.size());
    }
}

TEST(VariantBytes, valuesStandOneBehindTheOther) {
    std::string file;
    for (const Sample& sample : samples()) encode(sample.value, file);
    std::size_t position = 0;
    for (const Sample& sample : samples()) {
        Variant value;
        ASSERT_EQ(decode(file, position, value), Decoded::complete);
        EXPECT_TRUE(identical(value, sample.value));
    }
    EXPECT_EQ(position, file.size());
}

TEST(VariantBytes, cutAnywhereTheyReadAsEmptyAndStandAtTheEnd) {
    for (const Sample& sample : samples()) {
        for (std::size_t length = 0; length < sample.bytes.size(); ++length) {
            const std::string cut = "xxx" + sample.bytes.substr(0, length);
            std::size_t position = 3;
            Variant value = "old";
            EXPECT_EQ(decode(cut, position, value), Decoded::cut);
            EXPECT_TRUE(value.empty());
            EXPECT_EQ(position, cut.size());
        }
    }
}

TEST(VariantBytes, beyondTheEndReadAsEmpty) {
    std::size_t position = 9;
    Variant value = "old";
    EXPECT_EQ(decode("abc", position, value), Decoded::cut);
    EXPECT_TRUE(value.empty());
    EXPECT_EQ(position, 3U);
}

TEST(VariantBytes, anUnknownTagChangesNothing) {
    for (const unsigned tag : {9U, 10U, 12U, 17U, 0x0102U, 0x0200U, 0xFFFFU}) {
        const std::string bytes = {'x', static_cast<char>(tag & 0xFFU), static_cast<char>(tag >> 8U)};
        std::size_t position = 1;
        Variant value = "old";
        EXPECT_EQ(decode(bytes, position, value), Decoded::unknown_tag) << tag;
        EXPECT_EQ(value.text(), "old");
        EXPECT_EQ(position, 1U);
    }
}

TEST(VariantBytes, aBooleanThatIsNeitherReadsAsTrue) {
    std::size_t position = 0;
    Variant value;
    EXPECT_EQ(decode("\x0B\x00\x01\x00"s, position, value), Decoded::complete);
    EXPECT_TRUE(identical(value, true));
}

TEST(VariantBytes, aTextMayHoldAnyByteAndBeEmpty) {
    const std::string text = "a\0\xFF\xFC"s;
    std::size_t position = 0;
    Variant value;
    EXPECT_EQ(decode(bytes_of(text), position, value), Decoded::complete);
    EXPECT_TRUE(identical(value, text));
}

TEST(VariantBytes, aTextIsCutAtWhatItsLengthFieldHolds) {
    EXPECT_EQ(bytes_of(std::string(65'535, 'a')).size(), 65'539U);
    const std::string bytes = bytes_of(std::string(65'540, 'a'));
    EXPECT_EQ(bytes.size(), 65'539U);
    EXPECT_EQ(bytes.substr(0, 4), "\x08\x00\xFF\xFF"s);
}

TEST(VariantBytes, plainShortsStandBetweenWithoutATag) {
    std::string bytes;
    encode_i16(-1, bytes);
    encode_i16(0x0102, bytes);
    EXPECT_EQ(bytes, "\xFF\xFF\x02\x01"s);
    std::size_t position = 2;
    std::int16_t number = 0;
    EXPECT_EQ(decode_i16(bytes, position, number), Decoded::complete);
    EXPECT_EQ(number, 0x0102);
    EXPECT_EQ(position, 4U);
}

TEST(VariantBytes, aPlainShortThatIsCutKeepsWhatItHeld) {
    std::size_t position = 0;
    std::int16_t number = 7;
    EXPECT_EQ(decode_i16("x", position, number), Decoded::cut);
    EXPECT_EQ(number, 7);
    EXPECT_EQ(position, 1U);
}

TEST(VariantNumber, isWhatTheValueCountsAs) {
    EXPECT_EQ(Variant().number(), 0.0);
    EXPECT_EQ(Variant(Null{}).number(), 0.0);
    EXPECT_EQ(Variant(true).number(), -1.0);
    EXPECT_EQ(Variant(Currency{12345}).number(), 1.2345);
    EXPECT_EQ(Variant(DateSerial{2.5}).number(), 2.5);
    EXPECT_EQ(Variant("0,87").number(), 0.87);
    EXPECT_EQ(Variant(" 0.87 ").number(), 0.87);
    EXPECT_EQ(Variant("c:\\").number(), 0.0);
}

TEST(VariantNumber, ofADamagedFileIsZeroWhereItIsNone) {
    EXPECT_EQ(Variant(std::nan("")).number(), 0.0);
    EXPECT_TRUE(Variant(std::nan("")) < Variant(0.75));
    EXPECT_EQ(Variant(std::nan("")).as_f64().failure().number, 6);
}

TEST(VariantConversion, roundsHalfToEven) {
    EXPECT_EQ(Variant(2.5).as_i16().value(), 2);
    EXPECT_EQ(Variant("3,5").as_i16().value(), 4);
    EXPECT_EQ(Variant(-0.5f).as_i32().value(), 0);
    EXPECT_EQ(Variant().as_i16().value(), 0);
    EXPECT_EQ(Variant(true).as_i16().value(), -1);
}

TEST(VariantConversion, refusesWhatDoesNotFit) {
    EXPECT_EQ(Variant(32767.4).as_i16().value(), 32767);
    EXPECT_EQ(Variant(32767.5).as_i16().failure().number, 6);
    EXPECT_EQ(Variant(-32769).as_i16().failure().number, 6);
    EXPECT_EQ(Variant(2147483648.0).as_i32().failure().number, 6);
    EXPECT_EQ(Variant("1e400").as_f64().failure().number, 6);
}

TEST(VariantConversion, refusesWhatIsNoNumber) {
    EXPECT_EQ(Variant("abc").as_f64().failure().number, 13);
    EXPECT_EQ(Variant("").as_i16().failure().number, 13);
    EXPECT_EQ(Variant(Null{}).as_i32().failure().number, 13);
}

TEST(VariantText, isGerman) {
    EXPECT_EQ(Variant(0.87).text(), "0,87");
    EXPECT_EQ(Variant(0.1f).text(), "0,1");
    EXPECT_EQ(Variant(-19200).text(), "-19200");
    EXPECT_EQ(Variant(Currency{-12345}).text(), "-1,2345");
    EXPECT_EQ(Variant(serial_of({2026, 11, 15, 11, 28, 0, 0})).text(), "15.11.2026 11:28:00");
    EXPECT_EQ(Variant(true).text(), "Wahr");
    EXPECT_EQ(Variant(false).text(), "Falsch");
    EXPECT_EQ(Variant(Null{}).text() + Variant().text(), "");
}

TEST(VariantText, ofADateOutsideTheCalendarIsItsNumber) {
    EXPECT_EQ(Variant(DateSerial{4e6}).text(), "4000000");
}

TEST(VariantComparison, goesByNumberAcrossTags) {
    EXPECT_TRUE(Variant("19") < Variant(20));
    EXPECT_TRUE(Variant("20") == Variant(short_of(20)));
    EXPECT_TRUE(Variant(0.5f) == Variant("0,5"));
    EXPECT_TRUE(Variant(true) == Variant(-1));
    EXPECT_TRUE(Variant("keine Zahl") == Variant(0));
    EXPECT_TRUE(Variant() == Variant(Null{}));
    EXPECT_TRUE(Variant(Currency{15000}) > Variant(1));
}

TEST(VariantComparison, ofTwoTextsGoesByText) {
    EXPECT_FALSE(Variant("1,0") == Variant("1"));
    EXPECT_TRUE(Variant("10") < Variant("9"));
    EXPECT_TRUE(Variant("A") == Variant("A"));
}

TEST(VariantComparison, sameNumberIsNotIdentical) {
    EXPECT_FALSE(identical(Variant("1"), Variant(1)));
    EXPECT_FALSE(identical(Variant(short_of(1)), Variant(1)));
    EXPECT_TRUE(identical(Variant(1), Variant(1)));
}

void expect_sum(const Variant& a, const Variant& b, const Variant& sum) {
    for (const Result<Variant>& result : {add(a, b), add(b, a)}) {
        ASSERT_TRUE(result);
        EXPECT_TRUE(identical(*result, sum)) << result->text() << " instead of " << sum.text();
    }
}

TEST(VariantArithmetic, takesTheWiderTag) {
    expect_sum(short_of(1), short_of(2), short_of(3));
    expect_sum(short_of(1), 2, 3);
    expect_sum(1, Currency{5000}, Currency{15000});
    expect_sum(Currency{5000}, 1.5f, 2.0f);
    expect_sum(1.5f, 0.25, 1.75);
    expect_sum(Variant(), short_of(4), short_of(4));
    expect_sum(true, short_of(4), short_of(3));
}

TEST(VariantArithmetic, textsAndDatesCountAsNumbers) {
    expect_sum("1,5", short_of(1), 2.5);
    expect_sum("abc", short_of(1), 1.0);
    expect_sum(DateSerial{46341.5}, short_of(1), 46342.5);
}

TEST(VariantArithmetic, growsWhereItDoesNotFit) {
    expect_sum(short_of(32767), short_of(1), 32768);
    expect_sum(std::numeric_limits<std::int32_t>::max(), 1, 2147483648.0);
    expect_sum(std::numeric_limits<float>::max(), std::numeric_limits<float>::max(),
               2.0 * static_cast<double>(std::numeric_limits<float>::max()));
    EXPECT_TRUE(identical(multiply(short_of(300), short_of(300)).value(), 90'000));
    const Currency largest{std::numeric_limits<std::int64_t>::max()};
    EXPECT_EQ(add(Variant(largest), largest).value().tag(), Tag::f64);
}

TEST(VariantArithmetic, subtractsAndMultiplies) {
    EXPECT_TRUE(identical(subtract(short_of(1), 3).value(), -2));
    EXPECT_TRUE(identical(multiply(Variant("0,5"), 3).value(), 1.5));
    EXPECT_TRUE(identical(multiply(Currency{15000}, short_of(2)).value(), Currency{30000}));
}

TEST(VariantArithmetic, dividesIntoADouble) {
    EXPECT_TRUE(identical(divide(short_of(6), short_of(4)).value(), 1.5));
    EXPECT_EQ(divide(Variant(1), 0).failure().number, 11);
    EXPECT_EQ(divide(Variant(1), "abc").failure().number, 11);
    EXPECT_EQ(divide(Variant(), Variant()).failure().number, 11);
}

TEST(VariantArithmetic, aNullMakesNull) {
    EXPECT_EQ(add(Variant(Null{}), 1).value().tag(), Tag::null);
    EXPECT_EQ(multiply(Variant("1"), Null{}).value().tag(), Tag::null);
    EXPECT_EQ(divide(Variant(Null{}), 0).value().tag(), Tag::null);
}

TEST(VariantArithmetic, anOverflowIsAFailure) {
    EXPECT_EQ(multiply(Variant(1e300), 1e300).failure().number, 6);
    EXPECT_EQ(divide(Variant(1e300), 1e-300).failure().number, 6);
    EXPECT_EQ(subtract(Variant(-1.7e308), 1.7e308).failure().number, 6);
}

} // namespace
} // namespace velorn
