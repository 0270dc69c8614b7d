#include "runtime/text.h"
#include "support/test_program.h"

#include <gtest/gtest.h>
#include <set>
#include <sstream>

namespace velorn::test {

using namespace std::string_literals;

TEST(Commands, sendsItsToolbarCharacters) {
    TestProgram p;
    p.start();
    p.frmTerminal.tbrToolBar("duestart").Click();
    EXPECT_EQ(p.sent(), "d");
    p.frmTerminal.tbrToolBar("test").Click();
    EXPECT_EQ(p.sent(), "\x10\x7b\xfe\x79\x16"s);
}

TEST(Commands, clearTheTerminalAndThePicture) {
    TestProgram p;
    p.start();
    RecorderCanvas canvas;
    p.frmTerminal.Picture2.canvas = &canvas;
    p.receive("text");
    p.frmTerminal.tbrToolBar("clearcont").Click();
    EXPECT_EQ(canvas.strokes(), std::vector<std::string>{"clear #ffffff"});
    EXPECT_EQ(p.terminal(), "text");
    p.frmTerminal.tbrToolBar("clearall").Click();
    EXPECT_EQ(p.terminal(), "");
}

TEST(Commands, showsThePhoneBookAndSavesTheSettingsWhenItCloses) {
    for (const bool by_toolbar : {false, true}) {
        TestProgram p;
        p.start();
        const int saves = p.files.replacements("c:\\velorn\\einst.par");
        p.loop.post([&p, saves] {
            EXPECT_TRUE(p.program.frmtelefon.form.Visible);
            EXPECT_EQ(p.files.replacements("c:\\velorn\\einst.par"), saves);
            p.program.frmtelefon.cmdOK.Click();
        });
        if (by_toolbar)
            p.frmTerminal.tbrToolBar("DialPhoneNumber").Click();
        else
            press(p.frmTerminal.mnutelefonbuch);
        EXPECT_FALSE(p.program.frmtelefon.form.Visible);
        EXPECT_EQ(p.files.replacements("c:\\velorn\\einst.par"), saves + 1);
    }
}

TEST(Commands, keepsASnapshotWithTheSelectedSite) {
    TestProgram p;
    p.start();
    p.module1.telindex = 4;
    p.frmTerminal.tbrToolBar("snapshot").Click();
    EXPECT_NE(p.frmTerminal.txtsnapshot.Text(), "");
    EXPECT_EQ(p.program.telefonbuch[4].aufnahme.text(), p.frmTerminal.txtsnapshot.Text());
    p.module1.telindex = -1;
    p.frmTerminal.tbrToolBar("snapshot").Click();
    EXPECT_NE(p.program.telefonbuch[4].aufnahme.text(), p.frmTerminal.txtsnapshot.Text());
}

TEST(Commands, editsTheProtocolFileOfTheSelectedSite) {
    TestProgram p;
    p.start();
    p.files.set_content("c:\\gelmar.txt", "abcd\r\n");
    p.module1.protokollan = true;
    p.module1.protokollname = "c:\\gelmar.txt";
    for (const char* key : {"looksnap", "drucken"}) {
        p.loop.post([&p] {
            EXPECT_EQ(p.program.frmedit.Richtxtedit.Text(), "abcd\r\n");
            p.program.frmedit.Command1.Click();
        });
        p.frmTerminal.tbrToolBar(key).Click();
        EXPECT_FALSE(p.program.frmedit.form.Visible);
    }
}

TEST(Commands, storesTheStartCounterAsItIsTyped) {
    TestProgram p;
    p.start();
    p.dialogs.expect_input("zreset", "7");
    p.frmTerminal.resetcount.Click();
    EXPECT_EQ(p.dialogs.last_title, "Neustartzähler"_w);
    EXPECT_EQ(p.dialogs.last_proposal, "1");
    EXPECT_EQ(p.settings.neustartzaehler, Variant("7"));
    const std::string saved = p.files.content("c:\\velorn\\einst.par");

    p.dialogs.expect_input("zreset", std::nullopt);
    p.frmTerminal.resetcount.Click();
    EXPECT_EQ(p.settings.neustartzaehler, Variant("7"));

    TestProgram next;
    next.files.set_content("c:\\velorn\\einst.par", saved);
    next.start();
    EXPECT_EQ(next.settings.neustartzaehler, Variant(std::int16_t{8}));
}

TEST(Commands, walksThroughAllOrdersOfFourByNeighbouringSwaps) {
    TestProgram p;
    p.start();
    p.frmTerminal.informatik.Click();
    EXPECT_TRUE(p.frmTerminal.txttest10.Visible);
    EXPECT_FALSE(p.module1.trace);
    std::istringstream text(p.frmTerminal.txttest10.Text());
    std::set<std::string> seen;
    std::string before = "1234";
    std::string number, now;
    std::size_t left = 0, right = 0;
    for (int line = 1; text >> number >> left >> right >> now; ++line) {
        EXPECT_EQ(number, (line < 10 ? "0000" : "000") + std::to_string(line));
        ASSERT_EQ(right, left + 1);
        std::swap(before.at(left - 1), before.at(right - 1));
        EXPECT_EQ(now, before);
        seen.insert(now);
    }
    EXPECT_EQ(seen.size(), 24U);
    EXPECT_EQ(now, "1234");
}

} // namespace velorn::test
