#include "plant/places.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <limits>
#include <vector>

namespace velorn::plant {

namespace {

constexpr std::uint64_t most_bytes = 1'000'000'000'000;
constexpr std::uint64_t longest_ms = 86'400'000;

std::optional<std::uint64_t> whole(std::string_view text, std::uint64_t highest) {
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size() || value > highest) return std::nullopt;
    return value;
}

// "1000", "64K", "100M", "1G", in thousands.
std::optional<std::uint64_t> amount(std::string_view text, std::uint64_t highest) {
    constexpr std::string_view units = "KMG";
    std::uint64_t factor = 1;
    if (!text.empty()) {
        const std::size_t unit = units.find(text.back());
        if (unit != std::string_view::npos) {
            for (std::size_t i = 0; i <= unit; ++i) factor *= 1000;
            text.remove_suffix(1);
        }
    }
    const auto value = whole(text, highest / factor);
    if (!value) return std::nullopt;
    return *value * factor;
}

bool is_address(std::string_view text) {
    int parts = 0;
    for (;;) {
        const std::size_t point = text.find('.');
        const std::string_view part = text.substr(0, point);
        if (part.size() > 3 || !whole(part, 255)) return false;
        ++parts;
        if (point == std::string_view::npos) return parts == 4;
        text.remove_prefix(point + 1);
    }
}

std::optional<std::uint16_t> port_from(std::string_view text) {
    const auto value = whole(text, 65535);
    if (!value || *value == 0) return std::nullopt;
    return static_cast<std::uint16_t>(*value);
}

std::vector<std::string_view> split(std::string_view text, char at) {
    std::vector<std::string_view> parts;
    for (;;) {
        const std::size_t cut = text.find(at);
        parts.push_back(text.substr(0, cut));
        if (cut == std::string_view::npos) return parts;
        text.remove_prefix(cut + 1);
    }
}

struct Setting {
    std::string_view name;
    std::string_view value;
    bool has_value = false;
};

Setting setting_from(std::string_view text) {
    const std::size_t cut = text.find('=');
    if (cut == std::string_view::npos) return {text, "", false};
    return {text.substr(0, cut), text.substr(cut + 1), true};
}

struct PeerRow {
    std::string_view name;
    Peer::Kind kind;
    enum { none, optional, wanted } amount;
    std::uint64_t highest;
};

constexpr PeerRow peer_rows[] = {
    {"reset", Peer::Kind::resets, PeerRow::optional, most_bytes},
    {"half-close", Peer::Kind::half_closes, PeerRow::none, 0},
    {"flood", Peer::Kind::floods, PeerRow::wanted, most_bytes},
    {"dribble", Peer::Kind::dribbles, PeerRow::wanted, longest_ms},
    {"silent", Peer::Kind::silent, PeerRow::none, 0},
    {"refuse", Peer::Kind::refuses, PeerRow::none, 0},
    {"no-answer", Peer::Kind::never_answers, PeerRow::none, 0},
};

std::optional<Peer> peer_from(const Setting& setting) {
    const auto* const row = std::find_if(std::begin(peer_rows), std::end(peer_rows),
                                         [&](const PeerRow& r) { return r.name == setting.name; });
    if (row == std::end(peer_rows)) return std::nullopt;
    if (!setting.has_value) {
        if (row->amount == PeerRow::wanted) return std::nullopt;
        return Peer{row->kind, 0};
    }
    const auto value = amount(setting.value, row->highest);
    if (row->amount == PeerRow::none || !value) return std::nullopt;
    return Peer{row->kind, *value};
}

struct BehaviourRow {
    std::string_view name;
    Gateway::Behaviour behaviour;
};

constexpr BehaviourRow behaviour_rows[] = {
    {"connect", Gateway::Behaviour::connects},
    {"refuse", Gateway::Behaviour::refuses},
    {"busy", Gateway::Behaviour::busy},
    {"silent", Gateway::Behaviour::silent},
};

} // namespace

std::optional<TcpPlace> tcp_place_from(std::string_view word) {
    const std::vector<std::string_view> parts = split(word, ',');
    const std::size_t colon = parts[0].find(':');
    if (colon == std::string_view::npos || !is_address(parts[0].substr(0, colon))) return std::nullopt;
    const auto port = port_from(parts[0].substr(colon + 1));
    if (!port) return std::nullopt;
    TcpPlace place;
    place.address = parts[0].substr(0, colon);
    place.port = *port;
    for (std::size_t i = 1; i < parts.size(); ++i) {
        const Setting setting = setting_from(parts[i]);
        if (place.login || place.peer) return std::nullopt;
        if (setting.name == "login") {
            const std::size_t cut = setting.value.find(':');
            if (cut == std::string_view::npos || cut == 0) return std::nullopt;
            place.login = {std::string(setting.value.substr(0, cut)),
                           std::string(setting.value.substr(cut + 1))};
        } else {
            place.peer = peer_from(setting);
            if (!place.peer) return std::nullopt;
        }
    }
    return place;
}

std::optional<GatewayPlace> gateway_place_from(std::string_view word) {
    const std::vector<std::string_view> parts = split(word, ',');
    const std::size_t colon = parts[0].find(':');
    GatewayPlace place;
    place.address = parts[0].substr(0, colon);
    if (!is_address(place.address)) return std::nullopt;
    std::size_t next = 1;
    if (colon != std::string_view::npos) {
        const auto first = port_from(parts[0].substr(colon + 1));
        const auto second = parts.size() > 1 ? port_from(parts[1]) : std::nullopt;
        if (!first || !second || *first == *second) return std::nullopt;
        place.ports = {*first, *second};
        next = 2;
    }
    for (; next < parts.size(); ++next) {
        const Setting setting = setting_from(parts[next]);
        const auto* const row = std::find_if(std::begin(behaviour_rows), std::end(behaviour_rows),
                                             [&](const BehaviourRow& r) { return r.name == setting.value; });
        const bool first = setting.name == "modem1";
        if ((!first && setting.name != "modem2") || row == std::end(behaviour_rows)) return std::nullopt;
        place.behaviours[first ? 0 : 1] = row->behaviour;
    }
    return place;
}

} // namespace velorn::plant
