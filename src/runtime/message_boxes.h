// The buttons of a message box by its code, in the order in which they are shown.
#pragma once

#include "runtime/outside.h"
#include "runtime/text.h"

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

namespace velorn {

struct BoxButton {
    Answer answer;
    std::string_view text; // cp1252
};

namespace detail {

struct BoxRow {
    std::size_t count;
    std::array<BoxButton, 3> buttons;
    Answer cancelling;
};

inline constexpr BoxButton ok_button{Answer::ok, "OK"};
inline constexpr BoxButton cancel_button{Answer::cancel, "Abbrechen"};
inline constexpr BoxButton abort_button{Answer::abort, "Abbrechen"};
inline constexpr BoxButton retry_button{Answer::retry, "Wiederholen"};
inline constexpr BoxButton ignore_button{Answer::ignore, "Ignorieren"};
inline constexpr BoxButton yes_button{Answer::yes, "Ja"};
inline constexpr BoxButton no_button{Answer::no, "Nein"};

// By button number 0 to 5.
inline constexpr std::array<BoxRow, 6> box_rows = {{
    {1, {{ok_button}}, Answer::ok},
    {2, {{ok_button, cancel_button}}, Answer::cancel},
    {3, {{abort_button, retry_button, ignore_button}}, Answer::abort},
    {3, {{yes_button, no_button, cancel_button}}, Answer::cancel},
    {2, {{yes_button, no_button}}, Answer::no},
    {2, {{retry_button, cancel_button}}, Answer::cancel},
}};

constexpr const BoxRow& box_row(int code) {
    const auto number = static_cast<std::size_t>(static_cast<unsigned>(code) & 15U);
    return box_rows[number < box_rows.size() ? number : 0];
}

} // namespace detail

// An unknown button number counts as 0.
constexpr std::span<const BoxButton> buttons_of(int code) {
    const detail::BoxRow& row = detail::box_row(code);
    return {row.buttons.data(), row.count};
}

// What Escape, the window's close button and the end of the program answer.
constexpr Answer cancelling_answer(int code) { return detail::box_row(code).cancelling; }

} // namespace velorn
