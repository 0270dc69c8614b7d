#include "desktop/qt_visualisation.h"

#include "desktop/text_rim.h"

#include <QtEndian>

#include <algorithm>

namespace velorn {

namespace {

constexpr qsizetype length_size = 4;

QByteArray framed(std::string_view text) {
    QByteArray frame(length_size, Qt::Uninitialized);
    qToLittleEndian(static_cast<quint32>(text.size()), frame.data());
    return frame.append(text.data(), static_cast<qsizetype>(text.size()));
}

// The toolkit itself would take the place of a living server without a word.
bool is_answered(const QString& name) {
    QLocalSocket visitor;
    visitor.connectToServer(name);
    return visitor.state() != QLocalSocket::UnconnectedState;
}

} // namespace

QtVisualisation::QtVisualisation(EventLoop& loop, QString name)
    : loop_(loop), name_(std::move(name)), frame_(framed({})) {
    server_.setSocketOptions(QLocalServer::UserAccessOption);
    QObject::connect(&server_, &QLocalServer::newConnection, &server_, [this] { take_partner(); });
}

QtVisualisation::~QtVisualisation() {
    *alive_ = false;
    for (Partner& partner : partners_) {
        partner.socket->disconnect();
        partner.socket->flush(); // the farewell that was set last
    }
}

Outcome QtVisualisation::open() {
    if (server_.isListening()) return {};
    if (is_answered(name_))
        return failure(RunTimeError::device_io, "der Name ist schon vergeben: " + to_cp1252_or(name_, '?'));
    // What a program that was killed left behind.
    QLocalServer::removeServer(name_);
    if (server_.listen(name_)) return {};
    return failure(RunTimeError::device_io, to_cp1252_or(server_.errorString(), '?'));
}

void QtVisualisation::set_text(std::string_view text) {
    frame_ = framed(text.substr(0, static_cast<std::size_t>(longest_text)));
    for (Partner& partner : partners_) {
        partner.behind = true;
        write(partner);
    }
}

void QtVisualisation::take_partner() {
    while (QLocalSocket* const socket = server_.nextPendingConnection()) {
        if (partners_.size() >= most_partners) {
            socket->abort();
            socket->deleteLater();
            continue;
        }
        socket->setParent(nullptr);
        socket->setReadBufferSize(longest_text);
        partners_.push_back({std::unique_ptr<QLocalSocket>(socket), {}, true});
        QObject::connect(socket, &QLocalSocket::readyRead, &server_, [this, socket] { read(socket); });
        QObject::connect(socket, &QLocalSocket::bytesWritten, &server_, [this, socket] {
            if (Partner* const partner = partner_of(socket)) write(*partner);
        });
        QObject::connect(socket, &QLocalSocket::disconnected, &server_, [this, socket] { part(socket); });
        write(partners_.back());
        read(socket);
    }
}

void QtVisualisation::read(QLocalSocket* socket) {
    Partner* const partner = partner_of(socket);
    if (partner == nullptr) return;
    partner->received += socket->readAll();
    while (partner->received.size() >= length_size) {
        const qint64 length = qFromLittleEndian<quint32>(partner->received.constData());
        if (length > longest_text) return part(socket);
        if (partner->received.size() < length_size + length) return;
        std::string text(partner->received.constData() + length_size, static_cast<std::size_t>(length));
        partner->received.remove(0, length_size + length);
        // What hears it may wait; it must not do so within the toolkit's report.
        loop_.post([this, alive = alive_, text = std::move(text)] {
            if (*alive && arrived) arrived(text);
        });
    }
}

// One text after the other: a partner that reads slowly gets the present one next, not all that there were.
void QtVisualisation::write(Partner& partner) {
    if (!partner.behind || partner.socket->bytesToWrite() > 0) return;
    partner.behind = false;
    partner.socket->write(frame_);
}

void QtVisualisation::part(QLocalSocket* socket) {
    const auto at = std::find_if(partners_.begin(), partners_.end(),
                                 [socket](const Partner& partner) { return partner.socket.get() == socket; });
    if (at == partners_.end()) return;
    at->socket->disconnect();
    at->socket->abort();
    at->socket.release()->deleteLater();
    partners_.erase(at);
}

QtVisualisation::Partner* QtVisualisation::partner_of(const QLocalSocket* socket) {
    const auto at = std::find_if(partners_.begin(), partners_.end(),
                                 [socket](const Partner& partner) { return partner.socket.get() == socket; });
    return at == partners_.end() ? nullptr : &*at;
}

} // namespace velorn
