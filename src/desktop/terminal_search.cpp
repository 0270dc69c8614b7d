#include "desktop/terminal_search.h"

#include "runtime/text.h"

#include <algorithm>

namespace velorn {

void TerminalSearch::set_pattern(std::string_view pattern, bool case_sensitive, std::string_view text) {
    case_sensitive_ = case_sensitive;
    for (unsigned i = 0; i < fold_.size(); ++i) {
        const auto character = static_cast<unsigned char>(i);
        fold_[i] = case_sensitive ? character : to_lower(character);
    }
    pattern_.clear();
    for (const char c : pattern) pattern_.push_back(static_cast<char>(folded(c)));
    skip_.fill(pattern_.size());
    for (std::size_t i = 0; i + 1 < pattern_.size(); ++i) {
        skip_[static_cast<unsigned char>(pattern_[i])] = pattern_.size() - 1 - i;
    }
    hits_.clear();
    current_.reset();
    length_ = text.size();
    scan(text, 0);
}

void TerminalSearch::edited(std::string_view text, std::size_t position, std::size_t removed,
                            std::size_t inserted) {
    const bool only_front = position == 0 && inserted == 0 && removed < length_;
    length_ = text.size();
    if (only_front) {
        while (!hits_.empty() && hit(0) < removed) hits_.pop_front();
        front_ += static_cast<std::uint32_t>(removed);
        return;
    }
    if (pattern_.empty()) return;
    while (!hits_.empty() && hit(hits_.size() - 1) + pattern_.size() > position) hits_.pop_back();
    const std::size_t reach = pattern_.size() - 1;
    scan(text, position > reach ? position - reach : 0);
}

void TerminalSearch::scan(std::string_view text, std::size_t from) {
    const std::size_t size = pattern_.size();
    if (size == 0) return;
    std::size_t i = hits_.empty() ? from : std::max(from, hit(hits_.size() - 1) + size);
    const auto last = static_cast<unsigned char>(pattern_[size - 1]);
    while (i + size <= text.size()) {
        const unsigned char end = folded(text[i + size - 1]);
        if (end == last) {
            std::size_t k = 0;
            while (k + 1 < size && folded(text[i + k]) == static_cast<unsigned char>(pattern_[k])) ++k;
            if (k + 1 >= size) {
                hits_.push_back(front_ + static_cast<std::uint32_t>(i));
                i += size;
                continue;
            }
        }
        i += skip_[end];
    }
}

std::size_t TerminalSearch::first_behind(std::size_t position) const {
    const auto found = std::partition_point(hits_.begin(), hits_.end(), [&](std::uint32_t begin) {
        return static_cast<std::uint32_t>(begin - front_) + pattern_.size() <= position;
    });
    return static_cast<std::size_t>(found - hits_.begin());
}

std::optional<std::size_t> TerminalSearch::current() const {
    if (!current_ || hits_.empty() || *current_ - front_ > length_) return std::nullopt;
    const std::size_t index = first_behind(*current_ - front_);
    if (index == hits_.size() || hits_[index] != *current_) return std::nullopt;
    return index;
}

std::optional<std::size_t> TerminalSearch::make_current(std::size_t index) {
    current_ = hits_[index];
    return index;
}

std::optional<std::size_t> TerminalSearch::go_near(std::size_t position) {
    if (hits_.empty()) return std::nullopt;
    return make_current(std::min(first_behind(position), hits_.size() - 1));
}

std::optional<std::size_t> TerminalSearch::next() {
    if (hits_.empty()) return std::nullopt;
    if (const auto index = current()) return make_current(*index + 1 < hits_.size() ? *index + 1 : 0);
    const bool still_inside = current_ && *current_ - front_ <= length_;
    const std::size_t index = still_inside ? first_behind(*current_ - front_) : 0;
    return make_current(index < hits_.size() ? index : 0);
}

std::optional<std::size_t> TerminalSearch::previous() {
    if (hits_.empty()) return std::nullopt;
    const bool still_inside = current_ && *current_ - front_ <= length_;
    const std::size_t index = still_inside ? first_behind(*current_ - front_) : 0;
    return make_current(index > 0 ? index - 1 : hits_.size() - 1);
}

} // namespace velorn
