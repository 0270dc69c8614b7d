#include "plant/tcp_server.h"

#include "runtime/text.h"

#include <arpa/inet.h>
#include <cerrno>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace velorn::plant {

namespace {

constexpr std::int64_t short_of_descriptors_ms = 1000;
constexpr int waiting_room = 16;

Failure system_failure(int error) {
    switch (error) {
    case EACCES:
    case EPERM: return failure(RunTimeError::permission_denied);
    case EADDRINUSE: return failure(RunTimeError::port_already_open);
    case EADDRNOTAVAIL:
        return failure(RunTimeError::device_io, "die Adresse gehört nicht zu diesem Rechner"_w);
    default: return failure(RunTimeError::device_io);
    }
}

const sockaddr* general(const sockaddr_in& place) { return reinterpret_cast<const sockaddr*>(&place); }

int new_socket() { return ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0); }

} // namespace

Result<std::unique_ptr<TcpServer>> TcpServer::open(PollEventLoop& loop, const std::string& address,
                                                   std::uint16_t port, Listening how) {
    sockaddr_in place{};
    place.sin_family = AF_INET;
    place.sin_port = htons(port);
    if (::inet_pton(AF_INET, address.c_str(), &place.sin_addr) != 1) {
        return failure(RunTimeError::invalid_call);
    }
    const int socket = new_socket();
    if (socket < 0) return system_failure(errno);
    std::unique_ptr<TcpServer> server(new TcpServer(loop, socket));
    const int yes = 1; // else the port stays taken for a minute after the plant's last visit
    ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    if (::bind(socket, general(place), sizeof place) != 0) return system_failure(errno);
    if (how == Listening::refuses) return server;
    if (::listen(socket, how == Listening::yes ? waiting_room : 0) != 0) return system_failure(errno);
    if (how == Listening::never_answers) {
        if (const Outcome full = server->fill_up(); !full) return full.failure();
        return server;
    }
    loop.watch(socket, POLLIN, [raw = server.get()](short) { raw->accept_all(); });
    return server;
}

TcpServer::~TcpServer() {
    loop_.cancel(again_);
    loop_.unwatch(socket_);
    for (const int filler : fillers_) ::close(filler);
    ::close(socket_);
}

std::uint16_t TcpServer::port() const {
    sockaddr_in place{};
    socklen_t size = sizeof place;
    ::getsockname(socket_, reinterpret_cast<sockaddr*>(&place), &size);
    return ntohs(place.sin_port);
}

// The system drops attempts when nobody is accepted and the waiting room is full. It always has room for one.
Outcome TcpServer::fill_up() {
    sockaddr_in place{};
    socklen_t size = sizeof place;
    ::getsockname(socket_, reinterpret_cast<sockaddr*>(&place), &size);
    for (int i = 0; i < 2; ++i) {
        const int filler = new_socket();
        if (filler < 0) return system_failure(errno);
        fillers_.push_back(filler);
        if (::connect(filler, general(place), sizeof place) != 0 && errno != EINPROGRESS) {
            return system_failure(errno);
        }
    }
    return {};
}

void TcpServer::accept_all() {
    for (;;) {
        const int socket = ::accept4(socket_, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
        if (socket >= 0) {
            auto connection = std::make_unique<TcpConnection>(loop_, socket);
            if (accepted) accepted(std::move(connection));
            continue;
        }
        if (errno == EINTR || errno == ECONNABORTED) continue;
        if (errno == EMFILE || errno == ENFILE || errno == ENOBUFS || errno == ENOMEM) {
            // The one who waits would wake the loop at once and for ever.
            loop_.look_for(socket_, 0);
            again_ = loop_.post_at(loop_.now_ms() + short_of_descriptors_ms,
                                   [this] { loop_.look_for(socket_, POLLIN); });
        }
        return;
    }
}

} // namespace velorn::plant
