#include "plant/controller.h"
#include "plant/memory_line.h"
#include "runtime/virtual_event_loop.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>

namespace velorn::plant {
namespace {

struct AController : testing::Test {
    VirtualEventLoop loop;
    Controller controller{loop, 7};
    MemoryLine line{loop, controller};
    std::string heard;

    AController() {
        line.received = [this](std::string_view bytes) { heard += bytes; };
    }

    // What comes back within a second (or the time given).
    std::string says_to(std::string_view bytes, std::int64_t within_ms = 1000) {
        heard.clear();
        line.send(bytes);
        loop.pass(within_ms);
        return heard;
    }
    std::string answers(std::string_view command, std::int64_t within_ms = 1000) {
        says_to("\x01");
        const std::string all = says_to(std::string(command) + "\r", within_ms);
        return all.substr(std::min(all.size(), command.size() + 2)); // behind the echo
    }
};

TEST_F(AController, hearsNothingUntilSohWakesIt) {
    EXPECT_EQ(says_to("S\rHELP\r"), "");
    EXPECT_EQ(says_to("\x01"), "\r\n*");
}

TEST_F(AController, echoesWhatIsTypedAsItIs) {
    says_to("\x01");
    EXPECT_EQ(says_to("Edinfo \x81"), "Edinfo \x81");
}

TEST_F(AController, rubsOutTheLastCharacterAndNeverThePrompt) {
    says_to("\x01");
    EXPECT_EQ(says_to("a\b\b\b"), "a\b \b");
    EXPECT_TRUE(says_to("CLOX\bCK\r").ends_with("\r\nUhrzeit 11:28:02\r\n*"));
}

TEST_F(AController, answersAnEmptyLineWithAPromptAlone) {
    says_to("\x01");
    EXPECT_EQ(says_to("\r"), "\r\n*");
    EXPECT_EQ(says_to("  \r"), "  \r\n*");
}

TEST_F(AController, forgetsAHalfTypedLineWhenWokenAgain) {
    says_to("\x01QUATSCH");
    EXPECT_EQ(answers("CLOCK"), "Uhrzeit 11:28:02\r\n*");
}

TEST_F(AController, knowsEveryCommandOfItsTable) {
    for (const Command& command : commands()) {
        const bool keeps_the_line = command.word == "FERNBED" || command.word.starts_with("DUE");
        if (command.word == "SYSTEM_RESET" || keeps_the_line) continue;
        const std::string answer = answers(command.word, 5000);
        EXPECT_TRUE(answer.ends_with("\r\n*")) << command.word;
        EXPECT_EQ(answer.find("unbekannt"), std::string::npos) << command.word;
        EXPECT_GT(answer.size(), 3u) << command.word;
    }
}

TEST_F(AController, ignoresUpperAndLowerCase) {
    EXPECT_EQ(answers("vers"), answers("VERS"));
    EXPECT_NE(answers("vers").find("Version"), std::string::npos);
}

TEST_F(AController, namesAnUnknownCommand) {
    EXPECT_EQ(answers("quatsch\x81 1"), "*** Befehl unbekannt: QUATSCH?\r\n*");
}

TEST_F(AController, sendsUmlautsInCodePage437) {
    const std::string answer = answers("TEMP");
    EXPECT_NE(answer.find("R\x81"
                          "cklauf"),
              std::string::npos);
    EXPECT_NE(answer.find("Motor\x94l"), std::string::npos);
    EXPECT_NE(answer.find("Au\xE1"
                          "enluft"),
              std::string::npos);
    EXPECT_NE(answers("LEISTUNG").find("\x99ldruck"), std::string::npos);
}

TEST_F(AController, runsTwoCommandsOfOneLineInTheirOrder) {
    EXPECT_EQ(answers("TERMINATE Watch -- PREVENT WATCHDOG"), "Task Watch beendet\r\nWatchdog gesperrt\r\n*");
    EXPECT_EQ(answers("SH WATCHDOG"), "Watchdog: gesperrt, kein Reset bei Ausfall\r\n*");
}

TEST_F(AController, listsATerminatedTaskAsDormant) {
    EXPECT_NE(answers("L").find("START           2  TIME"), std::string::npos);
    EXPECT_EQ(answers("TERMINATE START"), "Task START beendet\r\n*");
    EXPECT_NE(answers("L").find("START           2  DORM"), std::string::npos);
    EXPECT_EQ(answers("TERMINATE NIEMAND"), "*** Task NIEMAND nicht geladen\r\n*");
}

TEST_F(AController, resetsAnHourAfterItWasOrderedTo) {
    answers("TERMINATE START");
    answers("AFTER 60 MIN ACTIVATE RESET");
    EXPECT_EQ(says_to("", 58 * 60'000), "");
    EXPECT_TRUE(says_to("", 3 * 60'000).ends_with("Neustart Nr. 1\r\n"));
    EXPECT_NE(answers("L").find("START           2  TIME"), std::string::npos);
}

TEST_F(AController, forgetsAnOrderThatIsPrevented) {
    answers("AFTER 1 MIN ACTIVATE RESET");
    EXPECT_EQ(answers("PREVENT RESET"), "Einplanung von RESET gel\x94scht\r\n*");
    EXPECT_EQ(says_to("", 2 * 60'000), "");
}

TEST_F(AController, isDeafWhileItRestartsAndAsleepAfterwards) {
    EXPECT_EQ(answers("SYSTEM_RESET"), "\r\n*** SYSTEM-RESET ***\r\n");
    EXPECT_EQ(says_to("\x01S\r"), "");
    EXPECT_TRUE(says_to("", 5000).ends_with("Neustart Nr. 1\r\n"));
    EXPECT_EQ(says_to("S\r"), "");
    EXPECT_EQ(says_to("\x01"), "\r\n*");
}

TEST_F(AController, erasesFlashBlockByBlockAndSaysSoAsItGoes) {
    EXPECT_EQ(answers("CLEARFLASH AD 3 SZ 2", 800), "Flash Block  3 gel\x94scht\r\n");
    EXPECT_EQ(says_to("", 800), "Flash Block  4 gel\x94scht\r\n*");
    EXPECT_EQ(answers("CLEARFLASH AD 15 SZ 99"),
              "*** falsche Eingabe, richtig ist: CLEARFLASH AD n SZ m\r\n*");
}

TEST_F(AController, burnsFlashFromAFileThatExists) {
    EXPECT_TRUE(answers("FLLOAD BANK 3 OFFS 0 ED.test", 3000).ends_with("Flash fertig, kein Fehler\r\n*"));
    EXPECT_EQ(answers("FLLOAD BANK 3 OFFS 0 ED.weg"), "*** Datei ED.WEG nicht gefunden\r\n*");
}

TEST_F(AController, deletesAFileOnce) {
    EXPECT_EQ(answers("RM h0.BATRAM1"), "Datei H0.BATRAM1 gel\x94scht\r\n*");
    EXPECT_EQ(answers("RM /h0/BATRAM1"), "*** Datei /H0/BATRAM1 nicht gefunden\r\n*");
    EXPECT_EQ(answers("DIR R0."), "R0.BATRAM1          16384 Bytes\r\nBelegt: 16384 Bytes\r\n*");
}

TEST_F(AController, keepsADefinitionWholeAndSchedulesIt) {
    EXPECT_EQ(answers("DEFINE.X--copy ed.lcdxx1 > LCD.; ALL 60 SEC DURING 60 MIN X"),
              "Befehl X vereinbart\r\nTask X alle 60 SEC eingeplant\r\n*");
}

TEST_F(AController, takesNoMoreThanALineHolds) {
    says_to("\x01");
    const std::string echo = says_to(std::string(100'000, 'x'));
    EXPECT_EQ(std::count(echo.begin(), echo.end(), 'x'), static_cast<long>(Controller::longest_line));
    EXPECT_TRUE(says_to("\r").ends_with(std::string(Controller::longest_line, 'X') + "\r\n*"));
}

TEST_F(AController, losesWhatIsTypedBeyondItsBufferWhileItWorks) {
    says_to("\x01");
    std::string flood;
    for (int i = 0; i < 50'000; ++i) flood += "L\r";
    const std::string all = says_to(flood, 60'000);
    EXPECT_EQ(std::count(all.begin(), all.end(), '*'), 1 + static_cast<long>(Controller::type_ahead) / 2);
    EXPECT_EQ(answers("CLOCK").substr(0, 8), "Uhrzeit ");
}

TEST_F(AController, fallsAsleepAfterTenMinutesWithoutAByte) {
    says_to("\x01");
    EXPECT_EQ(says_to("a", 9 * 60'000), "a");
    EXPECT_EQ(says_to("b", 11 * 60'000), "b");
    EXPECT_EQ(says_to("c\r"), "");
}

TEST_F(AController, survivesNoiseOfAllBytes) {
    std::string noise;
    Random random(3);
    for (int i = 0; i < 20'000; ++i) noise += static_cast<char>(random.below(256));
    line.send(noise);
    loop.pass(60'000);
    EXPECT_EQ(answers("DATE"), "Sonntag, 15.11.2026\r\n*");
}

} // namespace
} // namespace velorn::plant
