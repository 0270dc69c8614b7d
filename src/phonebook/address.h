// Telling an address from a phone number.
#pragma once

#include <algorithm>
#include <string_view>

namespace velorn {

// A host name or an address: holds a character other than a blank, a comma (the modem's pause) or a digit.
// Nothing at all is a phone number.
constexpr bool is_address(std::string_view nummer) {
    return std::ranges::any_of(nummer, [](char c) { return c != ' ' && c != ',' && (c < '0' || c > '9'); });
}

} // namespace velorn
