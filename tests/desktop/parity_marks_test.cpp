#include "desktop/parity_marks.h"

#include <gtest/gtest.h>

namespace velorn {

namespace {

using namespace std::string_literals;

std::string decoded(ParityMarks& marks, std::string_view bytes) {
    std::string out;
    marks.decode(bytes, out);
    return out;
}

} // namespace

TEST(ParityMarks, withoutReplacementAllBytesPassAsTheyAre) {
    ParityMarks marks;
    EXPECT_EQ(decoded(marks, "\xFF\xFF\xFF\0x"s), "\xFF\xFF\xFF\0x"s);
}

TEST(ParityMarks, aMarkedByteIsReplacedAndADoubledFfIsOne) {
    ParityMarks marks;
    marks.set_replacement('?');
    EXPECT_EQ(decoded(marks, "a\xFF\0bc\xFF\xFF\xFF\xFFz"s), "a?c\xFF\xFFz"s);
}

TEST(ParityMarks, aMarkMaySpreadOverSeveralReads) {
    ParityMarks marks;
    marks.set_replacement('?');
    std::string out;
    for (const char byte : "x\xFF\0\xFFy\xFF\xFF"s) marks.decode({&byte, 1}, out);
    EXPECT_EQ(out, "x?y\xFF"s);
}

TEST(ParityMarks, everyByteValueSurvivesTheDoubling) {
    std::string all, marked;
    for (int i = 0; i < 256; ++i) {
        all += static_cast<char>(i);
        marked += i == 255 ? "\xFF\xFF"s : std::string(1, static_cast<char>(i));
    }
    ParityMarks marks;
    marks.set_replacement('?');
    EXPECT_EQ(decoded(marks, marked), all);
}

TEST(ParityMarks, switchingOffForgetsHalfAMark) {
    ParityMarks marks;
    marks.set_replacement('?');
    EXPECT_EQ(decoded(marks, "\xFF"s), "");
    marks.set_replacement(std::nullopt);
    EXPECT_EQ(decoded(marks, "\0b"s), "\0b"s);
}

} // namespace velorn
