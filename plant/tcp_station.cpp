#include "plant/tcp_station.h"

#include <algorithm>
#include <utility>

namespace velorn::plant {

namespace {

constexpr std::size_t most_at_the_door = 16; // connections beyond those that are served

std::string_view remark(Listening listening) {
    switch (listening) {
    case Listening::yes: break;
    case Listening::refuses: return " (weist ab)";
    case Listening::never_answers: return " (antwortet nie)";
    }
    return "";
}

} // namespace

TcpStation::TcpStation(PollEventLoop& loop, TcpStationSettings settings, MakeDevice make)
    : loop_(loop), settings_(std::move(settings)), make_(std::move(make)) {}

TcpStation::~TcpStation() {
    server_.reset();
    for (Visit& visit : visits_) {
        loop_.cancel(visit.next);
        visit.connection->ended = nullptr;
        visit.session.reset();
    }
}

Outcome TcpStation::open() {
    auto opened = TcpServer::open(loop_, settings_.address, settings_.port, settings_.listening);
    if (!opened) return opened.failure();
    server_ = std::move(opened).value();
    server_->accepted = [this](std::unique_ptr<TcpConnection> connection) {
        if (visits_.size() >= settings_.most + most_at_the_door) return;
        Visit& visit = visits_.emplace_back();
        visit.connection = std::move(connection);
        visit.connection->ended = [this, &visit] { remove_later(visit); };
        admit(visit, false);
    };
    if (announce) {
        announce(settings_.name + ": " + settings_.address + ":" + std::to_string(port()) +
                 std::string(remark(settings_.listening)));
    }
    return {};
}

void TcpStation::admit(Visit& visit, bool last_look) {
    const auto busy =
        std::count_if(visits_.begin(), visits_.end(), [](const Visit& v) { return v.session != nullptr; });
    std::unique_ptr<Device> device;
    if (static_cast<std::size_t>(busy) < settings_.most) device = make_();
    if (!device) {
        visit.next = loop_.post_at(loop_.now_ms() + (last_look ? 0 : second_look_ms), [&, last_look] {
            if (last_look) {
                visits_.remove_if([&](const Visit& v) { return &v == &visit; });
            } else {
                admit(visit, true);
            }
        });
        return;
    }
    visit.session = std::make_unique<Session>(loop_, *visit.connection, std::move(device), settings_.faults);
    visit.session->log = log;
    visit.session->over = [this, &visit](Ending ending) { over(visit, ending); };
    visit.session->begin(settings_.name + "/" + std::to_string(++served_));
    visit.connection->pause(false);
}

void TcpStation::over(Visit& visit, Ending ending) {
    switch (ending) {
    case Ending::half_close: visit.connection->shut_down_writing(); break;
    case Ending::reset: visit.connection->reset(); break;
    case Ending::close:
        visit.connection->finish();
        // The site is free from now on, the connection takes its time.
        if (!visit.gone) visit.next = loop_.post([&visit] { visit.session.reset(); });
        break;
    }
}

// Connection and session are on the stack.
void TcpStation::remove_later(Visit& visit) {
    visit.gone = true;
    loop_.cancel(visit.next);
    visit.next = loop_.post([this, &visit] {
        visit.session.reset();
        visits_.remove_if([&](const Visit& v) { return &v == &visit; });
    });
}

} // namespace velorn::plant
