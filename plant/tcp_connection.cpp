#include "plant/tcp_connection.h"

#include <array>
#include <cerrno>
#include <linux/sockios.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace velorn::plant {

TcpConnection::TcpConnection(PollEventLoop& loop, int socket) : loop_(loop), socket_(socket) {
    const int at_once = 1; // single keys and echoes
    ::setsockopt(socket_, IPPROTO_TCP, TCP_NODELAY, &at_once, sizeof at_once);
    loop_.watch(socket_, 0, [this](short events) { ready(events); });
}

TcpConnection::~TcpConnection() {
    loop_.cancel(patience_);
    loop_.unwatch(socket_);
    ::close(socket_);
}

void TcpConnection::send(std::string_view bytes) {
    if (gone_ || writing_ != Writing::open) return;
    queue_ += bytes;
    write();
}

std::size_t TcpConnection::unread() const {
    int count = 0;
    return ::ioctl(socket_, SIOCOUTQ, &count) == 0 && count > 0 ? static_cast<std::size_t>(count) : 0;
}

void TcpConnection::pause(bool on) {
    paused_ = on;
    look();
}

void TcpConnection::shut_down_writing() {
    if (writing_ == Writing::open) writing_ = Writing::closing;
    write();
}

void TcpConnection::finish() {
    if (finishing_ || gone_) return;
    finishing_ = true;
    lose_patience_later();
    shut_down_writing();
}

void TcpConnection::lose_patience_later() {
    loop_.cancel(patience_);
    patience_ = loop_.post_at(loop_.now_ms() + patience_ms, [this] { end(); });
}

void TcpConnection::reset() {
    if (gone_) return;
    const linger at_once{1, 0};
    ::setsockopt(socket_, SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
    end(); // the reset goes out when the socket is closed
}

void TcpConnection::ready(short events) {
    if ((events & POLLOUT) != 0) write();
    if ((events & (POLLIN | POLLHUP | POLLERR)) != 0) read();
}

void TcpConnection::read() {
    if (gone_) return;
    std::array<char, 4096> bytes;
    const ssize_t count = ::read(socket_, bytes.data(), bytes.size());
    if (count > 0) {
        if (!finishing_ && received) received({bytes.data(), static_cast<std::size_t>(count)});
    } else if (count == 0 || (errno != EAGAIN && errno != EINTR)) {
        end();
    }
}

void TcpConnection::write() {
    if (gone_) return;
    while (queued() > 0) {
        const ssize_t count = ::send(socket_, queue_.data() + queue_start_, queued(), MSG_NOSIGNAL);
        if (count <= 0) {
            if (count < 0 && errno != EAGAIN && errno != EINTR) {
                end();
                return;
            }
            break;
        }
        queue_start_ += static_cast<std::size_t>(count);
        if (finishing_) lose_patience_later();
    }
    if (queued() == 0 || queue_start_ >= full_queue) {
        queue_.erase(0, queue_start_);
        queue_start_ = 0;
    }
    if (queued() == 0 && writing_ == Writing::closing) {
        writing_ = Writing::closed;
        ::shutdown(socket_, SHUT_WR);
    }
    look();
}

void TcpConnection::end() {
    if (gone_) return;
    gone_ = true;
    loop_.cancel(patience_);
    look();
    if (ended) ended();
}

void TcpConnection::look() {
    const bool reads = finishing_ || (!paused_ && queued() < full_queue);
    const int wanted = gone_ ? 0 : (reads ? POLLIN : 0) | (queued() > 0 ? POLLOUT : 0);
    loop_.look_for(socket_, static_cast<short>(wanted));
}

} // namespace velorn::plant
