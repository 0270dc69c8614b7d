// Text inside the house: a std::string of cp1252 bytes. A received byte, a file byte and a character are the
// same number. Unicode exists only at the rim (the windows, velorn.ini), and is converted here and nowhere
// else.
//
// The five bytes that cp1252 leaves open (81, 8D, 8F, 90, 9D hex) map to the control characters of the same
// number, so that all 256 bytes survive both ways.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velorn {

namespace detail {

// The Unicode characters of the bytes 80 to 9F hex; all others are their own number.
inline constexpr std::array<char16_t, 32> cp1252_high = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

} // namespace detail

// The Unicode character of a cp1252 byte; never fails.
constexpr char16_t unicode_of(unsigned char byte) {
    return byte >= 0x80 && byte < 0xA0 ? detail::cp1252_high[byte - 0x80U] : static_cast<char16_t>(byte);
}

// The cp1252 byte of a Unicode character, nothing if cp1252 lacks it.
constexpr std::optional<unsigned char> cp1252_of(char32_t character) {
    if (character < 0x80 || (character >= 0xA0 && character < 0x100))
        return static_cast<unsigned char>(character);
    for (unsigned i = 0; i < detail::cp1252_high.size(); ++i) {
        if (detail::cp1252_high[i] == character) return static_cast<unsigned char>(0x80U + i);
    }
    return std::nullopt;
}

namespace detail {

// A literal of our UTF-8 sources, turned into cp1252 while compiling; what cp1252 lacks does not compile.
template <std::size_t N>
struct WindowsLiteral {
    char bytes[N] = {};
    std::size_t size = 0;

    consteval WindowsLiteral(const char (&utf8)[N]) {
        for (std::size_t i = 0; i + 1 < N;) {
            const auto lead = static_cast<unsigned char>(utf8[i]);
            const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : 3;
            char32_t character = lead < 0x80 ? lead : lead < 0xE0 ? lead & 0x1FU : lead & 0x0FU;
            for (std::size_t k = 1; k < length; ++k) {
                character = (character << 6U) | (static_cast<unsigned char>(utf8[i + k]) & 0x3FU);
            }
            bytes[size++] = static_cast<char>(cp1252_of(character).value());
            i += length;
        }
    }
};

} // namespace detail

// "Anschluß"_w: the text in cp1252.
template <detail::WindowsLiteral Literal>
constexpr std::string_view operator""_w() {
    return {Literal.bytes, Literal.size};
}

// cp1252 to UTF-8; never fails.
std::string utf8_from_cp1252(std::string_view text);

// UTF-8 to cp1252; nothing if the text holds a character that cp1252 lacks or is not valid UTF-8.
std::optional<std::string> cp1252_from_utf8(std::string_view utf8);

// Replaces, in place, the German letters of code page 437 (129 ü, 132 ä, 142 Ä, 148 ö, 153 Ö, 154 Ü) by those
// of cp1252. There is no row for ß: 225 stays as it is.
void umlauts_from_cp437(std::string& text);

// Upper and lower case by the letters of cp1252, umlauts included; ÿ and Ÿ are a pair, ß has no partner.
unsigned char to_lower(unsigned char character);
unsigned char to_upper(unsigned char character);
std::string to_lower(std::string_view text);
std::string to_upper(std::string_view text);
bool equal_ignoring_case(std::string_view a, std::string_view b);

// Whether `text` holds `what`, ignoring case. An empty `what` is held by every text.
bool contains_ignoring_case(std::string_view text, std::string_view what);

// The one-based position of the first occurrence of `what` in `text` from position `from` on, 0 if there is
// none. An empty `what` is found at `from`.
std::size_t instr(std::string_view text, std::string_view what, std::size_t from = 1);

} // namespace velorn
