// What turns the mirrored screen's attributes and switches off again, and what leaves them.
#include "support/screen_rig.h"

#include <gtest/gtest.h>

namespace velorn::test {

namespace {

using namespace std::string_literals;

} // namespace

TEST(ScreenAttributes, keepColouringCellsUntilBlockInverseIsRemoved) {
    ScreenRig r;
    r.feed("\x1b\x1fmA\x1b\x1em");
    for (const std::string& other : {"B"s, "\x1a"s, "\x1e"s, "\x1bG4"s, "\x1b@\x1bx"s, std::string(200, 'x'),
                                     "\x1b\x1bQ0000005000001"s, "\x1b.0"s, "\x1bG0\x1bY!!"s}) {
        r.feed(other);
        EXPECT_EQ(r.parser.state.rotgenutzt, 1) << other;
    }
    r.feed("x");
    EXPECT_EQ(r.parser.state.rotgenutzt, 0);
}

TEST(ScreenAttributes, ofACellGoWithABlankInABar) {
    for (const char attribute : "rIi"s) {
        ScreenRig r;
        r.f.schirm.set_attribute(5, 10, attribute);
        r.f.schirm.set_attribute(6, 10, attribute);
        r.parser.feed("\x1bI\x1b=)$ ", false);
        EXPECT_EQ(r.attribute(5, 10), ' ');
        EXPECT_EQ(r.mark(5, 10), 'a');
        EXPECT_EQ(r.attribute(6, 10), attribute);
    }
}

TEST(ScreenAttributes, ofBlockInverseAreGoneOnANewScreen) {
    ScreenRig r;
    r.put_cursor(5, 20);
    r.parser.feed("\x1bG0\x1bY$(\x1bG4", false);
    EXPECT_TRUE(r.parser.state.blockmarke);
    r.parser.feed("\x1b@\x1b", false);
    EXPECT_FALSE(r.parser.state.blockmarke);
}

TEST(ScreenAttributes, markNoCursorAnyMoreBehindAnythingButA3) {
    for (int code = 0; code < 256; ++code) {
        ScreenRig r;
        r.f.cursorinv = true;
        r.parser.feed("\x1b."s + static_cast<char>(code), false);
        EXPECT_EQ(r.f.cursorinv, code == '3') << code;
    }
}

} // namespace velorn::test
