#include "runtime/text.h"

#include <algorithm>

namespace velorn {

namespace {

// The letters above 7F hex that have a partner in the other case, beside those 20 hex apart.
struct Pair {
    unsigned char lower;
    unsigned char upper;
};
constexpr Pair odd_pairs[] = {{0x9A, 0x8A}, {0x9C, 0x8C}, {0x9E, 0x8E}, {0xFF, 0x9F}};

constexpr bool is_high_upper(unsigned char c) { return c >= 0xC0 && c <= 0xDE && c != 0xD7; }

struct Umlaut {
    unsigned char received;
    unsigned char becomes;
};
constexpr Umlaut umlauts[] = {{129, 252}, {132, 228}, {142, 196}, {148, 246}, {153, 214}, {154, 220}};

constexpr std::array<char, 256> umlaut_table = [] {
    std::array<char, 256> table{};
    for (unsigned i = 0; i < 256; ++i) table[i] = static_cast<char>(i);
    for (const Umlaut& row : umlauts) table[row.received] = static_cast<char>(row.becomes);
    return table;
}();

} // namespace

std::string utf8_from_cp1252(std::string_view text) {
    std::string utf8;
    utf8.reserve(text.size());
    for (const char c : text) {
        const unsigned code = unicode_of(static_cast<unsigned char>(c));
        if (code < 0x80) {
            utf8 += c;
        } else if (code < 0x800) {
            utf8 += static_cast<char>(0xC0U | (code >> 6U));
            utf8 += static_cast<char>(0x80U | (code & 0x3FU));
        } else {
            utf8 += static_cast<char>(0xE0U | (code >> 12U));
            utf8 += static_cast<char>(0x80U | ((code >> 6U) & 0x3FU));
            utf8 += static_cast<char>(0x80U | (code & 0x3FU));
        }
    }
    return utf8;
}

std::optional<std::string> cp1252_from_utf8(std::string_view utf8) {
    std::string text;
    text.reserve(utf8.size());
    for (std::size_t i = 0; i < utf8.size();) {
        const auto lead = static_cast<unsigned char>(utf8[i]);
        // Nothing above the basic plane is in cp1252, so three bytes are the longest that matter.
        const std::size_t length = lead < 0x80                   ? 1
                                   : lead >= 0xC2 && lead < 0xE0 ? 2
                                   : lead >= 0xE0 && lead < 0xF0 ? 3
                                                                 : 0;
        if (length == 0 || i + length > utf8.size()) return std::nullopt;
        char32_t code = length == 1 ? lead : length == 2 ? lead & 0x1FU : lead & 0x0FU;
        for (std::size_t k = 1; k < length; ++k) {
            const auto next = static_cast<unsigned char>(utf8[i + k]);
            if ((next & 0xC0U) != 0x80U) return std::nullopt;
            code = (code << 6U) | (next & 0x3FU);
        }
        if (length == 3 && code < 0x800) return std::nullopt;
        const std::optional<unsigned char> byte = cp1252_of(code);
        if (!byte) return std::nullopt;
        text += static_cast<char>(*byte);
        i += length;
    }
    return text;
}

void umlauts_from_cp437(std::string& text) {
    // Most chunks are plain: one look over them is cheaper than a rewrite.
    unsigned char any = 0;
    for (const char c : text) any |= static_cast<unsigned char>(c);
    if (any < 0x80) return;
    for (char& c : text) c = umlaut_table[static_cast<unsigned char>(c)];
}

unsigned char to_lower(unsigned char c) {
    if ((c >= 'A' && c <= 'Z') || is_high_upper(c)) return static_cast<unsigned char>(c + 0x20);
    for (const Pair& pair : odd_pairs) {
        if (pair.upper == c) return pair.lower;
    }
    return c;
}

unsigned char to_upper(unsigned char c) {
    if ((c >= 'a' && c <= 'z') || (c >= 0xE0 && is_high_upper(static_cast<unsigned char>(c - 0x20)))) {
        return static_cast<unsigned char>(c - 0x20);
    }
    for (const Pair& pair : odd_pairs) {
        if (pair.lower == c) return pair.upper;
    }
    return c;
}

std::string to_lower(std::string_view text) {
    std::string result{text};
    for (char& c : result) c = static_cast<char>(to_lower(static_cast<unsigned char>(c)));
    return result;
}

std::string to_upper(std::string_view text) {
    std::string result{text};
    for (char& c : result) c = static_cast<char>(to_upper(static_cast<unsigned char>(c)));
    return result;
}

bool equal_ignoring_case(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, [](char x, char y) {
        return to_lower(static_cast<unsigned char>(x)) == to_lower(static_cast<unsigned char>(y));
    });
}

bool contains_ignoring_case(std::string_view text, std::string_view what) {
    static const std::array<unsigned char, 256> lower = [] {
        std::array<unsigned char, 256> table{};
        for (unsigned c = 0; c < table.size(); ++c) table[c] = to_lower(static_cast<unsigned char>(c));
        return table;
    }();
    const auto same = [](char x, char y) {
        return lower[static_cast<unsigned char>(x)] == lower[static_cast<unsigned char>(y)];
    };
    return std::search(text.begin(), text.end(), what.begin(), what.end(), same) != text.end() ||
           what.empty();
}

std::size_t instr(std::string_view text, std::string_view what, std::size_t from) {
    if (from < 1 || from > text.size() + 1) return 0;
    const std::size_t found = text.find(what, from - 1);
    return found == std::string_view::npos ? 0 : found + 1;
}

} // namespace velorn
