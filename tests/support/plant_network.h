// The plant at the other end of both links of a program in memory: a modem on the serial line, and on the
// network the sites at their addresses and the gateway with its two modems. One connection at a time, as the
// program has it. The sites are the demo's where no others are given.
#pragma once

#include "plant/gateway.h"
#include "plant/modem.h"
#include "plant/sites.h"
#include "support/test_program.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace velorn::test {

class PlantNetwork {
  public:
    template <class AnyTestProgram>
    explicit PlantNetwork(AnyTestProgram& p, plant::Directory directory = plant::demo_directory())
        : PlantNetwork(p.loop, p.program, p.serial, p.tcp, std::move(directory)) {}
    PlantNetwork(EventLoop& loop, Program& program, FakeSerialPort& serial, FakeTcpClient& tcp,
                 plant::Directory directory = plant::demo_directory())
        : loop_(loop),
          program_(program),
          serial_(serial),
          tcp_(tcp),
          sites(loop, std::move(directory)),
          gateway(loop, sites),
          modem(loop, sites) {
        program.world.gateway.address = plant::demo_gateway_address;
        modem.send = [this](std::string_view bytes) { serial_.arrives(bytes); };
        serial.on_write = [this](std::string_view bytes) {
            loop_.post([this, text = std::string(bytes)] { modem.receive(text); });
        };
        tcp.on_connect = [this] { connect(); };
        tcp.on_close = [this] { leave(); };
        tcp.on_write = [this](std::string_view bytes) {
            loop_.post([visit = std::weak_ptr(visit_), text = std::string(bytes)] {
                if (const auto there = visit.lock()) (*there)->receive(text);
            });
        };
    }
    ~PlantNetwork() {
        leave();
        serial_.on_write = nullptr;
        tcp_.on_connect = nullptr;
        tcp_.on_close = nullptr;
        tcp_.on_write = nullptr;
    }
    PlantNetwork(const PlantNetwork&) = delete;
    PlantNetwork& operator=(const PlantNetwork&) = delete;

  private:
    EventLoop& loop_;
    Program& program_;
    FakeSerialPort& serial_;
    FakeTcpClient& tcp_;

  public:
    plant::Sites sites;
    plant::Gateway gateway;
    plant::Modem modem; // on the serial line

  private:
    enum class Answer { takes, refuses, silence };
    using Visit = std::shared_ptr<std::unique_ptr<plant::Device>>;

    static constexpr int trip_ms = 20;
    static constexpr int refused = 10061;
    static constexpr int reset = 10054;

    std::optional<std::size_t> gateway_modem() const {
        const Gateway& place = program_.world.gateway;
        if (tcp_.host != place.address) return std::nullopt;
        if (tcp_.port == place.port1) return 0;
        if (tcp_.port == place.port2) return 1;
        return std::nullopt;
    }
    std::optional<std::size_t> site() const {
        const auto all = sites.directory().sites();
        for (std::size_t i = 0; i < all.size(); ++i) {
            if (all[i].address == tcp_.host && all[i].port == tcp_.port) return i;
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
        loop_.post_at(loop_.now_ms() + trip_ms, [this, how, visit = std::weak_ptr(visit_)] {
            if (visit.expired()) return;
            if (how == Answer::refuses) {
                tcp_.fails(refused, "Die Verbindung wurde abgelehnt");
            } else {
                begin();
            }
        });
    }
    void begin() {
        tcp_.succeeds();
        *visit_ = who_answers();
        if (!*visit_) { // engaged: it is sent away at once
            tcp_.ends();
            return;
        }
        plant::Device& device = **visit_;
        device.send = [this](std::string_view bytes) { tcp_.arrives(bytes); };
        device.hung_up = [this](plant::Ending ending) {
            loop_.post([this, ending, visit = std::weak_ptr(visit_)] {
                if (visit.expired()) return;
                if (ending == plant::Ending::reset) {
                    tcp_.fails(reset, "Die Verbindung wurde vom Partner abgebrochen");
                } else {
                    tcp_.ends();
                }
            });
        };
        device.connected();
    }
    void leave() {
        const Visit visit = std::move(visit_);
        tcp_.drop();
        if (!visit || !*visit) return;
        (*visit)->send = nullptr;
        (*visit)->hung_up = nullptr;
        (*visit)->disconnected();
    }

    Visit visit_;
};

} // namespace velorn::test
