#include "terminal/search_window.h"

#include <queue>

#include <algorithm>
#include <bit>
#include <vector>

namespace velorn {

namespace {

using namespace std::string_view_literals;

constexpr std::array<std::string_view, keyword_count> keywords = {
    "\x1b\x1b"
    "E"sv,
    "*FERNBED"sv,
    "*EDINFO"sv,
    " - OFFLINE - "sv,
    "   Fernbedienung beendet   "sv,
    " Ende: <E>      Invers: <I>             "sv,
    "Fernbedienung: Ausstieg mit "sv,
    ".................................."sv,
    "  ................................"sv,
    "OK"sv,
    "\n"sv,
    "CONNECT"sv,
    "<"sv,
    "Username:"sv,
    "Password:"sv,
    "ERR"sv,
    "OKK"sv,
    "NEUV2.0"sv,
    "Fortsetzung Datei"sv,
    "\x1b\x1bP"sv,
    "\x1b\x1bO"sv,
    "\x1b\x1b"
    "b1"sv,
    "\x1b\x1b"
    "b2"sv,
    "\x1b\x1b"
    "b3"sv,
};

// What was cut away in front is removed when it has become this long.
constexpr std::size_t slack = 256 * 1024;

// An automaton that has read a text knows the longest beginning of a keyword that the text ends with (Aho and
// Corasick). One look-up for each byte; state 0 is "none".
struct Automaton {
    // next[state][byte]; the top bit says that the new state ends a keyword.
    std::vector<std::array<std::uint16_t, 256>> next;
    std::vector<std::uint32_t> hits; // bit k: keyword k ends here
    static constexpr std::uint16_t ends_keyword = 0x8000;
    static constexpr std::uint16_t state_mask = 0x7FFF;

    Automaton() {
        static_assert(keyword_count <= 32);
        add_state();
        for (std::size_t k = 0; k < keyword_count; ++k) {
            std::size_t state = 0;
            for (const char c : keywords[k]) {
                const auto byte = static_cast<unsigned char>(c);
                if (next[state][byte] == 0) {
                    const std::size_t added = add_state();
                    next[state][byte] = static_cast<std::uint16_t>(added);
                }
                state = next[state][byte];
            }
            hits[state] |= 1U << k;
        }
        complete();
    }

  private:
    std::size_t add_state() {
        next.emplace_back().fill(0);
        hits.push_back(0);
        return next.size() - 1;
    }

    // Breadth first: where a keyword doesn't go on, the state of the longest shorter ending decides.
    void complete() {
        std::vector<std::size_t> shorter(next.size(), 0);
        std::queue<std::size_t> todo;
        for (const std::uint16_t child : next[0]) {
            if (child != 0) todo.push(child);
        }
        while (!todo.empty()) {
            const std::size_t state = todo.front();
            todo.pop();
            hits[state] |= hits[shorter[state]];
            for (std::size_t byte = 0; byte < 256; ++byte) {
                const std::uint16_t fallback = next[shorter[state]][byte];
                if (const std::uint16_t child = next[state][byte]; child != 0) {
                    shorter[child] = fallback;
                    todo.push(child);
                } else {
                    next[state][byte] = fallback;
                }
            }
        }
        for (auto& row : next) {
            for (std::uint16_t& entry : row) {
                if (hits[entry] != 0) entry |= ends_keyword;
            }
        }
    }
};

const Automaton& automaton() {
    static const Automaton the_one;
    return the_one;
}

} // namespace

std::string_view text_of(Keyword keyword) { return keywords[static_cast<std::size_t>(keyword)]; }

SearchWindow::SearchWindow() { (void)automaton(); }

void SearchWindow::append(std::string_view bytes) {
    if (front_ > slack) {
        bytes_.erase(0, front_);
        origin_ += front_;
        front_ = 0;
    }
    bytes_.append(bytes);
    scan(bytes);
}

void SearchWindow::clear() { front_ = bytes_.size(); }

void SearchWindow::cut_to(std::size_t position) { front_ += std::min(position - 1, length()); }

void SearchWindow::keep_last(std::size_t count) {
    if (length() > count) front_ = bytes_.size() - count;
}

void SearchWindow::scan(std::string_view bytes) {
    const Automaton& table = automaton();
    const auto* const next = table.next.data();
    std::uint16_t state = state_;
    const char* const begin = bytes.data();
    const char* const end = begin + bytes.size();
    for (const char* p = begin; p != end; ++p) {
        const std::uint16_t entry = next[state][static_cast<unsigned char>(*p)];
        state = entry & Automaton::state_mask;
        if (entry & Automaton::ends_keyword) [[unlikely]] {
            note(table.hits[state], origin_ + bytes_.size() - static_cast<std::size_t>(end - p) + 1);
        }
    }
    state_ = state;
}

// `end`: the position behind the keyword's last character.
void SearchWindow::note(std::uint32_t hits, std::uint64_t end) {
    for (; hits != 0; hits &= hits - 1) {
        const auto keyword = static_cast<std::size_t>(std::countr_zero(hits));
        const std::uint64_t begin = end - keywords[keyword].size();
        Found& found = found_[keyword];
        // An occurrence that reaches back behind the front is none. With none left in the text this is the
        // first.
        if (begin < origin_ + front_) continue;
        if (found.last < origin_ + front_) found.first = begin;
        found.last = begin;
    }
}

std::size_t SearchWindow::first_position(Keyword keyword) const {
    Found& found = found_[static_cast<std::size_t>(keyword)];
    const std::uint64_t front = origin_ + front_;
    if (found.first < front) {
        // The first one was cut away, a later one is there: look for the next.
        found.first = front + text().find(text_of(keyword));
    }
    return static_cast<std::size_t>(found.first - front) + 1;
}

} // namespace velorn
