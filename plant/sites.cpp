#include "plant/sites.h"

#include "plant/controller_device.h"
#include "plant/login.h"
#include "plant/troubled_device.h"

#include <utility>

namespace velorn::plant {

namespace {

constexpr std::int64_t no_tone_ms = 2000;
constexpr std::int64_t nobody_there_ms = 8000; // the network's announcement

} // namespace

Sites::Sites(EventLoop& loop, Directory directory) : loop_(loop), directory_(std::move(directory)) {
    alive_.resize(directory_.sites().size());
}

Call Sites::dial(std::string_view number) {
    if (dead_) return {Call::Outcome::no_dialtone, no_tone_ms, nullptr};
    const std::size_t place = directory_.by_number(number);
    if (place == Directory::not_found) return {Call::Outcome::unknown, nobody_there_ms, nullptr};
    const Site& site = directory_.sites()[place];
    switch (site.behaviour) {
    case Behaviour::busy: return {Call::Outcome::busy, site.pick_up_ms, nullptr};
    case Behaviour::refuses: return {Call::Outcome::unknown, site.pick_up_ms, nullptr};
    case Behaviour::never_answers: return {Call::Outcome::no_answer, 0, nullptr};
    case Behaviour::connects: break;
    }
    if (std::unique_ptr<Device> controller = enter(place)) {
        return {Call::Outcome::connects, site.pick_up_ms, std::move(controller)};
    }
    return {Call::Outcome::busy, site.pick_up_ms, nullptr};
}

std::unique_ptr<Device> Sites::visit(std::size_t place) {
    const Site& site = directory_.sites()[place];
    if (site.behaviour == Behaviour::busy) return nullptr;
    std::unique_ptr<Device> device = enter(place);
    if (!device || site.user.empty()) return device;
    return std::make_unique<Login>(Credentials{site.user, site.password}, std::move(device));
}

Controller& Sites::controller(std::size_t place) {
    std::shared_ptr<Controller>& one = alive_[place].controller;
    if (!one) {
        const Site& site = directory_.sites()[place];
        one = std::make_shared<Controller>(loop_, site.seed);
        one->set_site(site.name);
        one->set_tracks(site.tracks);
        one->download().set_faults(site.download_faults);
    }
    return *one;
}

std::unique_ptr<Device> Sites::enter(std::size_t place) {
    if (engaged(place)) return nullptr;
    (void)controller(place);
    Alive& alive = alive_[place];
    auto device = std::make_unique<ControllerDevice>(alive.controller);
    alive.visitor = device->visit();
    const Faults& faults = directory_.sites()[place].faults;
    if (!faults.any()) return device;
    return std::make_unique<TroubledDevice>(loop_, std::move(device), faults);
}

} // namespace velorn::plant
