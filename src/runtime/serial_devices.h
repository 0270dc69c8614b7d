// The devices behind the numbers of serial ports, where the system has no such names.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace velorn {

// The USB adapters that are there, in natural order of their names: ttyACM0, ttyUSB2, ttyUSB10. Empty on
// Windows.
std::vector<std::string> usb_adapters(const std::filesystem::path& devices = "/dev");

// Elsewhere than on Windows: COM1 to COM4 are the on-board devices, COM5 and up the USB adapters in order;
// empty for a number beyond them. On Windows "COM1" and so on. com_port: 1 to 255.
std::string default_device(int com_port, const std::vector<std::string>& adapters);

} // namespace velorn
