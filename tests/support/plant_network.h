// The plant at the other end of both links of a program in memory: a modem on the serial line, and on the
// network the sites at their addresses and the gateway with its two modems. One connection at a time, as the
// program has it.
#pragma once

#include "plant/gateway.h"
#include "plant/modem.h"
#include "plant/sites.h"
#include "support/test_program.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace velorn::test {

class PlantNetwork {
  public:
    explicit PlantNetwork(TestProgram& program) : program_(program) {
        program.program.world.gateway.address = plant::demo_gateway_address;
        modem.send = [this](std::string_view bytes) { program_.serial.arrives(bytes); };
        program.serial.on_write = [this](std::string_view bytes) {
            program_.loop.post([this, text = std::string(bytes)] { modem.receive(text); });
        };
        program.tcp.on_connect = [this] { connect(); };
        program.tcp.on_close = [this] { leave(); };
        program.tcp.on_write = [this](std::string_view bytes) {
            program_.loop.post([visit = std::weak_ptr(visit_), text = std::string(bytes)] {
                if (const auto there = visit.lock()) (*there)->receive(text);
            });
        };
    }
    ~PlantNetwork() {
        leave();
        program_.serial.on_write = nullptr;
        program_.tcp.on_connect = nullptr;
        program_.tcp.on_close = nullptr;
        program_.tcp.on_write = nullptr;
    }
    PlantNetwork(const PlantNetwork&) = delete;
    PlantNetwork& operator=(const PlantNetwork&) = delete;

  private:
    TestProgram& program_;

  public:
    plant::Sites sites{program_.loop, plant::demo_directory()};
    plant::Gateway gateway{program_.loop, sites};
    plant::Modem modem{program_.loop, sites}; // on the serial line

  private:
    enum class Answer { takes, refuses, silence };
    using Visit = std::shared_ptr<std::unique_ptr<plant::Device>>;

    static constexpr int trip_ms = 20;
    static constexpr int refused = 10061;
    static constexpr int reset = 10054;

    std::optional<std::size_t> gateway_modem() const {
        const Gateway& place = program_.program.world.gateway;
        if (program_.tcp.host != place.address) return std::nullopt;
        if (program_.tcp.port == place.port1) return 0;
        if (program_.tcp.port == place.port2) return 1;
        return std::nullopt;
    }
    std::optional<std::size_t> site() const {
        const auto all = sites.directory().sites();
        for (std::size_t i = 0; i < all.size(); ++i) {
            if (all[i].address == program_.tcp.host && all[i].port == program_.tcp.port) return i;
        }
        return std::nullopt;
    }
    Answer answer() const {
        if (const auto which = gateway_modem())
            return gateway.behaviour(*which) == plant::Gateway::Behaviour::refuses ? Answer::refuses
                                                                                   : Answer::takes;
        const auto place = site();
        if (!place) return Answer::refuses;
        switch (sites.directory().sites()[*place].behaviour) {
        case plant::Behaviour::refuses: return Answer::refuses;
        case plant::Behaviour::never_answers: return Answer::silence;
        case plant::Behaviour::busy:
        case plant::Behaviour::connects: break;
        }
        return Answer::takes;
    }
    std::unique_ptr<plant::Device> who_answers() {
        if (const auto which = gateway_modem()) return gateway.connect(*which);
        const auto place = site();
        return place ? sites.visit(*place) : nullptr;
    }

    void connect() {
        leave();
        const Answer how = answer();
        if (how == Answer::silence) return;
        visit_ = std::make_shared<std::unique_ptr<plant::Device>>();
        program_.loop.post_at(program_.loop.now_ms() + trip_ms, [this, how, visit = std::weak_ptr(visit_)] {
            if (visit.expired()) return;
            if (how == Answer::refuses) {
                program_.tcp.fails(refused, "Die Verbindung wurde abgelehnt");
            } else {
                begin();
            }
        });
    }
    void begin() {
        program_.tcp.succeeds();
        *visit_ = who_answers();
        if (!*visit_) { // engaged: it is sent away at once
            program_.tcp.ends();
            return;
        }
        plant::Device& device = **visit_;
        device.send = [this](std::string_view bytes) { program_.tcp.arrives(bytes); };
        device.hung_up = [this](plant::Ending ending) {
            program_.loop.post([this, ending, visit = std::weak_ptr(visit_)] {
                if (visit.expired()) return;
                if (ending == plant::Ending::reset) {
                    program_.tcp.fails(reset, "Die Verbindung wurde vom Partner abgebrochen");
                } else {
                    program_.tcp.ends();
                }
            });
        };
        device.connected();
    }
    void leave() {
        const Visit visit = std::move(visit_);
        program_.tcp.drop();
        if (!visit || !*visit) return;
        (*visit)->send = nullptr;
        (*visit)->hung_up = nullptr;
        (*visit)->disconnected();
    }

    Visit visit_;
};

} // namespace velorn::test
