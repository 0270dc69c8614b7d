// A controller as a device. The controller outlives the connection: what it was told stays, and who calls
// again meets the same one.
#pragma once

#include "plant/controller.h"
#include "plant/device.h"

#include <memory>
#include <string_view>
#include <utility>

namespace velorn::plant {

class ControllerDevice final : public Device {
  public:
    explicit ControllerDevice(std::shared_ptr<Controller> controller) : controller_(std::move(controller)) {
        controller_->send = [this](std::string_view bytes) { say(bytes); };
        controller_->not_carried = [this] { return unheard(); };
        controller_->hang_up = [this] { leave(Ending::close); };
    }
    ~ControllerDevice() override {
        controller_->send = nullptr;
        controller_->not_carried = nullptr;
        controller_->hang_up = nullptr;
        controller_->caller_is_gone();
    }

    // Expires with the device.
    std::weak_ptr<void> visit() const { return visit_; }

    void receive(std::string_view bytes) override { controller_->receive(bytes); }

  private:
    std::shared_ptr<Controller> controller_;
    std::shared_ptr<void> visit_ = std::make_shared<char>();
};

} // namespace velorn::plant
