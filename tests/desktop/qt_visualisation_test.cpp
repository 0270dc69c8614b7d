#include "desktop/qt_event_loop.h"
#include "desktop/qt_visualisation.h"
#include "patience.h"
#include "support/temporary_folder.h"

#include <QFile>
#include <QtEndian>

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace velorn {

namespace {

QByteArray frame_of(const QByteArray& text) {
    QByteArray frame(4, '\0');
    qToLittleEndian(static_cast<quint32>(text.size()), frame.data());
    return frame + text;
}

// A visualisation program that takes frames apart in its own way.
struct Visitor {
    QLocalSocket socket;
    std::vector<std::string> texts;
    bool reads = true;

    explicit Visitor(const QString& name) {
        QObject::connect(&socket, &QLocalSocket::readyRead, &socket, [this] {
            if (reads) read();
        });
        socket.connectToServer(name);
    }
    void read() {
        received += socket.readAll();
        while (received.size() >= 4) {
            const auto length = static_cast<qsizetype>(qFromLittleEndian<quint32>(received.constData()));
            if (received.size() < 4 + length) return;
            texts.push_back(received.mid(4, length).toStdString());
            received = received.mid(4 + length);
        }
    }
    bool has_read(const std::string& text) const { return !texts.empty() && texts.back() == text; }
    bool is_cut_off() const { return socket.state() == QLocalSocket::UnconnectedState; }

    QByteArray received;
};

struct VisuChannel : testing::Test {
    QtEventLoop loop;
    test::TemporaryFolder folder;
    std::string path = folder.stored("visu");
    QString name = QFile::decodeName(path.c_str());
    std::unique_ptr<QtVisualisation> channel = make();
    std::vector<std::string> heard;

    std::unique_ptr<QtVisualisation> make() {
        auto made = std::make_unique<QtVisualisation>(loop, name);
        made->arrived = [this](const std::string& text) { heard.push_back(text); };
        return made;
    }
    bool comes_true(const EventLoop::Condition& condition) { return test::comes_true(loop, condition); }
    // Welcomed with the present text.
    bool is_in(const Visitor& visitor) {
        return comes_true([&] { return !visitor.texts.empty(); });
    }
    bool hears(const std::vector<std::string>& texts) {
        return comes_true([&] { return heard == texts; });
    }
};

} // namespace

TEST_F(VisuChannel, carriesATextEachWay) {
    ASSERT_TRUE(channel->open());
    Visitor visitor(name);
    ASSERT_TRUE(is_in(visitor));
    const std::string text("W\xe4rme=12,5 kW\0\r\n17", 18);
    channel->set_text(text);
    EXPECT_TRUE(comes_true([&] { return visitor.has_read(text); }));
    visitor.socket.write(frame_of("neuanf \xfc"));
    EXPECT_TRUE(hears({"neuanf \xfc"}));
}

TEST_F(VisuChannel, tellsNothingWithinTheToolkitsReport) {
    ASSERT_TRUE(channel->open());
    Visitor visitor(name);
    ASSERT_TRUE(is_in(visitor));
    bool went_on = false;
    channel->arrived = [&](const std::string& text) {
        if (text == "second") went_on = true;
        if (text == "second") return;
        EXPECT_TRUE(comes_true([&] { return went_on; }));
    };
    visitor.socket.write(frame_of("first"));
    visitor.socket.write(frame_of("second"));
    EXPECT_TRUE(comes_true([&] { return went_on; }));
}

TEST_F(VisuChannel, putsAFrameInPiecesTogether) {
    ASSERT_TRUE(channel->open());
    Visitor visitor(name);
    ASSERT_TRUE(is_in(visitor));
    const QByteArray frame = frame_of("ENDE");
    for (const char byte : frame) {
        EXPECT_TRUE(heard.empty());
        visitor.socket.write(&byte, 1);
        visitor.socket.flush();
        test::pass(loop, 2);
    }
    EXPECT_TRUE(hears({"ENDE"}));
}

TEST_F(VisuChannel, takesFramesInOnePieceApart) {
    ASSERT_TRUE(channel->open());
    Visitor visitor(name);
    visitor.socket.write(frame_of("neuanf 1") + frame_of("") + frame_of("neuanf 2"));
    EXPECT_TRUE(hears({"neuanf 1", "", "neuanf 2"}));
}

TEST_F(VisuChannel, hearsTheLastWordOfOneWhoLeavesAtOnce) {
    ASSERT_TRUE(channel->open());
    {
        Visitor visitor(name);
        ASSERT_TRUE(is_in(visitor));
        visitor.socket.write(frame_of("ENDE"));
        visitor.socket.flush();
    }
    EXPECT_TRUE(hears({"ENDE"}));
}

TEST_F(VisuChannel, takesATextOfTheFullLength) {
    ASSERT_TRUE(channel->open());
    Visitor visitor(name);
    const QByteArray text(QtVisualisation::longest_text, 'x');
    visitor.socket.write(frame_of(text));
    EXPECT_TRUE(comes_true([&] { return heard.size() == 1; }));
    EXPECT_EQ(heard[0].size(), static_cast<std::size_t>(QtVisualisation::longest_text));
    channel->set_text(heard[0] + "more");
    EXPECT_TRUE(comes_true([&] { return visitor.has_read(heard[0]); }));
}

TEST_F(VisuChannel, cutsOffOnlyWhoAnnouncesTooMuch) {
    ASSERT_TRUE(channel->open());
    Visitor good(name);
    Visitor bad(name);
    ASSERT_TRUE(is_in(good) && is_in(bad));
    QByteArray length(4, '\0');
    qToLittleEndian(static_cast<quint32>(QtVisualisation::longest_text + 1), length.data());
    bad.socket.write(frame_of("before") + length + "x");
    EXPECT_TRUE(comes_true([&] { return bad.is_cut_off(); }));
    good.socket.write(frame_of("after"));
    EXPECT_TRUE(hears({"before", "after"}));
}

TEST_F(VisuChannel, bringsASlowReaderTheLatestTextAndNotAll) {
    ASSERT_TRUE(channel->open());
    Visitor visitor(name);
    ASSERT_TRUE(is_in(visitor));
    visitor.reads = false;
    visitor.socket.setReadBufferSize(4096);
    constexpr int texts = 50;
    for (int i = 1; i <= texts; ++i) {
        channel->set_text(std::string(500'000, 'x') + std::to_string(i));
        test::pass(loop, 2);
    }
    visitor.reads = true;
    visitor.socket.setReadBufferSize(0);
    visitor.read();
    EXPECT_TRUE(comes_true([&] { return visitor.has_read(std::string(500'000, 'x') + "50"); }));
    EXPECT_LT(visitor.texts.size(), 10U);
}

TEST_F(VisuChannel, greetsANewcomerWithThePresentText) {
    channel->set_text("first");
    channel->set_text("second");
    ASSERT_TRUE(channel->open());
    Visitor early(name);
    ASSERT_TRUE(is_in(early));
    channel->set_text("third");
    Visitor late(name);
    ASSERT_TRUE(is_in(late));
    EXPECT_EQ(early.texts[0], "second");
    EXPECT_EQ(late.texts, std::vector<std::string>{"third"});
}

TEST_F(VisuChannel, hasRoomForSomePartnersAndAgainAfterOneLeft) {
    ASSERT_TRUE(channel->open());
    std::vector<std::unique_ptr<Visitor>> visitors;
    for (std::size_t i = 0; i < QtVisualisation::most_partners; ++i) {
        visitors.push_back(std::make_unique<Visitor>(name));
        ASSERT_TRUE(is_in(*visitors.back()));
    }
    Visitor too_many(name);
    EXPECT_TRUE(comes_true([&] { return too_many.is_cut_off(); }));
    visitors.pop_back();
    test::pass(loop, 20);
    Visitor one_more(name);
    EXPECT_TRUE(is_in(one_more));
}

TEST_F(VisuChannel, takesOverWhatAKilledProgramLeft) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    ASSERT_LT(path.size(), sizeof address.sun_path);
    path.copy(address.sun_path, path.size());
    const int killed = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(bind(killed, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    listen(killed, 1);
    ::close(killed);
    ASSERT_TRUE(channel->open());
    Visitor visitor(name);
    EXPECT_TRUE(is_in(visitor));
}

TEST_F(VisuChannel, leavesANameToTheLivingOneThatHasIt) {
    ASSERT_TRUE(channel->open());
    QtVisualisation second(loop, name);
    const Outcome opened = second.open();
    ASSERT_FALSE(opened);
    EXPECT_EQ(opened.failure().number, 57);
    EXPECT_NE(opened.failure().text.find(path), std::string::npos);
    channel->set_text("still here");
    Visitor visitor(name);
    EXPECT_TRUE(comes_true([&] { return visitor.has_read("still here"); }));
}

TEST_F(VisuChannel, tellsWhyAPlaceCannotBeUsed) {
    QtVisualisation nowhere(loop, name + QStringLiteral("/not/there"));
    const Outcome opened = nowhere.open();
    ASSERT_FALSE(opened);
    EXPECT_EQ(opened.failure().number, 57);
    EXPECT_GT(opened.failure().text.size(), error_text(RunTimeError::device_io).size() + 5);
}

TEST_F(VisuChannel, openedTwiceGoesOn) {
    ASSERT_TRUE(channel->open());
    Visitor visitor(name);
    ASSERT_TRUE(is_in(visitor));
    ASSERT_TRUE(channel->open());
    channel->set_text("on");
    EXPECT_TRUE(comes_true([&] { return visitor.has_read("on"); }));
}

TEST_F(VisuChannel, goneWhileConnectedSaysItsLastTextAndForgetsWhatIsUnderWay) {
    ASSERT_TRUE(channel->open());
    Visitor visitor(name);
    ASSERT_TRUE(is_in(visitor));
    visitor.socket.write(frame_of("too late"));
    visitor.socket.flush();
    channel->set_text("BEENDEN");
    channel.reset();
    EXPECT_TRUE(comes_true([&] { return visitor.is_cut_off(); }));
    EXPECT_TRUE(visitor.has_read("BEENDEN"));
    EXPECT_TRUE(heard.empty());
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(VisuChannel, goneWithinItsOwnReportIsHarmless) {
    ASSERT_TRUE(channel->open());
    Visitor visitor(name);
    channel->arrived = [this](const std::string& text) {
        heard.push_back(text);
        if (text == "first") loop.post([this] { channel.reset(); });
    };
    visitor.socket.write(frame_of("first") + frame_of("second") + frame_of("third"));
    EXPECT_TRUE(comes_true([&] { return visitor.is_cut_off(); }));
    EXPECT_EQ(heard.front(), "first");
}

TEST_F(VisuChannel, isOpenToNobodyElse) {
    ASSERT_TRUE(channel->open());
    struct stat status {};
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_TRUE(S_ISSOCK(status.st_mode));
    EXPECT_EQ(status.st_mode & 0777, 0700U);
}

} // namespace velorn
