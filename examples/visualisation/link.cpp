#include "link.h"

#include <QtEndian>

#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace {

constexpr qsizetype length_size = 4;
constexpr qint64 longest_text = qint64{1} << 20;

} // namespace

Link::Link(QString name) : name_(std::move(name)) {
    again_.setInterval(1s);
    life_.setInterval(4s); // Velorn takes six seconds of silence for the end
    QObject::connect(&again_, &QTimer::timeout, &socket_, [this] { look_for_velorn(); });
    QObject::connect(&life_, &QTimer::timeout, &socket_, [this] { say_new_beginning(); });
    QObject::connect(&socket_, &QLocalSocket::readyRead, &socket_, [this] { read(); });
    QObject::connect(&socket_, &QLocalSocket::connected, &socket_, [this] {
        received_.clear();
        first_ = true;
        if (changed) changed(true);
        say_new_beginning();
        life_.start();
    });
    QObject::connect(&socket_, &QLocalSocket::disconnected, &socket_, [this] {
        life_.stop();
        if (changed) changed(false);
        be_done();
    });
    QObject::connect(&socket_, &QLocalSocket::bytesWritten, &socket_, [this] {
        if (socket_.bytesToWrite() == 0) be_done();
    });
}

void Link::begin() {
    again_.start();
    look_for_velorn();
}

void Link::look_for_velorn() {
    if (socket_.state() == QLocalSocket::UnconnectedState) socket_.connectToServer(name_);
}

void Link::end(std::function<void()> said) {
    again_.stop();
    life_.stop();
    said_ = std::move(said);
    if (socket_.state() != QLocalSocket::ConnectedState) return be_done();
    say("ENDE");
    QTimer::singleShot(2s, &socket_, [this] { be_done(); }); // Velorn doesn't read
}

void Link::be_done() {
    if (const auto said = std::exchange(said_, nullptr)) said();
}

// Velorn acts on a change only, so no two of them are alike.
void Link::say_new_beginning() { say("neuanf " + QByteArray::number(++beginnings_)); }

void Link::say(const QByteArray& text) {
    QByteArray frame(length_size, Qt::Uninitialized);
    qToLittleEndian(static_cast<quint32>(text.size()), frame.data());
    socket_.write(frame + text);
}

void Link::read() {
    received_ += socket_.readAll();
    while (received_.size() >= length_size) {
        const qint64 length = qFromLittleEndian<quint32>(received_.constData());
        if (length > longest_text) return socket_.abort();
        if (received_.size() < length_size + length) return;
        // German letters have the same numbers in Latin-1 as in Velorn's cp1252.
        QString text = QString::fromLatin1(received_.constData() + length_size, length);
        // All but the controller's ß, which comes as it is in code page 437.
        text.replace(QChar(225), QStringLiteral("ß"));
        received_.remove(0, length_size + length);
        if (arrived) arrived(text, std::exchange(first_, false));
    }
}
