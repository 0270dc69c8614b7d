#include "desktop/qt_event_loop.h"
#include "desktop/qt_tcp_client.h"
#include "patience.h"

#include <QTcpServer>
#include <QTcpSocket>

#include <fstream>
#include <gtest/gtest.h>
#include <sys/socket.h>

namespace velorn {

namespace {

struct TcpLine : testing::Test {
    QtEventLoop loop;
    QTcpServer server;
    QTcpSocket* partner = nullptr;
    QtTcpClient client{loop};
    std::string got;
    int connections = 0;
    std::vector<int> failures;

    TcpLine() {
        server.listen(QHostAddress::LocalHost);
        QObject::connect(&server, &QTcpServer::newConnection,
                         [this] { partner = server.nextPendingConnection(); });
        client.connected = [this] { ++connections; };
        client.arrived = [this] { got += client.take(10'000); };
        client.failed = [this](int number, const std::string&) { failures.push_back(number); };
    }
    bool comes_true(const EventLoop::Condition& condition) { return test::comes_true(loop, condition); }
    void connect() {
        client.connect("127.0.0.1", server.serverPort());
        ASSERT_TRUE(comes_true([&] { return connections == 1 && partner != nullptr; }));
    }
};

} // namespace

TEST_F(TcpLine, theStateFollowsTheConnection) {
    EXPECT_EQ(client.state(), TcpState::closed);
    client.connect("127.0.0.1", server.serverPort());
    EXPECT_EQ(client.state(), TcpState::connecting);
    EXPECT_EQ(connections, 0);
    ASSERT_TRUE(comes_true([&] { return connections == 1; }));
    EXPECT_EQ(client.state(), TcpState::connected);
    client.close();
    EXPECT_EQ(client.state(), TcpState::closed);
}

TEST_F(TcpLine, aMegabyteArrivesThoughItIsTakenInSmallPortions) {
    connect();
    const QByteArray bytes(1 << 20, 'x');
    partner->write(bytes);
    EXPECT_TRUE(comes_true([&] { return got.size() >= static_cast<std::size_t>(bytes.size()); }));
    EXPECT_TRUE(got == bytes.toStdString());
}

TEST_F(TcpLine, nobodyTakingHoldsThePartnerBackAndLosesNothing) {
    connect();
    client.arrived = {};
    const QByteArray bytes(32 << 20, 'y');
    partner->write(bytes);
    test::pass(loop, 200);
    EXPECT_GT(partner->bytesToWrite(), 1 << 20);
    std::size_t total = 0;
    EXPECT_TRUE(comes_true([&] {
        for (std::string part = client.take(65536); !part.empty(); part = client.take(65536))
            total += part.size();
        return total >= static_cast<std::size_t>(bytes.size());
    }));
}

TEST_F(TcpLine, whatIsWrittenBeforeClosingStillReachesThePartner) {
    connect();
    client.write("exit\r");
    client.close();
    EXPECT_TRUE(comes_true([&] { return partner->bytesAvailable() == 5; }));
    EXPECT_EQ(partner->readAll(), QByteArray("exit\r"));
}

TEST_F(TcpLine, aPartnerWhoEndsIsNoFailureAndHisLastBytesCount) {
    connect();
    client.arrived = {};
    partner->write("bye");
    partner->disconnectFromHost();
    EXPECT_TRUE(comes_true([&] { return client.state() == TcpState::closing; }));
    EXPECT_EQ(client.take(100), "bye");
    EXPECT_TRUE(failures.empty());
}

TEST_F(TcpLine, aRefusedConnectionBearsThePlatformsNumber) {
    const quint16 port = server.serverPort();
    server.close();
    client.connect("127.0.0.1", port);
    EXPECT_TRUE(comes_true([&] { return !failures.empty(); }));
    EXPECT_EQ(failures, std::vector<int>{10061});
    EXPECT_EQ(client.state(), TcpState::error);
}

TEST_F(TcpLine, anImpossibleAddressFailsFromTheLoop) {
    client.connect("", 23);
    EXPECT_TRUE(failures.empty());
    EXPECT_TRUE(comes_true([&] { return !failures.empty(); }));
    client.connect("127.0.0.1", 65536);
    EXPECT_TRUE(comes_true([&] { return failures.size() == 2; }));
    EXPECT_EQ(failures.back(), 10049);
}

TEST_F(TcpLine, whatWouldPileUpBeyondTheLimitIsDroppedAndReportedOnce) {
    connect();
    client.write(std::string(QtTcpClient::most_unsent + 1, 'z'));
    client.write(std::string(QtTcpClient::most_unsent + 1, 'z'));
    EXPECT_TRUE(comes_true([&] { return !failures.empty(); }));
    EXPECT_EQ(failures, std::vector<int>{10055});
    EXPECT_EQ(client.state(), TcpState::connected);
}

TEST_F(TcpLine, closingAndCallingAgainInsideTheNewsIsHarmless) {
    connect();
    client.arrived = [&] {
        client.close();
        client.connect("127.0.0.1", server.serverPort());
    };
    partner->write("x");
    EXPECT_TRUE(comes_true([&] { return connections == 2; }));
    EXPECT_EQ(client.state(), TcpState::connected);
    EXPECT_TRUE(failures.empty());
}

TEST_F(TcpLine, aResetBearsThePlatformsNumberOnce) {
    connect();
    const linger at_once{1, 0};
    setsockopt(static_cast<int>(partner->socketDescriptor()), SOL_SOCKET, SO_LINGER, &at_once,
               sizeof at_once);
    partner->abort();
    EXPECT_TRUE(comes_true([&] { return !failures.empty(); }));
    test::pass(loop, 100);
    EXPECT_EQ(failures, std::vector<int>{10054});
    EXPECT_EQ(client.state(), TcpState::error);
    client.write("into the void");
}

TEST_F(TcpLine, aPartnerWhoSaysNoMoreStillHears) {
    connect();
    partner->write("last words");
    partner->flush();
    shutdown(static_cast<int>(partner->socketDescriptor()), SHUT_WR);
    EXPECT_TRUE(comes_true([&] { return client.state() == TcpState::closing; }));
    EXPECT_EQ(got, "last words");
    EXPECT_TRUE(failures.empty());
}

TEST_F(TcpLine, aFloodIsTakenInOrderWithinBoundedMemory) {
    connect();
    constexpr std::size_t megabyte = 1 << 20;
    constexpr std::size_t whole = 64 * megabyte;
    std::size_t sent = 0;
    std::size_t taken = 0;
    bool in_order = true;
    const QByteArray block(static_cast<qsizetype>(megabyte), 'x');
    const auto refill = [&] {
        while (sent < whole && partner->bytesToWrite() < static_cast<qint64>(megabyte)) {
            partner->write(block);
            sent += megabyte;
        }
    };
    QObject::connect(partner, &QTcpSocket::bytesWritten, refill);
    client.arrived = [&] {
        const std::string bytes = client.take(16'384);
        in_order = in_order && bytes.find_first_not_of('x') == std::string::npos;
        taken += bytes.size();
    };
    const auto resident = [] {
        std::ifstream status("/proc/self/statm");
        long pages = 0;
        status >> pages >> pages;
        return pages * 4096;
    };
    refill();
    EXPECT_TRUE(comes_true([&] { return taken >= 8 * megabyte; }));
    const long early = resident();
    EXPECT_TRUE(comes_true([&] { return taken == whole; }));
    EXPECT_TRUE(in_order);
    EXPECT_LT(resident() - early, 8 * static_cast<long>(megabyte));
}

TEST_F(TcpLine, aDribbleArrivesByteByByte) {
    connect();
    for (int i = 1; i <= 20; ++i) {
        partner->write("x");
        partner->flush();
        ASSERT_TRUE(comes_true([&] { return got.size() == static_cast<std::size_t>(i); }));
    }
}

TEST_F(TcpLine, anUnknownHostBearsThePlatformsNumber) {
    client.connect("name.invalid", 23);
    EXPECT_EQ(client.state(), TcpState::resolving);
    EXPECT_TRUE(comes_true([&] { return !failures.empty(); }));
    EXPECT_EQ(failures, std::vector<int>{11001});
}

} // namespace velorn
