#include "desktop/qt_tcp_client.h"

#include "desktop/native_tcp.h"
#include "desktop/text_rim.h"
#include "runtime/text.h"

#include <QNetworkProxy>
#include <QTcpSocket>

#include <algorithm>
#include <array>
#include <utility>

namespace velorn {

namespace {

constexpr std::size_t inbox_limit = 65536;

struct Row {
    QAbstractSocket::SocketError error;
    int number;
    std::string_view text;
};

constexpr Row failures[] = {
    {QAbstractSocket::ConnectionRefusedError, 10061, "Die Verbindung wurde abgelehnt"},
    {QAbstractSocket::SocketTimeoutError, 10060, "Zeitüberschreitung beim Verbindungsaufbau"_w},
    {QAbstractSocket::HostNotFoundError, 11001, "Der Rechner wurde nicht gefunden"},
    {QAbstractSocket::NetworkError, 10065, "Der Rechner ist nicht erreichbar"},
    {QAbstractSocket::SocketAccessError, 10013, "Keine Berechtigung für diese Verbindung"_w},
    {QAbstractSocket::SocketResourceError, 10055, "Dem System fehlen Mittel für die Verbindung"_w},
    {QAbstractSocket::SocketAddressNotAvailableError, 10049, "Die Adresse ist nicht verwendbar"},
};

} // namespace

struct QtTcpClient::Line {
    QTcpSocket socket;
    native_tcp::Watch watch;
    std::string inbox;
    bool arrival_posted = false;
    bool overflow_posted = false;
};

QtTcpClient::~QtTcpClient() { close(); }

void QtTcpClient::connect(std::string_view host, int port) {
    close();
    line_ = std::make_shared<Line>();
    const QString name = to_qstring(host).trimmed();
    if (name.isEmpty() || port < 1 || port > 65535) {
        fail(10049, "Die Adresse ist nicht verwendbar");
        return;
    }
    state_ = TcpState::resolving;
    QTcpSocket& socket = line_->socket;
    socket.setProxy(QNetworkProxy::NoProxy); // the plants stand in the same net or behind its routers
    socket.setReadBufferSize(static_cast<qint64>(inbox_limit));
    QObject::connect(&socket, &QTcpSocket::stateChanged, [this](QAbstractSocket::SocketState state) {
        if (state == QAbstractSocket::ConnectingState) state_ = TcpState::connecting;
    });
    QObject::connect(&socket, &QTcpSocket::connected, [this] { has_connected(); });
    QObject::connect(&socket, &QTcpSocket::readyRead, [this] { collect(); });
    QObject::connect(&socket, &QTcpSocket::errorOccurred,
                     [this](QAbstractSocket::SocketError error) { has_failed(error); });
    socket.connectToHost(name, static_cast<quint16>(port));
}

void QtTcpClient::close() {
    state_ = TcpState::closed;
    if (!line_) return;
    line_->socket.disconnect();
    // What the system takes now it still sends after the close.
    if (line_->socket.bytesToWrite() > 0) line_->socket.flush();
    line_->watch.release();
    line_->socket.abort();
    line_.reset();
}

void QtTcpClient::has_connected() {
    state_ = TcpState::connected;
    line_->watch.hold(line_->socket.socketDescriptor());
    line_->socket.setSocketOption(QAbstractSocket::LowDelayOption, 1); // single keys are sent
    line_->socket.setSocketOption(QAbstractSocket::KeepAliveOption, 1);
    post([this] {
        if (connected) connected();
    });
}

void QtTcpClient::has_failed(int socket_error) {
    const bool was_connected = state_ == TcpState::connected;
    const bool was_reset = was_connected && line_->watch.was_reset();
    line_->watch.release();
    if (socket_error == QAbstractSocket::RemoteHostClosedError && was_connected) {
        collect();
        if (was_reset) {
            fail(10054, "Die Verbindung wurde vom Partner abgebrochen");
        } else {
            state_ = TcpState::closing;
        }
        return;
    }
    // Over and done with; the toolkit may report further trouble of the same connection.
    if (state_ == TcpState::closing || state_ == TcpState::error) return;
    if (was_connected) {
        fail(10054, "Die Verbindung ist abgebrochen");
        return;
    }
    for (const Row& row : failures) {
        if (row.error != socket_error) continue;
        fail(row.number, row.text);
        return;
    }
    fail(10050, "Netzwerkfehler: " + to_cp1252_or(line_->socket.errorString(), '?'));
}

void QtTcpClient::fail(int number, std::string_view text) {
    state_ = TcpState::error;
    post([this, number, description = std::string(text)] {
        if (failed) failed(number, description);
    });
}

void QtTcpClient::write(std::string_view bytes) {
    if (state_ != TcpState::connected || bytes.empty()) return;
    const auto waiting = static_cast<std::size_t>(line_->socket.bytesToWrite());
    if (bytes.size() > most_unsent || waiting > most_unsent - bytes.size()) {
        if (std::exchange(line_->overflow_posted, true)) return;
        post([this] {
            line_->overflow_posted = false;
            if (failed)
                failed(10055, std::string("Der Partner nimmt nichts mehr ab, Daten wurden verworfen"_w));
        });
        return;
    }
    line_->socket.write(bytes.data(), static_cast<qint64>(bytes.size()));
}

std::string QtTcpClient::take(std::size_t most) {
    if (!line_) return {};
    std::string oldest = line_->inbox.substr(0, most);
    line_->inbox.erase(0, oldest.size());
    collect();
    announce();
    return oldest;
}

// Fills the inbox. Reading until nothing comes also tells the toolkit to listen again, which it stops when
// its own buffer is full.
void QtTcpClient::collect() {
    std::array<char, 16384> chunk;
    while (line_->inbox.size() < inbox_limit) {
        const std::size_t room = std::min(chunk.size(), inbox_limit - line_->inbox.size());
        const qint64 count = line_->socket.read(chunk.data(), static_cast<qint64>(room));
        if (count <= 0) break;
        line_->inbox.append(chunk.data(), static_cast<std::size_t>(count));
    }
    announce();
}

void QtTcpClient::announce() {
    if (line_->inbox.empty() || std::exchange(line_->arrival_posted, true)) return;
    post([this] {
        line_->arrival_posted = false;
        if (arrived) arrived();
    });
}

void QtTcpClient::post(std::function<void()> news) {
    loop_.post([opening = std::weak_ptr(line_), news = std::move(news)] {
        if (!opening.expired()) news();
    });
}

} // namespace velorn
