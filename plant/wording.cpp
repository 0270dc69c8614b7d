#include "plant/wording.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <utility>

namespace velorn::plant {

namespace {

constexpr std::array<std::pair<std::string_view, unsigned char>, 8> letters = {{
    {"ü", 129},
    {"ä", 132},
    {"Ä", 142},
    {"ö", 148},
    {"Ö", 153},
    {"Ü", 154},
    {"ß", 225},
    {"°", 248},
}};

bool continues_a_letter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; }

} // namespace

std::string cp437_from_utf8(std::string_view utf8) {
    std::string out;
    out.reserve(utf8.size());
    while (!utf8.empty()) {
        if (static_cast<unsigned char>(utf8.front()) < 0x80) {
            out += utf8.front();
            utf8.remove_prefix(1);
            continue;
        }
        std::size_t length = 1;
        while (length < utf8.size() && continues_a_letter(utf8[length])) ++length;
        const auto row = std::find_if(letters.begin(), letters.end(), [&](const auto& letter) {
            return letter.first == utf8.substr(0, length);
        });
        out += row == letters.end() ? '?' : static_cast<char>(row->second);
        utf8.remove_prefix(length);
    }
    return out;
}

std::string filled(const char* picture, ...) {
    va_list values;
    va_start(values, picture);
    va_list again;
    va_copy(again, values);
    const int length = std::vsnprintf(nullptr, 0, picture, values);
    va_end(values);
    std::string out(length > 0 ? static_cast<std::size_t>(length) : 0U, '\0');
    if (length > 0) std::vsnprintf(out.data(), out.size() + 1, picture, again);
    va_end(again);
    return out;
}

std::string decimal(double value, int digits, int width) {
    std::string out = filled("%*.*f", width, digits, value);
    std::replace(out.begin(), out.end(), '.', ',');
    return out;
}

std::string padded(std::string_view utf8, std::size_t width) {
    const auto inner = static_cast<std::size_t>(std::count_if(utf8.begin(), utf8.end(), continues_a_letter));
    const std::size_t length = utf8.size() - inner;
    return std::string(utf8) + std::string(length < width ? width - length : 0, ' ');
}

std::string fitted(std::string_view utf8, std::size_t width) {
    std::size_t end = 0;
    for (std::size_t count = 0; end < utf8.size(); ++end) {
        const bool begins_letter = (static_cast<unsigned char>(utf8[end]) & 0xC0U) != 0x80U;
        if (begins_letter && count++ == width) break;
    }
    return padded(utf8.substr(0, end), width);
}

std::string upper_case(std::string_view text) {
    std::string out(text);
    for (char& c : out) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    return out;
}

std::string repeatable(std::string_view typed) {
    std::string out(typed);
    for (char& c : out) {
        if (static_cast<unsigned char>(c) > 126) c = '?';
    }
    return out;
}

} // namespace velorn::plant
