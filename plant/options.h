// The command line of velorn-plant.
#pragma once

#include "plant/download_faults.h"
#include "plant/faults.h"
#include "plant/places.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace velorn::plant {

struct Options {
    std::vector<std::string> pseudo_terminals; // one controller each: the name of its link, or empty
    std::vector<std::string> modems;           // one modem each: the name of its link, or empty
    std::vector<TcpPlace> tcp;
    std::vector<GatewayPlace> gateways;
    bool demo = false; // all sites of the demo and its gateway
    Faults faults;
    DownloadFaults download_faults; // of every controller; the seed is that of `faults`
    int speed = 1;                  // of the clock
    // Whether anything is to be served, beyond writing a phone book.
    bool serves() const {
        return demo || !pseudo_terminals.empty() || !modems.empty() || !tcp.empty() || !gateways.empty();
    }

    std::optional<std::uint64_t> source;   // bytes that pseudo terminals send instead of playing a controller
    std::optional<std::string> phone_book; // the file to be written
    std::string protocols;                 // the folder for the sites' protocol files, empty: none
    std::string archives;                  // the folder for the sites' archives, empty: none
    std::string visualisation;             // stored path, cp1252
    bool log = false;
    bool help = false;
};

// All options, or a German sentence (UTF-8) that says what is wrong.
std::variant<Options, std::string> options_from(std::span<const std::string_view> arguments);

// What --help prints: German, UTF-8.
std::string help_text();

} // namespace velorn::plant
