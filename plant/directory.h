// Which sites exist, and how each is reached. It is data: the plant's program, its exchange and tests read
// it.
#pragma once

#include "plant/download_faults.h"
#include "plant/faults.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velorn::plant {

// The way that is customary for a site. A site with a number answers every modem, whatever its route.
enum class Route { modem, tcp, gateway };

enum class Behaviour {
    connects,
    busy,          // a telephone that is engaged; over TCP the connection is closed at once
    refuses,       // a telephone line that drops the call; over TCP nothing listens
    never_answers, // it rings and rings; over TCP the attempt gets no answer
};

struct Site {
    std::string name;    // UTF-8
    std::string number;  // digits, blanks and commas; empty: no telephone
    std::string address; // IPv4; empty: no network
    std::uint16_t port = 23;
    Route route = Route::tcp;
    Behaviour behaviour = Behaviour::connects;
    std::string user; // empty: no login over TCP
    std::string password;
    std::uint64_t seed = 1;
    int tracks = 12;                // of quarter-hour values
    std::int64_t pick_up_ms = 6000; // from the last digit to the carrier
    Faults faults;                  // of the site's own line, each call anew; they may end the call
    DownloadFaults download_faults; // of the controller itself
};

// The digits, '*' and '#' of a number; what people write between them is left out.
std::string bare_number(std::string_view number);

class Directory {
  public:
    static constexpr std::size_t not_found = static_cast<std::size_t>(-1);

    Directory() = default;
    explicit Directory(std::vector<Site> sites) : sites_(std::move(sites)) {}

    void set_behaviour(std::size_t place, Behaviour behaviour) { sites_[place].behaviour = behaviour; }
    void set_login(std::size_t place, std::string user, std::string password) {
        sites_[place].user = std::move(user);
        sites_[place].password = std::move(password);
    }

    std::span<const Site> sites() const& { return sites_; }
    std::span<const Site> sites() const&& = delete; // it would outlive them
    // Returns the site's place. An earlier site with the same number is found first.
    std::size_t add(Site site);
    // The place of the site that the dialled number reaches, not_found if there is none. Before the number
    // may stand the digit for an outside line or the carrier's prefix, and +49 for its first 0.
    std::size_t by_number(std::string_view dialled) const;

  private:
    std::size_t exactly(std::string_view bare) const;

    std::vector<Site> sites_;
};

// The plant that is shown: twelve sites over three routes. What they have recorded follows from the seed.
Directory demo_directory(std::uint64_t seed = 1);

// Where its gateway stands.
constexpr std::string_view demo_gateway_address = "127.0.1.100";

} // namespace velorn::plant
