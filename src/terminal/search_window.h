// The receive path's search window, `txtvergl`: the text received so far, and where in it each keyword stands
// first.
//
// It answers as if the whole text were searched from its first character for each question, but reads every
// byte once: an automaton over all keywords runs along with what is appended and remembers, for each keyword,
// its first and its last occurrence. What has been cut away in front no longer counts.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace velorn {

enum class Keyword : std::size_t {
    close_log,      // ESC ESC E
    fernbed,        // *FERNBED
    edinfo,         // *EDINFO
    offline,        //  - OFFLINE -
    fernbed_ended,  //    Fernbedienung beendet
    banner,         //  Ende: <E>      Invers: <I>
    banner_exit,    // Fernbedienung: Ausstieg mit
    dots_34,        // the prompt for a name
    dots_32,        // the same behind two blanks
    ok,             // OK
    line_feed,      // LF
    connect,        // CONNECT
    sms_prompt,     // <
    username,       // Username:
    password,       // Password:
    err,            // ERR
    okk,            // OKK
    neuv2,          // NEUV2.0
    continuation,   // Fortsetzung Datei
    capture_begins, // ESC ESC P
    capture_ends,   // ESC ESC O
    block_begins,   // ESC ESC b1
    block,          // ESC ESC b2
    block_ends,     // ESC ESC b3
    count
};

inline constexpr std::size_t keyword_count = static_cast<std::size_t>(Keyword::count);

// The keyword's bytes.
std::string_view text_of(Keyword keyword);

class SearchWindow {
  public:
    SearchWindow();

    void append(std::string_view bytes);
    void clear();
    // Keeps the text from the one-based position on.
    void cut_to(std::size_t position);
    // Keeps the last `count` characters.
    void keep_last(std::size_t count);

    std::size_t length() const { return bytes_.size() - front_; }
    std::string_view text() const { return std::string_view(bytes_).substr(front_); }

    // The one-based position of the keyword's first occurrence, 0 if it isn't there.
    std::size_t find(Keyword keyword) const {
        const Found& found = found_[static_cast<std::size_t>(keyword)];
        return found.last < origin_ + front_ ? 0 : first_position(keyword);
    }

  private:
    // Positions since the beginning of all time, one-based, so that 0 lies before every text.
    struct Found {
        std::uint64_t first = 0;
        std::uint64_t last = 0;
    };

    std::size_t first_position(Keyword keyword) const;
    void scan(std::string_view bytes);
    void note(std::uint32_t hits, std::uint64_t end);

    std::string bytes_; // what was cut away stands before front_, until it is worth removing
    std::size_t front_ = 0;
    std::uint64_t origin_ = 1; // position of bytes_[0]
    std::uint16_t state_ = 0;  // of the automaton
    mutable std::array<Found, keyword_count> found_{};
};

} // namespace velorn
