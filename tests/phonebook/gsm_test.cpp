#include "support/sent_at.h"
#include "support/test_program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velorn::test {

namespace {

using ::testing::ElementsAre;

struct GsmTest : TestProgram {
    FrmTelefon& window = program.frmtelefon;
    GsmTest() { start(); }
};

} // namespace

TEST(Gsm, setsTheModemUpLineByLineTwoSecondsApart) {
    GsmTest p;
    SentAt sent(p);
    p.window.Command10.Click();
    EXPECT_THAT(sent.all, ElementsAre("0 ATE1&D0\r", "2000 AT+CPIN?\r", "4000 AT+CRC=1\r",
                                      "6000 AT+CBST=7,0,1\r", "8000 AT+CSNS=4,2\r", "10000 AT+FCLASS=0\r",
                                      "12000 ATS0=1\r", "14000 AT+CSQ\r", "16000 AT&D0\r", "18000 AT&W0\r"));
    EXPECT_EQ(p.loop.now_ms() - sent.begin, 20'000);
    EXPECT_FALSE(p.window.Timer5.Enabled);
}

TEST(Gsm, takesItsTimeWithNoLinkOpen) {
    GsmTest p;
    p.serial.device_goes();
    p.loop.settle();
    const std::int64_t begin = p.loop.now_ms();
    p.window.Command10.Click();
    EXPECT_EQ(p.loop.now_ms() - begin, 20'000);
    EXPECT_EQ(p.sent(), "");
}

TEST(Gsm, sendsTheMessageAtThePrompt) {
    GsmTest p;
    p.window.smsnr.Text = "+49171555";
    p.window.smstxt.Text = "Pumpe steht";
    SentAt sent(p);
    sent.on_sent = [&p](std::string_view text) {
        if (text.starts_with("AT+CMGS"))
            p.loop.post_at(p.loop.now_ms() + 700, [&p] { p.serial.arrives("\r\n< "); });
    };
    p.window.Command9.Click();
    EXPECT_THAT(sent.all,
                ElementsAre("0 AT+CMGF=1\r", "2000 AT+CMGS=\"+49171555\"\r", "2700 Pumpe steht\x1a"));
}

TEST(Gsm, sendsTheMessageAfterFourSecondsWithoutAPrompt) {
    GsmTest p;
    p.window.smstxt.Text = "Pumpe steht";
    SentAt sent(p);
    p.window.Command9.Click();
    EXPECT_THAT(sent.all, ElementsAre("0 AT+CMGF=1\r", "2000 AT+CMGS=\"\"\r", "6000 Pumpe steht\x1a"));
}

TEST(Gsm, goesOnWhenTheModemAnswersWithAnError) {
    GsmTest p;
    SentAt sent(p);
    sent.on_sent = [&p](std::string_view) { p.serial.arrives("\r\nERROR\r\n"); };
    p.window.Command9.Click();
    EXPECT_EQ(sent.all.size(), 3U);
    EXPECT_EQ(sent.all.back(), "6000 \x1a") << "an empty message is its end sign alone";
}

TEST(Gsm, doesOneThingAfterTheOther) {
    GsmTest p;
    SentAt sent(p);
    p.loop.post_at(p.loop.now_ms() + 1000, [&p] { p.window.Command9.Click(); });
    p.loop.post_at(p.loop.now_ms() + 1500, [&p] { p.window.Command10.Click(); });
    p.window.Command10.Click();
    EXPECT_EQ(sent.all.size(), 10U);
    p.window.Command9.Click();
    EXPECT_EQ(sent.all.size(), 13U) << "and is free again afterwards";
}

TEST(Gsm, sendsNothingMoreOnceANumberIsDialled) {
    GsmTest p;
    p.program.telefonbuch[0].nummer = "5550";
    p.module1.telindex = 0;
    SentAt sent(p);
    p.loop.post_at(p.loop.now_ms() + 3000, [&p] { p.program.dialling.Command1_Click(); });
    p.window.Command10.Click();
    EXPECT_THAT(sent.all, ElementsAre("0 ATE1&D0\r", "2000 AT+CPIN?\r", "3000 atd5550\r"));
}

TEST(Gsm, endsWithTheProgram) {
    GsmTest p;
    SentAt sent(p);
    p.loop.post_at(p.loop.now_ms() + 3000, [&p] { p.loop.end(); });
    p.window.Command10.Click();
    EXPECT_EQ(sent.all.size(), 2U);
}

} // namespace velorn::test
