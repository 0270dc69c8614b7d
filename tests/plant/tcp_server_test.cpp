#include "plant/controller_device.h"
#include "plant/login.h"
#include "plant/peers.h"
#include "plant/sites.h"
#include "plant/tcp_server.h"
#include "plant/tcp_station.h"
#include "tcp_visitor.h"

#include <memory>
#include <string>
#include <vector>

namespace velorn::plant {
namespace {

struct OverTcpServer : OverTcp {
    std::unique_ptr<TcpServer> server;
    std::vector<std::unique_ptr<TcpConnection>> connections;
    std::string arrived;
    int ends = 0;

    void SetUp() override {
        server = TcpServer::open(loop, "127.0.0.1", 0).value();
        server->accepted = [this](std::unique_ptr<TcpConnection> connection) {
            connection->received = [this](std::string_view bytes) { arrived += bytes; };
            connection->ended = [this] { ++ends; };
            connection->pause(false);
            connections.push_back(std::move(connection));
        };
    }
    std::uint16_t port() const { return server->port(); }
};

TEST_F(OverTcpServer, allBytesPassBothWays) {
    TcpVisitor visitor(loop, port());
    ASSERT_TRUE(comes([&] { return connections.size() == 1 && visitor.connected; }));
    std::string all;
    for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
    visitor.write(all);
    connections[0]->send(all);
    EXPECT_TRUE(comes([&] { return arrived.size() >= 256 && visitor.heard.size() >= 256; }));
    EXPECT_EQ(arrived, all);
    EXPECT_EQ(visitor.heard, all);
}

TEST_F(OverTcpServer, noticesThatTheOtherSideCloses) {
    TcpVisitor visitor(loop, port());
    ASSERT_TRUE(comes([&] { return visitor.connected; }));
    visitor.close();
    EXPECT_TRUE(comes([&] { return ends == 1; }));
}

TEST_F(OverTcpServer, nothingIsLostAndNothingGrowsWhileTheOtherSideDoesNotRead) {
    TcpVisitor visitor(loop, port());
    ASSERT_TRUE(comes([&] { return connections.size() == 1 && visitor.connected; }));
    visitor.keeps_text = false;
    visitor.stop_reading();
    std::size_t answered = 0;
    connections[0]->received = [&](std::string_view bytes) {
        connections[0]->send(std::string(bytes.size() * 64, 'x'));
        answered += bytes.size();
    };
    const std::string question(4096, 'q');
    std::size_t written = 0;
    int refusals = 0;
    while (refusals < 50) { // asks until the line has taken no more for a while
        const std::size_t taken = visitor.write(question);
        written += taken;
        refusals = taken > 0 ? 0 : refusals + 1;
        pass(1);
    }
    EXPECT_LT(answered, written);
    EXPECT_LT(connections[0]->queued(), TcpConnection::full_queue + 4096 * 64);
    visitor.go_on_reading();
    EXPECT_TRUE(comes([&] { return visitor.heard_bytes == 64 * written; }));
}

TEST_F(OverTcpServer, finishesOnlyWhenEverythingIsThrough) {
    TcpVisitor visitor(loop, port());
    ASSERT_TRUE(comes([&] { return connections.size() == 1; }));
    visitor.write("ungelesen");
    connections[0]->send(std::string(5'000'000, 'x'));
    connections[0]->finish();
    EXPECT_TRUE(comes([&] { return visitor.ended; }));
    EXPECT_EQ(visitor.heard.size(), 5'000'000u);
    EXPECT_EQ(ends, 0);
    visitor.close();
    EXPECT_TRUE(comes([&] { return ends == 1; }));
}

TEST_F(OverTcpServer, goesOnHearingWhenItHasSaidItsLast) {
    TcpVisitor visitor(loop, port());
    ASSERT_TRUE(comes([&] { return connections.size() == 1; }));
    connections[0]->shut_down_writing();
    EXPECT_TRUE(comes([&] { return visitor.ended; }));
    visitor.write("noch da");
    EXPECT_TRUE(comes([&] { return arrived == "noch da"; }));
    EXPECT_EQ(ends, 0);
}

TEST_F(OverTcpServer, resetsInTheRoughestWay) {
    TcpVisitor visitor(loop, port());
    ASSERT_TRUE(comes([&] { return connections.size() == 1 && visitor.connected; }));
    connections[0]->reset();
    EXPECT_EQ(ends, 1);
    connections.clear();
    EXPECT_TRUE(comes([&] { return visitor.error == ECONNRESET; }));
}

TEST_F(OverTcpServer, saysWhatIsWrongWithAPort) {
    const auto taken = TcpServer::open(loop, "127.0.0.1", port());
    ASSERT_FALSE(taken.ok());
    EXPECT_TRUE(taken.failure().is(RunTimeError::port_already_open));
    EXPECT_FALSE(TcpServer::open(loop, "192.0.2.1", 0).ok());
    EXPECT_FALSE(TcpServer::open(loop, "irgendwo", 0).ok());
}

TEST_F(OverTcp, aRefusingPortRefuses) {
    const auto server = TcpServer::open(loop, "127.0.0.1", 0, Listening::refuses).value();
    TcpVisitor visitor(loop, server->port());
    EXPECT_TRUE(comes([&] { return visitor.error == ECONNREFUSED; }));
}

TEST_F(OverTcp, aPortThatNeverAnswersLetsTheVisitorWait) {
    const auto server = TcpServer::open(loop, "127.0.0.1", 0, Listening::never_answers).value();
    TcpVisitor first(loop, server->port());
    TcpVisitor second(loop, server->port());
    pass(300);
    EXPECT_FALSE(first.connected || second.connected);
    EXPECT_EQ(first.error, 0);
}

// --- stations

struct ATcpStation : OverTcp {
    std::unique_ptr<TcpStation> station;

    void serve(MakeDevice make, const Faults& faults = {}, std::size_t most = 16) {
        TcpStationSettings settings;
        settings.name = "A";
        settings.faults = faults;
        settings.most = most;
        station = std::make_unique<TcpStation>(loop, settings, std::move(make));
        ASSERT_TRUE(station->open().ok());
    }
    void serve(const Peer& peer) {
        serve([this, peer] { return make_device(loop, peer); });
    }
    bool empties() {
        return comes([&] { return station->connections() == 0; });
    }
};

TEST_F(ATcpStation, showsALoginInFrontOfTheController) {
    Sites sites(loop, demo_directory());
    serve([&] { return sites.visit(0); }, {}, 1);
    TcpVisitor visitor(loop, station->port());
    EXPECT_TRUE(comes([&] { return visitor.heard.ends_with("Username: "); }));
    visitor.write("service\r");
    EXPECT_TRUE(comes([&] { return visitor.heard.ends_with("Password: "); }));
    visitor.write("bhkw\r");
    visitor.write("\x01");
    EXPECT_TRUE(comes([&] { return visitor.heard.ends_with("\r\n*"); }));
    visitor.close();
    EXPECT_TRUE(empties());
    EXPECT_FALSE(sites.engaged(0));
}

TEST_F(ATcpStation, saysGoodbyeBeforeItClosesOnAFailedLogin) {
    Sites sites(loop, demo_directory());
    serve([&] { return sites.visit(0); });
    TcpVisitor visitor(loop, station->port());
    visitor.write("");
    ASSERT_TRUE(comes([&] { return visitor.connected; }));
    visitor.write("a\rb\ra\rb\ra\rb\ra\rb\r");
    EXPECT_TRUE(comes([&] { return visitor.ended; }));
    EXPECT_TRUE(visitor.heard.ends_with("Verbindung wird getrennt\r\n"));
    visitor.close();
    EXPECT_TRUE(empties());
}

TEST_F(ATcpStation, sendsASecondVisitorAwayAndLetsTheFirstOneComeBackAtOnce) {
    Sites sites(loop, demo_directory());
    serve([&] { return sites.visit(1); }, {}, 1);
    TcpVisitor first(loop, station->port());
    ASSERT_TRUE(comes([&] { return station->connections() == 1; }));
    TcpVisitor second(loop, station->port());
    EXPECT_TRUE(comes([&] { return second.ended; }));
    for (int visit = 0; visit < 20; ++visit) {
        first.close();
        TcpVisitor again(loop, station->port());
        ASSERT_TRUE(comes([&] { return again.connected; }));
        again.write("\x01");
        EXPECT_TRUE(comes([&] { return again.heard == "\r\n*"; })) << visit;
        EXPECT_FALSE(again.ended);
    }
}

TEST_F(ATcpStation, hangsUpWhenTheLineDoes) {
    Faults faults;
    faults.hang_up_after = 3;
    serve([this] { return std::make_unique<ControllerDevice>(std::make_shared<Controller>(loop, 1)); },
          faults);
    TcpVisitor visitor(loop, station->port());
    ASSERT_TRUE(comes([&] { return visitor.connected; }));
    visitor.write("12345");
    EXPECT_TRUE(comes([&] { return visitor.ended; }));
}

TEST_F(ATcpStation, survivesVisitorsWhoComeAndGo) {
    Sites sites(loop, demo_directory());
    serve([&] { return sites.visit(1); });
    for (int round = 0; round < 50; ++round) {
        TcpVisitor a(loop, station->port());
        TcpVisitor b(loop, station->port());
        a.write("\x01S\r");
        pass(round % 3);
    }
    EXPECT_TRUE(empties());
    EXPECT_FALSE(sites.engaged(1));
}

TEST_F(ATcpStation, mayGoWhileSomebodyIsConnected) {
    Sites sites(loop, demo_directory());
    serve([&] { return sites.visit(1); });
    TcpVisitor visitor(loop, station->port());
    ASSERT_TRUE(comes([&] { return station->connections() == 1; }));
    station.reset();
    EXPECT_FALSE(sites.engaged(1));
    EXPECT_TRUE(comes([&] { return visitor.ended || visitor.error != 0; }));
}

// --- peers that misbehave

TEST_F(ATcpStation, aPeerResetsAtOnceOrAfterSomeBytes) {
    serve(Peer{Peer::Kind::resets, 0});
    TcpVisitor visitor(loop, station->port());
    EXPECT_TRUE(comes([&] { return visitor.error == ECONNRESET; }));
    serve(Peer{Peer::Kind::resets, 3});
    TcpVisitor other(loop, station->port());
    ASSERT_TRUE(comes([&] { return other.connected; }));
    other.write("12");
    pass(50);
    EXPECT_EQ(other.error, 0);
    other.write("3");
    EXPECT_TRUE(comes([&] { return other.error == ECONNRESET; }));
    EXPECT_TRUE(empties());
}

TEST_F(ATcpStation, aPeerHalfClosesAndGoesOnHearing) {
    serve(Peer{Peer::Kind::half_closes, 0});
    TcpVisitor visitor(loop, station->port());
    EXPECT_TRUE(comes([&] { return visitor.ended; }));
    EXPECT_EQ(visitor.heard, last_words);
    EXPECT_EQ(visitor.write("noch da"), 7u);
    pass(50);
    EXPECT_EQ(station->connections(), 1u);
    visitor.close();
    EXPECT_TRUE(empties());
}

TEST_F(ATcpStation, aPeerFloodsAndWaitsForNobodyButTheReader) {
    serve(Peer{Peer::Kind::floods, 3'000'000});
    TcpVisitor visitor(loop, station->port());
    EXPECT_TRUE(comes([&] { return visitor.heard.size() == 3'000'000; }));
    TcpVisitor lazy(loop, station->port());
    ASSERT_TRUE(comes([&] { return lazy.connected; }));
    lazy.stop_reading();
    pass(100);
    lazy.close();
    visitor.close();
    EXPECT_TRUE(empties());
}

TEST_F(ATcpStation, aPeerDribbles) {
    serve(Peer{Peer::Kind::dribbles, 5});
    TcpVisitor visitor(loop, station->port());
    EXPECT_TRUE(comes([&] { return visitor.heard.starts_with("Zeile 00000001"); }));
}

TEST_F(ATcpStation, aPeerNeverSaysAWord) {
    serve(Peer{Peer::Kind::silent, 0});
    TcpVisitor visitor(loop, station->port());
    ASSERT_TRUE(comes([&] { return visitor.connected; }));
    visitor.write("\x01hallo\r");
    pass(100);
    EXPECT_EQ(visitor.heard, "");
    EXPECT_FALSE(visitor.ended);
}

} // namespace
} // namespace velorn::plant
