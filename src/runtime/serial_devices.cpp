#include "runtime/serial_devices.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <system_error>

namespace velorn {

std::vector<std::string> usb_adapters([[maybe_unused]] const std::filesystem::path& devices) {
    std::vector<std::string> found;
#ifndef _WIN32
    constexpr std::string_view families[] = {"ttyACM", "ttyUSB"};
    std::error_code error;
    for (std::filesystem::directory_iterator entry(devices, error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        for (const std::string_view family : families) {
            if (name.starts_with(family)) found.push_back(entry->path().string());
        }
    }
    // The shorter number is the smaller one; the two families differ before their numbers begin.
    const std::size_t family_end = (devices / families[0]).string().size();
    std::ranges::sort(found, [family_end](const std::string& a, const std::string& b) {
        const int order = a.compare(0, family_end, b, 0, family_end);
        if (order != 0) return order < 0;
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
    if (com_port <= on_board) return {};
    const auto index = static_cast<std::size_t>(com_port - on_board - 1);
    return index < adapters.size() ? adapters[index] : std::string();
#endif
}

} // namespace velorn
