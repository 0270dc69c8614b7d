#include "links/mscomm.h"

#include "runtime/text.h"

#include <algorithm>
#include <charconv>
#include <vector>

namespace velorn {

namespace {

std::vector<std::string_view> split(std::string_view text) {
    std::vector<std::string_view> parts;
    for (std::size_t comma = text.find(','); comma != std::string_view::npos; comma = text.find(',')) {
        parts.push_back(text.substr(0, comma));
        text.remove_prefix(comma + 1);
    }
    parts.push_back(text);
    return parts;
}

std::optional<int> whole_number(std::string_view text) {
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
    return number;
}

constexpr std::pair<std::string_view, SerialSettings::Stop> stops[] = {
    {"1", SerialSettings::Stop::one},
    {"1.5", SerialSettings::Stop::one_and_a_half},
    {"2", SerialSettings::Stop::two},
};

} // namespace

std::optional<SerialSettings> parse_serial_settings(std::string_view text) {
    const std::vector<std::string_view> parts = split(text);
    if (parts.size() != 4 || parts[1].size() != 1) return std::nullopt;

    SerialSettings settings;
    const std::optional<int> baud = whole_number(parts[0]);
    if (!baud || *baud < 1) return std::nullopt;
    settings.baud = *baud;

    settings.parity = static_cast<char>(to_lower(static_cast<unsigned char>(parts[1][0])));
    if (std::string_view("emnos").find(settings.parity) == std::string_view::npos) return std::nullopt;

    const std::optional<int> bits = whole_number(parts[2]);
    if (!bits || *bits < 4 || *bits > 8) return std::nullopt;
    settings.data_bits = *bits;

    for (const auto& [spelled, stop] : stops) {
        if (parts[3] != spelled) continue;
        settings.stop = stop;
        return settings;
    }
    return std::nullopt;
}

std::string serial_settings_text(const SerialSettings& settings) {
    std::string text = std::to_string(settings.baud) + ',' + settings.parity + ',' +
                       std::to_string(settings.data_bits) + ',';
    for (const auto& [spelled, stop] : stops) {
        if (settings.stop == stop) text += spelled;
    }
    return text;
}

MSComm::MSComm(EventLoop& loop, SerialPort& port) : loop_(loop), port_(port) {
    port_.arrived = [this] { data_arrived(); };
    port_.sent = [this] { queue_shrank(); };
    port_.lost = [this] {
        last_out_count_ = 0;
        if (lost) lost();
    };
}

Outcome MSComm::set_CommPort(int number) {
    if (number < 1 || number > 255) return failure(RunTimeError::invalid_property);
    if (PortOpen() && number != comm_port_) return failure(RunTimeError::port_already_open);
    comm_port_ = number;
    return {};
}

Outcome MSComm::set_Settings(std::string_view text) {
    const std::optional<SerialSettings> wanted = parse_serial_settings(text);
    if (!wanted || !port_.can(*wanted)) return failure(RunTimeError::invalid_property, text);
    if (PortOpen()) {
        if (const Outcome applied = port_.apply(*wanted); !applied) return applied;
    }
    settings_ = *wanted;
    return {};
}

Outcome MSComm::set_Handshaking(int number) {
    if (number < 0 || number > 3) return failure(RunTimeError::invalid_property);
    const auto wanted = static_cast<Handshake>(number);
    if (PortOpen()) {
        if (const Outcome applied = port_.apply(wanted); !applied) return applied;
    }
    handshake_ = wanted;
    return {};
}

Outcome MSComm::set_PortOpen(bool open) {
    if (!open) {
        port_.close();
        last_out_count_ = 0;
        return {};
    }
    if (PortOpen()) return failure(RunTimeError::port_already_open);
    if (const Outcome opened = port_.open(comm_port_, settings_, handshake_); !opened) return opened;
    port_.set_dtr(dtr_enable_);
    if (!parity_replace_.empty()) (void)port_.replace_parity_errors(parity_replace_.front());
    return {};
}

std::string MSComm::Input() {
    const int most = input_len_ == 0 ? InBufferSize : std::min(input_len_, InBufferSize);
    return port_.take(static_cast<std::size_t>(most));
}

Outcome MSComm::set_InputLen(int bytes) {
    if (bytes < 0 || bytes > 32767) return failure(RunTimeError::invalid_property);
    input_len_ = bytes;
    return {};
}

int MSComm::InBufferCount() const {
    return static_cast<int>(std::min<std::size_t>(port_.available(), InBufferSize));
}

void MSComm::Output(std::string_view bytes) {
    port_.write(bytes);
    last_out_count_ = OutBufferCount();
}

int MSComm::OutBufferCount() const {
    return static_cast<int>(std::min<std::size_t>(port_.unsent(), 0x7FFFFFFF));
}

void MSComm::drop_output() {
    port_.drop_unsent();
    last_out_count_ = 0;
}

Outcome MSComm::set_RThreshold(int bytes) {
    if (bytes < 0 || bytes > 32767) return failure(RunTimeError::invalid_property);
    r_threshold_ = bytes;
    // What came in while nobody was to be told counts as arriving now.
    loop_.post([this] { data_arrived(); });
    return {};
}

Outcome MSComm::set_SThreshold(int bytes) {
    if (bytes < 0 || bytes > 32767) return failure(RunTimeError::invalid_property);
    s_threshold_ = bytes;
    return {};
}

Outcome MSComm::set_ParityReplace(std::string_view text) {
    const std::optional<char> with = text.empty() ? std::nullopt : std::optional<char>(text.front());
    if (PortOpen()) {
        if (const Outcome applied = port_.replace_parity_errors(with); !applied) return applied;
    }
    parity_replace_ = text.substr(0, 1);
    return {};
}

void MSComm::set_DTREnable(bool on) {
    dtr_enable_ = on;
    if (PortOpen()) port_.set_dtr(on);
}

void MSComm::data_arrived() {
    const int count = InBufferCount();
    if (r_threshold_ == 0 || count == 0 || count < r_threshold_) return;
    const std::size_t waiting = port_.available();
    raise(velorn::CommEvent::receive);
    // The port doesn't announce again what it has announced: the rest of a large arrival gets its own event,
    // after whatever else is due.
    if (const std::size_t left = port_.available(); left > 0 && left < waiting) {
        loop_.post([this] { data_arrived(); });
    }
}

void MSComm::queue_shrank() {
    const int before = last_out_count_;
    last_out_count_ = OutBufferCount();
    if (s_threshold_ > 0 && before >= s_threshold_ && last_out_count_ < s_threshold_) {
        raise(velorn::CommEvent::send);
    }
}

void MSComm::raise(velorn::CommEvent event) {
    comm_event_ = event;
    if (OnComm) OnComm();
}

} // namespace velorn
