#include "runtime/number_picture.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <vector>

namespace velorn {

namespace {

// ---- digits of a number ----

struct Digits {
    std::string whole; // without leading zeros; empty for none
    std::string places;
};

// The exact value as far as rounding to `places` asks for it. A binary number that lies beside the middle
// between two decimals is at least 10 to the power of -(16 + 1.7 places) away from it, so this many more
// places tell a tie from its neighbours.
std::string decimal_of(double magnitude, std::size_t places) {
    const std::size_t precision = 2 * places + 25;
    std::vector<char> buffer(400 + precision);
    const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), magnitude,
                                            std::chars_format::fixed, static_cast<int>(precision));
    return {buffer.data(), end};
}

// The shortest decimal that reads back, with enough zeros behind it to round at `places`.
std::string decimal_of(float magnitude, std::size_t places) {
    std::array<char, 32> buffer{};
    const auto [end, error] =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), magnitude, std::chars_format::scientific);
    const std::string_view spelled(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
    const std::size_t e = spelled.find('e');
    int exponent = 0;
    std::from_chars(spelled.data() + e + (spelled[e + 1] == '+' ? 2 : 1), end, exponent);
    std::string digits(1, spelled[0]);
    if (e > 2) digits += spelled.substr(2, e - 2);

    if (exponent < 0) digits.insert(0, static_cast<std::size_t>(-exponent), '0');
    const std::size_t whole = exponent < 0 ? 1 : static_cast<std::size_t>(exponent) + 1;
    digits.resize(std::max(digits.size(), whole + places + 1), '0');
    return digits.insert(whole, 1, '.');
}

// Rounds half away from zero. The decimal has at least one place more than asked for.
Digits rounded(const std::string& exact, std::size_t places) {
    const std::size_t point = exact.find('.');
    std::string digits = exact.substr(0, point) + exact.substr(point + 1, places);
    if (exact[point + 1 + places] >= '5') {
        std::size_t i = digits.size();
        while (i > 0 && digits[i - 1] == '9') digits[--i] = '0';
        if (i > 0) {
            ++digits[i - 1];
        } else {
            digits.insert(digits.begin(), '1');
        }
    }
    Digits result{digits.substr(0, digits.size() - places), digits.substr(digits.size() - places)};
    result.whole.erase(0, result.whole.find_first_not_of('0'));
    return result;
}

// ---- pictures ----

struct Token {
    char kind; // '0', '#', '.', or 'l' for literal text
    std::string literal;
};

std::vector<Token> tokens_of(std::string_view picture) {
    std::vector<Token> tokens;
    for (std::size_t i = 0; i < picture.size(); ++i) {
        const char c = picture[i];
        if (c == '0' || c == '#' || c == '.') {
            tokens.push_back({c, {}});
        } else if (c == '"') {
            const std::size_t close = std::min(picture.find('"', i + 1), picture.size());
            tokens.push_back({'l', std::string(picture.substr(i + 1, close - i - 1))});
            i = close;
        } else if (c == '\\' && i + 1 < picture.size()) {
            tokens.push_back({'l', std::string(1, picture[++i])});
        } else {
            tokens.push_back({'l', std::string(1, c)});
        }
    }
    return tokens;
}

bool is_placeholder(const Token& token) { return token.kind == '0' || token.kind == '#'; }

template <class Number>
std::string through_picture(Number number, std::string_view picture) {
    if (!std::isfinite(number)) return number_text(number);
    const std::vector<Token> tokens = tokens_of(picture);
    std::size_t point = 0;
    while (point < tokens.size() && tokens[point].kind != '.') ++point;
    std::size_t places = 0;
    std::size_t kept_places = 0; // those that a "0" keeps
    for (std::size_t i = point; i < tokens.size(); ++i) {
        if (!is_placeholder(tokens[i])) continue;
        ++places;
        if (tokens[i].kind == '0') kept_places = places;
    }
    Digits digits = rounded(decimal_of(std::fabs(number), places), places);
    const bool rounded_to_zero =
        digits.whole.empty() && digits.places.find_first_not_of('0') == std::string::npos;
    while (digits.places.size() > kept_places && digits.places.back() == '0') digits.places.pop_back();

    // From the point to the left; what is left over stands before the first place.
    std::vector<std::string> left;
    std::size_t remaining = digits.whole.size();
    std::size_t first_placeholder = tokens.size();
    for (std::size_t i = 0; i < point; ++i) {
        if (is_placeholder(tokens[i])) {
            first_placeholder = i;
            break;
        }
    }
    for (std::size_t i = point; i-- > 0;) {
        if (!is_placeholder(tokens[i])) {
            left.push_back(tokens[i].literal);
        } else {
            if (remaining > 0) {
                left.emplace_back(1, digits.whole[--remaining]);
            } else if (tokens[i].kind == '0') {
                left.emplace_back("0");
            }
            if (i == first_placeholder) {
                left.push_back(digits.whole.substr(0, remaining));
                remaining = 0;
            }
        }
    }
    std::string result = number < 0 && !rounded_to_zero ? "-" : "";
    for (std::size_t i = left.size(); i-- > 0;) result += left[i];
    result += digits.whole.substr(0, remaining);

    std::size_t place = 0;
    for (std::size_t i = point; i < tokens.size(); ++i) {
        if (tokens[i].kind == '.') {
            if (i == point) result += ',';
        } else if (!is_placeholder(tokens[i])) {
            result += tokens[i].literal;
        } else if (place < digits.places.size()) {
            result += digits.places[place++];
        }
    }
    return result;
}

std::string shortest(double number, int digits, char point) {
    if (std::isnan(number)) return "-1,#IND";
    if (std::isinf(number)) return number < 0 ? "-1,#INF" : "1,#INF";
    if (number == 0) return "0";
    std::array<char, 64> buffer{};
    const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number,
                                            std::chars_format::general, digits);
    std::string text(buffer.data(), end);
    for (char& c : text) {
        if (c == '.') c = point;
        if (c == 'e') c = 'E';
    }
    return text;
}

// The end of the number that begins at `from`: sign, digits, one separator, digits, exponent; 0 if there is
// none.
std::size_t number_end(std::string_view text, std::size_t from, std::string_view separators) {
    const auto is_digit = [&](std::size_t i) { return i < text.size() && text[i] >= '0' && text[i] <= '9'; };
    std::size_t i = from;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
    std::size_t digits = 0;
    for (; is_digit(i); ++i) ++digits;
    if (i < text.size() && separators.find(text[i]) != std::string_view::npos) {
        ++i;
        for (; is_digit(i); ++i) ++digits;
    }
    if (digits == 0) return 0;
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        std::size_t k = i + 1;
        if (k < text.size() && (text[k] == '+' || text[k] == '-')) ++k;
        if (is_digit(k)) {
            while (is_digit(k)) ++k;
            i = k;
        }
    }
    return i;
}

// Which end of the range a number beyond it has left: too large is more than anything, too small is nothing.
bool at_least_one(std::string_view spelled) {
    const std::size_t e = std::min(spelled.find_first_of("eE"), spelled.size());
    const std::string_view digits = spelled.substr(0, e);
    const std::size_t point = std::min(digits.find('.'), digits.size());
    const std::size_t first = digits.find_first_of("123456789");
    if (first == std::string_view::npos) return false;
    // Longer than any text that we are given.
    constexpr long long limit = 1'000'000'000'000;
    long long exponent = 0;
    const std::size_t skip = e + 1 < spelled.size() && spelled[e + 1] == '+' ? 2 : 1;
    if (e + skip < spelled.size()) {
        const auto read =
            std::from_chars(spelled.data() + e + skip, spelled.data() + spelled.size(), exponent);
        if (read.ec == std::errc::result_out_of_range) exponent = spelled[e + 1] == '-' ? -limit : limit;
        exponent = std::clamp(exponent, -limit, limit);
    }
    return static_cast<long long>(point) - static_cast<long long>(first) + exponent > 0;
}

double read_number(std::string_view spelled) {
    std::string text{spelled};
    for (char& c : text) {
        if (c == ',') c = '.';
    }
    const char* const begin = text.data() + (text.starts_with('+') ? 1 : 0);
    double value = 0;
    const auto read = std::from_chars(begin, text.data() + text.size(), value);
    if (read.ec == std::errc::result_out_of_range) {
        value = at_least_one(std::string_view(begin, text.data() + text.size())) ? HUGE_VAL : 0.0;
        if (text.starts_with('-')) value = -value;
    }
    return value;
}

} // namespace

std::string format(double number, std::string_view picture) { return through_picture(number, picture); }

std::string format(float number, std::string_view picture) { return through_picture(number, picture); }

std::string format(const DateTime& moment, std::string_view picture) {
    std::string result;
    const auto put = [&](int number, std::size_t digits) {
        std::string text = std::to_string(number);
        if (text.size() < digits) text.insert(0, digits - text.size(), '0');
        if (digits == 2 && text.size() > 2) text.erase(0, text.size() - 2);
        result += text;
    };
    bool behind_hour = false;
    for (std::size_t i = 0; i < picture.size();) {
        const char c = picture[i];
        std::size_t run = 1;
        while (i + run < picture.size() && picture[i + run] == c) ++run;
        const auto later = picture.find_first_not_of(":. ", i + run);
        const bool before_second = later != std::string_view::npos && picture[later] == 's';
        switch (c) {
        case 'd': put(moment.day, std::min<std::size_t>(run, 2)); break;
        case 'm':
            if (behind_hour || before_second) {
                put(moment.minute, std::min<std::size_t>(run, 2));
            } else {
                put(moment.month, std::min<std::size_t>(run, 2));
            }
            break;
        case 'n': put(moment.minute, std::min<std::size_t>(run, 2)); break;
        case 'y': run <= 2 ? put(moment.year % 100, 2) : put(moment.year, 4); break;
        case 'h': put(moment.hour, std::min<std::size_t>(run, 2)); break;
        case 's': put(moment.second, std::min<std::size_t>(run, 2)); break;
        default: result.append(run, c);
        }
        if (c == 'h') {
            behind_hour = true;
        } else if (std::string_view("dmnys").find(c) != std::string_view::npos) {
            behind_hour = false;
        }
        i += run;
    }
    return result;
}

std::string str(double number) {
    std::string text = shortest(number, 15, '.');
    if (text.starts_with("0.")) text.erase(0, 1);
    if (text.starts_with("-0.")) text.erase(1, 1);
    return text.starts_with('-') ? text : ' ' + text;
}

std::string number_text(double number) { return shortest(number, 15, ','); }

std::string number_text(float number) { return shortest(static_cast<double>(number), 7, ','); }

std::optional<double> number_of(std::string_view text) {
    const std::size_t begin = text.find_first_not_of(' ');
    if (begin == std::string_view::npos) return std::nullopt;
    text = text.substr(begin, text.find_last_not_of(' ') + 1 - begin);
    if (number_end(text, 0, ",.") != text.size()) return std::nullopt;
    return read_number(text);
}

double val(std::string_view text) {
    std::string packed;
    for (const char c : text) {
        if (c != ' ') packed += c;
    }
    const std::size_t end = number_end(packed, 0, ".");
    return end == 0 ? 0.0 : read_number(std::string_view(packed).substr(0, end));
}

double round_to_even(double number) { return std::nearbyint(number); }

} // namespace velorn
