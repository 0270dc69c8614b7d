#include "desktop/qt_event_loop.h"
#include "desktop/qt_visualisation.h"
#include "patience.h"
#include "support/temporary_folder.h"

#include <QFile>
#include <QProcess>

#include <gtest/gtest.h>

namespace velorn {

namespace {

// The sample program as it is built, against the program's end of the channel.
struct SampleVisualisation : testing::Test {
    QtEventLoop loop;
    test::TemporaryFolder folder;
    QString name = QFile::decodeName(folder.stored("visu").c_str());
    QtVisualisation channel{loop, name};
    std::vector<std::string> heard;
    QProcess sample;

    SampleVisualisation() {
        channel.arrived = [this](const std::string& text) { heard.push_back(text); };
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        sample.setProcessEnvironment(environment);
        sample.setProcessChannelMode(QProcess::ForwardedChannels);
    }
    ~SampleVisualisation() override {
        sample.kill();
        sample.waitForFinished();
    }
    void start() {
        sample.start(QStringLiteral(VELORN_SAMPLE_VISUALISATION), {name});
        ASSERT_TRUE(sample.waitForStarted());
    }
    bool comes_true(const EventLoop::Condition& condition) { return test::comes_true(loop, condition); }
    bool has_ended() const { return sample.state() == QProcess::NotRunning; }
};

} // namespace

TEST_F(SampleVisualisation, greetsShowsABlockAndEndsWithTheSession) {
    ASSERT_TRUE(channel.open());
    start();
    ASSERT_TRUE(comes_true([&] { return !heard.empty(); }));
    EXPECT_EQ(heard[0], "neuanf 1");
    channel.set_text("Anlage=Kl\xe4rwerk\r\nVorlauf=80,5 C\r\nno value\r\n=\r\nVISEND17");
    ASSERT_TRUE(comes_true([&] { return heard.size() == 2; })); // it lives on
    EXPECT_EQ(heard[1], "neuanf 2");
    channel.set_text("BEENDEN");
    ASSERT_TRUE(comes_true([&] { return has_ended(); }));
    EXPECT_EQ(sample.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(sample.exitCode(), 0);
    EXPECT_EQ(heard.size(), 2U);
}

TEST_F(SampleVisualisation, waitsForTheProgramAndMindsNoEndOfAnEarlierSession) {
    channel.set_text("BEENDEN");
    start();
    test::pass(loop, 300);
    ASSERT_TRUE(channel.open());
    ASSERT_TRUE(comes_true([&] { return heard.size() == 2; }));
    EXPECT_FALSE(has_ended());
}

} // namespace velorn
