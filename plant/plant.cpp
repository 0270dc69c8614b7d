#include "plant/plant.h"

#include "plant/controller_device.h"
#include "plant/modem.h"
#include "plant/source_device.h"
#include "runtime/text.h"

#include <utility>

namespace velorn::plant {

namespace {

Listening listening_of(Behaviour behaviour) {
    switch (behaviour) {
    case Behaviour::refuses: return Listening::refuses;
    case Behaviour::never_answers: return Listening::never_answers;
    case Behaviour::connects:
    case Behaviour::busy: break;
    }
    return Listening::yes;
}

std::string place_text(const std::string& address, std::uint16_t port) {
    return address + ":" + std::to_string(port);
}

} // namespace

Plant::Plant(PollEventLoop& loop, const Options& options) : loop_(loop), options_(options) {
    const Directory demo = demo_directory(options.faults.seed);
    Directory directory;
    for (Site site : demo.sites()) {
        site.download_faults = download_faults(directory.sites().size());
        directory.add(std::move(site));
    }
    sites_ = std::make_unique<Sites>(loop, std::move(directory));
}

// Each controller draws for itself.
DownloadFaults Plant::download_faults(std::size_t place) const {
    DownloadFaults faults = options_.download_faults;
    faults.seed = options_.faults.seed + place;
    return faults;
}

// What became of each site's downloads, as the site sees it.
void Plant::log_downloads() {
    for (std::size_t i = 0; i < sites_->directory().sites().size(); ++i) {
        const Site& site = sites_->directory().sites()[i];
        sites_->controller(i).download().over = [this, &site](long ordered, long acknowledged) {
            log(site.name + ": Abholung zu Ende, " + std::to_string(ordered) + " Datensätze zu " +
                std::to_string(site.tracks) + " Werten verlangt, " + std::to_string(acknowledged) +
                " quittiert");
        };
    }
}

bool Plant::open() {
    if (options_.log) log_downloads();
    if (!open_pseudo_terminals()) return false;
    open_tcp_places();
    for (const GatewayPlace& place : options_.gateways) open_gateway(place);
    if (options_.demo) open_demo();
    return on_air() > 0;
}

Faults Plant::next_faults() {
    Faults faults = options_.faults;
    faults.seed += lines_++;
    return faults;
}

MakeDevice Plant::controller() {
    const auto one =
        std::make_shared<Controller>(loop_, options_.faults.seed + static_cast<std::uint64_t>(controllers_));
    one->download().set_faults(download_faults(controllers_));
    ++controllers_;
    return [one] { return std::make_unique<ControllerDevice>(one); };
}

bool Plant::open_pseudo_terminals() {
    if (options_.source) at_work_ = options_.pseudo_terminals.size();
    for (const std::string& link : options_.pseudo_terminals) {
        const std::uint64_t seed = options_.faults.seed + lines_;
        MakeDevice make = controller();
        if (options_.source) {
            make = [this, seed, done = std::make_shared<bool>(false)] {
                return std::make_unique<SourceDevice>(loop_, Source(seed, *options_.source), [this, done] {
                    if (std::exchange(*done, true)) return; // once more after a hang-up
                    if (--at_work_ == 0 && finished) finished();
                });
            };
        }
        if (!open_station("Steuerung " + std::to_string(controllers_), link, std::move(make))) return false;
    }
    for (const std::string& link : options_.modems) {
        const auto make = [this] { return std::make_unique<Modem>(loop_, *sites_); };
        if (!open_station("Modem " + std::to_string(++modems_), link, make)) return false;
    }
    return true;
}

bool Plant::open_station(const std::string& name, const std::string& link, MakeDevice make) {
    StationSettings settings;
    settings.name = name;
    settings.link = link;
    settings.faults = next_faults();
    auto station = std::make_unique<Station>(loop_, settings, std::move(make));
    station->announce = announce;
    if (options_.log) station->log = log;
    if (const Outcome opened = station->open(); !opened) {
        if (complain) complain((link.empty() ? name : link) + ": " + utf8_from_cp1252(opened.failure().text));
        return false;
    }
    stations_.push_back(std::move(station));
    return true;
}

void Plant::open_tcp_places() {
    for (const TcpPlace& place : options_.tcp) {
        TcpStationSettings settings;
        settings.address = place.address;
        settings.port = place.port;
        if (place.peer) {
            settings.name = "Gegenseite";
            settings.listening = listening_of(*place.peer);
            open_tcp(std::move(settings), [this, peer = *place.peer] { return make_device(loop_, peer); });
            continue;
        }
        MakeDevice make = controller();
        settings.name = "Steuerung " + std::to_string(controllers_);
        settings.most = 1;
        if (place.login) {
            make = [make, login = *place.login] { return std::make_unique<Login>(login, make()); };
        }
        open_tcp(std::move(settings), std::move(make));
    }
}

void Plant::open_gateway(const GatewayPlace& place) {
    gateways_.push_back(std::make_unique<Gateway>(loop_, *sites_, place.behaviours));
    Gateway& gateway = *gateways_.back();
    for (std::size_t modem = 0; modem < Gateway::modems; ++modem) {
        TcpStationSettings settings;
        settings.name = "Gateway, Modem " + std::to_string(modem + 1);
        settings.address = place.address;
        settings.port = place.ports[modem];
        settings.most = 1;
        if (place.behaviours[modem] == Gateway::Behaviour::refuses) settings.listening = Listening::refuses;
        open_tcp(std::move(settings), [&gateway, modem] { return gateway.connect(modem); });
    }
}

void Plant::open_demo() {
    for (std::size_t i = 0; i < sites_->directory().sites().size(); ++i) {
        const Site& site = sites_->directory().sites()[i];
        if (site.address.empty()) continue;
        TcpStationSettings settings;
        settings.name = site.name;
        settings.address = site.address;
        settings.port = site.port;
        settings.listening = listening_of(site.behaviour);
        settings.most = 1;
        open_tcp(std::move(settings), [this, i] { return sites_->visit(i); });
    }
    GatewayPlace place;
    place.address = demo_gateway_address;
    open_gateway(place);
}

void Plant::open_tcp(TcpStationSettings settings, MakeDevice make) {
    settings.faults = next_faults();
    const std::string where = settings.name + ", " + place_text(settings.address, settings.port);
    auto station = std::make_unique<TcpStation>(loop_, std::move(settings), std::move(make));
    station->announce = announce;
    if (options_.log) station->log = log;
    if (const Outcome opened = station->open(); !opened) {
        if (complain) {
            complain(where + " bleibt weg: " + utf8_from_cp1252(opened.failure().text));
        }
        return;
    }
    tcp_stations_.push_back(std::move(station));
}

} // namespace velorn::plant
