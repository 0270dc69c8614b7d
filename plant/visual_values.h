// What the controller tells a visualisation program on the PC: the plant's present values, and the setpoints
// that such a program may change.
#pragma once

#include "plant/pages.h"

#include <span>
#include <string>
#include <string_view>

namespace velorn::plant {

// Lines "name=value unit" that end in CR LF, decimal comma, code page 437; behind them the mark that ends the
// block, without a line's end, since the PC writes the block's number right behind it.
inline constexpr std::string_view end_of_values = "VISEND";
std::string values_block(std::string_view site, Machine& machine, std::span<const Setpoint> setpoints);

// An order for a setpoint, "SOLL name=value", the name as the blocks bear it (code page 437 or 1252), the
// value a whole number. False, and nothing changed: no such setpoint, or a value outside its limits.
inline constexpr std::string_view order_word = "SOLL ";
inline constexpr std::size_t longest_order = 60;
bool follow_order(std::string_view order, std::span<Setpoint> setpoints);

} // namespace velorn::plant
