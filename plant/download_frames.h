// The bytes of a download as the controller sends them: no checksums, but fields that come twice, and frames
// that end in ESC ESC and a code of two letters.
#pragma once

#include "plant/quarter_values.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velorn::plant {

inline constexpr std::string_view frame_complete = "\x1b\x1b"
                                                   "D5";
inline constexpr std::string_view range_accepted = "\x1b\x1b"
                                                   "D6";
inline constexpr std::string_view range_again = "\x1b\x1b"
                                                "D7";
inline constexpr std::string_view transfer_complete = "\x1b\x1b"
                                                      "D4";

inline constexpr int sets_of_long_packet = 16;

// Track count, units and names, each twice.
std::string initialisation_frame(const Recording& site);

// Data sets from `first` on, `count` of them; those beyond `last` are filled up with sets of day 00.
std::string packet(const Recording& site, const Quarter& first, int count, const Quarter& last);

struct TimeRange {
    Quarter first; // quarter 1 of its day
    Quarter last;  // quarter 96 of its day
};
// From 32 digits; nothing: there are not 32, two copies differ, or there is no such date.
std::optional<TimeRange> time_range_from(std::string_view digits);

// A frame spoilt at a place: one of two copies gets another character, some bytes more or fewer before the
// end, an impossible date in one of the data sets.
std::string with_garbled_copy(std::string frame, const Recording& site, std::uint64_t where);
std::string with_wrong_length(std::string frame, std::uint64_t where);
std::string with_wrong_date(std::string frame, const Recording& site, std::uint64_t where);

} // namespace velorn::plant
