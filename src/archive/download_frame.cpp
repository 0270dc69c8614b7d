#include "archive/download_frame.h"

#include "runtime/number_picture.h"
#include "runtime/text.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace velorn {

namespace {

constexpr std::string_view invalid_value = "***";
constexpr float invalid = -999.0F;
constexpr std::size_t unit_width = 5;
constexpr std::size_t name_width = 14;

std::optional<std::string_view> take(std::string_view& text, std::size_t width) {
    if (text.size() < width) return std::nullopt;
    const std::string_view field = text.substr(0, width);
    text.remove_prefix(width);
    return field;
}

std::optional<int> take_number(std::string_view& text, std::size_t width) {
    const auto field = take(text, width);
    if (!field) return std::nullopt;
    const std::optional<double> number = number_of(*field);
    if (!number || std::abs(*number) > 32767) return std::nullopt;
    return static_cast<int>(round_to_even(*number));
}

// A field that stands there twice.
std::optional<std::string> take_twice(std::string_view& text, std::size_t width) {
    const auto first = take(text, width);
    const auto second = take(text, width);
    if (!first || !second || *first != *second) return std::nullopt;
    return std::string(*first);
}

} // namespace

std::optional<float> value_of_field(std::string_view field) {
    if (instr(field, invalid_value) > 0) return invalid;
    const std::optional<double> number = number_of(field);
    if (!number || std::abs(*number) > std::numeric_limits<float>::max()) return std::nullopt;
    return static_cast<float>(*number);
}

std::optional<DataSet> take_data_set(std::string_view& frame, int tracks) {
    DataSet set;
    for (int* field : {&set.head.day, &set.head.month, &set.head.year, &set.head.quarter}) {
        const auto number = take_number(frame, 2);
        if (!number) return std::nullopt;
        *field = *number;
    }
    for (int track = 1; track <= tracks; ++track) {
        const auto field = take(frame, value_width);
        const auto value = field ? value_of_field(*field) : std::nullopt;
        if (!value) return std::nullopt;
        set.values.push_back(*value);
    }
    return set;
}

std::optional<Initialisation> take_initialisation(std::string_view frame, int most_tracks) {
    const std::size_t width = frame.size() >= 6 && frame.substr(0, 3) == frame.substr(3, 3) ? 3 : 2;
    const auto copies = take_twice(frame, width);
    std::string_view digits = copies ? std::string_view(*copies) : std::string_view();
    const auto count = take_number(digits, width);
    if (!count) return std::nullopt;
    Initialisation all;
    all.tracks = std::clamp(*count, 0, most_tracks);
    // The fields of the tracks that have no place here stand between the units and the names.
    for (const auto& [width_of_field, fields] :
         {std::pair{unit_width, &all.units}, std::pair{name_width, &all.names}}) {
        for (int track = 1; track <= *count; ++track) {
            auto field = take_twice(frame, width_of_field);
            if (!field) return std::nullopt;
            if (track <= all.tracks) fields->push_back(std::move(*field));
        }
    }
    return all;
}

} // namespace velorn
