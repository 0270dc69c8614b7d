#include "support/test_program.h"
#include "terminal/keys.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <utility>
#include <vector>

namespace velorn::test {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

struct Typing : TestProgram {
    std::vector<std::pair<int, std::string>> written; // ms since the stroke, what

    Typing() {
        start();
        begin_ = loop.now_ms();
        serial.on_write = [this](std::string_view bytes) {
            written.emplace_back(static_cast<int>(loop.now_ms() - begin_), bytes);
        };
    }
    bool down(int keycode, int shift = 0) { return program.keys.key_down(keycode, shift); }
    void type(char c) { program.keys.Form_KeyPress(static_cast<unsigned char>(c)); }

  private:
    std::int64_t begin_ = 0;
};

} // namespace

TEST(Keys, aTypedCharacterGoesOutAsItIs) {
    Typing p;
    for (const char c : std::string("aZ\r\x1b\xfc")) p.type(c);
    EXPECT_EQ(p.sent(), "aZ\r\x1b\xfc");
    EXPECT_EQ(p.terminal(), "");
}

TEST(Keys, typingNeedsAnOpenLink) {
    Typing p;
    press(p.frmTerminal.mnuOpen);
    p.module1.trace = true;
    p.type('a');
    p.down(65, 2);
    p.down(37);
    EXPECT_EQ(p.frmTerminal.txttest10.Text(), "") << "nothing was even tried";
    p.module1.tcpoffen = true;
    p.tcp.current = TcpState::connected;
    p.type('a');
    EXPECT_EQ(p.tcp.take_written(), "a");
}

TEST(Keys, typingPutsTheCaretAtTheEnd) {
    Typing p;
    p.frmTerminal.txtterm.set_Text("abc");
    p.frmTerminal.txtterm.select(1, 1);
    p.type('x');
    EXPECT_EQ(p.frmTerminal.txtterm.SelStart(), 3U);
    EXPECT_EQ(p.frmTerminal.txtterm.SelLength(), 0U);
}

TEST(Keys, anEGivesUpTheReadingOfParameterMemory) {
    for (const char c : {'E', 'e'}) {
        Typing p;
        int closed = 0;
        p.program.keys.batempfang_given_up.connect([&] { ++closed; });
        p.type(c);
        EXPECT_EQ(closed, 0);
        p.frmTerminal.batempfang = true;
        p.frmTerminal.txtbattload.Visible = true;
        p.type('x');
        EXPECT_TRUE(p.frmTerminal.batempfang);
        p.type(c);
        EXPECT_FALSE(p.frmTerminal.batempfang);
        EXPECT_FALSE(p.frmTerminal.txtbattload.Visible);
        EXPECT_EQ(closed, 1);
        EXPECT_EQ(p.sent(), std::string() + c + 'x' + c);
    }
}

TEST(Keys, mappedKeysSendTheControllersCodes) {
    struct Row {
        int keycode, shift;
        std::vector<std::string> sends;
        bool used_up;
    };
    const Row rows[] = {
        {65, 2, {"\x01"}, true},          // Ctrl+A
        {65, 0, {}, false},               // types "a" by itself
        {65, 3, {}, false},               //
        {8, 0, {"\x08"}, true},           // backspace
        {37, 0, {"\x08"}, false},         // left
        {38, 0, {"\x0b"}, false},         // up
        {39, 0, {"\x0c"}, false},         // right
        {40, 0, {"\x0a"}, false},         // down
        {37, 1, {}, false},               // with Shift it selects
        {40, 2, {}, false},               //
        {34, 0, {"\x1b", "F"}, false},    // Page Down
        {36, 0, {"\x1b", "H"}, false},    // Home
        {45, 0, {"\x1b", "\x0c"}, false}, // Insert
        {46, 0, {"\x1b", "\x08"}, false}, // Delete
        {34, 1, {}, false},               //
        {46, 2, {}, false},               //
        {33, 0, {}, false},               // Page Up
        {35, 0, {}, false},               // End
        {124, 0, {}, false},              // F13
    };
    for (const Row& row : rows) {
        Typing p;
        EXPECT_EQ(p.down(row.keycode, row.shift), row.used_up) << row.keycode << '/' << row.shift;
        std::vector<std::string> sends;
        for (const auto& [ms, text] : p.written) sends.push_back(text);
        EXPECT_EQ(sends, row.sends) << row.keycode << '/' << row.shift;
    }
}

TEST(Keys, arrowsCountDownTheRestOfAName) {
    Typing p;
    p.frmTerminal.tastenrest = 2;
    p.down(38);
    EXPECT_EQ(p.frmTerminal.tastenrest, 1);
    p.down(34);
    EXPECT_EQ(p.frmTerminal.tastenrest, 1);
    for (const int arrow : {37, 39, 40}) p.down(arrow);
    EXPECT_EQ(p.frmTerminal.tastenrest, 0);
    press(p.frmTerminal.mnuOpen);
    p.frmTerminal.tastenrest = 2;
    p.down(37);
    EXPECT_EQ(p.frmTerminal.tastenrest, 2);
}

TEST(Keys, anyKeyButVEndsTheVisualisation) {
    for (const int keycode : {65, 8, 13, 37, 112, 87}) {
        Typing p;
        p.settings.ftast[1] = "";
        p.frmTerminal.visaktiv = true;
        p.down(keycode, keycode == 65 ? 2 : 0);
        EXPECT_FALSE(p.frmTerminal.visaktiv) << keycode;
        EXPECT_EQ(p.frmTerminal.txttovis.Text.get(), "BEENDEN") << keycode;
    }
    Typing p;
    p.frmTerminal.visaktiv = true;
    p.down(86);
    EXPECT_TRUE(p.frmTerminal.visaktiv);
    EXPECT_EQ(p.frmTerminal.txttovis.Text.get(), "");
}

TEST(Keys, functionKeysSendTheirTextWithItsPauses) {
    struct Row {
        const char* stored;
        std::vector<std::pair<int, std::string>> sends;
    };
    const Row rows[] = {
        {"abc", {{0, "abc"}}},
        {"<01>lu<13>", {{0, "\x01"}, {100, "lu"}, {200, "\r"}}},
        {"<01>lu", {{0, "\x01"}, {100, "lu"}}},
        {"lu<13>", {{0, "lu"}, {100, "\r"}}},
        {"dropped<01>lu<13>dropped too", {{0, "\x01"}, {100, "lu"}, {200, "\r"}}},
        {"<01>", {{0, "\x01"}}},
        {"<13>", {{100, "\r"}}},
        {"<13><01>x", {{0, "\x01"}, {100, "x"}}},
        {"a<01>b<01>c", {{0, "\x01"}, {100, "b<01>c"}}},
        {"a<13>b<13>c", {{0, "a"}, {100, "\r"}}},
        {"<1>x", {{0, "<1>x"}}},
        {"", {}},
    };
    for (const Row& row : rows) {
        Typing p;
        p.settings.ftast[3] = row.stored;
        p.settings.altftast[3] = "other";
        const std::int64_t before = p.loop.now_ms();
        p.down(114);
        EXPECT_EQ(p.written, row.sends) << row.stored;
        if (row.sends.empty()) {
            EXPECT_EQ(p.loop.now_ms(), before) << "nothing to send, nothing to wait for";
        }
    }
}

TEST(Keys, eachFunctionKeyHasItsTwoTexts) {
    Typing p;
    for (std::size_t i = 1; i <= 12; ++i) {
        p.settings.ftast[i] = "f" + std::to_string(i);
        p.settings.altftast[i] = "c" + std::to_string(i);
    }
    for (int i = 1; i <= 12; ++i) {
        p.down(111 + i);
        p.down(111 + i, Keys::ctrl_key);
        p.down(111 + i, Keys::shift_key);
        const std::string n = std::to_string(i);
        EXPECT_EQ(p.sent(), "f" + n + "c" + n + "f" + n);
    }
}

TEST(Keys, aTextEditedDuringItsPauseIsSentAsItWas) {
    Typing p;
    p.settings.ftast[1] = "<01>old<13>";
    p.loop.post([&] { p.settings.ftast[1] = "new"; });
    p.down(112);
    EXPECT_EQ(p.sent(), "\x01old\r");
}

TEST(Keys, aFunctionKeySendsNothingMoreOnceTheProgramEnds) {
    Typing p;
    p.settings.ftast[1] = "<01>lu<13>";
    p.loop.post([&] { p.loop.end(); });
    p.down(112);
    EXPECT_THAT(p.written, ElementsAre(Pair(0, "\x01")));
}

} // namespace velorn::test
