// The whole program over a real socket of this machine, called as dialling calls it.
#include "app/program.h"
#include "desktop/qt_event_loop.h"
#include "desktop/qt_tcp_client.h"
#include "patience.h"
#include "plant/controller.h"
#include "support/fake_printer.h"
#include "support/fake_serial_port.h"
#include "support/fake_visualisation.h"
#include "support/memory_files.h"
#include "support/scripted_dialogs.h"

#include <QTcpServer>
#include <QTcpSocket>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>

namespace velorn::test {

namespace {

using ::testing::HasSubstr;

struct OverTcp : testing::Test {
    QtEventLoop loop;
    MemoryFiles files;
    ScriptedDialogs dialogs{loop};
    FakeSerialPort serial{loop};
    QtTcpClient tcp{loop};
    FakePrinter printer;
    FakeProcesses processes;
    FakeVisualisation visualisation;
    Program program{World{
        loop, files, dialogs, serial, tcp, printer, processes, visualisation, "c:\\velorn", {1100, 700}}};
    plant::Controller controller{loop, 3};
    QTcpServer server;
    QTcpSocket* partner = nullptr;
    std::size_t heard = 0; // bytes that the partner has taken

    OverTcp() {
        program.start.Form_Load();
        program.module1.telnet = false;
        server.listen(QHostAddress::LocalHost);
        QObject::connect(&server, &QTcpServer::newConnection, [this] {
            partner = server.nextPendingConnection();
            QObject::connect(partner, &QTcpSocket::readyRead, [this] {
                const std::string bytes = partner->readAll().toStdString();
                heard += bytes.size();
                loop.post([this, bytes] { controller.receive(bytes); });
            });
        });
        controller.send = [this](std::string_view bytes) {
            partner->write(bytes.data(), static_cast<qint64>(bytes.size()));
        };
    }
    bool eventually(const EventLoop::Condition& condition) { return comes_true(loop, condition); }
    const std::string& terminal() const { return program.frmTerminal.txtterm.Text(); }
    bool shows(const std::string& text) {
        return eventually([&] { return terminal().find(text) != std::string::npos; });
    }
    void dial() {
        program.tcp_link.begin_attempt("127.0.0.1", server.serverPort());
        ASSERT_TRUE(shows("Verbindung hergestellt"));
    }
};

} // namespace

TEST_F(OverTcp, aControllerAnswersInTheTerminal) {
    dial();
    EXPECT_TRUE(program.module1.tcpoffen);
    program.output.sendetext("\x01");
    program.output.sendetext("clock\r");
    EXPECT_TRUE(shows("Uhrzeit"));
    program.frmTerminal.tbrToolBar("HangUpPhone").Click();
    EXPECT_FALSE(program.module1.tcpoffen);
    EXPECT_EQ(program.Winsock1.State(), TcpState::closed);
    EXPECT_TRUE(eventually([&] { return partner->state() == QAbstractSocket::UnconnectedState; }));
}

TEST_F(OverTcp, aRefusalIsTold) {
    const quint16 port = server.serverPort();
    server.close();
    program.tcp_link.begin_attempt("127.0.0.1", port);
    EXPECT_TRUE(shows("Winsock Fehler 10061 "));
    EXPECT_TRUE(shows("Verbindung wird getrennt"));
    EXPECT_FALSE(program.module1.tcpoffen);
}

TEST_F(OverTcp, aResetIsToldAndTheSerialPortIsTheWayOutAgain) {
    dial();
    const linger at_once{1, 0};
    setsockopt(static_cast<int>(partner->socketDescriptor()), SOL_SOCKET, SO_LINGER, &at_once,
               sizeof at_once);
    partner->abort();
    EXPECT_TRUE(shows("Winsock Fehler 10054 "));
    EXPECT_FALSE(program.module1.tcpoffen);
}

TEST_F(OverTcp, aPartnerWhoEndsLeavesStateEightAndWhatIsSentIsLost) {
    dial();
    // A partner who closes over unread bytes would reset the connection.
    EXPECT_TRUE(eventually([&] { return heard > 0; }));
    partner->disconnectFromHost();
    EXPECT_TRUE(eventually([&] { return program.Winsock1.State() == TcpState::closing; }));
    program.output.sendetext("x");
    EXPECT_TRUE(program.frmTerminal.picipunterbr.Visible);
}

TEST_F(OverTcp, aFloodGoesThroughTheWholeProgramWithinItsBounds) {
    dial();
    constexpr std::size_t whole = 16 << 20;
    std::size_t sent = 0;
    QByteArray block;
    while (block.size() < (1 << 16)) block += "Vorlauf 78,4 C Leistung 118 kW Zaehler 004711\r\n";
    const auto refill = [&] {
        while (sent < whole && partner->bytesToWrite() < (1 << 17)) {
            partner->write(block);
            sent += static_cast<std::size_t>(block.size());
        }
        if (sent >= whole && partner->bytesToWrite() == 0) partner->write("ende der flut");
    };
    QObject::connect(partner, &QTcpSocket::bytesWritten, refill);
    refill();
    EXPECT_TRUE(eventually([&] { return terminal().find("ende der flut") != std::string::npos; }));
    EXPECT_LE(terminal().size(), 600'000U);
    EXPECT_LE(program.receive.txtvergl.length(), 70'000U);
}

} // namespace velorn::test
