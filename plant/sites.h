// The sites of a directory, alive: each has one controller, made when somebody first comes, and one visitor
// at a time, by telephone or over the network. They are the telephone network of the plant's modems too.
#pragma once

#include "plant/controller.h"
#include "plant/device.h"
#include "plant/directory.h"
#include "plant/exchange.h"

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velorn::plant {

class Sites final : public Exchange {
  public:
    Sites(EventLoop& loop, Directory directory);

    const Directory& directory() const { return directory_; }

    // From now on; a call or visit that is going on stays. What a TCP port does was settled when it was
    // opened.
    void set_behaviour(std::size_t place, Behaviour behaviour) { directory_.set_behaviour(place, behaviour); }
    // From the next visit on; an empty name: nobody is asked.
    void set_login(std::size_t place, std::string user, std::string password) {
        directory_.set_login(place, std::move(user), std::move(password));
    }
    // The line has no dial tone from now on, or has it again.
    void set_dead(bool dead) { dead_ = dead; }

    Call dial(std::string_view number) override;

    // A visit over the network, with the login if the site has one; null: the site is engaged. `place` is one
    // of the directory.
    std::unique_ptr<Device> visit(std::size_t place);

    // The site's controller, whether or not somebody has met it.
    Controller& controller(std::size_t place);

    bool engaged(std::size_t place) const { return !alive_[place].visitor.expired(); }

  private:
    struct Alive {
        std::shared_ptr<Controller> controller;
        std::weak_ptr<void> visitor; // gone with the visiting device
    };

    std::unique_ptr<Device> enter(std::size_t place);

    EventLoop& loop_;
    Directory directory_;
    std::vector<Alive> alive_;
    bool dead_ = false;
};

} // namespace velorn::plant
