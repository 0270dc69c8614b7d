#include "plant/gateway.h"

#include "plant/modem.h"

#include <string_view>

namespace velorn::plant {

namespace {

constexpr std::int64_t busy_tone_ms = 3000;

class EngagedNetwork final : public Exchange {
  public:
    Call dial(std::string_view) override { return {Call::Outcome::busy, busy_tone_ms, nullptr}; }
};

class GatewayModem final : public Device {
  public:
    GatewayModem(EventLoop& loop, Exchange& exchange, Gateway::Behaviour behaviour)
        : silent_(behaviour == Gateway::Behaviour::silent),
          modem_(loop, behaviour == Gateway::Behaviour::busy ? engaged_ : exchange) {
        modem_.send = [this](std::string_view bytes) { say(bytes); };
        modem_.waiting = [this] { return unheard(); };
    }

    void disconnected() override { modem_.disconnected(); }
    void receive(std::string_view bytes) override {
        if (!silent_) modem_.receive(bytes);
    }

    std::weak_ptr<void> visit() const { return visit_; }

  private:
    bool silent_;
    EngagedNetwork engaged_;
    Modem modem_;
    std::shared_ptr<void> visit_ = std::make_shared<char>();
};

} // namespace

Gateway::Gateway(EventLoop& loop, Exchange& exchange, std::array<Behaviour, modems> behaviours)
    : loop_(loop), exchange_(exchange) {
    for (std::size_t i = 0; i < modems; ++i) places_[i].behaviour = behaviours[i];
}

std::unique_ptr<Device> Gateway::connect(std::size_t modem) {
    Place& place = places_[modem];
    if (place.behaviour == Behaviour::refuses || engaged(modem)) return nullptr;
    auto device = std::make_unique<GatewayModem>(loop_, exchange_, place.behaviour);
    place.visitor = device->visit();
    return device;
}

} // namespace velorn::plant
