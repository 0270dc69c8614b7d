// A device behind a bad line of its own: a site whose telephone line is slow or noisy, or breaks after some
// bytes, whoever calls it and over whatever wire.
//
// Memory is bounded: what comes while too much is on the way already is lost, as on the real thing.
#pragma once

#include "plant/device.h"
#include "plant/faults.h"

#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>

namespace velorn::plant {

class TroubledDevice final : public Device {
  public:
    static constexpr std::size_t most_on_the_way = 16 * 1024; // bytes

    TroubledDevice(EventLoop& loop, std::unique_ptr<Device> behind, const Faults& faults)
        : behind_(std::move(behind)), line_(loop, faults) {
        behind_->send = [this](std::string_view bytes) { line_.from_controller(bytes); };
        behind_->hung_up = [this](Ending ending) { leave(ending); };
        behind_->waiting = [this] { return line_.waiting_outward() + unheard(); };
        line_.at_controller = [this](std::string_view bytes) { behind_->receive(bytes); };
        line_.at_outside = [this](std::string_view bytes) { say(bytes); };
        line_.hung_up = [this] { leave(Ending::close); };
    }
    ~TroubledDevice() override { behind_->send = nullptr; }

    void connected() override { behind_->connected(); }
    void disconnected() override { behind_->disconnected(); }
    void receive(std::string_view bytes) override {
        if (line_.waiting_inward() + line_.waiting_outward() < most_on_the_way) line_.from_outside(bytes);
    }

  private:
    std::unique_ptr<Device> behind_;
    Line line_;
};

} // namespace velorn::plant
