// The controllers' wording: answers are put together in UTF-8, the way the sources are written, and turned
// into code page 437 once, where they leave the controller.
#pragma once

#include <string>
#include <string_view>

namespace velorn::plant {

// UTF-8 to code page 437: the German letters and the degree sign; what the controllers' display lacks becomes
// '?'.
std::string cp437_from_utf8(std::string_view utf8);

// printf into a string.
[[gnu::format(printf, 1, 2)]] std::string filled(const char* picture, ...);

// A number with decimal comma, right-aligned to `width` characters.
std::string decimal(double value, int digits, int width = 0);

// Left-aligned to `width` characters (not bytes).
std::string padded(std::string_view utf8, std::size_t width);

// The same, and cut where it is longer.
std::string fitted(std::string_view utf8, std::size_t width);

// ASCII upper case; all other bytes stay.
std::string upper_case(std::string_view text);

// A word of the person at the keyboard, fit to be repeated inside an answer: bytes beyond ASCII become '?'.
std::string repeatable(std::string_view typed);

} // namespace velorn::plant
