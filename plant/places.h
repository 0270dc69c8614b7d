// The places that the command line orders on a network, read from one word each: "127.0.1.1:23,login=a:b".
#pragma once

#include "plant/gateway.h"
#include "plant/login.h"
#include "plant/peers.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velorn::plant {

struct TcpPlace {
    std::string address;
    std::uint16_t port = 23;
    std::optional<Credentials> login;
    std::optional<Peer> peer; // instead of a controller
};

struct GatewayPlace {
    std::string address;
    std::array<std::uint16_t, Gateway::modems> ports{23, 24};
    std::array<Gateway::Behaviour, Gateway::modems> behaviours{};
};

// Nothing if the word can't be read. An address is IPv4 in dotted decimals, a port 1 to 65535.
std::optional<TcpPlace> tcp_place_from(std::string_view word);
std::optional<GatewayPlace> gateway_place_from(std::string_view word);

} // namespace velorn::plant
