#include "plant/directory.h"

#include <array>

namespace velorn::plant {

namespace {

constexpr std::array<std::string_view, 2> prefixes = {"0", "01019"};

struct Row {
    std::string_view name;
    std::string_view number;
    std::string_view address;
    std::uint16_t port;
    Route route;
    Behaviour behaviour;
    std::string_view user;
    std::string_view password;
    std::int64_t pick_up_ms;
    int tracks;
};

// By route, so that a range of positions is one: network, gateway, modem; then those that give trouble. Only
// one needs a port below 1024.
constexpr Row demo_rows[] = {
    {"Klärwerk Süd", "05550 100001", "127.0.1.1", 23, Route::tcp, Behaviour::connects, "service", "bhkw",
     5000, 28},
    {"Hallenbad Grünau", "05550 100002", "127.0.1.2", 1100, Route::tcp, Behaviour::connects, "", "", 6000,
     12},
    {"Krankenhaus Sankt Jörg", "05550 100003", "127.0.1.3", 1100, Route::tcp, Behaviour::connects, "", "",
     7000, 24},
    {"Gärtnerei Blüthner", "05550 100004", "127.0.1.4", 2001, Route::tcp, Behaviour::connects, "", "", 6000,
     10},
    {"Nahwärme Mühlbach", "05550 100005", "127.0.1.5", 10100, Route::tcp, Behaviour::connects, "", "", 8000,
     16},
    {"Brauerei Rößler", "05550 100008", "127.0.1.8", 1100, Route::gateway, Behaviour::connects, "", "", 12000,
     20},
    {"Wohnpark Am Dörfle", "05550 100009", "127.0.1.9", 1100, Route::gateway, Behaviour::connects, "", "",
     6000, 18},
    {"Schule Löwenstraße", "05550 100006", "127.0.1.6", 1100, Route::modem, Behaviour::connects, "", "", 1000,
     8},
    {"Rathaus Oberülz", "0,05550 100007", "127.0.1.7", 1100, Route::modem, Behaviour::connects, "", "", 9000,
     14},
    {"Molkerei Käsmann", "05550 100010", "127.0.1.10", 1100, Route::gateway, Behaviour::busy, "", "", 4000,
     12},
    {"Sägewerk Fürst", "05550 100011", "127.0.1.11", 1100, Route::tcp, Behaviour::refuses, "", "", 5000, 9},
    {"Schloß Drömstein", "05550 100012", "127.0.1.12", 1100, Route::tcp, Behaviour::never_answers, "", "",
     5000, 22},
};

} // namespace

std::string bare_number(std::string_view number) {
    std::string bare;
    for (const char c : number) {
        if ((c >= '0' && c <= '9') || c == '*' || c == '#') bare += c;
    }
    return bare;
}

std::size_t Directory::add(Site site) {
    sites_.push_back(std::move(site));
    return sites_.size() - 1;
}

std::size_t Directory::exactly(std::string_view bare) const {
    if (bare.empty()) return not_found;
    for (std::size_t i = 0; i < sites_.size(); ++i) {
        if (bare_number(sites_[i].number) == bare) return i;
    }
    return not_found;
}

std::size_t Directory::by_number(std::string_view dialled) const {
    std::string bare = bare_number(dialled);
    if (dialled.starts_with("+49")) bare.replace(0, 2, "0");
    if (const std::size_t found = exactly(bare); found != not_found) return found;
    for (const std::string_view prefix : prefixes) {
        if (!bare.starts_with(prefix)) continue;
        if (const std::size_t found = exactly(std::string_view(bare).substr(prefix.size()));
            found != not_found) {
            return found;
        }
    }
    return not_found;
}

Directory demo_directory(std::uint64_t seed) {
    Directory directory;
    for (const Row& row : demo_rows) {
        Site site;
        site.name = row.name;
        site.number = row.number;
        site.address = row.address;
        site.port = row.port;
        site.route = row.route;
        site.behaviour = row.behaviour;
        site.user = row.user;
        site.password = row.password;
        site.seed = 100 + seed + directory.sites().size();
        site.pick_up_ms = row.pick_up_ms;
        site.tracks = row.tracks;
        directory.add(std::move(site));
    }
    return directory;
}

} // namespace velorn::plant
