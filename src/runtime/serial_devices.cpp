#include "runtime/serial_devices.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <system_error>

namespace velorn {

std::vector<std::string> usb_adapters() {
    std::vector<std::string> found;
#ifndef _WIN32
    std::error_code error;
    for (std::filesystem::directory_iterator entry("/dev", error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        if (name.starts_with("ttyUSB") || name.starts_with("ttyACM")) found.push_back(entry->path().string());
    }
    // A shorter number is a smaller one; the two families differ before their numbers begin.
    std::ranges::sort(found, [](const std::string& a, const std::string& b) {
        const std::size_t prefix = std::string_view("/dev/ttyUSB").size();
        const int families = a.compare(0, prefix, b, 0, prefix);
        if (families != 0) return families < 0;
        return a.size() != b.size() ? a.size() < b.size() : a < b;
    });
#endif
    return found;
}

std::string default_device(int com_port, const std::vector<std::string>& adapters) {
#ifdef _WIN32
    (void)adapters;
    return "COM" + std::to_string(com_port);
#else
    constexpr int on_board = 4;
    if (com_port >= 1 && com_port <= on_board) return "/dev/ttyS" + std::to_string(com_port - 1);
    const auto index = static_cast<std::size_t>(com_port - on_board - 1);
    return com_port > on_board && index < adapters.size() ? adapters[index] : std::string();
#endif
}

} // namespace velorn
