#include "support/test_program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <utility>
#include <vector>

namespace velorn::test {

namespace {

using ::testing::ElementsAre;

constexpr const char* settings_files[] = {"\\einst.par", "\\datpfad.par", "\\lan.par"};

std::string content(const TestProgram& p, const char* name) {
    return p.files.content(std::string(TestProgram::folder) + name);
}

constexpr int f1 = 112;
constexpr int f2 = 113;

} // namespace

TEST(Waits, endInReverseOrderThroughAKeyAnExitAndItsBox) {
    TestProgram p;
    p.start();
    p.settings.ftast[1] = "<01>outer<13>";
    p.settings.ftast[2] = "<01>inner<13>";
    std::vector<std::string> written;
    p.serial.on_write = [&](std::string_view bytes) { written.emplace_back(bytes); };
    std::size_t deepest = 0;
    // The exit waits for the line, asks after ten seconds, and is called off; a key is hit behind its box.
    p.serial.set_unsent(5);
    p.loop.post([&] { press(p.frmTerminal.mnuFileExit); });
    p.dialogs.expect(
        "Daten", 34, Answer::abort,
        [&] {
            p.loop.post([&] { p.program.keys.key_down(f2, 0); });
            p.loop.post_at(p.loop.now_ms() + 150, [&] { deepest = p.loop.waiters().size(); });
        },
        5000);
    p.program.keys.key_down(f1, 0);
    EXPECT_THAT(written, ElementsAre("\x01", "\x01", "inner", "\r", "outer", "\r"));
    EXPECT_EQ(deepest, 3U) << "the first key, the box, the second key";
    EXPECT_TRUE(p.loop.waiters().empty());
    EXPECT_FALSE(p.loop.ended());
}

TEST(Waits, aWaitThatBeginsInsideAnotherReplacesItsCount) {
    TestProgram p;
    p.start();
    std::int64_t inner_over = 0;
    const std::int64_t begin = p.loop.now_ms();
    p.loop.post([&] {
        EXPECT_TRUE(p.program.waits.warte(2));
        inner_over = p.loop.now_ms() - begin;
    });
    EXPECT_TRUE(p.program.waits.warte(50));
    EXPECT_EQ(inner_over, 200);
    EXPECT_EQ(p.loop.now_ms() - begin, 200) << "one counter for all";
}

TEST(Waits, dataKeepArrivingWhileAListenerOfEarlierDataWaits) {
    TestProgram p;
    p.start();
    p.frmTerminal.logdatei = 1;
    p.module1.warteok = true;
    bool asks = true;
    std::vector<std::string> logged;
    p.program.events.log_text.connect([&](std::string_view text) {
        const std::string kept(text);
        if (std::exchange(asks, false)) p.dialogs.message_box("LOG", 21, "Velorn");
        logged.push_back(kept);
    });
    p.dialogs.expect(
        "LOG", 21, Answer::cancel, [&] { p.serial.arrives("second OK "); }, 1000);
    p.receive("first ");
    EXPECT_THAT(logged, ElementsAre("second OK ", "first "));
    EXPECT_EQ(p.terminal(), "second OK first ") << "each pass keeps its own chunk";
    EXPECT_FALSE(p.module1.warteok);
    EXPECT_EQ(p.program.receive.txtvergl.text(), "first ");
}

TEST(Waits, closingInsideThreeNestedWaitsEndsThemAllAndLeavesWholeFiles) {
    TestProgram p;
    p.start();
    p.settings.ftast[1] = "<01>never<13>";
    p.settings.anrufer = "Nachtdienst";
    bool went_on = false;
    p.loop.post([&] {
        press(p.frmTerminal.mnuftast);
        went_on = !p.loop.ended();
    });
    p.loop.post([&] { p.program.start.Form_QueryUnload(); });
    p.program.keys.key_down(f1, 0);
    EXPECT_TRUE(p.loop.ended());
    EXPECT_TRUE(p.loop.waiters().empty());
    EXPECT_FALSE(went_on);
    EXPECT_EQ(p.sent(), "\x01");

    TestProgram next;
    for (const char* name : settings_files) {
        next.files.set_content(std::string(TestProgram::folder) + name, content(p, name));
        EXPECT_FALSE(p.files.exists(std::string(TestProgram::folder) + name + ".neu"));
    }
    next.start();
    EXPECT_EQ(next.settings.anrufer.text(), "Nachtdienst");
    EXPECT_EQ(next.settings.ftast[1].text(), "<01>never<13>");
}

TEST(Waits, theMenusExitInsideNestedWaitsWritesNothing) {
    TestProgram p;
    p.start();
    std::vector<std::string> before;
    for (const char* name : settings_files) before.push_back(content(p, name));
    p.settings.ftast[1] = "<01>never<13>";
    p.loop.post([&] { press(p.frmTerminal.mnuftast); });
    p.loop.post([&] { press(p.frmTerminal.mnuFileExit); });
    p.program.keys.key_down(f1, 0);
    EXPECT_TRUE(p.loop.ended());
    std::vector<std::string> after;
    for (const char* name : settings_files) after.push_back(content(p, name));
    EXPECT_EQ(before, after);
}

} // namespace velorn::test
