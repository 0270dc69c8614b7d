// Finds a text in a long one while that keeps growing: all places are known at all times, and an edit costs
// as much as it touches. Upper and lower case are those of cp1252. Places do not overlap. Knows no toolkit.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>

namespace velorn {

class TerminalSearch {
  public:
    // Searches anew; an empty pattern finds nothing. No place is the current one afterwards.
    void set_pattern(std::string_view pattern, bool case_sensitive, std::string_view text);

    // To be called after each edit with the text as it is now.
    void edited(std::string_view text, std::size_t position, std::size_t removed, std::size_t inserted);

    const std::string& pattern() const { return pattern_; }
    bool case_sensitive() const { return case_sensitive_; }

    std::size_t count() const { return hits_.size(); }
    std::size_t hit(std::size_t index) const { return hits_[index] - front_; }

    // The first place that ends behind `position`; count() if there is none.
    std::size_t first_behind(std::size_t position) const;

    // Number of the current place, from 0; nothing before the first step, or once its text is gone.
    std::optional<std::size_t> current() const;

    // Makes the place current that is at or behind `position`, else the last one. Nothing if there are no
    // places.
    std::optional<std::size_t> go_near(std::size_t position);

    // One on or back, around the ends. Where the current one is gone its neighbour follows.
    std::optional<std::size_t> next();
    std::optional<std::size_t> previous();

  private:
    void scan(std::string_view text, std::size_t from);
    std::optional<std::size_t> make_current(std::size_t index);
    unsigned char folded(char character) const { return fold_[static_cast<unsigned char>(character)]; }

    std::string pattern_; // folded unless case counts
    bool case_sensitive_ = false;
    std::array<unsigned char, 256> fold_{};
    std::array<std::size_t, 256> skip_{};
    std::deque<std::uint32_t> hits_; // counted from the beginning of all times, modulo 2^32
    std::uint32_t front_ = 0;
    std::size_t length_ = 0;
    std::optional<std::uint32_t> current_;
};

} // namespace velorn
