// A gateway: two modems, each behind a TCP port of its own, that dial the sites for whoever connects. Each
// takes one connection at a time and can be told how to behave.
#pragma once

#include "plant/device.h"
#include "plant/exchange.h"
#include "runtime/event_loop.h"

#include <array>
#include <cstddef>
#include <memory>

namespace velorn::plant {

class Gateway {
  public:
    static constexpr std::size_t modems = 2;

    enum class Behaviour {
        connects,
        refuses, // nobody may connect
        busy,    // takes the connection and answers every number with BUSY
        silent,  // takes the connection and never says a word
    };

    // `exchange` outlives the gateway and every device it gives out.
    Gateway(EventLoop& loop, Exchange& exchange, std::array<Behaviour, modems> behaviours = {});

    void set_behaviour(std::size_t modem, Behaviour behaviour) { places_[modem].behaviour = behaviour; }
    Behaviour behaviour(std::size_t modem) const { return places_[modem].behaviour; }

    // A connection to one of the modems; null: it is engaged or refuses.
    std::unique_ptr<Device> connect(std::size_t modem);

    bool engaged(std::size_t modem) const { return !places_[modem].visitor.expired(); }

  private:
    struct Place {
        Behaviour behaviour = Behaviour::connects;
        std::weak_ptr<void> visitor;
    };

    EventLoop& loop_;
    Exchange& exchange_;
    std::array<Place, modems> places_;
};

} // namespace velorn::plant
